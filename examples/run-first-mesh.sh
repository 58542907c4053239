#!/usr/bin/env bash
# Runs first_mesh in a folder of its own, and compares what it prints.
set -euo pipefail
folder=$(mktemp -d "${KOV_TEST_TMP:-${TMPDIR:-/tmp}}/first-mesh-XXXXXX")
trap 'rm -rf "$folder"' EXIT
diff <("$1" "$folder/tetrahedron.ksd") - <<'END'
node 0: 0 0 0
node 1: 1 0 0
node 2: 0 1 0
END
if "$1" "$folder/tetrahedron.ksd" 2>"$folder/error"; then
    echo "a document that exists was overwritten" >&2
    exit 1
fi
grep -q '^first_mesh: ' "$folder/error"
