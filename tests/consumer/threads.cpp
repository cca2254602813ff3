// Uses both libraries: memory and threads from one, a conversion from the other.
#include <kipcc.h>
#include <kipcore.h>

#include <cstdio>

int main() {
  kipSetNumThreads(3);
  const Kip8u white[3] = {255, 128, 128};  // Y, U, V
  const KipiSize size = {1, 1};
  Kip8u* rgb = static_cast<Kip8u*>(kipMalloc(3));
  if (kipiYUVToRGB_8u_C3R(white, 3, rgb, 3, size) != kipStatusOk) return 1;
  std::printf("%s with %d threads: %d\n", kipccGetLibVersion()->Name, ownGetNumThreads(), rgb[2]);
  kipFree(rgb);
  return 0;
}
