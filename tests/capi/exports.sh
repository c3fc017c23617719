#!/usr/bin/env bash
# exports.sh NM LIBRARY HEADER: the library exports what the header declares, all of it and nothing else.
set -euo pipefail
export LC_ALL=C
declared=$(sed -nE 's/^KOINE_C_EXPORT .*[ *](koine_[a-z_]+)\(.*/\1/p' "$3" | sort)
# Sanitizers add marks of their own to what they look after.
exported=$("$1" --dynamic --defined-only "$2" | awk '$2 != "A" {print $3}' | sed 's/@.*//' | grep -v '^__' | sort)
test -n "$declared"
if ! difference=$(diff <(printf '%s\n' "$declared") <(printf '%s\n' "$exported")); then
    printf 'The header (<) and the library (>) differ:\n%s\n' "$difference"
    exit 1
fi
printf '%s functions agree\n' "$(printf '%s\n' "$declared" | wc -l)"
