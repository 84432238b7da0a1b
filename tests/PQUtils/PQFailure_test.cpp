#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "PQUtils/Utils/PQFailure.h"
#include "support/LogCapture.h"

using PQ_DEBUG::PQLogType_EXCEPTION;
using PQ_UTILS::PQException;
using PQ_UTILS::PQNullPointerException;

namespace {

constexpr const char* pqSourceFile = "CppLibrairies/SourceCode/PQUtils/Tests/Frames";

int throwOutOfRange() try { return std::vector<int>().at(3); }
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
    try {
        (void)throwOutOfRange();
        FAIL() << "no exception";
    } catch (const std::out_of_range&) {
        FAIL() << "the standard exception crossed the frame";
    } catch (const PQException& e) {
        EXPECT_EQ(e.get_exceptionType(), PQ_DEBUG::PQExceptionType_STD_EXCEPTION);
        EXPECT_EQ(e.get_function(), "throwOutOfRange");
        EXPECT_EQ(e.get_file(), pqSourceFile);
        EXPECT_EQ(e.get_logType(), PQLogType_EXCEPTION);
    }
    EXPECT_EQ(log.records().size(), 1U);
}

TEST(PQFailure, PQExceptionCrossesFramesAsTheSameObject) {
    const pqtest::LogCapture log;
    const PQException* thrownByInner = nullptr;
    try {
        outer(12);
        FAIL() << "no exception";
    } catch (const PQException& e) {
        thrownByInner = &e;
        EXPECT_EQ(e.get_exceptionType(), 1008);
        EXPECT_EQ(e.get_message(), "value > 0 && value < 10 should be true");
        EXPECT_EQ(e.get_function(), "inner"); // the origin, not a frame
        EXPECT_EQ(e.get_level(), PQException::get_PQ_EX_ANORMAL());
        ASSERT_EQ(e.get_callChain().size(), 3U); // origin, then one entry per frame
        EXPECT_EQ(e.get_callChain()[1].function, "inner");
        EXPECT_EQ(e.get_callChain()[2].function, "outer");
        EXPECT_EQ(e.get_callChain()[0].line, e.get_line());
    }
    EXPECT_NE(thrownByInner, nullptr);
    const auto records = log.records();
    ASSERT_EQ(records.size(), 2U); // exactly one treatment per frame crossed
    for (const auto& record : records) {
        EXPECT_EQ(record.logType, PQLogType_EXCEPTION);
        EXPECT_EQ(record.errorCode, 1);
        EXPECT_NE(record.text.find("value > 0 && value < 10 should be true"), std::string::npos);
    }
    EXPECT_NE(records[1].text.find("outer"), std::string::npos);
}

TEST(PQFailure, FramesRethrowTheObjectNotACopy) {
    // A copy made by a frame would be a plain PQException: the derived type
    // arriving intact shows the object itself went through both frames.
    const pqtest::LogCapture log;
    try {
        outerNull();
        FAIL() << "no exception";
    } catch (const PQNullPointerException& e) {
        EXPECT_EQ(e.get_variable(), "pieces");
        EXPECT_EQ(e.get_function(), "checkNull");
    } catch (const PQException&) {
        FAIL() << "a frame copied the exception";
    }
    EXPECT_EQ(log.records().size(), 2U);
}

TEST(PQFailure, AnythingElseIsTreatedWithItsContext) {
    const pqtest::LogCapture log;
    try {
        throwInt();
        FAIL() << "no exception";
    } catch (const PQException& e) {
        EXPECT_EQ(e.get_exceptionType(), PQ_DEBUG::PQExceptionType_UNKNOWN_EXCEPTION);
        EXPECT_EQ(e.get_function(), "throwInt");
    }
    const auto records = log.records();
    ASSERT_EQ(records.size(), 1U);
    EXPECT_NE(records[0].text.find(" - initialize"), std::string::npos) << records[0].text;
}

TEST(PQFailure, AssertionAndNullCheckMessages) {
    const pqtest::LogCapture log;
    try {
        precisions("abc");
        FAIL() << "no exception";
    } catch (const PQException& e) {
        EXPECT_EQ(e.get_message(),
                  "element.size() == 2 should be true\nPrecisions : blibli2 - abc");
    }
    try {
        checkNull(nullptr);
        FAIL() << "no exception";
    } catch (const PQNullPointerException& e) {
        EXPECT_EQ(e.get_variable(), "pieces");
        EXPECT_EQ(e.get_message(), "Null variable : pieces - ");
        EXPECT_EQ(e.get_function(), "checkNull");
        EXPECT_EQ(e.get_logType(), PQLogType_EXCEPTION);
    }
    const int value = 1;
    EXPECT_NO_THROW(checkNull(&value));
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
    try {
        const Guarded guarded{std::vector<int>()};
        FAIL() << "no exception";
    } catch (const PQException& e) {
        EXPECT_EQ(e.get_function(), "Guarded");
        EXPECT_EQ(e.get_exceptionType(), PQ_DEBUG::PQExceptionType_STD_EXCEPTION);
    }
    EXPECT_EQ(Guarded(std::vector<int>{5}).member, 5);
}

TEST(PQFailure, ForwardersReachTheDebugLibrary) {
    const pqtest::LogCapture log;
    std::logic_error error("forwarded");
    const PQException converted = PQ_UTILS::func_TREAT_STD_EXCEPTION(
        error, false, "", PQLogType_EXCEPTION, 1, true, "f", "F", 3);
    EXPECT_EQ(converted.get_message(), "forwarded");
    PQ_UTILS::func_TREAT_STD_EXCEPTION_P_FINAL(&error, false, PQLogType_EXCEPTION, 1, true, false,
                                               "f", "F", 4);
    EXPECT_EQ(log.records().size(), 2U);
}

TEST(PQFailure, TraceMessageFromHasItsFrame) {
    const pqtest::LogCapture log;
    PQ_UTILS::traceMessageFrom("initializePublic", "probleme dans initializePublic()");
    const auto records = log.records();
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0].text,
              "Trace message from : \n\ninitializePublic\n\nprobleme dans initializePublic()");
}
