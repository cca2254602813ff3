#!/bin/bash
# kipconvert.sh PROGRAM SOURCES: the program in pipes between ffmpegs, beside what swscale and zimg make of the same
# clip, and with files and arguments that are not as they should be. Exit status 77 when there is no ffmpeg.
set -u -o pipefail
export LC_ALL=C

program=$(realpath "$1") sources=$(realpath "$2")
command -v ffmpeg >/dev/null || exit 77
folder=$(mktemp -d) && cd "$folder" || exit 1
trap 'rm -r "$folder"' EXIT

fail() { echo "FAILED: $*" | tee -a failures; }
kipconvert() { "$program" "$@"; }
ff() { ffmpeg -nostdin -v error -y "$@"; }
testPicture() { ff -f lavfi -i "testsrc2=s=64x48" -frames:v 3 -strict -1 -pix_fmt "$@"; }  # pixel-format output
raw() { echo "-f rawvideo -pix_fmt $1 -s $2"; }
same() { cmp -s "$1" "$2" || fail "$3: $1 and $2 differ"; }

atLeast() {  # dB what pixel-format size file file: PSNR, 99 where the files are equal
  local got
  got=$(ffmpeg -nostdin -hide_banner $(raw $3 $4) -i "$5" $(raw $3 $4) -i "$6" -lavfi psnr -f null - 2>&1 |
    sed -n 's/inf/99/g; s/.*PSNR.*average:\([0-9.]*\).*/\1/p')
  echo "$2: $got dB"
  awk "BEGIN { exit !(${got:-0} >= $1) }" || fail "$2: '$got' dB are less than $1"
}

# Raw frames of an odd size, in a pipe, beside what swscale and zimg make of them on their exact paths, with the same
# chroma sites and filters: one step of rounding apart, here and there. They convert a picture with the last column and
# row once more, which are cut off again: of odd sizes zimg takes none, and swscale stretches the chroma.
even=320x240 odd=319x239
cut=crop=${odd/x/:}:0:0:exact=1
exact=accurate_rnd+full_chroma_int+full_chroma_inp
said="--matrix bt709 --range limited" toSaid="--to-matrix bt709 --to-range limited"
declare -A decoder=(
  [swscale]=scale=flags=bilinear+$exact:in_color_matrix=bt709:in_range=tv:out_range=pc:in_h_chr_pos=0:in_v_chr_pos=128
  [zimg]=zscale=filter=bilinear:dither=none:chromalin=left:matrixin=709:rangein=limited:matrix=gbr:range=full)
declare -A encoder=(
  [swscale]=scale=flags=area+$exact:out_color_matrix=bt709:out_range=tv:out_h_chr_pos=0:out_v_chr_pos=128
  [zimg]=zscale=filter=bilinear:dither=none:chromal=left:matrixin=gbr:rangein=full:matrix=709:range=limited)
ff -f lavfi -i "testsrc2=s=$even:r=25,gblur=1,format=gbrp,fillborders=right=1:bottom=1:mode=smear" -frames:v 4 \
  -pix_fmt rgb24 -f rawvideo even.rgb24
for format in nv12 yuv420p10le p010le; do
  ff $(raw rgb24 $even) -i even.rgb24 -vf "${encoder[swscale]}" -pix_fmt $format -f rawvideo even.$format
done
while read -r peer from to least planar; do  # the last is a format of zimg's that `to` is another layout of
  if [ $from = rgb24 ]; then
    options=$toSaid filter=format=gbrp,${encoder[$peer]}
  else
    options=$said filter=${decoder[$peer]}
  fi
  ff $(raw $from $even) -i even.$from -vf $cut -pix_fmt $from -f rawvideo odd.raw
  ff $(raw $from $even) -i even.$from -vf "$filter,format=$planar,$cut" -pix_fmt $to -f rawvideo peer.raw
  cat odd.raw | kipconvert --from $from --size $odd --to $to $options | cat >out.raw || fail "$from to $to: status"
  atLeast $least "$from to $to, $peer" $to $odd out.raw peer.raw
done <<CASES
swscale nv12        rgb24       70 gbrp
zimg    nv12        rgb24       70 gbrp
swscale p010le      bgra        70 gbrp
zimg    p010le      bgra        70 gbrp
swscale yuv420p10le rgb48le     50 gbrp16le
zimg    yuv420p10le rgb48le     90 gbrp16le
swscale rgb24       nv12        65 yuv420p
swscale rgb24       yuv420p10le 65 yuv420p10le
zimg    rgb24       yuv422p     70 yuv422p
zimg    rgb24       yuv422p10le 90 yuv422p10le
CASES

# Pictures and streams there and back: nothing is lost on the way, and what a header says is kept.
ff -f lavfi -i testsrc2=s=$even,crop=37:23:0:0:exact=1 -frames:v 1 -pix_fmt rgba64be in.png
for format in gray gray16be rgb24 rgb48be rgba rgba64be pal8 ya8 monob; do
  ff -i in.png -pix_fmt $format in.$format.png
  kipconvert in.$format.png out.png || fail "PNG of $format"
  ff -i in.$format.png -pix_fmt rgba -f rawvideo in.raw && ff -i out.png -pix_fmt rgba -f rawvideo out.raw
  same in.raw out.raw "PNG of $format"
done
for format in gray gray16be rgb24 rgb48be; do
  case $format in gray*) codec=pgm ;; *) codec=ppm ;; esac
  testPicture $format -c:v $codec -f image2pipe in.ppm
  kipconvert --as pnm <in.ppm >out.ppm || fail "PNM of $format"
  same in.ppm out.ppm "three pictures in a row, $format"
done
for format in yuv420p yuv422p yuv444p yuv411p gray yuv420p10le yuv444p12le gray16le; do
  testPicture $format -f yuv4mpegpipe in.y4m
  kipconvert in.y4m out.y4m || fail "YUV4MPEG2 of $format"
  ff -i in.y4m -f rawvideo in.raw && ff -i out.y4m -f rawvideo out.raw
  same in.raw out.raw "YUV4MPEG2 of $format"
done
testPicture yuv420p -f yuv4mpegpipe clip.y4m
for tag in "C420paldv XCOLORRANGE=FULL" "C420mpeg2 XCOLORRANGE=LIMITED" "C420jpeg XCOLORRANGE=LIMITED"; do
  sed "1s/ C.*/ $tag/" clip.y4m | kipconvert --as y4m >out.y4m
  head -1 out.y4m | grep -q " $tag$" || fail "header with $tag"
done
kipconvert clip.y4m --matrix bt601 'out%02d.png' && [ "$(echo out0?.png)" = "out01.png out02.png out03.png" ] ||
  fail "a file for each frame"
head -1 clip.y4m | kipconvert --as y4m >out.y4m && [ "$(wc -l <out.y4m)" = 1 ] || fail "no frames: not a header alone"

# Fields of one colour each come back as they were when they are treated as fields, and mixed when they are not. In
# 4:2:0 the chroma of 4n + 2 rows has one row less in the second field.
for height in 48 46; do
  fields="color=s=64x$height,format=yuv422p,geq=lum=128:cb='if(mod(Y,2),90,160)':cr='if(mod(Y,2),200,60)',setfield=tff"
  ff -f lavfi -i "$fields" -frames:v 2 -f yuv4mpegpipe clip.fields
  tail -n +2 clip.fields | grep -av FRAME >fields
  for scan in t b m p; do
    for via in yuv420p yuv420p10le; do
      sed -e "1s/ I[a-z] / I$scan /" -e 's/FRAME$/FRAME Ibii/' clip.fields >in.y4m
      kipconvert in.y4m --as y4m --to $via | kipconvert --as y4m --to yuv422p >out.y4m || fail "scan $scan: exit status"
      tail -n +2 out.y4m | grep -av FRAME >out
      cmp -s fields out
      differ=$?
      [ $differ = "$([ $scan = p ] && echo 1 || echo 0)" ] || fail "scan $scan by $via, $height rows: differ $differ"
    done
  done
done
sed 's/ I[a-z] / Im /; s/FRAME$/FRAME Ibii/' clip.fields | kipconvert --as y4m --to yuv420p >out.y4m
[ "$(grep -ao 'FRAME Ibii' out.y4m | wc -l)" = 2 ] || fail "mixed: the order of fields"
# swscale's interlaced mode has the chroma of each field at its place as well.
interlaced="scale=flags=bilinear+$exact:in_h_chr_pos=0:out_h_chr_pos=0:in_range=tv:out_range=tv:interl=1"
ff $(raw nv12 $even) -i even.nv12 -vf "format=yuv420p,$interlaced,format=yuv422p" -f rawvideo peer.yuv422p
kipconvert --from nv12 --size $even --range limited --scan t --to yuv422p even.nv12 out.yuv422p || fail "interlaced"
atLeast 70 "interlaced nv12 to yuv422p, swscale" yuv422p $even out.yuv422p peer.yuv422p

# What is refused: exit status, part of the message, arguments; the stream is on standard input.
refused() {
  local status=$1 message=$2 got
  kipconvert "${@:3}" >out.refused 2>message
  got=$?
  [ $got = "$status" ] || fail "${*:3} exits with $got instead of $status"
  grep -qF -- "$message" message || fail "${*:3} says '$(cat message)' instead of '$message'"
}
same420="--as y4m --to yuv420p"
head -c -1 clip.y4m | refused 1 "frame 2: it is cut short: 4607 of 4608 bytes" $same420
head -c -4608 clip.y4m | refused 1 "frame 2: it is cut short: 0 of" $same420
[ "$(wc -c <out.refused)" -gt 9216 ] || fail "the frames before the one that is cut short are missing"
head -c -4610 clip.y4m | refused 1 "frame 2: the stream ends within a header" $same420
head -c 20 clip.y4m | refused 1 "the stream ends within a header" $same420
(cat clip.y4m; echo rubbish) | refused 1 "frame 3: there is something else where a frame should begin" $same420
(printf YUV4MPEG2; head -c 10000 /dev/zero) | refused 1 "a header has no end" $same420
refused 1 "neither YUV4MPEG2 nor PNG, PGM or PPM; for raw frames add --from" $same420 </dev/null
while IFS=: read -r header message; do
  echo "YUV4MPEG2 $header" | refused 1 "$message" $same420
done <<HEADERS
W2:how large
W0 H2:'0' is not a whole number of 1 or more
W2 H99999999999:'99999999999' is not a whole
W2x H2:'2x' is not a whole
W2 H2 C420p9:'420p9' is not supported
W2 H2 Ix:'Ix' is not a way
W2 H2 F25:'25' is not a ratio
W2 H2 Q1:'Q1' has no meaning
HEADERS
head -c 300 in.rgb24.png | refused 1 "it is cut short" --as png
(head -c 100 in.rgb24.png; head -c 1000 /dev/urandom) | refused 1 "frame 0: " --as png
(cat in.rgb24.png in.gray.png) | refused 1 "frame 1: this picture has another size or another format" --as png
printf 'P6\n2 2\n1023\n' | refused 1 "samples up to 1023 are not supported" --as pnm
printf 'P6\n2 ' | refused 1 "the picture ends within its header" --as pnm
head -c 100 /dev/zero | refused 1 "frame 0: it is cut short: 100 of 192 bytes" --from rgb24 --size 8x8 --to bgra
while IFS='|' read -r status message arguments; do
  refused $status "$message" $arguments <clip.y4m
done <<ARGUMENTS
1|the matrix of the source is not known: add --matrix bt709 (HD), --matrix bt601 (SD, JPEG)|--as png
1|the range of the source is not known: add --range limited (video) or --range full (JPEG)|--from nv12 --size 8x8 --matrix bt709 --to rgb24
1|the matrix of the result is not known: add --to-matrix bt709 (HD)|--from rgb24 --size 8x8 --to nv12 --to-range full
1|the range of the result is not known: add --to-range limited|--from rgb24 --size 8x8 --to nv12 --to-matrix bt709
1|the source is RGB and has no matrix; --to-matrix is that of the result|--from rgb24 --size 8x8 --matrix bt709 --to nv12
1|bayer_rggb8 cannot be a result|--to bayer_rggb8
1|out.png takes one picture, and there are more: write to out%04d.png|- out.png --matrix bt709
2|png does not hold nv12; --to rgb24 would do|--as png --to nv12
2|raw frames of which format? Add --to|
2|'nv13' is not a format; --formats lists them|--to nv13
2|'bt600' is none of bt601, bt709|--to rgb24 --matrix bt600
2|raw frames have a size: add --size|--from rgb24 --to bgra
2|is not a size like|--from rgb24 --size 8 --to bgra
2|are for raw frames: add --from|--size 8x8 --to bgra
2|--to lacks its value|--to
2|there is no option --frm; --help lists them|--frm nv12
ARGUMENTS
rm -f out.png
refused 1 "No such file" nothing.y4m out.png --matrix bt709
[ -z "$(ls | grep -E '^out.png')" ] || fail "a conversion that failed left a file: $(ls out.png*)"
kipconvert --as y4m clip.y4m 2>message >/dev/full && fail "a full disk goes unnoticed"
grep -q "cannot write" message || fail "a full disk: $(cat message)"
mkfifo pipe && kipconvert --as y4m <pipe 2>message >/dev/full & sleep 0.1
(cat clip.y4m; exec sleep 10) >pipe & holder=$!
wait %1 && fail "a full disk goes unnoticed while the source waits"
kill $holder 2>/dev/null || fail "it waits for its source after a full disk"

# A header that promises much: 2.7 GB of pixels, under a limit of 1 GB for everything.
(ulimit -v 1000000 && printf 'YUV4MPEG2 W30000 H30000 C444\nFRAME\nabc' | refused 1 "3 of 2700000000 bytes" --as y4m)

# What the page of formats and the manual say.
kipconvert --formats >formats
sed -n '/^| name .* memory/,/^$/p' "$sources/docs/formats.md" | sed '$d' >page
same formats page "the table of docs/formats.md and --formats"
for option in $(kipconvert --help | grep -o -- '--[a-z-]*' | sort -u); do
  sed 's/\\-/-/g' "$sources/tools/kipconvert/kipconvert.1" | grep -q -- "$option" || fail "the manual lacks $option"
done
kipconvert clip.y4m --matrix bt601 --as png --explain >message
grep -q "assumed: the range of the source: limited" message && grep -q "matrix of" message || fail "--explain"

# Nothing on standard error unless that is a terminal, and no pictures on a terminal.
kipconvert $same420 clip.y4m 2>message >/dev/null
[ -s message ] && fail "chatter: $(cat message)"
if script -qc true /dev/null >/dev/null 2>&1; then
  script -qc "'$program' $same420 clip.y4m out.y4m" /dev/null | grep -q "3 frames" || fail "no progress on a terminal"
  script -qc "'$program' $same420 clip.y4m" /dev/null | grep -q "not written to a terminal" || fail "a terminal"
else
  echo "there are no pseudo-terminals here: progress is not tested"
fi

[ ! -e failures ]
