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

namespace {

const char* safe(const char* text) { return text != nullptr ? text : ""; }

} // namespace

// The single implementation behind the treatment members.
class PQTreatment {
public:
    // Records the frame in `e` and writes the one record of this treatment.
    static void treat(PQException& e, const char* caughtKind, const std::string& context,
                      const PQTreatmentOptions& options, const PQTreatmentSite& site,
                      bool frameIsOrigin) {
        if (options.recordFrame && !frameIsOrigin) {
            e.addCallSite(site.function, site.file, site.line);
        }
        PQRecordText text;
        text << caughtKind << " treated in " << safe(site.function) << " (" << safe(site.file)
             << ':' << PQDebugString::fromIntToWstring(site.line) << ')';
        if (!context.empty()) {
            (text << " - ").appendAtMost(context, PQDebug::kMaxContextText);
        }
        text << ": " << e.m_message << " - raised in " << e.m_function << " (" << e.m_file << ':'
             << PQDebugString::fromIntToWstring(e.m_line) << ')';
        if (options.logCallChain) {
            text << " - call chain:";
            for (const PQCallSite& callSite : e.m_callChain) {
                text << ' ' << callSite.function << " (" << callSite.file << ':'
                     << PQDebugString::fromIntToWstring(callSite.line) << ')';
            }
            if (e.m_droppedCallSites != 0) {
                text << " and " << PQDebugString::fromULongLongToWstring(e.m_droppedCallSites)
                     << " more";
            }
        }
        PQDebug::writeRecord({options.errorCode, options.logType, std::string(), text.take()},
                             options.flush);
    }

    // A failure that was no PQException, made one raised at the frame.
    static PQException converted(PQExceptionType type, const char* message, const char* caughtKind,
                                 const std::string& context, const PQTreatmentOptions& options,
                                 const PQTreatmentSite& site) {
        PQException made(type, safe(site.file), safe(site.function), site.line, message,
                         PQException::get_PQ_EX_ANORMAL(), options.recordFrame, false,
                         options.logType, false);
        treat(made, caughtKind, context, options, site, true);
        return made;
    }
};

void PQException::treatInPlace(PQException& caught, const std::string& context,
                               const PQTreatmentOptions& options, const PQTreatmentSite& site) {
    PQTreatment::treat(caught, "PQException", context, options, site, false);
}

// A standard exception that already is a PQException is treated as such.
PQException PQException::treatStd(std::exception& caught, const std::string& context,
                                  const PQTreatmentOptions& options, const PQTreatmentSite& site) {
    if (auto* const pq = dynamic_cast<PQException*>(&caught)) {
        treatInPlace(*pq, context, options, site);
        return *pq;
    }
    return PQTreatment::converted(PQExceptionType_STD_EXCEPTION, caught.what(), "std::exception",
                                  context, options, site);
}

PQException PQException::treatUnknown(const std::string& context, const PQTreatmentOptions& options,
                                      const PQTreatmentSite& site) {
    return PQTreatment::converted(PQExceptionType_UNKNOWN_EXCEPTION, "Unknown exception",
                                  "Unknown exception", context, options, site);
}

// The pointer forms: a null pointer is an unknown failure.
PQException PQException::treatPointer(PQException* caught, const std::string& context,
                                      const PQTreatmentOptions& options,
                                      const PQTreatmentSite& site) {
    if (caught == nullptr) {
        return treatUnknown(context, options, site);
    }
    treatInPlace(*caught, context, options, site);
    return *caught;
}

PQException PQException::treatPointer(std::exception* caught, const std::string& context,
                                      const PQTreatmentOptions& options,
                                      const PQTreatmentSite& site) {
    return caught == nullptr ? treatUnknown(context, options, site)
                             : treatStd(*caught, context, options, site);
}

// The positional lists, each forwarded as it stands.

void PQException::func_TREAT_PQ_EXCEPTION(PQException& caught, bool logCallChain,
                                          const std::string& context, PQLogType logType,
                                          int errorCode, bool recordFrame, const char* function,
                                          const char* file, int line) {
    treatInPlace(caught, context, {logCallChain, logType, errorCode, recordFrame, false},
                 {function, file, line});
}

PQException PQException::func_TREAT_STD_EXCEPTION(std::exception& caught, bool logCallChain,
                                                  const std::string& context, PQLogType logType,
                                                  int errorCode, bool recordFrame,
                                                  const char* function, const char* file,
                                                  int line) {
    return treatStd(caught, context, {logCallChain, logType, errorCode, recordFrame, false},
                    {function, file, line});
}

PQException PQException::func_TREAT_UNKNOWN_EXCEPTION(bool logCallChain, const std::string& context,
                                                      PQLogType logType, int errorCode,
                                                      bool recordFrame, const char* function,
                                                      const char* file, int line) {
    return treatUnknown(context, {logCallChain, logType, errorCode, recordFrame, false},
                        {function, file, line});
}

PQException PQException::func_TREAT_PQ_EXCEPTION_P(PQException* caught, bool logCallChain,
                                                   const std::string& context, PQLogType logType,
                                                   int errorCode, bool recordFrame,
                                                   const char* function, const char* file,
                                                   int line) {
    return treatPointer(caught, context, {logCallChain, logType, errorCode, recordFrame, false},
                        {function, file, line});
}

PQException PQException::func_TREAT_STD_EXCEPTION_P(std::exception* caught, bool logCallChain,
                                                    const std::string& context, PQLogType logType,
                                                    int errorCode, bool recordFrame,
                                                    const char* function, const char* file,
                                                    int line) {
    return treatPointer(caught, context, {logCallChain, logType, errorCode, recordFrame, false},
                        {function, file, line});
}

void PQException::func_TREAT_PQ_EXCEPTION_FINAL(PQException& caught, bool logCallChain,
                                                const std::string& context, PQLogType logType,
                                                int errorCode, bool recordFrame, bool flush,
                                                const char* function, const char* file, int line) {
    treatInPlace(caught, context, {logCallChain, logType, errorCode, recordFrame, flush},
                 {function, file, line});
}

void PQException::func_TREAT_STD_EXCEPTION_FINAL(std::exception& caught, bool logCallChain,
                                                 const std::string& context, PQLogType logType,
                                                 int errorCode, bool recordFrame, bool flush,
                                                 const char* function, const char* file, int line) {
    (void)treatStd(caught, context, {logCallChain, logType, errorCode, recordFrame, flush},
                   {function, file, line});
}

void PQException::func_TREAT_PQ_EXCEPTION_P_FINAL(PQException* caught, bool logCallChain,
                                                  const std::string& context, PQLogType logType,
                                                  int errorCode, bool recordFrame, bool flush,
                                                  const char* function, const char* file,
                                                  int line) {
    (void)treatPointer(caught, context, {logCallChain, logType, errorCode, recordFrame, flush},
                       {function, file, line});
}

void PQException::func_TREAT_STD_EXCEPTION_P_FINAL(std::exception* caught, bool logCallChain,
                                                   PQLogType logType, int errorCode,
                                                   bool recordFrame, bool flush,
                                                   const char* function, const char* file,
                                                   int line) {
    (void)treatPointer(caught, PQDebug::get_m_sEmptyString(),
                       {logCallChain, logType, errorCode, recordFrame, flush},
                       {function, file, line});
}

void PQException::func_TREAT_UNKNOWN_EXCEPTION_FINAL(bool logCallChain, const std::string& context,
                                                     PQLogType logType, int errorCode,
                                                     bool recordFrame, bool flush,
                                                     const char* function, const char* file,
                                                     int line) {
    (void)treatUnknown(context, {logCallChain, logType, errorCode, recordFrame, flush},
                       {function, file, line});
}

} // namespace PQ_DEBUG
