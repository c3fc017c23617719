#!/usr/bin/env bash
# ./run installs exactly what is missing, says so before it does, and does nothing when all is there. Package
# tools of our own stand in for Debian's.
set -euo pipefail
run="$(cd "$(dirname "$0")/../.." && pwd)/run"
stage="$(mktemp -d)"
trap 'rm -rf "$stage"' EXIT
mkdir "$stage/bin"

cat >"$stage/bin/dpkg-query" <<'END'
#!/bin/bash
grep -qx "${!#}" "$STAGE/installed" && echo -n installed || exit 1
END
cat >"$stage/bin/apt-get" <<'END'
#!/bin/bash
echo "apt-get $*" >>"$STAGE/log"
END
cat >"$stage/bin/sudo" <<'END'
#!/bin/bash
[[ "$1" == -n ]] && shift
"$@"
END
chmod +x "$stage"/bin/*
export STAGE="$stage"

fail() {
    echo "FAILED: $1" >&2
    cat "$stage/out" "$stage/log" >&2
    exit 1
}

# lint needs few packages and no build; what the checks themselves say is of no interest here.
lint() {
    : >"$stage/log"
    PATH="$stage/bin:$PATH" "$run" lint >"$stage/out" 2>&1 || true
}

printf '%s\n' git clang-format >"$stage/installed"
lint
[[ ! -s "$stage/log" ]] || fail "installs although nothing is missing"
! grep -q Installing "$stage/out" || fail "claims to install although nothing is missing"

echo git >"$stage/installed"
lint
grep -qx 'Installing Debian packages: clang-format' "$stage/out" || fail "does not say what it installs"
grep -q 'apt-get install .*clang-format' "$stage/log" || fail "does not install what is missing"
! grep -q 'install .*git' "$stage/log" || fail "installs what is there"

"$run" nonsense >"$stage/out" 2>&1 && fail "takes an unknown command for a success"
grep -q 'usage: ./run COMMAND' "$stage/out" || fail "does not tell its commands"
echo "the run script does what it says"
