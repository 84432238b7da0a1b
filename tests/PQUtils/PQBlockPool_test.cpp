#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "PQUtils/Orders/PQOrderPiece.h"
#include "PQUtils/Utils/PQBlockPoolInternal.h"
#include "PQUtils/Utils/PQSecuredString.h"
#include "support/Sanitizers.h"

using PQ_UTILS::kstring;
using PQ_UTILS::internal::poolAllocate;
using PQ_UTILS::internal::poolCounts;
using PQ_UTILS::internal::poolRelease;

namespace {

bool allZero(const void* block, std::size_t size) {
    const auto* const bytes = static_cast<const unsigned char*>(block);
    return std::all_of(bytes, bytes + size, [](unsigned char byte) { return byte == 0; });
}

// Sizes at the edges of the roundings, and the largest pooled size.
constexpr std::size_t kSizes[] = {
    1, 15, 16, 17, 32, 48, 100, 255, PQ_UTILS::internal::kPoolMaxBlock};

TEST(PQBlockPool, AReleasedBlockComesBackWiped) {
    for (const std::size_t size : kSizes) {
        void* const block = poolAllocate(size);
        std::memset(block, 0xA5, size);
        poolRelease(block, size);
        // The last block given back is the first handed out again.
        void* const again = poolAllocate(size);
        EXPECT_EQ(again, block) << size;
        EXPECT_TRUE(allZero(again, size)) << size;
        poolRelease(again, size);
    }
}

// More than a thread keeps: blocks go to the shared store and come back, all
// distinct and all zeros, including those of new chunks.
TEST(PQBlockPool, ManyBlocksAreDistinctAndZero) {
    constexpr std::size_t kSize = 40;
    constexpr int kCount = 1000;
    for (int round = 0; round < 2; ++round) {
        std::vector<void*> blocks;
        for (int i = 0; i < kCount; ++i) {
            blocks.push_back(poolAllocate(kSize));
            ASSERT_TRUE(allZero(blocks.back(), kSize));
            std::memset(blocks.back(), i, kSize);
        }
        EXPECT_EQ(std::set<void*>(blocks.begin(), blocks.end()).size(), blocks.size());
        for (void* const block : blocks) {
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % __STDCPP_DEFAULT_NEW_ALIGNMENT__,
                      0U);
            poolRelease(block, kSize);
        }
        const auto counts = poolCounts(kSize);
        EXPECT_LE(counts.threadFree, 128U); // the rest went to the shared store
        EXPECT_GE(counts.threadFree + counts.sharedFree, static_cast<std::size_t>(kCount));
    }
}

TEST(PQBlockPool, LargerSizesAndNullAreNotPooled) {
    const std::size_t large = PQ_UTILS::internal::kPoolMaxBlock + 1;
    const auto before = poolCounts(large);
    void* const block = poolAllocate(large);
    std::memset(block, 1, large);
    poolRelease(block, large);
    poolRelease(nullptr, 16);
    EXPECT_EQ(poolCounts(large).threadFree, before.threadFree);
}

// The text of a short secret lives inside the string object, which is a
// pool block: the block is wiped before anyone else gets it.
TEST(PQBlockPool, ASecretInsideTheTextObjectIsWiped) {
    void* held = nullptr;
    {
        const PQ_UTILS::PQSecuredString secret(kstring("hunter2"));
        held = const_cast<kstring*>(secret.getStringSource());
    }
    void* const again = poolAllocate(sizeof(kstring));
    EXPECT_EQ(again, held);
    EXPECT_TRUE(allZero(again, sizeof(kstring)));
    poolRelease(again, sizeof(kstring));
}

// The order's pieces come from the pool and go back to it when freed.
TEST(PQBlockPool, PiecesUseThePool) {
    const std::size_t pieceSize = sizeof(PQ_UTILS::PQOrderPiece);
    auto piece = std::make_unique<PQ_UTILS::PQOrderPiece>("key", "a value that is not short");
    const std::size_t freeBefore = poolCounts(pieceSize).threadFree;
    void* const address = piece.get();
    piece.reset();
    EXPECT_EQ(poolCounts(pieceSize).threadFree, freeBefore + 1);
    EXPECT_EQ(poolAllocate(pieceSize), address);
    poolRelease(address, pieceSize);
}

#if defined(PQ_TEST_ASAN)
// A free block is poisoned: reading one is reported, not silently allowed.
TEST(PQBlockPoolDeathTest, ReadingAReleasedBlockIsReported) {
    EXPECT_DEATH(
        {
            auto* const block = static_cast<volatile char*>(poolAllocate(32));
            poolRelease(const_cast<char*>(block), 32);
            const char seen = block[0];
            std::fprintf(stderr, "read %d\n", seen);
        },
        "use-after-poison");
}
#endif

} // namespace
