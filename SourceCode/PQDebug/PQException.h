#pragma once

#include <cstddef>
#include <exception>
#include <string>
#include <vector>

#include "PQDebug/PQDebugTypes.h"

namespace PQ_DEBUG {

// One place an exception went through: where it was raised, then each frame
// that treated it on its way out.
struct PQCallSite {
    std::string function;
    std::string file;
    int line = 0;
};

// How a treatment is logged: the switches of the func_TREAT_* lists, by name.
struct PQTreatmentOptions {
    bool logCallChain = false; // the record also lists the whole call chain
    PQLogType logType = PQLogType_EXCEPTION;
    int errorCode = 1;
    bool recordFrame = true; // the treating frame is appended to the call chain
    bool flush = false;      // the log file is flushed at once
};

// The treating frame.
struct PQTreatmentSite {
    const char* function;
    const char* file;
    int line;
};

// The exception of the whole system. It carries where it was raised, a
// message, a level and a log type, and the chain of frames it crossed.
// what() is the message.
class PQException : public std::exception {
public:
    static constexpr int PQ_EX_NORMAL = 0;
    // The level of every failure the libraries raise.
    [[nodiscard]] static int get_PQ_EX_ANORMAL() noexcept { return 1; }

    // recordOrigin: the raising site becomes the first entry of the call chain.
    // userVisible: the message is meant for the user as well as for the log.
    // logNow: one record is logged as the exception is made (frames log it
    // anyway as it passes through them, so the libraries pass false).
    PQException(PQExceptionType type, const std::string& file, const std::string& function,
                int line, std::string message, int level, bool recordOrigin, bool userVisible,
                PQLogType logType, bool logNow);
    PQException(const PQException&) = default;
    PQException(PQException&&) noexcept = default;
    PQException& operator=(const PQException&) = default;
    PQException& operator=(PQException&&) noexcept = default;
    ~PQException() override;

    [[nodiscard]] const char* what() const noexcept override { return m_message.c_str(); }

    [[nodiscard]] PQExceptionType get_exceptionType() const noexcept { return m_exceptionType; }
    [[nodiscard]] const std::string& get_file() const noexcept { return m_file; }
    [[nodiscard]] const std::string& get_function() const noexcept { return m_function; }
    [[nodiscard]] int get_line() const noexcept { return m_line; }
    [[nodiscard]] const std::string& get_message() const noexcept { return m_message; }
    [[nodiscard]] int get_level() const noexcept { return m_level; }
    [[nodiscard]] PQLogType get_logType() const noexcept { return m_logType; }
    [[nodiscard]] bool get_userVisible() const noexcept { return m_userVisible; }
    // Origin first (when recorded), then one entry per frame that recorded
    // itself, outermost last. Kept to kMaxCallChain entries: a failure that
    // crosses more frames keeps the first ones and counts the rest.
    [[nodiscard]] const std::vector<PQCallSite>& get_callChain() const noexcept {
        return m_callChain;
    }
    [[nodiscard]] std::size_t get_droppedCallSites() const noexcept { return m_droppedCallSites; }
    static constexpr std::size_t kMaxCallChain = 64;

    // The treatment family. Every frame hands what it caught to one of these:
    // each writes exactly one log record (whatever the log level) made of the
    // exception's message, function, file and line, the treating frame and
    // the context when it is not empty.
    //
    // Common parameters, in order:
    //   logCallChain  the record also lists the whole call chain;
    //   context       a text that says what was being done (may be empty);
    //   logType       the record's log channel;
    //   errorCode     the record's error code;
    //   recordFrame   the treating frame is appended to the call chain;
    //   flush         (_FINAL only) the log file is flushed at once;
    //   function, file, line   the treating frame.
    //
    // The plain PQException form treats in place; the caller rethrows the
    // same object. The other plain forms return the PQException to throw.
    // The _FINAL forms are for outermost frames, which log and go on.
    // A null pointer given to a _P form is treated as an unknown exception.
    //
    // The same treatments with named options, for code that writes its own
    // frames: the func_TREAT_* members forward to these.
    static void treatInPlace(PQException& caught, const std::string& context,
                             const PQTreatmentOptions& options, const PQTreatmentSite& site);
    [[nodiscard]] static PQException treatStd(std::exception& caught, const std::string& context,
                                              const PQTreatmentOptions& options,
                                              const PQTreatmentSite& site);
    [[nodiscard]] static PQException treatUnknown(const std::string& context,
                                                  const PQTreatmentOptions& options,
                                                  const PQTreatmentSite& site);
    [[nodiscard]] static PQException treatPointer(PQException* caught, const std::string& context,
                                                  const PQTreatmentOptions& options,
                                                  const PQTreatmentSite& site);
    [[nodiscard]] static PQException treatPointer(std::exception* caught,
                                                  const std::string& context,
                                                  const PQTreatmentOptions& options,
                                                  const PQTreatmentSite& site);

    static void func_TREAT_PQ_EXCEPTION(PQException& caught, bool logCallChain,
                                        const std::string& context, PQLogType logType,
                                        int errorCode, bool recordFrame, const char* function,
                                        const char* file, int line);
    [[nodiscard]] static PQException
    func_TREAT_STD_EXCEPTION(std::exception& caught, bool logCallChain, const std::string& context,
                             PQLogType logType, int errorCode, bool recordFrame,
                             const char* function, const char* file, int line);
    [[nodiscard]] static PQException
    func_TREAT_UNKNOWN_EXCEPTION(bool logCallChain, const std::string& context, PQLogType logType,
                                 int errorCode, bool recordFrame, const char* function,
                                 const char* file, int line);
    [[nodiscard]] static PQException
    func_TREAT_PQ_EXCEPTION_P(PQException* caught, bool logCallChain, const std::string& context,
                              PQLogType logType, int errorCode, bool recordFrame,
                              const char* function, const char* file, int line);
    [[nodiscard]] static PQException
    func_TREAT_STD_EXCEPTION_P(std::exception* caught, bool logCallChain,
                               const std::string& context, PQLogType logType, int errorCode,
                               bool recordFrame, const char* function, const char* file, int line);
    static void func_TREAT_PQ_EXCEPTION_FINAL(PQException& caught, bool logCallChain,
                                              const std::string& context, PQLogType logType,
                                              int errorCode, bool recordFrame, bool flush,
                                              const char* function, const char* file, int line);
    static void func_TREAT_STD_EXCEPTION_FINAL(std::exception& caught, bool logCallChain,
                                               const std::string& context, PQLogType logType,
                                               int errorCode, bool recordFrame, bool flush,
                                               const char* function, const char* file, int line);
    static void func_TREAT_PQ_EXCEPTION_P_FINAL(PQException* caught, bool logCallChain,
                                                const std::string& context, PQLogType logType,
                                                int errorCode, bool recordFrame, bool flush,
                                                const char* function, const char* file, int line);
    // The only member without a context text.
    static void func_TREAT_STD_EXCEPTION_P_FINAL(std::exception* caught, bool logCallChain,
                                                 PQLogType logType, int errorCode, bool recordFrame,
                                                 bool flush, const char* function, const char* file,
                                                 int line);
    static void func_TREAT_UNKNOWN_EXCEPTION_FINAL(bool logCallChain, const std::string& context,
                                                   PQLogType logType, int errorCode,
                                                   bool recordFrame, bool flush,
                                                   const char* function, const char* file,
                                                   int line);

private:
    void addCallSite(const char* function, const char* file, int line);

    PQExceptionType m_exceptionType;
    std::string m_file;
    std::string m_function;
    int m_line;
    std::string m_message;
    int m_level;
    bool m_userVisible;
    PQLogType m_logType;
    std::vector<PQCallSite> m_callChain;
    std::size_t m_droppedCallSites = 0;

    friend class PQTreatment;
};

// A pointer that should have designated something was null. The variable is
// the text of the pointer expression.
class PQNullPointerException : public PQException {
public:
    PQNullPointerException(const std::string& file, const std::string& function, int line,
                           std::string variable, std::string message, int level, bool recordOrigin,
                           PQLogType logType, bool logNow);
    PQNullPointerException(const PQNullPointerException&) = default;
    PQNullPointerException(PQNullPointerException&&) noexcept = default;
    PQNullPointerException& operator=(const PQNullPointerException&) = default;
    PQNullPointerException& operator=(PQNullPointerException&&) noexcept = default;
    ~PQNullPointerException() override;

    [[nodiscard]] const std::string& get_variable() const noexcept { return m_variable; }

private:
    std::string m_variable;
};

} // namespace PQ_DEBUG
