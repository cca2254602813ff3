#!/bin/bash
# gallery.sh PROGRAM: pictures that the program must refuse. Exit status 77 when there is no ffmpeg to make them.
set -u

gallery=$1
command -v ffmpeg >/dev/null || exit 77
folder=$(mktemp -d) && cd "$folder" || exit 1
trap 'rm -r "$folder"' EXIT

for kind in jpg png; do
  ffmpeg -nostdin -v error -f lavfi -i testsrc2=s=320x240 -frames:v 1 whole.$kind || exit 1
  for bytes in 3000 10; do
    head -c $bytes whole.$kind >short.$kind
    if "$gallery" page short.$kind >/dev/null 2>message || ! grep -q "short.$kind: " message; then
      echo "FAILED: takes a $kind file that is cut short after $bytes bytes"
      exit 1
    fi
  done
done
