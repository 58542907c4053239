#!/usr/bin/env bash
# The reference of the public headers as pages for a browser, in build/reference/html.
set -euo pipefail
cd "$(dirname "$0")/.."
mkdir -p build
rm -rf build/reference
doxygen docs/Doxyfile
echo "build/reference/html/index.html"
