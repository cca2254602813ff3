# Makes the Debian packages and looks at what they say and hold.
# -DBUILD=folder -DARCHITECTURE=amd64|i386 -DLIBDIR=lib/... -DVERSION=... -DGSTREAMER=0|1 -DHAS_KIPCONVERT=0|1

function(run OUTPUT)
  execute_process(COMMAND ${ARGN} WORKING_DIRECTORY ${BUILD} OUTPUT_VARIABLE TEXT COMMAND_ERROR_IS_FATAL ANY)
  set(${OUTPUT} "${TEXT}" PARENT_SCOPE)
endfunction()

# The package's fields and files, one to a line, must match every expression and have no more files than listed.
function(check PACKAGE FIELDS FILES)
  set(FILE ${BUILD}/packages/${PACKAGE}_${VERSION}_${ARCHITECTURE}.deb)
  run(CONTROL dpkg-deb --field ${FILE})
  foreach(FIELD IN LISTS FIELDS)
    if(NOT "\n${CONTROL}" MATCHES "\n${FIELD}")
      message(SEND_ERROR "${PACKAGE} has no field '${FIELD}':\n${CONTROL}")
    endif()
  endforeach()
  run(CONTENTS dpkg-deb --contents ${FILE})
  string(REGEX MATCHALL "\\./usr/[^\n ]*[^/\n ](\n| ->)" PATHS "${CONTENTS}")
  list(TRANSFORM PATHS REPLACE "^\\./usr/|\n| ->" "")
  list(SORT PATHS)
  list(SORT FILES)
  if(NOT PATHS STREQUAL FILES)
    message(SEND_ERROR "${PACKAGE} holds\n  ${PATHS}\nand not\n  ${FILES}")
  endif()
endfunction()

run(IGNORED ${CMAKE_CPACK_COMMAND})
check(kipcc
  "Architecture: ${ARCHITECTURE};Multi-Arch: same;Depends: [^\n]*libc6 ;Depends: [^\n]*lib(gomp1|omp5-[0-9]+) ;Depends: [^\n]*libhwy1(t64)? "
  "${LIBDIR}/libkipcct7.so.6.1;${LIBDIR}/libkipconvert.so.1;${LIBDIR}/libkipcore.so.6.1;share/doc/kipcc/copyright;share/doc/kipcc/changelog.gz")
set(TOOLS bin/kipcc-verify share/doc/kipcc-tools/copyright share/man/man1/kipcc-verify.1.gz share/doc/kipcc-tools/changelog.gz)
if(HAS_KIPCONVERT)
  list(APPEND TOOLS bin/kipconvert share/man/man1/kipconvert.1.gz)
endif()
check(kipcc-tools
  "Architecture: ${ARCHITECTURE};Depends: [^\n]*kipcc \\(= ${VERSION}\\);Depends: [^\n]*libhwy1(t64)? "
  "${TOOLS}")
set(PACKAGE_DIR ${LIBDIR}/cmake/kipcc)
check(kipcc-dev
  "Architecture: ${ARCHITECTURE};Multi-Arch: same;Depends: kipcc \\(= ${VERSION}\\)"
  "share/doc/kipcc-dev/copyright;share/doc/kipcc-dev/changelog.gz;include/kipcc.h;include/kipconvert.h;include/kipcore.h;${LIBDIR}/libkipcct7.so;${LIBDIR}/libkipconvert.so;${LIBDIR}/libkipcore.so;${LIBDIR}/pkgconfig/kipcc.pc;${LIBDIR}/pkgconfig/kipconvert.pc;${PACKAGE_DIR}/kipccConfig.cmake;${PACKAGE_DIR}/kipccConfig-release.cmake;${PACKAGE_DIR}/kipccConfigVersion.cmake")
if(GSTREAMER)
  check(gstreamer1.0-kipcc
    "Architecture: ${ARCHITECTURE};Multi-Arch: same;Depends: [^\n]*kipcc \\(= ${VERSION}\\);Depends: [^\n]*libgstreamer-plugins-base1.0-0 "
    "${LIBDIR}/gstreamer-1.0/libgstkipcc.so;share/doc/gstreamer1.0-kipcc/copyright;share/doc/gstreamer1.0-kipcc/changelog.gz")
endif()

# Only where the module is built.
file(GLOB MODULE ${BUILD}/packages/python3-kipcc_${VERSION}_${ARCHITECTURE}.deb)
if(MODULE)
  run(FIELDS dpkg-deb --field ${MODULE} Depends)
  run(CONTENTS dpkg-deb --contents ${MODULE})
  foreach(WANTED "/bin/kipcc-batch" "/dist-packages/kipcc/_native\\.cpython-" "/dist-packages/kipcc/_native\\.pyi")
    if(NOT CONTENTS MATCHES "${WANTED}")
      message(SEND_ERROR "python3-kipcc lacks ${WANTED}:\n${CONTENTS}")
    endif()
  endforeach()
  if(NOT FIELDS MATCHES "kipcc \\(= ${VERSION}\\).*python3 \\(<< 3\\.")
    message(SEND_ERROR "python3-kipcc depends on: ${FIELDS}")
  endif()
endif()

# The libraries export what the list of symbols says, no less and no more, and Debian's checker finds no errors.
find_program(GENSYMBOLS dpkg-gensymbols)
if(GENSYMBOLS)
  set(UNPACKED ${BUILD}/packages/unpacked)
  file(REMOVE_RECURSE ${UNPACKED})
  run(IGNORED dpkg-deb --extract packages/kipcc_${VERSION}_${ARCHITECTURE}.deb ${UNPACKED})
  file(COPY ${CMAKE_CURRENT_LIST_DIR}/../cmake/debian/changelog DESTINATION ${UNPACKED}/debian)
  file(WRITE ${UNPACKED}/debian/control "Source: kipcc\n\nPackage: kipcc\nArchitecture: any\n")
  execute_process(COMMAND ${GENSYMBOLS} -c4 -pkipcc -v${VERSION} -P. -O${BUILD}/packages/symbols
    -I${CMAKE_CURRENT_LIST_DIR}/../cmake/debian/symbols WORKING_DIRECTORY ${UNPACKED} COMMAND_ERROR_IS_FATAL ANY)
endif()
find_program(LINTIAN lintian)
if(LINTIAN)
  file(GLOB PACKAGES ${BUILD}/packages/*_${VERSION}_${ARCHITECTURE}.deb)
  execute_process(COMMAND ${LINTIAN} --fail-on error --allow-root ${PACKAGES} COMMAND_ERROR_IS_FATAL ANY)
endif()
