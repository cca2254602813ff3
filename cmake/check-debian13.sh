#!/bin/sh
# Builds and tests on Debian 13, with g++ 14 and Highway 1.2, in a root of its own that debootstrap makes.
# Usage, as root: check-debian13.sh ROOT [MIRROR]
# ROOT is made when it is not there; the sources are copied into it, and built there as the x86-64 preset says.
set -eu

root=$1
mirror=${2:-}
sources=$(cd "$(dirname "$0")/.." && pwd)
packages="g++ cmake ninja-build pkgconf dpkg-dev file libhwy-dev libgtest-dev libbenchmark-dev libpng-dev"

if [ ! -e "$root/etc/debian_version" ]; then
  command -v debootstrap >/dev/null || apt-get install -q -y --no-install-recommends debootstrap
  # Only a whole root gets its name.
  rm -rf "$root.part"
  debootstrap --variant=minbase trixie "$root.part" $mirror
  mv "$root.part" "$root"
fi
mkdir -p "$root/kipcc"
# What an earlier check left there goes, but for what it built.
find "$root/kipcc" -mindepth 1 -maxdepth 1 ! -name build -exec rm -rf {} +
tar -C "$sources" --exclude=./build --exclude=./.git -cf - . | tar -C "$root/kipcc" -xf -
if ! mountpoint -q "$root/proc"; then
  mount -t proc proc "$root/proc"
  trap 'umount "$root/proc"' EXIT
fi
chroot "$root" env DEBIAN_FRONTEND=noninteractive sh -ec "
  apt-get update -q
  apt-get install -q -y --no-install-recommends $packages
  cd /kipcc
  cmake --preset x86-64 -DKIPCC_EXAMPLES=OFF
  cmake --build --preset x86-64
  ctest --test-dir build/x86-64 --parallel 2 --output-on-failure --no-tests=error"
