#!/usr/bin/env bash
# Builds everything, writes the API reference and packs the SDK (DLLs, import libraries for MinGW
# and MSVC, headers, CMake package, sample modules, sample hosts, host guide, API reference) into
# BUILD/dist/kvkit-VERSION-win32.zip, then lists it.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh
build=$(cd "${KVKIT_BUILD_DIR:-build}" && pwd)
bash scripts/api-reference.sh "$build/doc/api"
rm -rf "$build/dist"
(cd "$build" && cpack --config CPackConfig.cmake >/dev/null)
for archive in "$build"/dist/kvkit-*-win32.zip; do
    echo "SDK written to $archive"
    unzip -l "$archive"
done
