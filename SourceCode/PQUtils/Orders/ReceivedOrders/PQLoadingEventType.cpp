#include "PQUtils/Orders/ReceivedOrders/PQLoadingEventType.h"

#include <array>

#include "PQUtils/Orders/PQVocabularyInternal.h"

namespace PQ_UTILS {
namespace {

constexpr const char* pqSourceFile =
    "CppLibrairies/SourceCode/PQUtils/Orders/ReceivedOrders/PQLoadingEventType";

constexpr std::array kRows{
#define PQ_LOADING_EVENT_TYPE_ROW(name, value) PQ_VOCABULARY_ROW(PQLoadingEventType, name)
    PQ_LOADING_EVENT_TYPE_ROWS(PQ_LOADING_EVENT_TYPE_ROW)
#undef PQ_LOADING_EVENT_TYPE_ROW
};

} // namespace

PQ_VOCABULARY_FUNCTIONS(PQLoadingEventType)

} // namespace PQ_UTILS
