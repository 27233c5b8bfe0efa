#!/usr/bin/env bash
# Checks formatting, then builds and runs all tests: optimised, and under AddressSanitizer with leak
# checking and UndefinedBehaviorSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install.sh
git ls-files '*.h' '*.cpp' | xargs clang-format-14 --dry-run -Werror
for preset in release asan; do
    scripts/build.sh "$preset"
    ctest --preset "$preset"
done
