// The C functions that the JavaScript package calls in the WebAssembly
// module. Everything crosses through the module's heap. The caller writes a
// request into a buffer from pq_alloc: a sequence of fields, each a byte, a
// 32-bit little-endian number, or a text (its length as a number, then its
// bytes). A call answers in two parts that the caller reads in step: the
// numbers (32-bit, each flag, count and text length in order) and the
// bytes of the texts one after another; the caller then releases them.
// Numbers apart, the texts of a reply are one run of bytes, decoded at once.
//
// Order text, passwords and card numbers are secrets: the request buffers
// are wiped when freed, the reply's texts when released, and every copy
// made here lives in a string that is wiped when it dies.

#include <algorithm>
#include <cstdint>
#include <malloc.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "../../../tools/pqorder/PQPasswordRules.h"
#include "PQUtils/Orders/PQOrderTextInternal.h"
#include "PQUtils/PQUtils.h"
#include "PQUtils/Utils/PQOrderEscapeInternal.h"
#include "PQUtils/Utils/PQSecureMemory.h"

namespace {

using namespace PQ_UTILS;
using Cards = PQCreditCardNumberValidator;

// A call's answer, or the message of its failure (texts only).
std::string gReply;                  // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)
std::vector<std::uint32_t> gNumbers; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

// Room for `extra` more bytes in the reply; when it must grow, it moves to a
// buffer twice as large and the old one is wiped, so that no copy of what
// it held stays behind.
void roomFor(std::size_t extra) {
    if (gReply.size() + extra <= gReply.capacity()) {
        return;
    }
    std::string larger;
    larger.reserve(std::max(2 * gReply.capacity(), gReply.size() + extra));
    larger = gReply;
    secureWipe(gReply);
    gReply.swap(larger);
}

void putNumber(std::uint32_t value) { gNumbers.push_back(value); }

void putText(std::string_view text) {
    putNumber(static_cast<std::uint32_t>(text.size()));
    roomFor(text.size());
    gReply.append(text);
}

// A reply buffer larger than this is given back when released, so that one
// large call does not make every later one wipe its whole size.
constexpr std::size_t kKeptReplyRoom = std::size_t{64} * 1024;

void clearReply() {
    secureWipe(gReply);
    if (gReply.capacity() > kKeptReplyRoom) {
        std::string().swap(gReply);
    }
    gNumbers.clear();
    if (gNumbers.capacity() > kKeptReplyRoom) {
        std::vector<std::uint32_t>().swap(gNumbers);
    }
}

// The fields of a request, read in order; reading past its end fails.
class Request {
public:
    Request(const std::uint8_t* data, std::size_t size)
        : m_data(reinterpret_cast<const char*>(data)), m_size(size) {}

    std::uint8_t byte() { return static_cast<std::uint8_t>(take(1)[0]); }

    std::uint32_t number() {
        const std::string_view bytes = take(4);
        std::uint32_t value = 0;
        for (int i = 3; i >= 0; --i) {
            value = (value << 8) | static_cast<std::uint8_t>(bytes[static_cast<std::size_t>(i)]);
        }
        return value;
    }

    std::string_view text() { return take(number()); }

    // The next text, copied into `into` (which wipes it when it dies).
    void secret(PQWipedString& into) { into.get().assign(text()); }

    [[nodiscard]] bool atEnd() const { return m_next == m_size; }

private:
    std::string_view take(std::size_t count) {
        if (count > m_size - m_next) {
            throw std::invalid_argument("request cut short");
        }
        const std::string_view bytes(m_data + m_next, count);
        m_next += count;
        return bytes;
    }

    const char* m_data;
    std::size_t m_size;
    std::size_t m_next = 0;
};

// Runs a call: 0 with its answer in the reply, or 1 with the message of
// what it threw (a library failure's message is its what()).
template <class Call> int answer(Call call) noexcept {
    clearReply();
    try {
        call();
        return 0;
    } catch (const std::exception& failure) {
        clearReply();
        gReply = failure.what();
    } catch (...) {
        clearReply();
        gReply = "unknown failure";
    }
    return 1;
}

// The name of an action, as the order writer spells it; fails as the
// library does for a value without one.
const kstring& nameOf(PQReceivedOrderType action) {
    return *PQ_DEBUG::getWstringFromIntT<PQReceivedOrderType>(
        PQ_DEBUG::PQObjectType_PQReceivedOrderType, action, &initialize_public_PQReceivedOrderType);
}

// The action of a request: its name, or its value written in decimal when
// the flag before it is set. Each look-up fails as the library does.
PQReceivedOrderType actionOf(Request& request) {
    const bool isValue = request.byte() != 0;
    const kstring text(request.text());
    if (isValue) {
        const auto action = static_cast<PQReceivedOrderType>(std::stoi(text));
        (void)nameOf(action);
        return action;
    }
    return PQ_DEBUG::getIntFromWstringT<PQReceivedOrderType>(
        PQ_DEBUG::PQObjectType_PQReceivedOrderType, text, &initialize_public_PQReceivedOrderType);
}

void putSecured(const PQSecuredString& text) { putText(*text.getStringSource()); }

// A string the library made for the reply: copied, then wiped.
void putAndWipe(kstring& text) {
    putText(text);
    secureWipe(text);
}

// --- JSON values -------------------------------------------------------------
//
// A JSON value crosses as a sequence of tags: '{' and '}' around an
// object's members, each a 'k' key text then its value; '[' and ']' around
// an array's elements; 's' and a string's text; 'l' and the text of a
// number, boolean or null, written bare.

constexpr char kObject = '{';
constexpr char kObjectEnd = '}';
constexpr char kArray = '[';
constexpr char kArrayEnd = ']';
constexpr char kKey = 'k';
constexpr char kString = 's';
constexpr char kLiteral = 'l';

// An open container of the tree being built, with the key it goes under in
// its own container.
struct OpenNode {
    std::unique_ptr<PQJsonOrder> node;
    kstring key;
};

// Adds a finished node to the open container `parent`, under `key` in an
// object; the root order takes its members like an object.
void attach(PQJsonOrder& parent, const kstring& key, std::unique_ptr<PQJsonOrder> node) {
    if (parent.isJSonArray()) {
        static_cast<PQJsonArray&>(parent).addValue(std::move(node));
    } else {
        parent.addValue_noCheck(key, std::move(node));
    }
}

// The order of a JSON value: an object's members become the members of a
// root order with the action; an array or a string is itself the root.
// Builds with its own stack, so depth costs no call frames.
std::unique_ptr<PQJsonOrder> jsonOrderOf(Request& request, PQReceivedOrderType action) {
    std::vector<OpenNode> open;
    std::unique_ptr<PQJsonOrder> root;
    kstring key;
    auto finish = [&](std::unique_ptr<PQJsonOrder> node, const kstring& nodeKey) {
        if (open.empty()) {
            node->set_action(action);
            root = std::move(node);
        } else {
            attach(*open.back().node, nodeKey, std::move(node));
        }
    };
    while (!request.atEnd()) {
        const char tag = static_cast<char>(request.byte());
        switch (tag) {
        case kKey:
            key = request.text();
            break;
        case kObject:
            open.push_back({open.empty() ? std::make_unique<PQJsonOrder>(action)
                                         : std::make_unique<PQJsonObject>(),
                            key});
            break;
        case kArray:
            open.push_back({std::make_unique<PQJsonArray>(), key});
            break;
        case kObjectEnd:
        case kArrayEnd: {
            if (open.empty()) {
                throw std::invalid_argument("JSON value closed too often");
            }
            OpenNode done = std::move(open.back());
            open.pop_back();
            finish(std::move(done.node), done.key);
            break;
        }
        case kString:
            finish(std::make_unique<PQJsonString>(kstring(request.text())), key);
            break;
        case kLiteral: {
            const kstring text(request.text());
            if (open.empty()) {
                throw std::invalid_argument(
                    "numbers, booleans and null can only be members of an object");
            }
            open.back().node->addValue_nostring(open.back().node->isJSonArray() ? "" : key, text);
            break;
        }
        default:
            throw std::invalid_argument("unknown JSON tag");
        }
    }
    if (!root || !open.empty()) {
        throw std::invalid_argument("JSON value not closed");
    }
    return root;
}

// Reads the JSON text of an order's content into tags (the same as above),
// in one walk with a stack of the open containers, so that depth costs no
// call frames. Strings are unescaped as the library's string nodes unescape
// them; keys, which the writer never escapes, run to the next quote.
class ContentReader {
public:
    explicit ContentReader(std::string_view text) : m_text(text) {}

    void read() {
        value();
        while (!m_open.empty()) {
            step();
        }
        skipBlanks();
        if (m_next != m_text.size()) {
            fail("text after the value");
        }
    }

private:
    struct Open {
        bool isObject;
        bool isEmpty;
    };

    [[noreturn]] void fail(const char* what) const {
        throw std::invalid_argument(std::string("content is not JSON: ") + what + " at byte " +
                                    std::to_string(m_next));
    }

    [[nodiscard]] bool nextIsOneOf(std::string_view bytes) const {
        return m_next < m_text.size() && bytes.find(m_text[m_next]) != std::string_view::npos;
    }

    void skipBlanks() {
        while (nextIsOneOf(kBlanks)) {
            ++m_next;
        }
    }

    char peek() {
        skipBlanks();
        if (m_next == m_text.size()) {
            fail("end of text");
        }
        return m_text[m_next];
    }

    void expect(char wanted) {
        if (peek() != wanted) {
            fail("unexpected byte");
        }
        ++m_next;
    }

    // A string or a literal, or the opening of a container.
    void value() {
        const char first = peek();
        if (first == '{' || first == '[') {
            ++m_next;
            putNumber(static_cast<std::uint8_t>(first));
            m_open.push_back({first == '{', true});
        } else if (first == '"') {
            ++m_next;
            const std::size_t start = m_next;
            while (m_next < m_text.size() && m_text[m_next] != '"') {
                m_next += m_text[m_next] == '\\' ? 2 : 1;
            }
            if (m_next >= m_text.size()) {
                fail("string not closed");
            }
            const PQJsonString node{kstring(m_text.substr(start, m_next - start))};
            ++m_next;
            putNumber(kString);
            putSecured(node.get_pieceValue());
        } else {
            const std::size_t start = m_next;
            while (m_next < m_text.size() && !nextIsOneOf(kLiteralEnds)) {
                ++m_next;
            }
            if (m_next == start) {
                fail("no value");
            }
            putNumber(kLiteral);
            putText(m_text.substr(start, m_next - start));
        }
    }

    // Inside the innermost open container: its end, or its next element.
    void step() {
        Open& open = m_open.back();
        const char next = peek();
        if (next == (open.isObject ? '}' : ']')) {
            ++m_next;
            putNumber(static_cast<std::uint8_t>(open.isObject ? kObjectEnd : kArrayEnd));
            m_open.pop_back();
            return;
        }
        if (!open.isEmpty) {
            expect(',');
        }
        open.isEmpty = false;
        if (open.isObject) {
            expect('"');
            const std::size_t end = m_text.find('"', m_next);
            if (end == std::string_view::npos) {
                fail("key not closed");
            }
            putNumber(kKey);
            putText(m_text.substr(m_next, end - m_next));
            m_next = end + 1;
            expect(':');
        }
        value();
    }

    static constexpr std::string_view kBlanks = " \t\r\n";
    static constexpr std::string_view kLiteralEnds = ",]} \t\r\n";

    std::string_view m_text;
    std::size_t m_next = 0;
    std::vector<Open> m_open;
};

// The password policy of one check, given back when the check is done.
class PolicyForOneCheck {
public:
    explicit PolicyForOneCheck(const pqorder::PasswordPolicy& policy)
        : m_saved(pqorder::currentPolicy()) {
        pqorder::applyPolicy(policy);
    }
    ~PolicyForOneCheck() { pqorder::applyPolicy(m_saved); }
    PolicyForOneCheck(const PolicyForOneCheck&) = delete;
    PolicyForOneCheck& operator=(const PolicyForOneCheck&) = delete;

private:
    pqorder::PasswordPolicy m_saved;
};

} // namespace

extern "C" {

// Starts the library, with its log routed nowhere: what a caller needs to
// know (a dropped element, a failure) comes back as data or as the error.
void pq_init() {
    PQ_DEBUG::PQDebug::setLogSink([](const PQ_DEBUG::PQLogRecord&) {});
    PQInit::init();
}

std::uint8_t* pq_alloc(std::size_t size) {
    return static_cast<std::uint8_t*>(std::malloc(size == 0 ? 1 : size));
}

// Wipes `size` bytes of a buffer from pq_alloc, then frees it.
void pq_free(std::uint8_t* data, std::size_t size) {
    secureWipe(data, size);
    std::free(data);
}

const char* pq_reply_data() { return gReply.data(); }
std::size_t pq_reply_size() { return gReply.size(); }
const std::uint32_t* pq_reply_numbers() { return gNumbers.data(); }
void pq_reply_release() { clearReply(); }

// Bytes in use on the module's heap, to show that calls give back what they
// take.
std::size_t pq_heap_in_use() { return static_cast<std::size_t>(mallinfo().uordblks); }

// action, number of pieces, then key and value of each -> the order text.
int pq_render_order(const std::uint8_t* data, std::size_t size) {
    return answer([&] {
        Request request(data, size);
        const PQReceivedOrderType action = actionOf(request);
        // The keys and values are read where they lie in the request (which
        // is wiped when freed): no order tree to build and take apart.
        std::vector<internal::OrderTextPiece> pieces;
        for (std::uint32_t count = request.number(); count > 0; --count) {
            const std::string_view key = request.text();
            pieces.push_back({key, request.text()});
        }
        PQWipedString text;
        internal::appendOrderText(text.get(), nameOf(action), pieces);
        putText(text.get());
    });
}

// The reader's pieces written into the reply as they are found: the count
// first (filled in at the end), then key and value of each. The drops are
// kept apart, since their texts follow all the pieces'.
class ReplySink final : public internal::OrderTextSink {
public:
    explicit ReplySink(bool removeEntities)
        : m_removeEntities(removeEntities), m_countAt(gNumbers.size()) {
        putNumber(0);
    }
    ReplySink(const ReplySink&) = delete;
    ReplySink& operator=(const ReplySink&) = delete;
    ~ReplySink() override {
        for (PQDroppedElement& element : m_dropped) {
            secureWipe(element.element);
        }
    }

    void piece(std::string_view key, std::string_view rawValue) override {
        m_value.get().clear();
        internal::appendOrderValue(m_value.get(), rawValue, m_removeEntities);
        // Room first, so that a piece goes in whole or not at all.
        gNumbers.reserve(gNumbers.size() + 2);
        roomFor(key.size() + m_value.get().size());
        putText(key);
        putText(m_value.get());
        ++gNumbers[m_countAt];
    }
    void dropped(std::size_t index, std::string_view element, std::string_view reason) override {
        m_dropped.push_back({index, kstring(element), kstring(reason)});
    }

    void putDropped() {
        putNumber(static_cast<std::uint32_t>(m_dropped.size()));
        for (PQDroppedElement& element : m_dropped) {
            putNumber(static_cast<std::uint32_t>(element.index));
            putText(element.element);
            putText(element.reason);
        }
    }

private:
    bool m_removeEntities;
    std::size_t m_countAt;
    PQWipedString m_value;
    std::vector<PQDroppedElement> m_dropped;
};

// order text -> number of pieces, key and value of each; number of dropped
// elements, index, text and reason of each.
int pq_parse_order(const std::uint8_t* data, std::size_t size, int removeEntities) {
    return answer([&] {
        ReplySink sink(removeEntities != 0);
        internal::getOrderPiecesFromOrder(
            PQSourceOrderWrapper(kstring(reinterpret_cast<const char*>(data), size)), sink);
        sink.putDropped();
    });
}

// action, then the tags of a JSON value -> the JSON order text.
int pq_render_json_order(const std::uint8_t* data, std::size_t size) {
    return answer([&] {
        Request request(data, size);
        const PQReceivedOrderType action = actionOf(request);
        putSecured(jsonOrderOf(request, action)->get_orderString());
    });
}

// JSON order text -> the tags of its content.
int pq_parse_json_content(const std::uint8_t* data, std::size_t size) {
    return answer([&] {
        const auto pieces = PQReceivedOrder::getOrderPiecesFromOrder(
            PQSourceOrderWrapper(kstring(reinterpret_cast<const char*>(data), size)), true);
        for (const PQOrderPiece& piece : *pieces) {
            if (piece.get_key() == "content") {
                const PQSecuredString value = piece.get_pieceValue();
                const PQWipedString json(*PQString::replace_pq(
                    *value.getStringSource(), kstring(internal::kLineFeed.token),
                    kstring(internal::kLineFeed.character), false));
                ContentReader(json.get()).read();
                return;
            }
        }
        throw std::invalid_argument("no content piece in the order");
    });
}

// text -> text with the order writer's escape tokens.
int pq_escape(const std::uint8_t* data, std::size_t size) {
    return answer([&] {
        const PQWipedString text(kstring(reinterpret_cast<const char*>(data), size));
        putAndWipe(*PQString::restorePQEntities(text.get()));
    });
}

// text -> text with the escape tokens restored, as the order reader does.
int pq_unescape(const std::uint8_t* data, std::size_t size) {
    return answer([&] {
        const PQWipedString text(kstring(reinterpret_cast<const char*>(data), size));
        putAndWipe(*PQString::removePQEntities(text.get()));
    });
}

// The names of the password policy's limits, in the order a check takes them.
int pq_password_limits() {
    return answer([] {
        putNumber(static_cast<std::uint32_t>(pqorder::passwordLimits().size()));
        for (const pqorder::PasswordLimit& limit : pqorder::passwordLimits()) {
            putText(limit.name);
        }
    });
}

// -> the action vocabulary: its size, then each action's value and name.
int pq_actions() {
    return answer([] {
        const auto& rows = get_PQReceivedOrderTypeRows();
        putNumber(static_cast<std::uint32_t>(rows.size()));
        for (const auto& row : rows) {
            putNumber(static_cast<std::uint32_t>(row.value));
            putText(row.name);
        }
    });
}

// per limit a flag and its value, a flag and the forbidden bytes, then the
// password -> valid, the broken rules' words, the held classes' names.
int pq_check_password(const std::uint8_t* data, std::size_t size) {
    return answer([&] {
        Request request(data, size);
        pqorder::PasswordPolicy policy;
        for (const pqorder::PasswordLimit& limit : pqorder::passwordLimits()) {
            const bool given = request.byte() != 0;
            const auto value = static_cast<std::int32_t>(request.number());
            if (given) {
                policy.*limit.option = value;
            }
        }
        const bool forbids = request.byte() != 0;
        const std::string_view forbidden = request.text();
        if (forbids) {
            policy.forbid = kstring(forbidden);
        }
        PQWipedString password;
        request.secret(password);
        const PolicyForOneCheck scope(policy);
        unsigned int error = 0;
        putNumber(PQPasswordValidator::isValidPassword(password.get(), error) ? 1 : 0);
        const std::vector<std::string> broken = pqorder::breachesOf(error);
        putNumber(static_cast<std::uint32_t>(broken.size()));
        for (const std::string& words : broken) {
            putText(words);
        }
        unsigned int details = 0;
        PQPasswordValidator::getPasswordDetails(password.get(), details);
        const std::vector<const char*> held = pqorder::classesOf(details);
        putNumber(static_cast<std::uint32_t>(held.size()));
        for (const char* name : held) {
            putText(name);
        }
    });
}

// card number -> Luhn check, brand name (empty for none), masked form, the
// brand in the tool's words.
int pq_check_card(const std::uint8_t* data, std::size_t size) {
    return answer([&] {
        const PQWipedString number(kstring(reinterpret_cast<const char*>(data), size));
        putNumber(Cards::isCardNumberValid(number.get()) ? 1 : 0);
        const Cards::CREDITCARD_TYPE type = Cards::getCardType(number.get());
        putText(type == Cards::CREDITCARD_NONE ? "" : Cards::getWstringFromCardType(type));
        putAndWipe(*PQString::obfuscateNumber(number.get()));
        putText(pqorder::brandWords(type));
    });
}

int pq_to_base64(const std::uint8_t* data, std::size_t size) {
    return answer([&] {
        const PQWipedString bytes(kstring(reinterpret_cast<const char*>(data), size));
        putAndWipe(*PQString::toBase64(bytes.get(), bytes.get().size()));
    });
}

int pq_url_decode(const std::uint8_t* data, std::size_t size) {
    return answer([&] {
        const PQWipedString text(kstring(reinterpret_cast<const char*>(data), size));
        kstring decoded = PQUtil::urlDecode(text.get());
        putAndWipe(decoded);
    });
}

} // extern "C"
