#pragma once

#include <string>

namespace PQ_DEBUG {

// The system's string type: a narrow byte string. The legacy interfaces had a
// wide and a narrow flavour; here both are this one type.
using kstring = std::string;

// Log channels. Levels are kept per channel (see PQDebug::setLogLevel).
enum PQLogType : int {
    PQLogType_GENERAL = 0,
    PQLogType_PQDEBUG = 1,
    PQLogType_PQUTILS = 2,      // ordinary events of the utility library
    PQLogType_TRACE = 3,        // PQDebug::Trace_Debug
    PQLogType_EXCEPTION = 1005, // every exception raised or treated
};

// Kinds of PQException.
enum PQExceptionType : int {
    PQExceptionType_STD_EXCEPTION = 1001,     // a std::exception turned into a PQException
    PQExceptionType_UNKNOWN_EXCEPTION = 1002, // anything else caught by a frame
    PQExceptionType_SYSTEM = 1003,            // the operating system refused (a file, a host name)
    PQExceptionType_BAS_EXCEPTION = 1008,     // a broken precondition, an unknown name or value
    PQExceptionType_NULL_POINTER = 1010,      // PQNullPointerException
    PQExceptionType_NOT_ALLOWED = 1075,       // an operation a class refuses to perform
};

} // namespace PQ_DEBUG
