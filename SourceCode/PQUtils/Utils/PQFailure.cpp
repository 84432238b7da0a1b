#include "PQUtils/Utils/PQFailure.h"

#include <string>

namespace PQ_UTILS {

void func_TREAT_PQ_EXCEPTION(PQException& caught, bool logCallChain, const std::string& context,
                             PQLogType logType, int errorCode, bool recordFrame,
                             const char* function, const char* file, int line) {
    PQException::func_TREAT_PQ_EXCEPTION(caught, logCallChain, context, logType, errorCode,
                                         recordFrame, function, file, line);
}

PQException func_TREAT_STD_EXCEPTION(std::exception& caught, bool logCallChain,
                                     const std::string& context, PQLogType logType, int errorCode,
                                     bool recordFrame, const char* function, const char* file,
                                     int line) {
    return PQException::func_TREAT_STD_EXCEPTION(caught, logCallChain, context, logType, errorCode,
                                                 recordFrame, function, file, line);
}

PQException func_TREAT_UNKNOWN_EXCEPTION(bool logCallChain, const std::string& context,
                                         PQLogType logType, int errorCode, bool recordFrame,
                                         const char* function, const char* file, int line) {
    return PQException::func_TREAT_UNKNOWN_EXCEPTION(logCallChain, context, logType, errorCode,
                                                     recordFrame, function, file, line);
}

PQException func_TREAT_PQ_EXCEPTION_P(PQException* caught, bool logCallChain,
                                      const std::string& context, PQLogType logType, int errorCode,
                                      bool recordFrame, const char* function, const char* file,
                                      int line) {
    return PQException::func_TREAT_PQ_EXCEPTION_P(caught, logCallChain, context, logType, errorCode,
                                                  recordFrame, function, file, line);
}

PQException func_TREAT_STD_EXCEPTION_P(std::exception* caught, bool logCallChain,
                                       const std::string& context, PQLogType logType, int errorCode,
                                       bool recordFrame, const char* function, const char* file,
                                       int line) {
    return PQException::func_TREAT_STD_EXCEPTION_P(caught, logCallChain, context, logType,
                                                   errorCode, recordFrame, function, file, line);
}

void func_TREAT_PQ_EXCEPTION_FINAL(PQException& caught, bool logCallChain,
                                   const std::string& context, PQLogType logType, int errorCode,
                                   bool recordFrame, bool flush, const char* function,
                                   const char* file, int line) {
    PQException::func_TREAT_PQ_EXCEPTION_FINAL(caught, logCallChain, context, logType, errorCode,
                                               recordFrame, flush, function, file, line);
}

void func_TREAT_STD_EXCEPTION_FINAL(std::exception& caught, bool logCallChain,
                                    const std::string& context, PQLogType logType, int errorCode,
                                    bool recordFrame, bool flush, const char* function,
                                    const char* file, int line) {
    PQException::func_TREAT_STD_EXCEPTION_FINAL(caught, logCallChain, context, logType, errorCode,
                                                recordFrame, flush, function, file, line);
}

void func_TREAT_PQ_EXCEPTION_P_FINAL(PQException* caught, bool logCallChain,
                                     const std::string& context, PQLogType logType, int errorCode,
                                     bool recordFrame, bool flush, const char* function,
                                     const char* file, int line) {
    PQException::func_TREAT_PQ_EXCEPTION_P_FINAL(caught, logCallChain, context, logType, errorCode,
                                                 recordFrame, flush, function, file, line);
}

void func_TREAT_STD_EXCEPTION_P_FINAL(std::exception* caught, bool logCallChain, PQLogType logType,
                                      int errorCode, bool recordFrame, bool flush,
                                      const char* function, const char* file, int line) {
    PQException::func_TREAT_STD_EXCEPTION_P_FINAL(caught, logCallChain, logType, errorCode,
                                                  recordFrame, flush, function, file, line);
}

void func_TREAT_UNKNOWN_EXCEPTION_FINAL(bool logCallChain, const std::string& context,
                                        PQLogType logType, int errorCode, bool recordFrame,
                                        bool flush, const char* function, const char* file,
                                        int line) {
    PQException::func_TREAT_UNKNOWN_EXCEPTION_FINAL(logCallChain, context, logType, errorCode,
                                                    recordFrame, flush, function, file, line);
}

namespace frame {
namespace {

// How every frame of the library treats; the final ones also flush.
constexpr PQ_DEBUG::PQTreatmentOptions kFrame{.logCallChain = false,
                                              .logType = PQ_DEBUG::PQLogType_EXCEPTION,
                                              .errorCode = 1,
                                              .recordFrame = true,
                                              .flush = false};

constexpr PQ_DEBUG::PQTreatmentOptions finalFrame(bool logCallChain) {
    PQ_DEBUG::PQTreatmentOptions options = kFrame;
    options.logCallChain = logCallChain;
    options.flush = true;
    return options;
}

} // namespace

void treat(PQException& caught, const std::string& context, const PQSite& site) {
    PQException::treatInPlace(caught, context, kFrame, site);
}

PQException treat(std::exception& caught, const std::string& context, const PQSite& site) {
    return PQException::treatStd(caught, context, kFrame, site);
}

PQException treatUnknown(const std::string& context, const PQSite& site) {
    return PQException::treatUnknown(context, kFrame, site);
}

void treatFinal(PQException& caught, bool logCallChain, const std::string& context,
                const PQSite& site) {
    PQException::treatInPlace(caught, context, finalFrame(logCallChain), site);
}

void treatFinal(std::exception& caught, bool logCallChain, const std::string& context,
                const PQSite& site) {
    (void)PQException::treatStd(caught, context, finalFrame(logCallChain), site);
}

void treatUnknownFinal(bool logCallChain, const std::string& context, const PQSite& site) {
    (void)PQException::treatUnknown(context, finalFrame(logCallChain), site);
}

PQException assertionFailure(std::string_view condition, std::string_view suffix,
                             const PQSite& site) {
    std::string message;
    message.reserve(condition.size() + suffix.size() + 16);
    message.append(condition).append(" should be true").append(suffix);
    return failure(std::move(message), site);
}

std::string precisions(std::string_view details) {
    std::string text("\nPrecisions : ");
    text.append(details);
    return text;
}

namespace {

PQException failureOfType(PQ_DEBUG::PQExceptionType type, std::string message, const PQSite& site) {
    return {type,
            site.file,
            site.function,
            site.line,
            std::move(message),
            PQException::get_PQ_EX_ANORMAL(),
            true,
            false,
            kFrame.logType,
            false};
}

} // namespace

PQException failure(std::string message, const PQSite& site) {
    return failureOfType(PQ_DEBUG::PQExceptionType_BAS_EXCEPTION, std::move(message), site);
}

PQException notAllowed(const PQSite& site) {
    return failureOfType(PQ_DEBUG::PQExceptionType_NOT_ALLOWED, {}, site);
}

PQNullPointerException nullPointer(std::string_view expression, const PQSite& site,
                                   std::string_view givenMessage) {
    std::string message;
    if (givenMessage.empty()) {
        message.append("Null variable : ").append(expression).append(" - ");
    } else {
        message.assign(givenMessage);
    }
    return {site.file,
            site.function,
            site.line,
            std::string(expression),
            std::move(message),
            PQException::get_PQ_EX_ANORMAL(),
            true,
            kFrame.logType,
            false};
}

} // namespace frame

void traceMessageFrom(std::string_view function, std::string_view text) {
    std::string trace = "Trace message from : \n\n";
    trace.append(function).append("\n\n").append(text);
    PQ_DEBUG::PQDebug::Trace_Debug(trace, false);
}

} // namespace PQ_UTILS
