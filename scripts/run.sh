#!/usr/bin/env bash
# scripts/run.sh: runs the program on the sample data in a folder of its own: the desktop program
# where a display is available, the console program otherwise.
#   bash scripts/run.sh BUILD RUNDIR
# The folder gets the sample input as kestro_in.txt; results of an earlier run are moved aside so
# that the default output name can be taken again.
set -euo pipefail

build=${1:-build}
rundir=${2:-$build/run}
root=$(cd "$(dirname "$0")/.." && pwd)

program="$build/bin/kestrometry-console"
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] && [ -x "$build/bin/kestrometry" ]; then
    program="$build/bin/kestrometry"
fi
if [ ! -x "$program" ]; then
    echo "No $program: build first (make)" >&2
    exit 1
fi
program=$(cd "$(dirname "$program")" && pwd)/$(basename "$program")
mkdir -p "$rundir"
cp "$root/examples/kestro_in.txt" "$rundir/"
cd "$rundir"
if [ -f kestro_out.txt ]; then
    mv kestro_out.txt kestro_out.previous.txt
fi
echo "Running in $(pwd): press Return at each question to convert kestro_in.txt into kestro_out.txt"
exec "$program"
