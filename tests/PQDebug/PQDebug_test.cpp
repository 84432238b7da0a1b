#include "PQDebug/PQDebug.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include "PQDebug/PQException.h"
#include "PQDebug/PQUtil_macosx.h"
#include "PQDebug/PQUtil_macosxInternal.h"
#include "support/TestSupport.h"

using PQ_DEBUG::PQDebug;
using PQ_DEBUG::PQLogType_PQUTILS;
using PQ_DEBUG::PQLogType_TRACE;

TEST(PQDebug, LevelsArePerLogType) {
    const pqtest::ScopedLogLevel utils(PQLogType_PQUTILS, 3);
    const pqtest::ScopedLogLevel trace(PQLogType_TRACE, 0);
    EXPECT_TRUE(PQDebug::mustLogDependingOnLogLevel(PQLogType_PQUTILS, 3));
    EXPECT_FALSE(PQDebug::mustLogDependingOnLogLevel(PQLogType_PQUTILS, 4));
    EXPECT_FALSE(PQDebug::mustLogDependingOnLogLevel(PQLogType_TRACE, 1));
    EXPECT_TRUE(PQDebug::mustLogDependingOnLogLevel(PQLogType_TRACE, 0));
    EXPECT_EQ(PQDebug::getLogLevel(static_cast<PQ_DEBUG::PQLogType>(-7)),
              PQDebug::kDefaultLogLevel);
}

TEST(PQDebug, EachCallMakesOneRecordAsGiven) {
    const pqtest::LogCapture log;
    PQDebug::LogToConsoleAndFileNow(PQDebug::get_ERRORCODE_NOTICE(), 2, "plain", true, 300);
    PQDebug::LogToConsoleAndFileNow(7, 2, "PQOrder", "with source", true, 300);
    PQDebug::Trace_Debug("Trace message from : \n\nfind\n\nline", false);

    const auto records = log.records();
    ASSERT_EQ(records.size(), 3U);
    EXPECT_EQ(records[0].errorCode, PQDebug::get_ERRORCODE_NOTICE());
    EXPECT_EQ(records[0].logType, PQLogType_PQUTILS);
    EXPECT_EQ(records[0].source, "");
    EXPECT_EQ(records[0].text, "plain");
    EXPECT_EQ(records[1].errorCode, 7);
    EXPECT_EQ(records[1].source, "PQOrder");
    EXPECT_EQ(records[1].text, "with source");
    EXPECT_EQ(records[2].logType, PQLogType_TRACE);
    EXPECT_EQ(records[2].text, "Trace message from : \n\nfind\n\nline");
}

TEST(PQDebug, LongTextsAreCappedWithAMarker) {
    const pqtest::LogCapture log;
    const std::string huge(PQDebug::kMaxRecordText + 1234, 'x');
    PQDebug::Trace_Debug(huge, false);
    PQDebug::Trace_Debug(std::string(PQDebug::kMaxRecordText, 'y'), false);

    const auto records = log.records();
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records[0].text,
              std::string(PQDebug::kMaxRecordText, 'x') + "... [1234 more bytes cut]");
    EXPECT_EQ(records[1].text.size(), PQDebug::kMaxRecordText); // exactly at the cap: kept whole
}

namespace {

std::string tempPath(const char* name) {
    return ::testing::TempDir() + name + std::to_string(::getpid());
}

std::vector<std::string> readLines(const std::string& path) {
    std::ifstream in(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    return lines;
}

} // namespace

TEST(PQDebug, DefaultOutputWritesOneEscapedLinePerRecord) {
    const std::string path = tempPath("pqdebug_escape_");
    PQDebug::setLogFile(path);
    PQDebug::LogToConsoleAndFileNow(0, 2, "PQOrder", "forged\nline\x01", true, 300);
    PQDebug::setLogFile("");

    const auto lines = readLines(path);
    std::remove(path.c_str());
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_NE(lines[0].find("PQOrder@300: forged\\nline\\x01"), std::string::npos) << lines[0];
}

TEST(PQDebug, UnopenableLogFileIsReportedAndTheOldOneKept) {
    EXPECT_THROW(PQDebug::setLogFile("/nonexistent-dir/pq.log"), PQ_DEBUG::PQException);
}

TEST(PQDebug, ComputerNameIsTheHostsName) {
    const std::string name = PQDEBUG_MACOSX::PQUtil_macosx::getComputerName();
    EXPECT_FALSE(name.empty());
    EXPECT_EQ(name.find('\0'), std::string::npos);
    // Both system sources name the same host.
    EXPECT_EQ(name, PQDEBUG_MACOSX::internal::hostNameFromSystem());
    EXPECT_EQ(name, PQDEBUG_MACOSX::internal::hostNameFromUname());
}

namespace {
std::string noName() { return {}; }
std::string nameA() { return "a"; }
std::string nameB() { return "b"; }
} // namespace

// Where a system gives no name, the next source is asked.
TEST(PQDebug, ComputerNameFallsBackSourceBySource) {
    using PQDEBUG_MACOSX::internal::HostNameSource;
    const struct {
        std::vector<HostNameSource> sources;
        std::string name;
    } rows[] = {{{nameA, nameB}, "a"}, {{noName, noName, nameB}, "b"}, {{noName}, ""}, {{}, ""}};
    for (const auto& row : rows) {
        EXPECT_EQ(PQDEBUG_MACOSX::internal::firstHostName(row.sources), row.name);
    }

    ::unsetenv("HOSTNAME");     // NOLINT(concurrency-mt-unsafe)
    ::unsetenv("COMPUTERNAME"); // NOLINT(concurrency-mt-unsafe)
    EXPECT_EQ(PQDEBUG_MACOSX::internal::hostNameFromEnvironment(), "");
    ::setenv("COMPUTERNAME", "desk-2", 1); // NOLINT(concurrency-mt-unsafe)
    EXPECT_EQ(PQDEBUG_MACOSX::internal::hostNameFromEnvironment(), "desk-2");
    ::setenv("HOSTNAME", "desk-1", 1); // NOLINT(concurrency-mt-unsafe)
    EXPECT_EQ(PQDEBUG_MACOSX::internal::hostNameFromEnvironment(), "desk-1");
    ::unsetenv("HOSTNAME");     // NOLINT(concurrency-mt-unsafe)
    ::unsetenv("COMPUTERNAME"); // NOLINT(concurrency-mt-unsafe)
}

TEST(PQDebug, RecordsFromManyThreadsNeverInterleave) {
    const std::string path = tempPath("pqdebug_threads_");
    PQDebug::setLogFile(path);
    constexpr int kThreads = 4;
    constexpr int kRecords = 100;
    const std::string payload = std::string(300, 'p').append("|");
    {
        std::vector<std::thread> threads;
        threads.reserve(kThreads);
        for (int t = 0; t < kThreads; ++t) {
            threads.emplace_back([source = std::to_string(t), &payload] {
                for (int i = 0; i < kRecords; ++i) {
                    PQDebug::LogToConsoleAndFileNow(0, 2, source, payload, false, 1);
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
    PQDebug::setLogFile("");

    const auto lines = readLines(path);
    std::remove(path.c_str());
    ASSERT_EQ(lines.size(), static_cast<std::size_t>(kThreads * kRecords));
    for (const std::string& line : lines) {
        ASSERT_TRUE(line.ends_with(": " + payload)) << line;
    }
}
