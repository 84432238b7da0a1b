// The double reader that stands in for std::from_chars where the standard
// library has none: exact, and the same as from_chars byte for byte.

#include <array>
#include <bit>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <locale.h> // NOLINT(modernize-deprecated-headers): newlocale and uselocale are POSIX
#include <random>
#include <string>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "PQUtils/Utils/PQFromCharsInternal.h"
#include "PQUtils/Utils/PQString.h"
#include "support/Sanitizers.h"
#if defined(PQ_TEST_ASAN)
#include <sanitizer/lsan_interface.h>
#endif

using PQ_UTILS::internal::fromChars;
using PQ_UTILS::internal::portableFromChars;

namespace {

constexpr std::uint64_t kUntouched = 0x0123456789abcdefU; // the value before a read
constexpr std::ptrdiff_t kWhole = -1;                     // a row read to its end

struct Read {
    std::ptrdiff_t length;
    std::errc error;
    std::uint64_t bits;
    bool operator==(const Read&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Read& read) {
    char bits[24];
    std::snprintf(bits, sizeof bits, "%016llx", static_cast<unsigned long long>(read.bits));
    return out << "{length " << read.length << ", error " << static_cast<int>(read.error)
               << ", bits " << bits << "}";
}

template <class Reader> Read readWith(Reader reader, const std::string& text) {
    auto value = std::bit_cast<double>(kUntouched);
    const auto [end, error] = reader(text.data(), text.data() + text.size(), value);
    return {end - text.data(), error, std::bit_cast<std::uint64_t>(value)};
}

Read portableRead(const std::string& text) { return readWith(portableFromChars, text); }

#if defined(__cpp_lib_to_chars) && __cpp_lib_to_chars >= 201611L
constexpr bool kStandardReader = true;
Read standardRead(const std::string& text) {
    return readWith(
        [](const char* first, const char* last, double& value) {
            return std::from_chars(first, last, value, std::chars_format::general);
        },
        text);
}
#else
constexpr bool kStandardReader = false;
Read standardRead(const std::string& /*text*/) { return {}; }
#endif

// The exact decimal text of mantissa * 2^exponent, as digits and, for a
// negative exponent, "e-" and a power of ten: m * 2^-k = m * 5^k / 10^k.
std::string exactDecimal(std::uint64_t mantissa, int exponent) {
    constexpr std::uint64_t kLimb = 1000000000; // base 10^9, lowest limb first
    std::vector<std::uint64_t> limbs{mantissa % kLimb, mantissa / kLimb % kLimb,
                                     mantissa / kLimb / kLimb};
    const auto multiply = [&](std::uint64_t factor) {
        std::uint64_t carry = 0;
        for (std::uint64_t& limb : limbs) {
            const std::uint64_t product = limb * factor + carry;
            limb = product % kLimb;
            carry = product / kLimb;
        }
        for (; carry != 0; carry /= kLimb) {
            limbs.push_back(carry % kLimb);
        }
    };
    // Powers small enough that a limb times them, plus a carry, fits.
    for (int left = std::abs(exponent); left > 0; left -= 13) {
        const int step = std::min(left, 13);
        std::uint64_t factor = 1;
        for (int i = 0; i < step; ++i) {
            factor *= exponent < 0 ? 5 : 2;
        }
        multiply(factor);
    }
    while (limbs.size() > 1 && limbs.back() == 0) {
        limbs.pop_back();
    }
    std::string digits = std::to_string(limbs.back());
    for (auto limb = limbs.rbegin() + 1; limb != limbs.rend(); ++limb) {
        const std::string part = std::to_string(*limb);
        digits.append(9 - part.size(), '0').append(part);
    }
    return exponent < 0 ? digits + "e-" + std::to_string(-exponent) : digits;
}

// A positive finite double as mantissa * 2^exponent, the mantissa below 2^53.
struct Binary {
    std::uint64_t mantissa;
    int exponent;
};

Binary binaryOf(double value) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const auto biased = static_cast<int>(bits >> 52U);
    const std::uint64_t fraction = bits & ((std::uint64_t{1} << 52U) - 1);
    return biased == 0 ? Binary{fraction, -1074}
                       : Binary{fraction | (std::uint64_t{1} << 52U), biased - 1075};
}

// The exact text of the point halfway between `value` and the next double
// up, which rounds to the one of the two with an even mantissa.
std::string halfwayAbove(double value) {
    const Binary binary = binaryOf(value);
    return exactDecimal(2 * binary.mantissa + 1, binary.exponent - 1);
}

double evenOf(double value) {
    const double next = std::nextafter(value, std::numeric_limits<double>::infinity());
    return (binaryOf(value).mantissa & 1U) == 0 ? value : next;
}

Read okRead(std::ptrdiff_t length, double value) {
    return {length, std::errc(), std::bit_cast<std::uint64_t>(value)};
}

Read outOfRange(std::ptrdiff_t length) {
    return {length, std::errc::result_out_of_range, kUntouched};
}

} // namespace

TEST(PQFromChars, HardCases) {
    constexpr double kMax = std::numeric_limits<double>::max();
    constexpr double kInf = std::numeric_limits<double>::infinity();
    const double kLeast = std::numeric_limits<double>::denorm_min();
    const std::string pastKept(900, '0'); // beyond the digits the reader keeps
    const std::string tieAtMax = halfwayAbove(kMax);
    const std::string tieBelowLeast = exactDecimal(1, -1075); // digits "e-1075"
    const std::string aboveThatTie = tieBelowLeast.substr(0, tieBelowLeast.find('e')) + "1e-1076";
    const std::string twoTo53Tie = "9007199254740993";
    const Read invalid{0, std::errc::invalid_argument, kUntouched};
    const struct {
        std::string text;
        Read read;
    } rows[] = {
        // Halfway cases go to the even mantissa; any non-zero digit after, however far, up.
        {twoTo53Tie, okRead(16, 9007199254740992.0)},
        {"9007199254740995", okRead(16, 9007199254740996.0)},
        {twoTo53Tie + ".0000000000000000000001", okRead(kWhole, 9007199254740994.0)},
        {twoTo53Tie + "." + pastKept, okRead(kWhole, 9007199254740992.0)},
        {twoTo53Tie + "." + pastKept + "1", okRead(kWhole, 9007199254740994.0)},
        {"0.1000000000000000055511151231257827021181583404541015625", okRead(kWhole, 0.1)},
        {"123456789012345678901234567890", okRead(kWhole, 123456789012345678901234567890.0)},
        {"000000000000000000000000000000000001.5", okRead(kWhole, 1.5)},
        {"1" + pastKept + "e-900", okRead(kWhole, 1.0)},
        // Subnormals, the least double, and what rounds to zero.
        {"2.2250738585072011e-308", okRead(23, std::bit_cast<double>(0x000fffffffffffffULL))},
        {"2.2250738585072014e-308", okRead(23, std::numeric_limits<double>::min())},
        {"4.9e-324", okRead(8, kLeast)},
        {tieBelowLeast, outOfRange(kWhole)},
        {aboveThatTie, okRead(kWhole, kLeast)},
        {"2.4703282292062327e-324", outOfRange(23)},
        {"1e-400", outOfRange(6)},
        {"-1e-99999999999999999999999", outOfRange(27)},
        {"0e99999999999999999999", okRead(22, 0.0)},
        {"-0.000", okRead(6, -0.0)},
        // The largest double, and what rounds past it.
        {"1.7976931348623157e308", okRead(22, kMax)},
        {"1.7976931348623158e308", okRead(22, kMax)},
        {"1.7976931348623159e308", outOfRange(22)},
        {tieAtMax, outOfRange(kWhole)},
        {tieAtMax.substr(0, 300) + "e9", okRead(kWhole, kMax)},
        {"-1e309", outOfRange(6)},
        // Signs.
        {"-1.5", okRead(4, -1.5)},
        {"+1.5", invalid},
        {"--1", invalid},
        {"-", invalid},
        // Texts that only begin like a number.
        {"1e", okRead(1, 1.0)},
        {"1e+", okRead(1, 1.0)},
        {"1.5e-x", okRead(3, 1.5)},
        {"5.", okRead(2, 5.0)},
        {".5", okRead(2, 0.5)},
        {".", invalid},
        {".e5", invalid},
        {"e5", invalid},
        {" 1", invalid},
        {"0x1p3", okRead(1, 0.0)},
        {"1,5", okRead(1, 1.0)},
        // The words, in any case.
        {"inf", okRead(3, kInf)},
        {"-InFiNiTy", okRead(9, -kInf)},
        {"infinit", okRead(3, kInf)},
        {"nan", okRead(3, std::numeric_limits<double>::quiet_NaN())},
        {"-NaN(a_1)x", okRead(9, -std::numeric_limits<double>::quiet_NaN())},
        {"nan(a-1)", okRead(3, std::numeric_limits<double>::quiet_NaN())},
        {"nan(", okRead(3, std::numeric_limits<double>::quiet_NaN())},
        {"in", invalid},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text.substr(0, 60));
        Read expected = row.read;
        if (expected.length == kWhole) {
            expected.length = static_cast<std::ptrdiff_t>(row.text.size());
        }
        EXPECT_EQ(portableRead(row.text), expected);
        if (kStandardReader) {
            EXPECT_EQ(standardRead(row.text), expected);
        }
        // The library's reader, whichever it is on this standard library.
        EXPECT_EQ(readWith(fromChars, row.text), expected);
    }
}

namespace {

// A text of the corpus, and the double it must give when that is known.
struct CorpusText {
    std::string text;
    bool exact = false;
    double expected = 0;
};

// Seeded inputs of every kind: printed doubles, exact halfway points,
// random digits with exponents near both ends of the range, and the words,
// each with a tail that may or may not continue it. Printed doubles must
// come back exactly, and halfway points go to the even neighbour.
std::vector<CorpusText> randomCorpus(int count) {
    std::mt19937_64 random(20261125);
    const auto below = [&](std::uint64_t n) { return random() % n; };
    const std::array<const char*, 9> tails = {"", "", "", "x", "e", "e+", ".", "5", "("};
    const std::array<const char*, 6> words = {"inf",      "INFINITY", "nan",
                                              "nan(x_9)", "Infx",     "nAn(1"};
    std::vector<CorpusText> corpus(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        CorpusText& entry = corpus[static_cast<std::size_t>(i)];
        const bool negative = random() % 2 == 0;
        std::string text(negative ? 1 : 0, '-');
        const double printed = std::fabs(std::bit_cast<double>(
            (random() & ~(std::uint64_t{0x7ff} << 52U)) | (below(2047) << 52U)));
        std::array<char, 64> buffer{};
        switch (i % 5) {
        case 0: // printed to enough digits to come back exactly
            std::snprintf(buffer.data(), buffer.size(), "%.17g", printed);
            text += buffer.data();
            entry.exact = true;
            entry.expected = printed;
            break;
        case 1: // printed short, to anything from 1 to 25 digits
            std::snprintf(buffer.data(), buffer.size(), "%.*e", static_cast<int>(below(25)),
                          printed);
            text += buffer.data();
            break;
        case 2: // exactly halfway to the next double up
            if (printed != 0 && printed < std::numeric_limits<double>::max()) {
                text += halfwayAbove(printed);
                entry.exact = true;
                entry.expected = evenOf(printed);
            }
            break;
        case 3: { // digits, a point somewhere, an exponent near the ends of the range
            const std::size_t digits = 1 + below(40);
            const std::size_t point = below(digits + 1);
            for (std::size_t d = 0; d < digits; ++d) {
                text += d == point ? "." : "";
                text += static_cast<char>('0' + below(10));
            }
            text += 'e';
            text += std::to_string(static_cast<int>(below(760)) - 380);
            break;
        }
        default:
            text += words[below(words.size())];
        }
        const std::string tail = tails[below(tails.size())];
        entry.exact = entry.exact && tail != "5"; // a digit would continue the number
        entry.expected = negative ? -entry.expected : entry.expected;
        text += tail;
        entry.text = std::move(text);
    }
    return corpus;
}

constexpr int kCorpusSize = 200000;

} // namespace

// Exact where the double is known, and the same as the standard reader (where
// there is one) on every text.
TEST(PQFromChars, RandomCorpusReadsExactlyAndAsTheStandardReader) {
    int exact = 0;
    for (const CorpusText& entry : randomCorpus(kCorpusSize)) {
        SCOPED_TRACE(entry.text.substr(0, 80));
        const Read read = portableRead(entry.text);
        if (kStandardReader) {
            ASSERT_EQ(read, standardRead(entry.text));
        }
        if (entry.exact) {
            ++exact;
            ASSERT_EQ(read.error, std::errc());
            ASSERT_EQ(read.bits, std::bit_cast<std::uint64_t>(entry.expected));
            ASSERT_EQ(readWith(fromChars, entry.text).bits, read.bits);
        }
    }
    EXPECT_GT(exact, kCorpusSize / 3);
}

namespace {

// The C library keeps what it reads of a locale found through LOCPATH for
// the life of the process: not a leak of ours.
class LeakChecksOff {
public:
#if defined(PQ_TEST_ASAN)
    LeakChecksOff() { __lsan_disable(); }
    ~LeakChecksOff() { __lsan_enable(); }
#else
    LeakChecksOff() = default;
#endif
    LeakChecksOff(const LeakChecksOff&) = delete;
    LeakChecksOff& operator=(const LeakChecksOff&) = delete;
};

// A locale whose decimal point is a comma, built for the test when the
// system has none; null when neither is possible.
locale_t commaLocale() {
    for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "de_DE", "fr_FR"}) {
        if (locale_t locale = newlocale(LC_NUMERIC_MASK, name, locale_t{}); locale != locale_t{}) {
            return locale;
        }
    }
    const std::filesystem::path dir =
        std::filesystem::temp_directory_path() / ("pqutils-locale-" + std::to_string(getpid()));
    std::filesystem::create_directories(dir);
    const std::string command =
        "localedef -i de_DE -f UTF-8 '" + (dir / "de_DE.UTF-8").string() + "' >/dev/null 2>&1";
    if (std::system(command.c_str()) != 0) { // NOLINT(cert-env33-c): a fixed command
        return {};
    }
    ::setenv("LOCPATH", dir.c_str(), 1); // NOLINT(concurrency-mt-unsafe)
    [[maybe_unused]] const LeakChecksOff loading;
    locale_t locale = newlocale(LC_NUMERIC_MASK, "de_DE.UTF-8", locale_t{});
    ::unsetenv("LOCPATH"); // NOLINT(concurrency-mt-unsafe)
    std::filesystem::remove_all(dir);
    return locale;
}

} // namespace

TEST(PQFromChars, TheLocaleChangesNothing) {
    const locale_t comma = commaLocale();
    if (comma == locale_t{}) {
        GTEST_SKIP() << "no locale with a decimal comma here, and localedef could not make one";
    }
    const locale_t previous = uselocale(comma);
    ASSERT_EQ(std::strtod("2,5", nullptr), 2.5) << "the locale should read a decimal comma";
    const struct {
        std::string text;
        double value;
    } rows[] = {{"2.5", 2.5},
                {"1,5", 1},
                {"0.1", 0.1},
                {"-1234.5e-2", -12.345},
                {"9007199254740993." + std::string(900, '0') + "1", 9007199254740994.0}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text.substr(0, 40));
        EXPECT_EQ(portableRead(row.text).bits, std::bit_cast<std::uint64_t>(row.value));
        EXPECT_EQ(PQ_UTILS::PQString::fromWstringToDouble(row.text), row.value);
    }
    EXPECT_TRUE(PQ_UTILS::PQString::isDouble("2.5"));
    EXPECT_FALSE(PQ_UTILS::PQString::isDouble("2,5"));
    uselocale(previous);
    freelocale(comma);
}

// A number text of a million digits is read in one pass: the reader keeps a
// bounded number of them for the rounding.
TEST(PQFromChars, AMillionDigitsAreReadInOnePass) {
    const std::string text = "0." + std::string(1000000, '0') + "1" + std::string(1000000, '7');
    EXPECT_EQ(portableRead(text), outOfRange(static_cast<std::ptrdiff_t>(text.size())));
    const std::string big = std::string(1000000, '3') + "e-999990";
    EXPECT_EQ(portableRead(big).bits,
              std::bit_cast<std::uint64_t>(PQ_UTILS::PQString::fromWstringToDouble(big)));
    EXPECT_EQ(portableRead(big),
              okRead(static_cast<std::ptrdiff_t>(big.size()), 3.3333333333333333e9));
}
