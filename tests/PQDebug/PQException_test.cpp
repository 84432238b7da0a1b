#include "PQDebug/PQException.h"

#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "support/TestSupport.h"

using PQ_DEBUG::PQException;
using PQ_DEBUG::PQLogType_EXCEPTION;

namespace {

PQException makeException() {
    return {PQ_DEBUG::PQExceptionType_BAS_EXCEPTION,
            "CppLibrairies/SourceCode/PQUtils/Orders/PQOrder",
            "clone",
            41,
            "x should be true",
            PQException::get_PQ_EX_ANORMAL(),
            true,
            false,
            PQLogType_EXCEPTION,
            false};
}

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

} // namespace

TEST(PQException, TreatmentLogsOneRecordAndExtendsTheChain) {
    const pqtest::LogCapture log;
    PQException e = makeException();
    ASSERT_EQ(e.get_callChain().size(), 1U); // the origin
    PQException::func_TREAT_PQ_EXCEPTION(e, false, "ctx", PQLogType_EXCEPTION, 1, true, "outer",
                                         "File", 77);
    PQException::func_TREAT_PQ_EXCEPTION(e, true, "", PQLogType_EXCEPTION, 1, false, "top", "File",
                                         90);

    ASSERT_EQ(e.get_callChain().size(), 2U); // the second frame did not record itself
    EXPECT_EQ(e.get_callChain()[1].function, "outer");
    EXPECT_EQ(e.get_callChain()[1].line, 77);

    const auto records = log.records();
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records[0].errorCode, 1);
    EXPECT_EQ(records[0].logType, PQLogType_EXCEPTION);
    for (const char* part :
         {"x should be true", "clone", "PQOrder:41", "outer", "File:77", "ctx"}) {
        EXPECT_TRUE(contains(records[0].text, part)) << part << " in " << records[0].text;
    }
    EXPECT_FALSE(contains(records[0].text, "call chain"));
    EXPECT_TRUE(contains(records[1].text, "call chain: clone")) << records[1].text;
}

TEST(PQException, StandardAndUnknownFailuresBecomePQExceptions) {
    const pqtest::LogCapture log;
    std::out_of_range range("vector::at");
    const PQException fromStd = PQException::func_TREAT_STD_EXCEPTION(
        range, false, "", PQLogType_EXCEPTION, 1, true, "find", "PQString", 12);
    EXPECT_EQ(fromStd.get_exceptionType(), PQ_DEBUG::PQExceptionType_STD_EXCEPTION);
    EXPECT_EQ(fromStd.get_message(), "vector::at");
    EXPECT_EQ(fromStd.get_function(), "find");
    EXPECT_EQ(fromStd.get_callChain().size(), 1U); // the frame is the origin, recorded once

    // A PQException handed over as a std::exception keeps its identity.
    PQException original = makeException();
    std::exception& asStd = original;
    EXPECT_EQ(PQException::func_TREAT_STD_EXCEPTION(asStd, false, "", PQLogType_EXCEPTION, 1, true,
                                                    "f", "F", 1)
                  .get_exceptionType(),
              PQ_DEBUG::PQExceptionType_BAS_EXCEPTION);

    // Null pointers given to the pointer forms are unknown failures.
    for (const PQException& unknown :
         {PQException::func_TREAT_UNKNOWN_EXCEPTION(false, "", PQLogType_EXCEPTION, 1, true, "f",
                                                    "F", 1),
          PQException::func_TREAT_PQ_EXCEPTION_P(nullptr, false, "", PQLogType_EXCEPTION, 1, true,
                                                 "f", "F", 2),
          PQException::func_TREAT_STD_EXCEPTION_P(nullptr, false, "", PQLogType_EXCEPTION, 1, true,
                                                  "f", "F", 3)}) {
        EXPECT_EQ(unknown.get_exceptionType(), PQ_DEBUG::PQExceptionType_UNKNOWN_EXCEPTION);
    }
    EXPECT_EQ(log.records().size(), 5U);
}

TEST(PQException, LongContextIsCutBeforeTheMessage) {
    const pqtest::LogCapture log;
    PQException e = makeException();
    const std::string context(PQ_DEBUG::PQDebug::kMaxContextText + 10, 'c');
    PQException::func_TREAT_PQ_EXCEPTION_FINAL(e, false, context, PQLogType_EXCEPTION, 1, true,
                                               false, "f", "F", 1);
    const auto records = log.records();
    ASSERT_EQ(records.size(), 1U);
    EXPECT_TRUE(
        contains(records[0].text, " - " + std::string(PQ_DEBUG::PQDebug::kMaxContextText, 'c') +
                                      "... [10 more bytes cut]: x should be true - raised"));
}

TEST(PQException, CallChainIsBounded) {
    const pqtest::LogCapture log;
    PQException e = makeException();
    for (int i = 0; i < 1000; ++i) {
        PQException::func_TREAT_PQ_EXCEPTION(e, false, "", PQLogType_EXCEPTION, 1, true, "f", "F",
                                             i);
    }
    EXPECT_EQ(e.get_callChain().size(), PQException::kMaxCallChain);
    EXPECT_EQ(e.get_droppedCallSites(), 1001U - PQException::kMaxCallChain);
}
