#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "PQUtils/Utils/PQBase64Internal.h"

#if (defined(__x86_64__) || defined(__i386__)) && (defined(__GNUC__) || defined(__clang__))
#include <immintrin.h>
#define PQ_BASE64_SSSE3 1
#elif defined(__aarch64__) && defined(__ARM_NEON)
#include <arm_neon.h>
#define PQ_BASE64_NEON 1
#endif

namespace PQ_UTILS::internal {
namespace {

// The standard alphabet: index 0 to 63 in a 6-bit group gives its character.
constexpr std::string_view kAlphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char kPad = '=';

// The two characters of each 12-bit half of a 3-byte group: one look-up
// writes two characters.
constexpr std::array<std::array<char, 2>, 4096> kPairs = [] {
    std::array<std::array<char, 2>, 4096> table{};
    for (std::size_t bits = 0; bits < table.size(); ++bits) {
        table[bits] = {kAlphabet[bits >> 6U], kAlphabet[bits & 0x3FU]};
    }
    return table;
}();

// The portable path, and the end of every other: whole groups by pairs,
// then the last one or two bytes with their padding.
void encodePortable(const unsigned char* in, std::size_t size, char* out) noexcept {
    std::size_t i = 0;
    for (; size - i >= 3; i += 3, out += 4) {
        const std::uint32_t group =
            std::uint32_t{in[i]} << 16U | std::uint32_t{in[i + 1]} << 8U | std::uint32_t{in[i + 2]};
        std::memcpy(out, kPairs[group >> 12U].data(), 2);
        std::memcpy(out + 2, kPairs[group & 0xFFFU].data(), 2);
    }
    const std::size_t rest = size - i;
    if (rest == 0) {
        return;
    }
    const std::uint32_t group =
        std::uint32_t{in[i]} << 16U | (rest == 2 ? std::uint32_t{in[i + 1]} << 8U : 0U);
    for (std::size_t k = 0; k < 4; ++k) {
        out[k] = k <= rest ? kAlphabet[(group >> (18 - 6 * k)) & 0x3FU] : kPad;
    }
}

#if defined(PQ_BASE64_SSSE3)
// 12 bytes in, 16 characters out per step. Each group of 3 bytes (a, b, c)
// is spread over a 32-bit lane as b a c b, where the four 6-bit indices
// sit at fixed places; two multiplications move them to one byte each, and
// the character is the index plus an offset that depends only on the range
// of the index (A-Z, a-z, 0-9, "+", "/"), looked up with a shuffle.
__attribute__((target("ssse3"))) std::size_t encodeSsse3(const unsigned char* in, std::size_t size,
                                                         char* out) noexcept {
    const __m128i spread = _mm_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10);
    // Offsets by range, indexed by the range number computed below: 0 for
    // a-z, 1 to 10 for 0-9, 11 for "+", 12 for "/", 13 for A-Z.
    const __m128i offsets =
        _mm_setr_epi8('a' - 26, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52,
                      '0' - 52, '0' - 52, '0' - 52, '0' - 52, '+' - 62, '/' - 63, 'A', 0, 0);
    std::size_t done = 0;
    // A load reads 16 bytes and uses 12.
    for (; size - done >= 16; done += 12, out += 16) {
        const __m128i bytes =
            _mm_loadu_si128(reinterpret_cast<const __m128i*>(in + done)); // NOLINT
        const __m128i lanes = _mm_shuffle_epi8(bytes, spread);
        // Indices 0 and 2 at the top of each 16-bit half, shifted down by
        // 10 and 6; indices 1 and 3 shifted up by 4 and 8.
        const __m128i high = _mm_mulhi_epu16(_mm_and_si128(lanes, _mm_set1_epi32(0x0FC0FC00)),
                                             _mm_set1_epi32(0x04000040));
        const __m128i low = _mm_mullo_epi16(_mm_and_si128(lanes, _mm_set1_epi32(0x003F03F0)),
                                            _mm_set1_epi32(0x01000010));
        const __m128i indices = _mm_or_si128(high, low);
        // 52 to 63 give 1 to 12, 26 to 51 give 0, below 26 gives 13.
        __m128i range = _mm_subs_epu8(indices, _mm_set1_epi8(51));
        const __m128i upper = _mm_cmpgt_epi8(_mm_set1_epi8(26), indices);
        range = _mm_or_si128(range, _mm_and_si128(upper, _mm_set1_epi8(13)));
        const __m128i text = _mm_add_epi8(indices, _mm_shuffle_epi8(offsets, range));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), text); // NOLINT
    }
    return done;
}

bool hasSsse3() noexcept {
    static const bool has = __builtin_cpu_supports("ssse3") != 0;
    return has;
}
#endif

#if defined(PQ_BASE64_NEON)
// 48 bytes in, 64 characters out per step: the loads split the bytes of
// each group into three vectors, the stores interleave the four indices,
// and one table look-up of the alphabet gives the characters.
std::size_t encodeNeon(const unsigned char* in, std::size_t size, char* out) noexcept {
    uint8x16x4_t alphabet;
    for (std::size_t k = 0; k < 4; ++k) {
        alphabet.val[k] =
            vld1q_u8(reinterpret_cast<const std::uint8_t*>(kAlphabet.data()) + // NOLINT
                     16 * k);
    }
    std::size_t done = 0;
    for (; size - done >= 48; done += 48, out += 64) {
        const uint8x16x3_t groups = vld3q_u8(in + done);
        const uint8x16_t a = groups.val[0];
        const uint8x16_t b = groups.val[1];
        const uint8x16_t c = groups.val[2];
        uint8x16x4_t indices;
        indices.val[0] = vshrq_n_u8(a, 2);
        indices.val[1] = vandq_u8(vorrq_u8(vshlq_n_u8(a, 4), vshrq_n_u8(b, 4)), vdupq_n_u8(0x3F));
        indices.val[2] = vandq_u8(vorrq_u8(vshlq_n_u8(b, 2), vshrq_n_u8(c, 6)), vdupq_n_u8(0x3F));
        indices.val[3] = vandq_u8(c, vdupq_n_u8(0x3F));
        uint8x16x4_t text;
        for (std::size_t k = 0; k < 4; ++k) {
            text.val[k] = vqtbl4q_u8(alphabet, indices.val[k]);
        }
        vst4q_u8(reinterpret_cast<std::uint8_t*>(out), text); // NOLINT
    }
    return done;
}
#endif

constexpr std::array kAllPaths {
    Base64Path::portable,
#if defined(PQ_BASE64_SSSE3)
        Base64Path::ssse3,
#elif defined(PQ_BASE64_NEON)
        Base64Path::neon,
#endif
};

} // namespace

std::span<const Base64Path> base64Paths() noexcept {
#if defined(PQ_BASE64_SSSE3)
    if (!hasSsse3()) {
        return std::span(kAllPaths).first(1);
    }
#endif
    return kAllPaths;
}

Base64Path bestBase64Path() noexcept { return base64Paths().back(); }

void encodeBase64(const unsigned char* in, std::size_t size, char* out, Base64Path path) noexcept {
    std::size_t done = 0;
    switch (path) {
#if defined(PQ_BASE64_SSSE3)
    case Base64Path::ssse3:
        done = encodeSsse3(in, size, out);
        break;
#elif defined(PQ_BASE64_NEON)
    case Base64Path::neon:
        done = encodeNeon(in, size, out);
        break;
#endif
    default:
        break;
    }
    encodePortable(in + done, size - done, out + done / 3 * 4);
}

} // namespace PQ_UTILS::internal
