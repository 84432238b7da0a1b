#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "PQDebug/PQDebugTypes.h"

namespace PQ_DEBUG {

// One log record, as the libraries made it.
struct PQLogRecord {
    int errorCode; // first argument of LogToConsoleAndFileNow
    PQLogType logType;
    std::string source; // class name label, empty when none
    std::string text;   // the text as the library built it (capped, see below)
};

// The debug library's log. Every log call, trace and exception treatment
// makes exactly one record. Records go to the sink when one is set, else one
// line each to standard error and to the log file when one is open. Callable
// from any thread: records are written one at a time, never interleaved.
class PQDebug {
public:
    using LogSink = std::function<void(const PQLogRecord&)>;

    // Routes every record to `sink`; an empty sink restores the default
    // output. The sink is called under the log's lock, one record at a time;
    // it may log again from the same thread.
    static void setLogSink(LogSink sink);

    // Levels per log type: a message of level L is written when
    // L <= getLogLevel(type). Every type starts at kDefaultLogLevel.
    static void setLogLevel(PQLogType type, int level);
    [[nodiscard]] static int getLogLevel(PQLogType type);
    [[nodiscard]] static bool mustLogDependingOnLogLevel(PQLogType type, int level);
    static constexpr int kDefaultLogLevel = 2;

    // Appends the default output to `path` as well as standard error; an
    // empty path closes the file. The environment variable PQ_LOG_FILE names
    // a file to open at start. Throws PQException (PQExceptionType_SYSTEM)
    // when the file cannot be opened; the previous file is then kept.
    static void setLogFile(const std::string& path);

    [[nodiscard]] static int get_ERRORCODE_NOTICE() noexcept { return 0; }

    // Writes one record at once. `flush`: the log file is flushed after it.
    // `callerLine` is the caller's own reference for the record; it appears
    // in the default output line.
    static void LogToConsoleAndFileNow(int errorCode, int logType, const std::string& text,
                                       bool flush, unsigned int callerLine);
    // The same with a source label (usually a class name).
    static void LogToConsoleAndFileNow(int errorCode, int logType, const std::string& source,
                                       const std::string& text, bool flush,
                                       unsigned int callerLine);

    // Decorate a title as the opening and the closing line of a block:
    //   getTitle_begin("Init") -> "==================== Init : begin ===================="
    [[nodiscard]] static std::string getTitle_begin(const std::string& title);
    [[nodiscard]] static std::string getTitle_end(const std::string& title);

    // A debug trace: one record of type PQLogType_TRACE whose text is `text`
    // unchanged, whatever the level.
    static void Trace_Debug(const std::string& text, bool flush);

    // The shared empty context of catch frames.
    [[nodiscard]] static const std::string& get_m_sEmptyString() noexcept;

    // A fixed text of the product, used by the utility library to assemble
    // values it never stores whole.
    [[nodiscard]] static std::string get_miscValue();

    // Record texts longer than this are cut, and a marker says how much.
    static constexpr std::size_t kMaxRecordText = std::size_t{64} * 1024;
    // The context of a treatment record is cut at this length, with its own
    // marker, so that the failure's message after it always shows and a
    // context repeated over many records (a long order with many bad
    // pieces) costs little each time.
    static constexpr std::size_t kMaxContextText = std::size_t{4} * 1024;

private:
    // Writes one record to the sink or the default output. Its text is
    // already capped (PQRecordText).
    static void writeRecord(const PQLogRecord& record, bool flush, unsigned int callerLine = 0);

    friend class PQException; // records made as an exception is raised
    friend class PQTreatment; // the records of the func_TREAT_* family
};

// Builds a record text of at most PQDebug::kMaxRecordText bytes without
// copying what does not fit, then marks how much was cut:
//   PQRecordText::capped(big) -> first 64 KiB + "... [N more bytes cut]"
class PQRecordText {
public:
    PQRecordText& operator<<(std::string_view piece);
    PQRecordText& operator<<(char c) { return *this << std::string_view(&c, 1); }
    // Appends at most `limit` bytes of `piece`, and a marker right after
    // them when the rest is cut.
    PQRecordText& appendAtMost(std::string_view piece, std::size_t limit);
    // The text built so far, with the marker; the builder is left empty.
    [[nodiscard]] std::string take();
    [[nodiscard]] static std::string capped(std::string_view text) {
        return (PQRecordText() << text).take();
    }

private:
    std::string m_text;
    std::size_t m_cut = 0;
};

} // namespace PQ_DEBUG
