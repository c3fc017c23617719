#!/usr/bin/env bash
# Each preset and each option of the build stands in a table of docs/install.md, and nothing else does.
set -euo pipefail
export LC_ALL=C
root=$1

compare() {
    local difference
    if ! difference=$(diff <(sort -u <<<"$2") <(sort -u <<<"$3")); then
        printf 'The build (<) and docs/install.md (>) name different %s:\n%s\n' "$1" "$difference"
        exit 1
    fi
    printf '%s %s agree\n' "$(wc -l <<<"$2")" "$1"
}

# table TITLE: what the first column of that table names.
table() {
    sed -n "/^| $1 |/,/^\$/p" "$root/docs/install.md" | sed '1,2d' | cut -d '|' -f 2 | grep -o '`[^`]*`' | tr -d '`'
}

presets=$(sed -n '/"configurePresets"/,/"buildPresets"/p' "$root/CMakePresets.json" |
    sed -nE 's/^ *"name": "(.*)",/\1/p' | grep -vx base)
options=$(cat "$root"/{,*/}CMakeLists.txt "$root"/cmake/*.cmake | tr '\n' ' ' |
    grep -oE '(option\(KOINE_[A-Z_]+|set\(KOINE_[A-Z_]+ +"[^"]*" +CACHE)' | grep -oE 'KOINE_[A-Z_]+')
compare presets "$presets" "$(table Preset)"
compare options "$options"$'\nBUILD_SHARED_LIBS' "$(table Option)"
