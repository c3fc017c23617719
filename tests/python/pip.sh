#!/usr/bin/env bash
# pip.sh PYTHON PACKAGE LIBRARY: pip installs the package from the tree, without a network, and it works there.
set -euo pipefail
package=$2 library=$3
# The Python that CMake found need not be the one whose packages the system keeps.
python=
for candidate in "$1" /usr/bin/python3; do
  if "$candidate" -c 'import setuptools, pip, wheel' 2>/dev/null; then
    python=$candidate
    break
  fi
done
if [[ -z $python ]]; then
  echo 'skipped: no Python with pip, setuptools and wheel here'
  exit 77
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp -r "$package" "$work/source" # building writes beside the sources
"$python" -m pip --disable-pip-version-check install --quiet --no-index --no-build-isolation --no-deps \
  --root-user-action=ignore --target "$work/installed" "$work/source"
cd "$work"
test -f installed/koine/py.typed
PYTHONPATH=$work/installed KOINE_LIBRARY=$library "$python" -c '
import koine
assert koine.__file__.startswith("'"$work"'/installed"), koine.__file__
print(koine.library_version(), koine.open("http://127.0.0.1:9").address)'
# Without the library, the reason and what to do are told.
if PYTHONPATH=$work/installed KOINE_LIBRARY=$work/nowhere.so "$python" -c 'import koine' 2>said; then
  echo 'there is no library, and yet it was loaded'
  exit 1
fi
grep -q 'cannot be loaded: .*nowhere.so.*name its file in KOINE_LIBRARY' said
