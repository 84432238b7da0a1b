#include "PQUtils/Orders/PQReceivedOrderType.h"

#include <array>

#include "PQUtils/Utils/PQFailure.h"

namespace PQ_UTILS {
namespace {

constexpr const char* pqSourceFile = "CppLibrairies/SourceCode/PQUtils/Orders/PQReceivedOrderType";

constexpr std::array kRows{
#define PQ_RECEIVED_ORDER_TYPE_ROW(name, value)                                                    \
    PQ_DEBUG::PQVocabularyRow<PQReceivedOrderType>{PQReceivedOrderType_##name, #name},
    PQ_RECEIVED_ORDER_TYPE_ROWS(PQ_RECEIVED_ORDER_TYPE_ROW)
#undef PQ_RECEIVED_ORDER_TYPE_ROW
};

} // namespace

void initialize_public_PQReceivedOrderType() try {
    PQ_DEBUG::fillNameTable<PQReceivedOrderType>(PQ_DEBUG::PQObjectType_PQReceivedOrderType,
                                                 &initialize_public_PQReceivedOrderType, kRows);
}
PQ_CATCH_AND_TREAT_CONTEXT("initialize")

std::span<const PQ_DEBUG::PQVocabularyRow<PQReceivedOrderType>> get_PQReceivedOrderTypeRows() {
    return kRows;
}

} // namespace PQ_UTILS
