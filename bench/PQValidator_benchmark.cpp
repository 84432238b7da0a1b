// Cost of one check on the inputs the product sees most: a 16-digit card
// number and a 16-byte password, with the allocations each makes (none
// expected).

#include <cstdint>

#include <benchmark/benchmark.h>

#include "PQAllocationCounter.h"
#include "PQUtils/Utils/PQCreditCardNumberValidator.h"
#include "PQUtils/Utils/PQPasswordValidator.h"
#include "PQUtils/Utils/PQUtil.h"

namespace {

using PQ_UTILS::kstring;
using PQ_UTILS::PQCreditCardNumberValidator;
using PQ_UTILS::PQPasswordValidator;

// Runs `check` once per iteration and reports calls/s and allocations.
template <class Check> void perCall(benchmark::State& state, const kstring& input, Check check) {
    const pqbench::AllocationsPerIteration allocations;
    for (auto _ : state) {
        benchmark::DoNotOptimize(check(input));
    }
    allocations.report(state);
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}

void BM_CardLuhn16(benchmark::State& state) {
    perCall(state, "4012888888881881", &PQCreditCardNumberValidator::isCardNumberValid);
}
BENCHMARK(BM_CardLuhn16);

// The textbook loop, as a user would write it: the yardstick of the one
// above.
bool plainLuhn(const kstring& number) {
    int sum = 0;
    bool doubled = false;
    for (std::size_t i = number.size(); i-- > 0;) {
        int digit = number[i] - '0';
        if (doubled) {
            digit *= 2;
            if (digit > 9) {
                digit -= 9;
            }
        }
        sum += digit;
        doubled = !doubled;
    }
    return sum % 10 == 0;
}

void BM_Reference_PlainLuhn16(benchmark::State& state) {
    perCall(state, "4012888888881881", &plainLuhn);
}
BENCHMARK(BM_Reference_PlainLuhn16);

void BM_CardType16(benchmark::State& state) {
    // A 2-series number: all three passes over the table.
    perCall(state, "2223003122003222", &PQCreditCardNumberValidator::getCardType);
}
BENCHMARK(BM_CardType16);

void BM_PasswordValid16(benchmark::State& state) {
    perCall(state, "Tr0ub4dor&3xyz!Q", [](const kstring& password) {
        unsigned int error = 0;
        return PQPasswordValidator::isValidPassword(password, error);
    });
}
BENCHMARK(BM_PasswordValid16);

void BM_PasswordValid16Forbidden(benchmark::State& state) {
    PQPasswordValidator::set_forbiddenChars({'#', '<', '>', '"', '\'', '`'});
    perCall(state, "Tr0ub4dor&3xyz!Q", [](const kstring& password) {
        unsigned int error = 0;
        return PQPasswordValidator::isValidPassword(password, error);
    });
    PQPasswordValidator::set_forbiddenChars({});
}
BENCHMARK(BM_PasswordValid16Forbidden);

void BM_UrlDecode(benchmark::State& state) {
    perCall(state, "https%3A%2F%2Fshop.example%2Fcart%3Fitem%3D42%26q%3Dsocks%2520blue",
            &PQ_UTILS::PQUtil::urlDecode);
}
BENCHMARK(BM_UrlDecode);

} // namespace
