#!/usr/bin/env bash
# Runs every fuzz target for SECONDS (default 7) each, JOBS at a time
# (default: the cores), from its seed corpus, and fails on any finding.
# A finding is copied into fuzz/corpus/TARGET/ so that the test run replays
# it from then on. Needs the fuzz preset (Clang); builds it.
#   scripts/fuzz.sh            # the short run of CI
#   scripts/fuzz.sh 600 2      # ten minutes per target, two at a time
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-7}
jobs=${2:-$(nproc)}

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz >/dev/null
work=build/fuzz/runs
mkdir -p "$work"

run() {
    local target=$1 log="$work/$1.log"
    mkdir -p "$work/$target"
    if build/fuzz/fuzz/"$target" -max_total_time="$seconds" -max_len=4096 -timeout=10 \
        -rss_limit_mb=2048 -print_final_stats=1 -artifact_prefix="$work/$target-" \
        "$work/$target" "fuzz/corpus/$target" >"$log" 2>&1; then
        echo "$target: $(grep -m1 -o 'stat::number_of_executed_units: *[0-9]*' "$log" | grep -o '[0-9]*$') runs," \
            "$(grep -o 'cov: [0-9]*' "$log" | tail -1 | grep -o '[0-9]*') edges, no finding"
    else
        for finding in "$work/$target"-*; do
            [[ -f $finding ]] && cp "$finding" "fuzz/corpus/$target/finding-$(basename "$finding")"
        done
        echo "$target: FINDING (log: $log; input copied into fuzz/corpus/$target/)"
        grep -m3 -E 'property broken|ERROR|what\(\)' "$log" | sed 's/^/    /'
        return 1
    fi
}
export -f run
export seconds work

targets=$(grep -oE '^ +fuzz_[a-z0-9_]+' fuzz/CMakeLists.txt)
# shellcheck disable=SC2086 # one target per word
printf '%s\n' $targets | xargs -P "$jobs" -I{} bash -c 'run {}'
