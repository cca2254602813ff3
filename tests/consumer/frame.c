/* Converts a grey I420 frame and prints one of its pixels. */
#include <kipcc.h>
#include <stdio.h>
#include <string.h>

int main(void) {
  enum { kWidth = 64, kHeight = 32 };
  static Kip8u y[kWidth * kHeight], u[kWidth * kHeight / 4], v[kWidth * kHeight / 4], rgb[kWidth * kHeight * 3];
  const Kip8u* planes[3] = {y, u, v};
  const KipiSize size = {kWidth, kHeight};
  memset(y, 100, sizeof y);
  memset(u, 128, sizeof u);
  memset(v, 128, sizeof v);
  if (kipiYUV420ToRGB_8u_P3C3(planes, rgb, size) != kipStatusOk) return 1;
  printf("%d %d %d\n", rgb[300], rgb[301], rgb[302]);
  return 0;
}
