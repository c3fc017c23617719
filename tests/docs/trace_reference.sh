#!/usr/bin/env bash
# Holds the trace texts of the behaviour reference against those in the code, both ways.
set -euo pipefail
export LC_ALL=C
root=$1

# Texts in the code: literals that begin like a trace. The five categories share one row of the reference.
code=$(cat "$root"/request/*.h "$root"/cache/*.h "$root"/media/*.h "$root"/stream/*.h |
  grep -oE '"[?#][^"]*#?%d[^"]*"' |
  sed -E -e 's/^"//' -e 's/"$//' -e 's/\\n$//' -e 's/ +$//' \
    -e 's/getCacheConfig(Camera|Notification|Misc|VideoAnalytics)([:,])/getCacheConfigVideo\2/' | sort -u)
# Texts in the reference: the first column of the trace table.
docs=$(sed -n '/^## Trace lines/,$p' "$root/docs/behaviour.md" |
  sed -nE 's/^\| `([?#][^`]*)` \|.*/\1/p' | sort -u)

test -n "$code" && test -n "$docs"
if ! difference=$(diff <(printf '%s\n' "$code") <(printf '%s\n' "$docs")); then
  printf 'The code (<) and docs/behaviour.md (>) name different trace texts:\n%s\n' "$difference"
  exit 1
fi
printf '%s trace texts agree\n' "$(printf '%s\n' "$code" | wc -l)"
