#!/usr/bin/env bash
# scripts/convert-all.sh: converts every data file of a folder through the console program's own
# dialogue, the answers piped in; each results file lands next to its data file.
#   bash scripts/convert-all.sh FOLDER        (installed as kestrometry-convert-all)
# A data file is a *.txt file that is not a results file. "name_in.txt" gives "name_out.txt",
# any other "name.txt" gives "name_out.txt" too; an existing results file is left alone. The data
# form comes from the first record: a direction letter makes it alphanumerical. One line per file:
#   kestro_in.txt -> kestro_out.txt: 43 read, 33 converted, 10 refused
# The console program is $KESTRO_CONSOLE, or kestrometry-console beside this script, or on PATH.
set -uo pipefail

if [ $# -ne 1 ] || [ "$1" = "--help" ] || [ ! -d "$1" ]; then
    echo "Usage: kestrometry-convert-all FOLDER" >&2
    [ $# -eq 1 ] && [ "$1" != "--help" ] && echo "kestrometry-convert-all: Not a folder: \"$1\"" >&2
    [ "${1:-}" = "--help" ] && exit 0
    exit 2
fi
here=$(cd "$(dirname "$0")" && pwd)
console=${KESTRO_CONSOLE:-}
if [ -z "$console" ]; then
    for candidate in "$here/kestrometry-console" "$here/../build/bin/kestrometry-console"; do
        [ -x "$candidate" ] && console=$candidate && break
    done
fi
[ -z "$console" ] && console=$(command -v kestrometry-console || true)
if [ -z "$console" ] || [ ! -x "$console" ]; then
    echo "kestrometry-convert-all: kestrometry-console not found (set KESTRO_CONSOLE)" >&2
    exit 2
fi

cd "$1" || exit 2
status=0
shopt -s nullglob
for data in *.txt; do
    [ -f "$data" ] || continue
    # Results files: the column titles in quotes and tab-separated on the second line.
    if sed -n 2p "$data" | grep -q "^'dipa1'"$'\t'; then
        continue
    fi
    base=${data%.txt}
    results="${base%_in}_out.txt"
    if [ "${#data}" -gt 50 ] || [ "${#results}" -gt 50 ] || [[ "$data" == *[[:space:]]* ]]; then
        echo "$data: skipped: the program takes file names of up to 50 characters without blanks"
        status=1
        continue
    fi
    if [ -e "$results" ]; then
        echo "$data: skipped: $results exists"
        continue
    fi
    # The second value of the first record: a letter, quoted or not, means the alphanumerical form.
    second=$(sed -n 3p "$data" | tr ',\t' '  ' | awk '{print $2}')
    form=2
    [[ "$second" =~ ^\'?[A-Za-z] ]] && form=1
    # Banner, input from a file, its name, the form, output to a file, its name; then Return at
    # every panel, at most two for each record.
    lines=$(wc -l < "$data")
    transcript=$({
        printf '\n1\n%s\n%s\n1\n%s\n' "$data" "$form" "$results"
        for ((i = 0; i < 2 * lines + 10; ++i)); do echo; done
    } | "$console" 2>&1)
    code=$?
    read_count=$(printf '%s\n' "$transcript" | awk '$1 == "Read" && $3 == "DATA" {print $2}' | tail -1)
    converted=$(printf '%s\n' "$transcript" | awk '$1 == "Converted" && $3 == "DATA" {print $2}' | tail -1)
    if [ "$code" -ne 0 ] || [ -z "$read_count" ] || [ -z "$converted" ]; then
        echo "$data: failed (status $code)"
        status=1
        continue
    fi
    echo "$data -> $results: $read_count read, $converted converted, $((read_count - converted)) refused"
done
exit $status
