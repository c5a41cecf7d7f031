# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# Sourced by the other scripts: where things are, and how a step is run, timed and counted.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
jobs=$(nproc)
logs=$root/build/logs
mkdir -p "$logs"
# Read by the scripts that source this file.
# shellcheck disable=SC2034
started=$SECONDS
passed=0
failed=0

# configure PRESET [cmake arguments]: quick when nothing changed.
configure() {
    local preset=$1 launcher=()
    shift
    if command -v ccache >/dev/null; then
        launcher=(-DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
    fi
    cmake --preset "$preset" "${launcher[@]}" "$@"
}

# build PRESET [targets]
build() {
    local preset=$1
    shift
    configure "$preset"
    cmake --build "build/$preset" -j "$jobs" ${1:+--target "$@"}
}

# step NAME COMMAND...: runs the command (a function runs under set -e in a shell of its own),
# keeps its output in build/logs, shows the end of it when the command fails.
step() {
    local name=$1 log rc begin=$SECONDS
    shift
    log=$logs/${name//[^A-Za-z0-9]/_}.log
    set +e
    (
        set -e
        "$@"
    ) >"$log" 2>&1
    rc=$?
    set -e
    if ((rc == 0)); then
        passed=$((passed + 1))
        printf 'OK   %4d s  %s\n' $((SECONDS - begin)) "$name"
    else
        failed=$((failed + 1))
        printf 'FAIL %4d s  %s (exit %d; all of it in %s)\n' $((SECONDS - begin)) "$name" "$rc" \
            "${log#"$root/"}"
        tail -n "${STEP_TAIL:-60}" "$log" | sed 's/^/    /'
    fi
}

# The closing lines of a script made of steps; the exit status says whether every step passed.
finish() {
    printf 'took %d s\n%d passed, %d failed\n' $((SECONDS - started)) "$passed" "$failed"
    ((failed == 0))
}
