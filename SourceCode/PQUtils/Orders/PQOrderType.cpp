#include "PQUtils/Orders/PQOrderType.h"

#include <array>

#include "PQUtils/Utils/PQFailure.h"

namespace PQ_UTILS {
namespace {

constexpr const char* pqSourceFile = "CppLibrairies/SourceCode/PQUtils/Orders/PQOrderType";

constexpr std::array kRows{
#define PQ_ORDER_TYPE_ROW(id, value) PQ_DEBUG::PQVocabularyRow<PQOrderType>{PQOrderType_##id, #id},
#define PQ_ORDER_TYPE_NAMED_ROW(id, value, name)                                                   \
    PQ_DEBUG::PQVocabularyRow<PQOrderType>{PQOrderType_##id, name},
    PQ_ORDER_TYPE_ROWS(PQ_ORDER_TYPE_ROW, PQ_ORDER_TYPE_NAMED_ROW)
#undef PQ_ORDER_TYPE_NAMED_ROW
#undef PQ_ORDER_TYPE_ROW
};

} // namespace

void initialize_public_PQOrderType() try {
    PQ_DEBUG::fillNameTable<PQOrderType>(PQ_DEBUG::PQObjectType_PQOrderType,
                                         &initialize_public_PQOrderType, kRows);
}
PQ_CATCH_AND_TREAT_CONTEXT("initialize")

std::span<const PQ_DEBUG::PQVocabularyRow<PQOrderType>> get_PQOrderTypeRows() { return kRows; }

} // namespace PQ_UTILS
