#!/usr/bin/env bash
# The whole test suite, from a fresh Debian machine: installs what is missing
# (with apt-get, when run as root), then configures, builds and runs every
# test three times: with GCC (AddressSanitizer + UndefinedBehaviorSanitizer,
# warnings as errors, clang-format and clang-tidy checks), with Clang (the
# same sanitizers), and optimised (where GCC finds more to warn about). Then
# the threads suite under ThreadSanitizer, and every fuzz target for a few
# seconds (scripts/fuzz.sh runs them longer).
set -euo pipefail
cd "$(dirname "$0")/.."

source scripts/ensure-packages.sh
# Besides the build: Clang and its sanitizer and fuzzer runtimes, the lint
# tools, GoogleTest, Google Benchmark and the peers it measures ours
# against, and pkg-config for the package test.
ensure_packages "${PQ_BUILD_PACKAGES[@]}" "${PQ_BENCH_PACKAGES[@]}" \
    "clang++=clang" \
    "clang-format=clang-format" \
    "clang-tidy=clang-tidy" \
    "/usr/lib/*/cmake/GTest/GTestConfig.cmake=libgtest-dev" \
    "/usr/lib/*/cmake/benchmark/benchmarkConfig.cmake=libbenchmark-dev" \
    "pkg-config=pkgconf" \
    "/usr/lib/llvm-*/lib/clang/*/lib/linux/libclang_rt.asan-x86_64.a=libclang-rt-dev"

for preset in dev dev-clang release; do
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
