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

bool gVerbose = false;
int gReportScopes = 0;
std::uint64_t gReports = 0;

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

LibraryReports::LibraryReports() : m_start(gReports) { ++gReportScopes; }

LibraryReports::~LibraryReports() { --gReportScopes; }

std::uint64_t LibraryReports::count() const { return gReports - m_start; }

void LibraryReports::route(bool verbose) {
    gVerbose = verbose;
    if (verbose) {
        for (const PQ_DEBUG::PQLogType type :
             {PQ_DEBUG::PQLogType_GENERAL, PQ_DEBUG::PQLogType_PQDEBUG, PQ_DEBUG::PQLogType_PQUTILS,
              PQ_DEBUG::PQLogType_TRACE, PQ_DEBUG::PQLogType_EXCEPTION}) {
            PQ_DEBUG::PQDebug::setLogLevel(type, kVerboseLevel);
        }
    }
    PQ_DEBUG::PQDebug::setLogSink([](const PQ_DEBUG::PQLogRecord& record) {
        if (gReportScopes > 0) {
            ++gReports;
        }
        if (gVerbose || gReportScopes > 0) {
            std::cerr << "pqorder: library: " << printable(record.text) << '\n';
        }
    });
}

} // namespace pqorder
