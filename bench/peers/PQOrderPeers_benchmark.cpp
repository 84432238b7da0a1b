// The peer of order text: Boost.URL's query parameters, on the 20 pieces of
// PQOrder_benchmark. Both sides make owned decoded strings when they parse,
// and percent-encode (we escape) when they build.

#include <boost/url/parse_query.hpp>
#include <boost/url/url.hpp>
#include <cctype>
#include <string>
#include <string_view>

#include "PQBenchInputs.h"
#include "PQOrderSweepInputs.h"

namespace {

using pqbench::KeyValues;

KeyValues parseQuery(std::string_view text) {
    const auto params = boost::urls::parse_query(text).value();
    KeyValues pairs;
    pairs.reserve(params.size());
    for (const auto& param : params) {
        pairs.emplace_back(param.key.decode(), param.value.decode());
    }
    return pairs;
}

// The query is the url's own text, as ours is the order's own string.
boost::urls::url buildQuery(const KeyValues& pairs) {
    boost::urls::url url;
    auto params = url.params();
    for (const auto& [key, value] : pairs) {
        params.append({key, value});
    }
    return url;
}

// The pieces' query, read back once before any timing, so that both
// benchmarks demonstrably do the work ours does; empty, with the benchmark
// skipped, when Boost.URL does not give the pieces back.
std::string checkedQuery(benchmark::State& state, const KeyValues& pieces) {
    std::string text(buildQuery(pieces).encoded_query());
    if (parseQuery(text) != pieces) {
        state.SkipWithError("Boost.URL does not read back the pieces");
        text.clear();
    }
    return text;
}

void BM_Peer_BoostUrl_ParseQuery(benchmark::State& state) {
    const std::string text = checkedQuery(state, pqbench::orderPieces());
    if (text.empty()) {
        return;
    }
    const pqbench::AllocationsPerIteration allocations;
    for (auto _ : state) {
        benchmark::DoNotOptimize(parseQuery(text));
    }
    pqbench::perOperation(state, text.size(), allocations);
}
BENCHMARK(BM_Peer_BoostUrl_ParseQuery);

void BM_Peer_BoostUrl_BuildQuery(benchmark::State& state) {
    const KeyValues pieces = pqbench::orderPieces();
    const std::size_t bytes = checkedQuery(state, pieces).size();
    if (bytes == 0) {
        return;
    }
    const pqbench::AllocationsPerIteration allocations;
    for (auto _ : state) {
        benchmark::DoNotOptimize(buildQuery(pieces));
    }
    pqbench::perOperation(state, bytes, allocations);
}
BENCHMARK(BM_Peer_BoostUrl_BuildQuery);

// `text` percent-encoded for a query: everything but letters, digits and
// "-._~". Written here because building a url of ten thousand pairs with
// params().append takes time growing as the square of its size.
void appendEncoded(std::string& query, std::string_view text) {
    static constexpr char kHex[] = "0123456789ABCDEF";
    for (const char byte : text) {
        const auto code = static_cast<unsigned char>(byte);
        if ((std::isalnum(code) != 0) || byte == '-' || byte == '.' || byte == '_' || byte == '~') {
            query.push_back(byte);
        } else {
            query.push_back('%');
            query.push_back(kHex[code >> 4U]);
            query.push_back(kHex[code & 15U]);
        }
    }
}

// The sweep's orders as queries, read back once before the timing.
void BM_Peer_BoostUrl_ParseQuerySweep(benchmark::State& state) {
    const KeyValues pieces = pqbench::sweepOrderPieces(state.range(0), state.range(1));
    std::string text;
    for (const auto& [key, value] : pieces) {
        if (!text.empty()) {
            text.push_back('&');
        }
        appendEncoded(text, key);
        text.push_back('=');
        appendEncoded(text, value);
    }
    if (parseQuery(text) != pieces) {
        state.SkipWithError("Boost.URL does not read back the pieces");
        return;
    }
    const pqbench::AllocationsPerIteration allocations;
    for (auto _ : state) {
        benchmark::DoNotOptimize(parseQuery(text));
    }
    pqbench::perOperation(state, text.size(), allocations);
}
BENCHMARK(BM_Peer_BoostUrl_ParseQuerySweep)->Apply(pqbench::sweepArguments);

} // namespace
