#!/usr/bin/env bash
# Cross-builds everything for Windows, runs the tests under Wine, and leaves axlink2-windows-x64.zip.
# With --no-tests only builds, which needs no Wine.
set -euo pipefail
cd "$(dirname "$0")/.."

preset=windows-release
build=build/$preset
packages=scripts/packages-windows.txt

scripts/install.sh
if [ "${1:-}" = --no-tests ]; then
    scripts/install.sh <(grep -v '^wine' "$packages")
elif ! scripts/install.sh "$packages" || ! command -v wine >/dev/null; then
    echo "The tests need Wine; without them: scripts/windows.sh --no-tests" >&2
    exit 1
fi

cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"
if [ "${1:-}" != --no-tests ]; then
    ctest --preset "$preset"
fi

folder=axlink2-windows-x64
stage=$build/$folder
mkdir -p "$stage/examples"
for file in velsh.exe axlink2.dll velmarhost.dll sample_server.dll; do
    if [ "$build/bin/$file" -nt "$stage/$file" ]; then
        x86_64-w64-mingw32-strip -o "$stage/$file" "$build/bin/$file"
    fi
done
cp -u "$build"/bin/{libstdc++-6,libgcc_s_seh-1,libwinpthread-1}.dll "$build/bin/sample_server.reg" \
    "$stage"
cp -u examples/*.vel "$stage/examples"
sed 's/$/\r/' docs/windows-readme.txt >"$stage/README.txt"
(cd "$build" && zip -q -r -FS "../../$folder.zip" "$folder")
echo "$folder.zip"
