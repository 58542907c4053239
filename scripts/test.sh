#!/usr/bin/env bash
# The whole of `make test`: builds, the checks of the sources, and the suite twice, optimised and
# under the sanitizers. The last line is the sum; the numbers are left in build/test-tally too.
#
#   KOV_TEST_PRESETS="release"   narrows the presets (default: release asan)
#   KOV_TEST_JOBS=4              tests at a time (default: the number of processors)
set -uo pipefail
cd "$(dirname "$0")/.."

passed=0 failed=0
jobs=${KOV_TEST_JOBS:-$(nproc)}
mkdir -p build
rm -f build/test-tally

finish() {
    echo "$passed $failed" >build/test-tally
    echo "$passed passed, $failed failed"
    [ "$failed" -eq 0 ] && [ "$passed" -gt 0 ]
    exit
}

check() {
    echo "== $1"
    shift
    if "$@"; then passed=$((passed + 1)); else failed=$((failed + 1)); fi
}

build() {
    echo "== build, $1"
    { cmake --preset "$1" >"build/configure-$1.log" || { cat "build/configure-$1.log"; false; }; } &&
        cmake --build --preset "$1" -j "$(nproc)"
}

suite() {
    local folder=build/$1
    echo "== tests, $1"
    rm -rf "$folder/test-results" "$folder/test-tmp" "$folder/tally"
    cmake --preset "$1" >/dev/null
    ctest --preset "$1" -LE soak -j "$jobs" --output-junit "$PWD/$folder/ctest.xml" --output-on-failure
    if python3 scripts/test-summary.py "$folder/ctest.xml" "$folder/test-results" "$folder/tally" ||
        [ -f "$folder/tally" ]; then
        local p f
        read -r p f <"$folder/tally"
        passed=$((passed + p)) failed=$((failed + f))
    else
        failed=$((failed + 1))
    fi
}

for preset in ${KOV_TEST_PRESETS:-release asan}; do
    if ! build "$preset"; then
        failed=$((failed + 1))
        echo "  FAILED  the build, $preset"
        continue
    fi
    if [ "$preset" = release ]; then
        check "includes follow the arrows" python3 scripts/check-includes.py
        check "public headers compile alone" scripts/check-headers.sh
        check "sources are formatted" scripts/format.sh --check
        check "every test is listed" scripts/check-tests-listed.sh build/release
    fi
    suite "$preset"
done
finish
