#include "PQDebug/PQUtil_macosx.h"

#include <array>
#include <cstdlib>
#include <sys/utsname.h>
#include <unistd.h>
#include <vector>

#include "PQDebug/PQUtil_macosxInternal.h"

namespace PQDEBUG_MACOSX {

std::string internal::hostNameFromSystem() {
    // POSIX lets a system leave the limit unsaid; HOST_NAME_MAX is Linux's.
    constexpr long kUnsaidLimit = 255;
    const long limit = sysconf(_SC_HOST_NAME_MAX);
    std::vector<char> name(static_cast<std::size_t>(limit > 0 ? limit : kUnsaidLimit) + 1, '\0');
    if (gethostname(name.data(), name.size()) != 0) {
        return {};
    }
    // A truncated name may come back without its terminator.
    name.back() = '\0';
    return name.data();
}

std::string internal::hostNameFromUname() {
    utsname system{};
    return uname(&system) == 0 ? std::string(system.nodename) : std::string();
}

std::string internal::hostNameFromEnvironment() {
    for (const char* variable : {"HOSTNAME", "COMPUTERNAME"}) {
        if (const char* value = std::getenv(variable); value != nullptr && *value != '\0') {
            return value;
        }
    }
    return {};
}

std::string internal::firstHostName(std::span<const HostNameSource> sources) {
    for (const HostNameSource source : sources) {
        if (std::string name = source(); !name.empty()) {
            return name;
        }
    }
    return {};
}

std::string PQUtil_macosx::getComputerName() {
    static constexpr std::array<internal::HostNameSource, 3> kSources = {
        internal::hostNameFromSystem, internal::hostNameFromUname,
        internal::hostNameFromEnvironment};
    return internal::firstHostName(kSources);
}

} // namespace PQDEBUG_MACOSX
