#!/bin/sh
# Runs each fuzz target of a build for some seconds, from the committed corpus and what earlier runs have found.
# Usage: run.sh BUILD SECONDS
set -eu
build=$1 seconds=$2
export OMP_WAIT_POLICY=passive
for corpus in "$(dirname "$0")"/corpus/*; do
  target=$(basename "$corpus")
  found=$build/corpus/$target
  mkdir -p "$found"
  "$build/fuzz-$target" -max_total_time="$seconds" -timeout=60 -max_len=512 -artifact_prefix="$build/$target-" \
    "$found" "$corpus"
done
