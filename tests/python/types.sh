#!/usr/bin/env bash
# types.sh PACKAGE: the annotations hold.
set -euo pipefail
if ! command -v mypy >/dev/null; then
    echo 'skipped: no mypy here'
    exit 77
fi
cd "$1"
mypy --cache-dir=/dev/null
