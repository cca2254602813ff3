# What is installed, and the Debian packages: `kipcc` has the libraries, `kipcc-dev` what a compiler needs, `kipcc-tools`
# the programs, `gstreamer1.0-kipcc` the GStreamer elements, `python3-kipcc` the Python module. Libraries go to the
# multiarch folder, so that the 32-bit and the 64-bit packages stand side by side.
include(CMakePackageConfigHelpers)

set_target_properties(kipcct7 PROPERTIES EXPORT_NAME kipcc INSTALL_RPATH "$ORIGIN")
set_target_properties(kipconvert PROPERTIES INSTALL_RPATH "$ORIGIN")
target_link_libraries(kipcct7 INTERFACE kipcore)  # applications set the number of threads there

install(TARGETS kipcct7 kipcore kipconvert EXPORT kipcc
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development)
install(FILES include/kipcc.h include/kipconvert.h include/kipcore.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)

set(PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/kipcc)
install(EXPORT kipcc NAMESPACE kipcc:: FILE kipccConfig.cmake DESTINATION ${PACKAGE_DIR} COMPONENT development)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/kipccConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/kipccConfigVersion.cmake DESTINATION ${PACKAGE_DIR} COMPONENT development)

# Relative paths keep the file right wherever the tree is moved.
set(PKGCONFIG_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH PREFIX_FROM_PKGCONFIG /${PKGCONFIG_DIR} /)
configure_file(cmake/kipcc.pc.in kipcc.pc @ONLY)
configure_file(cmake/kipconvert.pc.in kipconvert.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/kipcc.pc ${CMAKE_BINARY_DIR}/kipconvert.pc DESTINATION ${PKGCONFIG_DIR} COMPONENT development)

if(TARGET gstkipcc)
  install(TARGETS gstkipcc LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/gstreamer-1.0 COMPONENT gstreamer)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
# Debian wants an address; this one is in a domain that belongs to nobody. Who distributes packages gives his own.
set(CPACK_PACKAGE_CONTACT "${PROJECT_NAME} maintainers <maintainers@${PROJECT_NAME}.example>" CACHE STRING
  "The maintainer that the packages name")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE i386)
elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "aarch64|arm64")
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE arm64)
else()
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE amd64)
endif()
# What depends on the libraries learns from these files which version it needs.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/symbols
  ${PROJECT_SOURCE_DIR}/cmake/debian/shlibs ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR})

kipcc_compressed(${PROJECT_SOURCE_DIR}/cmake/debian/changelog DEBIAN_CHANGELOG)

# A package of what a component installs, with its licence and its changes where Debian looks for them.
macro(debian_package COMPONENT NAME SECTION DEPENDS DESCRIPTION)
  string(TOUPPER ${COMPONENT} UPPER)
  install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${NAME} RENAME copyright COMPONENT ${COMPONENT})
  install(FILES ${DEBIAN_CHANGELOG} DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${NAME} COMPONENT ${COMPONENT})
  set(CPACK_DEBIAN_${UPPER}_PACKAGE_NAME ${NAME})
  set(CPACK_DEBIAN_${UPPER}_PACKAGE_SECTION "${SECTION}")
  set(CPACK_DEBIAN_${UPPER}_PACKAGE_DEPENDS "${DEPENDS}")
  set(CPACK_DEBIAN_${UPPER}_DESCRIPTION "${DESCRIPTION}")
  set(CPACK_DEBIAN_${UPPER}_PACKAGE_SHLIBDEPS ON)
endmacro()

# This CPack has no variable for the Multi-Arch field, so that it travels with the section.
set(MULTIARCH "\nMulti-Arch: same")
set(SAME_VERSION "kipcc (= ${PROJECT_VERSION})")
debian_package(runtime kipcc "libs${MULTIARCH}" "" "Shared libraries.")
debian_package(development kipcc-dev "libdevel${MULTIARCH}" "${SAME_VERSION}"
  "Headers, and files for pkg-config and CMake.")
debian_package(tools kipcc-tools utils "${SAME_VERSION}" "Programs that use the libraries, or check them.")
if(TARGET gstkipcc)
  debian_package(gstreamer gstreamer1.0-kipcc "libs${MULTIARCH}" "${SAME_VERSION}"
    "GStreamer elements for colour conversion and demosaicing.")
endif()
if(KIPCC_PYTHON)
  # Extension modules work with the version of Python that they were built for only, and of numpy's binary interface.
  math(EXPR NEXT_MINOR "${Python3_VERSION_MINOR} + 1")
  execute_process(COMMAND dpkg-query -W -f \${Provides} python3-numpy OUTPUT_VARIABLE PROVIDED ERROR_QUIET)
  string(REGEX MATCH "python3-numpy-abi[0-9]+, " NUMPY_ABI "${PROVIDED}")
  string(CONCAT PYTHON_DEPENDS "${SAME_VERSION}, python3-numpy, ${NUMPY_ABI}"
    "python3 (>= 3.${Python3_VERSION_MINOR}), python3 (<< 3.${NEXT_MINOR})")
  debian_package(python python3-kipcc python "${PYTHON_DEPENDS}" "Module for Python, and the command kipcc-batch.")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_RECOMMENDS "python3-dask, python3-distributed, python3-pil")
endif()
include(CPack)
