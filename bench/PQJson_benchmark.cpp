// JSON orders: a 200-member object (strings with quotes, backslashes and
// line feeds, numbers, booleans, arrays of five strings; about 7 KB of
// text) rendered, built and rendered, and sent as order text; and a string
// value of 1 MiB of quotes and backslashes escaped and read back.

#include <cstdint>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "PQAllocationCounter.h"
#include "PQUtils/Orders/Json/PQJsonArray.h"
#include "PQUtils/Orders/Json/PQJsonObject.h"
#include "PQUtils/Orders/Json/PQJsonString.h"

namespace {

using PQ_UTILS::PQJsonArray;
using PQ_UTILS::PQJsonObject;
using PQ_UTILS::PQJsonOrder;
using PQ_UTILS::PQJsonString;
using PQ_UTILS::PQSourceOrderPieceWrapper;

constexpr int kMembers = 200;

// Member i of four kinds in turn: a string with characters to escape, an
// integer, a boolean, an array of five strings.
void addMembers(PQJsonOrder& object) {
    for (int i = 0; i < kMembers; ++i) {
        const std::string key = "member" + std::to_string(i);
        switch (i % 4) {
        case 0:
            object.addValue(key, "say \"hi\" to C:\\temp\nand go " + std::to_string(i));
            break;
        case 1:
            object.addValue_nostring(key, std::to_string(i * 1000 + 7));
            break;
        case 2:
            object.addValue_nostring(key, i % 8 == 2 ? "true" : "false");
            break;
        default: {
            auto array = std::make_unique<PQJsonArray>();
            for (int j = 0; j < 5; ++j) {
                array->addValue("item " + std::to_string(j));
            }
            object.addValue(key, std::move(array));
        }
        }
    }
}

std::size_t renderedSize(const PQJsonOrder& node) {
    return node.get_localOrderString().getStringSource()->size();
}

void perTree(benchmark::State& state, std::size_t bytes,
             const pqbench::AllocationsPerIteration& allocations) {
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes));
    allocations.report(state);
}

void BM_JsonRender(benchmark::State& state) {
    PQJsonObject object;
    addMembers(object);
    const pqbench::AllocationsPerIteration allocations;
    for (auto _ : state) {
        PQSourceOrderPieceWrapper out;
        object.get_localOrderString(out);
        benchmark::DoNotOptimize(out);
    }
    perTree(state, renderedSize(object), allocations);
}
BENCHMARK(BM_JsonRender);

void BM_JsonBuildAndRender(benchmark::State& state) {
    const pqbench::AllocationsPerIteration allocations;
    std::size_t bytes = 0;
    for (auto _ : state) {
        PQJsonObject object;
        addMembers(object);
        PQSourceOrderPieceWrapper out;
        object.get_localOrderString(out);
        bytes = out.getStringSource()->size();
        benchmark::DoNotOptimize(out);
    }
    perTree(state, bytes, allocations);
}
BENCHMARK(BM_JsonBuildAndRender);

void BM_JsonOrderString(benchmark::State& state) {
    PQJsonOrder root(PQ_UTILS::PQReceivedOrderType_vordaApplicationResponse);
    auto object = std::make_unique<PQJsonObject>();
    addMembers(*object);
    root.addValue("content", std::move(object));
    const pqbench::AllocationsPerIteration allocations;
    for (auto _ : state) {
        benchmark::DoNotOptimize(root.get_orderString());
    }
    perTree(state, root.get_orderString().getStringSource()->size(), allocations);
}
BENCHMARK(BM_JsonOrderString);

std::string quotesAndBackslashes() {
    std::string value(std::size_t{1} << 20U, '"');
    for (std::size_t i = 0; i < value.size(); i += 2) {
        value[i] = '\\';
    }
    return value;
}

void BM_JsonEscapeMiB(benchmark::State& state) {
    const PQJsonString node(quotesAndBackslashes());
    for (auto _ : state) {
        PQSourceOrderPieceWrapper out;
        node.get_localOrderString(out);
        benchmark::DoNotOptimize(out);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * (1U << 20U)));
}
BENCHMARK(BM_JsonEscapeMiB);

void BM_JsonUnescapeMiB(benchmark::State& state) {
    const PQJsonString escaped(
        *PQJsonString(quotesAndBackslashes()).get_localOrderString_noEscape().getStringSource());
    for (auto _ : state) {
        benchmark::DoNotOptimize(escaped.get_pieceValue());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * (1U << 20U)));
}
BENCHMARK(BM_JsonUnescapeMiB);

} // namespace
