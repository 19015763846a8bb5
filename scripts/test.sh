#!/usr/bin/env bash
# Set up, build in build/ and run the whole test suite. Non-zero on any failure.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup.sh

build=${ES_BUILD_DIR:-build}
cmake -S . -B "$build" -DBUILD_TESTING=ON "$@" >/dev/null
cmake --build "$build" -j2
cd "$build"
QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j2

# Benchmark smoke: builds the benchmarks in the same tree and runs the set of
# 10 plug-ins once through every case. Fails when a case fails its checks;
# the ratios are printed, not judged (benchmarks/run.sh).
cd "$(dirname "$(readlink -f "$0")")/.."
ES_BENCH_BUILD_DIR="$build" bash benchmarks/run.sh --quick
