// Base64 against a decoder written here from the alphabet, and the cipher,
// which is its own inverse.

#include <array>

#include "PQFuzz.h"
#include "PQUtils/Utils/PQString.h"

namespace {

std::string decode(const std::string& text) {
    static const std::string kAlphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bytes;
    unsigned int bits = 0;
    int count = 0;
    for (const char c : text) {
        if (c == '=') {
            break;
        }
        const std::size_t value = kAlphabet.find(c);
        pqfuzz::check(value != std::string::npos, "only the alphabet and padding");
        bits = (bits << 6U) | static_cast<unsigned int>(value);
        count += 6;
        if (count >= 8) {
            count -= 8;
            bytes.push_back(static_cast<char>((bits >> static_cast<unsigned int>(count)) & 0xFFU));
        }
    }
    return bytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using PQ_UTILS::PQString;
    pqfuzz::startLibrary();
    const std::string text = pqfuzz::textOf(data, size);
    const std::string encoded = *PQString::toBase64(text, text.size());
    pqfuzz::check(encoded.size() == (text.size() + 2) / 3 * 4, "four characters per three bytes");
    pqfuzz::check(decode(encoded) == text, "decodes to the bytes");
    pqfuzz::check(*PQString::simpleCipher(*PQString::simpleCipher(text)) == text,
                  "the cipher undoes itself");
    return 0;
}
