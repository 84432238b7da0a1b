#include "PQUtils/Utils/PQString.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <optional>
#include <string_view>
#include <vector>

#include "PQUtils/Utils/PQFailure.h"
#include "PQUtils/Utils/PQSecureMemory.h"
#include "PQUtils/Utils/PQStringInternal.h"

namespace PQ_UTILS {
namespace {

constexpr const char* pqSourceFile = "CppLibrairies/SourceCode/PQUtils/Utils/PQString";

constexpr const char* kEmptySearchRefused = " L\"\" is not permitted";

using internal::findBytes;
using internal::untilZero;

// A character text of order text and the token that stands for it inside a
// value.
struct EscapeToken {
    std::string_view character;
    std::string_view token;
};

constexpr EscapeToken kDoubleSlash{"//", "--dbsl--"};
constexpr EscapeToken kEquals{"=", "--equ--"};
constexpr EscapeToken kAmpersand{"&", "--amp--"};
constexpr EscapeToken kDoublePoint{":", "--dblpt--"};
constexpr EscapeToken kArobase{"@", "--arob--"};
// Only for JSON text sent in an order.
constexpr EscapeToken kLineFeed{"\n", "--endl--"};

// The order writer's escapes, applied in this order (the reader undoes them
// in the same order).
constexpr std::array<EscapeToken, 3> kOrderEscapes{kEquals, kAmpersand, kDoubleSlash};

// Appends `source` to `out` with each match of `from` (searched in
// `searched`, a prefix of `source`) replaced by `to`, left to right, never
// rescanning inserted text. `from` must not be empty.
void appendReplaced(kstring& out, std::string_view source, std::string_view searched,
                    std::string_view from, std::string_view to, bool onlyFirst) {
    std::size_t copied = 0;
    for (std::size_t match = findBytes(searched, from); match != std::string_view::npos;
         match = findBytes(searched, from, copied)) {
        out.append(source.substr(copied, match - copied)).append(to);
        copied = match + from.size();
        if (onlyFirst) {
            break;
        }
    }
    out.append(source.substr(copied));
}

// The replacement behind replace_pq and the token functions: source and
// `from` read as zero-terminated texts, the remainder copied whole.
std::unique_ptr<kstring> replaceZeroTerminated(const kstring& source, std::string_view from,
                                               std::string_view to, bool onlyFirst) {
    auto result = std::make_unique<kstring>();
    const std::string_view needle = untilZero(from.data(), from.size());
    if (needle.empty()) {
        result->assign(source);
        return result;
    }
    result->reserve(source.size());
    appendReplaced(*result, source, untilZero(source.c_str(), source.size()), needle, to,
                   onlyFirst);
    return result;
}

std::unique_ptr<kstring> escape(const kstring& text, const EscapeToken& row) {
    return replaceZeroTerminated(text, row.character, row.token, false);
}

std::unique_ptr<kstring> unescape(const kstring& text, const EscapeToken& row) {
    return replaceZeroTerminated(text, row.token, row.character, false);
}

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

constexpr internal::ByteSet kOrderSpecials("=&/");
constexpr internal::ByteSet kJsonOrderSpecials("=&/\n");

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

constexpr internal::ByteSet kDash("-");

} // namespace

void internal::appendOrderUnescaped(kstring& out, std::string_view value) {
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

std::size_t internal::orderEscapedBound(std::string_view value, bool lineFeeds) noexcept {
    // No special byte grows by more than kGrowth: "=" and "&" by 6, a line
    // feed by 7, each "/" of a pair by 3 (and a lone one by nothing).
    constexpr std::size_t kGrowth = 7;
    const std::string_view searched = untilZero(value.data(), value.size());
    return value.size() + kGrowth * withSpecials(lineFeeds, [&](const auto& specials) {
                              return specials.count(searched);
                          });
}

void internal::appendOrderEscaped(kstring& out, std::string_view value, std::size_t bound,
                                  bool lineFeeds) {
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

void PQString::initialyze_public() {
    m_sEmptyString.clear();
    m_sEmptyVector.clear();
}

std::size_t PQString::charFind(const char* haystack, const char* needle, std::size_t length) try {
    PQ_CHECK_NULL(haystack);
    PQ_CHECK_NULL(needle);
    if (length == 0) {
        return kstring::npos;
    }
    // A match starts before `length`, so no byte from length - 1 + the
    // needle's length on can belong to one: the search never reads further.
    const std::string_view wanted(needle);
    const std::size_t reach = length - 1 + std::min(wanted.size(), kstring::npos - length);
    const std::size_t found = findBytes(untilZero(haystack, reach), wanted);
    return found < length ? found : kstring::npos;
}
PQ_CATCH_AND_TREAT

std::size_t PQString::charFind_ns(const char* haystack, const char* needle,
                                  std::size_t length) try {
    PQ_CHECK_NULL(haystack);
    PQ_CHECK_NULL(needle);
    // Reading no further than `length` is the same as ending the text there.
    return findBytes(untilZero(haystack, length), needle);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::replace_pq(const kstring& source, const kstring& from,
                                              const kstring& to, bool onlyFirst) try {
    PQ_REQUIRE(!from.empty(), kEmptySearchRefused);
    return replaceZeroTerminated(source, from, to, onlyFirst);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::replace_pq_new(const kstring& source, const kstring& from,
                                                  const kstring& to, bool onlyFirst) try {
    PQ_REQUIRE(!from.empty(), kEmptySearchRefused);
    auto result = std::make_unique<kstring>();
    result->reserve(source.size());
    appendReplaced(*result, source, source, from, to, onlyFirst);
    return result;
}
PQ_CATCH_AND_TREAT

void PQString::self_replace(kstring& text, const kstring& from, const kstring& to) try {
    if (from.empty() || findBytes(text, from) == kstring::npos) {
        return;
    }
    kstring replaced;
    replaced.reserve(text.size());
    appendReplaced(replaced, text, text, from, to, false);
    text.swap(replaced);
    secureWipe(replaced); // the text may be a secret
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::removeDbleSlashes(const kstring& text) try {
    return escape(text, kDoubleSlash);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::restoreDbleSlashes(const kstring& text) try {
    return unescape(text, kDoubleSlash);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::removeEquals(const kstring& text) try {
    return escape(text, kEquals);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::restoreEquals(const kstring& text) try {
    return unescape(text, kEquals);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::removeAmpersand(const kstring& text) try {
    return escape(text, kAmpersand);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::restoreAmpersand(const kstring& text) try {
    return unescape(text, kAmpersand);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::removeDblePoints(const kstring& text) try {
    return escape(text, kDoublePoint);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::restoreDblePoints(const kstring& text) try {
    return unescape(text, kDoublePoint);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::removeArobase(const kstring& text) try {
    return escape(text, kArobase);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::restoreArobase(const kstring& text) try {
    return unescape(text, kArobase);
}
PQ_CATCH_AND_TREAT

void PQString::removeArobase(std::vector<kstring>* list) try {
    PQ_CHECK_NULL_MESSAGE(list, "Vector is NULL");
    for (kstring& element : *list) {
        element = std::move(*escape(element, kArobase));
    }
}
PQ_CATCH_AND_TREAT

void PQString::restoreArobase(std::vector<kstring>* list) try {
    PQ_CHECK_NULL_MESSAGE(list, "Vector is NULL");
    for (kstring& element : *list) {
        element = std::move(*unescape(element, kArobase));
    }
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::restorePQEntities(const kstring& text) try {
    auto result = std::make_unique<kstring>();
    internal::appendOrderEscaped(*result, text, internal::orderEscapedBound(text));
    return result;
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::removePQEntities(const kstring& text) try {
    auto result = std::make_unique<kstring>();
    result->reserve(text.size()); // restoring only shortens
    internal::appendOrderUnescaped(*result, text);
    return result;
}
PQ_CATCH_AND_TREAT

kstring PQString::restorePQEntities_2(kstring text) try {
    for (const EscapeToken& row : kOrderEscapes) {
        self_replace(text, kstring(row.character), kstring(row.token));
    }
    return text;
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::escapeDoubleQuotes(const kstring& text) try {
    return replaceZeroTerminated(text, "\"", "\\\"", false);
}
PQ_CATCH_AND_TREAT

std::unique_ptr<kstring> PQString::unescapeValueFromCSV(const kstring& text) try {
    // The three pairs, each read once, left to right.
    struct Pair {
        std::string_view escaped;
        char plain;
    };
    constexpr std::array<Pair, 3> pairs{{{"\r\n", '\n'}, {"\"\"", '"'}, {"\\/", '/'}}};
    auto result = std::make_unique<kstring>();
    result->reserve(text.size());
    const std::string_view rest(text);
    for (std::size_t i = 0; i < rest.size();) {
        const auto pair = std::find_if(pairs.begin(), pairs.end(), [&](const Pair& candidate) {
            return rest.substr(i, candidate.escaped.size()) == candidate.escaped;
        });
        if (pair != pairs.end()) {
            result->push_back(pair->plain);
            i += pair->escaped.size();
        } else {
            result->push_back(rest[i]);
            ++i;
        }
    }
    return result;
}
PQ_CATCH_AND_TREAT

} // namespace PQ_UTILS
