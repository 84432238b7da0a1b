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
#include "PQUtils/Utils/PQSecureMemory.h"
#include "PQUtils/Utils/PQString.h"

using PQ_UTILS::kstring;
using PQ_UTILS::PQString;
using PQ_UTILS::internal::BlockPath;

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

kstring escapedInPasses(const kstring& value, bool lineFeeds) {
    kstring text =
        *PQString::removeDbleSlashes(*PQString::removeAmpersand(*PQString::removeEquals(value)));
    if (lineFeeds) {
        PQString::self_replace(text, "\n", "--endl--");
    }
    return text;
}

kstring unescapedInPasses(const kstring& text) {
    return *PQString::restoreDbleSlashes(
        *PQString::restoreAmpersand(*PQString::restoreEquals(text)));
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
                    const kstring expected = escapedInPasses(kstring(value), lineFeeds);
                    for (const BlockPath path : paths()) {
                        kstring escaped = "prefix";
                        PQ_UTILS::internal::appendOrderEscaped(escaped, value, 0, lineFeeds, path);
                        ASSERT_EQ(escaped, "prefix" + expected) << static_cast<int>(path);
                    }
                }
                const kstring expected = unescapedInPasses(kstring(value));
                for (const BlockPath path : paths()) {
                    kstring unescaped = "prefix";
                    PQ_UTILS::internal::appendOrderUnescaped(unescaped, value, path);
                    ASSERT_EQ(unescaped, "prefix" + expected) << static_cast<int>(path);
                }
            }
        }
    }
}

TEST(PQOrderEscape, AZeroByteEndsTheEscapingOnEveryPath) {
    // The zero byte in every place of a block, specials on both sides.
    for (std::size_t at = 0; at < 80; ++at) {
        std::string value(80, 'x');
        for (std::size_t k = 0; k < value.size(); k += 5) {
            value[k] = k % 10 == 0 ? '=' : '/';
        }
        value[at] = '\0';
        const std::string_view before(value.data(), at);
        const kstring expected = escapedInPasses(kstring(before), false) + value.substr(at);
        for (const BlockPath path : paths()) {
            kstring escaped;
            PQ_UTILS::internal::appendOrderEscaped(escaped, value, 0, false, path);
            ASSERT_EQ(escaped, expected) << "zero at " << at;
            kstring unescaped;
            PQ_UTILS::internal::appendOrderUnescaped(unescaped, expected, path);
            EXPECT_EQ(unescaped, unescapedInPasses(kstring(expected))) << "zero at " << at;
        }
    }
}

TEST(PQOrderEscape, AZeroByteInsideATokenEndsTheUnescapingThere) {
    // Tokens, chains and dashes, the zero at every place: what lies across
    // it is no token.
    std::string text;
    while (text.size() < 100) {
        text += "--equ----amp--x--dbsl--dbsl--y-";
    }
    for (std::size_t at = 0; at < text.size(); ++at) {
        std::string value = text;
        value[at] = '\0';
        const kstring expected = unescapedInPasses(kstring(value));
        for (const BlockPath path : paths()) {
            kstring unescaped;
            PQ_UTILS::internal::appendOrderUnescaped(unescaped, value, path);
            ASSERT_EQ(unescaped, expected)
                << "zero at " << at << ", path " << static_cast<int>(path);
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
            const kstring escaped = escapedInPasses(kstring(value), false);
            const kstring unescaped = unescapedInPasses(kstring(value));
            for (const BlockPath path : paths()) {
                SCOPED_TRACE(testing::Message()
                             << piece << " at " << at << ", path " << static_cast<int>(path));
                kstring text;
                PQ_UTILS::internal::appendOrderEscaped(text, value, 0, false, path);
                ASSERT_EQ(text, escaped);
                text.clear();
                PQ_UTILS::internal::appendOrderUnescaped(text, value, path);
                ASSERT_EQ(text, unescaped);
            }
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

// The sizes of the texts wiped while it lives, and whether every byte of
// each was zero.
class WipeWatch {
public:
    struct Seen {
        bool allZero;
        std::size_t size;
    };
    WipeWatch() {
        seen().clear();
        PQ_UTILS::setWipeObserver(&record);
    }
    WipeWatch(const WipeWatch&) = delete;
    WipeWatch& operator=(const WipeWatch&) = delete;
    ~WipeWatch() { PQ_UTILS::setWipeObserver(nullptr); }
    static std::vector<Seen>& seen() {
        static std::vector<Seen> wipes;
        return wipes;
    }

private:
    static void record(const char* data, std::size_t size) {
        bool allZero = true;
        for (std::size_t k = 0; k < size; ++k) {
            allZero = allZero && data[k] == '\0';
        }
        seen().push_back({allZero, size});
    }
};

TEST(PQOrderEscape, TextThatGrowsWipesWhatItLeaves) {
    // Text that already holds a secret, with no room made: every buffer it
    // leaves while it grows is wiped whole, and it grows geometrically.
    std::mt19937 random(9);
    const std::string value = randomText(random, 1.0, 20000, 0);
    const kstring secret(100, 's');
    for (const BlockPath path : paths()) {
        for (const bool escaping : {true, false}) {
            SCOPED_TRACE(testing::Message() << static_cast<int>(path) << " " << escaping);
            const WipeWatch watch;
            kstring text = secret;
            text.shrink_to_fit();
            const std::size_t capacity = text.capacity();
            if (escaping) {
                PQ_UTILS::internal::appendOrderEscaped(text, value, 0, false, path);
                EXPECT_EQ(text, secret + escapedInPasses(kstring(value), false));
            } else {
                PQ_UTILS::internal::appendOrderUnescaped(text, value, path);
                EXPECT_EQ(text, secret + unescapedInPasses(kstring(value)));
            }
            const std::vector<WipeWatch::Seen>& wipes = WipeWatch::seen();
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
