#!/usr/bin/env bash
# Compiles each public header alone, as C++17 and as C++20, with warnings as errors.
#
#   scripts/check-headers.sh [compiler...]      default: g++
set -euo pipefail
cd "$(dirname "$0")/.."

compilers=("$@")
[ ${#compilers[@]} -gt 0 ] || compilers=(g++)

check_one() {
    local compiler=$1 standard=$2 header=$3
    printf '#include "%s"\n#include "%s"\n' "$header" "$header" |
        "$compiler" -std="$standard" -fsyntax-only -Iinclude -x c++ \
            -Wall -Wextra -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor \
            -Wold-style-cast -pedantic -Werror - ||
        { echo "include/$header does not compile alone: $compiler -std=$standard"; return 1; }
}
export -f check_one

status=0
for compiler in "${compilers[@]}"; do
    for standard in c++17 c++20; do
        find include -name '*.h' -printf '%P\n' | sort |
            xargs -P "$(nproc)" -I{} bash -c 'check_one "$@"' _ "$compiler" "$standard" {} || status=1
    done
done
[ $status -eq 0 ] && echo "headers: $(find include -name '*.h' | wc -l) compile alone, as C++17 and C++20"
exit $status
