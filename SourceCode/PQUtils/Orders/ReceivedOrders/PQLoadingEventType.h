#pragma once

#include <span>

#include "PQDebug/Resources/PQConst.h"

namespace PQ_UTILS {

// Page-loading events reported by the browser plug-ins: 12 names, table
// identifier 66. Each ROW(name, value) gives the enumerator
// PQLoadingEventType_<name> and the name "<name>".
// clang-format off
#define PQ_LOADING_EVENT_TYPE_ROWS(ROW) \
    ROW(NO_TYPE, -1)                    \
    ROW(LOAD_STARTS, 0)                 \
    ROW(BEFORE_UNLOAD, 1)               \
    ROW(TAB_OPENED, 2)                  \
    ROW(TAB_CLOSED, 3)                  \
    ROW(UNLOAD, 4)                      \
    ROW(DOM_NODE_INSERTED, 5)           \
    ROW(BACK_CLICKED, 6)                \
    ROW(FORWARD_CLICKED, 7)             \
    ROW(RELOAD_CLICKED, 8)              \
    ROW(STOP_CLICKED, 9)                \
    ROW(HOME_CLICKED, 10)
// clang-format on

enum PQLoadingEventType : int {
#define PQ_LOADING_EVENT_TYPE_ENUMERATOR(name, value) PQLoadingEventType_##name = (value),
    PQ_LOADING_EVENT_TYPE_ROWS(PQ_LOADING_EVENT_TYPE_ENUMERATOR)
#undef PQ_LOADING_EVENT_TYPE_ENUMERATOR
};

// Fills the PQLoadingEventType table when it is empty, then its reverse. Passed as the
// initialisation function to every lookup, so the table is also built on
// first use.
void initialize_public_PQLoadingEventType();

// The rows of the table, in declaration order.
[[nodiscard]] std::span<const PQ_DEBUG::PQVocabularyRow<PQLoadingEventType>>
get_PQLoadingEventTypeRows();

} // namespace PQ_UTILS
