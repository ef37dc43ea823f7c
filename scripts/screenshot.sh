#!/usr/bin/env bash
# scripts/screenshot.sh: the desktop program in a real window on a virtual display, answered by
# simulated typing, photographed for README.
#   bash scripts/screenshot.sh [BUILD] [OUTPUT.png]
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build}
shot=${2:-$root/docs/desktop.png}

source "$root/scripts/xvfb-common.sh"
installScreenshotTools
[ -x "$build/bin/kestrometry" ] || make -C "$root" build

work=$(mktemp -d)
trap 'kill "${program:-0}" "${xvfb:-0}" 2> /dev/null || true; rm -rf "$work"' EXIT
cp "$root/examples/kestro_in.txt" "$work/"

startXvfb 1024x800
(cd "$work" && exec "$build/bin/kestrometry") &
program=$!

window=""
for _ in $(seq 50); do
    window=$(xdotool search --onlyvisible --name '^kestrometry$' 2> /dev/null | head -1) && [ -n "$window" ] && break
    sleep 0.2
done
[ -n "$window" ] || { echo "no window appeared" >&2; exit 1; }

# A keyboard-to-screen session: the banner's pause, keyboard input, a title, the default form,
# results on the screen, carry on, one record.
xdotool windowfocus --sync "$window" 2> /dev/null || xdotool windowfocus "$window"
answer() {
    sleep 0.6
    if [ -n "$1" ]; then xdotool type --delay 40 "$1"; fi
    xdotool key Return
}
answer ""
answer "2"
answer "Field day"
answer ""
answer "2"
answer ""
answer "16 'E' 50 'N'"
sleep 1

mkdir -p "$(dirname "$shot")"
import -window root -crop 440x780+0+0 "$shot"
echo "Screenshot: $shot"
