#include "PQUtils/Orders/Json/PQJsonString.h"

#include <utility>

#include "PQUtils/Orders/Json/PQJsonInternal.h"

namespace PQ_UTILS {
namespace {

constexpr const char* pqSourceFile = internal::kJsonStringSource;

} // namespace

PQ_JSON_NODE_MEMBERS(PQJsonString, Shape::String)

PQJsonString::PQJsonString(const kstring& value) try : PQJsonString(kstring(value)) {}
PQ_CATCH_AND_TREAT

PQJsonString::PQJsonString(kstring&& value) try : PQJsonOrder(PQReceivedOrderType_NO_TYPE) {
    add_orderPiece_noCheck(std::make_unique<PQOrderPiece>(kstring(), std::move(value)));
}
PQ_CATCH_AND_TREAT

PQJsonString::PQJsonString(const std::unique_ptr<kstring>& value) try
    : PQJsonString(value ? *value : kstring()) {}
PQ_CATCH_AND_TREAT

PQSecuredString PQJsonString::get_pieceValue() const try {
    const auto& pieces = get_listOrderPiece();
    if (pieces.empty()) {
        return {};
    }
    // A text piece is read in place; any other gives its rendering.
    if (const kstring* const stored = storedText(*pieces.front())) {
        return internal::unescapedJson(*stored);
    }
    return internal::unescapedJson(*pieces.front()->get_localOrderString().getStringSource());
}
PQ_CATCH_AND_TREAT

bool PQJsonString::isJSonString() const { return true; }

kstring PQJsonString::getValue() const try {
    const PQOrderPiece* const piece = get_orderPiece(kstring());
    PQ_CHECK_NULL(piece);
    return *piece->get_pieceValue().getStringSource();
}
PQ_CATCH_AND_TREAT

} // namespace PQ_UTILS
