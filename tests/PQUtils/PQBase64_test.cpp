// Base64 on every path that runs here (the vector one of this processor,
// if any, and the portable one): the same characters for the same bytes.

#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "PQUtils/Utils/PQBase64Internal.h"

using PQ_UTILS::internal::Base64Path;
using PQ_UTILS::internal::base64Paths;
using PQ_UTILS::internal::encodeBase64;

namespace {

std::string encodedBy(Base64Path path, std::string_view bytes) {
    // Room past the end, filled, shows a path that writes too far.
    std::string out((bytes.size() + 2) / 3 * 4 + 64, '#');
    encodeBase64(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(), // NOLINT
                 out.data(), path);
    EXPECT_EQ(out.substr((bytes.size() + 2) / 3 * 4), std::string(64, '#'));
    out.resize((bytes.size() + 2) / 3 * 4);
    return out;
}

const char* nameOf(Base64Path path) {
    switch (path) {
    case Base64Path::portable:
        return "portable";
    case Base64Path::ssse3:
        return "ssse3";
    case Base64Path::neon:
        return "neon";
    }
    return "?";
}

TEST(PQBase64, PortablePathAlwaysRuns) {
    ASSERT_FALSE(base64Paths().empty());
    EXPECT_EQ(base64Paths().front(), Base64Path::portable);
    EXPECT_EQ(PQ_UTILS::internal::bestBase64Path(), base64Paths().back());
}

TEST(PQBase64, EveryPathGivesTheKnownEncodings) {
    // RFC 4648's vectors, one per padding, and long runs that reach the
    // vector loops with every character of the alphabet.
    std::string every;
    for (int k = 0; k < 48 * 4; ++k) {
        every += static_cast<char>((k * 0x41) & 0xFF);
    }
    const struct {
        std::string bytes;
        std::string_view expected;
    } rows[] = {{"", ""},
                {"f", "Zg=="},
                {"fo", "Zm8="},
                {"foo", "Zm9v"},
                {"foob", "Zm9vYg=="},
                {"fooba", "Zm9vYmE="},
                {"foobar", "Zm9vYmFy"},
                {std::string(48, '\xFF'), std::string_view("////////////////////////////////"
                                                           "////////////////////////////////")},
                {std::string(49, '\0'), std::string_view("AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA"
                                                         "AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA==")}};
    for (const Base64Path path : base64Paths()) {
        SCOPED_TRACE(nameOf(path));
        for (const auto& row : rows) {
            EXPECT_EQ(encodedBy(path, row.bytes), row.expected);
        }
        EXPECT_EQ(encodedBy(path, every), encodedBy(Base64Path::portable, every));
    }
}

TEST(PQBase64, EveryPathMatchesThePortableOneOnRandomBytes) {
    std::mt19937 random(11);
    std::string buffer;
    const auto check = [&](std::size_t size, std::size_t align) {
        buffer.resize(align + size);
        for (char& byte : buffer) {
            byte = static_cast<char>(random());
        }
        const std::string_view bytes = std::string_view(buffer).substr(align);
        const std::string expected = encodedBy(Base64Path::portable, bytes);
        for (const Base64Path path : base64Paths()) {
            ASSERT_EQ(encodedBy(path, bytes), expected)
                << nameOf(path) << ", size " << size << ", alignment " << align;
        }
    };
    for (std::size_t size = 0; size <= 200; ++size) {
        for (std::size_t align = 0; align < 16; align += 5) {
            check(size, align);
        }
    }
    for (const std::size_t size : {4096U, 65537U, 1U << 20U}) {
        check(size, 3);
    }
}

} // namespace
