#include "PQDebug/PQDebugString.h"

#include <climits>
#include <limits>
#include <string>

#include <gtest/gtest.h>

using PQ_DEBUG::PQDebugString;

TEST(PQDebugString, FromWstringToIntReadsLikeAtoiAndSaturates) {
    const struct {
        std::string text;
        int expected;
    } rows[] = {
        {"42", 42},
        {"  \t\n-17", -17},
        {"+8", 8},
        {"12a", 12},
        {"3.9", 3},
        {"", 0},
        {"abc", 0},
        {"-", 0},
        {"+-1", 0},
        {" - 1", 0},
        {"2147483647", INT_MAX},
        {"2147483648", INT_MAX},
        {"-2147483648", INT_MIN},
        {"-2147483649", INT_MIN},
        {std::string(1 << 20, '9'), INT_MAX}, // stops early, never overflows
        {"-" + std::string(1 << 20, '9'), INT_MIN},
        {std::string(1 << 20, '0') + "12", 12},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text.substr(0, 20));
        EXPECT_EQ(PQDebugString::fromWstringToInt(row.text), row.expected);
    }
}

TEST(PQDebugString, DecimalRenderingsReachTheLimits) {
    EXPECT_EQ(PQDebugString::fromIntToWstring(INT_MIN), "-2147483648");
    EXPECT_EQ(PQDebugString::fromIntToWstring(LLONG_MIN), "-9223372036854775808");
    EXPECT_EQ(PQDebugString::fromULongLongToWstring(ULLONG_MAX), "18446744073709551615");
    EXPECT_EQ(PQDebugString::fromUnsignedIntToWstring(UINT_MAX), "4294967295");
}

TEST(PQDebugString, FromDoubleToWstringIsFixedWithPrecisionDigits) {
    const struct {
        double value;
        int precision;
        std::string expected;
    } rows[] = {
        {3.14159, 2, "3.14"},
        {2.5, 0, "2"}, // round half to even, as printf does
        {-0.125, 2, "-0.12"},
        {1e21, 1, "1000000000000000000000.0"},
        {1.0, -3, "1"},
        {0.1, 20, "0.10000000000000000555"},
        {std::numeric_limits<double>::quiet_NaN(), 2, "nan"},
        {-std::numeric_limits<double>::infinity(), 2, "-inf"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.expected);
        EXPECT_EQ(PQDebugString::fromDoubleToWstring(row.value, row.precision), row.expected);
    }
    // The largest double in fixed notation fits (309 digits).
    EXPECT_EQ(PQDebugString::fromDoubleToWstring(std::numeric_limits<double>::max(), 30).size(),
              309U + 1U + 30U);
}
