#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "PQUtils/Utils/PQFailure.h"
#include "PQUtils/Utils/PQString.h"

namespace PQ_UTILS {
namespace {

constexpr const char* pqSourceFile = "CppLibrairies/SourceCode/PQUtils/Utils/PQString";

// The standard alphabet: index 0 to 63 in a 6-bit group gives its character.
constexpr std::string_view base64_chars =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char kBase64Pad = '=';

// The cipher key. Every reader of the cipher's output shares it, so it never
// changes. Only its first 199 bytes are used: the key repeats every
// ks.size() - 1 bytes, and readers depend on that period.
constexpr std::string_view ks =
    "M0XvqZjxTW3xvboSRt5Mh3dAwVtRMflhbmuaptt0Azn0DNRUQxA71p2Td8VKqxryo1"
    "nIj7BRd03Q2ybv097SHzxgQA6TCvY4dhKMlRdZQ9QsTXUuSnH6av1Ib8pp1xxXHU0"
    "BScJXj675eVq30XYqaNUDqN9Nifp28uwCDydesokF5NSAllsNdV40J599dTCZWZYvRSZe";
constexpr std::uint32_t kKeyPeriod = ks.size() - 1;

constexpr bool isAsciiAlnum(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}
static_assert(ks.size() == 200 && std::all_of(ks.begin(), ks.end(), isAsciiAlnum),
              "the key is 200 ASCII letters and digits");

// The two characters of each 12-bit half of a 3-byte group: one look-up
// writes two characters.
constexpr std::array<std::array<char, 2>, 4096> kBase64Pairs = [] {
    std::array<std::array<char, 2>, 4096> table{};
    for (std::size_t bits = 0; bits < table.size(); ++bits) {
        table[bits] = {base64_chars[bits >> 6U], base64_chars[bits & 0x3FU]};
    }
    return table;
}();

// Writes the Base64 of a group of `bytes` (1 to 3) bytes packed big-endian
// in the low 24 bits of `group`, the missing ones zero: bytes + 1 characters,
// then the pad up to four.
char* writeGroup(char* out, std::uint32_t group, std::size_t bytes) {
    for (std::size_t k = 0; k < 4; ++k) {
        out[k] = k <= bytes ? base64_chars[(group >> (18 - 6 * k)) & 0x3FU] : kBase64Pad;
    }
    return out + 4;
}

// The cipher key repeated to a whole number of 8-byte words, so that it is
// applied a word at a time and each repetition starts the key afresh.
constexpr std::size_t kKeyStreamSize = std::size_t{8} * kKeyPeriod;
constexpr std::array<char, kKeyStreamSize> kKeyStream = [] {
    std::array<char, kKeyStreamSize> stream{};
    for (std::size_t i = 0; i < stream.size(); ++i) {
        stream[i] = ks[i % kKeyPeriod];
    }
    return stream;
}();

// bytes[i] ^= key[i] for i < size (at most kKeyStream.size()).
void xorWithKeyStream(char* bytes, std::size_t size) {
    std::size_t i = 0;
    for (; i + 8 <= size; i += 8) {
        std::uint64_t word = 0;
        std::uint64_t key = 0;
        std::memcpy(&word, bytes + i, 8);
        std::memcpy(&key, kKeyStream.data() + i, 8);
        word ^= key;
        std::memcpy(bytes + i, &word, 8);
    }
    for (; i < size; ++i) {
        bytes[i] = static_cast<char>(bytes[i] ^ kKeyStream[i]);
    }
}

} // namespace

std::unique_ptr<kstring> PQString::toBase64(const kstring& data, unsigned long length) try {
    PQ_ASSERT(length <= data.size());
    auto result = std::make_unique<kstring>((length + 2) / 3 * 4, '\0');
    const auto byteAt = [&data](std::size_t i) -> std::uint32_t {
        return static_cast<unsigned char>(data[i]);
    };
    char* out = result->data();
    std::size_t i = 0;
    for (; length - i >= 3; i += 3, out += 4) {
        const std::uint32_t group = byteAt(i) << 16U | byteAt(i + 1) << 8U | byteAt(i + 2);
        std::memcpy(out, kBase64Pairs[group >> 12U].data(), 2);
        std::memcpy(out + 2, kBase64Pairs[group & 0xFFFU].data(), 2);
    }
    if (const std::size_t rest = length - i; rest == 2) {
        writeGroup(out, byteAt(i) << 16U | byteAt(i + 1) << 8U, 2);
    } else if (rest == 1) {
        writeGroup(out, byteAt(i) << 16U, 1);
    }
    return result;
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::simpleCipher(const kstring& data) try {
    auto result = std::make_unique<kstring>(data);
    char* const bytes = result->data();
    // The position is counted on 32 bits, as every reader of the output
    // does: the key restarts at each multiple of 2^32 as well as of 199.
    // Counted on 64 bits, since a size_t has only 32 in WebAssembly.
    constexpr std::uint64_t kWrap = std::uint64_t{1} << 32U;
    const std::uint64_t size = result->size();
    for (std::uint64_t block = 0; block < size; block += kWrap) {
        const auto blockEnd = static_cast<std::size_t>(std::min(size, block + kWrap));
        for (auto i = static_cast<std::size_t>(block); i < blockEnd; i += kKeyStream.size()) {
            xorWithKeyStream(bytes + i, std::min(kKeyStream.size(), blockEnd - i));
        }
    }
    return result;
}
PQ_CATCH_AND_TREAT

} // namespace PQ_UTILS
