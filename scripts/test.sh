#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# Set up, build and run every test stage. Non-zero on any failure.
#
#   scripts/test.sh [extra cmake arguments for build/]
#
# Stages, all by default, in this order (ES_TEST_STAGES="normal asan" picks some):
#   format                 every C++ file laid out as .clang-format says, and the folder
#                          rules of src/ (which folder may include which)
#   normal    build/       the whole CTest suite
#   docs      build/       the API reference (Doxygen); fails on an undocumented public member
#   asan      build-asan/  the same suite under AddressSanitizer and UBSan
#   fuzz      build-fuzz/  each libFuzzer target for ES_FUZZ_SECONDS (30) seconds
#   memcheck  build/       valgrind memcheck of the lifecycle tests, and a leak check of the
#                          example host running the user guide's plug-in
#   bench     build/       the benchmark smoke: the set of 10 plug-ins through every case
#   qt6       build-qt6/   the whole CTest suite again, built against Qt 6
# Each build directory is configured once and built incrementally afterwards.
set -euo pipefail
cd "$(dirname "$0")/.."

stages=${ES_TEST_STAGES:-format normal docs asan fuzz memcheck bench qt6}
fuzz_seconds=${ES_FUZZ_SECONDS:-30}
wants() { [[ " $stages " == *" $1 "* ]]; }

features=()
wants format && features+=(format)
wants docs && features+=(docs)
wants fuzz && features+=(fuzz)
wants memcheck && features+=(valgrind)
wants bench && features+=(benchmarks)
wants qt6 && features+=(qt6)
bash scripts/setup.sh "${features[@]}"

export QT_QPA_PLATFORM=offscreen
start=$(date +%s)
last=$start
# Each line says how long the stage before it took, so that a slow stage shows.
stamp() {
    local now
    now=$(date +%s)
    echo "== $1 (at $((now - start)) s; the stage before took $((now - last)) s)"
    last=$now
}

build_and_test() {
    local dir=$1
    shift
    cmake -S . -B "$dir" -DBUILD_TESTING=ON "$@" >/dev/null
    cmake --build "$dir" -j2
    (cd "$dir" && ctest --output-on-failure -j2)
}

if wants format; then
    stamp "format check: .clang-format"
    files=$(git ls-files '*.cpp' '*.h' 2>/dev/null || find src tests tools examples benchmarks fuzz -name '*.cpp' -o -name '*.h')
    # shellcheck disable=SC2086
    if ! clang-format --dry-run --Werror $files; then
        echo "format: the files above differ from .clang-format; clang-format -i <file> lays them out"
        exit 1
    fi
    # shellcheck disable=SC2086
    unlicensed=$(grep -L -m1 '^// SPDX-License-Identifier: BSD-3-Clause$' $files || true)
    if [ -n "$unlicensed" ]; then
        echo "format: these files lack the line '// SPDX-License-Identifier: BSD-3-Clause' at the top:"
        echo "$unlicensed"
        exit 1
    fi
    echo "format: $(echo "$files" | wc -w) files laid out as .clang-format says, each with its SPDX line"

    # The layers of src/, as CONTRIBUTING.md draws them: core/ beneath everything,
    # framework/ on top, the subsystems between, each reaching only these others.
    declare -A may_include=(
        [core]="core"
        [objecttree]="core objecttree"
        [event]="core event service"
        [service]="core service event plugin"
        [plugin]="core plugin event service extension objecttree"
        [extension]="core extension event objecttree plugin"
        [framework]="core framework event service plugin extension objecttree"
    )
    broken=""
    for folder in "${!may_include[@]}"; do
        while IFS=: read -r file line text; do
            target=$(sed -E 's@.*#include [<"](\.\./)?([a-z]+)/.*@\2@' <<<"$text")
            [[ " ${may_include[$folder]} " == *" $target "* ]] || broken+="  $file:$line: $folder/ may not include $target/"$'\n'
        done < <(grep -HnE '#include [<"](\.\./)?(core|framework|objecttree|event|service|plugin|extension)/' "src/$folder"/* || true)
    done
    if [ -n "$broken" ]; then
        echo "layers: these includes break the folder rules of CONTRIBUTING.md:"
        printf '%s' "$broken"
        exit 1
    fi
    echo "layers: every include in src/ keeps to the folder rules"
fi

if wants normal || wants memcheck; then
    stamp "normal build and tests: build/"
    build_and_test "${ES_BUILD_DIR:-build}" "$@"
fi

if wants docs; then
    stamp "API reference: build/docs/html/"
    cmake -S . -B "${ES_BUILD_DIR:-build}" >/dev/null
    cmake --build "${ES_BUILD_DIR:-build}" --target docs
fi

if wants asan; then
    stamp "AddressSanitizer and UBSan build and tests: build-asan/"
    export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:strict_string_checks=1:check_initialization_order=1}
    export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
    build_and_test build-asan -DES_SANITIZE=ON
fi

if wants fuzz; then
    stamp "fuzz targets, ${fuzz_seconds} s each: build-fuzz/"
    cmake -S . -B build-fuzz -DCMAKE_CXX_COMPILER=clang++ -DES_BUILD_FUZZERS=ON -DBUILD_TESTING=OFF \
        -DES_BUILD_EXAMPLES=OFF >/dev/null
    cmake --build build-fuzz -j2
    mkdir -p build-fuzz/logs build-fuzz/artifacts
    # The harnesses write each input to a file: memory is far quicker than disk.
    tmp=${TMPDIR:-/tmp}
    [ -w /dev/shm ] && tmp=/dev/shm
    run_target() {
        local target=$1
        mkdir -p "build-fuzz/corpus/$target"
        # New inputs go to the first directory; the seeds in fuzz/corpus are only read.
        TMPDIR=$tmp "build-fuzz/fuzz/fuzz_$target" -max_total_time="$fuzz_seconds" -timeout=10 \
            -print_final_stats=1 -artifact_prefix="build-fuzz/artifacts/$target-" \
            "build-fuzz/corpus/$target" "fuzz/corpus/$target" >"build-fuzz/logs/$target.log" 2>&1
    }
    targets=(metadata version extensionfile objecttree)
    failed=0
    # Two at a time, one a core.
    for ((i = 0; i < ${#targets[@]}; i += 2)); do
        pids=()
        for target in "${targets[@]:i:2}"; do
            run_target "$target" &
            pids+=($!)
        done
        for j in "${!pids[@]}"; do
            target=${targets[i + j]}
            status=0
            wait "${pids[j]}" || status=$?
            runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "build-fuzz/logs/$target.log" | tail -1)
            if [ "$status" -eq 0 ]; then
                printf 'fuzz: %-14s %10s executions in %s s, no crash\n' "$target" "${runs:-?}" "$fuzz_seconds"
            else
                failed=1
                printf 'fuzz: %-14s FAILED after %s executions; input kept as build-fuzz/artifacts/%s-*\n' \
                    "$target" "${runs:-?}" "$target"
                grep -E 'ERROR|check failed|SUMMARY' "build-fuzz/logs/$target.log" | head -5 || true
                echo "      put the input under tests/data/fuzz/$target/ and fix the cause (log: build-fuzz/logs/$target.log)"
            fi
        done
    done
    [ "$failed" -eq 0 ]
fi

if wants memcheck; then
    stamp "valgrind memcheck of the lifecycle tests: build/"
    failed=0
    for test in tst_lifecycle tst_pluginloading tst_eventmanager; do
        log="$PWD/${ES_BUILD_DIR:-build}/memcheck-$test.log"
        # PCRE2's JIT code, which Qt uses for regular expressions, reads memory in
        # ways memcheck cannot follow; without the JIT nothing needs suppressing.
        if (cd "${ES_BUILD_DIR:-build}/tests/$test" && LC_ALL=C.UTF-8 QT_ENABLE_REGEXP_JIT=0 \
            valgrind --tool=memcheck --error-exitcode=99 --leak-check=no --num-callers=30 -q "./$test") >"$log" 2>&1; then
            echo "memcheck: $test: no errors"
        else
            failed=1
            echo "memcheck: $test FAILED (log: $log)"
            grep -E '^==[0-9]+==' "$log" | head -20 || true
        fi
    done
    # The user guide's plug-in in the example host, as the normal stage's guide
    # test left them: whatever the guide teaches must lose nothing.
    app="$PWD/${ES_BUILD_DIR:-build}/tests/guide/work/app"
    log="$PWD/${ES_BUILD_DIR:-build}/memcheck-guide.log"
    if [ ! -x "$app/es-demo-host" ]; then
        failed=1
        echo "memcheck: $app/es-demo-host is missing: the guide test of the normal stage builds it"
    elif (cd "$app" && QT_ENABLE_REGEXP_JIT=0 valgrind --tool=memcheck --leak-check=full \
        --errors-for-leak-kinds=definite --error-exitcode=99 --num-callers=30 -q ./es-demo-host) >"$log" 2>&1; then
        echo "memcheck: the user guide's plug-in in the example host: nothing definitely lost"
    else
        failed=1
        echo "memcheck: the user guide's plug-in in the example host FAILED (log: $log)"
        grep -E 'definitely lost|^==[0-9]+== +(at|by) ' "$log" | head -20 || true
    fi
    [ "$failed" -eq 0 ]
fi

if wants bench; then
    stamp "benchmark smoke, 10 plug-ins: build/"
    # Fails when a case fails its checks; the ratios are printed, not judged.
    ES_BENCH_BUILD_DIR="${ES_BUILD_DIR:-build}" bash benchmarks/run.sh --quick
fi

if wants qt6; then
    stamp "Qt 6 build and tests: build-qt6/"
    build_and_test build-qt6 -DQT_MAJOR_VERSION=6
fi

stamp "all stages passed"
