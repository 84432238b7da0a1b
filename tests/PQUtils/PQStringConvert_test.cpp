#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "PQUtils/Utils/PQSecuredStringRef.h"
#include "PQUtils/Utils/PQString.h"
#include "PQUtils/Utils/PQStringRef.h"
#include "support/TestSupport.h"

using PQ_UTILS::PQSecuredStringRef;
using PQ_UTILS::PQString;
using PQ_UTILS::PQStringRef;
using Places = std::vector<std::pair<long, std::size_t>>;

namespace {

// Where each view lies in `text`: (offset, length).
template <class View> Places placesIn(const std::string& text, const std::vector<View>& views) {
    Places places;
    for (const View& view : views) {
        places.emplace_back(view.data() - text.data(), view.size());
    }
    return places;
}

} // namespace

TEST(PQStringConvert, SplitAndImplode) {
    const struct {
        std::string text, separator;
        std::vector<std::string> pieces;
    } rows[] = {{"a=", "=", {"a", ""}},
                {"=x", "=", {"", "x"}},
                {"a&&b", "&", {"a", "", "b"}},
                {"", "&", {""}},
                {"k--v----w", "--", {"k", "v", "", "w"}},
                {"aaa", "aa", {"", "a"}},
                {std::string("a\0b", 3), std::string(1, '\0'), {"a", "b"}}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text + " on " + row.separator);
        const auto pieces = PQString::splitString(row.text, row.separator);
        EXPECT_EQ(*pieces, row.pieces);
        EXPECT_EQ(*PQString::implode(*pieces, row.separator), row.text);
    }
    EXPECT_EQ(PQString::splitString(std::string(1U << 20U, '&'), "&")->size(), (1U << 20U) + 1);

    const std::string text = "k=v&&x=y&tail";
    EXPECT_EQ(placesIn(text, *PQString::splitString(PQStringRef(text.data(), 11), "&")),
              (Places{{0, 3}, {4, 0}, {5, 3}, {9, 2}}));
    EXPECT_EQ(placesIn(text, *PQString::splitString(PQSecuredStringRef(text.data() + 2, 5), "&&")),
              (Places{{2, 1}, {5, 2}}));
    EXPECT_EQ(PQString::splitString(PQStringRef(), "&")->size(), 1U);

    const pqtest::LogCapture log;
    EXPECT_EQ(pqtest::messageOf([&] { (void)PQString::splitString(text, ""); }),
              "!separator.empty() should be true");
    EXPECT_EQ(pqtest::messageOf([] { (void)PQString::splitString(PQStringRef(nullptr, 2), "&"); }),
              "Null variable : m_startPointeur - ");
}

TEST(PQStringConvert, TrimAndCase) {
    const struct {
        std::string text, left, right, both;
    } rows[] = {{" \t\na b\v\f\r ", "a b\v\f\r ", " \t\na b", "a b"},
                {"", "", "", ""},
                {" \t\r\n ", "", "", ""},
                {"\xC2\xA0x", "\xC2\xA0x", "\xC2\xA0x", "\xC2\xA0x"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(*PQString::trimLeft(row.text), row.left);
        EXPECT_EQ(*PQString::trimRight(row.text), row.right);
        EXPECT_EQ(*PQString::trim(row.text), row.both);
        const long offset = static_cast<long>(row.text.size() - row.left.size());
        const auto view = PQString::trim(PQSecuredStringRef(row.text.data(), row.text.size()));
        EXPECT_EQ(placesIn(row.text, std::vector{view}), (Places{{offset, row.both.size()}}));
        const auto plain = PQString::trim(PQStringRef(row.text));
        EXPECT_EQ(placesIn(row.text, std::vector{plain}), (Places{{offset, row.both.size()}}));
    }
    EXPECT_EQ(*PQString::toLowerCase("aZ09-\xC3\x89"), "az09-\xC3\x89");
    EXPECT_EQ(*PQString::toUpperCase("aZ09-\xC3\xA9"), "AZ09-\xC3\xA9");
}

TEST(PQStringConvert, IsIntAndIsDouble) {
    const struct {
        std::string text;
        bool isInt, isDouble;
    } rows[] = {{"-0", true, true},          {"+5", true, true},      {"-2147483648", true, true},
                {"2147483648", false, true}, {"12a", false, false},   {"", false, false},
                {"-", false, false},         {"+-5", false, false},   {" 5", false, false},
                {"5 ", false, false},        {"1e5", false, true},    {"-1.5E+3", false, true},
                {".5", false, true},         {"1.", false, true},     {".", false, false},
                {"1e", false, false},        {"1.2.3", false, false}, {"inf", false, false},
                {"nan", false, false},       {"0x1A", false, false},  {"1e999", false, false},
                {"1e-999", false, true}}; // finite, rounded to zero
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(PQString::isInt(row.text), row.isInt);
        EXPECT_EQ(PQString::isDouble(row.text), row.isDouble);
    }
}

TEST(PQStringConvert, NumbersFromText) {
    constexpr double inf = std::numeric_limits<double>::infinity();
    const struct {
        std::string text;
        double expected;
    } rows[] = {{" 2.5e1x", 25}, {"\t+4", 4},       {"+-4", 0},         {"abc", 0},
                {"1e+x", 1},     {"0x10", 0},       {"1e999", inf},     {"-1e999", -inf},
                {"1e-999", 0},   {"-1e-999", -0.0}, {"4e-320", 4e-320}, {"1e-5", 1e-5},
                {"1e99999", inf}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text.substr(0, 20));
        const double value = PQString::fromWstringToDouble(row.text);
        EXPECT_EQ(value, row.expected);
        EXPECT_EQ(std::signbit(value), std::signbit(row.expected));
    }
    // Out of range, the digits decide as much as the exponent.
    EXPECT_EQ(PQString::fromWstringToDouble(std::string(400, '9') + "e-50"), inf);
    EXPECT_EQ(PQString::fromWstringToDouble("1e" + std::string(30, '9')), inf);
    EXPECT_EQ(PQString::fromWstringToDouble("0." + std::string(400, '0') + "1e50"), 0);
    EXPECT_EQ(PQString::fromDoubleToWstring(3.14159, 2), "3.14");
}
