#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>

#include "PQDebug/PQDebug.h"
#include "PQDebug/PQDebugString.h"
#include "PQOrderTool.h"

namespace pqorder {
namespace {

// Every level of detail the library logs at.
constexpr int kVerboseLevel = 9;

} // namespace

Status worst(Status a, Status b) { return std::max(a, b); }

std::string jsonQuoted(std::string_view text) {
    return nlohmann::json(std::string(text))
        .dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string printable(std::string_view text) {
    std::string shown;
    shown.reserve(text.size());
    PQ_DEBUG::PQDebugString::appendOneLine(shown, text);
    return shown;
}

void routeLibraryLog(bool verbose) {
    if (verbose) {
        for (const PQ_DEBUG::PQLogType type :
             {PQ_DEBUG::PQLogType_GENERAL, PQ_DEBUG::PQLogType_PQDEBUG, PQ_DEBUG::PQLogType_PQUTILS,
              PQ_DEBUG::PQLogType_TRACE, PQ_DEBUG::PQLogType_EXCEPTION}) {
            PQ_DEBUG::PQDebug::setLogLevel(type, kVerboseLevel);
        }
    }
    PQ_DEBUG::PQDebug::setLogSink([verbose](const PQ_DEBUG::PQLogRecord& record) {
        if (verbose) {
            std::cerr << "pqorder: library: " << printable(record.text) << '\n';
        }
    });
}

} // namespace pqorder
