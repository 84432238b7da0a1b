#pragma once

// How the utility library raises, treats and logs its failures.
//
// Every public operation runs its body in the catch-and-treat frame: written
// as a function-try-block closed by PQ_CATCH_AND_TREAT, so that a constructor
// also covers its member initialisers and __func__ names the operation
// ("build_wsTab_re"; the class name for a constructor):
//
//   std::unique_ptr<kstring> PQString::build_wsTab_re(int nbTab) try {
//       PQ_ASSERT(nbTab >= 0);
//       return std::make_unique<kstring>(static_cast<std::size_t>(nbTab), '\t');
//   }
//   PQ_CATCH_AND_TREAT
//
// Whatever leaves such a frame is a PQException, logged once per frame
// crossed: a PQException goes on as the same object, a standard exception
// or anything else is turned into a new one. Each source file names itself,
// for its frames and checks, in a constant that the macros read:
//
//   constexpr const char* pqSourceFile = "CppLibrairies/SourceCode/PQUtils/Orders/PQOrder";
//
// The macros use __func__, so they belong in named functions, not lambdas.

#include <exception>
#include <string>
#include <string_view>

#include "PQDebug/PQDebug.h"
#include "PQDebug/PQException.h"
#include "PQUtils/Utils/PQUtilsTypes.h"

namespace PQ_UTILS {

// The treatment family: each member forwards its arguments unchanged to the
// debug library's member of the same name (PQ_DEBUG::PQException), so that
// code built on this library can write the same frames.
void func_TREAT_PQ_EXCEPTION(PQException& caught, bool logCallChain, const std::string& context,
                             PQLogType logType, int errorCode, bool recordFrame,
                             const char* function, const char* file, int line);
[[nodiscard]] PQException func_TREAT_STD_EXCEPTION(std::exception& caught, bool logCallChain,
                                                   const std::string& context, PQLogType logType,
                                                   int errorCode, bool recordFrame,
                                                   const char* function, const char* file,
                                                   int line);
[[nodiscard]] PQException func_TREAT_UNKNOWN_EXCEPTION(bool logCallChain,
                                                       const std::string& context,
                                                       PQLogType logType, int errorCode,
                                                       bool recordFrame, const char* function,
                                                       const char* file, int line);
[[nodiscard]] PQException func_TREAT_PQ_EXCEPTION_P(PQException* caught, bool logCallChain,
                                                    const std::string& context, PQLogType logType,
                                                    int errorCode, bool recordFrame,
                                                    const char* function, const char* file,
                                                    int line);
[[nodiscard]] PQException func_TREAT_STD_EXCEPTION_P(std::exception* caught, bool logCallChain,
                                                     const std::string& context, PQLogType logType,
                                                     int errorCode, bool recordFrame,
                                                     const char* function, const char* file,
                                                     int line);
void func_TREAT_PQ_EXCEPTION_FINAL(PQException& caught, bool logCallChain,
                                   const std::string& context, PQLogType logType, int errorCode,
                                   bool recordFrame, bool flush, const char* function,
                                   const char* file, int line);
void func_TREAT_STD_EXCEPTION_FINAL(std::exception& caught, bool logCallChain,
                                    const std::string& context, PQLogType logType, int errorCode,
                                    bool recordFrame, bool flush, const char* function,
                                    const char* file, int line);
void func_TREAT_PQ_EXCEPTION_P_FINAL(PQException* caught, bool logCallChain,
                                     const std::string& context, PQLogType logType, int errorCode,
                                     bool recordFrame, bool flush, const char* function,
                                     const char* file, int line);
void func_TREAT_STD_EXCEPTION_P_FINAL(std::exception* caught, bool logCallChain, PQLogType logType,
                                      int errorCode, bool recordFrame, bool flush,
                                      const char* function, const char* file, int line);
void func_TREAT_UNKNOWN_EXCEPTION_FINAL(bool logCallChain, const std::string& context,
                                        PQLogType logType, int errorCode, bool recordFrame,
                                        bool flush, const char* function, const char* file,
                                        int line);

// What the macros below expand to. Every frame of the library treats with
// log type 1005 (PQLogType_EXCEPTION), error code 1, and records itself in
// the exception's call chain.
namespace frame {

using PQSite = PQ_DEBUG::PQTreatmentSite;

// Catch-and-treat: the PQException form treats in place (the handler
// rethrows it), the others return the PQException to throw.
void treat(PQException& caught, const std::string& context, const PQSite& site);
[[nodiscard]] PQException treat(std::exception& caught, const std::string& context,
                                const PQSite& site);
[[nodiscard]] PQException treatUnknown(const std::string& context, const PQSite& site);

// Log-and-go-on, through the _FINAL forms (the log file is flushed).
void treatFinal(PQException& caught, bool logCallChain, const std::string& context,
                const PQSite& site);
void treatFinal(std::exception& caught, bool logCallChain, const std::string& context,
                const PQSite& site);
void treatUnknownFinal(bool logCallChain, const std::string& context, const PQSite& site);

// A broken precondition: PQException of type 1008, message
// `condition` + " should be true" + `suffix`.
[[nodiscard]] PQException assertionFailure(std::string_view condition, std::string_view suffix,
                                           const PQSite& site);

// The details that an assertion adds after " should be true":
// "\nPrecisions : " + `details`.
[[nodiscard]] std::string precisions(std::string_view details);

// Any other failure of the library: PQException of type 1008 with `message`.
[[nodiscard]] PQException failure(std::string message, const PQSite& site);

// An operation that the object refuses (assigning an order, a query that a
// kind of JSON node does not answer): PQException of type 1075, no message.
[[nodiscard]] PQException notAllowed(const PQSite& site);

// A null pointer: PQNullPointerException for the variable `expression`,
// message "Null variable : " + `expression` + " - " unless one is given.
[[nodiscard]] PQNullPointerException nullPointer(std::string_view expression, const PQSite& site,
                                                 std::string_view message = {});

} // namespace frame

// Writes the library's trace of an unexpected state through the debug
// library: "Trace message from : \n\n" + function + "\n\n" + text.
void traceMessageFrom(std::string_view function, std::string_view text);

} // namespace PQ_UTILS

#define PQ_FRAME_SITE() (::PQ_UTILS::frame::PQSite{__func__, pqSourceFile, __LINE__})

// The three handlers of the catch-and-treat frame, with a context text that
// is evaluated only when something was caught.
#define PQ_CATCH_AND_TREAT_CONTEXT(context)                                                        \
    catch (::PQ_DEBUG::PQException & pqCaught) {                                                   \
        ::PQ_UTILS::frame::treat(pqCaught, (context), PQ_FRAME_SITE());                            \
        throw;                                                                                     \
    }                                                                                              \
    catch (::std::exception & pqCaught) {                                                          \
        throw ::PQ_UTILS::frame::treat(pqCaught, (context), PQ_FRAME_SITE());                      \
    }                                                                                              \
    catch (...) {                                                                                  \
        throw ::PQ_UTILS::frame::treatUnknown((context), PQ_FRAME_SITE());                         \
    }

#define PQ_CATCH_AND_TREAT PQ_CATCH_AND_TREAT_CONTEXT(::PQ_DEBUG::PQDebug::get_m_sEmptyString())

// Handlers that log what was caught through the final treatment and go on
// after the try block: for a failure that must not stop the caller (one bad
// piece among many).
#define PQ_CATCH_AND_TREAT_FINAL(logCallChain, context)                                            \
    catch (::PQ_DEBUG::PQException & pqCaught) {                                                   \
        ::PQ_UTILS::frame::treatFinal(pqCaught, (logCallChain), (context), PQ_FRAME_SITE());       \
    }                                                                                              \
    catch (::std::exception & pqCaught) {                                                          \
        ::PQ_UTILS::frame::treatFinal(pqCaught, (logCallChain), (context), PQ_FRAME_SITE());       \
    }                                                                                              \
    catch (...) {                                                                                  \
        ::PQ_UTILS::frame::treatUnknownFinal((logCallChain), (context), PQ_FRAME_SITE());          \
    }

// Throws the assertion failure unless `condition` holds; the message is
// `text`, then " should be true", then `suffix` (a string).
#define PQ_ASSERT_TEXT(condition, text, suffix)                                                    \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            throw ::PQ_UTILS::frame::assertionFailure((text), (suffix), PQ_FRAME_SITE());          \
        }                                                                                          \
    } while (false)

// The assertions below quote the condition as written, before any macro in
// it is expanded ("m_startPointeur != NULL ..."), so each stringizes it itself.
#define PQ_ASSERT_SUFFIX(condition, suffix) PQ_ASSERT_TEXT(condition, #condition, suffix)

#define PQ_ASSERT(condition) PQ_ASSERT_TEXT(condition, #condition, ::std::string_view())

// The variant that adds details: "<condition> should be true\nPrecisions : <details>".
#define PQ_ASSERT_PRECISIONS(condition, details)                                                   \
    PQ_ASSERT_TEXT(condition, #condition, ::PQ_UTILS::frame::precisions(details))

// Throws the library's failure (type 1008) with `message`, unless `condition` holds.
#define PQ_REQUIRE(condition, message)                                                             \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            throw ::PQ_UTILS::frame::failure((message), PQ_FRAME_SITE());                          \
        }                                                                                          \
    } while (false)

// Throws PQNullPointerException when `pointer` is null, naming the variable
// by its expression, with the default message or the given one.
#define PQ_CHECK_NULL_TEXT(pointer, text, message)                                                 \
    do {                                                                                           \
        if ((pointer) == nullptr) {                                                                \
            throw ::PQ_UTILS::frame::nullPointer((text), PQ_FRAME_SITE(), (message));              \
        }                                                                                          \
    } while (false)

#define PQ_CHECK_NULL(pointer) PQ_CHECK_NULL_TEXT(pointer, #pointer, ::std::string_view())

#define PQ_CHECK_NULL_MESSAGE(pointer, message) PQ_CHECK_NULL_TEXT(pointer, #pointer, message)
