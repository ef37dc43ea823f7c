#!/usr/bin/env bash
# scripts/check-format.sh: fails, naming the files, when clang-format would change any C++ source.
#   bash scripts/check-format.sh [ROOT]     fix with: bash scripts/check-format.sh --fix
set -uo pipefail

fix=0
if [ "${1:-}" = "--fix" ]; then fix=1; shift; fi
root=$(cd "${1:-$(dirname "$0")/..}" && pwd)
cd "$root" || exit 2
command -v clang-format > /dev/null || { echo "clang-format is not installed (make deps)"; exit 2; }

mapfile -t files < <(find app bench desktop examples runtime scripts support views zel -type f \
    \( -name '*.cpp' -o -name '*.h' \) 2> /dev/null | sort)
if [ "$fix" = 1 ]; then
    clang-format -i "${files[@]}"
    exit 0
fi
bad=()
for f in "${files[@]}"; do
    clang-format --dry-run --Werror "$f" > /dev/null 2>&1 || bad+=("$f")
done
if [ ${#bad[@]} -gt 0 ]; then
    printf 'not formatted: %s\n' "${bad[@]}"
    echo "run: bash scripts/check-format.sh --fix"
    exit 1
fi
echo "${#files[@]} files formatted"
