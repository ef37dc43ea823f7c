#!/usr/bin/env bash
# scripts/install-deps.sh: installs the Debian packages the build needs, if any are missing.
set -euo pipefail

packages=(
    build-essential cmake pkg-config
    googletest libgtest-dev libgmock-dev libbenchmark-dev
    clang libclang-rt-14-dev clang-format
    qtbase5-dev libqt5svg5-dev libqwt-qt5-dev fonts-dejavu-core
)

missing=()
for p in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
        missing+=("$p")
    fi
done

if [ ${#missing[@]} -eq 0 ]; then
    exit 0
fi

echo "Installing: ${missing[*]}"
sudo=""
if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update
$sudo apt-get install -y --no-install-recommends "${missing[@]}"
