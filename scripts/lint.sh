#!/usr/bin/env bash
# clang-tidy over the sources changed since the last commit on the main branch (or since the commit
# in LINT_SINCE), or over all with --all, or over those named.
set -euo pipefail
cd "$(dirname "$0")/.."

build=build/release
[ -f $build/compile_commands.json ] || cmake --preset release >/dev/null

case ${1-} in
    --all)
        mapfile -t files < <(find document frame KOVSrvSimServices tools -name '*.cpp' | sort) ;;
    '')
        since=${LINT_SINCE:-HEAD}
        mapfile -t files < <({ git diff --name-only --diff-filter=d "$since"
            git ls-files --others --exclude-standard; } | grep -E '\.cpp$' | sort -u || true) ;;
    *)
        files=("$@") ;;
esac
[ ${#files[@]} -gt 0 ] || { echo "lint: nothing changed"; exit 0; }

# Only what the build knows can be read as the build reads it.
known=()
for file in "${files[@]}"; do
    grep -qF "/$file\"" $build/compile_commands.json && known+=("$file")
done
[ ${#known[@]} -gt 0 ] || { echo "lint: nothing that the build knows"; exit 0; }
printf '%s\0' "${known[@]}" |
    xargs -0 -P "$(nproc)" -n 1 clang-tidy -p $build --quiet --extra-arg=-Wno-unknown-warning-option
echo "lint: ${#known[@]} files"
