#!/usr/bin/env bash
# A real part, from geometry to picture: Gmsh meshes a bearing bracket with second-order tetrahedra
# and writes a keyword deck; kovsim translates it into a document, shows what is in it, verifies and
# exports it; the export is compared with what Gmsh wrote in its own format, and drawn.
#
#   scripts/demo.sh [big|small]     a million nodes (default), or some 25,000
#
# Everything is left in build/demo/<size>.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD

nodes=${1:-big}
case $nodes in
    big) edge=1.42 ;;
    small) edge=8 ;;
    *) echo "demo.sh: big or small, not '$nodes'" >&2; exit 2 ;;
esac

bold='' plain=''
if [ -t 1 ]; then bold=$'\033[1m' plain=$'\033[0m'; fi
say() { printf '\n%s%s%s\n' "$bold" "$*" "$plain"; }
seconds() { date +%s.%N; }
# run TITLE COMMAND...: shows the command, runs it, and tells how long it took.
run() {
    local start
    printf '\n$ %s\n' "${*//$root\//}"
    start=$(seconds)
    "$@"
    printf '  (%.1f s)\n' "$(echo "$(seconds) $start" | awk '{print $1 - $2}')"
}

say "Building kovsim"
cmake --preset release >/dev/null
cmake --build --preset release --target kovsim
PATH=$root/build/release/bin:$PATH

work=$root/build/demo/$nodes
geometry=$root/examples/demo/bearing_bracket.geo
mkdir -p "$work"
cd "$work"

# The mesh is kept from run to run as long as neither the geometry nor the size has changed.
say "Meshing the part with Gmsh (element edge $edge mm)"
key="$(sha256sum <"$geometry" | cut -c1-16) $edge"
if [ ! -f bracket.inp ] || [ "$(cat mesh.key 2>/dev/null)" != "$key" ]; then
    rm -f mesh.key
    run gmsh "$geometry" -3 -setnumber size $edge -bin -o bracket.msh -v 2
    run gmsh bracket.msh -save -o bracket.inp -v 2 \
        -setnumber Mesh.SaveGroupsOfNodes 1 -setnumber Mesh.SaveGroupsOfElements 1
    echo "$key" >mesh.key
fi
ls -l --block-size=K bracket.inp | awk '{print "  bracket.inp: " $5}'

say "Deck to document"
rm -rf bracket.ksd bracket.vtu bracket.png
run kovsim translate bracket.inp -o bracket.ksd
run kovsim info bracket.ksd
run kovsim verify bracket.ksd

say "Document to viewer"
run kovsim export bracket.ksd -o bracket.vtu
run /usr/bin/python3 "$root/scripts/compare-with-gmsh.py" bracket.msh bracket.vtu

say "Picture"
screen=()
[ -n "${DISPLAY-}" ] || screen=(xvfb-run -a -s "-screen 0 1920x1080x24")
run "${screen[@]}" /usr/bin/python3 "$root/scripts/mesh-picture.py" bracket.vtu bracket.png
echo
echo "The document: $work/bracket.ksd"
echo "The picture:  $work/bracket.png"
