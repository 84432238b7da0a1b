#pragma once

// Byte-search primitives shared by the string sources of the library; not
// installed.

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "PQUtils/Utils/PQFailure.h"

// Fails with the null variable "m_startPointeur" for a broken view: bytes to
// read but no start. An empty view passes whatever its start.
#define PQ_CHECK_VIEW(view)                                                                        \
    PQ_CHECK_NULL_TEXT((view).empty() ? "" : (view).data(), "m_startPointeur", ::std::string_view())

namespace PQ_UTILS::internal {

// Position of `needle` in `haystack` at or after `pos`, every byte counting
// (zero bytes too); npos when there is none. An empty needle is found at
// `pos` when pos <= size. Linear in the haystack: memchr for the first byte
// of a short needle, then a compare (at most kShortNeedle bytes per
// position); the C library's memmem (two-way) for a longer one. memmem is
// kept off the short needles that are searched over and over in one text:
// the address sanitizer checks its whole haystack on every call.
inline constexpr std::size_t kShortNeedle = 16;

[[nodiscard]] inline std::size_t findBytes(std::string_view haystack, std::string_view needle,
                                           std::size_t pos = 0) noexcept {
    if (pos > haystack.size()) {
        return std::string_view::npos;
    }
    if (needle.empty()) {
        return pos;
    }
    if (haystack.size() - pos < needle.size()) {
        return std::string_view::npos; // also keeps a null empty haystack from the C library
    }
    if (needle.size() <= kShortNeedle) {
        return haystack.find(needle, pos);
    }
    const char* const from = haystack.data() + pos;
    const void* found = ::memmem(from, haystack.size() - pos, needle.data(), needle.size());
    return found == nullptr
               ? std::string_view::npos
               : static_cast<std::size_t>(static_cast<const char*>(found) - haystack.data());
}

// The bytes of `text` before its first zero byte, reading at most `limit`
// bytes and none past that zero.
[[nodiscard]] inline std::string_view untilZero(const char* text, std::size_t limit) noexcept {
    return {text, limit == 0 ? 0 : ::strnlen(text, limit)};
}

// A set of up to a few byte values, found 16 bytes at a time (SSE2, which
// every x86-64 has) or one byte at a time elsewhere. The escapers and the
// order reader look for their few special bytes with it: in ordinary text
// those are rare, and testing 16 bytes per step is what makes a pass over a
// value cost little more than copying it.
template <std::size_t N> class ByteSet {
public:
    constexpr explicit ByteSet(const char (&bytes)[N + 1]) {
        for (std::size_t k = 0; k < N; ++k) {
            m_bytes[k] = bytes[k];
            m_member[static_cast<unsigned char>(bytes[k])] = true;
        }
    }

    [[nodiscard]] constexpr bool contains(char c) const noexcept {
        return m_member[static_cast<unsigned char>(c)];
    }

    // Bit k set when byte k of the kBlock bytes at `block` is in the set.
    static constexpr std::size_t kBlock = 16;
    [[nodiscard]] unsigned blockMask(const char* block) const noexcept {
#if defined(__SSE2__)
        return static_cast<unsigned>(
            _mm_movemask_epi8(matches(load(block), std::make_index_sequence<N>())));
#else
        unsigned mask = 0;
        for (std::size_t k = 0; k < kBlock; ++k) {
            mask |= static_cast<unsigned>(contains(block[k])) << k;
        }
        return mask;
#endif
    }

    // How many bytes of `text` are in the set.
    [[nodiscard]] std::size_t count(std::string_view text) const noexcept {
        std::size_t total = 0;
        std::size_t pos = 0;
#if defined(__SSE2__)
        // Each lane counts its matches (0xFF is -1) for up to 255 blocks,
        // then the lanes are summed.
        const __m128i zero = _mm_setzero_si128();
        while (pos + kBlock <= text.size()) {
            __m128i lanes = zero;
            for (std::size_t blocks = 0; blocks < 255 && pos + kBlock <= text.size();
                 ++blocks, pos += kBlock) {
                lanes = _mm_sub_epi8(
                    lanes, matches(load(text.data() + pos), std::make_index_sequence<N>()));
            }
            const __m128i sums = _mm_sad_epu8(lanes, zero);
            total += static_cast<std::size_t>(_mm_cvtsi128_si32(sums)) +
                     static_cast<std::size_t>(_mm_cvtsi128_si32(_mm_srli_si128(sums, 8)));
        }
#else
        for (; pos + kBlock <= text.size(); pos += kBlock) {
            total += static_cast<std::size_t>(std::popcount(blockMask(text.data() + pos)));
        }
#endif
        for (; pos < text.size(); ++pos) {
            total += contains(text[pos]) ? 1 : 0;
        }
        return total;
    }

    // Position of the first byte of `text` in the set at or after `pos`;
    // npos when there is none.
    [[nodiscard]] std::size_t find(std::string_view text, std::size_t pos = 0) const noexcept {
        const char* const data = text.data();
        const std::size_t size = text.size();
        for (; size >= kBlock && pos <= size - kBlock; pos += kBlock) {
            if (const unsigned mask = blockMask(data + pos); mask != 0) {
                return pos + static_cast<std::size_t>(std::countr_zero(mask));
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
#if defined(__SSE2__)
    static __m128i load(const char* block) noexcept {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(block)); // NOLINT
    }

    // 0xFF in each lane of `chunk` that holds a byte of the set.
    template <std::size_t... K>
    [[nodiscard]] __m128i matches(__m128i chunk,
                                  std::index_sequence<K...> /*bytes*/) const noexcept {
        __m128i hits = _mm_setzero_si128();
        ((hits = _mm_or_si128(hits, _mm_cmpeq_epi8(chunk, _mm_set1_epi8(m_bytes[K])))), ...);
        return hits;
    }
#endif

    std::array<char, N> m_bytes{};
    std::array<bool, 256> m_member{};
};

template <std::size_t M> ByteSet(const char (&)[M]) -> ByteSet<M - 1>;

} // namespace PQ_UTILS::internal

namespace PQ_UTILS::internal {

// How two views compare, whatever their type. A null start equals only
// another null start: the pointers are compared before the lengths.
[[nodiscard]] inline bool viewsDiffer(const char* start, std::uint64_t length,
                                      const char* otherStart, std::uint64_t otherLength) noexcept {
    if (start == nullptr) {
        return otherStart != nullptr;
    }
    if (otherStart == nullptr || length != otherLength) {
        return true;
    }
    return start != otherStart && length != 0 && std::memcmp(start, otherStart, length) != 0;
}

} // namespace PQ_UTILS::internal

namespace PQ_UTILS::internal {

// The order writer's escaping of a value ("=" -> "--equ--", "&" -> "--amp--",
// "//" -> "--dbsl--"; bytes after a zero byte copied as they are), appended
// to `out`: the same output as PQString::restorePQEntities. With
// `lineFeeds`, a line feed also becomes "--endl--" (as replace_pq would make
// it after the three others), for JSON text sent in an order.
// orderEscapedBound is a bound on the bytes appended: each special byte
// counted as growing by 7, the most any does ("=" and "&" grow by 6), so it
// is close for ordinary text. Counting is several times faster than
// escaping, and sizing the buffer this way spares a second walk.
// appendOrderEscaped needs the bound, and
// enlarges `out` by at most this much: a caller that reserves the sum of
// the bounds never has its text moved, and so never leaves a copy unwiped.
[[nodiscard]] std::size_t orderEscapedBound(std::string_view value,
                                            bool lineFeeds = false) noexcept;
void appendOrderEscaped(kstring& out, std::string_view value, std::size_t bound,
                        bool lineFeeds = false);
// The reader's unescaping of a value, appended to `out` in one pass: the
// same output as PQString::removePQEntities, that is "--equ--" restored
// first, then "--amp--", then "--dbsl--", each pass over the text the one
// before left, up to the first zero byte.
void appendOrderUnescaped(kstring& out, std::string_view value);

} // namespace PQ_UTILS::internal
