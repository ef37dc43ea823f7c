#!/usr/bin/env bash
# scripts/screenshots-tour.sh: zel-tour on a virtual display, each content window photographed
# for README.
#   bash scripts/screenshots-tour.sh [BUILD] [FOLDER]
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build}
out=${2:-$root/docs}

source "$root/scripts/xvfb-common.sh"
installScreenshotTools
[ -x "$build/bin/zel-tour" ] || cmake --build "$build" --target zel-tour

work=$(mktemp -d)
trap 'kill "${program:-0}" "${xvfb:-0}" 2> /dev/null || true; rm -rf "$work"' EXIT

startXvfb 1280x900
(cd "$work" && exec "$build/bin/zel-tour" --exit-after 30000) &
program=$!

# One line per window: its title, the picture's file, and the size it is shown at.
shots=(
    "Fracture records|spreadsheet.png|520x300"
    "Dip against depth|xyplot.png|760x520"
    "Fractures per outcrop|barchart.png|760x520"
    "Structures surveyed|piechart.png|640x480"
    "Joint poles|polarplot.png|640x680"
    "Apparent dip|contourplot.png|760x560"
    "Outcrop sketch|canvas.png|600x440"
    "Survey settings|dialog.png|460x330"
)

mkdir -p "$out"
for shot in "${shots[@]}"; do
    IFS='|' read -r title file size <<< "$shot"
    window=""
    for _ in $(seq 50); do
        window=$(xdotool search --onlyvisible --name "^$title\$" 2> /dev/null | head -1) && [ -n "$window" ] && break
        sleep 0.2
    done
    [ -n "$window" ] || { echo "no window \"$title\" appeared" >&2; exit 1; }
    xdotool windowsize --sync "$window" "${size%x*}" "${size#*x}" 2> /dev/null ||
        xdotool windowsize "$window" "${size%x*}" "${size#*x}"
    xdotool windowraise "$window"
    sleep 1
    import -window "$window" "$out/$file"
    echo "Screenshot: $out/$file"
done
