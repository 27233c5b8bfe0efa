#!/usr/bin/env bash
# Builds everything and runs the first tour against the sample server.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/build.sh release
echo
bin=build/release/bin
"$bin/velsh" --classes "$bin/sample_server.reg" examples/quickstart.vel
