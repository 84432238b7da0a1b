#pragma once

// Inputs and measuring loops shared by our benchmarks and the peers', so
// that both sides do the same work on the same bytes.

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "PQAllocationCounter.h"

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

using KeyValues = std::vector<std::pair<std::string, std::string>>;

// The 20 pieces of an order, "field0" to "field19", with values of about 90
// bytes, one in four with characters to escape.
inline KeyValues orderPieces() {
    KeyValues pieces;
    for (int i = 0; i < 20; ++i) {
        std::string value(80, static_cast<char>('a' + i));
        value.append(i % 4 == 0 ? "?q=1&r=https://x" : "0123456789");
        pieces.emplace_back(std::string("field").append(std::to_string(i)), std::move(value));
    }
    return pieces;
}

// One member of a JSON object, as plain data that each library builds its
// own tree from.
struct JsonMember {
    enum class Kind : std::uint8_t { String, Number, Boolean, Array };
    std::string key;
    Kind kind{};
    // The string, or the JSON text of the number or boolean.
    std::string text;
    // The number's value, for the libraries that take numbers rather than text.
    std::int64_t number{};
    // The strings of an array.
    std::vector<std::string> items;
};

// 200 members of four kinds in turn: a string with characters to escape, an
// integer, a boolean, an array of five strings.
inline std::vector<JsonMember> jsonMembers() {
    std::vector<JsonMember> members(200);
    for (std::size_t i = 0; i < members.size(); ++i) {
        JsonMember& member = members[i];
        member.key = std::string("member").append(std::to_string(i));
        member.kind = static_cast<JsonMember::Kind>(i % 4);
        switch (member.kind) {
        case JsonMember::Kind::String:
            member.text = std::string("say \"hi\" to C:\\temp\nand go ").append(std::to_string(i));
            break;
        case JsonMember::Kind::Number:
            member.number = static_cast<std::int64_t>(i) * 1000 + 7;
            member.text = std::to_string(member.number);
            break;
        case JsonMember::Kind::Boolean:
            member.text = i % 8 == 2 ? "true" : "false";
            break;
        case JsonMember::Kind::Array:
            for (int j = 0; j < 5; ++j) {
                member.items.push_back(std::string("item ").append(std::to_string(j)));
            }
            break;
        }
    }
    return members;
}

// Our rendering of jsonMembers() as one object (defined beside our JSON
// benchmarks): the text each peer's output must agree with.
std::string ourJsonMembersText();

// With `churned` set, builds trees with `build` (a tree per call, returned
// by unique_ptr) and destroys them in another order than they were made:
// the allocators' free lists then hand out memory the way a process that
// has run for a while does, not in the order of the next tree's nodes.
template <class Build> void churn(std::int64_t churned, Build build) {
    if (churned == 0) {
        return;
    }
    constexpr std::size_t kTrees = 4;
    for (int round = 0; round < 16; ++round) {
        std::vector<decltype(build())> trees;
        trees.reserve(kTrees);
        for (std::size_t i = 0; i < kTrees; ++i) {
            trees.push_back(build());
        }
        for (const std::size_t i : {2U, 0U, 3U, 1U}) {
            trees[i].reset();
        }
    }
}

// Runs `operation` over `input` and reports the bytes it reads per second.
template <class Operation>
void throughput(benchmark::State& state, const std::string& input, Operation operation) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(operation(input));
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * input.size()));
}

// Reports operations per second, `bytes` of text per operation per second,
// and the allocations per operation counted since `allocations` was made.
inline void perOperation(benchmark::State& state, std::size_t bytes,
                         const AllocationsPerIteration& allocations) {
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes));
    allocations.report(state);
}

} // namespace pqbench
