#!/usr/bin/env bash
# The core alone needs a compiler and Boost's headers and nothing else: every other package is kept from CMake, and
# every header that the compiler read is looked up in the list of Debian's packages.
set -euo pipefail
cd "$(dirname "$0")/../.."
folder=build/embedded
disabled=(CURL OpenSSL CLI11 nlohmann_json GTest benchmark PkgConfig)

options=("${disabled[@]/#/-DCMAKE_DISABLE_FIND_PACKAGE_}")
options=("${options[@]/%/=ON}")
rm -rf "$folder"
cmake --preset embedded "${options[@]}" >/dev/null 2>"$folder.log" ||
    { cat "$folder.log"; exit 1; }
cmake --build --preset embedded >"$folder.log" || { cat "$folder.log"; exit 1; }

# Ninja knows what the compiler read; a line that begins with a blank names one file.
mapfile -t headers < <(ninja -C "$folder" -t deps | sed -n 's/^ \+\(\/.*\)/\1/p' | grep -v "^$PWD/" | xargs realpath | sort -u)
((${#headers[@]} > 100)) || { echo "FAILED: only ${#headers[@]} headers were read" >&2; exit 1; }
mapfile -t packages < <(dpkg -S "${headers[@]}" | sed 's/:.*//' | sort -u)
echo "The core was built from headers of: ${packages[*]}"
for package in "${packages[@]}"; do
    case "$package" in
        libboost*-dev | libc6-dev | libstdc++-*-dev | libgcc-*-dev | linux-libc-dev) ;;
        *)
            echo "FAILED: the core reads headers of $package" >&2
            exit 1
            ;;
    esac
done
readelf -d "$folder/libkoine.so" | grep NEEDED
! readelf -d "$folder/libkoine.so" | grep NEEDED | grep -vE 'lib(stdc\+\+|m|gcc_s|c|pthread)\.so' ||
    { echo "FAILED: the core needs another library" >&2; exit 1; }
