#!/usr/bin/env bash
# installed.sh PYTHON CMAKE BUILD: in an installed tree, wherever it lies, the package finds its library.
set -euo pipefail
python=$1 cmake=$2 build=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for component in python runtime; do
    "$cmake" --install "$build" --prefix "$work/installed" --component "$component" >/dev/null
done
mv "$work/installed" "$work/moved"
unset KOINE_LIBRARY LD_LIBRARY_PATH
cd "$work"
package=$(dirname "$(find "$work/moved" -path '*/koine/py.typed')")
PYTHONPATH=$(dirname "$package") "$python" -B -c '
import koine, sys
from koine import _library
print(_library.lib._name)
assert _library.lib._name.startswith(sys.argv[1]), _library.lib._name
assert koine.open("http://127.0.0.1:9").address == "http://127.0.0.1:9"' "$work/moved/"
