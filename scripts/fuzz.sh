#!/usr/bin/env bash
# fuzz.sh [SECONDS [TARGET...]]: runs the fuzzers, by default each of them for a minute, and prints
# a line for each. An input that fails is kept in build/fuzz/failed; once its cause is mended it
# belongs to tests/fuzz/found.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
targets=("${@:2}")
[ ${#targets[@]} -gt 0 ] || targets=(variants types registry storage scripts)

scripts/install.sh
scripts/install.sh scripts/packages-fuzz.txt
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target "${targets[@]/#/fuzz_}" >build/fuzz/build.log ||
    { cat build/fuzz/build.log; exit 1; }

# Programs may ask for much memory; then there is none.
export ASAN_OPTIONS=allocator_may_return_null=1:max_allocation_size_mb=64
export UBSAN_OPTIONS=print_stacktrace=1
failed=()
mkdir -p build/fuzz/failed
printf '%-10s %10s %8s %8s  %s\n' target inputs corpus reached result
for target in "${targets[@]}"; do
    corpus=build/fuzz/corpus/$target
    log=build/fuzz/$target.log
    mkdir -p "$corpus"
    result=pass
    words=()
    [ ! -f tests/fuzz/"$target".dict ] || words=(-dict=tests/fuzz/"$target".dict)
    seeds=(tests/fuzz/corpus/"$target")
    [ ! -d tests/fuzz/found/"$target" ] || seeds+=(tests/fuzz/found/"$target")
    build/fuzz/bin/fuzz_"$target" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=2048 \
        -max_len=1024 -reload=0 -print_final_stats=1 -artifact_prefix="build/fuzz/failed/$target-" \
        "${words[@]}" "$corpus" "${seeds[@]}" >"$log" 2>&1 ||
        { result="FAILED, see $log"; failed+=("$target"); }
    inputs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    reached=$(sed -n 's/.* cov: \([0-9]*\) .*/\1/p' "$log" | tail -1)
    printf '%-10s %10s %8s %8s  %s\n' "$target" "${inputs:-?}" "$(find "$corpus" -type f | wc -l)" \
        "${reached:-?}" "$result"
    [ "$result" = pass ] || tail -n 40 "$log"
done
if [ ${#failed[@]} -gt 0 ]; then
    echo "fuzz: failed: ${failed[*]}"
    exit 1
fi
echo "fuzz: pass"
