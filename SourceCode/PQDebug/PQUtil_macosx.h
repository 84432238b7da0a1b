#pragma once

#include <string>

namespace PQDEBUG_MACOSX {

// The platform part of the debug library (POSIX, so Linux and macOS alike).
class PQUtil_macosx {
public:
    // The host's name as the system gives it (gethostname), or the empty
    // string when the system refuses.
    [[nodiscard]] static std::string getComputerName();
};

} // namespace PQDEBUG_MACOSX
