#!/usr/bin/env bash
# Fails, showing the differences, when a C++ file of the project is not
# formatted as .clang-format says. Run with --fix to format them instead.
set -euo pipefail
cd "$(dirname "$0")/.."
mapfile -t files < <(find SourceCode tests examples tools bench fuzz bindings \
    \( -name '*.cpp' -o -name '*.h' \) -type f 2>/dev/null | sort)
if [[ "${1:-}" == "--fix" ]]; then
    clang-format -i "${files[@]}"
    exit 0
fi
status=0
for file in "${files[@]}"; do
    if ! diff -u "$file" <(clang-format "$file") >/dev/null; then
        diff -u "$file" <(clang-format "$file") | head -40 || true
        status=1
    fi
done
if [[ $status -eq 0 ]]; then
    echo "clang-format: ${#files[@]} files formatted"
fi
exit $status
