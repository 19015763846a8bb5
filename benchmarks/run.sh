#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Builds what the benchmarks need, runs the harness, writes benchmarks/results.md
# (--quick: <build>/benchmarks/results-quick.md) and prints, last, one line per
# compared figure:
#     RATIO <name> <wall|instr> <ratio> <target> <ok|MISS>
# wall: the median of the per-run ratios of wall time; instr: the ratio of the
# instructions counted in one run of each side under callgrind.
#
#     benchmarks/run.sh            sets of 10, 100 and 1000 plug-ins, 7 counted runs,
#                                  instructions of the set of 1000
#     benchmarks/run.sh --quick    the set of 10 only, 3 counted runs and its
#                                  instructions (the CI smoke), written to
#                                  <build>/benchmarks/results-quick.md
#     benchmarks/run.sh --callgrind <case>
#                                  one case alone under callgrind, e.g. warm_1000:
#                                  prints INSTR <case> <instructions> <per plug-in>
#
# ES_BENCH_BUILD_DIR chooses the build directory (default build-bench). Exits
# non-zero when a case fails its checks, not when a ratio misses its target.
set -euo pipefail
cd "$(dirname "$0")/.."

quick=0
callgrind=
[ "${1:-}" = "--quick" ] && quick=1
[ "${1:-}" = "--callgrind" ] && callgrind=${2:?"--callgrind needs a case, such as warm_1000"}

ES_WITH_BENCHMARKS=1 bash scripts/setup.sh

build=${ES_BENCH_BUILD_DIR:-build-bench}
peer=OFF
dpkg-query -W -f='${Status}' libkf5coreaddons-dev 2>/dev/null | grep -q "install ok installed" && peer=ON
[ "$peer" = ON ] || echo "run.sh: libkf5coreaddons-dev is missing: the peer is left out"
# The peer is built on Qt 5; a Qt 6 tree goes without it.
if grep -q '^QT_MAJOR_VERSION:STRING=6$' "$build/CMakeCache.txt" 2>/dev/null; then
    peer=OFF
    echo "run.sh: $build is built with Qt 6: the peer, built on Qt 5, is left out"
fi

args=(-DES_BUILD_BENCHMARKS=ON -DES_BENCHMARK_PEER=$peer)
if [ ! -f "$build/CMakeCache.txt" ]; then
    # A tree of its own needs neither the tests nor the examples.
    args+=(-DBUILD_TESTING=OFF -DES_BUILD_EXAMPLES=OFF)
fi
out=benchmarks/results.md
if [ $quick = 1 ]; then
    sizes=10; runs=3; counted=10
    # The smoke leaves the committed table alone.
    out="$build/benchmarks/results-quick.md"
    # Keep the sizes of a tree that has more; a new one gets only what it runs.
    grep -q '^ES_BENCHMARK_SIZES:' "$build/CMakeCache.txt" 2>/dev/null || args+=(-DES_BENCHMARK_SIZES=10)
else
    sizes=10,100,1000; runs=7; counted=1000
    args+=("-DES_BENCHMARK_SIZES=10;100;1000")
fi
# One case: only its set is built and prepared.
[ -n "$callgrind" ] && sizes=${callgrind##*_}

cmake -S . -B "$build" "${args[@]}" >/dev/null
targets=()
for size in ${sizes//,/ }; do targets+=(--target "es_bench_set_$size"); done
started=$(date +%s)
cmake --build "$build" -j2 "${targets[@]}"
built=$(( $(date +%s) - started ))

# The smoke writes its table into the build tree, so that it never replaces
# the table of a full run that benchmarks/README.md links to.
out=benchmarks/results.md
[ $quick = 1 ] && out="$build/benchmarks/results-quick.md"

if [ -n "$callgrind" ]; then
    exec "$build/benchmarks/bin/es-bench-harness" --dir "$build/benchmarks" --sizes "$sizes" --peer "$peer" \
        --callgrind "$callgrind"
fi

"$build/benchmarks/bin/es-bench-harness" --dir "$build/benchmarks" --sizes "$sizes" --runs "$runs" --warmup 1 \
    --peer "$peer" --out "$out" --instructions "$counted" \
    --note "Machine: $(nproc) cores, $(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2 | sed 's/^ *//'). Build step of this run (incremental): ${built} s."
