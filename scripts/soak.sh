#!/usr/bin/env bash
# The slow things, for about SECONDS in all: tests labelled soak, the tests that take KOV_SOAK as
# leave to repeat themselves thousands of times, and each fuzz target for its share of the time.
#
#   scripts/soak.sh [SECONDS]      default 1800
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-1800}

cmake --preset release >/dev/null
cmake --build --preset release
KOV_SOAK=1 ctest --preset release -L soak --output-on-failure --no-tests=ignore

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz
targets=$(ctest --test-dir build/fuzz -N -L fuzz | grep -c 'Test *#' || true)
if [ "$targets" -gt 0 ]; then
    KOV_FUZZ_SECONDS=$((seconds / targets)) ctest --test-dir build/fuzz -L fuzz \
        --output-on-failure --timeout $((seconds + 600))
fi
