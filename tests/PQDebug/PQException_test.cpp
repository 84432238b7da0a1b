#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "PQDebug/PQDebug.h"
#include "PQDebug/PQException.h"
#include "support/LogCapture.h"

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

} // namespace

TEST(PQException, CarriesWhatItWasMadeWith) {
    const PQException e = makeException();
    EXPECT_EQ(e.get_exceptionType(), 1008);
    EXPECT_EQ(e.get_file(), "CppLibrairies/SourceCode/PQUtils/Orders/PQOrder");
    EXPECT_EQ(e.get_function(), "clone");
    EXPECT_EQ(e.get_line(), 41);
    EXPECT_STREQ(e.what(), "x should be true");
    EXPECT_EQ(e.get_level(), PQException::get_PQ_EX_ANORMAL());
    EXPECT_NE(PQException::PQ_EX_NORMAL, PQException::get_PQ_EX_ANORMAL());
    EXPECT_EQ(e.get_logType(), PQLogType_EXCEPTION);
    ASSERT_EQ(e.get_callChain().size(), 1U);
    EXPECT_EQ(e.get_callChain()[0].function, "clone");

    const PQ_DEBUG::PQNullPointerException null(
        "f", "PQOrder_p", 9, "m_pPublicImp", "Null variable : m_pPublicImp - ",
        PQException::get_PQ_EX_ANORMAL(), true, PQLogType_EXCEPTION, false);
    EXPECT_EQ(null.get_variable(), "m_pPublicImp");
    EXPECT_EQ(null.get_message(), "Null variable : m_pPublicImp - ");
    EXPECT_EQ(null.get_function(), "PQOrder_p");
}

TEST(PQException, TreatmentLogsOneRecordAndExtendsTheChain) {
    const pqtest::LogCapture log;
    PQException e = makeException();
    PQException::func_TREAT_PQ_EXCEPTION(e, false, "ctx", PQLogType_EXCEPTION, 1, true, "outer",
                                         "File", 77);
    PQException::func_TREAT_PQ_EXCEPTION(e, true, "", PQLogType_EXCEPTION, 1, false, "top", "File",
                                         90);

    ASSERT_EQ(e.get_callChain().size(), 2U); // the second frame did not record itself
    EXPECT_EQ(e.get_callChain()[1].function, "outer");
    EXPECT_EQ(e.get_callChain()[1].line, 77);

    const auto records = log.records();
    ASSERT_EQ(records.size(), 2U);
    const std::string& first = records[0].text;
    EXPECT_EQ(records[0].errorCode, 1);
    EXPECT_EQ(records[0].logType, PQLogType_EXCEPTION);
    for (const char* part :
         {"x should be true", "clone", "PQOrder:41", "outer", "File:77", "ctx"}) {
        EXPECT_NE(first.find(part), std::string::npos) << part << " in " << first;
    }
    EXPECT_EQ(first.find("call chain"), std::string::npos);
    EXPECT_NE(records[1].text.find("call chain: clone"), std::string::npos) << records[1].text;
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

    const PQException unknown = PQException::func_TREAT_UNKNOWN_EXCEPTION(
        false, "", PQLogType_EXCEPTION, 1, true, "find", "PQString", 13);
    EXPECT_EQ(unknown.get_exceptionType(), PQ_DEBUG::PQExceptionType_UNKNOWN_EXCEPTION);

    // A PQException handed over as a std::exception keeps its identity.
    PQException original = makeException();
    std::exception& asStd = original;
    EXPECT_EQ(PQException::func_TREAT_STD_EXCEPTION(asStd, false, "", PQLogType_EXCEPTION, 1, true,
                                                    "f", "F", 1)
                  .get_message(),
              "x should be true");
    EXPECT_EQ(log.records().size(), 3U);
}

TEST(PQException, PointerFormsAcceptNull) {
    const pqtest::LogCapture log;
    EXPECT_EQ(PQException::func_TREAT_PQ_EXCEPTION_P(nullptr, false, "", PQLogType_EXCEPTION, 1,
                                                     true, "f", "F", 1)
                  .get_exceptionType(),
              PQ_DEBUG::PQExceptionType_UNKNOWN_EXCEPTION);
    EXPECT_EQ(PQException::func_TREAT_STD_EXCEPTION_P(nullptr, false, "", PQLogType_EXCEPTION, 1,
                                                      true, "f", "F", 1)
                  .get_exceptionType(),
              PQ_DEBUG::PQExceptionType_UNKNOWN_EXCEPTION);
    PQException e = makeException();
    EXPECT_EQ(PQException::func_TREAT_PQ_EXCEPTION_P(&e, false, "", PQLogType_EXCEPTION, 1, true,
                                                     "f", "F", 1)
                  .get_message(),
              "x should be true");
    EXPECT_EQ(log.records().size(), 3U);
}

TEST(PQException, FinalFormsLogOnceEach) {
    const pqtest::LogCapture log;
    PQException e = makeException();
    std::runtime_error error("boom");
    PQException::func_TREAT_PQ_EXCEPTION_FINAL(e, true, "final ctx", PQLogType_EXCEPTION, 1, true,
                                               true, "f", "F", 1);
    PQException::func_TREAT_STD_EXCEPTION_FINAL(error, false, "", PQLogType_EXCEPTION, 1, true,
                                                false, "f", "F", 2);
    PQException::func_TREAT_PQ_EXCEPTION_P_FINAL(nullptr, false, "", PQLogType_EXCEPTION, 1, true,
                                                 false, "f", "F", 3);
    PQException::func_TREAT_STD_EXCEPTION_P_FINAL(&error, false, PQLogType_EXCEPTION, 1, true,
                                                  false, "f", "F", 4);
    PQException::func_TREAT_UNKNOWN_EXCEPTION_FINAL(false, "", PQLogType_EXCEPTION, 1, true, false,
                                                    "f", "F", 5);
    const auto records = log.records();
    ASSERT_EQ(records.size(), 5U);
    EXPECT_NE(records[0].text.find("final ctx"), std::string::npos);
    EXPECT_NE(records[1].text.find("boom"), std::string::npos);
    EXPECT_NE(records[3].text.find("boom"), std::string::npos);
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
