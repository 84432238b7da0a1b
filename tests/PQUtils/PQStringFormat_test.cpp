#include <algorithm>
#include <list>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "PQUtils/Utils/PQSecuredStringRef.h"
#include "PQUtils/Utils/PQString.h"
#include "support/TestSupport.h"

using PQ_UTILS::PQString;
using Texts = std::vector<std::string>;

namespace {
constexpr std::size_t kMiB = std::size_t{1} << 20;
constexpr const char* kZeroMessage = "*strTreatedIterator != '\\0' should be true";
} // namespace

TEST(PQStringFormat, Padding) {
    // The pad is width - used - length on 32 bits, then signed.
    constexpr unsigned long k4G = 1UL << 32U;
    // A zero byte inside the text ends the padded result there, pad and
    // all; with nothing to pad the text is copied whole.
    const std::string zero("ab\0cd", 5);
    const std::string leadingZero("\0ab", 3);
    const std::string trailingZero("ab\0", 3);
    const struct {
        std::string text;
        unsigned long used, width;
        std::string expected;
    } rows[] = {{"abc", 0, 5, "abc  "},      {"abc", 0, 2, "abc"},
                {"ab", 3, 4, "ab"},          {zero, 0, 8, "ab"},
                {zero, 0, 6, "ab"},          {zero, 0, 5, zero},
                {zero, 2, 8, "ab"},          {zero, 4, 8, zero},
                {leadingZero, 0, 4, ""},     {trailingZero, 0, 9, "ab"},
                {"", 0, 3, "   "},           {"abc", 0, k4G + 5, "abc  "},
                {"abc", k4G + 1, 5, "abc "}, {"abc", 0, k4G / 2 + 3, "abc"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(row.text.size()) + " bytes, used " + std::to_string(row.used) +
                     " width " + std::to_string(row.width));
        EXPECT_EQ(*PQString::FillWithSpaces(row.text, row.used, row.width), row.expected);
        EXPECT_EQ(*PQString::FillWithSpaces(row.text.data(), row.text.size(), row.used, row.width),
                  row.expected);
        // Another fill pads the same way and ends at the zero in the same place.
        const auto padWith = [&row](char fill) {
            std::string padded = row.expected;
            if (padded.size() > row.text.size()) {
                std::fill(padded.begin() + static_cast<std::ptrdiff_t>(row.text.size()),
                          padded.end(), fill);
            }
            return padded;
        };
        EXPECT_EQ(*PQString::FillWithChars(row.text, '.', row.used, row.width), padWith('.'));
        if (row.used == 0) {
            EXPECT_EQ(*PQString::FillWithZeros(row.text, row.width), padWith('0'));
            EXPECT_EQ(*PQString::FillWithSpaces(row.text, row.width), row.expected);
            const PQ_UTILS::PQSecuredStringRef view(row.text.data(), row.text.size());
            EXPECT_EQ(*PQString::FillWithSpaces(view, row.width), row.expected);
        }
    }
    EXPECT_EQ(*PQString::FillWithSpaces(PQ_UTILS::PQSecuredStringRef(zero.data(), 1), 3UL), "a  ");
    EXPECT_EQ(*PQString::FillWithSpaces(nullptr, 0, 2UL), "  ");
    EXPECT_EQ(*PQString::FillWithZeros("7", 3), "700");
    const pqtest::LogCapture log;
    EXPECT_EQ(pqtest::messageOf([] { (void)PQString::FillWithSpaces(nullptr, 2, 0, 5); }),
              "Null variable : text - ");
}

TEST(PQStringFormat, ObfuscateNumber) {
    const struct {
        std::string number, expected;
    } rows[] = {
        {"123456789012345", "XXXX XXXXXX 12345"},      {"12345678901234567", "XXXX XXXXXX 34567"},
        {"1234567890123456", "XXXX XXXX XXXX 3456"},   {"abcd", "XXXX XXXX XXXX abcd"},
        {"123456789012345678", "XXXX XXXX XXXX 5678"}, {"123", "XXXX XXXX XXXX XXXX"}};
    for (const auto& row : rows) {
        EXPECT_EQ(*PQString::obfuscateNumber(row.number), row.expected) << row.number;
    }
}

TEST(PQStringFormat, Dates) {
    const std::string ymd = "yyyy-M-d";
    const std::string dmy = "d-M-yyyy";
    const struct {
        std::string date, format, expected;
    } rows[] = {{"31/12/2024", dmy, "2024-12-31"},
                {"2024-01-05", ymd, "2024-1-5"},
                {"2024-0-5", ymd, "2024-0-5"},
                {"2024-13-5", ymd, ""},
                {"2024-1-32", ymd, ""},
                {"2024-1-0", ymd, ""},
                {"10000-1-1", ymd, ""},
                {"2024-1-5", dmy, ""},
                {"2024-1-5", "yyyy/M/d", ""},
                {"2024-1-5-6", ymd, ""}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.date.substr(0, 20) + " " + row.format);
        EXPECT_EQ(PQString::getFormatedDateString(row.date, row.format), row.expected);
    }
    EXPECT_EQ(PQString::getFormatedDateString(std::string(kMiB, '-'), ymd), "");
}

TEST(PQStringFormat, WordsAndSpaces) {
    const std::string zero("ab\0cd", 5);
    const struct {
        std::string text;
        Texts words;
        std::string collapsed;
    } rows[] = {{"a\tb", {"a", "b"}, "a\tb"},
                {"  one   two  ", {"one", "two"}, " one two "},
                {"\t a \t\t b\t", {"a", "b"}, "\t a \t\t b\t"},
                {"   ", {}, " "},
                {std::string(kMiB, ' '), {}, " "}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text.substr(0, 20));
        const auto words = PQString::toWords(row.text);
        ASSERT_NE(words, nullptr);
        EXPECT_EQ(*words, row.words);
        EXPECT_EQ(*PQString::removeDoubleSpaces(row.text), row.collapsed);
    }
    EXPECT_EQ(PQString::toWords(""), nullptr);
    EXPECT_EQ(*PQString::fromWordsToString({"a", "bc", "d"}), "a bc d");
    EXPECT_EQ(*PQString::removeDoubleSpaces("a  b\0c", 4), "a b"); // stops at `length`

    const pqtest::LogCapture log;
    EXPECT_EQ(pqtest::messageOf([&] { (void)PQString::toWords(zero); }), kZeroMessage);
    EXPECT_EQ(pqtest::messageOf([&] { (void)PQString::removeDoubleSpaces(zero); }), kZeroMessage);
}

TEST(PQStringFormat, TabsAndDumps) {
    EXPECT_EQ(*PQString::build_wsTab_re(0), "");
    EXPECT_EQ(*PQString::build_wsTab_re(2), "\t\t");
    const std::list<std::string> list{"a", "b c"};
    EXPECT_EQ(*PQString::dump(&list), "Dump of list<kstring>*\n\ta\n\tb c\n");
    const Texts vector{"x", ""};
    EXPECT_EQ(*PQString::dump(&vector), "Dump of vector<kstring>*\n\tx\n\t\n");
    const std::map<std::string, std::string> map{{"k2", "v2"}, {"k1", "v1"}};
    EXPECT_EQ(*PQString::dump(map), "Dump of map<kstring>*\n\tk1_____v1\n\tk2_____v2\n");

    const pqtest::LogCapture log;
    EXPECT_EQ(pqtest::messageOf([] { (void)PQString::build_wsTab_re(-1); }),
              "nbTab >= 0 should be true");
    EXPECT_EQ(pqtest::messageOf([] {
                  (void)PQString::dump(static_cast<const std::list<std::string>*>(nullptr));
              }),
              "Null variable : aList - ");
}
