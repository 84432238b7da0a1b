#pragma once

// Inputs and measuring loops shared by our benchmarks and the peers', so
// that both sides do the same work on the same bytes.

#include <cstdint>
#include <string>

#include <benchmark/benchmark.h>

namespace pqbench {

inline constexpr std::size_t kMiB = std::size_t{1} << 20;

// Printable text with about 2% of "=", "&" and "//", the mix of order values.
inline std::string orderValueText() {
    std::string text;
    text.reserve(kMiB);
    std::uint32_t state = 42;
    while (text.size() < kMiB) {
        state = state * 1664525U + 1013904223U;
        const std::uint32_t roll = (state >> 8) % 150;
        if (roll == 0) {
            text.push_back('=');
        } else if (roll == 1) {
            text.push_back('&');
        } else if (roll == 2) {
            text.append("//");
        } else {
            text.push_back(static_cast<char>('a' + roll % 26));
        }
    }
    return text;
}

// Runs `operation` over `input` and reports the bytes it reads per second.
template <class Operation>
void throughput(benchmark::State& state, const std::string& input, Operation operation) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(operation(input));
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * input.size()));
}

} // namespace pqbench
