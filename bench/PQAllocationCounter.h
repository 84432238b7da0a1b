#pragma once

// Counts the heap allocations of the benchmark executable, so that a
// benchmark can report how many one operation makes.

#include <cstdint>

#include <benchmark/benchmark.h>

namespace pqbench {

// Allocations made by this thread so far.
std::uint64_t allocationCount() noexcept;

// Reports allocations per iteration of the loop that ran between the
// construction of the object and this call.
class AllocationsPerIteration {
public:
    AllocationsPerIteration() : m_start(allocationCount()) {}
    void report(benchmark::State& state) const {
        state.counters["allocs/op"] =
            benchmark::Counter(static_cast<double>(allocationCount() - m_start) /
                               static_cast<double>(state.iterations()));
    }

private:
    std::uint64_t m_start;
};

} // namespace pqbench
