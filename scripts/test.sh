#!/usr/bin/env bash
# Builds everything and runs every test suite under Wine. Exit status is CTest's.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${KVKIT_BUILD_DIR:-build}
bash scripts/build.sh
bash scripts/with-wine.sh "$build" ctest --test-dir "$build" --output-on-failure "$@"
