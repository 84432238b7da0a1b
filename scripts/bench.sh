#!/usr/bin/env bash
# Runs the benchmarks (ours and the peer libraries', side by side in one
# run, on the same inputs) and prints, for each performance target, our
# median, the peer's median and the ratio, as a Markdown table. A target
# over a sweep (benchmarks named NAME/DENSITY/SIZE) is judged by its worst
# point, whose medians are the ones shown:
#   scripts/bench.sh [REPETITIONS]   (default 5)
# Exits 1 when a target is missed. Times are CPU time per operation.
set -euo pipefail
cd "$(dirname "$0")/.."
repetitions=${1:-5}

source scripts/ensure-packages.sh
ensure_packages "${PQ_BUILD_PACKAGES[@]}" "${PQ_BENCH_PACKAGES[@]}" \
    "$PQ_GTEST_PACKAGE" \
    "$PQ_BENCHMARK_PACKAGE" \
    "python3=python3"

cmake --preset release >/dev/null
cmake --build --preset release --target PQUtils_benchmark >/dev/null
results=build/release/bench/results.json
log=build/release/bench/results.log
# Interleaved repetitions: the machine's drift over minutes falls on ours
# and the peers' alike rather than on whichever ran during a slow spell.
if ! build/release/bench/PQUtils_benchmark --benchmark_repetitions="$repetitions" \
    --benchmark_enable_random_interleaving=true \
    --benchmark_report_aggregates_only=true \
    --benchmark_out_format=json --benchmark_out="$results" >"$log" 2>&1; then
    cat "$log" >&2
    exit 2
fi

exec python3 - "$results" "$repetitions" <<'PY'
import json
import sys

# What each target says, our benchmark, the peer's, how they compare, the bound:
#   faster: the peer's time / ours is at least the bound
#   within: our time / the peer's is at most the bound
#   rate:   our bytes per second is at least the bound (GB/s)
#   time:   our time is at most the bound (ns)
#   allocs: our allocations per operation are at most the bound
# A sixth item makes a row a sweep: the points of NAME/DENSITY/SIZE (density
# in tenths of a percent) within its bounds, or of NAME/CASE, each of ours
# paired with the peer's point of the same suffix, the row judged by the
# worst one.
ESCAPES = {"max_density": 100, "min_size": 2048}  # up to 10%, 2 KiB and up
MIB = {"min_size": 1 << 20}
TARGETS = [
    ("Escape order text (restorePQEntities) vs Abseil StrReplaceAll",
     "BM_RestorePQEntities", "BM_Peer_Abseil_Escape", "faster", 2, ESCAPES),
    ("Escape an order value (the order writer) vs Abseil StrReplaceAll",
     "BM_OrderWriterEscape", "BM_Peer_Abseil_Escape", "faster", 2, ESCAPES),
    ("Unescape it (removePQEntities) vs Abseil StrReplaceAll",
     "BM_RemovePQEntities", "BM_Peer_Abseil_Unescape", "faster", 3, ESCAPES),
    ("Unescape an order value (the order reader) vs Abseil StrReplaceAll",
     "BM_OrderReaderUnescape", "BM_Peer_Abseil_Unescape", "faster", 3, ESCAPES),
    ("Base64 of 1 MiB (toBase64) vs Abseil Base64Escape",
     "BM_ToBase64", "BM_Peer_Abseil_Base64", "faster", 1.5, MIB),
    ("Base64 of 1 MiB (toBase64) vs OpenSSL EVP_EncodeBlock",
     "BM_ToBase64", "BM_Peer_OpenSSL_Base64", "faster", 1, MIB),
    ("Cipher 1 MiB (simpleCipher)", "BM_SimpleCipher", None, "rate", 2),
    ("Parse a 20-piece order vs Boost.URL parse_query",
     "BM_ParseOrder", "BM_Peer_BoostUrl_ParseQuery", "faster", 3),
    ("Parse orders of 64 B to 1 MiB, 0 to 50% specials, vs Boost.URL parse_query",
     "BM_ParseOrderSweep", "BM_Peer_BoostUrl_ParseQuerySweep", "faster", 3, {}),
    ("Render it (get_orderString) vs Boost.URL building the query",
     "BM_RenderOrder", "BM_Peer_BoostUrl_BuildQuery", "faster", 1),
    ("Render it vs Boost.URL parsing the query",
     "BM_RenderOrder", "BM_Peer_BoostUrl_ParseQuery", "faster", 2),
    ("Allocations to parse it: at most 1 per piece (20 pieces, the action aside)",
     "BM_ParseOrder", None, "allocs", 20),
    ("Render a 200-member JSON tree vs RapidJSON Writer, built fresh (0) and after churn (1)",
     "BM_JsonRender", "BM_Peer_RapidJson_Render", "faster", 1.2, {}),
    ("Build and render it vs nlohmann/json",
     "BM_JsonBuildAndRender", "BM_Peer_Nlohmann_BuildAndRender", "faster", 1),
    ("Luhn on 16 digits (isCardNumberValid) vs a plain loop",
     "BM_CardLuhn16", "BM_Reference_PlainLuhn16", "within", 1.5),
    ("Allocations of the Luhn check", "BM_CardLuhn16", None, "allocs", 0),
    ("isValidPassword on 16 bytes", "BM_PasswordValid16", None, "time", 30),
    ("Allocations of the password check", "BM_PasswordValid16", None, "allocs", 0),
]

# Shown in bytes per second rather than time per operation.
BY_THE_BYTE = ("BM_RestorePQEntities", "BM_OrderWriterEscape", "BM_Peer_Abseil_Escape",
               "BM_RemovePQEntities", "BM_OrderReaderUnescape", "BM_Peer_Abseil_Unescape",
               "BM_ToBase64", "BM_Peer_Abseil_Base64", "BM_Peer_OpenSSL_Base64",
               "BM_SimpleCipher")
NS_PER_UNIT = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
medians = {}
for run in json.load(open(sys.argv[1]))["benchmarks"]:
    if run.get("aggregate_name") == "median":
        medians[run["run_name"]] = run


def sweep_points(name, bounds):
    """The suffixes ("/DENSITY/SIZE", or "/CASE") of the points of `name`
    within `bounds`, which only a density and a size are held to."""
    points = []
    for run_name in medians:
        parts = run_name.split("/")
        if parts[0] != name or len(parts) < 2:
            continue
        if len(parts) == 3:
            density, size = int(parts[1]), int(parts[2])
            if density > bounds.get("max_density", density) or size < bounds.get("min_size", 0):
                continue
        points.append("/" + "/".join(parts[1:]))
    return sorted(points, key=lambda p: tuple(int(x) for x in p.split("/")[1:]))


def ns(name):
    run = medians[name]
    return run["cpu_time"] * NS_PER_UNIT[run["time_unit"]]


def shown(name):
    run = medians[name]
    if name.split("/")[0] in BY_THE_BYTE:
        return f"{run['bytes_per_second'] / 1e9:.2f} GB/s"
    return f"{ns(name) / 1e3:.2f} µs" if ns(name) >= 1e3 else f"{ns(name):.1f} ns"


print("| Target | Ours | Peer | Ratio | Needed | Met |")
print("|---|---|---|---|---|---|")
met = 0
for label, ours, peer, kind, bound, *sweep in TARGETS:
    if sweep:
        # The worst point decides; its names stand in for the row's.
        points = [p for p in sweep_points(ours, sweep[0]) if not peer or peer + p in medians]
        if not points:
            print(f"| {label} | not run | | | | no |")
            continue
        if kind == "faster":
            worst = min(points, key=lambda p: ns(peer + p) / ns(ours + p))
        else:
            worst = max(points, key=lambda p: ns(ours + p))
        count = f"{len(points)} points" if len(points) > 1 else "1 point"
        label = f"{label}, worst of {count} ({worst[1:]})"
        ours, peer = ours + worst, peer + worst if peer else None
    if ours not in medians or (peer and peer not in medians):
        print(f"| {label} | not run | | | | no |")
        continue
    cells = [shown(ours), shown(peer) if peer else "", "", ""]
    if kind == "faster":
        ratio = ns(peer) / ns(ours)
        ok = ratio >= bound
        cells[2:] = [f"{ratio:.2f}x", f"at least {bound}x"]
    elif kind == "within":
        ratio = ns(ours) / ns(peer)
        ok = ratio <= bound
        cells[2:] = [f"{ratio:.2f}x the time", f"at most {bound}x"]
    elif kind == "rate":
        rate = medians[ours]["bytes_per_second"] / 1e9
        ok = rate >= bound
        cells[0], cells[3] = f"{rate:.2f} GB/s", f"at least {bound} GB/s"
    elif kind == "time":
        ok = ns(ours) <= bound
        cells[3] = f"under {bound} ns"
    else:
        allocs = medians[ours].get("allocs/op", 0)
        ok = allocs <= bound + 0.01
        cells[0], cells[3] = f"{allocs:.0f} per op", f"at most {bound}"
    met += ok
    print(f"| {label} | " + " | ".join(cells) + f" | {'yes' if ok else 'no'} |")

print(f"\n{met} of {len(TARGETS)} targets met (medians of {sys.argv[2]} runs)")
sys.exit(0 if met == len(TARGETS) else 1)
PY
