# Tests of the build as a whole: what it installs and packs, and what its pages say.

set(INSTALLED ${CMAKE_BINARY_DIR}/installed)
add_test(NAME install
  COMMAND ${CMAKE_COMMAND} --install ${CMAKE_BINARY_DIR} --prefix ${INSTALLED})
set_tests_properties(install PROPERTIES FIXTURES_SETUP installed)

# The program that README.md shows, as it stands there.
file(READ README.md README)
string(REGEX MATCH "\n```c\n([^`]*)\n```" MATCHED "${README}")
set(README_PROGRAM ${CMAKE_BINARY_DIR}/readme.c)
file(CONFIGURE OUTPUT ${README_PROGRAM} CONTENT "${CMAKE_MATCH_1}\n" @ONLY)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS README.md)

# Programs of a user, built against the installed tree in each of the ways that a user has.
foreach(WAY cmake pkg-config)
  add_test(NAME consumer.${WAY}
    COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${INSTALLED}/${CMAKE_INSTALL_LIBDIR}/pkgconfig
    ${CMAKE_CTEST_COMMAND} --build-and-test ${PROJECT_SOURCE_DIR}/tests/consumer ${CMAKE_BINARY_DIR}/consumer-${WAY}
    --build-generator Ninja
    --build-options --fresh -DWAY=${WAY} -DREADME_PROGRAM=${README_PROGRAM} -DCMAKE_PREFIX_PATH=${INSTALLED}
    "-DCMAKE_TOOLCHAIN_FILE=${CMAKE_TOOLCHAIN_FILE}"
    --test-command ${CMAKE_CTEST_COMMAND} --output-on-failure)
  set_tests_properties(consumer.${WAY} PROPERTIES FIXTURES_REQUIRED installed)
endforeach()

if(TARGET kipconvert_command)
  add_test(NAME kipconvert COMMAND bash ${PROJECT_SOURCE_DIR}/tests/tools/kipconvert.sh
    $<TARGET_FILE:kipconvert_command> ${PROJECT_SOURCE_DIR})
  set_tests_properties(kipconvert PROPERTIES SKIP_RETURN_CODE 77)
endif()

if(TARGET gallery)
  add_test(NAME example.gallery COMMAND bash ${PROJECT_SOURCE_DIR}/tests/examples/gallery.sh $<TARGET_FILE:gallery>)
  set_tests_properties(example.gallery PROPERTIES SKIP_RETURN_CODE 77)
endif()

# Dependencies are found among installed packages, which an unpacked OpenMP runtime is none of.
find_program(SHLIBDEPS dpkg-shlibdeps)
if(SHLIBDEPS AND NOT OPENMP_RUNTIME)
  add_test(NAME packages COMMAND ${CMAKE_COMMAND} -DBUILD=${CMAKE_BINARY_DIR}
    -DARCHITECTURE=${CPACK_DEBIAN_PACKAGE_ARCHITECTURE} -DLIBDIR=${CMAKE_INSTALL_LIBDIR} -DVERSION=${PROJECT_VERSION}
    -DGSTREAMER=$<TARGET_EXISTS:gstkipcc> -DHAS_KIPCONVERT=$<TARGET_EXISTS:kipconvert_command>
    -P ${PROJECT_SOURCE_DIR}/tests/packages.cmake)
endif()

add_test(NAME quotes.adding-a-function COMMAND ${CMAKE_COMMAND} -DROOT=${PROJECT_SOURCE_DIR}
  -DPAGE=docs/adding-a-function.md -P ${PROJECT_SOURCE_DIR}/tests/quotes.cmake)
add_test(NAME names-on-pages COMMAND ${CMAKE_COMMAND} -DROOT=${PROJECT_SOURCE_DIR}
  -P ${PROJECT_SOURCE_DIR}/tests/names.cmake)
