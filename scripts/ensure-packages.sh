# shellcheck shell=bash
# Sourced by the scripts that a fresh Debian machine runs first. Installs the
# Debian packages that are missing (with apt-get, when run as root):
#   ensure_packages "cmake=cmake" "/usr/share/cmake/CLI11/CLI11Config.cmake=libcli11-dev"
# Each argument is WHAT=PACKAGE, WHAT being a command on the PATH or a file
# pattern that some installed file matches.

ensure_packages() {
    local missing=() wanted what package
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
    echo "Installing: ${missing[*]}"
    export DEBIAN_FRONTEND=noninteractive
    apt-get update -q
    apt-get install -y -q --no-install-recommends "${missing[@]}"
}

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
