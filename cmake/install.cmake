# What is installed, and the Debian packages: `kipcc` has the libraries, `kipcc-dev` what a compiler needs. Libraries go
# to the multiarch folder, so that the 32-bit and the 64-bit packages stand side by side.
include(CMakePackageConfigHelpers)

set_target_properties(kipcct7 PROPERTIES EXPORT_NAME kipcc INSTALL_RPATH "$ORIGIN")
set_target_properties(kipconvert PROPERTIES INSTALL_RPATH "$ORIGIN")
target_link_libraries(kipcct7 INTERFACE kipcore)  # applications set the number of threads there

install(TARGETS kipcct7 kipcore kipconvert EXPORT kipcc
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development)
install(FILES include/kipcc.h include/kipconvert.h include/kipcore.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)

# Each package has its licence where Debian looks for it.
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/kipcc RENAME copyright COMPONENT runtime)
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/kipcc-dev RENAME copyright COMPONENT development)

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
else()
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE amd64)
endif()
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME kipcc)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "Shared libraries.")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME kipcc-dev)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "Headers, and files for pkg-config and CMake.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "kipcc (= ${PROJECT_VERSION})")
# This CPack has no variable for the Multi-Arch field, so that it travels with another one.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION "libs\nMulti-Arch: same")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION "libdevel\nMulti-Arch: same")
include(CPack)
