#!/usr/bin/env bash
# scripts/fuzz.sh: runs each fuzz target of a build for a while on a working copy of its seeds.
#   bash scripts/fuzz.sh BUILD_FUZZ SECONDS
# The working corpus (BUILD_FUZZ/corpus-work) keeps what earlier runs found; crashing inputs land in
# BUILD_FUZZ/artifacts.
set -uo pipefail

build=${1:-build-fuzz}
seconds=${2:-60}
root=$(cd "$(dirname "$0")/.." && pwd)
work="$build/corpus-work"
artifacts="$build/artifacts"

shopt -s nullglob
targets=()
for t in "$build"/bin/fuzz_*; do
    [ -x "$t" ] && targets+=("$t")
done
if [ ${#targets[@]} -eq 0 ]; then
    echo "No fuzz targets in $build/bin: build them first (make fuzz)" >&2
    exit 1
fi
mkdir -p "$work" "$artifacts"
# The leak check at the end of a run leaves out what Qt keeps until the process ends.
export LSAN_OPTIONS="suppressions=$root/scripts/lsan.supp${LSAN_OPTIONS:+:$LSAN_OPTIONS}"

failed=0
for t in "${targets[@]}"; do
    name=$(basename "$t")
    name=${name#fuzz_}
    corpus="$work/$name"
    mkdir -p "$corpus"
    for seed in "$root/runtime/fuzz/corpus/$name"/* "$root/app/fuzz/corpus/$name"/* \
        "$root/zel/content/fuzz/corpus/$name"/*; do
        [ -e "$corpus/$(basename "$seed")" ] || cp "$seed" "$corpus/"
    done
    log="$build/fuzz_$name.log"
    echo "== $name: $seconds s on $corpus"
    TARNIX_RT_FLAGS= "$t" -max_total_time="$seconds" -max_len=4096 -timeout=10 -rss_limit_mb=2048 \
        -print_final_stats=1 -artifact_prefix="$artifacts/$name-" "$corpus" >"$log" 2>&1
    rc=$?
    execs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -n 1)
    rate=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log" | tail -n 1)
    peak=$(sed -n 's/^stat::peak_rss_mb: *//p' "$log" | tail -n 1)
    files=$(find "$corpus" -type f | wc -l)
    if [ $rc -eq 0 ]; then
        echo "$name: ${execs:-?} executions (${rate:-?}/s), peak RSS ${peak:-?} MB, corpus $files files: no failure"
    else
        echo "$name: FAILED (exit status $rc) after ${execs:-?} executions; log in $log"
        grep -E 'ERROR|SUMMARY|deadly signal|Test unit written|^(==[0-9]+== )?(WARNING|ABORT)' "$log" | head -n 20
        failed=1
    fi
done
exit $failed
