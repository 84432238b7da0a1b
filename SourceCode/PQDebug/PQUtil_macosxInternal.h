#pragma once

// The sources of the host's name, in the order they are asked; not
// installed.

#include <span>
#include <string>

namespace PQDEBUG_MACOSX::internal {

// The name from gethostname, in a buffer as long as the system says a name
// can be (sysconf; 255 where it does not say); empty when it refuses.
[[nodiscard]] std::string hostNameFromSystem();
// The node name of uname, which systems fill even when gethostname fails.
[[nodiscard]] std::string hostNameFromUname();
// The HOSTNAME or, as on Windows, COMPUTERNAME environment variable.
[[nodiscard]] std::string hostNameFromEnvironment();

using HostNameSource = std::string (*)();
// The first name that one of `sources` gives, asked in order; empty when
// none gives one.
[[nodiscard]] std::string firstHostName(std::span<const HostNameSource> sources);

} // namespace PQDEBUG_MACOSX::internal
