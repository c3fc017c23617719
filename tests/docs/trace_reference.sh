#!/usr/bin/env bash
# Holds the trace texts of the reference against those in the code, both ways, and sees that each of them has a
# meaning and an action.
set -euo pipefail
export LC_ALL=C
root=$1
page=$root/docs/traces.md

# Texts in the code: literals that begin like a trace, and what goes to standard error. The five categories
# share their rows of the reference. A literal may go on in the next line.
code=$(cat "$root"/{request,cache,media,stream}/*.h "$root"/{devices,default_platform}/*.cpp |
    tr '\n' ' ' | sed -E 's/" +"//g' |
    grep -oE '"([?#][^"]*#?%d|Error : |Warning : )[^"]*"' |
    sed -E -e 's/^"//' -e 's/"$//' -e 's/\\n$//' -e 's/ +$//' \
        -e 's/getCacheConfig(Camera|Notification|Misc|VideoAnalytics)([:,])/getCacheConfigVideo\2/' | sort -u)
# Texts in the reference: the first column of its tables.
docs=$(sed -nE 's/^\| `([?#][^`]*|(Error|Warning) : [^`]*)` \|.*/\1/p' "$page" | sort -u)

test -n "$code" && test -n "$docs"
if ! difference=$(diff <(printf '%s\n' "$code") <(printf '%s\n' "$docs")); then
    printf 'The code (<) and docs/traces.md (>) name different trace texts:\n%s\n' "$difference"
    exit 1
fi
# Text, meaning, action: three columns with something in them.
if incomplete=$(grep -E '^\| `([?#]|Error|Warning)' "$page" | grep -vE '^\| `[^`]+` \| [^|]{5,} \| [^|]{5,} \|$'); then
    printf 'docs/traces.md does not tell meaning and action of:\n%s\n' "$incomplete"
    exit 1
fi
printf '%s trace texts agree\n' "$(printf '%s\n' "$code" | wc -l)"
