#!/bin/sh
# Installs the Debian packages that are missing, and does nothing when none is.
# Usage: install-dependencies.sh build|examples|bench|docs...
set -eu

build="g++ g++-multilib cmake ninja-build pkgconf dpkg-dev file
       libhwy-dev libgtest-dev libbenchmark-dev libhwy-dev:i386 libgtest-dev:i386 libbenchmark-dev:i386
       libgomp1:i386 libpng-dev libturbojpeg0-dev"
# What the examples need beyond that, and what the tests of kipconvert compare it with.
examples="ffmpeg libraw-dev"
# What the benchmark compares with; it runs without them as well.
bench="libopencv-imgproc-dev libyuv-dev libswscale-dev libzimg-dev libraw-dev"
docs="doxygen"

say() { echo "install-dependencies: $*" >&2; }

# Prints those of the packages that are not installed. A name without an architecture means the machine's own.
missing() {
  dpkg-query -W -f '${db:Status-Status} ${Package} ${Architecture}\n' |
    awk -v native="$(dpkg --print-architecture)" -v wanted="$*" '
      $1 == "installed" { have[$2 ":" $3]; if ($3 == native || $3 == "all") have[$2] }
      END { n = split(wanted, w); for (i = 1; i <= n; ++i) if (!(w[i] in have)) print w[i] }'
}

# The index of a foreign architecture can fail once. When it keeps failing the install decides: what it needs may be
# in the indexes that did arrive.
update() {
  for pause in 2 5 0; do
    apt-get update -q && return
    sleep $pause
  done
  say "not every package index could be fetched; going on with those that were"
}

install() {
  dpkg --print-foreign-architectures | grep -qx i386 || dpkg --add-architecture i386
  update
  DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "$@"
}

if ! command -v apt-get >/dev/null; then
  say "not a Debian system; the packages are, by Debian's names:" $build
  exit 0
fi
for group in "$@"; do
  eval "packages=\$$group"
  packages=$(missing $packages)
  [ -n "$packages" ] || continue
  if [ "$(id -u)" != 0 ]; then
    say "these packages are missing, and only root can install them:" $packages
    [ "$group" = bench ] && continue
    exit 1
  fi
  say "installing" $packages
  install $packages || { [ "$group" = bench ] && say "the benchmark goes on without some of its peers"; }
done
