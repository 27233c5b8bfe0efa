#!/usr/bin/env bash
# The part of scripts/bench.sh on Windows' COM, under Wine: the benchmarks, then one loop over a
# Scripting.Dictionary as a program of velsh and of the script engines that come with the system.
# Takes the same arguments; the loops run when no benchmark is named.
set -euo pipefail
cd "$(dirname "$0")/.."

build=build/windows-release
turns=200000
runs=7
loops=yes
for argument in "$@"; do
    if [ "$argument" = short ]; then turns=20000 runs=1; else loops=no; fi
done
cmake --preset windows-release >/dev/null
cmake --build --preset windows-release --target axlink2_bench velsh axlink2 >/dev/null

export WINEPREFIX=$PWD/$build/wine WINEDEBUG=-all LC_ALL=C.UTF-8
export WINEDLLOVERRIDES="winedbg.exe,mscoree,mshtml=d"
work=$(mktemp -d)
trap 'wineserver -k || true; rm -rf "$work"' EXIT
sh tests/windows/start_wine.sh
status=0
wine "$build/bin/axlink2_bench.exe" "$@" | tr -d '\r' || status=$?
[ $loops = yes ] || exit $status

# milliseconds ENGINE FILE EXPECTED: one whole run, which must print EXPECTED.
milliseconds() {
    local start end output
    start=$(date +%s%N)
    # The engine takes a path that begins with a slash for an option.
    output=$(cd "$work" && wine $1 "$2" | tr -d '\r')
    end=$(date +%s%N)
    if [ "$output" != "$3" ]; then
        echo "$2 printed \"$output\" in place of $3" >&2
        exit 1
    fi
    echo $(((end - start) / 1000000))
}

# A column of numbers: "median least most".
spread() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)], v[1], v[NR] }'; }

# row NAME ENGINE EXTENSION
row() {
    sed "s/200000/$turns/" "bench/scripts/dictionary.$3" >"$work/loop.$3"
    sed "s/200000/0/" "bench/scripts/dictionary.$3" >"$work/start.$3"
    for _ in $(seq $runs); do
        milliseconds "$2" "start.$3" 0 >>"$work/$1.start"
        milliseconds "$2" "loop.$3" $((2 * turns)) >>"$work/$1.loop"
    done
    read -r start _ _ < <(spread <"$work/$1.start")
    read -r loop least most < <(spread <"$work/$1.loop")
    awk -v name="$1" -v start="$start" -v loop="$loop" -v least="$least" -v most="$most" \
        -v turns=$turns 'BEGIN {
            ns = 1e6 / turns
            printf "%-10s %10d %12.0f  (%.0f to %.0f)\n", name, start, (loop - start) * ns,
                   (least - start) * ns, (most - start) * ns
        }'
}

echo
printf '%-10s %10s %12s\n' "" "start, ms" "turn, ns"
row velsh "$PWD/$build/bin/velsh.exe" vel
row JScript "cscript.exe //nologo" js
row VBScript "cscript.exe //nologo" vbs
exit $status
