#!/usr/bin/env bash
# Builds the site into build/docs/html. A warning of Doxygen is an error.
set -euo pipefail
cd "$(dirname "$0")/../.."
rm -rf build/docs
mkdir -p build/docs
doxygen docs/site/Doxyfile
if [[ -s build/docs/warnings.txt ]]; then
    cat build/docs/warnings.txt >&2
    echo "docs: the warnings above are errors" >&2
    exit 1
fi
echo "The site is at build/docs/html/index.html"
