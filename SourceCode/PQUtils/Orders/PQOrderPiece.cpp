#include "PQUtils/Orders/PQOrderPiece.h"

#include <utility>

#include "PQUtils/Orders/PQOrder.h"
#include "PQUtils/Utils/PQBlockPoolInternal.h"
#include "PQUtils/Utils/PQFailure.h"

namespace PQ_UTILS {
namespace {

constexpr const char* pqSourceFile = "CppLibrairies/SourceCode/PQUtils/Orders/PQOrder";

// A nested order renders only once it is marked initialized. The check is
// reported from the order's header, where the product keeps it.
void checkNestedInitialized(const std::unique_ptr<PQOrder>& m_orderPieceValue,
                            const char* function) {
    constexpr const char* pqSourceFile = "../../SourceCode/PQUtils/Orders/PQOrder.h";
    if (!m_orderPieceValue->get_initialized()) {
        throw frame::assertionFailure("m_orderPieceValue->get_initialized()", {},
                                      {function, pqSourceFile, __LINE__});
    }
}

} // namespace

PQOrderPiece::PQOrderPiece(std::string key, std::string value) try
    : m_key(std::move(key)), m_value(std::move(value)), m_orderPieceType(TYPE_STRING) {}
PQ_CATCH_AND_TREAT

PQOrderPiece::PQOrderPiece(std::string key, std::unique_ptr<PQOrder> order) try
    : m_key(std::move(key)), m_orderPieceValue(std::move(order)), m_orderPieceType(TYPE_ORDER) {
    PQ_CHECK_NULL(m_orderPieceValue.get());
}
PQ_CATCH_AND_TREAT

PQOrderPiece::PQOrderPiece(const PQOrderPiece& other) try
    : PQIdentifiable(other), m_key(other.m_key), m_value(other.m_value),
      m_orderPieceValue(other.m_orderPieceValue ? other.m_orderPieceValue->clone() : nullptr),
      m_orderPieceType(other.m_orderPieceType) {}
PQ_CATCH_AND_TREAT

PQOrderPiece::PQOrderPiece(PQOrderPiece&& other) noexcept = default;

PQOrderPiece::~PQOrderPiece() = default;

PQ_POOLED_ALLOCATION_OF(PQOrderPiece)

const PQOrder& PQOrderPiece::nestedOrder(const char* function) const {
    if (m_orderPieceType != TYPE_ORDER) {
        throw frame::assertionFailure("m_orderPieceType == PQOrderPiece::TYPE_ORDER", {},
                                      {function, pqSourceFile, __LINE__});
    }
    checkNestedInitialized(m_orderPieceValue, function);
    return *m_orderPieceValue;
}

PQSecuredString PQOrderPiece::get_localOrderString() const try {
    if (m_orderPieceType == TYPE_STRING) {
        return PQSecuredString(*m_value.getStringSource());
    }
    return nestedOrder(__func__).get_localOrderString();
}
PQ_CATCH_AND_TREAT

void PQOrderPiece::get_localOrderString(PQSourceOrderPieceWrapper& out) const try {
    if (m_orderPieceType == TYPE_STRING) {
        out.append(*m_value.getStringSource());
        return;
    }
    nestedOrder(__func__).get_localOrderString(out);
}
PQ_CATCH_AND_TREAT

void PQOrderPiece::get_localOrderString_noEscape(PQSourceOrderPieceWrapper& out) const try {
    if (m_orderPieceType == TYPE_STRING) {
        out.append(*m_value.getStringSource());
        return;
    }
    nestedOrder(__func__).get_localOrderString_noEscape(out);
}
PQ_CATCH_AND_TREAT

PQSecuredString PQOrderPiece::get_pieceValue() const try {
    if (m_orderPieceType == TYPE_STRING) {
        return PQSecuredString(*m_value.getStringSource());
    }
    return nestedOrder(__func__).get_pieceValue();
}
PQ_CATCH_AND_TREAT

} // namespace PQ_UTILS
