#!/usr/bin/env bash
# scripts/format.sh            formats the sources in place
# scripts/format.sh --check    only says which are not formatted; exits with 1 if any is not
set -euo pipefail
cd "$(dirname "$0")/.."

mapfile -d '' files < <(find include document frame KOVSrvSimServices tools tests bench examples \
    \( -name '*.h' -o -name '*.cpp' \) -print0 2>/dev/null | sort -z)
[ ${#files[@]} -gt 0 ] || exit 0

if [ "${1-}" != --check ]; then
    clang-format -i "${files[@]}"
    exit 0
fi
status=0
unformatted=$(printf '%s\0' "${files[@]}" |
    xargs -0 -n 64 clang-format --dry-run 2>&1 |
    sed -n 's/^\([^:]*\):[0-9]*:.*clang-format-violations.*/\1/p' | sort -u)
if [ -n "$unformatted" ]; then
    status=1
    echo "not formatted (make format does it):"
    sed 's/^/  /' <<<"$unformatted"
fi
echo "format: ${#files[@]} files, $(grep -c . <<<"$unformatted" || true) not formatted"
exit $status
