#!/usr/bin/env bash
# packaging/convert-all-test.sh: kestrometry-convert-all on a folder holding both sample data files
# and a results file: both converted as the sample results show, the results file left alone, and a
# second run leaving every results file alone.
#   bash packaging/convert-all-test.sh SOURCE CONSOLE
set -uo pipefail

source=$1
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
cp "$source/examples/kestro_in.txt" "$source/examples/kestro_in_numerical.txt" "$tmp/"
cp "$source/examples/kestro_out.txt" "$tmp/earlier_out.txt"
export KESTRO_CONSOLE=$2

expected="kestro_in.txt -> kestro_out.txt: 43 read, 33 converted, 10 refused
kestro_in_numerical.txt -> kestro_in_numerical_out.txt: 41 read, 33 converted, 8 refused"
got=$(bash "$source/scripts/convert-all.sh" "$tmp") || { echo "status $?: $got"; exit 1; }
[ "$got" = "$expected" ] || { printf 'expected:\n%s\ngot:\n%s\n' "$expected" "$got"; exit 1; }
diff <(tail -n +2 "$tmp/kestro_in_numerical_out.txt") <(tail -n +2 "$source/examples/kestro_out_numerical.txt") || exit 1

again=$(bash "$source/scripts/convert-all.sh" "$tmp")
[ "$again" = "kestro_in.txt: skipped: kestro_out.txt exists
kestro_in_numerical.txt: skipped: kestro_in_numerical_out.txt exists" ] || { echo "second run: $again"; exit 1; }
echo "converted and left alone as expected"
