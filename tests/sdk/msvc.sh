#!/usr/bin/env bash
# An MSVC-style consumer: compiled by clang-cl for the i686 MSVC ABI (so calls name the exports
# _Name@bytes, as MSVC emits them) against the installed headers, linked by lld-link through
# kvkit.lib, and run under Wine with the package's DLLs.
# The Windows SDK's headers are not available here; the MinGW-w64 ones stand in for them.
# Usage: msvc.sh PREFIX WORK_DIR
set -euo pipefail
prefix=$(cd "$1" && pwd)
work=$2
clang_cl=$(command -v clang-cl || command -v clang-cl-14 || echo /usr/lib/llvm-14/bin/clang-cl)
lld_link=$(command -v lld-link || command -v lld-link-14)
mingw_include=/usr/i686-w64-mingw32/include
mingw_lib=/usr/i686-w64-mingw32/lib

rm -rf "$work"
mkdir -p "$work"
cd "$work"
# Every header of the package, and every export of kvkit.def by name, for the consumer to take
# the address of.
for header in "$prefix"/include/kvkit_*.h; do
    echo "#include \"$(basename "$header")\""
done > kvkit_headers.inc
awk 'NR > 2 && NF && $1 !~ /^;/ {sub(/@.*/, "", $1); print "KV_EXPORT(" $1 ")"}' "$prefix/lib/kvkit.def" > exports.inc
# _X86_ is what the Windows SDK's windows.h derives from _M_IX86; the GNU version lets the
# MinGW-w64 headers use attributes clang understands.
"$clang_cl" --target=i686-pc-windows-msvc /nologo /c /O1 /GS- /Zl /EHs-c- /arch:SSE2 \
    /clang:-fgnuc-version=4.2.1 /D_X86_ /DUNICODE /D_UNICODE \
    -imsvc "$mingw_include" /I "$prefix/include" \
    /I . /Foconsumer.obj -- "$prefix/examples/msvc/consumer.cpp"
# No C runtime: the consumer has its own entry point and uses only system and kvkit calls.
# The MinGW-w64 system import libraries are not SafeSEH-marked; kvkit.lib's short imports are.
"$lld_link" /nologo /subsystem:console /entry:consumerMain /nodefaultlib /safeseh:no \
    /out:consumer.exe consumer.obj "$prefix/lib/kvkit.lib" "$prefix/lib/kvtext.lib" \
    "$mingw_lib/libkernel32.a" "$mingw_lib/libuser32.a" "$mingw_lib/libgdi32.a" \
    "$mingw_lib/libcomctl32.a"
cp "$prefix"/bin/*.dll .
wine consumer.exe
