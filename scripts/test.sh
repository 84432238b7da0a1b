#!/usr/bin/env bash
# The whole test suite, from a fresh Debian machine: installs what is missing
# (with apt-get, when run as root), then configures, builds and runs every
# test five times: with GCC (AddressSanitizer + UndefinedBehaviorSanitizer,
# warnings as errors, clang-format and clang-tidy checks), with Clang (the
# same sanitizers, and the portable secure wipe), with Clang and libc++ (the
# same sanitizers), optimised (where GCC finds more to warn about), and
# optimised for aarch64, run under qemu-aarch64. Then the threads suite
# under ThreadSanitizer, every fuzz target for a few seconds
# (scripts/fuzz.sh runs them longer), the JavaScript package: its
# WebAssembly build and its tests, against the native pqorder, and the
# order inspector page's tests in headless Chromium.
set -euo pipefail
cd "$(dirname "$0")/.."

source scripts/ensure-packages.sh
# Besides the build: Clang and its sanitizer and fuzzer runtimes, libc++,
# the aarch64 cross compiler and emulator, the lint tools, GoogleTest,
# Google Benchmark and the peers it measures ours against, pkg-config for
# the package test, and the locale sources that a test builds a decimal
# comma locale from.
ensure_packages "${PQ_BUILD_PACKAGES[@]}" "${PQ_BENCH_PACKAGES[@]}" \
    "${PQ_LIBCXX_PACKAGES[@]}" "${PQ_ARM64_PACKAGES[@]}" \
    "/usr/share/i18n/locales/de_DE=locales" \
    "clang-format=clang-format" \
    "clang-tidy=clang-tidy" \
    "$PQ_GTEST_PACKAGE" \
    "$PQ_BENCHMARK_PACKAGE" \
    "pkg-config=pkgconf" \
    "/usr/lib/llvm-*/lib/clang/*/lib/linux/libclang_rt.asan-x86_64.a=libclang-rt-dev" \
    "${PQ_WASM_PACKAGES[@]}"

for preset in dev dev-clang libcxx release arm64; do
    echo "=== $preset ==="
    cmake --preset "$preset"
    cmake --build --preset "$preset"
    ctest --preset "$preset"
done

echo "=== tsan ==="
cmake --preset tsan
cmake --build --preset tsan
ctest --preset tsan

echo "=== fuzz ==="
./scripts/fuzz.sh

echo "=== wasm ==="
cmake --preset wasm
cmake --build --preset wasm
# Checked against the native pqorder of the release build above.
(cd bindings/js && PQORDER="$PWD/../../build/release/tools/pqorder/pqorder" node --test test/*.test.mjs)

echo "=== inspector ==="
# The order inspector page in Debian's Chromium, headless, driven by
# puppeteer-core from its lock file (which downloads no browser), opened
# from disk with the package the wasm build wrote next to it.
(cd web/inspector && npm ci --no-audit --no-fund &&
    PQORDER="$PWD/../../build/release/tools/pqorder/pqorder" node --test test/*.test.mjs)
