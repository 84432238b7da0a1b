#include "PQDebug/PQDebugString.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdio>
#include <system_error>

namespace PQ_DEBUG {
namespace {

template <class Integer> kstring toDecimal(Integer value) {
    std::array<char, 24> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return {buffer.data(), result.ptr};
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

} // namespace

kstring PQDebugString::fromIntToWstring(int value) { return toDecimal(value); }
kstring PQDebugString::fromIntToWstring(long value) { return toDecimal(value); }
kstring PQDebugString::fromIntToWstring(long long value) { return toDecimal(value); }
kstring PQDebugString::fromLongLongToWstring(long long value) { return toDecimal(value); }
kstring PQDebugString::fromULongLongToWstring(unsigned long long value) { return toDecimal(value); }
kstring PQDebugString::fromUnsignedIntToWstring(unsigned int value) { return toDecimal(value); }
kstring PQDebugString::fromIntToString(int value) { return toDecimal(value); }

kstring PQDebugString::fromDoubleToWstring(double value, int precision) {
    if (std::isnan(value)) {
        return "nan";
    }
    if (std::isinf(value)) {
        return value < 0 ? "-inf" : "inf";
    }
    constexpr int kMaxPrecision = 30;
    precision = std::clamp(precision, 0, kMaxPrecision);
    // 309 integer digits at most for a finite double, a sign, a point and
    // the fractional digits.
    std::array<char, 320 + kMaxPrecision> buffer{};
#if defined(_LIBCPP_VERSION) && _LIBCPP_VERSION < 14000
    // libc++ before 14 (Emscripten 3.1's) writes no floating-point numbers;
    // its C library (musl) writes the same exact digits, with a point
    // whatever the locale.
    const int written = std::snprintf(buffer.data(), buffer.size(), "%.*f", precision, value);
    return {buffer.data(), static_cast<std::size_t>(written)};
#else
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                      std::chars_format::fixed, precision);
    if (result.ec != std::errc()) {
        return "nan";
    }
    return {buffer.data(), result.ptr};
#endif
}

int PQDebugString::fromWstringToInt(const kstring& text) {
    std::size_t i = 0;
    while (i < text.size() && isBlank(text[i])) {
        ++i;
    }
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        negative = text[i] == '-';
        ++i;
    }
    // Accumulate as a negative number so that INT_MIN is reachable.
    long long value = 0;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
        value = value * 10 - (text[i] - '0');
        if (value < static_cast<long long>(INT_MIN)) {
            return negative ? INT_MIN : INT_MAX;
        }
    }
    if (negative) {
        return static_cast<int>(value);
    }
    return value < -static_cast<long long>(INT_MAX) ? INT_MAX : static_cast<int>(-value);
}

kstring PQDebugString::fromWstringToString(const kstring& text) { return text; }
kstring PQDebugString::fromStringToWstring(const kstring& text) { return text; }

std::unique_ptr<kstring> PQDebugString::fromStringToWstring_ptr(const kstring& text) {
    return std::make_unique<kstring>(text);
}

std::unique_ptr<kstring> PQDebugString::fromStringToKstring_ptr(const kstring& text) {
    return std::make_unique<kstring>(text);
}

void PQDebugString::appendOneLine(kstring& out, std::string_view text) {
    static constexpr char kHex[] = "0123456789abcdef";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\n') {
            out += "\\n";
        } else if (c == '\r') {
            out += "\\r";
        } else if (c == '\t') {
            out += "\\t";
        } else if (byte < 0x20 || byte == 0x7f) {
            out += "\\x";
            out += kHex[byte >> 4U];
            out += kHex[byte & 0xfU];
        } else {
            out += c;
        }
    }
}

} // namespace PQ_DEBUG
