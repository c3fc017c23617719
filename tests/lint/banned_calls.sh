#!/usr/bin/env bash
# Functions that write without a bound or read numbers without telling failure are called nowhere.
# With a folder as argument, looks there instead (that is how this check is itself tested).
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
cd "${1:-$here/../..}"

banned='sprintf|vsprintf|strcpy|strcat|sscanf|gets|atoi|atol|atof'
source "$here/sources.sh"
# Comments may name them; a call has a parenthesis after the name and no letter before it.
if grep -nE "(^|[^A-Za-z0-9_\"])($banned) *\(" "${sources[@]}" | grep -vE '^[^:]+:[0-9]+: *(//|\*|/\*)'; then
    echo "banned functions are called in the lines above" >&2
    exit 1
fi
echo "${#sources[@]} files call none of them"
