#!/usr/bin/env bash
# Installs the build into a fresh prefix and checks the layout a host relies on.
# Usage: install.sh BUILD PREFIX
set -euo pipefail
build=$1
prefix=$2
source_dir=$(cd "$(dirname "$0")/../.." && pwd)

rm -rf "$prefix"
cmake --install "$build" --prefix "$prefix" >/dev/null

missing=0
expect() {
    if [ ! -e "$prefix/$1" ]; then
        echo "missing from the package: $1"
        missing=1
    fi
}
for file in bin/kvkit.dll lib/libkvkit.dll.a lib/kvkit.lib \
            lib/cmake/kvkit/kvkitConfig.cmake lib/cmake/kvkit/kvkitConfigVersion.cmake \
            lib/cmake/kvkit/mingw-i686.cmake lib/cmake/kvkit/manifest/comctl6.manifest \
            lib/cmake/kvkit/manifest/comctl6.rc doc/host-guide.md examples/customers/CMakeLists.txt; do
    expect "$file"
done
for header in "$source_dir"/include/*.h "$source_dir"/standins/*/*.h; do
    expect "include/$(basename "$header")"
done
# Every DLL that kvkit.dll imports and that the build made must be in bin/, with both import
# libraries when it is linkable.
for dll in $(i686-w64-mingw32-objdump -p "$build/bin/kvkit.dll" | awk '/DLL Name:/ {print $3}'); do
    if [ -e "$build/bin/$dll" ]; then
        expect "bin/$dll"
        expect "lib/lib${dll%.dll}.dll.a"
        expect "lib/${dll%.dll}.lib"
    fi
done
[ "$missing" = 0 ] && echo "package layout complete: $(find "$prefix" -type f | wc -l) files"
exit "$missing"
