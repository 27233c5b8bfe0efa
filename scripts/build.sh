#!/usr/bin/env bash
# build.sh PRESET: installs what is missing and builds everything with that preset.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=$1

scripts/install.sh
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"
