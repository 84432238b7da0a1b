#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "PQDebug/PQException.h"
#include "PQUtils/Utils/PQString.h"
#include "support/OrderPasses.h"
#include "support/TestSupport.h"

using PQ_DEBUG::PQException;
using PQ_DEBUG::PQNullPointerException;
using PQ_UTILS::kstring;
using PQ_UTILS::PQString;
using pqtest::orderEscapedInPasses;
using pqtest::orderUnescapedInPasses;

namespace {

constexpr std::size_t kMiB = std::size_t{1} << 20;

kstring repeat(const kstring& piece, std::size_t times) {
    kstring out;
    out.reserve(piece.size() * times);
    for (std::size_t i = 0; i < times; ++i) {
        out.append(piece);
    }
    return out;
}

} // namespace

TEST(PQStringEscapes, OrderTextTokens) {
    struct Row {
        kstring value;
        kstring escaped;
    };
    const std::vector<Row> rows = {
        {"a=b&c//d", "a--equ--b--amp--c--dbsl--d"},
        {"///", "--dbsl--/"},
        {"////", "--dbsl----dbsl--"},
        {"", ""},
        {"plain", "plain"},
        {"==&", "--equ----equ----amp--"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.value);
        EXPECT_EQ(*PQString::restorePQEntities(row.value), row.escaped);
        EXPECT_EQ(PQString::restorePQEntities_2(row.value), row.escaped);
        EXPECT_EQ(*PQString::removePQEntities(row.escaped), row.value);
    }
}

TEST(PQStringEscapes, UnescapingIsThreePassesInOrderAndNotAlwaysARoundTrip) {
    struct Row {
        kstring escaped;
        kstring unescaped;
    };
    const std::vector<Row> rows = {
        {"--amp--", "&"},                           // a value that held a token text
        {"--amp--equ--", "--amp="},                 // "--equ--" is restored first
        {"--amp--equ--dbsl--", "--amp=dbsl--"},     // what "&equ//" escapes to
        {"--dblpt----arob--", "--dblpt----arob--"}, // not order-text tokens
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.escaped);
        EXPECT_EQ(*PQString::removePQEntities(row.escaped), row.unescaped);
    }
    EXPECT_EQ(*PQString::restorePQEntities("&equ//"), "--amp--equ--dbsl--");
}

TEST(PQStringEscapes, OneWalkEqualsThePassesOnTokenDenseText) {
    // Pieces of tokens glued together make overlapping chains of them.
    const std::vector<kstring> pieces = {"--equ--", "--amp--", "--dbsl--",      "--", "-",
                                         "equ",     "amp",     "dbsl",          "=",  "&",
                                         "/",       "x",       kstring(1, '\0')};
    std::uint32_t state = 777;
    for (int n = 0; n < 4000; ++n) {
        kstring text;
        for (int i = 0; i < n % 17; ++i) {
            state = state * 1664525U + 1013904223U;
            text += pieces[(state >> 16) % pieces.size()];
        }
        SCOPED_TRACE(text);
        ASSERT_EQ(*PQString::removePQEntities(text), orderUnescapedInPasses(text));
        ASSERT_EQ(*PQString::restorePQEntities(text), orderEscapedInPasses(text));
    }
}

TEST(PQStringEscapes, EachCharacterGroupAndItsToken) {
    using Escape = std::unique_ptr<kstring> (*)(const kstring&);
    struct Row {
        Escape remove;
        Escape restore;
        kstring character;
        kstring token;
    };
    const std::vector<Row> rows = {
        {&PQString::removeDbleSlashes, &PQString::restoreDbleSlashes, "//", "--dbsl--"},
        {&PQString::removeEquals, &PQString::restoreEquals, "=", "--equ--"},
        {&PQString::removeAmpersand, &PQString::restoreAmpersand, "&", "--amp--"},
        {&PQString::removeDblePoints, &PQString::restoreDblePoints, ":", "--dblpt--"},
        {&PQString::removeArobase, &PQString::restoreArobase, "@", "--arob--"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.token);
        const kstring value = "x" + row.character + "y" + row.character;
        const kstring escaped = "x" + row.token + "y" + row.token;
        EXPECT_EQ(*row.remove(value), escaped);
        EXPECT_EQ(*row.restore(escaped), value);
    }
    EXPECT_EQ(*PQString::escapeDoubleQuotes("say \"hi\""), "say \\\"hi\\\"");
}

TEST(PQStringEscapes, ListFormsChangeEveryElementAndRefuseNull) {
    std::vector<kstring> list = {"a@b", "", "@@"};
    PQString::removeArobase(&list);
    EXPECT_EQ(list, (std::vector<kstring>{"a--arob--b", "", "--arob----arob--"}));
    PQString::restoreArobase(&list);
    EXPECT_EQ(list, (std::vector<kstring>{"a@b", "", "@@"}));

    const pqtest::LogCapture capture;
    const auto failure =
        pqtest::thrownBy<PQNullPointerException>([] { PQString::removeArobase(nullptr); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->get_message(), "Vector is NULL");
    EXPECT_EQ(failure->get_function(), "removeArobase");
    EXPECT_EQ(pqtest::messageOf([] { PQString::restoreArobase(nullptr); }), "Vector is NULL");
}

TEST(PQStringReplace, MatchesAreNeitherOverlappingNorRescanned) {
    struct Row {
        kstring source;
        kstring from;
        kstring to;
        bool onlyFirst;
        kstring expected;
    };
    const std::vector<Row> rows = {
        {"aaa", "a", "aa", false, "aaaaaa"}, {"aaa", "a", "aa", true, "aaaa"},
        {"aaaa", "aa", "b", false, "bb"},    {"aaa", "aa", "b", false, "ba"},
        {"abc", "x", "y", false, "abc"},     {"abc", "abc", "", false, ""},
        {"", "a", "b", false, ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.source + " / " + row.from + " / " + row.to);
        EXPECT_EQ(*PQString::replace_pq(row.source, row.from, row.to, row.onlyFirst), row.expected);
        EXPECT_EQ(*PQString::replace_pq_new(row.source, row.from, row.to, row.onlyFirst),
                  row.expected);
        if (!row.onlyFirst) {
            kstring text = row.source;
            PQString::self_replace(text, row.from, row.to);
            EXPECT_EQ(text, row.expected);
        }
    }
}

TEST(PQStringReplace, ZeroBytesStopTheSearchButNotTheCopy) {
    const kstring source("a=\0=b", 5);
    EXPECT_EQ(*PQString::replace_pq(source, "=", "--equ--", false), kstring("a--equ--\0=b", 11));
    EXPECT_EQ(*PQString::restorePQEntities(source), kstring("a--equ--\0=b", 11));
    // The in-place and the binary forms read every byte.
    EXPECT_EQ(PQString::restorePQEntities_2(source), kstring("a--equ--\0--equ--b", 17));
    EXPECT_EQ(*PQString::replace_pq_new(source, "=", "+", false), kstring("a+\0+b", 5));
    // A search text ends at its first zero byte.
    EXPECT_EQ(*PQString::replace_pq("a=b", kstring("=\0x", 3), "+", false), "a+b");
    EXPECT_EQ(*PQString::replace_pq("a=b", kstring("\0", 1), "+", false), "a=b");
    // The replacement is copied whole.
    EXPECT_EQ(*PQString::replace_pq("a=b", "=", kstring("\0", 1), false), kstring("a\0b", 3));
}

TEST(PQStringReplace, AnEmptySearchTextFailsExceptInPlace) {
    const pqtest::LogCapture capture;
    const auto failure =
        pqtest::thrownBy<PQException>([] { (void)PQString::replace_pq("abc", "", "x", false); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->get_message(), " L\"\" is not permitted");
    EXPECT_EQ(failure->get_exceptionType(), 1008);
    EXPECT_EQ(failure->get_function(), "replace_pq");
    EXPECT_EQ(pqtest::messageOf([] { (void)PQString::replace_pq_new("abc", "", "x", true); }),
              " L\"\" is not permitted");
    ASSERT_FALSE(capture.records().empty()); // the frame logged it

    kstring text = "abc";
    PQString::self_replace(text, "", "x");
    EXPECT_EQ(text, "abc");
}

TEST(PQStringReplace, CsvValues) {
    const std::vector<std::pair<kstring, kstring>> rows = {
        {"a\r\nb", "a\nb"},
        {R"(say ""hi"")", R"(say "hi")"},
        {R"(http:\/\/x)", "http://x"},
        {R"(""")", R"("")"}, // one pair, then a lone quote
        {"\r\r\n\n", "\r\n\n"},
        {"plain", "plain"},
    };
    for (const auto& [value, expected] : rows) {
        SCOPED_TRACE(value);
        EXPECT_EQ(*PQString::unescapeValueFromCSV(value), expected);
    }
}

TEST(PQStringSearch, BoundedSearches) {
    struct Row {
        const char* haystack;
        const char* needle;
        std::size_t length;
        std::size_t find;
        std::size_t findStrict;
    };
    constexpr auto npos = kstring::npos;
    const Row rows[] = {
        {"abcdef", "cde", 3, 2, npos}, {"abcdef", "bc", 3, 1, 1},  {"abcdef", "d", 3, npos, npos},
        {"abcdef", "", 3, 0, 0},       {"abcdef", "", 0, npos, 0}, {"ab", "abc", 2, npos, npos},
        {"abcdef", "f", 6, 5, 5},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.haystack) + " / " + row.needle);
        EXPECT_EQ(PQString::charFind(row.haystack, row.needle, row.length), row.find);
        EXPECT_EQ(PQString::charFind_ns(row.haystack, row.needle, row.length), row.findStrict);
    }
    EXPECT_NE(pqtest::messageOf([] { (void)PQString::charFind(nullptr, "a", 1); }),
              "(no exception)");
}

TEST(PQStringLinearTime, MegabyteInputs) {
    const kstring equals(kMiB, '=');
    EXPECT_EQ(PQString::restorePQEntities(equals)->size(), 7 * kMiB);
    EXPECT_EQ(PQString::restorePQEntities_2(equals).size(), 7 * kMiB);
    EXPECT_EQ(PQString::escapeDoubleQuotes(kstring(kMiB, '"'))->size(), 2 * kMiB);
    EXPECT_EQ(*PQString::removePQEntities(repeat("--amp--", kMiB / 7)), kstring(kMiB / 7, '&'));
    // One chain of overlapping tokens across the whole text.
    const kstring chain = repeat("--amp--equ--dbsl", kMiB / 16) + "--";
    EXPECT_EQ(*PQString::removePQEntities(chain), orderUnescapedInPasses(chain));
    kstring slashes(kMiB, '/');
    PQString::self_replace(slashes, "/", "--");
    EXPECT_EQ(slashes.size(), 2 * kMiB);
    EXPECT_EQ(PQString::unescapeValueFromCSV(kstring(kMiB, '"'))->size(), kMiB / 2);

    // A search that a naive loop would make quadratic: almost-matches everywhere.
    const kstring hay(kMiB, 'a');
    const kstring needle = kstring(kMiB / 2, 'a') + "b";
    EXPECT_EQ(PQString::charFind(hay.c_str(), needle.c_str(), hay.size()), kstring::npos);
    EXPECT_EQ(PQString::charFind_ns(hay.c_str(), needle.c_str(), hay.size()), kstring::npos);
    EXPECT_EQ(PQString::replace_pq(hay, needle, "x", false)->size(), kMiB);
}
