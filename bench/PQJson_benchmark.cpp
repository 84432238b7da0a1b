// JSON orders: a 200-member object (strings with quotes, backslashes and
// line feeds, numbers, booleans, arrays of five strings; about 7 KB of
// text) rendered (built fresh, and built after others were made and
// destroyed), built and rendered, and sent as order text; and a string
// value of 1 MiB of quotes and backslashes escaped and read back.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "PQBenchInputs.h"
#include "PQUtils/Orders/Json/PQJsonArray.h"
#include "PQUtils/Orders/Json/PQJsonObject.h"
#include "PQUtils/Orders/Json/PQJsonString.h"

namespace {

using PQ_UTILS::PQJsonArray;
using PQ_UTILS::PQJsonObject;
using PQ_UTILS::PQJsonOrder;
using PQ_UTILS::PQJsonString;
using PQ_UTILS::PQSourceOrderPieceWrapper;

using pqbench::JsonMember;

// The shared members, each added the way a caller of ours adds it: numbers
// and booleans as bare JSON text.
void addMembers(PQJsonOrder& object, const std::vector<JsonMember>& members) {
    for (const JsonMember& member : members) {
        switch (member.kind) {
        case JsonMember::Kind::String:
            object.addValue(member.key, member.text);
            break;
        case JsonMember::Kind::Number:
        case JsonMember::Kind::Boolean:
            object.addValue_nostring(member.key, member.text);
            break;
        case JsonMember::Kind::Array: {
            auto array = std::make_unique<PQJsonArray>();
            for (const std::string& item : member.items) {
                array->addValue(item);
            }
            object.addValue(member.key, std::move(array));
        }
        }
    }
}

std::size_t renderedSize(const PQJsonOrder& node) {
    return node.get_localOrderString().getStringSource()->size();
}

// Argument 1: the tree is built after others were built and destroyed, as
// in a process that has been running for a while, so that its nodes do not
// lie in the order of the walk.
void BM_JsonRender(benchmark::State& state) {
    const std::vector<JsonMember> members = pqbench::jsonMembers();
    pqbench::churn(state.range(0), [&] {
        auto earlier = std::make_unique<PQJsonObject>();
        addMembers(*earlier, members);
        return earlier;
    });
    PQJsonObject object;
    addMembers(object, members);
    const pqbench::AllocationsPerIteration allocations;
    for (auto _ : state) {
        PQSourceOrderPieceWrapper out;
        object.get_localOrderString(out);
        benchmark::DoNotOptimize(out);
    }
    pqbench::perOperation(state, renderedSize(object), allocations);
}
BENCHMARK(BM_JsonRender)->Arg(0)->Arg(1);

void BM_JsonBuildAndRender(benchmark::State& state) {
    const std::vector<JsonMember> members = pqbench::jsonMembers();
    const pqbench::AllocationsPerIteration allocations;
    std::size_t bytes = 0;
    for (auto _ : state) {
        PQJsonObject object;
        addMembers(object, members);
        PQSourceOrderPieceWrapper out;
        object.get_localOrderString(out);
        bytes = out.getStringSource()->size();
        benchmark::DoNotOptimize(out);
    }
    pqbench::perOperation(state, bytes, allocations);
}
BENCHMARK(BM_JsonBuildAndRender);

void BM_JsonOrderString(benchmark::State& state) {
    PQJsonOrder root(PQ_UTILS::PQReceivedOrderType_vordaApplicationResponse);
    auto object = std::make_unique<PQJsonObject>();
    addMembers(*object, pqbench::jsonMembers());
    root.addValue("content", std::move(object));
    const pqbench::AllocationsPerIteration allocations;
    for (auto _ : state) {
        benchmark::DoNotOptimize(root.get_orderString());
    }
    pqbench::perOperation(state, root.get_orderString().getStringSource()->size(), allocations);
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

std::string pqbench::ourJsonMembersText() {
    PQJsonObject object;
    addMembers(object, pqbench::jsonMembers());
    return *object.get_localOrderString().getStringSource();
}
