#!/usr/bin/env bash
# The library's main job, from a fresh Debian machine: installs what is
# missing (with apt-get, when run as root), builds the pqorder tool
# optimised, and runs its guided tour. Arguments replace "demo":
#   scripts/demo.sh parse 'action=log&level=3&//'
set -euo pipefail
cd "$(dirname "$0")/.."

source scripts/ensure-packages.sh
ensure_packages "${PQ_BUILD_PACKAGES[@]}"

cmake --preset tool >/dev/null
cmake --build --preset tool --target pqorder >/dev/null
if (($# == 0)); then
    set -- demo
fi
exec build/tool/tools/pqorder/pqorder "$@"
