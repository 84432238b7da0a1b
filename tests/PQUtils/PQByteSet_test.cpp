// The block scanner: its vector path (SSE2 or NEON, whichever this build
// has) and its portable path give the same answers on the same bytes.

#include <array>
#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "PQUtils/Utils/PQByteSetInternal.h"

using PQ_UTILS::internal::BlockPath;
using PQ_UTILS::internal::ByteSet;
using PQ_UTILS::internal::kHasVectorPath;

namespace {

// What one path says of a text: the positions of the set's bytes, read
// block by block and found one after another, and their count.
struct Scan {
    std::vector<std::size_t> byBlocks;
    std::vector<std::size_t> byFind;
    std::size_t count = 0;
};

template <BlockPath Path, class Set> Scan scanWith(const Set& set, std::string_view text) {
    Scan scan;
    std::size_t pos = 0;
    for (; pos + Set::kBlock <= text.size(); pos += Set::kBlock) {
        for (auto hits = set.template blockHits<Path>(text.data() + pos); !hits.empty();
             hits.dropFirst()) {
            scan.byBlocks.push_back(pos + hits.first());
        }
    }
    for (; pos < text.size(); ++pos) {
        if (set.contains(text[pos])) {
            scan.byBlocks.push_back(pos);
        }
    }
    for (std::size_t at = set.template find<Path>(text); at != std::string_view::npos;
         at = set.template find<Path>(text, at + 1)) {
        scan.byFind.push_back(at);
    }
    scan.count = set.template count<Path>(text);
    return scan;
}

// Texts of every density of the set's bytes (alone and in runs), at every
// alignment, with every tail length after whole blocks.
template <class Set, std::size_t M> void checkBothPaths(const Set& set, const char (&members)[M]) {
    std::mt19937 random(17);
    const std::string_view bytes(members, M - 1);
    std::string plain; // every byte value outside the set
    for (int c = 0; c < 256; ++c) {
        if (!set.contains(static_cast<char>(c))) {
            plain += static_cast<char>(c);
        }
    }
    std::string buffer;
    for (const double density : {0.0, 0.005, 0.02, 0.1, 0.5, 1.0}) {
        for (const std::size_t size : {0, 1, 15, 16, 17, 31, 47, 64, 100, 255, 4200}) {
            for (std::size_t align = 0; align < 16; ++align) {
                buffer.assign(align, 'x');
                while (buffer.size() < align + size) {
                    const bool special = std::uniform_real_distribution<>(0, 1)(random) < density;
                    const std::size_t run = special ? 1 + random() % 3 : 1;
                    for (std::size_t k = 0; k < run && buffer.size() < align + size; ++k) {
                        buffer += special ? bytes[random() % bytes.size()]
                                          : plain[random() % plain.size()];
                    }
                }
                const std::string_view text = std::string_view(buffer).substr(align);
                SCOPED_TRACE(testing::Message() << "density " << density << ", size " << size
                                                << ", alignment " << align);
                std::vector<std::size_t> expected;
                for (std::size_t i = 0; i < text.size(); ++i) {
                    if (bytes.find(text[i]) != std::string_view::npos) {
                        expected.push_back(i);
                    }
                }
                const Scan portable = scanWith<BlockPath::portable>(set, text);
                ASSERT_EQ(portable.byBlocks, expected);
                ASSERT_EQ(portable.byFind, expected);
                ASSERT_EQ(portable.count, expected.size());
                if constexpr (kHasVectorPath) {
                    const Scan vector = scanWith<BlockPath::vector>(set, text);
                    ASSERT_EQ(vector.byBlocks, expected);
                    ASSERT_EQ(vector.byFind, expected);
                    ASSERT_EQ(vector.count, expected.size());
                }
            }
        }
    }
}

} // namespace

TEST(PQByteSet, VectorAndPortablePathsAgree) {
    // The sets the library scans for, and bytes that are zero or above 0x7f.
    constexpr char kOrder[] = "=&/";
    constexpr char kJsonOrder[] = "=&/\n";
    constexpr char kDash[] = "-";
    constexpr char kJson[] = "\\\"\n\t\v\r\f";
    constexpr char kOdd[] = {'\0', '\x80', '\xff', 'a', '\0'};
    checkBothPaths(ByteSet(kOrder), kOrder);
    checkBothPaths(ByteSet(kJsonOrder), kJsonOrder);
    checkBothPaths(ByteSet(kDash), kDash);
    checkBothPaths(ByteSet(kJson), kJson);
    checkBothPaths(ByteSet(kOdd), kOdd);
}

// The vector count adds up byte-wide lanes: a long text of nothing but the
// set's bytes must not wrap them.
TEST(PQByteSet, CountsPastTheLaneLimit) {
    constexpr ByteSet kAmp("&");
    const std::string text(1U << 20U, '&');
    EXPECT_EQ(kAmp.count<BlockPath::portable>(text), text.size());
    EXPECT_EQ(kAmp.count(text), text.size());
    EXPECT_EQ(kAmp.find(text, text.size() - 1), text.size() - 1);
    EXPECT_EQ(kAmp.find(text, text.size()), std::string_view::npos);
}
