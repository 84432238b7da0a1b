#include "PQUtils/Orders/PQReceivedOrderType.h"

#include <array>

#include "PQUtils/Orders/PQVocabularyInternal.h"

namespace PQ_UTILS {
namespace {

constexpr const char* pqSourceFile = "CppLibrairies/SourceCode/PQUtils/Orders/PQReceivedOrderType";

constexpr std::array kRows{
#define PQ_RECEIVED_ORDER_TYPE_ROW(name, value) PQ_VOCABULARY_ROW(PQReceivedOrderType, name)
    PQ_RECEIVED_ORDER_TYPE_ROWS(PQ_RECEIVED_ORDER_TYPE_ROW)
#undef PQ_RECEIVED_ORDER_TYPE_ROW
};

} // namespace

PQ_VOCABULARY_FUNCTIONS(PQReceivedOrderType)

} // namespace PQ_UTILS
