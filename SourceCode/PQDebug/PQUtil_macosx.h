#pragma once

#include <string>

namespace PQDEBUG_MACOSX {

// The platform part of the debug library (POSIX, so Linux and macOS alike).
class PQUtil_macosx {
public:
    // The host's name: what gethostname gives, else the node name of uname,
    // else the HOSTNAME or COMPUTERNAME environment variable; the empty
    // string when none gives a name.
    [[nodiscard]] static std::string getComputerName();
};

} // namespace PQDEBUG_MACOSX
