#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "PQUtils/Utils/PQBase64Internal.h"
#include "PQUtils/Utils/PQFailure.h"
#include "PQUtils/Utils/PQString.h"

namespace PQ_UTILS {
namespace {

constexpr const char* pqSourceFile = "CppLibrairies/SourceCode/PQUtils/Utils/PQString";

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
    static const internal::Base64Path path = internal::bestBase64Path();
    internal::encodeBase64(reinterpret_cast<const unsigned char*>(data.data()), // NOLINT
                           length, result->data(), path);
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
