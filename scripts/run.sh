#!/usr/bin/env bash
# scripts/run.sh: runs the program in a folder of its own.
#   bash scripts/run.sh BUILD RUNDIR
# Runs BUILD/bin/kestrometry-console if it was built, else the runtime demonstration BUILD/bin/rtdemo.
set -euo pipefail

build=${1:-build}
rundir=${2:-$build/run}
root=$(cd "$(dirname "$0")/.." && pwd)

if [ ! -d "$build/bin" ]; then
    echo "No programs in $build/bin: build first (make)" >&2
    exit 1
fi
bin=$(cd "$build/bin" && pwd)
mkdir -p "$rundir"
if [ -f "$root/examples/kestro_in.txt" ]; then
    cp "$root/examples/kestro_in.txt" "$rundir/"
fi
cd "$rundir"
echo "Running in $(pwd)"

if [ -x "$bin/kestrometry-console" ]; then
    exec "$bin/kestrometry-console"
fi
if [ ! -x "$bin/rtdemo" ]; then
    echo "Neither kestrometry-console nor rtdemo is in $bin: build first (make)" >&2
    exit 1
fi
if [ -t 0 ]; then
    exec "$bin/rtdemo"
fi
# Not at a terminal: feed a few records, including a null value, a "/" and a bad number.
exec "$bin/rtdemo" <<'RECORDS'
16 'E'  50 'N'
16 'W' 200 'A'
30,S,60,E
,,70 'W'
45 'N' /
abc 'E' 50 'N'
RECORDS
