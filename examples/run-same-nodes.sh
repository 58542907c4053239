#!/usr/bin/env bash
# Runs same_nodes on two documents of one assembly, of which the second numbers its nodes otherwise
# and has one part moved, and compares what it prints.
#
#   run-same-nodes.sh SAME_NODES KOVSIM
set -euo pipefail
folder=$(mktemp -d "${KOV_TEST_TMP:-${TMPDIR:-/tmp}}/same-nodes-XXXXXX")
trap 'rm -rf "$folder"' EXIT
cat >"$folder/a.inp" <<'END'
*PART, NAME=Plate
*NODE, NSET=Rim
7, 0, 0, 0
3, 1, 0, 0
*END PART
*ASSEMBLY
*INSTANCE, NAME=Left, PART=Plate
*END INSTANCE
*INSTANCE, NAME=Right, PART=Plate
10, 0, 0
*END INSTANCE
*END ASSEMBLY
END
cat >"$folder/b.inp" <<'END'
*PART, NAME=Plate
*NODE
1, 5, 5, 5
3, 1, 0, 0
7, 0, 0, 0
*END PART
*ASSEMBLY
*INSTANCE, NAME=Right, PART=Plate
10, 0, 2.5
*END INSTANCE
*INSTANCE, NAME=Left, PART=Plate
*END INSTANCE
*END ASSEMBLY
END
for deck in a b; do "$2" translate "$folder/$deck.inp" -o "$folder/$deck.ksd" >/dev/null; done
diff <("$1" "$folder/a.ksd" "$folder/b.ksd" Right.Rim) - <<'END'
Right 7: 0 0 2.5
Right 3: 0 0 2.5
END
diff <("$1" "$folder/a.ksd" "$folder/b.ksd" Left.Rim) - <<'END'
Left 7: 0 0 0
Left 3: 0 0 0
END
status=0
"$1" "$folder/a.ksd" "$folder/b.ksd" Nothing 2>/dev/null || status=$?
[ "$status" -eq 1 ]
status=0
"$1" "$folder/a.ksd" "$folder/a.ksd" Left.Rim 2>/dev/null || status=$?
[ "$status" -eq 1 ]
