#!/usr/bin/env bash
# bench.sh [short] [NAME...]: speed beside the raw COM work, natively and, where Wine and the cross
# compiler are installed, on Windows' COM with the script engines there. NAMEs are parts of the names
# of the cases that are wanted. Ends with a line that says pass or names what is over its limit;
# "short" measures each case once and judges nothing.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install.sh
failed=()
run() {
    echo "$1"
    "${@:2}" || failed+=("$1")
    echo
}
cmake --preset release >/dev/null
cmake --build --preset release --target axlink2_bench >build/release/bench.log ||
    { cat build/release/bench.log; exit 1; }
run "Our own COM layer" build/release/bin/axlink2_bench "$@"
if command -v wine >/dev/null && command -v x86_64-w64-mingw32-g++ >/dev/null; then
    run "Windows' COM, under Wine" scripts/bench-windows.sh "$@"
else
    echo "Windows' COM wasn't measured: it needs what scripts/windows.sh installs"
fi

if [ ${#failed[@]} -gt 0 ]; then
    printf -v names '%s; ' "${failed[@]}"
    echo "bench: failed: ${names%; }"
    exit 1
fi
echo "bench: pass"
