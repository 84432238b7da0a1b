#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>
#include <type_traits>
#include <vector>

#include "PQUtils/Utils/PQByteSetInternal.h"
#include "PQUtils/Utils/PQOrderEscapeInternal.h"
#include "PQUtils/Utils/PQSecureMemory.h"

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

// Written so as to compile to selects: whether a "/" is paired is as
// unpredictable as the text.
const Replacement& replacementAt(std::string_view value, std::size_t i) {
    const char next = i + 1 < value.size() ? value[i + 1] : '\0';
    const bool pair = (value[i] == '/') & (next == '/');
    const Replacement* const single = &kReplacementOf[static_cast<unsigned char>(value[i])];
    return *(pair ? &kDoubleSlashReplacement : single);
}

// The bytes the bound counts, and the bytes the walk stops at: those and
// the zero byte, after which a value is copied as it is.
constexpr ByteSet kOrderSpecials("=&/");
constexpr ByteSet kJsonOrderSpecials("=&/\n");
constexpr ByteSet kOrderStops("=&/\0");
constexpr ByteSet kJsonOrderStops("=&/\n\0");

// Where the walks write: tokens and short runs go to a small buffer with
// fixed-size copies, long runs straight from the value, and the buffer is
// appended when nearly full. So the output is written once, with no
// pre-filled room to overwrite and no pass to size it. The buffer holds
// value text, which may be secret: the part of it that was used is wiped.
class StagedOutput {
public:
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): see m_buffer
    explicit StagedOutput(kstring& out) noexcept : m_out(out) {}
    StagedOutput(const StagedOutput&) = delete;
    StagedOutput& operator=(const StagedOutput&) = delete;
    ~StagedOutput() { secureWipe(m_buffer.data(), std::min(m_reached, m_buffer.size())); }

    // When 64 bytes from `from` and 15 past the run can be read
    // (`readAhead`), a short run is copied in 16-byte pieces, the first four
    // always, so that most runs take no branch on their length; what is
    // stored past the run is overwritten next.
    void run(const char* from, std::size_t size, bool readAhead) {
        if (!readAhead || size > kDirect || m_used + size > kRoom) {
            runExactly(from, size);
            return;
        }
        char* const to = m_buffer.data() + m_used;
        std::memcpy(to, from, kAlways);
        for (std::size_t k = kAlways; k < size; k += kChunk) {
            std::memcpy(to + k, from + k, kChunk);
        }
        m_used += size;
        m_reached = std::max(m_reached, m_used + kAlways);
    }
    void runExactly(const char* from, std::size_t size) {
        if (size > kDirect) {
            flush();
            appendWiped(m_out, {from, size});
            return;
        }
        if (m_used + size > kRoom) {
            flush();
        }
        std::memcpy(m_buffer.data() + m_used, from, size);
        m_used += size;
        m_reached = std::max(m_reached, m_used);
    }
    // The first `size` bytes of `padded` (stored whole, the rest overwritten
    // next).
    void token(const std::array<char, 8>& padded, std::size_t size) {
        if (m_used + padded.size() > kRoom) {
            flush();
        }
        std::memcpy(m_buffer.data() + m_used, padded.data(), padded.size());
        m_used += size;
        m_reached = std::max(m_reached, m_used + padded.size());
    }
    void flush() {
        appendWiped(m_out, {m_buffer.data(), m_used});
        m_used = 0;
    }

private:
    static constexpr std::size_t kRoom = 2048;
    static constexpr std::size_t kDirect = 128; // a longer run skips the buffer
    static constexpr std::size_t kChunk = 16;
    static constexpr std::size_t kAlways = 64; // copied of every run read ahead
    kstring& m_out;
    // Left unfilled: only what was written is read, appended or wiped.
    std::array<char, kRoom + kAlways> m_buffer;
    std::size_t m_used = 0;
    std::size_t m_reached = 0; // wiped on the way out
};

// How both walks go over a value: clean groups passed over by the scanner,
// each block of a group that holds a byte of `stops` given to `onBlock`, the
// bytes after the last whole block to `onByte` (either returns false to
// stop). Clean text is skipped in stretches of kStretch bytes, and
// `onClean` told where each ends, so that it is copied while it is still
// in the first-level cache rather than read again from further away.
inline constexpr std::size_t kStretch = 4096;

template <BlockPath Path, class Stops, class OnBlock, class OnByte, class OnClean>
void walkStops(const Stops& stops, std::string_view value, OnBlock onBlock, OnByte onByte,
               OnClean onClean) {
    constexpr std::size_t kBlock = Stops::kBlock;
    constexpr std::size_t kGroup = Stops::kGroup;
    static_assert(kStretch % kGroup == 0);
    const char* const in = value.data();
    const std::size_t size = value.size();
    bool open = true;
    std::size_t i = 0;
    while (open && size >= kGroup && i <= size - kGroup) {
        const std::size_t end = size - i > kStretch ? i + kStretch : size;
        i = stops.template skipClean<Path>(in, i, end);
        if (end - i < kGroup) { // clean to the end of the stretch
            if (end == size) {
                break;
            }
            onClean(i);
            continue;
        }
        for (std::size_t block = i; open && block < i + kGroup; block += kBlock) {
            open = onBlock(block);
        }
        i += kGroup;
    }
    for (; open && size >= kBlock && i <= size - kBlock; i += kBlock) {
        open = onBlock(i);
    }
    for (; open && i < size; ++i) {
        if (stops.contains(in[i])) {
            open = onByte(i);
        }
    }
}

// Writes the escaped form of `value` up to its first zero byte, and the
// rest as it is. Groups of four blocks are tested at once and skipped when
// clean: their bytes go out with the run they belong to.
template <BlockPath Path, class Stops>
void writeEscaped(std::string_view value, const Stops& stops, StagedOutput& out) {
    constexpr std::size_t kGroup = Stops::kGroup;
    const char* const in = value.data();
    const std::size_t size = value.size();
    std::size_t copied = 0; // the bytes before it are written
    // False at the zero byte, where escaping ends.
    const auto handle = [&](std::size_t at) {
        if (in[at] == '\0') {
            return false;
        }
        const Replacement& replacement = replacementAt(value, at);
        out.run(in + copied, at - copied, at + kGroup <= size);
        out.token(replacement.text, replacement.size);
        copied = at + replacement.consumed;
        return true;
    };
    // The second "/" of a pair, in this block or the next, is dropped with
    // the first. Inlined: left to itself, the compiler calls it for every
    // block of a group that has a hit.
    const auto handleBlock = [&](std::size_t block) __attribute__((always_inline)) {
        auto hits = stops.template blockHits<Path>(in + block);
        for (hits.dropBefore(copied > block ? copied - block : 0); !hits.empty();
             hits.dropBefore(copied > block ? copied - block : 0)) {
            if (!handle(block + hits.first())) {
                return false;
            }
            hits.dropFirst();
        }
        return true;
    };
    walkStops<Path>(
        stops, value, handleBlock, [&](std::size_t at) { return at < copied || handle(at); },
        [&](std::size_t end) {
            if (end > copied) { // not inside a pair "//"
                out.runExactly(in + copied, end - copied);
                copied = end;
            }
        });
    out.runExactly(in + copied, size - copied);
}

// Runs `walk` with the stops of the value's kind.
template <class Walk> auto withStops(bool lineFeeds, Walk walk) {
    return lineFeeds ? walk(kJsonOrderStops) : walk(kOrderStops);
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

// The token that starts at `pos`, if any. The rows' tokens differ at their
// third byte, so that byte picks the one row to compare.
constexpr std::array<std::uint8_t, 256> kRowOfThirdByte = [] {
    std::array<std::uint8_t, 256> table{};
    table.fill(kOrderEscapes.size());
    for (std::size_t row = 0; row < kOrderEscapes.size(); ++row) {
        table[static_cast<unsigned char>(kOrderEscapes[row].token[2])] =
            static_cast<std::uint8_t>(row);
    }
    return table;
}();

// Each row's token as 8 bytes read at once, and which of them count (no
// token is longer), so that a match is one load and one compare where the
// text has 8 bytes left, not a call to memcmp.
struct TokenWord {
    std::uint64_t bytes = 0;
    std::uint64_t mask = 0;
};
constexpr std::size_t kWord = sizeof(std::uint64_t);
static_assert(std::all_of(kOrderEscapes.begin(), kOrderEscapes.end(),
                          [](const EscapeToken& row) { return row.token.size() <= kWord; }));

std::uint64_t loadWord(const char* at) noexcept {
    std::uint64_t word = 0;
    std::memcpy(&word, at, kWord);
    return word;
}

// The word that loadWord() reads from memory holding `byte` at `index`.
constexpr std::uint64_t byteInWord(unsigned char byte, std::size_t index) {
    const std::size_t place =
        std::endian::native == std::endian::little ? index : kWord - 1 - index;
    return std::uint64_t{byte} << (8 * place);
}

// One more row, after the tokens', for a third byte that no token has: its
// word matches nothing (no bits kept, and a byte set).
constexpr std::array<TokenWord, kOrderEscapes.size() + 1> kTokenWords = [] {
    std::array<TokenWord, kOrderEscapes.size() + 1> words{};
    for (std::size_t row = 0; row < kOrderEscapes.size(); ++row) {
        const std::string_view token = kOrderEscapes[row].token;
        for (std::size_t i = 0; i < token.size(); ++i) {
            words[row].bytes |= byteInWord(static_cast<unsigned char>(token[i]), i);
            words[row].mask |= byteInWord(0xFF, i);
        }
    }
    words.back().bytes = 1;
    return words;
}();

// Inlined, as is overlappingToken(): the walk asks at every dash, and as
// calls they were a third of its time on text dense with tokens. With 8
// bytes left it decides on one branch, the whole word compared (the dashes
// too), since which way the text goes at a dash is unpredictable.
[[gnu::always_inline]] inline std::optional<TokenAt> orderTokenAt(std::string_view text,
                                                                  std::size_t pos) {
    const std::size_t left = text.size() - pos;
    if (left >= kWord) {
        const std::uint64_t word = loadWord(text.data() + pos);
        const std::size_t row = kRowOfThirdByte[static_cast<unsigned char>(text[pos + 2])];
        if ((word & kTokenWords[row].mask) == kTokenWords[row].bytes) {
            return TokenAt{pos, row};
        }
        return std::nullopt;
    }
    if (left < 7 || text[pos + 1] != '-') {
        return std::nullopt; // 7: the shortest token
    }
    const std::size_t row = kRowOfThirdByte[static_cast<unsigned char>(text[pos + 2])];
    if (row < kOrderEscapes.size() &&
        text.substr(pos, kOrderEscapes[row].token.size()) == kOrderEscapes[row].token) {
        return TokenAt{pos, row};
    }
    return std::nullopt;
}

std::size_t tokenEnd(const TokenAt& token) {
    return token.start + kOrderEscapes[token.row].token.size();
}

// The token that overlaps the end of `token`, if any.
[[gnu::always_inline]] inline std::optional<TokenAt> overlappingToken(std::string_view text,
                                                                      const TokenAt& token) {
    const std::size_t end = tokenEnd(token);
    // One that starts at end - 2 has its third byte at end, one that starts
    // at end - 1 its second: a token's letter or a dash.
    if (end == text.size() ||
        (text[end] != '-' &&
         kRowOfThirdByte[static_cast<unsigned char>(text[end])] == kOrderEscapes.size())) {
        return std::nullopt;
    }
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

// The dash that starts every token, and the zero byte, where the walk
// stops.
constexpr ByteSet kDashStops("-\0");

// The characters each row's token stands for, padded for one store.
constexpr std::array<Replacement, kOrderEscapes.size()> kRestoredOf = [] {
    std::array<Replacement, kOrderEscapes.size()> table{};
    for (std::size_t row = 0; row < table.size(); ++row) {
        table[row] = replacementOf(kOrderEscapes[row].character, 0);
    }
    return table;
}();

// The reader's walk over `value`, up to its first zero byte and the rest
// copied as it is: each dash (or the zero) is found a block at a time,
// groups of four clean blocks passed over at once, and the token at a dash,
// if any, restored. The zero is one of the bytes looked for, so that no
// pass is spent finding it.
template <BlockPath Path> void writeUnescaped(std::string_view value, StagedOutput& out) {
    constexpr std::size_t kGroup = decltype(kDashStops)::kGroup;
    const char* const in = value.data();
    const std::size_t size = value.size();
    std::size_t copied = 0; // the bytes before it are written
    std::size_t next = 0;   // the walk looks for tokens from here on
    const auto restore = [&](const TokenAt& token) {
        out.run(in + copied, token.start - copied, token.start + kGroup <= size);
        out.token(kRestoredOf[token.row].text, kRestoredOf[token.row].size);
        copied = tokenEnd(token);
    };
    std::vector<TokenAt> chain;
    std::vector<bool> restored;
    // False at the zero byte, where unescaping ends. No token holds one, so
    // none that is read reaches past it.
    const auto handle = [&](std::size_t pos) {
        if (in[pos] == '\0') {
            return false;
        }
        if (pos < next) {
            return true;
        }
        const std::optional<TokenAt> first = orderTokenAt(value, pos);
        if (!first) {
            return true;
        }
        std::optional<TokenAt> following = overlappingToken(value, *first);
        if (!following) { // alone, as nearly every token is
            restore(*first);
            next = copied;
            return true;
        }
        chain.assign({*first, *following});
        while ((following = overlappingToken(value, chain.back()))) {
            chain.push_back(*following);
        }
        chooseInChain(chain, restored);
        for (std::size_t i = 0; i < chain.size(); ++i) {
            if (restored[i]) {
                restore(chain[i]);
            }
        }
        next = tokenEnd(chain.back());
        return true;
    };
    const auto handleBlock = [&](std::size_t block) {
        // The dashes of a restored token, in this block or the next, are
        // dropped with it.
        auto hits = kDashStops.blockHits<Path>(in + block);
        for (hits.dropBefore(next > block ? next - block : 0); !hits.empty();
             hits.dropBefore(next > block ? next - block : 0)) {
            if (!handle(block + hits.first())) {
                return false;
            }
            hits.dropFirst();
        }
        return true;
    };
    walkStops<Path>(kDashStops, value, handleBlock, handle, [&](std::size_t end) {
        if (end > copied) { // not inside a restored token
            out.runExactly(in + copied, end - copied);
            copied = end;
        }
    });
    out.runExactly(in + copied, size - copied);
}

// The walk on the path asked for (on arm64, avx2 means the vector path).
template <class Walk> void onPath(BlockPath path, Walk walk) {
    if constexpr (kHasAvx2Path) {
        if (path == BlockPath::avx2) {
            walk(std::integral_constant<BlockPath, BlockPath::avx2>());
            return;
        }
    }
    if constexpr (kHasVectorPath) {
        if (path != BlockPath::portable) {
            walk(std::integral_constant<BlockPath, kNativePath>());
            return;
        }
    }
    walk(std::integral_constant<BlockPath, BlockPath::portable>());
}

} // namespace

void reserveWiped(kstring& out, std::size_t room) {
    const std::size_t needed = out.size() + room;
    if (needed <= out.capacity()) {
        return;
    }
    // A text in the string's own small buffer leaves nothing behind on the
    // heap; a heap buffer is wiped even when the text is empty, since a
    // cleared buffer still holds what it had.
    static const std::size_t kSmallRoom = kstring().capacity();
    if (out.capacity() <= kSmallRoom) {
        out.reserve(needed);
        return;
    }
    kstring moved;
    moved.reserve(std::max(needed, 2 * out.capacity()));
    moved.append(out);
    secureWipe(out);
    out.swap(moved);
}

void appendOrderUnescaped(kstring& out, std::string_view value, BlockPath path) {
    reserveWiped(out, value.size()); // restoring only shortens
    StagedOutput staged(out);
    onPath(path, [&](auto onIt) { writeUnescaped<decltype(onIt)::value>(value, staged); });
    staged.flush();
}

std::size_t orderEscapedBound(std::string_view value, bool lineFeeds) noexcept {
    // No special byte grows by more than kGrowth: "=" and "&" by 6, a line
    // feed by 7, each "/" of a pair by 3 (and a lone one by nothing).
    // Bytes after a zero byte are counted too, though they are copied as
    // they are: a looser bound, and no pass to find the zero.
    constexpr std::size_t kGrowth = 7;
    return value.size() +
           kGrowth * (lineFeeds ? kJsonOrderSpecials.count(value) : kOrderSpecials.count(value));
}

void appendOrderEscaped(kstring& out, std::string_view value, std::size_t room, bool lineFeeds,
                        BlockPath path) {
    reserveWiped(out, room);
    StagedOutput staged(out);
    onPath(path, [&](auto onIt) {
        withStops(lineFeeds, [&](const auto& stops) {
            writeEscaped<decltype(onIt)::value>(value, stops, staged);
        });
    });
    staged.flush();
}

} // namespace PQ_UTILS::internal
