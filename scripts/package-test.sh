#!/usr/bin/env bash
# scripts/package-test.sh: builds the Debian package of a build tree, unpacks it into a temporary
# root and converts the sample data with the console program found there. Exit 77: skipped.
#   bash scripts/package-test.sh BUILD
set -uo pipefail

build=$(cd "${1:-build}" && pwd)
command -v dpkg-deb > /dev/null || { echo "dpkg-deb not found: skipped"; exit 77; }
command -v cpack > /dev/null || { echo "cpack not found: skipped"; exit 77; }
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
fail() { echo "package test: $*"; exit 1; }

cpack --config "$build/CPackConfig.cmake" -B "$tmp/package" > "$tmp/cpack.log" 2>&1 || { cat "$tmp/cpack.log"; fail "cpack failed"; }
deb=$(ls "$tmp"/package/*.deb 2> /dev/null | head -1)
[ -n "$deb" ] || fail "no package built"
dpkg-deb -f "$deb" Depends | grep -q 'libqwt-qt5-6' || fail "the package does not depend on Qwt"
dpkg-deb -x "$deb" "$tmp/root" || fail "dpkg-deb -x failed"
root=$tmp/root/usr
for f in bin/kestrometry bin/kestrometry-console bin/kestrometry-views bin/kestrometry-convert-all \
    share/applications/kestrometry.desktop share/applications/kestrometry-views.desktop \
    share/icons/hicolor/scalable/apps/kestrometry.svg share/man/man1/kestrometry-views.1 \
    share/doc/kestrometry/examples/kestro_in.txt; do
    [ -e "$root/$f" ] || fail "$f missing from the package"
done
"$root/bin/kestrometry-console" --version | grep -q '^kestrometry-console 5.1' || fail "--version"

# The sample converted by the unpacked program gives the sample results, header line 1 aside.
mkdir "$tmp/work"
cp "$root/share/doc/kestrometry/examples/kestro_in.txt" "$tmp/work/"
(cd "$tmp/work" && { printf '\n1\nkestro_in.txt\n1\n1\nkestro_out.txt\n'; for i in $(seq 100); do echo; done; } |
    "$root/bin/kestrometry-console" > console.log 2>&1) || fail "the console program failed"
diff <(tail -n +2 "$tmp/work/kestro_out.txt") <(tail -n +2 "$root/share/doc/kestrometry/examples/kestro_out.txt") ||
    fail "results differ from the sample results"
echo "package $(basename "$deb") unpacked and run"
