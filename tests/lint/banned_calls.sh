#!/usr/bin/env bash
# Functions that write without a bound or read numbers without telling failure are called nowhere.
# With a folder as argument, looks there instead (that is how this check is itself tested).
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
cd "${1:-$here/../..}"

# All of the scanf family: "%s" without a width is easily overlooked, and numbers that do not fit go unnoticed.
banned='v?sprintf|strcpy|stpcpy|strcat|wcscpy|wcscat|v?[fs]?scanf|gets|atoi|atol|atoll|atof'
source "$here/sources.sh"
# A call has a parenthesis after the name and no letter before it. Lines that are comments may name them: those
# that begin with "//", with "/*" and do not end it, or with "*" and a blank.
comment='(//|/\*([^*]|\*+[^*/])*$|\*( |$))'
if grep -HnE "(^|[^A-Za-z0-9_\"])($banned)[[:space:]]*\(" "${sources[@]}" |
    grep -vE "^[^:]+:[0-9]+:[[:space:]]*$comment"; then
    echo "banned functions are called in the lines above" >&2
    exit 1
fi
echo "${#sources[@]} files call none of them"
