#include "PQDebug/PQDebug.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

#include "PQDebug/PQDebugString.h"
#include "PQDebug/PQException.h"

namespace PQ_DEBUG {
namespace {

struct FileCloser {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};
using FilePtr = std::unique_ptr<std::FILE, FileCloser>;

// Everything the log shares between threads, behind one lock. Recursive so
// that a sink may log again from the thread that calls it.
struct LogState {
    std::recursive_mutex mutex;
    std::shared_ptr<const PQDebug::LogSink> sink;
    std::map<int, int> levels;
    FilePtr file;

    LogState() {
        // Before main() nothing can report a failure: a bad PQ_LOG_FILE only
        // leaves the file closed, and says so once on standard error.
        if (const char* path = std::getenv("PQ_LOG_FILE"); path != nullptr && *path != '\0') {
            file.reset(std::fopen(path, "a"));
            if (!file) {
                std::fprintf(stderr, "PQDebug: cannot open PQ_LOG_FILE '%s': %s\n", path,
                             std::strerror(errno));
            }
        }
    }
};

// Never destroyed, so that objects destroyed at exit can still log; the
// operating system closes the file.
LogState& logState() {
    static auto* const state = new LogState();
    return *state;
}

// UTC, to the millisecond, from the calendar of <chrono>: no C library
// call, so no platform's own thread-safe variant of gmtime is needed.
void appendTimestamp(std::string& line) {
    using namespace std::chrono;
    const auto now = floor<milliseconds>(system_clock::now());
    const auto today = floor<days>(now);
    const year_month_day date(today);
    const hh_mm_ss time(now - today);
    char buffer[32];
    const int n = std::snprintf(
        buffer, sizeof buffer, "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ", static_cast<int>(date.year()),
        static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
        static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
        static_cast<int>(time.seconds().count()), static_cast<int>(time.subseconds().count()));
    line.append(buffer, static_cast<std::size_t>(n > 0 ? n : 0));
}

// One record, one line: line breaks and other control bytes of the text are
// written as escapes, so a text from outside cannot forge log lines.
std::string formatLine(const PQLogRecord& record, unsigned int callerLine) {
    std::string line;
    line.reserve(record.text.size() + record.source.size() + 64);
    appendTimestamp(line);
    line += " [" + PQDebugString::fromIntToWstring(static_cast<int>(record.logType)) + "] (" +
            PQDebugString::fromIntToWstring(record.errorCode) + ") ";
    if (!record.source.empty()) {
        line += record.source;
        if (callerLine != 0) {
            line += '@' + PQDebugString::fromUnsignedIntToWstring(callerLine);
        }
        line += ": ";
    }
    PQDebugString::appendOneLine(line, record.text);
    line += '\n';
    return line;
}

} // namespace

PQRecordText& PQRecordText::operator<<(std::string_view piece) {
    const std::size_t room = PQDebug::kMaxRecordText - m_text.size();
    const std::size_t kept = piece.size() < room ? piece.size() : room;
    m_text.append(piece.data(), kept);
    m_cut += piece.size() - kept;
    return *this;
}

namespace {
std::string cutMarker(std::size_t cut) {
    return "... [" + PQDebugString::fromULongLongToWstring(cut) + " more bytes cut]";
}
} // namespace

PQRecordText& PQRecordText::appendAtMost(std::string_view piece, std::size_t limit) {
    if (piece.size() <= limit) {
        return *this << piece;
    }
    return *this << piece.substr(0, limit) << cutMarker(piece.size() - limit);
}

std::string PQRecordText::take() {
    if (m_cut != 0) {
        m_text += cutMarker(m_cut);
        m_cut = 0;
    }
    return std::exchange(m_text, std::string());
}

void PQDebug::writeRecord(const PQLogRecord& record, bool flush, unsigned int callerLine) {
    LogState& state = logState();
    const std::lock_guard lock(state.mutex);
    if (const std::shared_ptr<const LogSink> sink = state.sink) {
        (*sink)(record);
        return;
    }
    const std::string line = formatLine(record, callerLine);
    std::fwrite(line.data(), 1, line.size(), stderr);
    if (state.file) {
        std::fwrite(line.data(), 1, line.size(), state.file.get());
        if (flush) {
            std::fflush(state.file.get());
        }
    }
}

void PQDebug::setLogSink(LogSink sink) {
    LogState& state = logState();
    const std::lock_guard lock(state.mutex);
    state.sink = sink ? std::make_shared<const LogSink>(std::move(sink)) : nullptr;
}

void PQDebug::setLogLevel(PQLogType type, int level) {
    LogState& state = logState();
    const std::lock_guard lock(state.mutex);
    state.levels[static_cast<int>(type)] = level;
}

int PQDebug::getLogLevel(PQLogType type) {
    LogState& state = logState();
    const std::lock_guard lock(state.mutex);
    const auto found = state.levels.find(static_cast<int>(type));
    return found == state.levels.end() ? kDefaultLogLevel : found->second;
}

bool PQDebug::mustLogDependingOnLogLevel(PQLogType type, int level) {
    return level <= getLogLevel(type);
}

void PQDebug::setLogFile(const std::string& path) {
    LogState& state = logState();
    const std::lock_guard lock(state.mutex);
    if (path.empty()) {
        state.file.reset();
        return;
    }
    FilePtr opened(std::fopen(path.c_str(), "a"));
    if (!opened) {
        throw PQException(
            PQExceptionType_SYSTEM, "../../SourceCode/PQDebug/PQDebug.cpp", "setLogFile", __LINE__,
            "Cannot open log file '" + path + "': " + std::strerror(errno),
            PQException::get_PQ_EX_ANORMAL(), true, false, PQLogType_EXCEPTION, false);
    }
    state.file = std::move(opened);
}

void PQDebug::LogToConsoleAndFileNow(int errorCode, int logType, const std::string& text,
                                     bool flush, unsigned int callerLine) {
    writeRecord(
        {errorCode, static_cast<PQLogType>(logType), std::string(), PQRecordText::capped(text)},
        flush, callerLine);
}

void PQDebug::LogToConsoleAndFileNow(int errorCode, int logType, const std::string& source,
                                     const std::string& text, bool flush, unsigned int callerLine) {
    writeRecord({errorCode, static_cast<PQLogType>(logType), PQRecordText::capped(source),
                 PQRecordText::capped(text)},
                flush, callerLine);
}

std::string PQDebug::getTitle_begin(const std::string& title) {
    return "==================== " + title + " : begin ====================";
}

std::string PQDebug::getTitle_end(const std::string& title) {
    return "==================== " + title + " : end ====================";
}

void PQDebug::Trace_Debug(const std::string& text, bool flush) {
    writeRecord(
        {get_ERRORCODE_NOTICE(), PQLogType_TRACE, std::string(), PQRecordText::capped(text)},
        flush);
}

const std::string& PQDebug::get_m_sEmptyString() noexcept {
    static const std::string empty;
    return empty;
}

std::string PQDebug::get_miscValue() { return "Vq3dR8"; }

} // namespace PQ_DEBUG
