#!/bin/bash
# y4m.sh PROGRAM: the program in pipes between two ffmpegs, compared with what ffmpeg makes of the same clip, and with
# streams that are not as they should be. Exit status 77 when there is no ffmpeg.
set -u -o pipefail
export LC_ALL=C

y4m=$1
command -v ffmpeg >/dev/null || exit 77
folder=$(mktemp -d) && cd "$folder" || exit 1
trap 'rm -r "$folder"' EXIT

fail() { echo "FAILED: $*" | tee -a failures; }

ff() { ffmpeg -nostdin -v error -y -strict -1 "$@"; }
declare -A pixels=([420]=yuv420p [422]=yuv422p [411]=yuv411p [444]=yuv444p [rgb24]=rgb24 [bgra]=bgra)
size=320x240

# What ffmpeg has to be told of a file in this format, as an input.
input() {
  case $1 in
    rgb24 | bgra) echo "-f rawvideo -pix_fmt ${pixels[$1]} -s $size -i $2" ;;
    *) echo "-f yuv4mpegpipe -i $2" ;;
  esac
}

clip() {  # format frames: a moving picture in clip.$format
  local muxer=yuv4mpegpipe
  [ -n "${1//[0-9]/}" ] && muxer=rawvideo
  ff -f lavfi -i "testsrc2=s=$size:r=25,gblur=2" -frames:v "$2" -pix_fmt "${pixels[$1]}" -f $muxer "clip.$1"
}

convert() {  # from to: from clip.$from to out.$to
  local raw=
  [ -n "${1//[0-9]/}" ] && raw="--from $1 --size $size"
  "$y4m" $raw --to "$2" <"clip.$1" >"out.$2"
}

# from, to, ffmpeg's scaler, dB at least. ffmpeg's colours and ours differ by rounding, one step, when it neither smooths
# chroma nor cuts corners; 99 is for equal bytes. ffmpeg filters when it makes chroma fewer and we take means or every
# second sample; 422 to 411 takes every second, which is far from a smooth filter.
exact=neighbor+accurate_rnd+full_chroma_int+full_chroma_inp
for format in 420 422 411 444 rgb24 bgra; do clip $format 5; done
while read -r from to scaler least; do
  convert $from $to || fail "$from to $to: exit status"
  quality=$(ffmpeg -nostdin -hide_banner $(input $to out.$to) $(input $from clip.$from) -lavfi \
    "[1]scale=flags=$scaler,format=${pixels[$to]}[expected];[0][expected]psnr" -f null - 2>&1 |
    sed -n 's/inf/99/g; s/.*PSNR.*average:\([0-9.]*\).*/\1/p')
  echo "$from to $to: $quality dB"
  awk "BEGIN { exit !(${quality:-0} >= $least) }" || fail "$from to $to: $quality dB are less than $least"
done <<CASES
420   422   $exact  99
420   411   bicubic 45
420   444   $exact  45
420   rgb24 $exact  60
420   bgra  $exact  60
422   420   bicubic 45
422   411   bicubic 37
422   rgb24 $exact  60
422   bgra  $exact  50
411   422   $exact  99
411   420   $exact  45
411   rgb24 $exact  60
411   bgra  $exact  50
444   420   bicubic 45
444   422   bicubic 45
444   rgb24 $exact  50
444   bgra  $exact  50
rgb24 420   bicubic 50
rgb24 422   bicubic 50
rgb24 411   bicubic 37
rgb24 444   bicubic 50
bgra  420   bicubic 50
bgra  422   bicubic 50
bgra  411   bicubic 50
bgra  444   bicubic 50
CASES

# Between two ffmpegs, and in a size that no block divides.
ff -f lavfi -i 'testsrc2=s=64x48:r=25,format=rgb24,crop=33:17' -frames:v 3 -pix_fmt yuv420p -f yuv4mpegpipe clip.420
for to in 422 411 444; do
  ff -i clip.420 -f yuv4mpegpipe - | "$y4m" --to $to | "$y4m" --to 420 | ff -i - -f null - || fail "odd sizes, $to"
done
"$y4m" --to rgb24 <clip.420 >out.rgb24
[ "$(wc -c <out.rgb24)" = $((33 * 17 * 3 * 3)) ] || fail "odd sizes, rgb24"

# Fields of one colour each come back as they were when they are treated as fields, and mixed when they are not.
fields="color=s=64x48,format=yuv422p,geq=lum=128:cb='if(mod(Y,2),90,160)':cr='if(mod(Y,2),200,60)',setfield=tff"
ff -f lavfi -i "$fields" -frames:v 2 -f yuv4mpegpipe clip.fields
roundTrip() { "$y4m" --to 420 | "$y4m" --to 422; }
pictureOf() { sed '1s/ Im / It /' "$1" | ff -f yuv4mpegpipe -i - -f rawvideo -; }  # ffmpeg refuses mixed ones
pictureOf clip.fields >raw.fields
for scan in t b m p; do
  sed -e "1s/ I[a-z] / I$scan /" -e 's/FRAME$/FRAME Ibii/' clip.fields >in.$scan
  roundTrip <in.$scan >out.$scan || fail "scan $scan: exit status"
  pictureOf out.$scan >raw.$scan
  cmp -s raw.fields raw.$scan
  differ=$?
  [ $differ = "$([ $scan = p ] && echo 1 || echo 0)" ] || fail "fields with scan $scan: differ $differ"
done

[ "$(grep -ao 'FRAME Ibii' out.m | wc -l)" = 2 ] || fail "mixed: the order of fields"

# No frames are a stream too.
head -1 clip.422 | "$y4m" --to 420 >out.empty || fail "no frames: exit status"
[ "$(wc -l <out.empty)" = 1 ] || fail "no frames: not a header alone"

# Streams and arguments that are refused: exit status, part of the message, arguments; the stream is on standard input.
refused() {
  local status=$1 message=$2 got
  shift 2
  "$y4m" "$@" >out.refused 2>message
  got=$?
  [ $got = "$status" ] || fail "$* exits with $got instead of $status"
  grep -qF -- "$message" message || fail "$* says '$(cat message)' instead of '$message'"
}
size=320x240
clip 420 2
head -c -1 clip.420 | refused 1 "frame 1: it is cut short: 115199 of 115200 bytes" --to 422
head -c -115200 clip.420 | refused 1 "frame 1: it is cut short: 0 of" --to 422
head -c -115202 clip.420 | refused 1 "frame 1: the stream ends within a header" --to 422
head -c 20 clip.420 | refused 1 "the stream ends within a header" --to 422
(cat clip.420; echo rubbish) | refused 1 "frame 2: there is something else where a frame should begin" --to 422
refused 1 "not a YUV4MPEG2 stream" --to 422 </dev/null
echo "YUV4MPEG W2 H2" | refused 1 "not a YUV4MPEG2 stream" --to 422
head -c 10000 /dev/zero | refused 1 "a header has no end" --to 422
while IFS=: read -r header message; do
  echo "YUV4MPEG2 $header" | refused 1 "$message" --to 422
done <<HEADERS
W2:how large
W0 H2:'0' is not a size
W2 H-2:'-2' is not a size
W2 H99999999999:is not a size
W2x H2:'2x' is not a size
W2 H2 C420p10:'420p10' is not supported
W2 H2 Cmono:'mono' is not supported
W2 H2 Ix:'Ix' is not a way
W2 H2 F25:'25' is not a ratio
W2 H2 Q1:'Q1' has no meaning
HEADERS
printf 'YUV4MPEG2 W2 H2 C444 XCOLORRANGE=FULL\nFRAME\n            ' | refused 1 "full range" --to rgb24
head -c 100 /dev/zero | refused 1 "frame 0: it is cut short" --from rgb24 --size 8x8 --to 420
refused 1 "is not a size like" --from rgb24 --size 8 --to 420 </dev/null
refused 2 "'yuv' is not a format" --to yuv </dev/null
refused 2 "raw video is RGB" --from rgb24 --size 8x8 --to bgra </dev/null
refused 2 "--to lacks its value" --to </dev/null
refused 2 "what is --form?" --form rgb24 --to 420 </dev/null
"$y4m" --to 422 <clip.420 2>message >/dev/full && fail "a full disk goes unnoticed"
grep -q "cannot write" message || fail "a full disk: $(cat message)"

# Nothing on standard error unless that is a terminal.
"$y4m" --to 422 <clip.420 2>message >/dev/null
[ -s message ] && fail "chatter: $(cat message)"
if script -qc true /dev/null >/dev/null 2>&1; then
  script -qc "'$y4m' --to 422 <clip.420 >out.422" /dev/null | grep -q "2 frames" || fail "no progress on a terminal"
else
  echo "there are no pseudo-terminals here: progress is not tested"
fi

[ ! -e failures ]
