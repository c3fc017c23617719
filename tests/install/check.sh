#!/usr/bin/env bash
# Installs what the presets package and package-static built into empty folders, moves them, and builds a project
# that knows nothing of this tree against them, by the CMake package and by pkg-config. Then uses Koine as a part of
# another project, with the default support library and with a stub of the maker's. All in build/install/.
set -euo pipefail
cd "$(dirname "$0")/../.."
source="$PWD"
work="$source/build/install"
cxx="${CXX:-c++}"
cc="${CC:-cc}"

# quietly COMMAND...: shows what it says only when it fails.
quietly() {
    "$@" >"$work/log" 2>&1 || { cat "$work/log"; echo "FAILED: $*" >&2; exit 1; }
}

# build SOURCE FOLDER OPTION...: a Release build.
build() {
    quietly cmake -G Ninja -S "$1" -B "$2" -DCMAKE_BUILD_TYPE=Release "${@:3}"
    quietly cmake --build "$2"
}

# install_koine PRESET: into build/install/PRESET. What was there before is gone.
install_koine() {
    rm -rf "$work/first" "${work:?}/$1"
    quietly cmake --install "build/$1" --strip --prefix "$work/first"
    mv "$work/first" "$work/$1"
    libraries="$(dirname "$(find "$work/$1" -name pkgconfig)")"
    if grep -rlF "$source/" "$work/$1"; then
        echo "FAILED: these installed files ($1) name the source tree" >&2
        exit 1
    fi
}

# run_host HOST PRESET: the models of a moved tree are found by programs in its bin/.
run_host() {
    mkdir -p "$work/$2/bin"
    cp "$1" "$work/$2/bin/consumer_host"
    LD_LIBRARY_PATH="$libraries" quietly "$work/$2/bin/consumer_host"
    rm "$work/$2/bin/consumer_host"
}

# fresh_consumer NAME: a copy of the project outside of this tree's reach.
fresh_consumer() {
    consumer="$work/$1"
    rm -rf "$consumer"
    cp -r "$source/tests/install/consumer" "$consumer"
}

use_by_cmake() {
    fresh_consumer "$1-by-cmake"
    build "$consumer" "$consumer/build" -DCMAKE_PREFIX_PATH="$work/$1"
    run_host "$consumer/build/host" "$1"
    quietly "$consumer/build/own_class"
    echo "  $1: CMake package"
}

# use_from_c PRESET: a project in C alone, whose host is the one of the installed examples.
use_from_c() {
    local project="$work/$1-from-c" flags
    rm -rf "$project"
    cp -r "$source/tests/install/c_consumer" "$project"
    cp "$work/$1/share/doc/koine/examples/host.c" "$project"
    build "$project" "$project/build" -DCMAKE_PREFIX_PATH="$work/$1"
    read -ra flags <<<"$(PKG_CONFIG_PATH="$libraries/pkgconfig" pkg-config --cflags --libs koine-c)"
    quietly "$cc" -std=c90 "$project/host.c" -o "$project/by_hand" "${flags[@]}"
    quietly talk_to_device "$project/build/host_in_c" "$project/by_hand"
    echo "  $1: a host in C, by the CMake package and by pkg-config"
}

# talk_to_device HOST...: the device is the command of the preset package.
talk_to_device() {
    LD_LIBRARY_PATH="$libraries" "$source/tests/install/use_tool.sh" "$work/package/bin/koine" "$@"
}

# use_examples PRESET: the installed examples as the project that they are.
use_examples() {
    rm -rf "$work/$1-examples"
    cp -r "$work/$1/share/doc/koine/examples" "$work/$1-examples"
    build "$work/$1-examples" "$work/$1-examples/build" -DCMAKE_PREFIX_PATH="$work/$1"
    quietly talk_to_device "$work/$1-examples/build/"{smallest_host,two_streams,own_device_class,host_in_c}
    echo "  $1: the examples"
}

# As docs/install.md says, to a place of its own, and used from there as it says.
use_from_own_place() {
    local place="$work/opt/koine"
    rm -rf "$place"
    quietly cmake --preset package -DCMAKE_INSTALL_PREFIX="$place"
    quietly cmake --build --preset package
    quietly cmake --install build/package
    quietly "$source/tests/install/by_hand.sh" "$place"
    # What other commands take from this folder is for /usr again.
    quietly cmake --preset package
    quietly cmake --build --preset package
    echo "  a place of its own: compiled and run by hand"
}

# use_by_pkgconfig PRESET [--static]
use_by_pkgconfig() {
    fresh_consumer "$1-by-pkgconfig"
    local all own
    read -ra all <<<"$(PKG_CONFIG_PATH="$libraries/pkgconfig" pkg-config "${@:2}" --cflags --libs koine-devices koine-simulator)"
    read -ra own <<<"$(PKG_CONFIG_PATH="$libraries/pkgconfig" pkg-config "${@:2}" --cflags --libs koine)"
    quietly "$cxx" -std=c++17 "$consumer/host.cpp" -o "$consumer/host" "${all[@]}"
    quietly "$cxx" -std=c++17 "$consumer/own_class.cpp" -o "$consumer/own_class" "${own[@]}"
    run_host "$consumer/host" "$1"
    LD_LIBRARY_PATH="$libraries" quietly "$consumer/own_class"
    echo "  $1: pkg-config ${*:2}"
}

# use_as_part PLATFORM
use_as_part() {
    build "$source/tests/install/subproject" "$work/part-$1" -DKOINE_SOURCE="$source" -DKOINE_PLATFORM="$1"
    quietly "$work/part-$1/stub_host" "$1"
    echo "  part of another project, support library: $1"
}

mkdir -p "$work"
echo "Installing and using Koine:"
install_koine package
use_by_cmake package
use_by_pkgconfig package
use_from_c package
use_examples package
quietly "$source/tests/install/use_tool.sh" "$work/package/bin/koine"
echo "  package: the command"
install_koine package-static
use_by_cmake package-static
use_by_pkgconfig package-static --static
use_from_c package-static
use_examples package-static
use_from_own_place
use_as_part default
use_as_part external
