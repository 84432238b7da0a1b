// Throughput of the string utilities on 1 MiB of text: the order-text
// escapes both ways, a plain replacement, Base64 and the cipher.

#include <cstdint>

#include <benchmark/benchmark.h>

#include "PQUtils/Utils/PQString.h"

namespace {

using PQ_UTILS::kstring;
using PQ_UTILS::PQString;

constexpr std::size_t kMiB = std::size_t{1} << 20;

// Printable text with about 2% of "=", "&" and "//", the mix of order values.
kstring orderValueText() {
    kstring text;
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
void throughput(benchmark::State& state, const kstring& input, Operation operation) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(operation(input));
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * input.size()));
}

void BM_RestorePQEntities(benchmark::State& state) {
    throughput(state, orderValueText(), &PQString::restorePQEntities);
}
BENCHMARK(BM_RestorePQEntities);

void BM_RemovePQEntities(benchmark::State& state) {
    throughput(state, *PQString::restorePQEntities(orderValueText()), &PQString::removePQEntities);
}
BENCHMARK(BM_RemovePQEntities);

void BM_SelfReplace(benchmark::State& state) {
    throughput(state, orderValueText(), [](kstring copy) {
        PQString::self_replace(copy, "&", "--amp--");
        return copy;
    });
}
BENCHMARK(BM_SelfReplace);

void BM_ToBase64(benchmark::State& state) {
    throughput(state, orderValueText(),
               [](const kstring& text) { return PQString::toBase64(text, text.size()); });
}
BENCHMARK(BM_ToBase64);

void BM_SimpleCipher(benchmark::State& state) {
    throughput(state, orderValueText(), &PQString::simpleCipher);
}
BENCHMARK(BM_SimpleCipher);

} // namespace
