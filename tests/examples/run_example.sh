#!/usr/bin/env bash
# run_example.sh TOOL PROGRAM EXPECTED [ARGUMENT...]: runs an example against a simulated dome and compares its
# output with the file EXPECTED. PORT stands there for the device's port; a line is a shell pattern.
set -euo pipefail
tool=$1 program=$2 expected=$3
shift 3

work=$(mktemp -d)
mkfifo "$work/device"
printf 'can4ry-s3cret\n' >"$work/password"
"$tool" simulate --model dome --auth digest --password-file "$work/password" >"$work/device" &
device=$!
trap 'kill "$device" 2>/dev/null || true; wait "$device" || true; rm -rf "$work"' EXIT
exec 3<"$work/device"
read -r -t 30 line <&3
address=${line#*http://}
address=${address%%,*}

"$program" "http://admin:can4ry-s3cret@$address" "$@" >"$work/output" 2>&1 || echo "exit code $?" >>"$work/output"
sed -i "s/:${address##*:}\b/:PORT/g" "$work/output"

exec 4<"$work/output"
number=0
while IFS= read -r pattern; do
    number=$((number + 1))
    line='(nothing)'
    IFS= read -r line <&4 || line='(nothing)'
    # shellcheck disable=SC2053 # the right side is a pattern on purpose
    if [[ "$line" != $pattern ]]; then
        printf 'line %s of the output:\n  %s\nshould be:\n  %s\nall of it:\n' "$number" "$line" "$pattern"
        cat "$work/output"
        exit 1
    fi
done <"$expected"
if IFS= read -r line <&4; then
    printf 'more output than expected, from this line on:\n  %s\nall of it:\n' "$line"
    cat "$work/output"
    exit 1
fi
printf '%s lines are as expected\n' "$number"
