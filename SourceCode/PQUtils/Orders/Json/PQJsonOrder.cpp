#include "PQUtils/Orders/Json/PQJsonOrder.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <typeinfo>
#include <utility>

#include "PQDebug/PQDebugString.h"
#include "PQUtils/Orders/Json/PQJsonArray.h"
#include "PQUtils/Orders/Json/PQJsonInternal.h"
#include "PQUtils/Orders/Json/PQJsonObject.h"
#include "PQUtils/Orders/Json/PQJsonString.h"
#include "PQUtils/Utils/PQFailure.h"
#include "PQUtils/Utils/PQSecureMemory.h"
#include "PQUtils/Utils/PQString.h"
#include "PQUtils/Utils/PQStringInternal.h"

namespace PQ_UTILS {
namespace {

constexpr const char* pqSourceFile = internal::kJsonOrderSource;

constexpr const char* kOnlyNodes = "All Json children must be TYPE_ORDER PQOrderPiece";

// The bytes of a string value that the writer escapes, found 16 at a time.
constexpr internal::ByteSet kToEscape("\\\"\n\t\v\r\f");

// For each byte, the byte written after the backslash that escapes it (0
// for a byte written as it is); and, for each byte after a backslash, the
// byte that the two stand for (0 when they are no escape). The backslash's
// own row is left out of the second: runs of backslashes pair up apart.
struct JsonTables {
    std::array<char, 256> escapeCode{};
    std::array<char, 256> unescaped{};
};
constexpr JsonTables kJsonTables = [] {
    JsonTables tables;
    for (const internal::JsonEscape& row : internal::kJsonEscapes) {
        tables.escapeCode[static_cast<unsigned char>(row.raw)] = row.escaped[1];
        if (row.raw != '\\') {
            tables.unescaped[static_cast<unsigned char>(row.escaped[1])] = row.raw;
        }
    }
    return tables;
}();

static_assert(std::all_of(internal::kJsonEscapes.begin(), internal::kJsonEscapes.end(),
                          [](const internal::JsonEscape& row) {
                              return row.escaped.size() == 2 && row.escaped[0] == '\\' &&
                                     kToEscape.contains(row.raw);
                          }) &&
                  internal::kJsonEscapes.size() == 7,
              "the escaped bytes are the rows of kJsonEscapes, each a backslash and one byte");

} // namespace

PQSecuredString internal::unescapedJson(std::string_view text) {
    // Never longer than the text: written into room made once.
    PQWipedString result;
    kstring& out = result.get();
    out.resize(text.size());
    char* to = out.data();
    const auto copyPlain = [&to, text](std::size_t from, std::size_t count) {
        if (count != 0) {
            std::memcpy(to, text.data() + from, count);
            to += count;
        }
    };
    constexpr ByteSet kBackslash("\\");
    std::size_t from = 0;
    for (std::size_t at = kBackslash.find(text); at != std::string_view::npos;
         at = kBackslash.find(text, from)) {
        copyPlain(from, at - from);
        for (from = at + 1; from < text.size() && text[from] == '\\';) {
            ++from;
        }
        // The last backslash of the run goes with the byte after it when the
        // two are an escape; the others pair up, a lone last one kept.
        const char escaped = from < text.size()
                                 ? kJsonTables.unescaped[static_cast<unsigned char>(text[from])]
                                 : '\0';
        const std::size_t paired = from - at - (escaped != '\0' ? 1 : 0);
        to = std::fill_n(to, (paired + 1) / 2, '\\');
        if (escaped != '\0') {
            *to++ = escaped;
            ++from;
        }
    }
    copyPlain(from, text.size() - from);
    out.resize(static_cast<std::size_t>(to - out.data()));
    return PQSecuredString(std::move(out));
}

// The first pass: adds up the bytes that the second writes. What it cannot
// know without running other code (a node of a derived class, the
// rendering of a nested order inside a string) counts for nothing: the
// writer grows for it.
class PQJsonOrder::Sizer {
public:
    explicit Sizer(bool escape) noexcept : m_escape(escape) {}

    [[nodiscard]] std::size_t size() const noexcept { return m_size; }

    void append(std::string_view text) noexcept { m_size += text.size(); }
    void appendValue(std::string_view text) noexcept {
        m_size += text.size() + (m_escape ? kToEscape.count(text) : 0);
    }
    [[nodiscard]] static std::string_view stored(const PQOrderPiece& piece) noexcept {
        const kstring* const text = storedText(piece);
        return text == nullptr ? std::string_view() : std::string_view(*text);
    }
    void appendRendered(const PQOrderPiece& /*piece*/) noexcept {}
    void renderItself(const PQOrder& /*node*/) noexcept {}

private:
    bool m_escape;
    std::size_t m_size = 0;
};

// The second pass: writes into the text of `out` through a cursor, in the
// room made for it. Should that run out, the text moves to a larger buffer
// (the old one wiped), the room made each time at least as large as what
// was written since the last, so that filling it costs linear time. What was
// written stays in `out` when the writer goes, also on a failure.
class PQJsonOrder::Writer {
public:
    Writer(PQSourceOrderPieceWrapper& out, std::size_t room, bool escape)
        : m_out(out), m_escape(escape) {
        open(room);
    }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;
    ~Writer() { close(); }

    void append(std::string_view text) {
        if (!text.empty()) {
            std::memcpy(take(text.size()), text.data(), text.size());
        }
    }
    void appendValue(std::string_view text) {
        if (!m_escape) {
            append(text);
            return;
        }
        // Each byte to escape becomes a backslash and a byte; a run of them
        // is written at once.
        std::size_t from = 0;
        for (std::size_t at = kToEscape.find(text); at != std::string_view::npos;
             at = kToEscape.find(text, from)) {
            append(text.substr(from, at - from));
            for (from = at + 1; from < text.size() && kToEscape.contains(text[from]);) {
                ++from;
            }
            char* to = take(2 * (from - at));
            for (; at < from; ++at) {
                *to++ = '\\';
                *to++ = kJsonTables.escapeCode[static_cast<unsigned char>(text[at])];
            }
        }
        append(text.substr(from));
    }
    // Without content, the piece fails as it always has.
    [[nodiscard]] static std::string_view stored(const PQOrderPiece& piece) {
        const kstring* const text = piece.m_value.content();
        return text != nullptr ? *text : *piece.m_value.getStringSource();
    }
    void appendRendered(const PQOrderPiece& piece) {
        appendValue(*piece.get_localOrderString().getStringSource());
    }
    // A node of a derived class appends to `out` itself.
    void renderItself(const PQOrder& node) {
        close();
        if (m_escape) {
            node.get_localOrderString(m_out);
        } else {
            node.get_localOrderString_noEscape(m_out);
        }
        open(0);
    }

private:
    // The text is zero-filled up to the end of the room, so that the cursor
    // writes inside it, and cut back to what was written on closing.
    // The text is asked for each time: making room may move it to a new
    // string.
    void open(std::size_t room) {
        m_text = &m_out.roomFor(room);
        m_opened = m_text->size();
        m_text->resize(m_opened + room);
        m_at = m_text->data() + m_opened;
        m_end = m_text->data() + m_text->size();
    }
    void close() noexcept {
        if (m_at != nullptr) {
            m_text->resize(written());
            m_at = m_end = nullptr;
        }
    }
    [[nodiscard]] std::size_t written() const noexcept {
        return static_cast<std::size_t>(m_at - m_text->data());
    }
    char* take(std::size_t size) {
        if (static_cast<std::size_t>(m_end - m_at) < size) {
            extend(size);
        }
        char* const at = m_at;
        m_at += size;
        return at;
    }
    // Out of line, so that take() stays small enough to be inlined at every write.
    [[gnu::noinline]] void extend(std::size_t size) {
        const std::size_t room = std::max(size, written() - m_opened);
        close();
        open(room);
    }

    PQSourceOrderPieceWrapper& m_out;
    kstring* m_text = nullptr;
    bool m_escape;
    char* m_at = nullptr;
    char* m_end = nullptr;
    std::size_t m_opened = 0;
};

template <class Sink> void PQJsonOrder::walk(Shape shape, Sink& sink, bool escape) const {
    const char* const function = escape ? "get_localOrderString" : "get_localOrderString_noEscape";
    // How a child node writes itself, when it is one of the four node classes
    // and not a class derived from them (which may render in its own way).
    // The type objects are compared by address first: the usual case, which
    // needs no comparison of their names.
    const auto shapeOf = [](const PQOrder& node) -> std::optional<Shape> {
        struct Kind {
            const std::type_info* type;
            Shape shape;
        };
        static constexpr std::array<Kind, 4> kinds{{{&typeid(PQJsonString), Shape::String},
                                                    {&typeid(PQJsonObject), Shape::Object},
                                                    {&typeid(PQJsonArray), Shape::Array},
                                                    {&typeid(PQJsonOrder), Shape::Root}}};
        const std::type_info& type = typeid(node);
        for (const Kind& kind : kinds) {
            if (kind.type == &type) {
                return kind.shape;
            }
        }
        for (const Kind& kind : kinds) {
            if (*kind.type == type) {
                return kind.shape;
            }
        }
        return std::nullopt;
    };
    const auto sourceOf = [](Shape container) {
        return container == Shape::Array ? internal::kJsonArraySource : pqSourceFile;
    };

    // The containers being written, innermost last, each with its pieces and
    // the index of the next one.
    struct Open {
        const std::vector<std::unique_ptr<PQOrderPiece>>* pieces;
        Shape shape;
        std::size_t next;
    };
    std::vector<Open> open;
    const auto enter = [&](const PQOrder& node, Shape nodeShape) {
        if (nodeShape == Shape::String) {
            // A string node is written whole: each piece's raw text.
            sink.append("\"");
            for (const std::unique_ptr<PQOrderPiece>& piece : node.get_listOrderPiece()) {
                if (piece->get_orderPieceType() == PQOrderPiece::TYPE_STRING) {
                    sink.appendValue(Sink::stored(*piece));
                } else {
                    sink.appendRendered(*piece);
                }
            }
            sink.append("\"");
            return;
        }
        sink.append(nodeShape == Shape::Array ? "[" : "{");
        if (open.empty()) {
            constexpr std::size_t kUsualDepth = 8;
            open.reserve(kUsualDepth);
        }
        open.push_back({&node.get_listOrderPiece(), nodeShape, 0});
    };

    enter(*this, shape);
    while (!open.empty()) {
        Open& top = open.back();
        const std::vector<std::unique_ptr<PQOrderPiece>>& pieces = *top.pieces;
        if (top.next == pieces.size()) {
            sink.append(top.shape == Shape::Array ? "]" : "}");
            open.pop_back();
            continue;
        }
        const PQOrderPiece& piece = *pieces[top.next];
        const Shape container = top.shape;
        const bool first = top.next++ == 0;
        const bool isNode = piece.get_orderPieceType() == PQOrderPiece::TYPE_ORDER;
        // A literal or number is written bare in an object, and in an array
        // only by the no-escape form; the root holds nodes only.
        if (!isNode && (container == Shape::Root || (container == Shape::Array && escape))) {
            throw frame::failure(kOnlyNodes, {function, sourceOf(container), __LINE__});
        }
        if (!first) {
            sink.append(",");
        }
        if (container != Shape::Array) {
            sink.append("\"");
            sink.append(piece.get_key()); // keys are written as they are
            sink.append("\":");
        }
        if (!isNode) {
            sink.append(Sink::stored(piece));
            continue;
        }
        const PQOrder& child = piece.nestedOrder(function);
        if (const std::optional<Shape> childShape = shapeOf(child)) {
            enter(child, *childShape);
        } else {
            sink.renderItself(child);
        }
    }
}

PQJsonOrder::PQJsonOrder(PQReceivedOrderType action) try
    : PQOrder(action, PQOrderType_ORDER_JSONORDER) {
    set_initialized(true);
}
PQ_CATCH_AND_TREAT

PQJsonOrder::PQJsonOrder(const PQJsonOrder& other) try : PQOrder(other) {}
PQ_CATCH_AND_TREAT

PQJsonOrder::~PQJsonOrder() = default;

std::unique_ptr<PQOrder> PQJsonOrder::clone() const try {
    checkCloneable(PQ_FRAME_SITE());
    return std::make_unique<PQJsonOrder>(*this);
}
PQ_CATCH_AND_TREAT

void PQJsonOrder::checkCloneable(const frame::PQSite& site) const {
    if (get_orderType() != PQOrderType_ORDER_JSONORDER) {
        throw frame::assertionFailure("get_orderType() == PQOrderType_ORDER_JSONORDER", {}, site);
    }
}

PQSecuredString PQJsonOrder::get_orderString() const try {
    const kstring action = get_action();
    const PQSourceOrderWrapper content = get_jsonOrderString();
    const kstring& json = *content.getStringSource();
    constexpr std::string_view kAction = "action=";
    constexpr std::string_view kContent = "&content=";
    constexpr std::string_view kEnd = "&//";
    PQWipedString text;
    text.get().reserve(kAction.size() + action.size() + kContent.size() + json.size() +
                       kEnd.size());
    text.get().append(kAction).append(action).append(kContent).append(json).append(kEnd);
    return PQSecuredString(std::move(text.get()));
}
PQ_CATCH_AND_TREAT

PQSourceOrderWrapper PQJsonOrder::get_jsonOrderString() const try {
    // The tree is rendered twice and the first text dropped, as the product
    // has always done; a failure of the first rendering stops the call.
    {
        PQSourceOrderPieceWrapper dropped;
        get_localOrderString(dropped);
    }
    PQSourceOrderPieceWrapper json;
    get_localOrderString(json);
    const kstring& text = *json.getStringSource();
    // "&", "//" and "=" to their tokens, then line feeds to "--endl--", in
    // one pass: no token holds a byte that another step replaces.
    PQWipedString content;
    internal::appendOrderEscaped(content.get(), text, internal::orderEscapedBound(text, true),
                                 true);
    return PQSourceOrderWrapper(std::move(content.get()));
}
PQ_CATCH_AND_TREAT

PQSecuredString PQJsonOrder::get_localOrderString() const try {
    PQSourceOrderPieceWrapper out;
    get_localOrderString(out);
    return {std::move(out)}; // NOLINT(cppcoreguidelines-slicing): the buffer adds no state
}
PQ_CATCH_AND_TREAT

PQSecuredString PQJsonOrder::get_localOrderString_noEscape() const try {
    PQSourceOrderPieceWrapper out;
    get_localOrderString_noEscape(out);
    return {std::move(out)}; // NOLINT(cppcoreguidelines-slicing): the buffer adds no state
}
PQ_CATCH_AND_TREAT

void PQJsonOrder::get_localOrderString(PQSourceOrderPieceWrapper& out) const try {
    render(Shape::Root, out, true);
}
PQ_CATCH_AND_TREAT

void PQJsonOrder::get_localOrderString_noEscape(PQSourceOrderPieceWrapper& out) const try {
    render(Shape::Root, out, false);
}
PQ_CATCH_AND_TREAT

void PQJsonOrder::render(Shape shape, PQSourceOrderPieceWrapper& out, bool escape) const {
    // Sized first, so that the text is written into room made once: no copy
    // of it is left behind as it grows. A failure stops the sizing where the
    // writing will fail, after writing what comes before it.
    Sizer sizer(escape);
    try {
        walk(shape, sizer, escape);
    } catch (const PQException&) { // NOLINT(bugprone-empty-catch): the writing pass reports it
    }
    Writer writer(out, sizer.size(), escape);
    walk(shape, writer, escape);
}

PQJsonOrder* PQJsonOrder::jsonNodeOf(const PQOrderPiece& piece) noexcept {
    return dynamic_cast<PQJsonOrder*>(piece.m_orderPieceValue.get());
}

const kstring* PQJsonOrder::storedText(const PQOrderPiece& piece) noexcept {
    return piece.get_orderPieceType() == PQOrderPiece::TYPE_STRING ? piece.m_value.content()
                                                                   : nullptr;
}

kstring PQJsonOrder::valueText(bool value) { return value ? "true" : "false"; }

kstring PQJsonOrder::valueText(int value) {
    return PQ_DEBUG::PQDebugString::fromIntToWstring(value);
}

kstring PQJsonOrder::valueText(double value) { return PQString::fromDoubleToWstring(value, 2); }

bool PQJsonOrder::isJSonString() const { return false; }

bool PQJsonOrder::isJSonObject() const { return false; }

bool PQJsonOrder::isJSonArray() const { return false; }

void PQJsonOrder::addValue(const kstring& key, std::unique_ptr<PQJsonOrder> value) try {
    add_orderPiece(key, std::unique_ptr<PQOrder>(std::move(value)));
}
PQ_CATCH_AND_TREAT

void PQJsonOrder::addValue(const kstring& key, kstring value) try {
    addValue(key, std::make_unique<PQJsonString>(std::move(value)));
}
PQ_CATCH_AND_TREAT

void PQJsonOrder::addValue_noCheck(const kstring& key, std::unique_ptr<PQJsonOrder> value) try {
    add_orderPiece_noCheck(key, std::unique_ptr<PQOrder>(std::move(value)));
}
PQ_CATCH_AND_TREAT

void PQJsonOrder::addValue_noCheck(const kstring& key, kstring value) try {
    addValue_noCheck(key, std::make_unique<PQJsonString>(std::move(value)));
}
PQ_CATCH_AND_TREAT

void PQJsonOrder::addValue_nostring(const kstring& key, const kstring& value) try {
    add_orderPiece_noCheck(key, value);
}
PQ_CATCH_AND_TREAT

bool PQJsonOrder::hasChildren() const try { throw frame::notAllowed(PQ_FRAME_SITE()); }
PQ_CATCH_AND_TREAT

PQJsonOrder* PQJsonOrder::getChildValue(const kstring& /*key*/) const try {
    throw frame::notAllowed(PQ_FRAME_SITE());
}
PQ_CATCH_AND_TREAT

kstring PQJsonOrder::getChildValue_nostring(const kstring& /*key*/) const try {
    throw frame::notAllowed(PQ_FRAME_SITE());
}
PQ_CATCH_AND_TREAT

std::vector<kstring> PQJsonOrder::getKeys() const try { throw frame::notAllowed(PQ_FRAME_SITE()); }
PQ_CATCH_AND_TREAT

bool PQJsonOrder::childExists(const kstring& /*key*/) const try {
    throw frame::notAllowed(PQ_FRAME_SITE());
}
PQ_CATCH_AND_TREAT

kstring PQJsonOrder::getValue() const try { throw frame::notAllowed(PQ_FRAME_SITE()); }
PQ_CATCH_AND_TREAT

std::vector<PQJsonOrder*> PQJsonOrder::getChildrenValue() const try {
    throw frame::notAllowed(PQ_FRAME_SITE());
}
PQ_CATCH_AND_TREAT

void PQJsonOrder::updateValue(const kstring& key, std::unique_ptr<PQJsonOrder> value) try {
    update_orderPiece(key, std::unique_ptr<PQOrder>(std::move(value)));
}
PQ_CATCH_AND_TREAT

void PQJsonOrder::updateValue(const kstring& key, kstring value) try {
    updateValue(key, std::make_unique<PQJsonString>(std::move(value)));
}
PQ_CATCH_AND_TREAT

void PQJsonOrder::updateValue_nostring(const kstring& key, const kstring& value) try {
    update_orderPiece(key, value);
}
PQ_CATCH_AND_TREAT

void PQJsonOrder::removeValue(const kstring& key) try { delete_orderPiece(key); }
PQ_CATCH_AND_TREAT

} // namespace PQ_UTILS
