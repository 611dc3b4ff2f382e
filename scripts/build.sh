#!/usr/bin/env bash
# Installs what is missing, configures and builds everything (library, stand-ins, sample
# modules, tests, gallery, benchmarks) into the build folder (default: build).
set -euo pipefail
cd "$(dirname "$0")/.."
build=${KVKIT_BUILD_DIR:-build}
bash scripts/install-toolchain.sh
cmake -G Ninja -S . -B "$build" -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-i686.cmake \
      -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build "$build"
