// Reading back the string values that the JSON text writer escaped.

#include <algorithm>
#include <array>
#include <cstring>

#include "PQUtils/Orders/Json/PQJsonInternal.h"
#include "PQUtils/Utils/PQByteSetInternal.h"
#include "PQUtils/Utils/PQSecureMemory.h"

namespace PQ_UTILS {
namespace {

// For each byte after a backslash, the byte that the two stand for (0 when
// they are no escape). The backslash's own row is left out: runs of
// backslashes pair up apart.
constexpr std::array<char, 256> kUnescaped = [] {
    std::array<char, 256> table{};
    for (const internal::JsonEscape& row : internal::kJsonEscapes) {
        if (row.raw != '\\') {
            table[static_cast<unsigned char>(row.escaped[1])] = row.raw;
        }
    }
    return table;
}();

constexpr internal::ByteSet kBackslash("\\");

} // namespace

PQSecuredString internal::unescapedJson(std::string_view text) {
    // Never longer than the text: written into room made once.
    PQWipedString result;
    kstring& out = result.get();
    out.resize(text.size());
    char* to = out.data();
    const auto copyPlain = [&to, text](std::size_t from, std::size_t count) {
        if (count != 0) {
            std::memcpy(to, text.data() + from, count);
            to += count;
        }
    };
    std::size_t from = 0;
    for (std::size_t at = kBackslash.find(text); at != std::string_view::npos;
         at = kBackslash.find(text, from)) {
        copyPlain(from, at - from);
        for (from = at + 1; from < text.size() && text[from] == '\\';) {
            ++from;
        }
        // The last backslash of the run goes with the byte after it when the
        // two are an escape; the others pair up, a lone last one kept.
        const char escaped =
            from < text.size() ? kUnescaped[static_cast<unsigned char>(text[from])] : '\0';
        const std::size_t paired = from - at - (escaped != '\0' ? 1 : 0);
        to = std::fill_n(to, (paired + 1) / 2, '\\');
        if (escaped != '\0') {
            *to++ = escaped;
            ++from;
        }
    }
    copyPlain(from, text.size() - from);
    out.resize(static_cast<std::size_t>(to - out.data()));
    return PQSecuredString(std::move(out));
}

} // namespace PQ_UTILS
