#include "PQUtils/Orders/ReceivedOrders/PQLoadingEventType.h"

#include <array>

#include "PQUtils/Utils/PQFailure.h"

namespace PQ_UTILS {
namespace {

constexpr const char* pqSourceFile =
    "CppLibrairies/SourceCode/PQUtils/Orders/ReceivedOrders/PQLoadingEventType";

constexpr std::array kRows{
#define PQ_LOADING_EVENT_TYPE_ROW(name, value)                                                     \
    PQ_DEBUG::PQVocabularyRow<PQLoadingEventType>{PQLoadingEventType_##name, #name},
    PQ_LOADING_EVENT_TYPE_ROWS(PQ_LOADING_EVENT_TYPE_ROW)
#undef PQ_LOADING_EVENT_TYPE_ROW
};

} // namespace

void initialize_public_PQLoadingEventType() try {
    PQ_DEBUG::fillNameTable<PQLoadingEventType>(PQ_DEBUG::PQObjectType_PQLoadingEventType,
                                                &initialize_public_PQLoadingEventType, kRows);
}
PQ_CATCH_AND_TREAT_CONTEXT("initialize")

std::span<const PQ_DEBUG::PQVocabularyRow<PQLoadingEventType>> get_PQLoadingEventTypeRows() {
    return kRows;
}

} // namespace PQ_UTILS
