// Throughput of the string utilities on 1 MiB of text: the order-text
// escapes both ways, a plain replacement, Base64 and the cipher.

#include <cstdint>

#include <benchmark/benchmark.h>

#include "PQBenchInputs.h"
#include "PQUtils/Utils/PQString.h"

namespace {

using PQ_UTILS::kstring;
using PQ_UTILS::PQString;
using pqbench::orderValueText;
using pqbench::throughput;

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
