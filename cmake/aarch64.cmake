# 64-bit Arm Linux by clang, whose one binary compiles for every architecture, against Debian's arm64 packages. Debian's
# cross compilers are no alternative beside g++-multilib, which 32-bit x86 needs: the two conflict.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER_TARGET aarch64-linux-gnu)
set(CMAKE_CXX_COMPILER_TARGET aarch64-linux-gnu)
# Highway's NEON target means the cryptographic extension as well, and its older versions do not look for it at run time.
set(CMAKE_C_FLAGS_INIT "-march=armv8-a+crypto")
set(CMAKE_CXX_FLAGS_INIT "-march=armv8-a+crypto")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-fuse-ld=lld")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-fuse-ld=lld")
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(CMAKE_INSTALL_LIBDIR lib/aarch64-linux-gnu CACHE PATH "")
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/aarch64-linux-gnu/pkgconfig:/usr/share/pkgconfig)

# clang's OpenMP runtime, which Debian cannot install for two architectures: install-dependencies.sh unpacks it there.
set(OPENMP_RUNTIME ${CMAKE_CURRENT_LIST_DIR}/../build/aarch64-runtime/usr/lib/aarch64-linux-gnu)
foreach(language C CXX)
  set(OpenMP_${language}_FLAGS -fopenmp=libomp CACHE STRING "")
  set(OpenMP_${language}_LIB_NAMES omp CACHE STRING "")
endforeach()
set(OpenMP_omp_LIBRARY ${OPENMP_RUNTIME}/libomp.so.5 CACHE FILEPATH "")

set(CMAKE_CROSSCOMPILING_EMULATOR "qemu-aarch64;-E;LD_LIBRARY_PATH=${OPENMP_RUNTIME}")
