// Writing a JSON tree as text: the walk over the tree, and the writer that
// it feeds.

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <typeinfo>
#include <vector>

#include "PQUtils/Orders/Json/PQJsonArray.h"
#include "PQUtils/Orders/Json/PQJsonInternal.h"
#include "PQUtils/Orders/Json/PQJsonObject.h"
#include "PQUtils/Orders/Json/PQJsonOrder.h"
#include "PQUtils/Orders/Json/PQJsonString.h"
#include "PQUtils/Orders/PQOrder_p.h"
#include "PQUtils/Utils/PQByteSetInternal.h"
#include "PQUtils/Utils/PQFailure.h"

namespace PQ_UTILS {
namespace {

constexpr const char* kOnlyNodes = "All Json children must be TYPE_ORDER PQOrderPiece";

// The bytes of a string value that the writer escapes, found 16 at a time.
constexpr internal::ByteSet kToEscape("\\\"\n\t\v\r\f");

// For each byte, the byte written after the backslash that escapes it (0
// for a byte written as it is).
constexpr std::array<char, 256> kEscapeCode = [] {
    std::array<char, 256> table{};
    for (const internal::JsonEscape& row : internal::kJsonEscapes) {
        table[static_cast<unsigned char>(row.raw)] = row.escaped[1];
    }
    return table;
}();

static_assert(std::all_of(internal::kJsonEscapes.begin(), internal::kJsonEscapes.end(),
                          [](const internal::JsonEscape& row) {
                              return row.escaped.size() == 2 && row.escaped[0] == '\\' &&
                                     kToEscape.contains(row.raw);
                          }) &&
                  internal::kJsonEscapes.size() == 7,
              "the escaped bytes are the rows of kJsonEscapes, each a backslash and one byte");

} // namespace

// Writes into the text of `out` through a cursor, in the room made for it.
// Should that run out, the text moves to a larger buffer (the old one
// wiped), the room made each time at least as large as what was written
// since the last, so that filling it costs linear time. What was
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
    // What comes before a member: a comma unless it is the first, and in an
    // object its key as it is, quoted, and a colon. Made in one piece of room.
    void appendMemberStart(bool comma, bool keyed, std::string_view key) {
        const std::size_t size = (comma ? 1 : 0) + (keyed ? key.size() + 3 : 0);
        char* to = take(size);
        if (comma) {
            *to++ = ',';
        }
        if (keyed) {
            *to++ = '"';
            std::memcpy(to, key.data(), key.size());
            to += key.size();
            *to++ = '"';
            *to = ':';
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
                *to++ = kEscapeCode[static_cast<unsigned char>(text[at])];
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

// One walk over the tree under a node, feeding its text to a writer. It keeps
// its own stack of the containers being written, so that no depth of tree
// costs a call frame per level.
class PQJsonOrder::Walk {
public:
    Walk(Writer& sink, bool escape) noexcept
        : m_sink(sink), m_escape(escape),
          m_function(escape ? "get_localOrderString" : "get_localOrderString_noEscape") {}

    void run(const PQJsonOrder& node, Shape shape) {
        enter(node, shape);
        while (!m_open.empty()) {
            step();
        }
    }

private:
    // A container being written, with its pieces and the index of the next.
    struct Open {
        const std::vector<std::unique_ptr<PQOrderPiece>>* pieces;
        Shape shape;
        std::size_t next;
    };

    // How a child node writes itself, when it is one of the four node
    // classes and not a class derived from them (which may render in its
    // own way). The type objects are compared by address first: the usual
    // case, which needs no comparison of their names.
    static std::optional<Shape> shapeOf(const PQOrder& node) {
        struct Kind {
            const std::type_info* type;
            Shape shape;
        };
        static constexpr std::array<Kind, 4> kKinds{{{&typeid(PQJsonString), Shape::String},
                                                     {&typeid(PQJsonObject), Shape::Object},
                                                     {&typeid(PQJsonArray), Shape::Array},
                                                     {&typeid(PQJsonOrder), Shape::Root}}};
        const std::type_info& type = typeid(node);
        for (const Kind& kind : kKinds) {
            if (kind.type == &type) {
                return kind.shape;
            }
        }
        for (const Kind& kind : kKinds) {
            if (*kind.type == type) {
                return kind.shape;
            }
        }
        return std::nullopt;
    }

    // A node's pieces, read in place (the walk visits every node).
    static const std::vector<std::unique_ptr<PQOrderPiece>>&
    piecesOf(const PQOrder& node) noexcept {
        return node.m_pPrivateImp->m_listOrderPiece;
    }

    // A string node is written whole: each piece's raw text.
    void writeString(const PQOrder& node) {
        m_sink.append("\"");
        for (const std::unique_ptr<PQOrderPiece>& piece : piecesOf(node)) {
            if (piece->get_orderPieceType() == PQOrderPiece::TYPE_STRING) {
                m_sink.appendValue(Writer::stored(*piece));
            } else {
                m_sink.appendRendered(*piece);
            }
        }
        m_sink.append("\"");
    }

    void enter(const PQOrder& node, Shape shape) {
        if (shape == Shape::String) {
            writeString(node);
            return;
        }
        m_sink.append(shape == Shape::Array ? "[" : "{");
        if (m_open.empty()) {
            constexpr std::size_t kUsualDepth = 8;
            m_open.reserve(kUsualDepth);
        }
        m_open.push_back({&piecesOf(node), shape, 0});
    }

    // Writes the next piece of the innermost container, or closes it.
    void step() {
        Open& top = m_open.back();
        if (top.next == top.pieces->size()) {
            m_sink.append(top.shape == Shape::Array ? "]" : "}");
            m_open.pop_back();
            return;
        }
        const PQOrderPiece& piece = *(*top.pieces)[top.next];
        // A tree built in a process that has run for a while lies anywhere
        // in memory: the piece after next and what the next one points to
        // are asked for now, so that they arrive while this one is written.
        if (top.next + 2 < top.pieces->size()) {
            __builtin_prefetch((*top.pieces)[top.next + 2].get());
            const PQOrderPiece& following = *(*top.pieces)[top.next + 1];
            __builtin_prefetch(following.m_value.content());
            __builtin_prefetch(following.m_orderPieceValue.get());
        }
        const Shape container = top.shape;
        const bool first = top.next++ == 0;
        const bool isNode = piece.get_orderPieceType() == PQOrderPiece::TYPE_ORDER;
        // A literal or number is written bare in an object, and in an array
        // only by the no-escape form; the root holds nodes only.
        if (!isNode && (container == Shape::Root || (container == Shape::Array && m_escape))) {
            const char* const source =
                container == Shape::Array ? internal::kJsonArraySource : internal::kJsonOrderSource;
            throw frame::failure(kOnlyNodes, {m_function, source, __LINE__});
        }
        m_sink.appendMemberStart(!first, container != Shape::Array, piece.get_key());
        if (!isNode) {
            m_sink.append(Writer::stored(piece));
            return;
        }
        // The usual case read in place; anything else fails in nestedOrder.
        const PQOrder* const nested = piece.m_orderPieceValue.get();
        const PQOrder& child = nested != nullptr && nested->m_pPrivateImp->m_initialized
                                   ? *nested
                                   : piece.nestedOrder(m_function);
        if (const std::optional<Shape> childShape = shapeOf(child)) {
            enter(child, *childShape);
        } else {
            m_sink.renderItself(child);
        }
    }

    Writer& m_sink;
    bool m_escape;
    const char* m_function;
    std::vector<Open> m_open;
};

void PQJsonOrder::render(Shape shape, PQSourceOrderPieceWrapper& out, bool escape) const {
    // One walk, into room that doubles as it runs out (each buffer left is
    // wiped): cheaper than a first walk that sizes the text. The first room
    // guesses from the node's own pieces.
    constexpr std::size_t kRoomPerPiece = 32;
    Writer writer(out, kRoomPerPiece * (get_listOrderPiece().size() + 1), escape);
    Walk(writer, escape).run(*this, shape);
}

} // namespace PQ_UTILS
