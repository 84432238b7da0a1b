#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "PQDebug/PQDebug.h"

namespace pqtest {

// Routes the debug library's records into a list for the lifetime of the
// object, then restores the default output. Counts every record and keeps
// the first `keep` (a flood of reports need not be held in memory).
class LogCapture {
public:
    explicit LogCapture(std::size_t keep = SIZE_MAX) : m_keep(keep) {
        PQ_DEBUG::PQDebug::setLogSink([this](const PQ_DEBUG::PQLogRecord& record) {
            const std::lock_guard lock(m_mutex);
            if (m_records.size() < m_keep) {
                m_records.push_back(record);
            }
            ++m_count;
        });
    }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;
    ~LogCapture() { PQ_DEBUG::PQDebug::setLogSink(nullptr); }

    [[nodiscard]] std::vector<PQ_DEBUG::PQLogRecord> records() const {
        const std::lock_guard lock(m_mutex);
        return m_records;
    }
    [[nodiscard]] std::size_t count() const {
        const std::lock_guard lock(m_mutex);
        return m_count;
    }

private:
    mutable std::mutex m_mutex;
    std::vector<PQ_DEBUG::PQLogRecord> m_records;
    std::size_t m_keep;
    std::size_t m_count = 0;
};

// Sets a log level for the lifetime of the object.
class ScopedLogLevel {
public:
    ScopedLogLevel(PQ_DEBUG::PQLogType type, int level)
        : m_type(type), m_previous(PQ_DEBUG::PQDebug::getLogLevel(type)) {
        PQ_DEBUG::PQDebug::setLogLevel(type, level);
    }
    ScopedLogLevel(const ScopedLogLevel&) = delete;
    ScopedLogLevel& operator=(const ScopedLogLevel&) = delete;
    ~ScopedLogLevel() { PQ_DEBUG::PQDebug::setLogLevel(m_type, m_previous); }

private:
    PQ_DEBUG::PQLogType m_type;
    int m_previous;
};

// What `call` throws as an Exception (nothing when it returns; anything
// else escapes and fails the test).
template <class Exception, class Function> std::optional<Exception> thrownBy(Function&& call) {
    try {
        call();
    } catch (const Exception& e) {
        return e;
    }
    return std::nullopt;
}

// The message of what `call` throws, or "(no exception)".
template <class Function> std::string messageOf(Function&& call) {
    try {
        call();
    } catch (const std::exception& e) {
        return e.what();
    }
    return "(no exception)";
}

} // namespace pqtest
