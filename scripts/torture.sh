#!/usr/bin/env bash
# torture.sh [short | SECONDS]: the hard tests in their long form. Every call fails once, servers
# crash, work goes on for long; and each fuzzer runs for that many seconds, 60 unless told otherwise,
# or not at all for 0. "short" tries a part of it, without the fuzzers, in less than a minute. Prints
# a table for each, and ends with a line that says pass or names what failed.
set -euo pipefail
cd "$(dirname "$0")/.."
form=long
seconds=${1:-60}
if [ "$seconds" = short ]; then form=short seconds=0; fi

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
"$build/bin/axlink2_torture" failures $form >"$build/failures.txt" 2>&1 &
failures=$!
run faults "$build/bin/axlink2_torture" faults $form
run soak "$build/bin/axlink2_torture" soak $form
if [ "$seconds" -gt 0 ]; then run fuzz scripts/fuzz.sh "$seconds"; fi
run failures wait "$failures"
cat "$build/failures.txt"

if [ ${#failed[@]} -gt 0 ]; then
    echo "torture: failed: ${failed[*]}"
    exit 1
fi
echo "torture: pass"
