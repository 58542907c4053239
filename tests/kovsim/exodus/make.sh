#!/usr/bin/env bash
# Makes the files of this folder again, by writers of Exodus II that are not ours. They need the
# Debian packages libexodusii-dev, python3-vtk9 and python3-meshio.
set -euo pipefail
cd "$(dirname "$0")"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cc -Wall -Wextra -o "$scratch/library" library.c -lexoIIv2c
rm -f library.e vtk.e meshio.e
"$scratch/library" library.e
/usr/bin/python3 vtk_file.py vtk.e
/usr/bin/python3 meshio_file.py meshio.e
