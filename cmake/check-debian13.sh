#!/bin/sh
# Builds and tests on Debian 13, with g++ 14 and Highway 1.2, in a root of its own that debootstrap makes.
# Usage, as root: check-debian13.sh ROOT [MIRROR]
# ROOT is made when it is not there; the sources are copied into it, and build there as the x86-64 preset says.
set -eu

root=$1
mirror=${2:-}
sources=$(cd "$(dirname "$0")/.." && pwd)
packages=g++,cmake,ninja-build,pkgconf,dpkg-dev,file,libhwy-dev,libgtest-dev,libbenchmark-dev,make

command -v debootstrap >/dev/null || apt-get install -q -y --no-install-recommends debootstrap
[ -e "$root/usr/bin/cmake" ] || debootstrap --variant=minbase --include=$packages trixie "$root" $mirror
mkdir -p "$root/kipcc"
tar -C "$sources" --exclude=./build --exclude=./.git -cf - . | tar -C "$root/kipcc" -xf -
mountpoint -q "$root/proc" || mount -t proc proc "$root/proc"
trap 'umount "$root/proc"' EXIT
chroot "$root" sh -ec '
  cd /kipcc
  cmake --preset x86-64 -DKIPCC_EXAMPLES=OFF
  cmake --build --preset x86-64
  ctest --test-dir build/x86-64 --parallel 2 --output-on-failure --no-tests=error'
