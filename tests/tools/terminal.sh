#!/usr/bin/env bash
# terminal.sh TOOL: colours and progress are for terminals, and only for those who want them.
set -euo pipefail
tool=$1
work=$(mktemp -d)
mkfifo "$work/device"
"$tool" simulate --model dome >"$work/device" &
device=$!
trap 'kill "$device" 2>/dev/null || true; wait "$device" || true; rm -rf "$work"' EXIT
exec 3<"$work/device"
read -r -t 30 line <&3
url=${line#*at }
printf '%s\nhttp://127.0.0.1:9\n' "$url" >"$work/list"
escape=$'\033'

# on_terminal COLUMNS COMMAND: what a terminal gets. Without a terminal to begin from, "script" has a size of 0.
on_terminal() {
    script --quiet --return --command "stty cols $1; $2" /dev/null </dev/null || true
}

failed=0
# expect yes|no PATTERN WHAT TEXT
expect() {
    local found=no
    [[ "$4" == *$2* ]] && found=yes
    if [[ $found != "$1" ]]; then
        printf '%s: wanted %s, got %s:\n%s\n' "$3" "$1" "$found" "$(printf '%s' "$4" | cat -v)"
        failed=1
    fi
}

export TERM=xterm
unset NO_COLOR
info="'$tool' info '$url'"
survey="'$tool' survey '$work/list'"
expect yes "${escape}[1m" 'info on a terminal is coloured' "$(on_terminal 80 "$info")"
expect no "$escape" 'info in a file is not' "$("$tool" info "$url")"
expect no "$escape" 'info with NO_COLOR is not' "$(NO_COLOR=1 on_terminal 80 "$info")"
expect yes "${escape}[1m" 'an empty NO_COLOR means nothing' "$(NO_COLOR='' on_terminal 80 "$info")"
expect no "$escape" 'a dumb terminal gets no colours' "$(TERM=dumb on_terminal 80 "$info")"

wide=$(on_terminal 80 "$survey")
expect yes '] 2/2' 'a survey shows its progress on a terminal' "$wide"
expect yes "${escape}[K" 'and takes it away' "$wide"
expect yes "${escape}[31m" 'with failures in red' "$wide"
expect no ' 2/2' 'no progress on a dumb terminal' "$(TERM=dumb on_terminal 80 "$survey")"
plain=$(NO_COLOR=1 on_terminal 80 "$survey")
expect yes '] 2/2' 'progress without colours' "$plain"
expect no "${escape}[3" 'no colours in it' "$plain"
narrow=$(on_terminal 20 "$survey")
expect yes '2/2' 'a narrow terminal gets the counts' "$narrow"
expect no '--' 'but no bar, not even before a device has failed' "$narrow"
expect no '2/2' 'no progress among traces' "$(on_terminal 80 "'$tool' survey -v '$work/list'")"

# No row of the table is broken at 80 columns; in a file nothing is cut.
widest=$(NO_COLOR=1 on_terminal 80 "$survey" | tr -d '\r' | sed 's/.*\x1b\[K//' | awk '{ print length($0) }' | sort -n | tail -1)
test "$widest" -gt 40
if ((widest > 80)); then
    echo "a survey writes $widest columns on a terminal with 80"
    failed=1
fi
exit $failed
