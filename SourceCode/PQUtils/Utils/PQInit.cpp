#include "PQUtils/Utils/PQInit.h"

#include <atomic>
#include <string>

#include "PQDebug/PQDebug.h"
#include "PQDebug/PQInit.h"
#include "PQDebug/Resources/PQConst.h"
#include "PQUtils/Orders/PQOrderType.h"
#include "PQUtils/Orders/PQReceivedOrderType.h"
#include "PQUtils/Orders/ReceivedOrders/PQLoadingEventType.h"
#include "PQUtils/Utils/PQString.h"
#include "PQUtils/Utils/PQUtil.h"

namespace PQ_UTILS {

// PQInit's state. Atomic so that a host may read the cleaning flag from any
// thread; init itself is meant for one thread at start.
class PQInit_p {
public:
    static inline std::atomic<bool> m_sInitializationHasBeDone_main{false};
    static inline std::atomic<bool> m_cleaningHasBegin{false};
};

namespace {

void logInitialisationTitle(std::string (*decorate)(const std::string&)) {
    using PQ_DEBUG::PQDebug;
    if (PQDebug::mustLogDependingOnLogLevel(PQ_DEBUG::PQLogType_PQUTILS, 3)) {
        PQDebug::LogToConsoleAndFileNow(PQDebug::get_ERRORCODE_NOTICE(),
                                        PQ_DEBUG::PQLogType_PQUTILS,
                                        decorate("Initialisation PQUtils"), true, 300);
    }
}

} // namespace

void PQInit::init() {
    // Set before any work: a failure below is not retried by a later call.
    if (PQInit_p::m_sInitializationHasBeDone_main.exchange(true)) {
        return;
    }
    logInitialisationTitle(&PQ_DEBUG::PQDebug::getTitle_begin);
    PQ_DEBUG::PQInit::init();
    PQString::initialyze_public();
    initialize_public_PQOrderType();
    PQUtil::initializePublic();
    initialize_public_PQReceivedOrderType();
    initialize_public_PQLoadingEventType();
    logInitialisationTitle(&PQ_DEBUG::PQDebug::getTitle_end);
}

void PQInit::clean() {
    PQ_DEBUG::cleanMaps<PQOrderType>(PQ_DEBUG::PQObjectType_PQOrderType);
    PQ_DEBUG::cleanMaps<PQReceivedOrderType>(PQ_DEBUG::PQObjectType_PQReceivedOrderType);
    PQ_DEBUG::cleanMaps<PQLoadingEventType>(PQ_DEBUG::PQObjectType_PQLoadingEventType);
    PQ_DEBUG::PQInit::clean();
}

void PQInit::signalCleaningHasBegin() { PQInit_p::m_cleaningHasBegin = true; }

void PQInit::signalCleaningHasStopped() { PQInit_p::m_cleaningHasBegin = false; }

bool PQInit::hasCleaningBegun() { return PQInit_p::m_cleaningHasBegin; }

} // namespace PQ_UTILS
