#!/usr/bin/env bash
# Builds the sample host from the installed package only (find_package with the package's
# toolchain file) and runs its scripted session under Wine.
# Usage: host.sh PREFIX HOST_BUILD
set -euo pipefail
prefix=$(cd "$1" && pwd)
host_build=$2

# The host is configured from the copy inside the package, as a user of the ZIP would.
cmake --no-warn-unused-cli -G Ninja -S "$prefix/examples/customers" -B "$host_build" \
      -DCMAKE_TOOLCHAIN_FILE="$prefix/lib/cmake/kvkit/mingw-i686.cmake" \
      -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_BUILD_TYPE=Release >/dev/null
# Relinked every time, so that its post-build step copies the DLLs just installed.
rm -f "$host_build/customers.exe"
cmake --build "$host_build" >/dev/null
# It runs on what its build copied beside it, nothing of the kvkit build tree.
cd "$host_build"
wine customers.exe --script
