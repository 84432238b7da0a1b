// The peers of the string utilities, on the inputs of PQString_benchmark:
// Abseil's StrReplaceAll for the order-text escapes both ways, Abseil's
// Base64Escape and OpenSSL's EVP_EncodeBlock for Base64.

#include <absl/strings/escaping.h>
#include <absl/strings/str_replace.h>
#include <openssl/evp.h>
#include <string>

#include "PQBenchInputs.h"
#include "PQUtils/Utils/PQString.h"

namespace {

using pqbench::orderValueText;
using pqbench::throughput;

// StrReplaceAll replaces all three at once, leftmost first, which on this
// input gives the same text as the writer's three passes.
void BM_Peer_Abseil_Escape(benchmark::State& state) {
    throughput(state, orderValueText(), [](const std::string& text) {
        return absl::StrReplaceAll(text, {{"=", "--equ--"}, {"&", "--amp--"}, {"//", "--dbsl--"}});
    });
}
BENCHMARK(BM_Peer_Abseil_Escape);

void BM_Peer_Abseil_Unescape(benchmark::State& state) {
    throughput(state, *PQ_UTILS::PQString::restorePQEntities(orderValueText()),
               [](const std::string& text) {
                   return absl::StrReplaceAll(
                       text, {{"--equ--", "="}, {"--amp--", "&"}, {"--dbsl--", "//"}});
               });
}
BENCHMARK(BM_Peer_Abseil_Unescape);

void BM_Peer_Abseil_Base64(benchmark::State& state) {
    throughput(state, orderValueText(),
               [](const std::string& text) { return absl::Base64Escape(text); });
}
BENCHMARK(BM_Peer_Abseil_Base64);

void BM_Peer_OpenSSL_Base64(benchmark::State& state) {
    throughput(state, orderValueText(), [](const std::string& text) {
        std::string encoded((text.size() + 2) / 3 * 4 + 1, '\0');
        const int length =
            EVP_EncodeBlock(reinterpret_cast<unsigned char*>(encoded.data()),    // NOLINT
                            reinterpret_cast<const unsigned char*>(text.data()), // NOLINT
                            static_cast<int>(text.size()));
        encoded.resize(static_cast<std::size_t>(length));
        return encoded;
    });
}
BENCHMARK(BM_Peer_OpenSSL_Base64);

} // namespace
