#include "PQUtils/Utils/PQFailure.h"

#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/TestSupport.h"

using PQ_DEBUG::PQLogType_EXCEPTION;
using PQ_UTILS::PQException;
using PQ_UTILS::PQNullPointerException;

namespace {

constexpr const char* pqSourceFile = "CppLibrairies/SourceCode/PQUtils/Tests/Frames";

int throwOutOfRange() try { throw std::out_of_range("index 3 of 0"); }
PQ_CATCH_AND_TREAT

void inner(int value) try { PQ_ASSERT(value > 0 && value < 10); }
PQ_CATCH_AND_TREAT

void outer(int value) try { inner(value); }
PQ_CATCH_AND_TREAT

void throwInt() try { throw 42; }
PQ_CATCH_AND_TREAT_CONTEXT("initialize")

void precisions(const std::string& element) try {
    PQ_ASSERT_PRECISIONS(element.size() == 2, "blibli2 - " + element);
}
PQ_CATCH_AND_TREAT

void checkNull(const int* pieces) try { PQ_CHECK_NULL(pieces); }
PQ_CATCH_AND_TREAT

void outerNull() try { checkNull(nullptr); }
PQ_CATCH_AND_TREAT

std::string countedReport(int& reportsBuilt) {
    ++reportsBuilt;
    return "keepGood - ";
}

// Drops the bad elements, logging each, and keeps the good ones.
std::vector<int> keepGood(const std::vector<int>& values, int& reportsBuilt) {
    std::vector<int> kept;
    for (const int value : values) {
        try {
            PQ_ASSERT(value >= 0);
            kept.push_back(value);
        }
        PQ_CATCH_AND_TREAT_FINAL(true, countedReport(reportsBuilt))
    }
    return kept;
}

struct Guarded {
    int member;
    explicit Guarded(const std::vector<int>& values) try : member(values.at(0)) {}
    PQ_CATCH_AND_TREAT
};

} // namespace

TEST(PQFailure, StandardExceptionLeavesAFrameAsPQException) {
    const pqtest::LogCapture log;
    const auto e = pqtest::thrownBy<PQException>([] { (void)throwOutOfRange(); });
    ASSERT_TRUE(e.has_value());
    EXPECT_EQ(e->get_exceptionType(), PQ_DEBUG::PQExceptionType_STD_EXCEPTION);
    EXPECT_EQ(e->get_message(), "index 3 of 0");
    EXPECT_EQ(e->get_function(), "throwOutOfRange");
    EXPECT_EQ(e->get_file(), pqSourceFile);
    EXPECT_EQ(e->get_logType(), PQLogType_EXCEPTION);
    EXPECT_EQ(log.records().size(), 1U);
}

TEST(PQFailure, PQExceptionCrossesFramesAsTheSameObject) {
    const pqtest::LogCapture log;
    const auto e = pqtest::thrownBy<PQException>([] { outer(12); });
    ASSERT_TRUE(e.has_value());
    EXPECT_EQ(e->get_exceptionType(), 1008);
    EXPECT_EQ(e->get_message(), "value > 0 && value < 10 should be true");
    EXPECT_EQ(e->get_function(), "inner"); // the origin, not a frame
    EXPECT_EQ(e->get_level(), PQException::get_PQ_EX_ANORMAL());
    ASSERT_EQ(e->get_callChain().size(), 3U); // origin, then one entry per frame
    EXPECT_EQ(e->get_callChain()[1].function, "inner");
    EXPECT_EQ(e->get_callChain()[2].function, "outer");

    const auto records = log.records();
    ASSERT_EQ(records.size(), 2U); // exactly one treatment per frame crossed
    for (const auto& record : records) {
        EXPECT_EQ(record.logType, PQLogType_EXCEPTION);
        EXPECT_EQ(record.errorCode, 1);
        EXPECT_NE(record.text.find("value > 0 && value < 10 should be true"), std::string::npos);
    }
}

TEST(PQFailure, FramesRethrowTheObjectNotACopy) {
    // A copy made by a frame would be a plain PQException: the derived type
    // arriving intact shows the object itself went through both frames.
    const pqtest::LogCapture log;
    const auto e = pqtest::thrownBy<PQNullPointerException>([] { outerNull(); });
    ASSERT_TRUE(e.has_value());
    EXPECT_EQ(e->get_variable(), "pieces");
    EXPECT_EQ(e->get_message(), "Null variable : pieces - ");
    EXPECT_EQ(e->get_function(), "checkNull");
    EXPECT_EQ(log.records().size(), 2U);
}

TEST(PQFailure, AnythingElseIsTreatedWithItsContext) {
    const pqtest::LogCapture log;
    const auto e = pqtest::thrownBy<PQException>([] { throwInt(); });
    ASSERT_TRUE(e.has_value());
    EXPECT_EQ(e->get_exceptionType(), PQ_DEBUG::PQExceptionType_UNKNOWN_EXCEPTION);
    EXPECT_EQ(e->get_function(), "throwInt");
    const auto records = log.records();
    ASSERT_EQ(records.size(), 1U);
    EXPECT_NE(records[0].text.find(" - initialize"), std::string::npos) << records[0].text;
}

TEST(PQFailure, AssertionWithPrecisions) {
    const pqtest::LogCapture log;
    EXPECT_EQ(pqtest::messageOf([] { precisions("abc"); }),
              "element.size() == 2 should be true\nPrecisions : blibli2 - abc");
    EXPECT_NO_THROW(precisions("ab"));
}

TEST(PQFailure, FinalFrameLogsAndGoesOn) {
    const pqtest::LogCapture log;
    int reportsBuilt = 0;
    EXPECT_EQ(keepGood({1, -1, 2, -5, 3}, reportsBuilt), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(reportsBuilt, 2); // the context is built only when something failed
    const auto records = log.records();
    ASSERT_EQ(records.size(), 2U);
    EXPECT_NE(records[0].text.find("keepGood - "), std::string::npos);
    EXPECT_NE(records[0].text.find("call chain"), std::string::npos);
}

TEST(PQFailure, ConstructorFrameCoversMemberInitialisers) {
    const pqtest::LogCapture log;
    const auto e = pqtest::thrownBy<PQException>([] { (void)Guarded(std::vector<int>()); });
    ASSERT_TRUE(e.has_value());
    EXPECT_EQ(e->get_function(), "Guarded");
    EXPECT_EQ(Guarded(std::vector<int>{5}).member, 5);
}

TEST(PQFailure, TraceMessageFromHasItsFrame) {
    const pqtest::LogCapture log;
    PQ_UTILS::traceMessageFrom("initializePublic", "probleme dans initializePublic()");
    const auto records = log.records();
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].text,
              "Trace message from : \n\ninitializePublic\n\nprobleme dans initializePublic()");
}

TEST(PQFailure, EveryExportedTreatmentLogsOneRecord) {
    using namespace PQ_UTILS;
    const pqtest::LogCapture log;
    PQException pq = frame::failure("pq failure", {"f", pqSourceFile, 1});
    std::runtime_error standard("std failure");
    const auto site = [](auto treat) { treat("ctx", PQLogType_EXCEPTION, 5, true, "f", "x", 7); };
    site([&](auto... a) { func_TREAT_PQ_EXCEPTION(pq, true, a...); });
    site([&](auto... a) { (void)func_TREAT_STD_EXCEPTION(standard, true, a...); });
    site([&](auto... a) { (void)func_TREAT_UNKNOWN_EXCEPTION(true, a...); });
    site([&](auto... a) { (void)func_TREAT_PQ_EXCEPTION_P(&pq, true, a...); });
    site([&](auto... a) { (void)func_TREAT_STD_EXCEPTION_P(&standard, true, a...); });
    const auto finalSite = [](auto treat) {
        treat("ctx", PQLogType_EXCEPTION, 5, true, false, "f", "x", 7);
    };
    finalSite([&](auto... a) { func_TREAT_PQ_EXCEPTION_FINAL(pq, true, a...); });
    finalSite([&](auto... a) { func_TREAT_STD_EXCEPTION_FINAL(standard, true, a...); });
    finalSite([&](auto... a) { func_TREAT_PQ_EXCEPTION_P_FINAL(&pq, true, a...); });
    finalSite([&](auto... a) { func_TREAT_UNKNOWN_EXCEPTION_FINAL(true, a...); });
    func_TREAT_STD_EXCEPTION_P_FINAL(&standard, true, PQLogType_EXCEPTION, 5, true, false, "f", "x",
                                     7);
    finalSite([&](auto... a) { func_TREAT_PQ_EXCEPTION_P_FINAL(nullptr, true, a...); });
    const auto records = log.records();
    ASSERT_EQ(records.size(), 11U);
    for (std::size_t i = 0; i < records.size(); ++i) {
        EXPECT_EQ(records[i].logType, PQLogType_EXCEPTION) << i;
        const bool fromStd = i == 1 || i == 4 || i == 6 || i == 9;
        if (i != 2 && i != 8 && i != 10) { // the unknown treatments know no message
            EXPECT_NE(records[i].text.find(fromStd ? "std failure" : "pq failure"),
                      std::string::npos)
                << i << ": " << records[i].text;
        }
        if (i != 9) { // the one form without a context
            EXPECT_NE(records[i].text.find("ctx"), std::string::npos)
                << i << ": " << records[i].text;
        }
    }
}
