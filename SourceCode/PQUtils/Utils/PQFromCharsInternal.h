#pragma once

// Reading a double from text the same way with every standard library;
// not installed.

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace PQ_UTILS::internal {

// A decimal number at the start of a text, without its sign: digits with an
// optional point and fraction (a digit on one side at least), then an
// optional exponent ("e", an optional sign, digits; left out when no digit
// follows).
struct DecimalNumber {
    std::size_t length = 0;   // 0 when the text does not start with one
    std::size_t mantissa = 0; // the bytes before the exponent
    bool significant = false; // a digit other than 0
    // The power of ten of the first significant digit, exponent included.
    // The exponent saturates far beyond any double.
    std::int64_t order = 0;
};
[[nodiscard]] DecimalNumber scanDecimal(std::string_view text) noexcept;

// Reads a double at `first` as std::from_chars(first, last, value) does
// with chars_format::general: an optional "-", then a decimal number, or
// "inf", "infinity", "nan" or "nan(" letters, digits and "_" ")" in any
// case; no "+", blank or hexadecimal form. Correctly rounded, whatever
// the locale. A number that rounds to an infinity, or to zero without
// being zero, gives result_out_of_range and leaves `value` as it was.
//   portableFromChars("2.5e-3x") -> 0.0025, 6 bytes read
// Works with any C library; fromChars is std::from_chars where the
// standard library has it for double, and this elsewhere.
std::from_chars_result portableFromChars(const char* first, const char* last, double& value);
std::from_chars_result fromChars(const char* first, const char* last, double& value);

} // namespace PQ_UTILS::internal
