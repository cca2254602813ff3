#!/bin/sh
# Installs the Debian packages that are missing, and does nothing when none is.
# Usage: install-dependencies.sh build|examples|gstreamer|python|check|memory|fuzz|clang|aarch64|bench|docs...
set -eu

build="g++ g++-multilib cmake ninja-build pkgconf dpkg-dev file
       libhwy-dev libgtest-dev libbenchmark-dev libhwy-dev:i386 libgtest-dev:i386 libbenchmark-dev:i386
       libgomp1:i386 libpng-dev libturbojpeg0-dev"
# What the examples need beyond that, their tests, and what the tests of kipconvert compare it with.
examples="ffmpeg libraw-dev libtiff-dev"
# What the GStreamer elements need, and their tests.
gstreamer="libgstreamer1.0-dev libgstreamer-plugins-base1.0-dev gstreamer1.0-tools
           gstreamer1.0-plugins-base gstreamer1.0-plugins-good gstreamer1.0-plugins-bad"
# The Python module, its tests, and what kipcc-batch and kipcc.dask run on.
python="python3-dev python3-numpy python3-pytest python3-dask python3-distributed python3-pil python3-setuptools
        python3-pip python3-wheel libraw-dev"
# What the benchmark compares with; it runs without them as well.
bench="libopencv-imgproc-dev libyuv-dev libswscale-dev libzimg-dev libraw-dev python3-opencv python3-av"
docs="doxygen"
clang="clang libomp-dev"
# To cross-compile for 64-bit Arm by clang, and to run what comes of it.
aarch64="$clang lld cmake ninja-build qemu-user libc6-dev:arm64 libstdc++-12-dev:arm64 libhwy-dev:arm64 libgtest-dev:arm64"
# For the tests of the binary interface and of the packages, under valgrind, and by libFuzzer.
check="abigail-tools lintian"
memory="valgrind"
fuzz="$clang"

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
  for architecture in $(printf '%s\n' "$@" | sed -n 's/.*://p' | sort -u); do
    dpkg --print-foreign-architectures | grep -qx "$architecture" || dpkg --add-architecture "$architecture"
  done
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

# Debian installs clang's OpenMP runtime for one architecture only; the other one is unpacked where aarch64.cmake looks.
case " $* " in
  *" aarch64 "*)
    runtime=$(dirname "$0")/../build/aarch64-runtime
    [ -e "$runtime/usr" ] && exit 0
    mkdir -p "$runtime"
    cd "$runtime"
    apt-get download libomp5-14:arm64
    dpkg -x libomp5-14_*_arm64.deb .
    ;;
esac
