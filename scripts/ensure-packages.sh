# shellcheck shell=bash
# Sourced by the scripts that a fresh Debian machine runs first. Installs the
# Debian packages that are missing (with apt-get, when run as root):
#   ensure_packages "cmake=cmake" "/usr/share/cmake/CLI11/CLI11Config.cmake=libcli11-dev"
# Each argument is WHAT=PACKAGE, WHAT being a command on the PATH or a file
# pattern that some installed file matches. A package of another
# architecture (libgtest-dev:arm64) turns that architecture on first
# (Debian multiarch).

ensure_packages() {
    local missing=() architectures=() wanted what package architecture
    for wanted in "$@"; do
        what=${wanted%=*}
        package=${wanted##*=}
        if [[ $what == /* ]]; then
            compgen -G "$what" >/dev/null || missing+=("$package")
        else
            command -v "$what" >/dev/null 2>&1 || missing+=("$package")
        fi
    done
    ((${#missing[@]} > 0)) || return 0
    if [[ $(id -u) -ne 0 ]]; then
        echo "Missing packages: ${missing[*]}; install them (as root: apt-get install ${missing[*]})" >&2
        exit 1
    fi
    for package in "${missing[@]}"; do
        [[ $package == *:* ]] || continue
        architecture=${package##*:}
        if [[ $architecture != "$(dpkg --print-architecture)" ]] &&
            ! dpkg --print-foreign-architectures | grep -qx "$architecture"; then
            architectures+=("$architecture")
        fi
    done
    for architecture in "${architectures[@]}"; do
        echo "Adding the architecture $architecture"
        dpkg --add-architecture "$architecture"
    done
    echo "Installing: ${missing[*]}"
    export DEBIAN_FRONTEND=noninteractive
    apt-get update -q
    apt-get install -y -q --no-install-recommends "${missing[@]}"
}

# The machine's own library directory (/usr/lib/$PQ_MULTIARCH): a library
# of another architecture, installed beside it, must not stand for it.
# shellcheck disable=SC2034 # used by the scripts that source this file
PQ_MULTIARCH="$(uname -m)-linux-gnu"

# GoogleTest and Google Benchmark, built for this machine.
# shellcheck disable=SC2034 # used by the scripts that source this file
PQ_GTEST_PACKAGE="/usr/lib/$PQ_MULTIARCH/cmake/GTest/GTestConfig.cmake=libgtest-dev"
# shellcheck disable=SC2034 # used by the scripts that source this file
PQ_BENCHMARK_PACKAGE="/usr/lib/$PQ_MULTIARCH/cmake/benchmark/benchmarkConfig.cmake=libbenchmark-dev"

# What every build of the project needs: the build tools and the libraries of
# the command-line tool.
# shellcheck disable=SC2034 # used by the scripts that source this file
PQ_BUILD_PACKAGES=(
    "cmake=cmake"
    "ninja=ninja-build"
    "g++=g++"
    "/usr/share/cmake/CLI11/CLI11Config.cmake=libcli11-dev"
    "/usr/share/cmake/nlohmann_json/nlohmann_jsonConfig.cmake=nlohmann-json3-dev"
)

# The peer libraries that the benchmarks measure beside ours (nlohmann/json,
# the other JSON peer, is a build package already). Debian 12 has Boost.URL
# only as a package named after its Boost version.
# shellcheck disable=SC2034 # used by the scripts that source this file
PQ_BENCH_PACKAGES=(
    "/usr/include/absl/strings/str_replace.h=libabsl-dev"
    "/usr/include/openssl/evp.h=libssl-dev"
    "/usr/lib/*/cmake/boost_url-*/boost_url-config.cmake=libboost-url1.81-dev"
    "/usr/include/rapidjson/writer.h=rapidjson-dev"
)

# The libcxx preset: Clang's own standard library, and the GoogleTest
# sources that it builds against that library (the packaged GoogleTest is
# built against GCC's).
# shellcheck disable=SC2034 # used by the scripts that source this file
PQ_LIBCXX_PACKAGES=(
    "clang++=clang"
    "/usr/lib/llvm-*/include/c++/v1/string=libc++-dev"
    "/usr/lib/llvm-*/lib/libc++abi.a=libc++abi-dev"
    "/usr/src/googletest/CMakeLists.txt=googletest"
)

# The arm64 preset: the cross compiler, the emulator that runs what it
# builds, and GoogleTest built for arm64 (multiarch).
# shellcheck disable=SC2034 # used by the scripts that source this file
PQ_ARM64_PACKAGES=(
    "aarch64-linux-gnu-g++=g++-aarch64-linux-gnu"
    "qemu-aarch64=qemu-user"
    "/usr/lib/aarch64-linux-gnu/cmake/GTest/GTestConfig.cmake=libgtest-dev:arm64"
)

# The wasm preset and the JavaScript package's tests: Emscripten (its Debian
# build runs on the system's Clang and reads acorn from NODE_PATH), Node.js
# with npm for the package and the inspector page's test dependencies, and
# Chromium for the strict CSP page and the inspector page's tests. Node.js is
# any version from 18 on, Debian's or another one already installed.
# shellcheck disable=SC2034 # used by the scripts that source this file
PQ_WASM_PACKAGES=(
    "emcc=emscripten"
    "/usr/share/nodejs/acorn/package.json=node-acorn"
    "node=nodejs"
    "npm=npm"
    "chromium=chromium"
)
