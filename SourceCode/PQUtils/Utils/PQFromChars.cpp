#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>
#include <system_error>

#include "PQUtils/Utils/PQFromCharsInternal.h"

namespace PQ_UTILS::internal {
namespace {

constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

constexpr char lowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Whether `text` starts with `word` (lower case), in any case.
bool startsWithWord(std::string_view text, std::string_view word) {
    return text.size() >= word.size() &&
           std::equal(word.begin(), word.end(), text.begin(),
                      [](char w, char t) { return w == lowerAscii(t); });
}

constexpr bool isNanPayload(char c) {
    return isDigit(c) || (lowerAscii(c) >= 'a' && lowerAscii(c) <= 'z') || c == '_';
}

// "inf", "infinity", "nan" or "nan(...)" at the start of `text`: the bytes
// read (0 for none) and the value.
struct Special {
    std::size_t length = 0;
    double value = 0;
};

Special readSpecial(std::string_view text) {
    if (startsWithWord(text, "inf")) {
        return {startsWithWord(text, "infinity") ? 8U : 3U,
                std::numeric_limits<double>::infinity()};
    }
    if (!startsWithWord(text, "nan")) {
        return {};
    }
    Special nan{3, std::numeric_limits<double>::quiet_NaN()};
    if (text.size() > 3 && text[3] == '(') {
        const auto close = std::find_if_not(text.begin() + 4, text.end(), isNanPayload);
        if (close != text.end() && *close == ')') {
            nan.length = static_cast<std::size_t>(close - text.begin()) + 1;
        }
    }
    return nan;
}

// A number whose first significant digit is at 10^kOverflowOrder or above
// is beyond every double; one whose first significant digit is at
// 10^kUnderflowOrder or below rounds to zero (the least double is
// 4.9e-324).
constexpr std::int64_t kOverflowOrder = 309;
constexpr std::int64_t kUnderflowOrder = -325;

// More significant digits than a double's exact decimal expansions ever
// need to round right (767); the digits after them only matter by being
// zero or not, which one more digit keeps.
constexpr std::size_t kKeptDigits = 800;

// Powers of ten that a double holds exactly.
constexpr std::array<double, 23> kExactPowers = [] {
    std::array<double, 23> powers{};
    double power = 1;
    for (double& entry : powers) {
        entry = power;
        power *= 10;
    }
    return powers;
}();

// The magnitude of `digits` * 10^exponent when both are exact doubles (15
// digits at most, a power up to 22): one multiplication or division, which
// rounds correctly. Most numbers that pages send (prices, counts) are such.
// Only where doubles are computed in double precision (x86-64, arm64; not
// the x87 unit), which FLT_EVAL_METHOD 0 says.
std::optional<double> exactProduct(std::string_view digits, std::int64_t exponent) {
    constexpr bool kRoundsToDouble = FLT_EVAL_METHOD == 0;
    constexpr std::size_t kExactDigits = 15;
    constexpr std::int64_t kExactPower = 22;
    if (!kRoundsToDouble || digits.size() > kExactDigits || exponent < -kExactPower ||
        exponent > kExactPower) {
        return std::nullopt;
    }
    std::uint64_t value = 0;
    for (const char digit : digits) {
        value = value * 10 + static_cast<std::uint64_t>(digit - '0');
    }
    const double power =
        kExactPowers[static_cast<std::size_t>(exponent < 0 ? -exponent : exponent)];
    return exponent < 0 ? static_cast<double>(value) / power : static_cast<double>(value) * power;
}

// The magnitude of a decimal number with significant digits, correctly
// rounded. It is handed to strtod as its significant digits, as an integer,
// and a power of ten: a form with no decimal point, which every locale
// reads alike. At most kKeptDigits digits and a sticky one are written, so
// the text is short whatever the input.
double roundedMagnitude(std::string_view text, const DecimalNumber& number) {
    std::array<char, kKeptDigits + 32> buffer{};
    std::size_t written = 0;
    bool dropped = false; // a non-zero digit left out
    bool leading = true;
    for (const char c : text.substr(0, number.mantissa)) {
        if (c == '.' || (leading && c == '0')) {
            continue;
        }
        leading = false;
        if (written < kKeptDigits) {
            buffer[written++] = c;
        } else {
            dropped = dropped || c != '0';
        }
    }
    if (dropped) {
        buffer[written++] = '1';
    }
    // digits * 10^(order + 1 - count of digits)
    const std::int64_t exponent = number.order + 1 - static_cast<std::int64_t>(written);
    if (const auto exact = exactProduct({buffer.data(), written}, exponent)) {
        return *exact;
    }
    const auto end =
        std::to_chars(buffer.data() + written + 1, buffer.data() + buffer.size() - 1, exponent);
    buffer[written] = 'e';
    *end.ptr = '\0';
    return std::strtod(buffer.data(), nullptr);
}

} // namespace

DecimalNumber scanDecimal(std::string_view text) noexcept {
    // Small enough that ten times it plus a digit, or added to a digit
    // count, still fits.
    constexpr std::int64_t kSaturated = std::int64_t{1} << 58;
    DecimalNumber number;
    std::size_t i = 0;
    std::int64_t digitsBeforePoint = 0;
    std::int64_t firstSignificant = 0; // index among the digits, point left out
    std::int64_t digits = 0;
    const auto readDigits = [&] {
        for (; i < text.size() && isDigit(text[i]); ++i, ++digits) {
            if (!number.significant && text[i] != '0') {
                number.significant = true;
                firstSignificant = digits;
            }
        }
    };
    readDigits();
    digitsBeforePoint = digits;
    if (i < text.size() && text[i] == '.') {
        ++i;
        readDigits();
    }
    if (digits == 0) {
        return {};
    }
    number.length = number.mantissa = i;
    std::int64_t exponent = 0;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        std::size_t j = i + 1;
        const bool negative = j < text.size() && text[j] == '-';
        if (j < text.size() && (text[j] == '+' || text[j] == '-')) {
            ++j;
        }
        if (j < text.size() && isDigit(text[j])) {
            for (; j < text.size() && isDigit(text[j]); ++j) {
                exponent = std::min(exponent * 10 + (text[j] - '0'), kSaturated);
            }
            exponent = negative ? -exponent : exponent;
            number.length = j;
        }
    }
    number.order =
        number.significant ? digitsBeforePoint - 1 - firstSignificant + exponent : -kSaturated;
    return number;
}

std::from_chars_result portableFromChars(const char* first, const char* last, double& value) {
    const bool negative = first != last && *first == '-';
    const char* const start = first + (negative ? 1 : 0);
    const std::string_view text(start, static_cast<std::size_t>(last - start));
    const auto read = [&](std::size_t length, double magnitude) {
        value = negative ? -magnitude : magnitude;
        return std::from_chars_result{start + length, std::errc()};
    };
    if (const Special special = readSpecial(text); special.length != 0) {
        return read(special.length, special.value);
    }
    const DecimalNumber number = scanDecimal(text);
    if (number.length == 0) {
        return {first, std::errc::invalid_argument};
    }
    const std::from_chars_result outOfRange{start + number.length, std::errc::result_out_of_range};
    if (!number.significant) {
        return read(number.length, 0.0);
    }
    if (number.order >= kOverflowOrder || number.order <= kUnderflowOrder) {
        return outOfRange;
    }
    const double magnitude = roundedMagnitude(text, number);
    if (magnitude == 0 || std::isinf(magnitude)) {
        return outOfRange;
    }
    return read(number.length, magnitude);
}

std::from_chars_result fromChars(const char* first, const char* last, double& value) {
#if defined(__cpp_lib_to_chars) && __cpp_lib_to_chars >= 201611L
    return std::from_chars(first, last, value, std::chars_format::general);
#else
    return portableFromChars(first, last, value);
#endif
}

} // namespace PQ_UTILS::internal
