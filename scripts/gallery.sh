#!/usr/bin/env bash
# Builds everything and runs the gallery, which shows every control and writes one PNG
# screenshot per page into BUILD/gallery.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$(pwd)
bash scripts/build.sh
build=$(cd "${KVKIT_BUILD_DIR:-build}" && pwd)
rm -rf "$build/gallery"
mkdir -p "$build/gallery"
(cd "$build/bin" && bash "$root/scripts/with-wine.sh" "$build" wine kvgallery.exe ../gallery "$@")
echo "Screenshots written to $build/gallery (open index.html there to look through them):"
ls "$build/gallery"
