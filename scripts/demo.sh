#!/usr/bin/env bash
# Set up, build in build/ and run the example host against the example plug-ins.
# Run it twice: the second run reads the unchanged extension files from the store.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/setup.sh

build=${ES_BUILD_DIR:-build}
cmake -S . -B "$build" -DES_BUILD_EXAMPLES=ON >/dev/null
cmake --build "$build" -j2 --target es-demo-host
exec "$build/examples/es-demo-host"
