#!/usr/bin/env bash
# scripts/bench.sh: runs every benchmark binary of a build and prints its figures.
#   bash scripts/bench.sh BUILD
set -uo pipefail

build=${1:-build}
shopt -s nullglob
benches=()
for b in "$build"/bin/*_bench; do
    [ -x "$b" ] && benches+=("$b")
done
if [ ${#benches[@]} -eq 0 ]; then
    echo "No benchmarks in $build/bin: is libbenchmark-dev installed? (make deps)" >&2
    exit 1
fi

status=0
for b in "${benches[@]}"; do
    echo "== $(basename "$b")"
    # Runtime options from the caller's environment would change what is measured.
    TARNIX_RT_FLAGS= "$b" || { echo "$(basename "$b") failed" >&2; status=1; }
    echo
done
exit $status
