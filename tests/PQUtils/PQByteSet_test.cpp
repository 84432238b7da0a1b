// The block scanner: its portable path, its vector path (SSE2 or NEON,
// whichever this build has) and its AVX2 path (where the processor has it)
// give the same answers on the same bytes.

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
using PQ_UTILS::internal::kHasAvx2Path;
using PQ_UTILS::internal::kHasVectorPath;

namespace {

// What one path says of a text: the positions of the set's bytes, read
// block by block and found one after another, their count, and the groups
// that skipping clean text stops at.
struct Scan {
    std::vector<std::size_t> byBlocks;
    std::vector<std::size_t> byFind;
    std::size_t count = 0;
    std::vector<std::size_t> groups;
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
    for (std::size_t at = set.template skipClean<Path>(text.data(), 0, text.size());
         at + Set::kGroup <= text.size();
         at = set.template skipClean<Path>(text.data(), at + Set::kGroup, text.size())) {
        scan.groups.push_back(at);
    }
    return scan;
}

// The path asked for, when this build has it.
template <class Set> Scan scanOn(BlockPath path, const Set& set, std::string_view text) {
    if constexpr (kHasAvx2Path) {
        if (path == BlockPath::avx2) {
            return scanWith<BlockPath::avx2>(set, text);
        }
    }
    if constexpr (kHasVectorPath) {
        if (path == BlockPath::vector) {
            return scanWith<BlockPath::vector>(set, text);
        }
    }
    return scanWith<BlockPath::portable>(set, text);
}

// Texts of every density of the set's bytes (alone and in runs), at every
// alignment, with every tail length after whole blocks.
template <class Set, std::size_t M>
void checkPath(BlockPath path, const Set& set, const char (&members)[M]) {
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
        for (const std::size_t size :
             {0, 1, 15, 16, 17, 31, 47, 63, 64, 65, 100, 128, 129, 255, 4200}) {
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
                std::vector<std::size_t> groups; // every group holding one
                for (std::size_t i = 0; i < text.size(); ++i) {
                    if (bytes.find(text[i]) == std::string_view::npos) {
                        continue;
                    }
                    expected.push_back(i);
                    const std::size_t group = i - i % Set::kGroup;
                    if (group + Set::kGroup <= text.size() &&
                        (groups.empty() || groups.back() != group)) {
                        groups.push_back(group);
                    }
                }
                const Scan scan = scanOn(path, set, text);
                ASSERT_EQ(scan.byBlocks, expected);
                ASSERT_EQ(scan.byFind, expected);
                ASSERT_EQ(scan.count, expected.size());
                ASSERT_EQ(scan.groups, groups);
            }
        }
    }
}

std::string pathName(const testing::TestParamInfo<BlockPath>& info) {
    constexpr std::array<const char*, 3> kNames{"portable", "vector", "avx2"};
    return kNames.at(static_cast<std::size_t>(info.param));
}

class PQByteSetPath : public testing::TestWithParam<BlockPath> {
protected:
    void SetUp() override {
        if (GetParam() == BlockPath::vector && !kHasVectorPath) {
            GTEST_SKIP() << "this build has no vector path";
        }
        if (GetParam() == BlockPath::avx2 &&
            !(kHasAvx2Path && PQ_UTILS::internal::avx2Supported())) {
            GTEST_SKIP() << "this processor (or build) has no AVX2";
        }
    }
};

} // namespace

TEST_P(PQByteSetPath, FindsWhatTheBytesSay) {
    // The sets the library scans for (with the zero byte, as the walks
    // search), a set with two bytes of one low nibble ("\\" and "\f"),
    // and bytes that are zero or above 0x7f: the AVX2 path tests the first
    // kind with a table look-up, the others with compares.
    constexpr char kOrder[] = "=&/";
    constexpr char kOrderStops[] = {'=', '&', '/', '\0', '\0'};
    constexpr char kJsonOrderStops[] = {'=', '&', '/', '\n', '\0', '\0'};
    constexpr char kDash[] = "-";
    constexpr char kJson[] = "\\\"\n\t\v\r\f";
    constexpr char kOdd[] = {'\0', '\x80', '\xff', 'a', '\0'};
    checkPath(GetParam(), ByteSet(kOrder), kOrder);
    checkPath(GetParam(), ByteSet(kOrderStops), kOrderStops);
    checkPath(GetParam(), ByteSet(kJsonOrderStops), kJsonOrderStops);
    checkPath(GetParam(), ByteSet(kDash), kDash);
    checkPath(GetParam(), ByteSet(kJson), kJson);
    checkPath(GetParam(), ByteSet(kOdd), kOdd);
}

INSTANTIATE_TEST_SUITE_P(EveryPath, PQByteSetPath,
                         testing::Values(BlockPath::portable, BlockPath::vector, BlockPath::avx2),
                         pathName);

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
