#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Set up, build and run the example host against the example plug-ins.
# Run it twice: the second run reads the unchanged extension files from the store.
#
#   scripts/demo.sh                      Qt 5, in build/
#   QT_MAJOR_VERSION=6 scripts/demo.sh   Qt 6, in build-qt6/
set -euo pipefail
cd "$(dirname "$0")/.."

qt=${QT_MAJOR_VERSION:-5}
case "$qt" in
    5) build=${ES_BUILD_DIR:-build}; bash scripts/setup.sh ;;
    6) build=${ES_BUILD_DIR:-build-qt6}; bash scripts/setup.sh qt6 ;;
    *) echo "demo: QT_MAJOR_VERSION is '$qt'; it must be 5 or 6" >&2; exit 2 ;;
esac

cmake -S . -B "$build" -DQT_MAJOR_VERSION="$qt" -DES_BUILD_EXAMPLES=ON >/dev/null
cmake --build "$build" -j2 --target es-demo-host es-inspect
status=0
"$build/examples/es-demo-host" || status=$?
echo
echo "Why each plug-in runs or does not, and what the store holds:"
echo "    $build/bin/es-inspect --extensions $build/examples"
exit $status
