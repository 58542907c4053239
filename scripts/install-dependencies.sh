#!/usr/bin/env bash
# Installs the Debian packages that the project needs, by name; quick, and without network, when all
# of them are there.
#
#   scripts/install-dependencies.sh [build] [demo] [bench] [reference] [results]      default: build
#
# docs/dependencies.md gives the reason for each package.
set -euo pipefail

build=(
    g++ make cmake ninja-build ccache git python3
    libsqlite3-dev libroaring-dev libxxhash-dev
    libcli11-dev libnetcdf-dev
    libgtest-dev libgmock-dev
    clang libclang-rt-dev clang-format clang-tidy llvm
)
demo=(gmsh python3-gmsh python3-numpy python3-vtk9 xvfb xauth)
bench=(
    libbenchmark-dev libhdf5-dev libnetcdf-dev libexodusii-dev libcgns-dev libmedc-dev libvtk9-dev
    libopenblas-dev python3-meshio python3-numpy
)
reference=(doxygen python3)
results=(calculix-ccx python3-netcdf4 python3-vtk9)

groups=("$@")
[ ${#groups[@]} -gt 0 ] || groups=(build)

wanted=()
for group in "${groups[@]}"; do
    case $group in
        build) wanted+=("${build[@]}") ;;
        demo) wanted+=("${demo[@]}") ;;
        bench) wanted+=("${bench[@]}") ;;
        reference) wanted+=("${reference[@]}") ;;
        results) wanted+=("${results[@]}") ;;
        *) echo "install-dependencies.sh: unknown group '$group' (build, demo, bench, reference, results)" >&2; exit 2 ;;
    esac
done

missing=()
installed=$(dpkg-query -W -f '${db:Status-Abbrev} ${Package}\n' 2>/dev/null | sed -n 's/^ii *//p')
for package in "${wanted[@]}"; do
    grep -qxF -- "$package" <<<"$installed" || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

echo "installing: ${missing[*]}"
as_root=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || {
        echo "install-dependencies.sh: not root and no sudo; install by hand: ${missing[*]}" >&2
        exit 1
    }
    as_root=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y
     -o Dpkg::Use-Pty=0 -o DPkg::Lock::Timeout=300)
# A list of packages that is old may name files that are gone: fetch it anew on failure.
"${apt[@]}" install --no-install-recommends "${missing[@]}" || {
    "${apt[@]}" update
    "${apt[@]}" install --no-install-recommends "${missing[@]}"
}
