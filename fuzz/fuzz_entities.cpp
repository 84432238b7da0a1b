// The order-text escapes keep their sequential meaning: each is its three
// replacements made one after the other over the text up to its first zero
// byte. A value with no "-" nor letter of a token word comes back as it was
// (others need not: "&equ=" is written "--amp--equ--equ--", read "--amp=equ--").

#include <array>
#include <utility>

#include "PQFuzz.h"
#include "PQUtils/Utils/PQString.h"

namespace {

using Pass = std::pair<std::string_view, std::string_view>;

std::string sequentially(const std::string& text, const std::array<Pass, 3>& passes) {
    const std::size_t zero = std::min(text.find('\0'), text.size());
    std::string head = text.substr(0, zero);
    for (const auto& [from, to] : passes) {
        std::string next;
        std::size_t start = 0;
        for (std::size_t found = head.find(from); found != std::string::npos;
             found = head.find(from, start)) {
            next.append(head, start, found - start).append(to);
            start = found + from.size();
        }
        head = next.append(head, start);
    }
    return head.append(text, zero);
}

constexpr std::array<Pass, 3> kWriter{{{"=", "--equ--"}, {"&", "--amp--"}, {"//", "--dbsl--"}}};
constexpr std::array<Pass, 3> kReader{{{"--equ--", "="}, {"--amp--", "&"}, {"--dbsl--", "//"}}};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using PQ_UTILS::PQString;
    pqfuzz::startLibrary();
    const std::string value = pqfuzz::textOf(data, size);
    pqfuzz::check(*PQString::removePQEntities(value) == sequentially(value, kReader),
                  "unescaping is its three passes");
    const std::string escaped = *PQString::restorePQEntities(value);
    pqfuzz::check(escaped == sequentially(value, kWriter), "escaping is its three passes");
    if (value.find_first_of(std::string_view("-equampdbsl\0", 12)) == std::string::npos) {
        pqfuzz::check(*PQString::removePQEntities(escaped) == value, "escaping is undone");
    }
    return 0;
}
