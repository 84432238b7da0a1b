#pragma once

// What every fuzz target shares: the entry point that libFuzzer (or the
// replay main) calls, a quiet library, and checks that abort on a broken
// property so that the fuzzer records the input.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "PQDebug/PQDebug.h"
#include "PQUtils/Utils/PQInit.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace pqfuzz {

// Starts the library once, with its log dropped: reports of bad input are
// expected by the thousand and prove nothing.
inline void startLibrary() {
    static const bool started = [] {
        PQ_DEBUG::PQDebug::setLogSink([](const PQ_DEBUG::PQLogRecord&) {});
        PQ_UTILS::PQInit::init();
        return true;
    }();
    (void)started;
}

inline std::string textOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size}; // NOLINT: bytes as text
}

// Aborts with `what` when a property does not hold.
inline void check(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "property broken: %s\n", what);
        std::abort();
    }
}

// Splits `text` at its first zero byte: two inputs from one.
inline std::pair<std::string, std::string> split(const std::string& text) {
    const std::size_t zero = text.find('\0');
    if (zero == std::string::npos) {
        return {text, {}};
    }
    return {text.substr(0, zero), text.substr(zero + 1)};
}

} // namespace pqfuzz
