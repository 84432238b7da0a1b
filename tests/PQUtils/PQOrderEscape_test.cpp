// The order writer's escaping and the reader's unescaping of a value on
// each path of the block scanner (portable, the vector one of this build,
// AVX2 where the processor has it): the same bytes as the single-token
// passes, on random text of every density of special bytes, at every
// alignment and tail length, with runs of specials and tokens glued into
// chains. Text that grows leaves no unwiped copy behind.

#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "PQUtils/Utils/PQOrderEscapeInternal.h"
#include "PQUtils/Utils/PQString.h"
#include "support/OrderPasses.h"
#include "support/WipeWatch.h"

using PQ_UTILS::kstring;
using PQ_UTILS::internal::BlockPath;
using pqtest::orderEscapedInPasses;
using pqtest::orderUnescapedInPasses;

namespace {

// Every path this build and processor run (AVX2 where it is there).
std::vector<BlockPath> paths() {
    std::vector<BlockPath> all{BlockPath::portable};
    if (PQ_UTILS::internal::kHasVectorPath) {
        all.push_back(BlockPath::vector);
    }
    if (PQ_UTILS::internal::avx2Supported()) {
        all.push_back(BlockPath::avx2);
    }
    return all;
}

// Both walks give `escaped` and `unescaped` for `value` on every path.
void expectWalksOnEveryPath(std::string_view value, const kstring& escaped,
                            const kstring& unescaped) {
    for (const BlockPath path : paths()) {
        SCOPED_TRACE(testing::Message() << "path " << static_cast<int>(path));
        kstring out;
        PQ_UTILS::internal::appendOrderEscaped(out, value, 0, false, path);
        ASSERT_EQ(out, escaped);
        out.clear();
        PQ_UTILS::internal::appendOrderUnescaped(out, value, path);
        ASSERT_EQ(out, unescaped);
    }
}

// Text of `size` bytes after `align` bytes of padding, with about
// `density` of its pieces special: escaped bytes alone and in runs,
// tokens, parts of tokens and dashes, which chain when glued together.
std::string randomText(std::mt19937& random, double density, std::size_t size, std::size_t align) {
    static const std::vector<std::string> specials = {
        "=",    "&",       "/",        "//",     "///",   "\n", "--", "-", "--equ--",
        "equ-", "--amp--", "--dbsl--", "--dbsl", "amp--", "d",  "e",  "a"};
    std::string text(align, '.');
    std::bernoulli_distribution special(density);
    while (text.size() < align + size) {
        if (special(random)) {
            text += specials[random() % specials.size()];
        } else {
            text += static_cast<char>('b' + random() % 24);
        }
    }
    text.resize(align + size);
    return text;
}

TEST(PQOrderEscape, EveryPathEqualsThePasses) {
    std::mt19937 random(23);
    for (const double density : {0.0, 0.005, 0.02, 0.1, 0.5, 1.0}) {
        for (const std::size_t size : {0, 1, 7, 15, 16, 17, 63, 64, 65, 100, 130, 300, 5000}) {
            for (std::size_t align = 0; align < 16; align += 3) {
                const std::string buffer = randomText(random, density, size, align);
                const std::string_view value = std::string_view(buffer).substr(align);
                SCOPED_TRACE(testing::Message() << "density " << density << ", size " << size
                                                << ", alignment " << align << ": " << value);
                for (const bool lineFeeds : {false, true}) {
                    const kstring expected = orderEscapedInPasses(kstring(value), lineFeeds);
                    for (const BlockPath path : paths()) {
                        kstring escaped = "prefix";
                        PQ_UTILS::internal::appendOrderEscaped(escaped, value, 0, lineFeeds, path);
                        ASSERT_EQ(escaped, "prefix" + expected) << static_cast<int>(path);
                    }
                }
                const kstring expected = orderUnescapedInPasses(kstring(value));
                for (const BlockPath path : paths()) {
                    kstring unescaped = "prefix";
                    PQ_UTILS::internal::appendOrderUnescaped(unescaped, value, path);
                    ASSERT_EQ(unescaped, "prefix" + expected) << static_cast<int>(path);
                }
            }
        }
    }
}

TEST(PQOrderEscape, AZeroByteEndsTheWalksOnEveryPath) {
    // The zero byte in every place of a block: in specials, in tokens, chains
    // and dashes, and in what the specials escape to. Nothing after it is
    // escaped, and what lies across it is no token.
    std::string specials(80, 'x');
    for (std::size_t k = 0; k < specials.size(); k += 5) {
        specials[k] = k % 10 == 0 ? '=' : '/';
    }
    std::string tokens;
    while (tokens.size() < 100) {
        tokens += "--equ----amp--x--dbsl--dbsl--y-";
    }
    for (const std::string& text : {specials, tokens, orderEscapedInPasses(specials)}) {
        for (std::size_t at = 0; at < text.size(); ++at) {
            std::string value = text;
            value[at] = '\0';
            SCOPED_TRACE(testing::Message() << "zero at " << at << " of " << text.substr(0, 20));
            ASSERT_NO_FATAL_FAILURE(expectWalksOnEveryPath(
                value, orderEscapedInPasses(value.substr(0, at)) + value.substr(at),
                orderUnescapedInPasses(value)));
        }
    }
}

TEST(PQOrderEscape, SpecialsAcrossTheEndOfAStretchOfCleanText) {
    // The walks skip clean text in stretches of 4 KiB and copy each as it
    // ends: a pair, a token or a chain across that end, or a zero byte
    // just before or after it.
    for (const std::string_view piece :
         {std::string_view("//"), std::string_view("///"), std::string_view("--equ--"),
          std::string_view("--amp----dbsl--"), std::string_view("=\0&")}) {
        for (std::size_t at = 4096 - 20; at < 4096 + 4; ++at) {
            std::string value(9000, 'x');
            value.replace(at, piece.size(), piece);
            SCOPED_TRACE(testing::Message() << piece << " at " << at);
            ASSERT_NO_FATAL_FAILURE(expectWalksOnEveryPath(
                value, orderEscapedInPasses(value, false), orderUnescapedInPasses(value)));
        }
    }
}

TEST(PQOrderEscape, RoomOfTheBoundKeepsTheTextInPlace) {
    // The writer reserves the bounds once: the text must never move, or a
    // copy of it would be left unwiped.
    std::mt19937 random(5);
    for (const double density : {0.0, 0.1, 1.0}) {
        std::string value = randomText(random, density, 3000, 0);
        value[1500] = '\0'; // what follows is copied, not escaped
        kstring text = "action=x&k=";
        const std::size_t bound = PQ_UTILS::internal::orderEscapedBound(value);
        text.reserve(text.size() + bound);
        const char* const before = text.data();
        PQ_UTILS::internal::appendOrderEscaped(text, value, bound);
        EXPECT_EQ(text.data(), before) << density;
        EXPECT_LE(text.size(), 11 + bound);
    }
}

TEST(PQOrderEscape, TextThatGrowsWipesWhatItLeaves) {
    // Text that already holds a secret, with no room made: every buffer it
    // leaves while it grows is wiped whole, and it grows geometrically.
    std::mt19937 random(9);
    const std::string value = randomText(random, 1.0, 20000, 0);
    const kstring secret(100, 's');
    for (const BlockPath path : paths()) {
        for (const bool escaping : {true, false}) {
            SCOPED_TRACE(testing::Message() << static_cast<int>(path) << " " << escaping);
            const pqtest::WipeWatch watch;
            kstring text = secret;
            text.shrink_to_fit();
            const std::size_t capacity = text.capacity();
            if (escaping) {
                PQ_UTILS::internal::appendOrderEscaped(text, value, 0, false, path);
                EXPECT_EQ(text, secret + orderEscapedInPasses(kstring(value), false));
            } else {
                PQ_UTILS::internal::appendOrderUnescaped(text, value, path);
                EXPECT_EQ(text, secret + orderUnescapedInPasses(kstring(value)));
            }
            const auto& wipes = pqtest::WipeWatch::seen();
            ASSERT_FALSE(wipes.empty());
            EXPECT_GE(wipes.front().size, capacity);
            for (std::size_t k = 0; k < wipes.size(); ++k) {
                EXPECT_TRUE(wipes[k].allZero) << k;
                if (k > 0) {
                    EXPECT_GE(wipes[k].size, 2 * wipes[k - 1].size) << k;
                }
            }
        }
    }
}

} // namespace
