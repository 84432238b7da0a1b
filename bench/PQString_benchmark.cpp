// Throughput of the string utilities: the order-text escapes both ways and
// Base64 over the sweep of densities and sizes; on 1 MiB of text, a plain
// replacement and the cipher; the block
// scanner on each of its paths; reading doubles with each reader.

#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "PQBenchInputs.h"
#include "PQBenchSweep.h"
#include "PQUtils/Utils/PQByteSetInternal.h"
#include "PQUtils/Utils/PQFromCharsInternal.h"
#include "PQUtils/Utils/PQOrderEscapeInternal.h"
#include "PQUtils/Utils/PQString.h"

namespace {

using PQ_UTILS::kstring;
using PQ_UTILS::PQString;
using pqbench::orderValueText;
using pqbench::throughput;

// The escapes, each over the sweep of densities and sizes.
void BM_RestorePQEntities(benchmark::State& state) {
    throughput(state, pqbench::sweepInput(state), &PQString::restorePQEntities);
}
BENCHMARK(BM_RestorePQEntities)->Apply(pqbench::sweepArgs);

void BM_RemovePQEntities(benchmark::State& state) {
    throughput(state, pqbench::sweepEscapedInput(state), &PQString::removePQEntities);
}
BENCHMARK(BM_RemovePQEntities)->Apply(pqbench::sweepArgs);

// The order writer's escaping of a value: room guessed as the writer
// guesses it, then appended to text that is kept from one order to the
// next.
void BM_OrderWriterEscape(benchmark::State& state) {
    kstring text;
    throughput(state, pqbench::sweepInput(state), [&](const std::string& value) {
        text.clear();
        PQ_UTILS::internal::appendOrderEscaped(text, value,
                                               PQ_UTILS::internal::orderEscapedRoom(value.size()));
        return text.size();
    });
}
BENCHMARK(BM_OrderWriterEscape)->Apply(pqbench::sweepArgs);

// The order reader's unescaping of a value into the string its piece keeps.
void BM_OrderReaderUnescape(benchmark::State& state) {
    throughput(state, pqbench::sweepEscapedInput(state), [](const std::string& value) {
        kstring text;
        PQ_UTILS::internal::appendOrderUnescaped(text, value);
        return text;
    });
}
BENCHMARK(BM_OrderReaderUnescape)->Apply(pqbench::sweepArgs);

void BM_SelfReplace(benchmark::State& state) {
    throughput(state, orderValueText(), [](kstring copy) {
        PQString::self_replace(copy, "&", "--amp--");
        return copy;
    });
}
BENCHMARK(BM_SelfReplace);

void BM_ToBase64(benchmark::State& state) {
    throughput(state, pqbench::sweepBytes(state),
               [](const kstring& bytes) { return PQString::toBase64(bytes, bytes.size()); });
}
BENCHMARK(BM_ToBase64)->Apply(pqbench::sizeArgs);

void BM_SimpleCipher(benchmark::State& state) {
    throughput(state, orderValueText(), &PQString::simpleCipher);
}
BENCHMARK(BM_SimpleCipher);

// Every special byte of the order text found one after another, as the
// walks find them, by one path of the scanner.
template <PQ_UTILS::internal::BlockPath Path> void BM_ByteSetFind(benchmark::State& state) {
    constexpr PQ_UTILS::internal::ByteSet kSpecials("=&/");
    throughput(state, orderValueText(), [&](const std::string& text) {
        std::size_t found = 0;
        for (std::size_t at = kSpecials.template find<Path>(text); at != std::string::npos;
             at = kSpecials.template find<Path>(text, at + 1)) {
            ++found;
        }
        return found;
    });
}
BENCHMARK(BM_ByteSetFind<PQ_UTILS::internal::BlockPath::portable>);
#if defined(PQ_BLOCK_SCAN_VECTOR)
BENCHMARK(BM_ByteSetFind<PQ_UTILS::internal::BlockPath::vector>);
#endif
#if defined(PQ_BLOCK_SCAN_AVX2)
void BM_ByteSetFindAvx2(benchmark::State& state) {
    if (!PQ_UTILS::internal::avx2Supported()) {
        state.SkipWithError("this processor has no AVX2");
        return;
    }
    BM_ByteSetFind<PQ_UTILS::internal::BlockPath::avx2>(state);
}
BENCHMARK(BM_ByteSetFindAvx2);
#endif

// Numbers as pages send them: prices, and doubles printed in full.
std::vector<std::string> numberTexts() {
    std::mt19937_64 random(7);
    std::vector<std::string> texts;
    std::array<char, 64> buffer{};
    for (int i = 0; i < 1000; ++i) {
        if (i % 2 == 0) {
            std::snprintf(buffer.data(), buffer.size(), "%d.%02d",
                          static_cast<int>(random() % 10000), static_cast<int>(random() % 100));
        } else {
            std::snprintf(buffer.data(), buffer.size(), "%.17g",
                          std::uniform_real_distribution<>(-1e6, 1e6)(random));
        }
        texts.emplace_back(buffer.data());
    }
    return texts;
}

template <class Reader> void readNumbers(benchmark::State& state, Reader reader) {
    const std::vector<std::string> texts = numberTexts();
    for (auto _ : state) {
        for (const std::string& text : texts) {
            double value = 0;
            benchmark::DoNotOptimize(reader(text.data(), text.data() + text.size(), value));
            benchmark::DoNotOptimize(value);
        }
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * texts.size()));
}

void BM_ReadDoublePortable(benchmark::State& state) {
    readNumbers(state, PQ_UTILS::internal::portableFromChars);
}
BENCHMARK(BM_ReadDoublePortable);

#if defined(__cpp_lib_to_chars) && __cpp_lib_to_chars >= 201611L
void BM_ReadDoubleStandard(benchmark::State& state) {
    readNumbers(state, [](const char* first, const char* last, double& value) {
        return std::from_chars(first, last, value);
    });
}
BENCHMARK(BM_ReadDoubleStandard);
#endif

} // namespace
