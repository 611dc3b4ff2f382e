#!/usr/bin/env bash
# Installs the cross toolchain, Wine, Xvfb and GoogleTest when any of them is missing.
# Safe to run repeatedly: it does nothing when everything is present.
set -euo pipefail

PACKAGES=(g++-mingw-w64-i686-posix wine wine32:i386 wine64 xvfb xauth cmake ninja-build googletest)
# The SDK: MSVC import libraries (llvm-dlltool), the MSVC-style link check (clang-cl, lld-link),
# the API reference (doxygen, with a filter in python3) and the ZIP.
PACKAGES+=(llvm lld clang-tools-14 doxygen python3 zip)

have_all() {
    command -v i686-w64-mingw32-g++-posix >/dev/null &&
    command -v wine >/dev/null &&
    command -v xvfb-run >/dev/null &&
    command -v cmake >/dev/null &&
    command -v ninja >/dev/null &&
    [ -d /usr/src/googletest ] &&
    dpkg -s wine32:i386 >/dev/null 2>&1
}

have_sdk_tools() {
    command -v llvm-dlltool >/dev/null &&
    command -v lld-link >/dev/null &&
    command -v clang-cl-14 >/dev/null &&
    command -v doxygen >/dev/null &&
    command -v python3 >/dev/null &&
    command -v zip >/dev/null
}

if have_all && have_sdk_tools; then
    exit 0
fi

SUDO=""
if [ "$(id -u)" != 0 ]; then SUDO="sudo"; fi

export DEBIAN_FRONTEND=noninteractive
$SUDO dpkg --add-architecture i386

if $SUDO apt-get update -q && $SUDO apt-get install -y -q --no-install-recommends "${PACKAGES[@]}"; then
    exit 0
fi

# The i386 index of the security suite can lag behind the amd64 one, which makes wine32:i386
# uninstallable. Retry against the main suites only, with the mirror the machine already uses.
echo "install-toolchain: plain install failed, retrying without the security suite" >&2
uri=""
for f in /etc/apt/sources.list.d/*.sources; do
    [ -f "$f" ] || continue
    uri=$(awk '/^URIs:/ && $2 !~ /security/ {print $2; exit}' "$f")
    [ -n "$uri" ] && break
done
if [ -z "$uri" ] && [ -f /etc/apt/sources.list ]; then
    uri=$(awk '$1 == "deb" && $0 !~ /security/ {for (i = 2; i <= NF; i++) if ($i ~ /^(https?|ftp|file):/) {print $i; exit}}' /etc/apt/sources.list)
fi
if [ -z "$uri" ]; then
    echo "install-toolchain: no Debian mirror found in the apt sources" >&2
    exit 1
fi

dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
cat > "$dir/main.sources" <<SRC
Types: deb
URIs: $uri
Suites: bookworm bookworm-updates
Components: main
Signed-By: /usr/share/keyrings/debian-archive-keyring.gpg
SRC
APT_OPTS=(-o Dir::Etc::SourceParts="$dir" -o Dir::Etc::SourceList=/dev/null)
$SUDO apt-get "${APT_OPTS[@]}" update -q
$SUDO apt-get "${APT_OPTS[@]}" install -y -q --no-install-recommends "${PACKAGES[@]}"
