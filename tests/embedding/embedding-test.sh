#!/usr/bin/env bash
# embedding-test.sh CMAKE_ARGUMENT...: builds the program of another project with these settings, and runs it. Writes
# below TMPDIR alone.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
# A cache keeps its files elsewhere.
export CCACHE_DISABLE=1

cmake -S "$here/project" -B "$folder/build" -G Ninja "$@" >/dev/null
cmake --build "$folder/build"
mkdir "$folder/sample"
printf '%s' 12345 >"$folder/sample/file"
told=$("$folder/build/embedding" "$folder/sample")
printf '%s\n' "$told"
case $told in
"15 tools, "*" variables, 0 containers, 2 items of 5 bytes") ;;
*)
    echo "embedding-test: that is not what there is" >&2
    exit 1
    ;;
esac
[ -f "$folder/sample/file" ]
