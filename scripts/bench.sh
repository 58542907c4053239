#!/usr/bin/env bash
# Builds and runs the benchmarks; prints their table. Arguments are handed on.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake --preset bench >/dev/null
cmake --build --preset bench
if [ -x bench/run.sh ]; then
    exec bench/run.sh build/bench "$@"
fi
for program in build/bench/bin/bench_*; do
    [ -x "$program" ] && "$program" "$@"
done
