#pragma once

// Orders for the parse sweep: pieces whose values hold special bytes at a
// given density, up to a given size of order text, generated from a seed so
// that every run (ours and the peer's) reads the same bytes.

#include <algorithm>
#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

#include "PQBenchInputs.h"

namespace pqbench {

// The sweep's arguments: density of specials in tenths of a percent, and
// the size in bytes. A benchmark and its peer take the same pairs, so that
// their names end alike (BM_ParseOrderSweep/20/2048 beside
// BM_Peer_BoostUrl_ParseQuerySweep/20/2048).
inline void sweepArguments(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgsProduct({{0, 5, 20, 100, 500}, {64, 2048, 1 << 20}});
}

// Pieces "k0", "k1", ... with values of up to 90 bytes of letters and
// digits, where about `densityTenths` in a thousand bytes start a special:
// "/", "//" or "///", "=", "&", or "--" next to the letters of a token name.
// The values add up to about `size` bytes (one piece at least).
inline KeyValues generatedSweepPieces(std::int64_t densityTenths, std::int64_t size) {
    static constexpr std::array<std::string_view, 8> kSpecials = {"/", "//",    "///",  "=",
                                                                  "&", "--amp", "eq--", "--"};
    std::mt19937 random(static_cast<std::uint32_t>(densityTenths * 7919 + size));
    std::uniform_int_distribution<int> perMille(0, 999);
    std::uniform_int_distribution<std::size_t> special(0, kSpecials.size() - 1);
    std::uniform_int_distribution<int> letter(0, 35);
    const std::size_t valueSize = std::min<std::size_t>(90, static_cast<std::size_t>(size) / 2);
    KeyValues pieces;
    std::size_t total = 0;
    do {
        std::string value;
        while (value.size() < valueSize) {
            if (perMille(random) < densityTenths) {
                value.append(kSpecials[special(random)]);
            } else {
                const int pick = letter(random);
                value.push_back(static_cast<char>(pick < 26 ? 'a' + pick : '0' + pick - 26));
            }
        }
        std::string key = std::string("k").append(std::to_string(pieces.size()));
        total += key.size() + value.size() + 2;
        pieces.emplace_back(std::move(key), std::move(value));
    } while (total < static_cast<std::size_t>(size));
    return pieces;
}

// generatedSweepPieces(), each value that order text cannot carry (one
// where "--" next to letters reads back as a token) with its "-" made "_":
// the pieces both sides must give back. Defined beside our order benchmarks.
KeyValues sweepOrderPieces(std::int64_t densityTenths, std::int64_t size);

} // namespace pqbench
