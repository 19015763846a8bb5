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
