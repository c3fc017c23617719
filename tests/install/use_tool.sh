#!/usr/bin/env bash
# use_tool.sh KOINE [HOST...]: the command, wherever it was installed, is a device and asks it what it is; then each
# program HOST talks to it.
set -euo pipefail
koine="$1"
shift
told="$(mktemp)"
"$koine" simulate --model dome >"$told" &
device=$!
trap 'kill "$device" 2>/dev/null || true; wait "$device" 2>/dev/null || true; rm -f "$told"' EXIT

for _ in $(seq 100); do
    url="$(grep -o 'http://[0-9.:]*' "$told" || true)"
    [[ -n "$url" ]] && break
    sleep 0.1
done
[[ -n "$url" ]] || { echo "$koine simulate does not say where it listens" >&2; exit 1; }
"$koine" info "$url" | grep -q PROFILE-MAIN || { echo "$koine info does not show the profiles" >&2; exit 1; }
echo "$koine simulates a device and asks it"
for host in "$@"; do
    "$host" "$url" | grep '=' >/dev/null || { echo "$host $url says nothing" >&2; exit 1; }
    echo "$host talks to it"
done
