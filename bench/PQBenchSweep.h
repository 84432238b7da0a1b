#pragma once

// Inputs of the sweep benchmarks: text of a given special-byte density and
// size, made from a fixed seed, so that no single mix of specials decides a
// figure. Every sweep benchmark takes Args({density, size}): the density in
// tenths of a percent and the size in bytes, so that ours and a peer's
// benchmark of the same point share the name's suffix ("/20/2048").

#include <array>
#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <utility>

#include <benchmark/benchmark.h>

#include "PQUtils/Utils/PQString.h"

namespace pqbench {

inline constexpr std::array<int, 5> kSweepDensities{0, 5, 20, 100, 500}; // tenths of a percent
inline constexpr std::array<int, 3> kSweepSizes{64, 2048, 1 << 20};

// Adds every point of the sweep to a benchmark.
inline void sweepArgs(benchmark::internal::Benchmark* benchmark) {
    for (const int density : kSweepDensities) {
        for (const int size : kSweepSizes) {
            benchmark->Args({density, size});
        }
    }
}

// Base64 does not look at what it encodes: only the sizes, at density 0.
inline void sizeArgs(benchmark::internal::Benchmark* benchmark) {
    for (const int size : kSweepSizes) {
        benchmark->Args({0, size});
    }
}

// What goes in among the plain letters: the escaped bytes alone and in runs,
// and dashes beside token letters, which send the reader after a token that
// is not there. A dash piece is fenced by "x" so that it never joins an
// escaped byte's token into a chain, on which the peers, replacing all
// tokens at once, would read differently from our passes.
inline constexpr std::array<std::string_view, 9> kSpecialPieces{
    "=", "&", "/", "//", "///", "&=", "x--equx", "xamp--x", "x--x"};

[[nodiscard]] constexpr bool isSpecialByte(char c) {
    return c == '=' || c == '&' || c == '/' || c == '-';
}

// `size` bytes of printable order text in which about `tenthsOfPercent`
// per mille of the bytes are "=", "&", "/" or "-".
inline std::string sweepText(int tenthsOfPercent, std::size_t size) {
    // A piece of average length L with S special bytes is drawn with
    // probability p at each step, a plain letter otherwise; the share of
    // special bytes is p S / (p L + 1 - p), solved for p.
    double length = 0;
    double specials = 0;
    for (const std::string_view piece : kSpecialPieces) {
        length += static_cast<double>(piece.size());
        for (const char c : piece) {
            specials += isSpecialByte(c) ? 1 : 0;
        }
    }
    length /= kSpecialPieces.size();
    specials /= kSpecialPieces.size();
    const double density = tenthsOfPercent / 1000.0;
    const double p = density / (specials - density * length + density);
    // Token letters are frequent among the plain ones, as in real values.
    constexpr std::string_view kPlain = "equampdbslrtnoxyzEQ0123456789 .,?_";
    std::mt19937_64 random(static_cast<std::uint64_t>(tenthsOfPercent) * 1000003U + size);
    std::bernoulli_distribution special(p);
    std::string text;
    text.reserve(size + 8);
    while (text.size() < size) {
        if (special(random)) {
            text.append(kSpecialPieces[random() % kSpecialPieces.size()]);
        } else {
            text.push_back(kPlain[random() % kPlain.size()]);
        }
    }
    text.resize(size);
    return text;
}

// The text of a sweep point, made once per point.
inline const std::string& sweepInput(const benchmark::State& state) {
    static std::map<std::pair<std::int64_t, std::int64_t>, std::string> made;
    const auto point = std::make_pair(state.range(0), state.range(1));
    auto found = made.find(point);
    if (found == made.end()) {
        found = made.emplace(point, sweepText(static_cast<int>(point.first),
                                              static_cast<std::size_t>(point.second)))
                    .first;
    }
    return found->second;
}

// Its escaped form, what the unescapers read.
inline const std::string& sweepEscapedInput(const benchmark::State& state) {
    static std::map<std::pair<std::int64_t, std::int64_t>, std::string> made;
    const auto point = std::make_pair(state.range(0), state.range(1));
    auto found = made.find(point);
    if (found == made.end()) {
        found =
            made.emplace(point, *PQ_UTILS::PQString::restorePQEntities(sweepInput(state))).first;
    }
    return found->second;
}

// Random bytes of the point's size, for Base64.
inline const std::string& sweepBytes(const benchmark::State& state) {
    static std::map<std::int64_t, std::string> made;
    auto found = made.find(state.range(1));
    if (found == made.end()) {
        std::mt19937_64 random(99);
        std::string bytes(static_cast<std::size_t>(state.range(1)), '\0');
        for (char& byte : bytes) {
            byte = static_cast<char>(random());
        }
        found = made.emplace(state.range(1), std::move(bytes)).first;
    }
    return found->second;
}

// Stops a peer's benchmark whose output differs from ours on its input:
// a ratio is only worth something between equal outputs.
inline bool sameOutput(benchmark::State& state, const std::string& ours,
                       const std::string& theirs) {
    if (ours != theirs) {
        state.SkipWithError("the peer's output differs from ours");
        return false;
    }
    return true;
}

} // namespace pqbench
