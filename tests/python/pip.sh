#!/usr/bin/env bash
# pip.sh PACKAGE LIBRARY: the package is installed from the tree as its README says, without a network, and works.
set -euo pipefail
package=$1 library=$2
if ! /usr/bin/python3 -c 'import ensurepip, venv, wheel, setuptools' 2>/dev/null; then
    echo 'skipped: the system has no Python with venv, setuptools and wheel'
    exit 77
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp -r "$package" "$work/python" # building writes beside the sources
cd "$work"
export PIP_QUIET=1 PIP_DISABLE_PIP_VERSION_CHECK=1

/usr/bin/python3 -m venv --system-site-packages koine-venv
koine-venv/bin/pip install --no-index --no-build-isolation ./python

python=$work/koine-venv/bin/python
where=$(KOINE_LIBRARY=$library "$python" -c '
import os, sys
import koine
print(koine.__version__, koine.open("http://127.0.0.1:9").address, file=sys.stderr)
print(os.path.dirname(koine.__file__))')
[[ $where == "$work"/koine-venv/* ]] || { echo "the package came from $where" && exit 1; }
test -f "$where/py.typed"
# Without the library, the reason and what to do are told.
if KOINE_LIBRARY=$work/nowhere.so "$python" -c 'import koine' 2>said; then
    echo 'there is no library, and yet it was loaded'
    exit 1
fi
grep -q 'cannot be loaded: .*nowhere.so.*name its file in KOINE_LIBRARY' said
