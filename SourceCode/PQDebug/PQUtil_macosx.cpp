#include "PQDebug/PQUtil_macosx.h"

#include <array>
#include <climits>
#include <unistd.h>

namespace PQDEBUG_MACOSX {

std::string PQUtil_macosx::getComputerName() {
#ifdef HOST_NAME_MAX
    constexpr std::size_t kMaxName = HOST_NAME_MAX;
#else
    constexpr std::size_t kMaxName = 255;
#endif
    std::array<char, kMaxName + 1> name{};
    if (gethostname(name.data(), name.size()) != 0) {
        return {};
    }
    // A truncated name may come back without its terminator.
    name.back() = '\0';
    return name.data();
}

} // namespace PQDEBUG_MACOSX
