#pragma once

// The block scanner: finds a few byte values 16 bytes at a time, and skips
// clean text 64 bytes at a time (with AVX2 where the processor has it).
// With the Base64 encoder (PQBase64.cpp), the only place where the library
// uses vector instructions; not installed.

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#if defined(__SSE2__)
#include <emmintrin.h>
#define PQ_BLOCK_SCAN_SSE2 1
#define PQ_BLOCK_SCAN_VECTOR 1
#if defined(__x86_64__) && (defined(__GNUC__) || defined(__clang__))
// Built for the baseline processor: only the functions marked with
// PQ_AVX2_TARGET use AVX2, and only after avx2Supported() said yes.
#include <immintrin.h>
#define PQ_BLOCK_SCAN_AVX2 1
#define PQ_AVX2_TARGET __attribute__((target("avx2")))
#endif
#elif defined(__aarch64__) && defined(__ARM_NEON)
#include <arm_neon.h>
#define PQ_BLOCK_SCAN_NEON 1
#define PQ_BLOCK_SCAN_VECTOR 1
#endif

namespace PQ_UTILS::internal {

// How a block is tested: one byte at a time, which builds everywhere, or
// with the processor's vector instructions (SSE2, which every x86-64 has;
// NEON, which every arm64 has). `avx2` is the vector path with clean text
// skipped 32 bytes per compare, for x86-64 processors that have AVX2 (asked
// at run time). All give the same answers; the tests run them side by side.
enum class BlockPath { portable, vector, avx2 };

#if defined(PQ_BLOCK_SCAN_VECTOR)
inline constexpr bool kHasVectorPath = true;
#else
inline constexpr bool kHasVectorPath = false;
#endif
#if defined(PQ_BLOCK_SCAN_AVX2)
inline constexpr bool kHasAvx2Path = true;
#else
inline constexpr bool kHasAvx2Path = false;
#endif
inline constexpr BlockPath kNativePath = kHasVectorPath ? BlockPath::vector : BlockPath::portable;

// Whether this processor runs the avx2 path; asked once.
[[nodiscard]] inline bool avx2Supported() noexcept {
#if defined(PQ_BLOCK_SCAN_AVX2)
    static const bool supported = [] {
        __builtin_cpu_init();
        return __builtin_cpu_supports("avx2") != 0;
    }();
    return supported;
#else
    return false;
#endif
}

// The fastest path this processor runs: what the walks take unless told.
[[nodiscard]] inline BlockPath bestPath() noexcept {
    return avx2Supported() ? BlockPath::avx2 : kNativePath;
}

// The bytes of one block that are in a set, lowest first. Byte k is bit
// k * Stride of the bits: SSE2 and the portable loop give a bit per byte,
// NEON a nibble per byte (it has no single-instruction byte mask).
template <unsigned Stride> class BlockHits {
public:
    constexpr explicit BlockHits(std::uint64_t bits) noexcept : m_bits(bits) {}

    [[nodiscard]] constexpr bool empty() const noexcept { return m_bits == 0; }
    // The index in the block of the lowest hit; the hits must not be empty.
    [[nodiscard]] constexpr std::size_t first() const noexcept {
        return static_cast<std::size_t>(std::countr_zero(m_bits)) / Stride;
    }
    constexpr void dropFirst() noexcept { m_bits &= m_bits - 1; }
    // Drops the hits before index `end` of the block (any number).
    constexpr void dropBefore(std::size_t end) noexcept {
        const std::size_t bit = end * Stride;
        m_bits &= bit >= 64 ? 0 : ~std::uint64_t{0} << bit;
    }
    [[nodiscard]] constexpr std::size_t size() const noexcept {
        return static_cast<std::size_t>(std::popcount(m_bits));
    }

private:
    std::uint64_t m_bits;
};

// The vector primitives of each processor, as one vocabulary: a lane is a
// byte, a lane that matches holds 0xFF.
namespace vec {
#if defined(PQ_BLOCK_SCAN_SSE2)
using Lanes = __m128i;
inline constexpr unsigned kStride = 1;
inline Lanes load(const char* block) noexcept {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(block)); // NOLINT
}
inline Lanes splat(char c) noexcept { return _mm_set1_epi8(c); }
inline Lanes zero() noexcept { return _mm_setzero_si128(); }
inline Lanes equal(Lanes a, Lanes b) noexcept { return _mm_cmpeq_epi8(a, b); }
inline Lanes either(Lanes a, Lanes b) noexcept { return _mm_or_si128(a, b); }
inline Lanes minus(Lanes a, Lanes b) noexcept { return _mm_sub_epi8(a, b); }
inline std::uint64_t hitBits(Lanes matches) noexcept {
    return static_cast<unsigned>(_mm_movemask_epi8(matches));
}
// The sum of the lanes, read as unsigned bytes.
inline std::size_t sum(Lanes counts) noexcept {
    const __m128i sums = _mm_sad_epu8(counts, _mm_setzero_si128());
    return static_cast<std::size_t>(_mm_cvtsi128_si32(sums)) +
           static_cast<std::size_t>(_mm_cvtsi128_si32(_mm_srli_si128(sums, 8)));
}
#elif defined(PQ_BLOCK_SCAN_NEON)
using Lanes = uint8x16_t;
inline constexpr unsigned kStride = 4;
inline Lanes load(const char* block) noexcept {
    return vld1q_u8(reinterpret_cast<const std::uint8_t*>(block)); // NOLINT
}
inline Lanes splat(char c) noexcept { return vdupq_n_u8(static_cast<std::uint8_t>(c)); }
inline Lanes zero() noexcept { return vdupq_n_u8(0); }
inline Lanes equal(Lanes a, Lanes b) noexcept { return vceqq_u8(a, b); }
inline Lanes either(Lanes a, Lanes b) noexcept { return vorrq_u8(a, b); }
inline Lanes minus(Lanes a, Lanes b) noexcept { return vsubq_u8(a, b); }
// Shifting each pair of lanes right by 4 and narrowing keeps a nibble per
// lane, in lane order; one bit of each nibble is kept.
inline std::uint64_t hitBits(Lanes matches) noexcept {
    const uint8x8_t nibbles = vshrn_n_u16(vreinterpretq_u16_u8(matches), 4);
    return vget_lane_u64(vreinterpret_u64_u8(nibbles), 0) & 0x1111111111111111U;
}
inline std::size_t sum(Lanes counts) noexcept { return vaddlvq_u8(counts); }
#endif
} // namespace vec

// A set of up to a few byte values. The escapers and the order reader look
// for their few special bytes with it: in ordinary text those are rare, and
// testing 16 bytes per step is what makes a pass over a value cost little
// more than copying it. Every query takes the path as a template argument,
// the native one by default.
template <std::size_t N> class ByteSet {
public:
    static constexpr std::size_t kBlock = 16;
    static constexpr std::size_t kGroup = 4 * kBlock; // what skipClean passes over at once

    constexpr explicit ByteSet(const char (&bytes)[N + 1]) {
        // An entry that no byte with its low nibble matches.
        for (std::size_t k = 0; k < m_byLowNibble.size(); ++k) {
            m_byLowNibble[k] = static_cast<char>(k ^ 1U);
        }
        std::array<bool, 16> taken{};
        for (std::size_t k = 0; k < N; ++k) {
            const auto byte = static_cast<unsigned char>(bytes[k]);
            m_bytes[k] = bytes[k];
            m_member[byte] = true;
            m_lookUp = m_lookUp && byte < 0x80 && !taken[byte & 0xFU];
            taken[byte & 0xFU] = true;
            m_byLowNibble[byte & 0xFU] = bytes[k];
        }
    }

    [[nodiscard]] constexpr bool contains(char c) const noexcept {
        return m_member[static_cast<unsigned char>(c)];
    }

    // The bytes of the kBlock bytes at `block` that are in the set (the
    // avx2 path tests one block as the vector path does).
    template <BlockPath Path = kNativePath>
    [[nodiscard]] auto blockHits(const char* block) const noexcept {
        static_assert(Path == BlockPath::portable || kHasVectorPath);
#if defined(PQ_BLOCK_SCAN_VECTOR)
        if constexpr (Path != BlockPath::portable) {
            return BlockHits<vec::kStride>(vec::hitBits(matches(vec::load(block))));
        } else
#endif
        {
            std::uint64_t bits = 0;
            for (std::size_t k = 0; k < kBlock; ++k) {
                bits |= std::uint64_t{contains(block[k])} << k;
            }
            return BlockHits<1>(bits);
        }
    }

    // Whether any of the Blocks * kBlock bytes at `block` is in the set: one
    // test for several blocks, so that a walk over text where the set is
    // rare branches once per few blocks.
    template <std::size_t Blocks, BlockPath Path = kNativePath>
    [[nodiscard]] bool anyIn(const char* block) const noexcept {
        static_assert(Path == BlockPath::portable || kHasVectorPath);
#if defined(PQ_BLOCK_SCAN_VECTOR)
        if constexpr (Path != BlockPath::portable) {
            vec::Lanes hits = matches(vec::load(block));
            for (std::size_t k = 1; k < Blocks; ++k) {
                hits = vec::either(hits, matches(vec::load(block + k * kBlock)));
            }
            return vec::hitBits(hits) != 0;
        } else
#endif
        {
            bool any = false;
            for (std::size_t k = 0; k < Blocks * kBlock; ++k) {
                any |= contains(block[k]);
            }
            return any;
        }
    }

    // How many bytes of `text` are in the set.
    template <BlockPath Path = kNativePath>
    [[nodiscard]] std::size_t count(std::string_view text) const noexcept {
        static_assert(Path == BlockPath::portable || kHasVectorPath);
        std::size_t total = 0;
        std::size_t pos = 0;
#if defined(PQ_BLOCK_SCAN_VECTOR)
        if constexpr (Path != BlockPath::portable) {
            // Each lane counts its matches (0xFF is -1) for up to 255
            // blocks, then the lanes are summed.
            while (pos + kBlock <= text.size()) {
                vec::Lanes lanes = vec::zero();
                for (std::size_t blocks = 0; blocks < 255 && pos + kBlock <= text.size();
                     ++blocks, pos += kBlock) {
                    lanes = vec::minus(lanes, matches(vec::load(text.data() + pos)));
                }
                total += vec::sum(lanes);
            }
        }
#endif
        for (; pos < text.size(); ++pos) {
            total += contains(text[pos]) ? 1 : 0;
        }
        return total;
    }

    // The first of pos, pos + kGroup, pos + 2 kGroup... at which the kGroup
    // bytes of `data` hold a byte of the set, or the first at which fewer
    // than kGroup bytes of the `size` are left. The walks pass over clean
    // text with it; on the avx2 path it is a call (compiled for AVX2), made
    // once per group with a hit.
    template <BlockPath Path = kNativePath>
    [[nodiscard]] std::size_t skipClean(const char* data, std::size_t pos,
                                        std::size_t size) const noexcept {
        static_assert(Path != BlockPath::avx2 || kHasAvx2Path);
#if defined(PQ_BLOCK_SCAN_AVX2)
        if constexpr (Path == BlockPath::avx2) {
            return skipCleanAvx2(data, pos, size, std::make_index_sequence<N>());
        } else
#endif
        {
            for (; size >= kGroup && pos <= size - kGroup; pos += kGroup) {
                if (anyIn<4, Path>(data + pos)) {
                    break;
                }
            }
            return pos;
        }
    }

    // Position of the first byte of `text` in the set at or after `pos`;
    // npos when there is none.
    template <BlockPath Path = kNativePath>
    [[nodiscard]] std::size_t find(std::string_view text, std::size_t pos = 0) const noexcept {
        static_assert(Path == BlockPath::portable || kHasVectorPath);
        const char* const data = text.data();
        const std::size_t size = text.size();
        if constexpr (Path != BlockPath::portable) {
            while (true) {
                pos = skipClean<Path>(data, pos, size);
                if (size < kGroup || pos > size - kGroup) {
                    break;
                }
                for (const std::size_t end = pos + kGroup; pos < end; pos += kBlock) {
                    if (const auto hits = blockHits<Path>(data + pos); !hits.empty()) {
                        return pos + hits.first();
                    }
                }
            }
            for (; size >= kBlock && pos <= size - kBlock; pos += kBlock) {
                if (const auto hits = blockHits<Path>(data + pos); !hits.empty()) {
                    return pos + hits.first();
                }
            }
        }
        for (; pos < size; ++pos) {
            if (contains(data[pos])) {
                return pos;
            }
        }
        return std::string_view::npos;
    }

private:
#if defined(PQ_BLOCK_SCAN_VECTOR)
    // 0xFF in each lane of `chunk` that holds a byte of the set.
    [[nodiscard]] vec::Lanes matches(vec::Lanes chunk) const noexcept {
        return matches(chunk, std::make_index_sequence<N>());
    }
    template <std::size_t... K>
    [[nodiscard]] vec::Lanes matches(vec::Lanes chunk,
                                     std::index_sequence<K...> /*bytes*/) const noexcept {
        vec::Lanes hits = vec::zero();
        ((hits = vec::either(hits, vec::equal(chunk, vec::splat(m_bytes[K])))), ...);
        return hits;
    }
#endif

#if defined(PQ_BLOCK_SCAN_AVX2)
    // Two 32-byte halves of a group per step, one test. A set whose bytes
    // are ASCII with distinct low nibbles (the order sets) is tested with
    // one table look-up and one compare per half: the table holds, at each
    // low nibble, the member that has it, and a byte is a member when the
    // look-up gives it back (a byte above 0x7F looks up zero). Other sets
    // take a compare per byte and half, all ORed (the splats are hoisted).
    // No lambda here: it would not be compiled for AVX2.
    template <std::size_t... K>
    [[nodiscard]] PQ_AVX2_TARGET std::size_t
    skipCleanAvx2(const char* data, std::size_t pos, std::size_t size,
                  std::index_sequence<K...> /*bytes*/) const noexcept {
        if (m_lookUp) {
            const __m256i table = _mm256_broadcastsi128_si256(
                _mm_loadu_si128(reinterpret_cast<const __m128i*>(m_byLowNibble.data()))); // NOLINT
            for (; size >= kGroup && pos <= size - kGroup; pos += kGroup) {
                const __m256i low =
                    _mm256_loadu_si256(reinterpret_cast<const __m256i*>(data + pos)); // NOLINT
                const __m256i high =
                    _mm256_loadu_si256(reinterpret_cast<const __m256i*>(data + pos + 32)); // NOLINT
                const __m256i hits =
                    _mm256_or_si256(_mm256_cmpeq_epi8(_mm256_shuffle_epi8(table, low), low),
                                    _mm256_cmpeq_epi8(_mm256_shuffle_epi8(table, high), high));
                if (_mm256_testz_si256(hits, hits) == 0) {
                    break;
                }
            }
            return pos;
        }
        for (; size >= kGroup && pos <= size - kGroup; pos += kGroup) {
            const __m256i low =
                _mm256_loadu_si256(reinterpret_cast<const __m256i*>(data + pos)); // NOLINT
            const __m256i high =
                _mm256_loadu_si256(reinterpret_cast<const __m256i*>(data + pos + 32)); // NOLINT
            __m256i hits = _mm256_setzero_si256();
            ((hits = _mm256_or_si256(
                  hits, _mm256_or_si256(_mm256_cmpeq_epi8(low, _mm256_set1_epi8(m_bytes[K])),
                                        _mm256_cmpeq_epi8(high, _mm256_set1_epi8(m_bytes[K]))))),
             ...);
            if (_mm256_testz_si256(hits, hits) == 0) {
                break;
            }
        }
        return pos;
    }
#endif

    std::array<char, N> m_bytes{};
    std::array<bool, 256> m_member{};
    std::array<char, 16> m_byLowNibble{}; // for the look-up test
    bool m_lookUp = true;                 // whether it is exact for the set
};

template <std::size_t M> ByteSet(const char (&)[M]) -> ByteSet<M - 1>;

} // namespace PQ_UTILS::internal
