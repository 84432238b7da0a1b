// Order text both ways on a message of 20 pieces (about 2 KB of text with
// escaped values): render, parse, and the round trip, in orders and bytes
// per second with allocations per order; and a hostile order of malformed
// elements, each of which is reported.

#include <algorithm>
#include <cstdint>
#include <string>

#include <benchmark/benchmark.h>

#include "PQBenchInputs.h"
#include "PQDebug/PQDebug.h"
#include "PQOrderSweepInputs.h"
#include "PQUtils/Orders/PQOrder.h"
#include "PQUtils/Orders/ReceivedOrders/PQReceivedOrder.h"
#include "PQUtils/Utils/PQString.h"

namespace {

using PQ_UTILS::kstring;
using PQ_UTILS::PQOrder;
using PQ_UTILS::PQReceivedOrder;
using PQ_UTILS::PQSourceOrderWrapper;

// The shared 20 pieces as one order.
PQOrder twentyPieceOrder() {
    PQOrder order(PQ_UTILS::PQReceivedOrderType_DOMInformations,
                  PQ_UTILS::PQOrderType_ORDER_NORMAL);
    for (const auto& [key, value] : pqbench::orderPieces()) {
        order.add_orderPiece(key, value);
    }
    return order;
}

void BM_RenderOrder(benchmark::State& state) {
    const PQOrder order = twentyPieceOrder();
    const std::size_t bytes = order.get_orderString().getStringSource()->size();
    const pqbench::AllocationsPerIteration allocations;
    for (auto _ : state) {
        benchmark::DoNotOptimize(order.get_orderString());
    }
    pqbench::perOperation(state, bytes, allocations);
}
BENCHMARK(BM_RenderOrder);

void BM_ParseOrder(benchmark::State& state) {
    const PQSourceOrderWrapper text(*twentyPieceOrder().get_orderString().getStringSource());
    const pqbench::AllocationsPerIteration allocations;
    for (auto _ : state) {
        benchmark::DoNotOptimize(PQReceivedOrder::getOrderPiecesFromOrder(text, true));
    }
    pqbench::perOperation(state, text.getStringSource()->size(), allocations);
}
BENCHMARK(BM_ParseOrder);

void BM_OrderRoundTrip(benchmark::State& state) {
    const PQOrder order = twentyPieceOrder();
    const std::size_t bytes = order.get_orderString().getStringSource()->size();
    const pqbench::AllocationsPerIteration allocations;
    for (auto _ : state) {
        const PQSourceOrderWrapper text(*order.get_orderString().getStringSource());
        benchmark::DoNotOptimize(PQReceivedOrder::getOrderPiecesFromOrder(text, true));
    }
    pqbench::perOperation(state, bytes, allocations);
}
BENCHMARK(BM_OrderRoundTrip);

// The order of `pieces`, as text.
kstring orderTextOf(const pqbench::KeyValues& pieces) {
    PQOrder order(PQ_UTILS::PQReceivedOrderType_DOMInformations,
                  PQ_UTILS::PQOrderType_ORDER_NORMAL);
    for (const auto& [key, value] : pieces) {
        order.add_orderPiece(key, value);
    }
    return *order.get_orderString().getStringSource();
}

// Orders of 64 B to 1 MiB with 0 to 50% of special bytes in their values;
// the pieces read are checked against those written before any timing.
void BM_ParseOrderSweep(benchmark::State& state) {
    const pqbench::KeyValues pieces = pqbench::sweepOrderPieces(state.range(0), state.range(1));
    const PQSourceOrderWrapper text(orderTextOf(pieces));
    const auto read = PQReceivedOrder::getOrderPiecesFromOrder(text, true);
    pqbench::KeyValues readBack;
    for (std::size_t i = 1; i < read->size(); ++i) { // the first is the action
        readBack.emplace_back((*read)[i].get_key(),
                              *(*read)[i].get_localOrderString().getStringSource());
    }
    if (readBack != pieces) {
        state.SkipWithError("the order read back differs from the pieces");
        return;
    }
    const pqbench::AllocationsPerIteration allocations;
    for (auto _ : state) {
        benchmark::DoNotOptimize(PQReceivedOrder::getOrderPiecesFromOrder(text, true));
    }
    pqbench::perOperation(state, text.getStringSource()->size(), allocations);
}
BENCHMARK(BM_ParseOrderSweep)->Apply(pqbench::sweepArguments);

// 1 MB of 200,000 elements without "=": one report each, records dropped.
void BM_ParseMalformedOrder(benchmark::State& state) {
    kstring hostile;
    for (int i = 0; i < 200000; ++i) {
        hostile += "badx&";
    }
    const PQSourceOrderWrapper text(hostile);
    PQ_DEBUG::PQDebug::setLogSink([](const PQ_DEBUG::PQLogRecord&) {});
    for (auto _ : state) {
        benchmark::DoNotOptimize(PQReceivedOrder::getOrderPiecesFromOrder(text, true));
    }
    PQ_DEBUG::PQDebug::setLogSink(nullptr);
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * hostile.size()));
    state.counters["reports/s"] = benchmark::Counter(
        static_cast<double>(state.iterations()) * 200000.0, benchmark::Counter::kIsRate);
}
BENCHMARK(BM_ParseMalformedOrder)->Unit(benchmark::kMillisecond);

} // namespace

pqbench::KeyValues pqbench::sweepOrderPieces(std::int64_t densityTenths, std::int64_t size) {
    KeyValues pieces = generatedSweepPieces(densityTenths, size);
    for (auto& [key, value] : pieces) {
        const auto escaped = PQ_UTILS::PQString::restorePQEntities(value);
        if (*PQ_UTILS::PQString::removePQEntities(*escaped) != value) {
            std::replace(value.begin(), value.end(), '-', '_');
        }
    }
    return pieces;
}
