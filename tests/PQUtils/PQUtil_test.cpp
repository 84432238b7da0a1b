#include "PQUtils/Utils/PQUtil.h"

#include <cmath>
#include <limits>
#include <list>
#include <map>
#include <random>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "PQDebug/PQDebug.h"
#include "PQUtils/Utils/PQNumber.h"
#include "support/HexReference.h"
#include "support/TestSupport.h"

using PQ_UTILS::PQNumber;
using PQ_UTILS::PQUtil;

namespace {

// The reference reading of charFromHex; checked against the stream where
// the standard library reads as the reference says (GCC's, not libc++).
char referenceRead(const std::string& hex) {
    const char reference = pqtest::hexAsStreamReads(hex);
#if !defined(_LIBCPP_VERSION)
    int value = 0;
    std::istringstream in(hex);
    in >> std::hex >> value;
    EXPECT_EQ(reference, static_cast<char>(value)) << hex;
#endif
    return reference;
}

} // namespace

TEST(PQUtil, ConstantsHoldTheirExactBytes) {
    PQUtil::initializePublic();
    PQUtil::initializePublic(); // assigned, not appended: the same values again
    EXPECT_EQ(PQUtil::euro, "\xE2\x82\xAC");
    EXPECT_EQ(PQUtil::yuan, PQUtil::yen);
    EXPECT_EQ(PQUtil::pln, "z\xC5\x82");
    EXPECT_EQ(PQUtil::ruble, "\xD1\x80\xD1\x83\xD0\xB1.");
    EXPECT_EQ(PQUtil::ugrave, "\xC3\xC9"); // not the UTF-8 of U+00F9, on purpose
    EXPECT_EQ(PQUtil::special_space, "\x1F");
    EXPECT_EQ(PQUtil::thb, "\xE0\xB8\xBF");
}

TEST(PQUtil, RankingByValueThenKey) {
    std::map<std::string, double> scores{{"a", 2}, {"b", 5}, {"c", 5}};
    EXPECT_EQ(PQUtil::getRankedElement(&scores, 1)->first, "b");
    EXPECT_EQ(PQUtil::getRankedElement(&scores, 2)->first, "c");
    EXPECT_EQ(PQUtil::getRankedElement(&scores, 3)->first, "a");
    EXPECT_EQ(PQUtil::getRankedElement(&scores, 0), scores.end());
    EXPECT_EQ(PQUtil::getRankedElement(&scores, 4), scores.end());
    // Nothing is smaller than a NaN, nor it than anything: entered first, it
    // stays first.
    scores["0"] = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(PQUtil::getRankedElement(&scores, 1)->first, "0");
    EXPECT_EQ(PQUtil::getRankedElement(&scores, 2)->first, "b");
    EXPECT_EQ(PQUtil::getRankedElement(&scores, 4)->first, "a");

    const pqtest::LogCapture capture;
    std::list<std::string> keys{"x", "y"};
    EXPECT_EQ(PQUtil::getRankedElement(&keys, 2), "y");
    EXPECT_EQ(pqtest::messageOf([&] { (void)PQUtil::getRankedElement(&keys, 0); }),
              "list too short");
    EXPECT_EQ(pqtest::messageOf([&] { (void)PQUtil::getRankedElement(&keys, 3); }),
              "list too short");
}

TEST(PQUtil, UrlsAndPercentDecoding) {
    EXPECT_EQ(PQUtil::getRequestWithoutArgs("/x/p?a=1?b=2"), "/x/p");
    EXPECT_EQ(PQUtil::getRequestWithoutArgs("/x/p"), "/x/p");
    const std::pair<std::string, std::string> cases[] = {
        {"a%20b+c", "a b+c"},
        {"%2541", "A"}, // a "%" that decoding makes is decoded again
        {"%252541", "A"},
        {"100%", std::string("100\0", 4)}, // charFromHex("") is 0
        {"%4", "\x04"},
        {"%zz!", std::string("\0!", 2)},
        {"% 41", "\x04"
                 "1"}, // blanks are skipped, as a stream does
        {"%25", std::string(1, '\0')},
    };
    for (const auto& [text, decoded] : cases) {
        EXPECT_EQ(PQUtil::urlDecode(text), decoded) << text;
    }
}

TEST(PQUtil, UrlDecodingMatchesRestartingFromTheStart) {
    // The decoding as first written: find the first "%" from the start,
    // replace it and what follows, again and again (quadratic).
    const auto restarting = [](std::string text) {
        for (std::size_t percent = text.find('%'); percent != std::string::npos;
             percent = text.find('%')) {
            const std::string hex = text.substr(percent + 1, 2);
            text.replace(percent, 1 + hex.size(), 1, PQUtil::charFromHex(hex));
        }
        return text;
    };
    std::mt19937 engine(4);
    const std::string alphabet = "%25A4 1f";
    for (int round = 0; round < 5000; ++round) {
        std::string text;
        for (int i = std::uniform_int_distribution<>(0, 12)(engine); i > 0; --i) {
            text += alphabet[std::uniform_int_distribution<std::size_t>(0, 7)(engine)];
        }
        ASSERT_EQ(PQUtil::urlDecode(text), restarting(text)) << text;
    }
}

TEST(PQUtil, UrlDecodingIsLinear) {
    std::string percents;
    std::string letters;
    for (int i = 0; i < (1 << 20) / 3; ++i) {
        percents += "%25";
        letters += "%41";
    }
    // "%25%25" is "%" then "%2" (0) then "5"; a last "%25" alone, 0.
    std::string expected;
    for (std::size_t i = 0; i < percents.size() / 6; ++i) {
        expected.append(1, '\0').append(1, '5');
    }
    if (percents.size() % 6 != 0) {
        expected.append(1, '\0');
    }
    EXPECT_TRUE(PQUtil::urlDecode(percents) == expected);
    EXPECT_TRUE(PQUtil::urlDecode(letters) == std::string(letters.size() / 3, 'A'));
}

TEST(PQUtil, CharFromHexReadsAsAStreamDoes) {
    // Every text of up to two bytes, then longer ones near the edges.
    EXPECT_EQ(PQUtil::charFromHex(""), 0);
    for (int first = 0; first < 256; ++first) {
        const std::string one(1, static_cast<char>(first));
        ASSERT_EQ(PQUtil::charFromHex(one), referenceRead(one)) << first;
        for (int second = 0; second < 256; ++second) {
            const std::string two{static_cast<char>(first), static_cast<char>(second)};
            ASSERT_EQ(PQUtil::charFromHex(two), referenceRead(two)) << first << ' ' << second;
        }
    }
    std::mt19937 engine(9);
    const std::string alphabet = " \t+-0xXfF7aG";
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        for (int i = std::uniform_int_distribution<>(0, 22)(engine); i > 0; --i) {
            text += alphabet[std::uniform_int_distribution<std::size_t>(0, 11)(engine)];
        }
        ASSERT_EQ(PQUtil::charFromHex(text), referenceRead(text)) << text;
    }
}

TEST(PQUtil, PricesAreEqualAtTheToleranceDoublesAreNot) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(PQUtil::arePricesEqual(10.0, 10.001, false));
    EXPECT_FALSE(PQUtil::arePricesEqual(10.0, 10.002, false));
    EXPECT_TRUE(PQUtil::arePricesEqual(10.0, 11.0, true));
    EXPECT_FALSE(PQUtil::arePricesEqual(10.0, 11.5, true));
    EXPECT_FALSE(PQUtil::arePricesEqual(nan, nan, true));
    EXPECT_FALSE(PQNumber::isDoublesEqual(1.0, 1.5, 0.5));
    EXPECT_TRUE(PQNumber::isDoublesEqual(1.0, 1.4, 0.5));
    EXPECT_FALSE(PQNumber::isDoublesEqual(nan, 1.0, 0.5));
}

TEST(PQUtil, EnvironmentHostAndBuiltValues) {
    ::setenv("PQ_UTIL_TEST", "v=1", 1); // NOLINT(concurrency-mt-unsafe)
    EXPECT_EQ(PQUtil::getEnvironmentVariable("PQ_UTIL_TEST"), "v=1");
    EXPECT_EQ(PQUtil::getEnvironmentVariable("PQ_UTIL_TEST_UNSET"), "");
    // Names that no variable can have: the same answer with every C library.
    for (const std::string& name :
         {std::string(), std::string("PQ_UTIL_TEST=v"), std::string("PQ_UTIL_TEST\0X", 14)}) {
        EXPECT_EQ(PQUtil::getEnvironmentVariable(name), "") << name;
    }

    const std::string misc = PQ_DEBUG::PQDebug::get_miscValue();
    for (const std::string& value : {PQUtil::get_value(), PQUtil::get_value_ios()}) {
        EXPECT_EQ(value.size(), 10 + misc.size());
        EXPECT_EQ(value.substr(3, misc.size()), misc);
    }
    EXPECT_NE(PQUtil::get_value(), PQUtil::get_value_ios());
    EXPECT_EQ(PQUtil::get_value(), PQUtil::get_value()); // fixed, though built on each call
    EXPECT_EQ(PQUtil::get_value_old().find(misc), 5U);
}
