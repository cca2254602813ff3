#!/bin/sh
# Prints what takes the library's space, as a page: kilobytes of code by source file and SIMD target.
# Usage: size-table.sh build-folder
set -eu
objects=$1/src/CMakeFiles/kipcct7.dir
find "$objects" -name '*.o' | sort | while read -r object; do
  nm --demangle --defined-only --print-size --radix=d "$object" |
    awk -v file="$(basename "${object%.cpp.o}")" '
      $3 ~ /[tTwW]/ { target = match($0, /::N_[A-Z0-9_]+::/) ? substr($0, RSTART + 4, RLENGTH - 6) : "all"
                      print file, target, $2 }'
done | awk '
  { size[$1, $2] += $3; files[$1] += $3; targets[$2] += $3; total += $3 }
  function kb(n) { return n ? sprintf("%d", n / 1024 + 0.5) : "" }
  function order(of, by,   n, k, i, j, t) {
    n = 0; for (k in of) by[++n] = k
    for (i = 2; i <= n; ++i) for (j = i; j > 1 && of[by[j]] > of[by[j - 1]]; --j) { t = by[j]; by[j] = by[j - 1]; by[j - 1] = t }
    return n
  }
  END {
    n = order(files, file); m = order(targets, target)
    printf "| KB of code |"; for (j = 1; j <= m; ++j) printf " %s |", target[j]; print " together |"
    printf "|---|"; for (j = 0; j <= m; ++j) printf "---|"; print ""
    for (i = 1; i <= n; ++i) {
      printf "| %s |", file[i]; for (j = 1; j <= m; ++j) printf " %s |", kb(size[file[i], target[j]])
      print " " kb(files[file[i]]) " |"
    }
    printf "| together |"; for (j = 1; j <= m; ++j) printf " %s |", kb(targets[target[j]]); print " " kb(total) " |"
  }'
