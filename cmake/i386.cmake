# 32-bit x86 Linux, SSE3 and newer: floats in SSE registers, so that they round as they do on x86-64.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_FLAGS_INIT "-m32 -msse3 -mfpmath=sse")
set(CMAKE_CXX_FLAGS_INIT "-m32 -msse3 -mfpmath=sse")
set(CMAKE_LIBRARY_ARCHITECTURE i386-linux-gnu)
set(CMAKE_INSTALL_LIBDIR lib/i386-linux-gnu CACHE PATH "")
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/i386-linux-gnu/pkgconfig:/usr/share/pkgconfig)
# The processor is the build machine's own in 32-bit mode, so tests run directly.
set(CMAKE_CROSSCOMPILING_EMULATOR "")
