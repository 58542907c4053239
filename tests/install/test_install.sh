#!/usr/bin/env bash
# Installs into a temporary prefix, moves the prefix, and builds and runs an outside program against
# what is there: by find_package, and by pkg-config.
#
#   test_install.sh SOURCE_DIR BUILD_DIR GENERATOR COMPILER
set -euo pipefail
source=$1 build=$2 generator=$3 compiler=$4

scratch=$(mktemp -d "${KOV_TEST_TMP:-/tmp}/install-XXXXXX")
trap 'rm -rf "$scratch"' EXIT

fail() { echo "FAILED: $*" >&2; exit 1; }

cmake --install "$build" --prefix "$scratch/first" >"$scratch/install.log" || {
    cat "$scratch/install.log"; fail "cmake --install"; }
prefix=$scratch/prefix
mv "$scratch/first" "$prefix"

for header in "$source"/include/*; do
    [ -f "$prefix/include/KOVSrvSimServices/$(basename "$header")" ] ||
        fail "$(basename "$header") is not installed"
done

cmake -S "$source/tests/install/consumer" -B "$scratch/build" -G "$generator" \
    -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_COMPILER="$compiler" >"$scratch/configure.log" || {
    cat "$scratch/configure.log"; fail "find_package"; }
cmake --build "$scratch/build" >"$scratch/build.log" || { cat "$scratch/build.log"; fail "build"; }
for program in outside outside_document; do
    "$scratch/build/$program" "$scratch/$program.ksd" || fail "$program ended with $?"
done

if command -v pkg-config >/dev/null; then
    # The file names the prefix of the installation; --define-prefix follows the move.
    flags=$(PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name '*.pc')") \
        pkg-config --define-prefix --cflags --libs KOVSrvSimServices)
    # shellcheck disable=SC2086
    "$compiler" -std=c++17 "$source/tests/install/consumer/main.cpp" -o "$scratch/by_pkgconfig" $flags
    LD_LIBRARY_PATH=$(dirname "$(find "$prefix" -name 'libKOVSimDocument.so')") \
        "$scratch/by_pkgconfig" "$scratch/by_pkgconfig.ksd" || fail "by_pkgconfig ended with $?"
fi

if [ -x "$prefix/bin/kovsim" ]; then
    "$prefix/bin/kovsim" --help >/dev/null || fail "the installed kovsim does not start"
    "$prefix/bin/kovsim" verify "$scratch/outside.ksd" || fail "the installed kovsim does not verify"
fi

# Nothing but the project's own names may be visible. Weak symbols are what templates of the
# standard library leave in any program.
for library in $(find "$prefix" -name 'libKOV*.so'); do
    foreign=$(nm -DC --defined-only "$library" | cut -d' ' -f2- | grep -E '^[TDBRGS] ' |
        grep -vE '^. (typeinfo (name )?for |vtable for |guard variable for )?(KOV|omi_|zdm|mem_|atr_|zio_|schema::)' |
        grep -vE '^. (HostFatalError\(|std::hash<KOV|operator.*KOVString)' || true)
    [ -z "$foreign" ] || fail "$(basename "$library") shows what it should not: $foreign"
done
echo "installed, found, built and run"
