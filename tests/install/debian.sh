#!/usr/bin/env bash
# Makes the Debian packages, has lintian look at them, and installs, uses and purges them. Installing needs root and
# takes place in an overlay of this system that is thrown away: what is left there after the purge is left by us.
set -euo pipefail
cd "$(dirname "$0")/../.."
source="$PWD"
packages="$source/build/package/debian"

make_packages() {
    cmake --preset package -DKOINE_DEBIAN=ON >/dev/null
    cmake --build --preset package --parallel "$(nproc)" >/dev/null
    rm -rf "$packages"
    (cd build/package && cpack -G DEB >cpack.log 2>&1) || { cat build/package/cpack.log; exit 1; }
    # What other commands install from this folder is for any place again.
    cmake --preset package -DKOINE_DEBIAN=OFF >/dev/null
    (cd "$packages" && ls ./*.deb)
}

# Everything but what is known and explained in packaging/debian/lintian-known.
look_with_lintian() {
    local found
    found="$(lintian --allow-root --tag-display-limit 0 "$packages"/*.deb | grep -v '^N:' |
        grep -vFf <(grep "^[EWI]:" packaging/debian/lintian-known) || true)"
    if [[ -n "$found" ]]; then
        echo "$found"
        echo "FAILED: lintian has something to say" >&2
        exit 1
    fi
    echo "lintian: nothing beyond what packaging/debian/lintian-known explains"
}

# Runs in the overlay. $1 is the folder with the packages, $2 the one with the tests.
in_the_overlay() {
    set -euo pipefail
    export DEBIAN_FRONTEND=noninteractive
    dpkg -i "$1"/*.deb >/tmp/dpkg.log || { cat /tmp/dpkg.log; exit 1; }
    dpkg -l libkoine0 libkoine-dev koine-tools koine-models python3-koine | grep -c "^ii" | grep -qx 5
    koine --version

    local work
    work="$(mktemp -d)"
    g++ -std=c++17 /usr/share/doc/libkoine-dev/examples/smallest_host.cpp -o "$work/smallest_host" \
        $(pkg-config --cflags --libs koine-devices)
    g++ -std=c++17 "$2/consumer/host.cpp" -o "$work/host" $(pkg-config --cflags --libs koine-devices koine-simulator)
    "$work/host" >/dev/null
    "$2/use_tool.sh" /usr/bin/koine "$work/smallest_host"
    rm -rf "$work"
    echo "an example and a host were compiled and run"

    dpkg --purge koine-tools libkoine-dev python3-koine libkoine0 koine-models >/tmp/dpkg.log || { cat /tmp/dpkg.log; exit 1; }
    rm /tmp/dpkg.log
}

# Files that the overlay has and the system had not; what dpkg and the loader keep for themselves was there before.
left_over() {
    (cd "$1" && find . -type f -o -type l) | while read -r file; do
        [[ -e "/$file" || -L "/$file" ]] || echo "$file"
    done
}

install_use_purge() {
    local stage="$1"
    mkdir "$stage/changes" "$stage/work" "$stage/root"
    mount -t overlay overlay -o "lowerdir=/,upperdir=$stage/changes,workdir=$stage/work" "$stage/root"
    mount -t proc proc "$stage/root/proc"
    mount --bind /dev "$stage/root/dev"
    mount -t tmpfs tmpfs "$stage/root/tmp"
    mkdir "$stage/root/tmp/packages"
    cp -r "$packages"/*.deb "$source/tests/install/consumer" "$source/tests/install/use_tool.sh" \
        "$stage/root/tmp/packages/"
    chroot "$stage/root" /bin/bash -c "$(declare -f in_the_overlay); in_the_overlay /tmp/packages /tmp/packages"
    umount "$stage/root/tmp" "$stage/root/dev" "$stage/root/proc"
    local left
    left="$(left_over "$stage/changes")"
    if [[ -n "$left" ]]; then
        echo "$left"
        echo "FAILED: these files are left after the purge" >&2
        exit 1
    fi
    echo "purged: nothing is left"
}

if [[ "${1:-}" == --in-namespace ]]; then
    install_use_purge "$2"
    exit
fi
make_packages
look_with_lintian
if ((EUID != 0)); then
    echo "Not root: the packages are not installed" >&2
    exit 77
fi
stage="$(mktemp -d -p "${KOINE_STAGE:-/var/tmp}")"
mount -t tmpfs tmpfs "$stage"
trap 'umount "$stage"; rmdir "$stage"' EXIT
unshare --mount "$0" --in-namespace "$stage"
