#include "PQUtils/Orders/Json/PQJsonOrder.h"

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

// The escaped form of each byte; empty for a byte written as it is.
constexpr std::array<std::string_view, 256> kEscapeOf = [] {
    std::array<std::string_view, 256> table{};
    for (const internal::JsonEscape& row : internal::kJsonEscapes) {
        table[static_cast<unsigned char>(row.raw)] = row.escaped;
    }
    return table;
}();

} // namespace

void internal::appendJsonEscaped(PQSourceOrderPieceWrapper& out, std::string_view text) {
    std::size_t copied = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::string_view escaped = kEscapeOf[static_cast<unsigned char>(text[i])];
        if (!escaped.empty()) {
            out.append(text.substr(copied, i - copied));
            out.append(escaped);
            copied = i + 1;
        }
    }
    out.append(text.substr(copied));
}

void internal::unescapeJson(kstring& text) {
    for (const std::size_t row : kJsonUnescapeOrder) {
        PQString::self_replace(text, kstring(kJsonEscapes[row].escaped),
                               kstring(1, kJsonEscapes[row].raw));
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
    const char* const function = escape ? "get_localOrderString" : "get_localOrderString_noEscape";
    // How a child node writes itself, when it is one of the four node classes
    // and not a class derived from them (which may render in its own way).
    const auto shapeOf = [](const PQOrder& node) -> std::optional<Shape> {
        const std::type_info& type = typeid(node);
        if (type == typeid(PQJsonObject)) {
            return Shape::Object;
        }
        if (type == typeid(PQJsonArray)) {
            return Shape::Array;
        }
        if (type == typeid(PQJsonString)) {
            return Shape::String;
        }
        if (type == typeid(PQJsonOrder)) {
            return Shape::Root;
        }
        return std::nullopt;
    };
    // A string node is written whole: each piece's raw text, escaped or not.
    const auto writeString = [&out, escape](const PQOrder& node) {
        const auto writeRaw = [&out, escape](const kstring& raw) {
            if (escape) {
                internal::appendJsonEscaped(out, raw);
            } else {
                out.append(raw);
            }
        };
        out.append("\"");
        for (const std::unique_ptr<PQOrderPiece>& piece : node.get_listOrderPiece()) {
            if (piece->get_orderPieceType() == PQOrderPiece::TYPE_STRING) {
                writeRaw(*piece->m_value.getStringSource());
            } else {
                writeRaw(*piece->get_localOrderString().getStringSource());
            }
        }
        out.append("\"");
    };
    const auto sourceOf = [](Shape container) {
        return container == Shape::Array ? internal::kJsonArraySource : pqSourceFile;
    };

    // The containers being written, innermost last, each with the index of
    // its next piece.
    struct Open {
        const PQOrder* node;
        Shape shape;
        std::size_t next;
    };
    std::vector<Open> open;
    const auto enter = [&](const PQOrder& node, Shape nodeShape) {
        if (nodeShape == Shape::String) {
            writeString(node);
            return;
        }
        out.append(nodeShape == Shape::Array ? "[" : "{");
        open.push_back({&node, nodeShape, 0});
    };

    enter(*this, shape);
    while (!open.empty()) {
        Open& top = open.back();
        const std::vector<std::unique_ptr<PQOrderPiece>>& pieces = top.node->get_listOrderPiece();
        if (top.next == pieces.size()) {
            out.append(top.shape == Shape::Array ? "]" : "}");
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
            out.append(",");
        }
        if (container != Shape::Array) {
            out.append("\"");
            out.append(piece.get_key()); // keys are written as they are
            out.append("\":");
        }
        if (!isNode) {
            out.append(*piece.m_value.getStringSource());
            continue;
        }
        const PQOrder& child = piece.nestedOrder(function);
        if (const std::optional<Shape> childShape = shapeOf(child)) {
            enter(child, *childShape);
        } else if (escape) {
            child.get_localOrderString(out);
        } else {
            child.get_localOrderString_noEscape(out);
        }
    }
}

PQJsonOrder* PQJsonOrder::jsonNodeOf(const PQOrderPiece& piece) noexcept {
    return dynamic_cast<PQJsonOrder*>(piece.m_orderPieceValue.get());
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
