#!/usr/bin/env bash
# check.sh [--update]: the libraries of the preset package against the kept baselines.
set -euo pipefail
cd "$(dirname "$0")/../.."
failed=0
for library in koine:libkoine.so koine_platform:default_platform/libTlGlobalLib.so koine_c:capi/libkoine_c.so; do
    tests/abi/surface.py "$@" "build/package/${library#*:}" "tests/abi/baseline/${library%%:*}.txt" || failed=1
done
if ((failed)); then
    echo "The binary interface has changed. If that is meant, bump the version and run: ./run abi --update" >&2
fi
exit "$failed"
