#!/usr/bin/env bash
# notes.sh VERSION: what the list of changes says of that release; fails where it says nothing.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

awk -v "version=$1" '
    /^## / { listed = ($2 == version) }
    listed && !/^## / { print }
    listed && /^- / { said = 1 }
    END { exit !said }
' CHANGELOG.md || {
    printf 'notes.sh: CHANGELOG.md says nothing of %s\n' "$1" >&2
    exit 1
}
