#!/usr/bin/env bash
# Makes the Debian packages, looks at them, also with lintian, and installs, uses and purges them. Installing needs the
# right to mount (root, or sudo without a password) and takes place in an overlay of this system that is thrown away:
# what is left there after the purge is left by us.
set -euo pipefail
cd "$(dirname "$0")/../.."
source="$PWD"
packages="$source/build/package/debian"
known="$source/packaging/debian/lintian-known"

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

make_packages() {
    local log="$source/build/package/make.log"
    { cmake --preset package -DKOINE_DEBIAN=ON && cmake --build --preset package --parallel "$(nproc)" &&
        rm -rf "$packages" && (cd build/package && cpack -G DEB); } >"$log" 2>&1 ||
        { cat "$log"; fail "making the packages; the reason stands above"; }
    # What other commands install from this folder is for any place again.
    cmake --preset package >/dev/null
    (cd "$packages" && ls ./*.deb)
}

# Everything but what is known and explained in packaging/debian/lintian-known, which holds nothing that is over.
look_with_lintian() {
    local said found line
    said="$(lintian --allow-root --fail-on none --tag-display-limit 0 "$packages"/*.deb 2>&1)" ||
        fail "lintian ended with exit code $?: $said"
    found="$(grep -v '^N:' <<<"$said" | grep -vFf <(grep '^[EWI]:' "$known") || true)"
    [[ -z "${found//[[:space:]]/}" ]] || fail "lintian has something to say"$'\n'"$found"
    while read -r line; do
        grep -qF -- "$line" <<<"$said" || fail "lintian no longer says '$line'; take it out of $known"
    done < <(grep '^[EWI]:' "$known")
    echo "lintian: nothing beyond what packaging/debian/lintian-known explains"
}

# Lists of packages show one line of each.
look_at_synopses() {
    local synopses
    synopses="$(for package in "$packages"/*.deb; do dpkg-deb -f "$package" Description | head -n 1; done)"
    [[ -z "$(sort <<<"$synopses" | uniq -d)" ]] || fail "packages share a synopsis:"$'\n'"$synopses"
}

# These run in the overlay, in a shell of its own with the packages in the folder $1 and the tests in $2.
or_show() { "$@" >/tmp/log 2>&1 || { cat /tmp/log; echo "FAILED: $*" >&2; exit 1; }; }

install_all() {
    # Containers often leave manual pages and documents out.
    or_show dpkg --path-include='/usr/share/*' -i "$1"/*.deb
    dpkg -l libkoine0 libkoine-dev koine-tools koine-models python3-koine | grep -c "^ii" | grep -qx 5
    or_show apt-get -s -o Dir::Cache::pkgcache= -o Dir::Cache::srcpkgcache= install "$1"/*.deb
    koine --version
    gzip -dc /usr/share/man/man1/koine.1.gz | grep koine >/dev/null || { echo "the man page says nothing" >&2; exit 1; }
}

use_from_cpp_and_c() {
    local work
    work="$(mktemp -d)"
    cp -r "$2/consumer" "$2/c_consumer" /usr/share/doc/libkoine-dev/examples "$work"
    cp "$work/examples/host.c" "$work/c_consumer"
    for project in consumer c_consumer examples; do
        or_show cmake -G Ninja -S "$work/$project" -B "$work/$project/build"
        or_show cmake --build "$work/$project/build"
    done
    "$work/consumer/build/host" >/dev/null
    "$work/consumer/build/own_class" >/dev/null
    g++ -std=c++17 "$work/examples/smallest_host.cpp" -o "$work/smallest_host" \
        $(pkg-config --cflags --libs koine-devices)
    "$2/use_tool.sh" /usr/bin/koine "$work/smallest_host" "$work/c_consumer/build/host_in_c" \
        "$work/examples/build/smallest_host"
    rm -rf "$work"
    echo "hosts in C++ and C and the examples were compiled and run"
}

use_from_python() {
    env -u PYTHONPATH -u PYTHONDONTWRITEBYTECODE /usr/bin/python3 -c 'import koine; koine.library_version()'
    # It is left behind by root, and for the purge to see to.
    [[ -d /usr/lib/python3/dist-packages/koine/__pycache__ ]] || { echo "Python compiled nothing" >&2; exit 1; }
    echo "the Python package was imported"
}

in_the_overlay() {
    set -euo pipefail
    export DEBIAN_FRONTEND=noninteractive
    install_all "$@"
    use_from_cpp_and_c "$@"
    use_from_python
    or_show dpkg --purge koine-tools libkoine-dev python3-koine libkoine0 koine-models
    if grep -i warning /tmp/log; then exit 1; fi
}

# Files and folders that the overlay has and the system had not; what dpkg and the loader keep for themselves was there
# before.
left_over() {
    (cd "$1" && find . -type f -o -type l -o -type d) | while read -r file; do
        [[ -e "/$file" || -L "/$file" ]] || echo "$file"
    done
}

install_use_purge() {
    local stage="$1" left
    mount -t tmpfs tmpfs "$stage"
    mkdir "$stage/changes" "$stage/work" "$stage/root"
    mount -t overlay overlay -o "lowerdir=/,upperdir=$stage/changes,workdir=$stage/work" "$stage/root"
    mount -t proc proc "$stage/root/proc"
    mount --bind /dev "$stage/root/dev"
    mount -t tmpfs tmpfs "$stage/root/tmp"
    mkdir "$stage/root/tmp/packages"
    cp -r "$packages"/*.deb "$source/tests/install"/{consumer,c_consumer,use_tool.sh} "$stage/root/tmp/packages/"
    local steps
    steps="$(declare -f or_show install_all use_from_cpp_and_c use_from_python in_the_overlay)"
    chroot "$stage/root" /bin/bash -c "$steps"$'\n'"in_the_overlay /tmp/packages /tmp/packages"
    umount "$stage/root/tmp" "$stage/root/dev" "$stage/root/proc"
    left="$(left_over "$stage/changes")"
    [[ -z "$left" ]] || fail "these files are left after the purge:"$'\n'"$left"
    echo "purged: nothing is left"
}

# All that is mounted is gone when the name space is, at the end of the command.
in_a_namespace() {
    local as_root=()
    ((EUID == 0)) || as_root=(sudo -n)
    stage="$(mktemp -d -p "${KOINE_STAGE:-/var/tmp}")"
    trap 'rmdir "$stage"' EXIT
    if ! "${as_root[@]}" unshare --mount mount -t tmpfs tmpfs "$stage" 2>/dev/null; then
        echo "The packages are not installed: this takes the right to mount, so be root or let sudo ask no password;" \
            "in a container, give it CAP_SYS_ADMIN" >&2
        exit 77
    fi
    "${as_root[@]}" unshare --mount "$source/tests/install/debian.sh" --in-namespace "$stage"
}

if [[ "${1:-}" == --in-namespace ]]; then
    install_use_purge "$2"
    exit
fi
make_packages
look_at_synopses
look_with_lintian
in_a_namespace
