#!/usr/bin/env bash
# cross.sh aarch64|armhf: builds the core and its tests for another processor and runs them under qemu-user; then says
# how large the stripped library is and holds it to a bound.
set -euo pipefail
cd "$(dirname "$0")/../.."
preset="$1"
case "$preset" in
    aarch64) strip=aarch64-linux-gnu-strip ;;
    armhf) strip=arm-linux-gnueabihf-strip ;;
esac
largest=$((400 * 1024))

ctest --preset "$preset" --timeout 900
stripped="build/$preset/libkoine.stripped.so"
"$strip" -o "$stripped" "build/$preset/libkoine.so"
size="$(stat -c %s "$stripped")"
echo "libkoine.so for $preset, stripped: $size bytes (bound $largest)"
ctest --preset "$preset" -R footprint -V | grep -E '^[0-9]+: (pointer|resident)' | sed 's/^[0-9]*: //'
((size <= largest))
