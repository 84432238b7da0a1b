#include "PQUtils/Orders/Json/PQJsonOrder.h"

#include <utility>

#include "PQDebug/PQDebugString.h"
#include "PQUtils/Orders/Json/PQJsonInternal.h"
#include "PQUtils/Orders/Json/PQJsonString.h"
#include "PQUtils/Utils/PQFailure.h"
#include "PQUtils/Utils/PQOrderEscapeInternal.h"
#include "PQUtils/Utils/PQSecureMemory.h"
#include "PQUtils/Utils/PQString.h"

namespace PQ_UTILS {
namespace {

constexpr const char* pqSourceFile = internal::kJsonOrderSource;

} // namespace

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

void PQJsonOrder::checkCloneable(const PQ_DEBUG::PQTreatmentSite& site) const {
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
