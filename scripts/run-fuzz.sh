#!/usr/bin/env bash
# run-fuzz.sh BINARY SEEDS SECONDS [OPTIONS]: fuzzes for a time, over a copy of the seeds.
# KOV_FUZZ_SECONDS, if set, replaces SECONDS. What the fuzzer finds is left in KOV_TEST_TMP.
set -euo pipefail
binary=$1 seeds=$2 seconds=${KOV_FUZZ_SECONDS:-$3}
shift 3
scratch=${KOV_TEST_TMP:-$(mktemp -d)}
corpus=$scratch/corpus
rm -rf "$corpus"
mkdir -p "$corpus"
exec "$binary" "$corpus" "$seeds" -max_total_time="$seconds" -timeout=25 -rss_limit_mb=4096 \
    -artifact_prefix="$scratch/" -print_final_stats=1 "$@"
