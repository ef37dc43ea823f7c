#!/usr/bin/env bash
# scripts/screenshots-tour.sh: zel-tour on a virtual display, each content window photographed
# for README.
#   bash scripts/screenshots-tour.sh [BUILD] [FOLDER]
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build}
out=${2:-$root/docs}

need=()
for tool in Xvfb xdotool import; do command -v "$tool" > /dev/null || need+=("$tool"); done
if [ ${#need[@]} -gt 0 ]; then
    sudo=""
    [ "$(id -u)" -ne 0 ] && sudo="sudo"
    export DEBIAN_FRONTEND=noninteractive
    $sudo apt-get update
    $sudo apt-get install -y --no-install-recommends xvfb xdotool imagemagick
fi
[ -x "$build/bin/zel-tour" ] || cmake --build "$build" --target zel-tour

work=$(mktemp -d)
trap 'kill "${program:-0}" "${xvfb:-0}" 2> /dev/null || true; rm -rf "$work"' EXIT

display=:78
Xvfb "$display" -screen 0 1280x900x24 -nolisten tcp &
xvfb=$!
sleep 1
export DISPLAY=$display
(cd "$work" && exec "$build/bin/zel-tour" --exit-after 30000) &
program=$!

# One line per window: its title, the picture's file, and the size it is shown at.
shots=(
    "Dip against depth|xyplot.png|760x520"
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
