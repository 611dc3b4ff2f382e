#!/usr/bin/env bash
# Builds everything and runs every benchmark under Wine. Figures are printed, never judged.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$(pwd)
bash scripts/build.sh
build=$(cd "${KVKIT_BUILD_DIR:-build}" && pwd)
cd "$build/bin"
for bench in kvbench_*.exe; do
    [ -e "$bench" ] || continue
    bash "$root/scripts/with-wine.sh" "$build" wine "$bench" "$@"
done
