#include "PQDebug/PQException.h"

#include <utility>

#include "PQDebug/PQDebug.h"
#include "PQDebug/PQDebugString.h"

namespace PQ_DEBUG {

// The parameter list is the system's own, references included.
// NOLINTNEXTLINE(modernize-pass-by-value)
PQException::PQException(PQExceptionType type, const std::string& file, const std::string& function,
                         int line, std::string message, int level, bool recordOrigin,
                         bool userVisible, PQLogType logType, bool logNow)
    : m_exceptionType(type), m_file(file), m_function(function), m_line(line),
      m_message(std::move(message)), m_level(level), m_userVisible(userVisible),
      m_logType(logType) {
    if (recordOrigin) {
        m_callChain.push_back({m_function, m_file, m_line});
    }
    if (logNow) {
        PQDebug::writeRecord(
            {1, m_logType, std::string(),
             (PQRecordText() << "Exception raised in " << m_function << " (" << m_file << ':'
                             << PQDebugString::fromIntToWstring(m_line) << "): " << m_message)
                 .take()},
            false);
    }
}

PQException::~PQException() = default;

void PQException::addCallSite(const char* function, const char* file, int line) {
    if (m_callChain.size() >= kMaxCallChain) {
        ++m_droppedCallSites;
        return;
    }
    m_callChain.push_back({function != nullptr ? function : "", file != nullptr ? file : "", line});
}

PQNullPointerException::PQNullPointerException(const std::string& file, const std::string& function,
                                               int line, std::string variable, std::string message,
                                               int level, bool recordOrigin, PQLogType logType,
                                               bool logNow)
    : PQException(PQExceptionType_NULL_POINTER, file, function, line, std::move(message), level,
                  recordOrigin, false, logType, logNow),
      m_variable(std::move(variable)) {}

PQNullPointerException::~PQNullPointerException() = default;

// Where a treatment happens and how it is to be logged.
struct PQTreatmentFrame {
    bool logCallChain;
    const std::string& context;
    PQLogType logType;
    int errorCode;
    bool recordFrame;
    bool flush;
    const char* function;
    const char* file;
    int line;
};

// The single implementation behind the ten func_TREAT_* members.
class PQTreatment {
public:
    // Records the frame in `e` and writes the one record of this treatment.
    static void treat(PQException& e, const char* caughtKind, const PQTreatmentFrame& frame,
                      bool frameIsOrigin) {
        if (frame.recordFrame && !frameIsOrigin) {
            e.addCallSite(frame.function, frame.file, frame.line);
        }
        PQRecordText text;
        text << caughtKind << " treated in " << safe(frame.function) << " (" << safe(frame.file)
             << ':' << PQDebugString::fromIntToWstring(frame.line) << ')';
        if (!frame.context.empty()) {
            (text << " - ").appendAtMost(frame.context, PQDebug::kMaxContextText);
        }
        text << ": " << e.m_message << " - raised in " << e.m_function << " (" << e.m_file << ':'
             << PQDebugString::fromIntToWstring(e.m_line) << ')';
        if (frame.logCallChain) {
            text << " - call chain:";
            for (const PQCallSite& site : e.m_callChain) {
                text << ' ' << site.function << " (" << site.file << ':'
                     << PQDebugString::fromIntToWstring(site.line) << ')';
            }
            if (e.m_droppedCallSites != 0) {
                text << " and " << PQDebugString::fromULongLongToWstring(e.m_droppedCallSites)
                     << " more";
            }
        }
        PQDebug::writeRecord({frame.errorCode, frame.logType, std::string(), text.take()},
                             frame.flush);
    }

    // A standard exception becomes a PQException raised at the frame (one
    // that already is a PQException is treated as such).
    static PQException fromStd(std::exception& caught, const PQTreatmentFrame& frame) {
        if (auto* const pq = dynamic_cast<PQException*>(&caught)) {
            treat(*pq, "PQException", frame, false);
            return *pq;
        }
        PQException converted(PQExceptionType_STD_EXCEPTION, safe(frame.file), safe(frame.function),
                              frame.line, caught.what(), PQException::get_PQ_EX_ANORMAL(),
                              frame.recordFrame, false, frame.logType, false);
        treat(converted, "std::exception", frame, true);
        return converted;
    }

    static PQException fromUnknown(const PQTreatmentFrame& frame) {
        PQException converted(PQExceptionType_UNKNOWN_EXCEPTION, safe(frame.file),
                              safe(frame.function), frame.line, "Unknown exception",
                              PQException::get_PQ_EX_ANORMAL(), frame.recordFrame, false,
                              frame.logType, false);
        treat(converted, "Unknown exception", frame, true);
        return converted;
    }

    // The pointer forms: a null pointer is an unknown failure.
    static PQException fromPointer(PQException* caught, const PQTreatmentFrame& frame) {
        if (caught == nullptr) {
            return fromUnknown(frame);
        }
        treat(*caught, "PQException", frame, false);
        return *caught;
    }

    static PQException fromPointer(std::exception* caught, const PQTreatmentFrame& frame) {
        return caught == nullptr ? fromUnknown(frame) : fromStd(*caught, frame);
    }

private:
    static const char* safe(const char* text) { return text != nullptr ? text : ""; }
};

void PQException::func_TREAT_PQ_EXCEPTION(PQException& caught, bool logCallChain,
                                          const std::string& context, PQLogType logType,
                                          int errorCode, bool recordFrame, const char* function,
                                          const char* file, int line) {
    PQTreatment::treat(
        caught, "PQException",
        {logCallChain, context, logType, errorCode, recordFrame, false, function, file, line},
        false);
}

PQException PQException::func_TREAT_STD_EXCEPTION(std::exception& caught, bool logCallChain,
                                                  const std::string& context, PQLogType logType,
                                                  int errorCode, bool recordFrame,
                                                  const char* function, const char* file,
                                                  int line) {
    return PQTreatment::fromStd(caught, {logCallChain, context, logType, errorCode, recordFrame,
                                         false, function, file, line});
}

PQException PQException::func_TREAT_UNKNOWN_EXCEPTION(bool logCallChain, const std::string& context,
                                                      PQLogType logType, int errorCode,
                                                      bool recordFrame, const char* function,
                                                      const char* file, int line) {
    return PQTreatment::fromUnknown(
        {logCallChain, context, logType, errorCode, recordFrame, false, function, file, line});
}

PQException PQException::func_TREAT_PQ_EXCEPTION_P(PQException* caught, bool logCallChain,
                                                   const std::string& context, PQLogType logType,
                                                   int errorCode, bool recordFrame,
                                                   const char* function, const char* file,
                                                   int line) {
    return PQTreatment::fromPointer(caught, {logCallChain, context, logType, errorCode, recordFrame,
                                             false, function, file, line});
}

PQException PQException::func_TREAT_STD_EXCEPTION_P(std::exception* caught, bool logCallChain,
                                                    const std::string& context, PQLogType logType,
                                                    int errorCode, bool recordFrame,
                                                    const char* function, const char* file,
                                                    int line) {
    return PQTreatment::fromPointer(caught, {logCallChain, context, logType, errorCode, recordFrame,
                                             false, function, file, line});
}

void PQException::func_TREAT_PQ_EXCEPTION_FINAL(PQException& caught, bool logCallChain,
                                                const std::string& context, PQLogType logType,
                                                int errorCode, bool recordFrame, bool flush,
                                                const char* function, const char* file, int line) {
    PQTreatment::treat(
        caught, "PQException",
        {logCallChain, context, logType, errorCode, recordFrame, flush, function, file, line},
        false);
}

void PQException::func_TREAT_STD_EXCEPTION_FINAL(std::exception& caught, bool logCallChain,
                                                 const std::string& context, PQLogType logType,
                                                 int errorCode, bool recordFrame, bool flush,
                                                 const char* function, const char* file, int line) {
    (void)PQTreatment::fromStd(caught, {logCallChain, context, logType, errorCode, recordFrame,
                                        flush, function, file, line});
}

void PQException::func_TREAT_PQ_EXCEPTION_P_FINAL(PQException* caught, bool logCallChain,
                                                  const std::string& context, PQLogType logType,
                                                  int errorCode, bool recordFrame, bool flush,
                                                  const char* function, const char* file,
                                                  int line) {
    (void)PQTreatment::fromPointer(caught, {logCallChain, context, logType, errorCode, recordFrame,
                                            flush, function, file, line});
}

void PQException::func_TREAT_STD_EXCEPTION_P_FINAL(std::exception* caught, bool logCallChain,
                                                   PQLogType logType, int errorCode,
                                                   bool recordFrame, bool flush,
                                                   const char* function, const char* file,
                                                   int line) {
    (void)PQTreatment::fromPointer(caught, {logCallChain, PQDebug::get_m_sEmptyString(), logType,
                                            errorCode, recordFrame, flush, function, file, line});
}

void PQException::func_TREAT_UNKNOWN_EXCEPTION_FINAL(bool logCallChain, const std::string& context,
                                                     PQLogType logType, int errorCode,
                                                     bool recordFrame, bool flush,
                                                     const char* function, const char* file,
                                                     int line) {
    (void)PQTreatment::fromUnknown(
        {logCallChain, context, logType, errorCode, recordFrame, flush, function, file, line});
}

} // namespace PQ_DEBUG
