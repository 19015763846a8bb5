#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Installs what a fresh Debian 12 machine lacks to build and test the library.
# Quiet and quick when everything is already there.
#
#   scripts/setup.sh [qt6] [docs] [format] [fuzz] [valgrind] [benchmarks]
#
# "qt6" adds Qt 6 (Debian 12 has 6.4), for builds with -DQT_MAJOR_VERSION=6;
# "docs" adds Doxygen, for the API reference (the target "docs");
# "fuzz" adds clang with its libFuzzer runtime, "valgrind" adds valgrind,
# "benchmarks" the KCoreAddons headers the benchmarks compare with, SQLite's
# headers, with which they record the store's SQL, and valgrind, with which they
# count instructions.
set -euo pipefail

required=(cmake g++ qtbase5-dev qtbase5-private-dev libqt5sql5-sqlite)
optional=(ccache)
for feature in "$@"; do
    case "$feature" in
        qt6) required+=(qt6-base-dev qt6-base-private-dev libqt6sql6-sqlite) ;;
        docs) required+=(doxygen) ;;
        format) required+=(clang-format) ;;
        fuzz) required+=(clang libclang-rt-14-dev) ;;
        valgrind) required+=(valgrind) ;;
        benchmarks) required+=(libkf5coreaddons-dev libsqlite3-dev valgrind) ;;
        *) echo "setup: unknown feature '$feature'" >&2; exit 2 ;;
    esac
done
# The benchmarks compare with KCoreAddons; it is installed only when benchmarks are
# asked for (the feature "benchmarks", or ES_WITH_BENCHMARKS=1).
if [ "${ES_WITH_BENCHMARKS:-0}" = 1 ]; then
    required+=(libkf5coreaddons-dev libsqlite3-dev valgrind)
fi

missing=()
for pkg in "${required[@]}" "${optional[@]}"; do
    dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q "install ok installed" || missing+=("$pkg")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
echo "setup: installing ${missing[*]}"
$sudo apt-get update -qq
export DEBIAN_FRONTEND=noninteractive
for pkg in "${missing[@]}"; do
    if printf '%s\n' "${optional[@]}" | grep -qx "$pkg"; then
        $sudo apt-get install -y -qq --no-install-recommends "$pkg" >/dev/null || echo "setup: $pkg not available, going on without it"
    fi
done
required_missing=()
for pkg in "${missing[@]}"; do
    printf '%s\n' "${optional[@]}" | grep -qx "$pkg" || required_missing+=("$pkg")
done
if [ ${#required_missing[@]} -gt 0 ]; then
    $sudo apt-get install -y -qq --no-install-recommends "${required_missing[@]}" >/dev/null
fi
