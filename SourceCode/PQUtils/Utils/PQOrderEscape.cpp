#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <vector>

#include "PQUtils/Utils/PQByteSearchInternal.h"
#include "PQUtils/Utils/PQByteSetInternal.h"
#include "PQUtils/Utils/PQOrderEscapeInternal.h"

namespace PQ_UTILS::internal {
namespace {

// The escaping of a value is one left-to-right walk over it, up to its
// first zero byte. The three passes of the sequential escaping (four with
// line feeds) give the same result: no token holds "=", "&", "/" or a line
// feed, so no pass makes or breaks a match of another.
//
// What a special byte becomes: its token, padded so that it is stored with
// one fixed-size copy, or itself for a lone "/".
struct Replacement {
    std::array<char, 8> text{};
    std::size_t size = 0;     // bytes of `text` that count
    std::size_t consumed = 0; // bytes of the value it stands for
};

constexpr Replacement replacementOf(std::string_view text, std::size_t consumed) {
    Replacement replacement;
    std::copy(text.begin(), text.end(), replacement.text.begin());
    replacement.size = text.size();
    replacement.consumed = consumed;
    return replacement;
}

constexpr Replacement kDoubleSlashReplacement = replacementOf(kDoubleSlash.token, 2);
constexpr std::array<Replacement, 256> kReplacementOf = [] {
    std::array<Replacement, 256> table{};
    for (const EscapeToken& row : {kEquals, kAmpersand, kLineFeed}) {
        table[static_cast<unsigned char>(row.character[0])] = replacementOf(row.token, 1);
    }
    table['/'] = replacementOf("/", 1);
    return table;
}();

constexpr ByteSet kOrderSpecials("=&/");
constexpr ByteSet kJsonOrderSpecials("=&/\n");

const Replacement& replacementAt(std::string_view searched, std::size_t i) {
    const bool pair = searched[i] == '/' && i + 1 < searched.size() && searched[i + 1] == '/';
    return pair ? kDoubleSlashReplacement : kReplacementOf[static_cast<unsigned char>(searched[i])];
}

// Writes the escaped form of `searched` to `out` and returns its size.
// Blocks are tested at a fixed stride, so finding the next special byte
// never waits on handling the one before, and bytes are stored a block at
// a time: each block where it goes if nothing in it is replaced, and after
// each replacement the block that follows it. An escaped text is never
// shorter than what is left to read of the value, so whole-block stores and
// padded tokens fit while 16 bytes are left; what they store past the
// current end is overwritten next.
template <class Specials>
std::size_t writeEscaped(std::string_view searched, const Specials& specials, char* out) {
    constexpr std::size_t kBlock = Specials::kBlock;
    const char* const in = searched.data();
    const std::size_t size = searched.size();
    std::size_t copied = 0;  // the bytes of `searched` before it are handled,
    std::size_t written = 0; // and their escaped form is this long
    // Stores the bytes from `from` (at or after `copied`) on, unchanged.
    const auto storeBlock = [&](std::size_t from) {
        char* const to = out + written + (from - copied);
        std::memcpy(to, in + from, kBlock);
    };
    const auto storeRest = [&](std::size_t from) {
        if (size - from >= kBlock) {
            storeBlock(from);
        } else {
            std::memcpy(out + written + (from - copied), in + from, size - from);
        }
    };
    const auto replace = [&](std::size_t at) {
        if (at < copied) {
            return; // the second "/" of a pair
        }
        const Replacement& replacement = replacementAt(searched, at);
        char* const to = out + written + (at - copied);
        if (size - at >= kBlock) {
            std::memcpy(to, replacement.text.data(), replacement.text.size());
        } else {
            std::memcpy(to, replacement.text.data(), replacement.size);
        }
        written += at - copied + replacement.size;
        copied = at + replacement.consumed;
        storeRest(copied);
    };
    std::size_t i = 0;
    for (; i + kBlock <= size; i += kBlock) {
        storeRest(std::max(i, copied));
        for (auto hits = specials.blockHits(in + i); !hits.empty(); hits.dropFirst()) {
            replace(i + hits.first());
        }
    }
    if (i < size) {
        storeRest(std::max(i, copied));
    }
    for (; i < size; ++i) {
        if (specials.contains(in[i])) {
            replace(i);
        }
    }
    return written + size - copied;
}

// Runs `walk` with the special bytes of the value's kind.
template <class Walk> auto withSpecials(bool lineFeeds, Walk walk) {
    return lineFeeds ? walk(kJsonOrderSpecials) : walk(kOrderSpecials);
}

// The reader's three passes in one walk. Every token starts and ends with
// "--" and holds no other "-", so two token texts overlap only when one
// starts at the last or last but one byte of the other: the overlapping
// ones form chains, and a pass's choice inside a chain is all that differs
// from restoring every token. A pass restores a token of its row unless a
// neighbour in the chain was restored by an earlier pass or, to its left, by
// this one; restored characters never form a token, so nothing else
// changes between passes.
struct TokenAt {
    std::size_t start;
    std::size_t row; // in kOrderEscapes
};

std::optional<TokenAt> orderTokenAt(std::string_view text, std::size_t pos) {
    for (std::size_t row = 0; row < kOrderEscapes.size(); ++row) {
        if (text.substr(pos, kOrderEscapes[row].token.size()) == kOrderEscapes[row].token) {
            return TokenAt{pos, row};
        }
    }
    return std::nullopt;
}

std::size_t tokenEnd(const TokenAt& token) {
    return token.start + kOrderEscapes[token.row].token.size();
}

// The token that overlaps the end of `token`, if any.
std::optional<TokenAt> overlappingToken(std::string_view text, const TokenAt& token) {
    const std::size_t end = tokenEnd(token);
    if (auto next = orderTokenAt(text, end - 2)) {
        return next;
    }
    return orderTokenAt(text, end - 1);
}

// Which tokens of a chain the three passes restore.
void chooseInChain(const std::vector<TokenAt>& chain, std::vector<bool>& restored) {
    restored.assign(chain.size(), false);
    for (std::size_t row = 0; row < kOrderEscapes.size(); ++row) {
        for (std::size_t i = 0; i < chain.size(); ++i) {
            if (chain[i].row == row) {
                restored[i] =
                    !(i > 0 && restored[i - 1]) && !(i + 1 < chain.size() && restored[i + 1]);
            }
        }
    }
}

constexpr ByteSet kDash("-");

} // namespace

void appendOrderUnescaped(kstring& out, std::string_view value) {
    const std::string_view searched = untilZero(value.data(), value.size());
    std::size_t copied = 0;
    const auto restore = [&](const TokenAt& token) {
        out.append(value.substr(copied, token.start - copied))
            .append(kOrderEscapes[token.row].character);
        copied = tokenEnd(token);
    };
    std::vector<TokenAt> chain;
    std::vector<bool> restored;
    for (std::size_t pos = kDash.find(searched); pos != std::string_view::npos;
         pos = kDash.find(searched, pos)) {
        const std::optional<TokenAt> first = orderTokenAt(searched, pos);
        if (!first) {
            ++pos;
            continue;
        }
        std::optional<TokenAt> next = overlappingToken(searched, *first);
        if (!next) { // alone, as nearly every token is
            restore(*first);
            pos = copied;
            continue;
        }
        chain.assign({*first, *next});
        while ((next = overlappingToken(searched, chain.back()))) {
            chain.push_back(*next);
        }
        chooseInChain(chain, restored);
        for (std::size_t i = 0; i < chain.size(); ++i) {
            if (restored[i]) {
                restore(chain[i]);
            }
        }
        pos = tokenEnd(chain.back());
    }
    out.append(value.substr(copied));
}

std::size_t orderEscapedBound(std::string_view value, bool lineFeeds) noexcept {
    // No special byte grows by more than kGrowth: "=" and "&" by 6, a line
    // feed by 7, each "/" of a pair by 3 (and a lone one by nothing).
    constexpr std::size_t kGrowth = 7;
    const std::string_view searched = untilZero(value.data(), value.size());
    return value.size() + kGrowth * withSpecials(lineFeeds, [&](const auto& specials) {
                              return specials.count(searched);
                          });
}

void appendOrderEscaped(kstring& out, std::string_view value, std::size_t bound, bool lineFeeds) {
    const std::string_view searched = untilZero(value.data(), value.size());
    const std::size_t start = out.size();
    out.resize(start + bound);
    char* const escaped = out.data() + start;
    const std::size_t written = withSpecials(
        lineFeeds, [&](const auto& specials) { return writeEscaped(searched, specials, escaped); });
    value.remove_prefix(searched.size());
    std::memcpy(escaped + written, value.data(), value.size());
    out.resize(start + written + value.size());
}

} // namespace PQ_UTILS::internal
