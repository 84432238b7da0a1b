#include "PQUtils/Utils/PQInit.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>

#include <gtest/gtest.h>

#include "PQDebug/PQDebug.h"
#include "PQDebug/Resources/PQConst.h"
#include "PQUtils/Orders/PQOrderType.h"
#include "PQUtils/Orders/PQReceivedOrderType.h"
#include "PQUtils/Orders/ReceivedOrders/PQLoadingEventType.h"
#include "PQUtils/Utils/PQUtil.h"
#include "support/TestSupport.h"

// init() acts once per process, so every scenario runs in a child process of
// its own; this test program itself never calls init() nor logs.

using namespace PQ_UTILS;
using PQ_DEBUG::PQAdvancedConst;
using PQ_DEBUG::PQObjectType;

namespace {

template <class Body> void inFreshProcess(Body body) {
    EXPECT_EXIT(
        {
            body();
            std::exit(::testing::Test::HasFailure() ? 1 : 0);
        },
        ::testing::ExitedWithCode(0), "");
}

// Whether the value-to-name table of `tableId` is registered and not freed.
bool isBuilt(PQObjectType tableId) {
    const auto& registry = PQAdvancedConst::get_intToWstringMap_g();
    const auto found = registry.find(tableId);
    return found != registry.end() && found->second;
}

bool isRegistered(PQObjectType tableId) {
    return PQAdvancedConst::get_intToWstringMap_g().count(tableId) != 0;
}

constexpr PQObjectType kVocabularies[] = {PQ_DEBUG::PQObjectType_PQOrderType,
                                          PQ_DEBUG::PQObjectType_PQReceivedOrderType,
                                          PQ_DEBUG::PQObjectType_PQLoadingEventType};

} // namespace

TEST(PQInit, FirstCallBuildsEverythingAndLogsItsTitles) {
    inFreshProcess([] {
        EXPECT_TRUE(PQUtil::euro.empty()); // nothing before init
        EXPECT_FALSE(isRegistered(PQ_DEBUG::PQObjectType_PQOrderType));
        const pqtest::ScopedLogLevel level(PQ_DEBUG::PQLogType_PQUTILS, 3);
        const pqtest::LogCapture log;
        PQInit::init();

        const auto records = log.records();
        ASSERT_EQ(records.size(), 2U);
        EXPECT_EQ(records[0].text, PQ_DEBUG::PQDebug::getTitle_begin("Initialisation PQUtils"));
        EXPECT_EQ(records[1].text, PQ_DEBUG::PQDebug::getTitle_end("Initialisation PQUtils"));
        EXPECT_EQ(records[0].logType, PQ_DEBUG::PQLogType_PQUTILS);
        EXPECT_EQ(records[0].errorCode, PQ_DEBUG::PQDebug::get_ERRORCODE_NOTICE());
        for (const PQObjectType table : kVocabularies) {
            EXPECT_TRUE(isBuilt(table)) << table;
        }
        EXPECT_TRUE(isBuilt(PQ_DEBUG::PQObjectType_PQObjectType));
        EXPECT_EQ(PQUtil::euro, "\xE2\x82\xAC");

        // A second call logs nothing and initialises nothing: freed tables
        // stay freed.
        PQInit::clean();
        PQInit::init();
        EXPECT_EQ(log.records().size(), 2U);
        for (const PQObjectType table : kVocabularies) {
            EXPECT_FALSE(isBuilt(table)) << table;
        }
    });
}

TEST(PQInit, BelowTheLevelItInitialisesSilently) {
    inFreshProcess([] {
        const pqtest::ScopedLogLevel level(PQ_DEBUG::PQLogType_PQUTILS, 2);
        const pqtest::LogCapture log;
        PQInit::init();
        EXPECT_TRUE(log.records().empty());
        for (const PQObjectType table : kVocabularies) {
            EXPECT_TRUE(isBuilt(table)) << table;
        }
    });
}

TEST(PQInit, CleanFreesTablesThatTheNextLookupRebuilds) {
    inFreshProcess([] {
        PQInit::init();
        PQInit::clean();
        for (const PQObjectType table : kVocabularies) {
            EXPECT_TRUE(isRegistered(table)) << table; // the key stays, its table is gone
            EXPECT_FALSE(isBuilt(table)) << table;
        }
        EXPECT_FALSE(isBuilt(PQ_DEBUG::PQObjectType_PQObjectType));

        EXPECT_EQ(*PQ_DEBUG::getWstringFromIntT<PQOrderType>(PQ_DEBUG::PQObjectType_PQOrderType,
                                                             PQOrderType_ORDER_AUTH_STATUS,
                                                             &initialize_public_PQOrderType),
                  "ORDER_AUTH_STATUS");
        EXPECT_EQ(PQ_DEBUG::getIntFromWstringT<PQReceivedOrderType>(
                      PQ_DEBUG::PQObjectType_PQReceivedOrderType, "log",
                      &initialize_public_PQReceivedOrderType),
                  PQReceivedOrderType_log);
        EXPECT_EQ(PQUtil().get_objectType(), PQ_DEBUG::PQObjectType_PQUtil);
    });
}

TEST(PQInit, CleanBeforeAnyTableOnlyStopsTheDebugLibrary) {
    inFreshProcess([] {
        PQInit::clean();
        for (const PQObjectType table : kVocabularies) {
            EXPECT_FALSE(isRegistered(table)) << table;
        }
    });
}

TEST(PQInit, LogFileNamedByTheEnvironmentAtStart) {
    const std::string path = ::testing::TempDir() + "pqinit_env_" + std::to_string(::getpid());
    inFreshProcess([&path] {
        ::setenv("PQ_LOG_FILE", path.c_str(), 1);
        const pqtest::ScopedLogLevel level(PQ_DEBUG::PQLogType_PQUTILS, 3);
        PQInit::init();
        PQ_DEBUG::PQDebug::setLogFile(""); // closes it
        std::ifstream in(path);
        const std::string log((std::istreambuf_iterator<char>(in)), {});
        EXPECT_NE(log.find("Initialisation PQUtils : end"), std::string::npos) << log;
    });
    std::remove(path.c_str());
}
