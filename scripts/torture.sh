#!/usr/bin/env bash
# torture.sh [SECONDS]: the hard tests in their long form. Every call fails once, servers crash, work
# goes on for long; and each fuzzer runs for that many seconds, 60 unless told otherwise, or not at
# all for 0. Prints a table for each, and ends with a line that says pass or names what failed.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}

scripts/install.sh
build=build/release
cmake --preset release >/dev/null
cmake --build --preset release --target axlink2_torture axlink2 >"$build/torture.log" ||
    { cat "$build/torture.log"; exit 1; }

failed=()
run() {
    local name=$1
    shift
    "$@" || failed+=("$name")
    echo
}
# The longest part has a core for itself.
"$build/bin/axlink2_torture" failures long >"$build/failures.txt" 2>&1 &
failures=$!
run faults "$build/bin/axlink2_torture" faults long
run soak "$build/bin/axlink2_torture" soak long
if [ "$seconds" -gt 0 ]; then run fuzz scripts/fuzz.sh "$seconds"; fi
run failures wait "$failures"
cat "$build/failures.txt"

if [ ${#failed[@]} -gt 0 ]; then
    echo "torture: failed: ${failed[*]}"
    exit 1
fi
echo "torture: pass"
