#!/usr/bin/env bash
# Writes the API reference (HTML) from the headers in include/ and fails when an export, a record,
# a type or a macro the headers declare has no comment, or a comment does not read as
# documentation. Record fields may go without one: the record's comment covers them.
# Usage: scripts/api-reference.sh [OUTPUT] (default: BUILD/doc/api)
set -euo pipefail
cd "$(dirname "$0")/.."
root=$(pwd)
output=${1:-${KVKIT_BUILD_DIR:-build}/doc/api}
bash scripts/install-toolchain.sh
mkdir -p "$output"
output=$(cd "$output" && pwd)
version=$(sed -n 's/^#define KVKIT_VERSION_STRING "\(.*\)"/\1/p' include/kvkit_version.h)
rm -rf "$output/html"
log="$output/doxygen-warnings.txt"
{
    cat docs/Doxyfile
    echo "PROJECT_NUMBER = $version"
    echo "INPUT = $root/include $root/docs/api-mainpage.md"
    echo "FILTER_PATTERNS = *.h=\"python3 $root/docs/doxygen-filter.py\""
    echo "OUTPUT_DIRECTORY = $output"
    echo "WARN_LOGFILE = $log"
} | doxygen - >/dev/null
errors=$(grep -v -E 'Member .* \(variable\) of (struct|union|class) .* is not documented' "$log" | sed "s|$root/||" || true)
if [ -n "$errors" ]; then
    echo "api-reference: undocumented or badly documented declarations:" >&2
    echo "$errors" >&2
    exit 1
fi
echo "API reference written to $output/html/index.html"
