#include "PQDebug/PQInit.h"

#include <cstdio>

#include "PQDebug/Resources/PQConst.h"

namespace PQ_DEBUG {
namespace {
bool s_initializationHasBeenDone = false;
} // namespace

void PQInit::init() {
    if (s_initializationHasBeenDone) {
        return;
    }
    s_initializationHasBeenDone = true;
    initialize_public_PQObjectType();
}

void PQInit::clean() {
    cleanMaps<PQObjectType>(PQObjectType_PQObjectType);
    std::fflush(nullptr);
}

} // namespace PQ_DEBUG
