#!/usr/bin/env bash
# scripts/screenshots-views.sh: kestrometry-views on the sample results, on a virtual display, each
# of its windows photographed for README.
#   bash scripts/screenshots-views.sh [BUILD] [FOLDER]
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build}
out=${2:-$root/docs}

source "$root/scripts/xvfb-common.sh"
installScreenshotTools
[ -x "$build/bin/kestrometry-views" ] || cmake --build "$build" --target kestrometry-views

work=$(mktemp -d)
trap 'kill "${program:-0}" "${xvfb:-0}" 2> /dev/null || true; rm -rf "$work"' EXIT
cp "$root/examples/kestro_out.txt" "$work/"

startXvfb 1600x1200
(cd "$work" && exec "$build/bin/kestrometry-views" --exit-after 30000 kestro_out.txt) &
program=$!

# One line per window: its title, the picture's file, the size it is shown at and where, apart
# from the others (there is no window manager to keep them from overlapping).
shots=(
    "Stereonet - kestro_out.txt|stereonet.png|640x680|0,0"
    "Rose diagram - kestro_out.txt|rose.png|640x680|660,0"
    "Table - kestro_out.txt|table.png|900x420|0,720"
)

mkdir -p "$out"
for shot in "${shots[@]}"; do
    IFS='|' read -r title file size place <<< "$shot"
    window=""
    for _ in $(seq 50); do
        window=$(xdotool search --onlyvisible --name "^$title\$" 2> /dev/null | head -1) && [ -n "$window" ] && break
        sleep 0.2
    done
    [ -n "$window" ] || { echo "no window \"$title\" appeared" >&2; exit 1; }
    xdotool windowsize --sync "$window" "${size%x*}" "${size#*x}" 2> /dev/null ||
        xdotool windowsize "$window" "${size%x*}" "${size#*x}"
    xdotool windowmove "$window" "${place%,*}" "${place#*,}"
    xdotool windowraise "$window"
done
sleep 1
for shot in "${shots[@]}"; do
    IFS='|' read -r title file size place <<< "$shot"
    window=$(xdotool search --onlyvisible --name "^$title\$" | head -1)
    import -window "$window" "$out/$file"
    echo "Screenshot: $out/$file"
done
