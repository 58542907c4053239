#!/usr/bin/env bash
# A test that no list names is a test that never runs: every tests/**/test_*.cpp and fuzz_*.cpp must
# be among the sources that the configured build folder knows.
#
#   scripts/check-tests-listed.sh BUILD_FOLDER
set -euo pipefail
cd "$(dirname "$0")/.."
listed=${1:?a build folder}/test-sources.txt

unlisted=$(comm -23 \
    <(find "$PWD/tests" \( -name 'test_*.cpp' -o -name 'fuzz_*.cpp' -o -name 'test_*.sh' -o -name 'test_*.py' \) \
        -not -path '*/support/*' | sort) \
    <(sort "$listed"))
if [ -n "$unlisted" ]; then
    echo "tests that no list names:"
    sed "s|^$PWD/|  |" <<<"$unlisted"
    exit 1
fi
echo "tests: all of $(grep -c . "$listed" || true) files are listed"
