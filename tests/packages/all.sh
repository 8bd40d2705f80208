#!/usr/bin/env bash
# The packages for developers and for Debian: hosts that build the library among their own sources,
# the vcpkg port and the Conan recipe as far as they go without a network, every CMake preset, and the
# Debian packages checked by lintian, installed, used and removed again in a bare system.
# usage: all.sh SOURCE [consumers | presets | debs]...
set -eu
source_folder=$1
shift
parts=${*:-consumers presets debs}
cd "$source_folder"
scripts/install-packages packages
scratch=$(mktemp -d)
root=$scratch/system
finish() {
    mountpoint -q "$root/proc" && umount "$root/proc"
    rm -rf --one-file-system "$scratch"
}
trap finish EXIT

fail() { echo "$*" >&2; exit 1; }
expect_host() {  # program...
    local printed
    printed=$("$@") || true
    [ "$printed" = "2.68 total 37.5 sqrt abc" ] || fail "$* printed $printed"
}
quietly() { "$@" >"$scratch/log" 2>&1 || { tail -60 "$scratch/log" >&2; fail "failed: $*"; }; }
host=$source_folder/tests/consumer/main.cpp

consumers() {
    local consumer=$source_folder/tests/packages/consumers
    mkdir "$scratch/tree"
    tar -C "$source_folder" --exclude=./build --exclude=./.git -c . | tar -C "$scratch/tree" -x
    tar -C "$scratch" -czf "$scratch/tree.tar.gz" tree

    echo "add_subdirectory, the shared library"
    quietly cmake -G Ninja -S "$consumer" -B "$scratch/add" -DTREE="$scratch/tree" -DSOURCE="$host" -DCMAKE_BUILD_TYPE=Debug
    quietly cmake --build "$scratch/add" --target consumer
    expect_host "$scratch/add/consumer"
    # What is installed is the host, not the library's headers and command.
    quietly cmake --install "$scratch/add" --prefix "$scratch/host"
    [ "$(find "$scratch/host" -type f | wc -l)" -eq 1 ] || fail "the library installs itself with its host"

    echo "FetchContent, the static library"
    quietly cmake -G Ninja -S "$consumer" -B "$scratch/fetch" -DARCHIVE="$scratch/tree.tar.gz" -DSOURCE="$host" -DCMAKE_BUILD_TYPE=Debug
    quietly cmake --build "$scratch/fetch" --target consumer_static
    expect_host "$scratch/fetch/consumer_static"

    echo "vcpkg port"
    quietly cmake "-DPORT_FILE=$source_folder/packaging/vcpkg/morandel/portfile.cmake" "-DFOLDER=$scratch/vcpkg" \
        -P tests/packages/vcpkg.cmake
    echo "Conan recipe"
    quietly python3 tests/packages/conan_recipe.py "$source_folder/packaging/conan/conanfile.py" "$scratch/conan"
    for package in vcpkg conan; do
        quietly cmake -G Ninja -S tests/consumer -B "$scratch/$package-host" -DCMAKE_PREFIX_PATH="$scratch/$package/package"
        quietly cmake --build "$scratch/$package-host"
        for program in consumer consumer_static; do expect_host "$scratch/$package-host/$program"; done
    done
}

presets() {
    local preset
    for preset in $(cmake --list-presets | sed -n 's/^ *"\([a-z0-9-]*\)".*/\1/p'); do
        echo "preset $preset"
        quietly cmake --preset "$preset" -B "$scratch/preset-$preset" -DPython3_EXECUTABLE=/usr/bin/python3
    done
    [ -n "${preset:-}" ] || fail "there are no presets"
}

in_system() { chroot "$root" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"; }

debs() {
    [ "$(id -u)" -eq 0 ] || fail "only root can make a bare system: the Debian packages are NOT tested"
    echo "Debian packages"
    scripts/debs "$scratch/debs"
    lintian --fail-on error "$scratch"/debs/*.deb

    echo "a bare system"
    local mirror release
    mirror=$(grep -hE '^URIs' /etc/apt/sources.list.d/*.sources 2>/dev/null | head -n 1 | awk '{print $2}')
    [ -n "$mirror" ] || mirror=$(grep -hE '^deb ' /etc/apt/sources.list /etc/apt/sources.list.d/*.list 2>/dev/null | head -n 1 | sed -E 's/\[[^]]*\] *//' | awk '{print $2}')
    release=$(. /etc/os-release && echo "$VERSION_CODENAME")
    mkdir -p "$root"
    quietly debootstrap --variant=minbase "$release" "$root" "$mirror"
    rm -f "$root/etc/apt/sources.list"
    cp -r /etc/apt/sources.list* "$root/etc/apt/"
    find /etc/apt/apt.conf.d -name '99*' -exec cp {} "$root/etc/apt/apt.conf.d/" \;
    cp -r /usr/share/keyrings/. "$root/usr/share/keyrings/"
    cp /etc/resolv.conf /etc/hosts "$root/etc/"
    mount -t proc proc "$root/proc"
    mkdir "$root/debs"
    cp "$scratch"/debs/*.deb "$root/debs"
    quietly in_system apt-get update

    local installing="apt-get install -y --no-install-recommends"
    quietly in_system sh -c "$installing /debs/libmorandel10_*.deb /debs/libmorandel-dev_*.deb /debs/morandel_*.deb /debs/python3-morandel_*.deb"
    [ "$(in_system morandel 'preci(2.675, 2)')" = 2.68 ] || fail "the command does not work"
    local libraries
    libraries=$(dirname "$(find "$root/usr/lib" -name libmorandel.so)")
    g++ -std=c++17 -I "$root/usr/include" "$host" -L "$libraries" -lmorandel -o "$root/host"
    expect_host in_system /host
    g++ -std=c++17 -DMORANDEL_STATIC -I "$root/usr/include" "$host" "$libraries/libmorandel.a" -o "$root/host"
    expect_host in_system /host
    # Without pandas, and with the library that is installed.
    [ "$(in_system python3 -c 'import morandel; print(morandel.evaluate("preci(price * qty, 2)", price=2.675, qty=3), morandel.Formula("a * 2")(a=[1, 2]))')" = "8.03 [2. 4.]" ] ||
        fail "the Python package does not work"
    in_system sh -c 'ldd /usr/lib/python3/dist-packages/morandel/_core*.so' | grep -q 'libmorandel.so.10 => /' || fail "the Python module has a library of its own"

    quietly in_system apt-get purge -y libmorandel10 libmorandel-dev morandel python3-morandel
    rm -r "$root/debs" "$root/host"
    local left
    left=$(find "$root" -xdev -name '*morandel*')
    [ -z "$left" ] || fail "left behind: $left"
    ! in_system dpkg --list '*morandel*' 2>/dev/null | grep -v '^un' | grep -q morandel || fail "dpkg still knows a package"
}

for part in $parts; do $part; done
echo "packages: all well"
