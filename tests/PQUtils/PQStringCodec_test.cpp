#include <algorithm>
#include <cctype>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "PQUtils/Utils/PQString.h"
#include "support/TestSupport.h"

using PQ_UTILS::PQString;

namespace {

// Decodes padded Base64 by looking each character up in the alphabet.
std::string decodeBase64(std::string_view encoded) {
    constexpr std::string_view alphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string decoded;
    unsigned bits = 0;
    unsigned pending = 0;
    for (const char c : encoded.substr(0, encoded.find('='))) {
        bits = bits << 6U | static_cast<unsigned>(alphabet.find(c));
        if ((pending += 6) >= 8) {
            pending -= 8;
            decoded.push_back(static_cast<char>(bits >> pending));
        }
    }
    return decoded;
}

std::string randomBytes(std::mt19937& engine, std::size_t size) {
    std::string out(size, '\0');
    std::generate(out.begin(), out.end(), [&] { return static_cast<char>(engine()); });
    return out;
}

} // namespace

TEST(PQStringCodec, Base64) {
    const struct {
        std::string data, expected;
    } rows[] = {// The RFC vectors run on every encoder path in PQBase64_test; here,
                // the public call on bytes that a zero-terminated copy would lose.
                {"", ""},
                {"foobar", "Zm9vYmFy"},
                {std::string("\0\xFF\x80", 3), "AP+A"},
                {"\xFB\xFF", "+/8="}};
    for (const auto& row : rows) {
        EXPECT_EQ(*PQString::toBase64(row.data, row.data.size()), row.expected) << row.expected;
    }
    EXPECT_EQ(*PQString::toBase64("Man", 2), "TWE="); // only `length` bytes
    EXPECT_EQ(*PQString::toBase64("Man", 0), "");

    std::mt19937 engine(7);
    for (const std::size_t size : {1U, 2U, 3U, 4U, 5U, 64U, 1000U}) {
        const std::string data = randomBytes(engine, size);
        const std::string encoded = *PQString::toBase64(data, size);
        EXPECT_EQ(encoded.size(), (size + 2) / 3 * 4);
        EXPECT_EQ(decodeBase64(encoded), data) << size;
    }
    const pqtest::LogCapture log;
    EXPECT_EQ(pqtest::messageOf([] { (void)PQString::toBase64("ab", 3); }),
              "length <= data.size() should be true");
}

TEST(PQStringCodec, CipherIsItsOwnInverseWithAKeyOf199Alnums) {
    EXPECT_EQ(*PQString::simpleCipher(""), "");
    std::mt19937 engine(11);
    for (const std::size_t size : {1U, 199U, 200U, 1000U}) {
        std::string data = randomBytes(engine, size);
        data[size / 2] = '\0';
        const std::string ciphered = *PQString::simpleCipher(data);
        EXPECT_EQ(ciphered.size(), size);
        EXPECT_EQ(*PQString::simpleCipher(ciphered), data) << size;
    }

    // XOR with zero bytes shows the key.
    const std::string key = *PQString::simpleCipher(std::string(4000, '\0'));
    EXPECT_TRUE(std::all_of(key.begin(), key.end(),
                            [](char c) { return std::isalnum(static_cast<unsigned char>(c)); }));
    EXPECT_EQ(key.substr(199), key.substr(0, key.size() - 199)); // period 199 all along
    EXPECT_NE(key.find_first_not_of(key[0]), std::string::npos);
    const std::string equal = *PQString::simpleCipher(std::string(200, 'x'));
    EXPECT_EQ(equal[199], equal[0]);
    // A byte equal to its key byte becomes a zero byte, which stays.
    EXPECT_EQ(PQString::simpleCipher(key.substr(0, 3) + "ab")->substr(0, 3), std::string(3, '\0'));
}
