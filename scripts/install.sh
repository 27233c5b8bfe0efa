#!/usr/bin/env bash
# install.sh [FILE]: installs the packages of FILE, by default scripts/packages.txt, that are missing.
set -euo pipefail
cd "$(dirname "$0")/.."

mapfile -t packages < <(grep -v '^#' "${1:-scripts/packages.txt}")
missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' ||
        missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

if [ "$(id -u)" -ne 0 ]; then
    echo "Missing packages; as root: apt-get install ${missing[*]}" >&2
    exit 1
fi
echo "Installing ${missing[*]}"
apt-get update -qq
DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
