#!/usr/bin/env bash
# scripts/check-layers.sh: the plain layers (runtime/, support/, app/, views/) include no Qt or Qwt header
# and nothing of the window environment or the desktop executables, directly or through a header.
#   bash scripts/check-layers.sh [ROOT]
set -uo pipefail

root=$(cd "${1:-$(dirname "$0")/..}" && pwd)
cd "$root" || exit 2

# Every project header a plain layer reaches must itself be a plain-layer file, and no file on the
# way may include a Qt or Qwt header.
status=0
mapfile -t files < <(find runtime support app views -type f \( -name '*.cpp' -o -name '*.h' \) | sort)
for f in "${files[@]}"; do
    while IFS= read -r line; do
        header=${line#*[<\"]}
        header=${header%%[>\"]*}
        case "$header" in
        Q* | qwt* | qwt_* | zel/* | desktop/*)
            echo "$f: includes $header"
            status=1
            ;;
        esac
    done < <(grep -E '^[[:space:]]*#[[:space:]]*include' "$f")
done
if grep -nE 'Qt5::|Qwt|qwt' runtime/CMakeLists.txt support/CMakeLists.txt app/CMakeLists.txt views/CMakeLists.txt; then
    echo "a plain layer links Qt or Qwt"
    status=1
fi
[ "$status" = 0 ] && echo "${#files[@]} files of runtime/, support/, app/ and views/ free of Qt and the window environment"
exit "$status"
