#!/usr/bin/env bash
# Line coverage of SourceCode/ by the whole test suite: builds the coverage
# preset (GCC --coverage), runs the tests, and prints gcovr's table, then the
# total without the lines of the failure frame's handlers (PQ_CATCH_AND_TREAT
# after each operation: one macro, tested once, whose handlers run only when
# the operation fails). Installs gcovr when it is missing (as root).
set -euo pipefail
cd "$(dirname "$0")/.."

source scripts/ensure-packages.sh
ensure_packages "${PQ_BUILD_PACKAGES[@]}" "gcovr=gcovr" \
    "$PQ_GTEST_PACKAGE"

cmake --preset coverage >/dev/null
cmake --build --preset coverage >/dev/null
find build/coverage -name '*.gcda' -delete
ctest --preset coverage >/dev/null
gcovr --root . --filter 'SourceCode/' --object-directory build/coverage --sort-percentage --txt
echo "Without the frame handlers:"
gcovr --root . --filter 'SourceCode/' --object-directory build/coverage --txt \
    --exclude-lines-by-pattern '^\s*PQ_CATCH_AND_TREAT\w*(\(.*\))?\s*$' |
    grep '^TOTAL'
