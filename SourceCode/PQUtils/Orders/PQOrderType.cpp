#include "PQUtils/Orders/PQOrderType.h"

#include <array>

#include "PQUtils/Orders/PQVocabularyInternal.h"

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

PQ_VOCABULARY_FUNCTIONS(PQOrderType)

} // namespace PQ_UTILS
