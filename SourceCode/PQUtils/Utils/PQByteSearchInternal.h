#pragma once

// Byte searches over views: what the string sources use instead of
// std::string's searches, which stop at nothing and cannot bound their
// reads. Not installed.

#include <cstddef>
#include <cstring>
#include <string_view>

namespace PQ_UTILS::internal {

// Position of `needle` in `haystack` at or after `pos`, every byte counting
// (zero bytes too); npos when there is none. An empty needle is found at
// `pos` when pos <= size. Linear in the haystack: memchr for the first byte
// of a short needle, then a compare (at most kShortNeedle bytes per
// position); the C library's memmem (two-way) for a longer one. memmem is
// kept off the short needles that are searched over and over in one text:
// the address sanitizer checks its whole haystack on every call.
inline constexpr std::size_t kShortNeedle = 16;

[[nodiscard]] inline std::size_t findBytes(std::string_view haystack, std::string_view needle,
                                           std::size_t pos = 0) noexcept {
    if (pos > haystack.size()) {
        return std::string_view::npos;
    }
    if (needle.empty()) {
        return pos;
    }
    if (haystack.size() - pos < needle.size()) {
        return std::string_view::npos; // also keeps a null empty haystack from the C library
    }
    if (needle.size() <= kShortNeedle) {
        return haystack.find(needle, pos);
    }
    const char* const from = haystack.data() + pos;
    const void* found = ::memmem(from, haystack.size() - pos, needle.data(), needle.size());
    return found == nullptr
               ? std::string_view::npos
               : static_cast<std::size_t>(static_cast<const char*>(found) - haystack.data());
}

// The bytes of `text` before its first zero byte, reading at most `limit`
// bytes and none past that zero.
[[nodiscard]] inline std::string_view untilZero(const char* text, std::size_t limit) noexcept {
    return {text, limit == 0 ? 0 : ::strnlen(text, limit)};
}

} // namespace PQ_UTILS::internal
