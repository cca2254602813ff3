# Every name of ours that the pages mention is declared in a public header, and the page of formats has a function for
# each name that people come with.
# -DROOT=folder
cmake_minimum_required(VERSION 3.25)

# Functions, enumerators and types, by what follows them.
file(READ ${ROOT}/include/kipcc.h HEADER)
file(READ ${ROOT}/include/kipcore.h CORE)
file(READ ${ROOT}/include/kipconvert.h CONVERT)
string(REGEX MATCHALL "[A-Za-z0-9_]+(\\(| = -?[0-9]|;| \\(\\(KipStatus)" DECLARED "${HEADER}${CORE}${CONVERT}")
list(TRANSFORM DECLARED REPLACE "[^A-Za-z0-9_].*$" "")

file(GLOB PAGES RELATIVE ${ROOT} ${ROOT}/*.md ${ROOT}/docs/*.md)
foreach(PAGE IN LISTS PAGES)
  file(READ ${ROOT}/${PAGE} TEXT)
  string(REGEX MATCHALL "(kip|Kip|kipi)[A-Z0-9][A-Za-z0-9_]*|kipcc[A-Z][A-Za-z]*" NAMED "${TEXT}")
  foreach(NAME IN LISTS NAMED)
    if(NOT NAME IN_LIST DECLARED)
      message(SEND_ERROR "${PAGE} names ${NAME}, which no header declares")
    endif()
  endforeach()
endforeach()

file(READ ${ROOT}/docs/formats.md FORMATS)
foreach(FORMAT I420 YV12 NV12 YUY2 UYVY YVYU RGB24 BGR24 BGRA RGB565 4:1:1 "float RGB")
  if(NOT FORMATS MATCHES "\n\\| ${FORMAT} [^\n]*`kipi")
    message(SEND_ERROR "docs/formats.md has no function for ${FORMAT}")
  endif()
endforeach()
foreach(GRID BGGR RGGB GBRG GRBG)
  if(NOT FORMATS MATCHES "\n\\| Bayer ${GRID} [^\n]*S${GRID}8 [^\n]*kipiBayer${GRID} ")
    message(SEND_ERROR "docs/formats.md does not place the Bayer pattern ${GRID}")
  endif()
endforeach()
