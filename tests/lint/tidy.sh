#!/usr/bin/env bash
# clang-tidy over the sources of the given folders (default: all that are delivered), by the rules of
# .clang-tidy. Needs a configured build folder for the compile commands; nothing needs to be built.
set -euo pipefail
cd "$(dirname "$0")/../.."

folders=("$@")
((${#folders[@]})) || folders=(request cache media stream default_platform devices capi simulator tools)
shopt -s nullglob globstar
sources=()
for folder in "${folders[@]}"; do
    sources+=("$folder"/**/*.cpp)
done
if ((!${#sources[@]})); then
    echo "tidy: no sources in: ${folders[*]}" >&2
    exit 2
fi
# The commands are those of GCC: warnings that only it has are no finding.
printf '%s\0' "${sources[@]}" | xargs -0 -n 1 -P "${TIDY_JOBS:-$(nproc)}" \
    clang-tidy -p build/dev --quiet --extra-arg=-Wno-unknown-warning-option 2> >(grep -v ' generated\.$' >&2 || true)
echo "${#sources[@]} sources have no finding"
