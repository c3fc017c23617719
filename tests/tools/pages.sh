#!/usr/bin/env bash
# pages.sh TOOL PART: the man page and the completions say what the command says about itself (texts), the man
# page has no mistakes (mandoc), and the completions complete every command and every option (bash, fish, zsh).
# Ends with 77 when the program that a part needs is not here.
set -euo pipefail
part=$2
here=$(cd "$(dirname "$0")" && pwd)
pages=$here/../../tools/pages
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
ln -s "$(realpath "$1")" "$work/koine"
export PATH=$work:$PATH

if [[ $part != texts ]] && ! command -v "$part" >/dev/null; then
    echo "$part is not here: not tried"
    exit 77
fi

commands=$(koine --help | sed -n '/^Commands:/,/^$/p' | sed -nE 's/^  ([a-z]+) .*/\1/p' | sort)
test "$(wc -l <<<"$commands")" -ge 11
options_of() { koine "$1" --help | grep -oE '^  -[^ ]+' | tr -d ' ' | tr ',' '\n' | sort; }

failed=0
# same WHAT WANTED GOT
same() {
    if [[ "$2" != "$3" ]]; then
        printf '%s:\n' "$1"
        diff <(printf '%s\n' "$2") <(printf '%s\n' "$3") || true
        failed=1
    fi
}

# Every option stands in the man page below its command.
texts_part() {
    "$pages/generate.py" "$work/koine" "$work"
    for page in koine.1 koine.bash _koine koine.fish; do
        if ! diff -u "$pages/$page" "$work/$page"; then
            echo "tools/pages/$page is not what the command says; run tools/pages/generate.py TOOL"
            failed=1
        fi
    done
    for command in $commands; do
        shown=$(sed -n "/^\.SS koine $command /,/^\.S[SH] koine [^$command]/p" "$pages/koine.1" | sed '1!{/^\.S[SH]/,$d}' |
            sed -n '/^\.TP/{n;p}' | sed -E 's/\\f[BIR]//g; s/\\-/-/g; s/ [A-Z].*//; s/, /\n/g' | sort)
        same "man page, $command" "$(options_of "$command")" "$shown"
    done
}

bash_part() {
    source "$pages/koine.bash"
    # completed WORD...: what bash offers for the last word
    completed() {
        COMP_WORDS=(koine "$@") COMP_CWORD=$#
        _koine
        printf '%s\n' "${COMPREPLY[@]}" | sort
    }
    same 'bash, commands' "$commands" "$(completed '' | grep -v '^-')"
    for command in $commands; do
        same "bash, $command" "$(options_of "$command")" "$(completed "$command" -)"
    done
    same 'bash, a value' "$(printf 'AUTO\n')" "$(completed stream --mode A)"
    same 'bash, models' dome "$(completed simulate --model do)"
    touch "$work/a list"
    same 'bash, a file' "$work/a list" "$(completed survey "$work/a ")"
    same 'bash, categories' "$(printf 'Video\nVideoAnalytics\n')" "$(completed get http://127.0.0.1 Video)"
}

fish_part() {
    offered() { HOME=$work fish --no-config -c "source '$pages/koine.fish'; complete -C '$1'" | cut -f1 | sort; }
    same 'fish, commands' "$commands" "$(offered 'koine ')"
    for command in $commands; do
        same "fish, $command" "$(options_of "$command" | grep '^--')" "$(offered "koine $command --")"
    done
    same 'fish, a value' MOBILE "$(offered 'koine stream --mode M')"
    same 'fish, models' dome "$(offered 'koine simulate --model do')"
}

# What the completion tells the shell's own helpers.
zsh_part() {
    told() {
        zsh -f -c '
      _arguments() { print -rl -- "$@" }
      _describe() { print -rl -- "${(P@)2%%:*}" }
      words=(koine "${@[2,-1]}") CURRENT=$#
      source "$1"' zsh "$pages/_koine" "$@"
    }
    same 'zsh, commands' "$commands" "$(told '' | grep -E '^[a-z]+' | sed 's/:.*//' | sort)"
    for command in $commands; do
        same "zsh, $command" "$(options_of "$command")" \
            "$(told "$command" - | grep -oE '^(\([^)]*\)|\*)?-[-a-z]+\[' | sed -E 's/^\([^)]*\)//; s/^\*//; s/\[$//' | sort)"
    done
}

mandoc_part() {
    mandoc -T lint -W warning "$pages/koine.1" || failed=1
}

"${part}_part"
exit $failed
