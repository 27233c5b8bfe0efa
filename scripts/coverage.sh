#!/usr/bin/env bash
# Runs all tests and prints how many lines and branches of src/ they reach, room by room; what they
# don't reach stands in build/coverage/lines.txt, and source by source in build/coverage/html.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install.sh
scripts/install.sh scripts/packages-fuzz.txt
build=build/coverage
cmake --preset coverage >/dev/null
cmake --build --preset coverage >"$build/build.log" || { cat "$build/build.log"; exit 1; }
find "$build" -name '*.gcda' -delete
ctest --preset coverage >"$build/tests.log" || { cat "$build/tests.log"; exit 1; }

# Branches into the clean-up after an exception are the compiler's.
gcovr --root . --filter src/ --exclude-throw-branches --exclude-unreachable-branches \
    --object-directory "$build" --csv "$build/files.csv" --txt "$build/lines.txt" --print-summary \
    "$build" >"$build/summary.txt"
mkdir -p "$build/html"
gcovr --root . --filter src/ --exclude-throw-branches --exclude-unreachable-branches \
    --object-directory "$build" --html-details "$build/html/index.html" "$build"

printf '%-12s %7s %9s %9s %9s\n' src/ lines reached branches reached
awk -F, '
    NR == 1 { for (i = 1; i <= NF; i++) column[$i] = i; next }
    {
        split($column["filename"], part, "/")
        split(part[2] " all", names, " ")
        for (n = 1; n <= 2; n++) {
            rooms[names[n]]
            for (name in column)
                if (name ~ /^(line|branch)_(total|covered)$/)
                    sum[names[n], name] += $column[name]
        }
    }
    function share(room, what) {
        return 100 * sum[room, what "_covered"] / (sum[room, what "_total"] + 1e-9)
    }
    END {
        for (room in rooms)
            printf "%-12s %7d %7.1f %% %9d %7.1f %%\n", room, sum[room, "line_total"],
                share(room, "line"), sum[room, "branch_total"], share(room, "branch")
    }' "$build/files.csv" | LC_ALL=C sort | sed '/^all /{h;d;};${G;}'
