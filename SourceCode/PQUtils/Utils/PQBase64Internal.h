#pragma once

// Base64 encoding (the standard alphabet, padded) on each path this build
// and this processor have: a portable loop everywhere, SSSE3 on x86-64 when
// the processor has it (checked once, at run time), NEON on arm64. Every
// path writes the same characters; the tests run each beside the portable
// one. Not installed.

#include <cstddef>
#include <span>

namespace PQ_UTILS::internal {

enum class Base64Path { portable, ssse3, neon };

// The paths that run here, the portable one first.
[[nodiscard]] std::span<const Base64Path> base64Paths() noexcept;

// The fastest of them.
[[nodiscard]] Base64Path bestBase64Path() noexcept;

// Writes the (size + 2) / 3 * 4 characters of the Base64 of `in` to `out`
// by `path`, which must be one of base64Paths().
void encodeBase64(const unsigned char* in, std::size_t size, char* out, Base64Path path) noexcept;

} // namespace PQ_UTILS::internal
