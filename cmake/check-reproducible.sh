#!/bin/sh
# Builds the packages of a commit twice, in folders whose names differ in length, and compares them.
# Usage: check-reproducible.sh FOLDER [CMAKE_OPTION...]
set -eu
folder=$1
shift
commit=$(git rev-parse HEAD)
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct "$commit")
export SOURCE_DATE_EPOCH CCACHE_DISABLE=1
for copy in one the-other-one; do
  rm -rf "$folder/$copy"
  mkdir -p "$folder/$copy"
  git archive "$commit" | tar -x -C "$folder/$copy"
  cmake -S "$folder/$copy" -B "$folder/$copy/build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DKIPCC_TESTS=OFF \
    -DKIPCC_BENCH=OFF -DKIPCC_EXAMPLES=OFF -DKIPCC_PYTHON=OFF "$@"
  cmake --build "$folder/$copy/build"
  (cd "$folder/$copy/build" && cpack)
done
for package in "$folder"/one/build/packages/*.deb; do
  cmp "$package" "$folder/the-other-one/build/packages/$(basename "$package")"
  echo "the same: $(basename "$package")"
done
