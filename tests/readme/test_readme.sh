#!/usr/bin/env bash
# Runs the command lines of the README's tour, as they stand there, on a small deck of the same name,
# on the wing that the example makes, and on a panel that is solved.
#
#   test_readme.sh SOURCE_DIR
set -euo pipefail
source=$1

scratch=$(mktemp -d "${KOV_TEST_TMP:-/tmp}/readme-XXXXXX")
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"
cp "$source/tests/kovsim/decks/square.inp" bracket.inp
python3 "$source/examples/wing/make-wing.py" -o wing.inp
cp "$source"/examples/results/panel.frd .
PATH=$(dirname "$KOVSIM"):$PATH
kovsim translate "$source/examples/results/panel.inp" -o panel.ksd

count=0
while IFS= read -r line; do
    echo "$ $line"
    bash -c "$line" || { echo "FAILED with $?"; exit 1; }
    count=$((count + 1))
done < <(sed -n 's/^    \(\$ \)\{0,1\}\(kovsim .*\)/\2/p' "$source/README.md")
[ "$count" -ge 5 ] || { echo "FAILED: only $count command lines found"; exit 1; }
for made in bracket.ksd bracket.vtu spar.svg core.ksd; do
    [ -e "$made" ] || { echo "FAILED: $made was not made"; exit 1; }
done
echo "$count command lines of the README ran"
