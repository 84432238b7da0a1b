// The peers of the string utilities, on the sweep inputs of
// PQString_benchmark:
// Abseil's StrReplaceAll for the order-text escapes both ways, Abseil's
// Base64Escape and OpenSSL's EVP_EncodeBlock for Base64.

#include <absl/strings/escaping.h>
#include <absl/strings/str_replace.h>
#include <openssl/evp.h>
#include <string>

#include "PQBenchInputs.h"
#include "PQBenchSweep.h"
#include "PQUtils/Utils/PQString.h"

namespace {

using PQ_UTILS::PQString;
using pqbench::throughput;

// StrReplaceAll replaces all three at once, leftmost first, which on the
// sweep's texts gives the same text as the writer's passes; each point is
// checked before it is timed.
std::string abseilEscape(const std::string& text) {
    return absl::StrReplaceAll(text, {{"=", "--equ--"}, {"&", "--amp--"}, {"//", "--dbsl--"}});
}

std::string abseilUnescape(const std::string& text) {
    return absl::StrReplaceAll(text, {{"--equ--", "="}, {"--amp--", "&"}, {"--dbsl--", "//"}});
}

void BM_Peer_Abseil_Escape(benchmark::State& state) {
    const std::string& text = pqbench::sweepInput(state);
    if (pqbench::sameOutput(state, *PQString::restorePQEntities(text), abseilEscape(text))) {
        throughput(state, text, abseilEscape);
    }
}
BENCHMARK(BM_Peer_Abseil_Escape)->Apply(pqbench::sweepArgs);

void BM_Peer_Abseil_Unescape(benchmark::State& state) {
    const std::string& text = pqbench::sweepEscapedInput(state);
    if (pqbench::sameOutput(state, *PQString::removePQEntities(text), abseilUnescape(text))) {
        throughput(state, text, abseilUnescape);
    }
}
BENCHMARK(BM_Peer_Abseil_Unescape)->Apply(pqbench::sweepArgs);

void BM_Peer_Abseil_Base64(benchmark::State& state) {
    const std::string& bytes = pqbench::sweepBytes(state);
    const auto encode = [](const std::string& text) { return absl::Base64Escape(text); };
    if (pqbench::sameOutput(state, *PQString::toBase64(bytes, bytes.size()), encode(bytes))) {
        throughput(state, bytes, encode);
    }
}
BENCHMARK(BM_Peer_Abseil_Base64)->Apply(pqbench::sizeArgs);

std::string openSslBase64(const std::string& text) {
    std::string encoded((text.size() + 2) / 3 * 4 + 1, '\0');
    const int length =
        EVP_EncodeBlock(reinterpret_cast<unsigned char*>(encoded.data()),    // NOLINT
                        reinterpret_cast<const unsigned char*>(text.data()), // NOLINT
                        static_cast<int>(text.size()));
    encoded.resize(static_cast<std::size_t>(length));
    return encoded;
}

void BM_Peer_OpenSSL_Base64(benchmark::State& state) {
    const std::string& bytes = pqbench::sweepBytes(state);
    if (pqbench::sameOutput(state, *PQString::toBase64(bytes, bytes.size()),
                            openSslBase64(bytes))) {
        throughput(state, bytes, openSslBase64);
    }
}
BENCHMARK(BM_Peer_OpenSSL_Base64)->Apply(pqbench::sizeArgs);

} // namespace
