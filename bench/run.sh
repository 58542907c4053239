#!/usr/bin/env bash
# run.sh BUILD [options of table.py]: the table of measures, from the programs in BUILD.
set -euo pipefail
build=$1
shift
exec python3 "$(dirname "$0")/table.py" --build "$build" "$@"
