#!/usr/bin/env bash
# The whole test suite, from a fresh Debian machine: installs what is missing
# (with apt-get, when run as root), then configures, builds and runs every
# test three times: with GCC (AddressSanitizer + UndefinedBehaviorSanitizer,
# warnings as errors, clang-format and clang-tidy checks), with Clang (the
# same sanitizers), and optimised (where GCC finds more to warn about).
set -euo pipefail
cd "$(dirname "$0")/.."

# command-or-file -> Debian package
declare -A wanted=(
    [cmake]=cmake
    [ninja]=ninja-build
    [g++]=g++
    [clang++]=clang
    [clang-format]=clang-format
    [clang-tidy]=clang-tidy
)
missing=()
for command in "${!wanted[@]}"; do
    command -v "$command" >/dev/null 2>&1 || missing+=("${wanted[$command]}")
done
# Libraries: GoogleTest, Google Benchmark, a JSON parser to check our JSON
# against, and Clang's sanitizer runtime.
ls /usr/lib/*/cmake/GTest/GTestConfig.cmake >/dev/null 2>&1 || missing+=(libgtest-dev)
ls /usr/lib/*/cmake/benchmark/benchmarkConfig.cmake >/dev/null 2>&1 || missing+=(libbenchmark-dev)
ls /usr/share/cmake/nlohmann_json/nlohmann_jsonConfig.cmake >/dev/null 2>&1 ||
    missing+=(nlohmann-json3-dev)
if ! clang++ -print-file-name=libclang_rt.asan-x86_64.a 2>/dev/null | grep -q /; then
    missing+=(libclang-rt-dev)
fi

if ((${#missing[@]} > 0)); then
    if [[ $(id -u) -eq 0 ]]; then
        echo "Installing: ${missing[*]}"
        export DEBIAN_FRONTEND=noninteractive
        apt-get update -q
        apt-get install -y -q --no-install-recommends "${missing[@]}"
    else
        echo "Missing packages: ${missing[*]}; install them (as root: apt-get install ${missing[*]})" >&2
        exit 1
    fi
fi

for preset in dev dev-clang release; do
    echo "=== $preset ==="
    cmake --preset "$preset"
    cmake --build --preset "$preset"
    ctest --preset "$preset"
done
