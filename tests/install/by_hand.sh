#!/usr/bin/env bash
# by_hand.sh PREFIX: what docs/install.md says for a Koine that was installed to a place of its own.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
prefix="$1"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
cd "$work"
cp "$prefix"/share/doc/koine/examples/{smallest_host.cpp,host.c} .

export PATH="$prefix/bin:$PATH" MANPATH="$prefix/share/man:"
export CMAKE_PREFIX_PATH="$prefix" PKG_CONFIG_PATH="$prefix/lib/pkgconfig"
export LD_LIBRARY_PATH="$prefix/lib" PYTHONPATH="$prefix/lib/python3/dist-packages"

c++ -std=c++17 smallest_host.cpp -o smallest_host $(pkg-config --cflags --libs koine-devices)
cc host.c -o host_in_c $(pkg-config --cflags --libs koine-c)

"$here/use_tool.sh" koine ./smallest_host ./host_in_c
[[ "$(command -v koine)" == "$prefix/bin/koine" && -s "${MANPATH%:}/man1/koine.1" ]]
python3 -B -c 'import koine; print(koine.__file__)' | grep -F "$prefix/"
cp -r "$here/consumer" project
cmake -S project -B build && cmake --build build
