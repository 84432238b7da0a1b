#pragma once

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <string>

namespace pqtest {

// What PQUtil::charFromHex stands for: `std::istringstream(hex) >> std::hex
// >> anInt` as GCC's library reads it, which is the C library's strtol in
// base 16 (blanks, a sign, an optional "0x", digits up to the first other
// byte) clamped to an int. libc++'s stream reads on over an "x" after the
// digits ("a0x" gives 0), so no stream serves as the reference on both.
inline char hexAsStreamReads(const std::string& hex) {
    const long value = std::strtol(hex.c_str(), nullptr, 16);
    return static_cast<char>(std::clamp<long>(value, INT_MIN, INT_MAX));
}

} // namespace pqtest
