// RGB and YUV against plain integer arithmetic, one pixel at a time.
#include <gtest/gtest.h>

#include "support/reference.h"

namespace kip {
namespace {

/// The upper half of a 32-bit product.
int hi(int64_t a, int b) { return static_cast<int>((a * b) >> 16); }

struct Weights {
  int r, g, b;
};

int hiSum(const Pixel& c, int scale, const Weights& w) {
  return hi(scale * c[0], w.r) + hi(scale * c[1], w.g) + hi(scale * c[2], w.b);
}

int chroma(const Pixel& c, const Weights& w) { return clampByte((hiSum(c, 128, w) >> 6) + 128); }

// ---------------------------------------------------------------------------------------------------------------------
// RGB to YUV at full resolution: for each function one arithmetic for whole runs and one for the rest of a row

Pixel forwardRun(const Pixel& c) {
  return {hiSum(c, 256, {19595, 38469, 7471}) >> 8, chroma(c, {-4816, -9469, 14286}),
          chroma(c, {20152, -16875, -3276})};
}

Pixel forwardRunAlpha(const Pixel& c) {
  return {hiSum(c, 128, {9798, 19235, 3736}) >> 6, chroma(c, {-4817, -9470, 14287}), chroma(c, {20152, -16876, -3277})};
}

Pixel forwardRest(const Pixel& c) {
  const int y2 = ((2 * c[0] * 9798 + 2 * c[1] * 19235) >> 15) + ((2 * c[2] * 3736) >> 15);
  return {clampByte(y2 >> 1), clampByte(hi(2 * c[2] - y2, 16121) + 128), clampByte(hi(2 * c[0] - y2, 28737) + 128)};
}

Pixel differenceRun(const Pixel& c) {
  const int y = forwardRunAlpha(c)[0];
  return {y, clampByte(((c[2] - y) * 16121 >> 15) + 128), clampByte(((c[0] - y) * 28737 >> 15) + 128)};
}

Pixel differenceRest(const Pixel& c) {
  const int s = 19595 * c[0] + 38470 * c[1] + 7471 * c[2];
  const int u = ((((c[2] << 16) - s + 32767) >> 16) * 32244 >> 16) + 128;
  const int v = ((((c[0] << 16) - s + 32767) >> 16) * 57475 >> 16) + 128;
  return {s >> 16, u & 255, clampByte(v)};
}

// ---------------------------------------------------------------------------------------------------------------------
// YUV to RGB

struct Factors {
  int vToR, uToG, vToG, uToB;
};
constexpr Factors kFactors1 = {9339, -3228, -4760, 16646}, kFactors2 = {9338, -3227, -4759, 16645};

Pixel inverse1(const Pixel& c) {
  const int u = (c[1] - 128) * 8, v = (c[2] - 128) * 8;
  return {clampByte(c[0] + hi(v, kFactors1.vToR)), clampByte(c[0] + hi(u, kFactors1.uToG) + hi(v, kFactors1.vToG)),
          clampByte(c[0] + hi(u, kFactors1.uToB))};
}

Pixel inverseDoubled(const Pixel& c, const Factors& k) {
  const int y = 2 * c[0], u = (c[1] - 128) * 16, v = (c[2] - 128) * 16;
  return {clampByte((y + hi(v, k.vToR)) >> 1), clampByte((y + hi(u, k.uToG) + hi(v, k.vToG)) >> 1),
          clampByte((y + hi(u, k.uToB)) >> 1)};
}
Pixel inverse2(const Pixel& c) { return inverseDoubled(c, kFactors2); }
Pixel inverseToBgr(const Pixel& c) { return inverseDoubled(c, kFactors1); }

Pixel inverse3(const Pixel& c) {
  const int u = c[1] - 128, v = c[2] - 128;
  return {clampByte(c[0] + (v * 18677 >> 14)), clampByte(c[0] - (u * 6455 >> 14) - (v * 9519 >> 14)),
          clampByte(c[0] + (u * 16646 >> 13))};
}

Pixel inverse4(const Pixel& c) {
  const int y = 2 * c[0], u = (c[1] - 128) * 16, v = (c[2] - 128) * 16;
  return {clampByte((y + hi(v, 9338)) >> 1), clampByte((y - hi(u, 3227) - hi(v, 4759)) >> 1),
          clampByte((y + hi(u, 16646)) >> 1)};
}

Pixel inverse4Rest(const Pixel& c) {
  const int y = (c[0] << 16) + 32768, u = c[1] - 128, v = c[2] - 128;
  return {clampByte((y + 74711 * v) >> 16), clampByte((y - 25821 * u - 38076 * v) >> 16),
          clampByte((y + 133169 * u) >> 16)};
}

/// Of a packed row of one pixel, whose one sample of chroma is U and V.
Pixel inverseSingle(const Pixel& c) {
  const int y = c[0] << 16, chroma = c[1] - 128;
  return {clampByte((y + chroma * 74711) >> 16), clampByte((y - chroma * 63897) >> 16),
          clampByte((y + chroma * 133169) >> 16)};
}

// ---------------------------------------------------------------------------------------------------------------------
// Functions of one pixel

using Arithmetic = Pixel (*)(const Pixel&);

/// What functions do to the pixels of the whole runs that a row begins with, and to the rest.
struct PixelFunctions {
  int run;
  Arithmetic inRun, inRest;
  std::vector<const char*> names;
};

const PixelFunctions kPixelFunctions[] = {
    {16, forwardRun, forwardRest, {"kipiRGBToYUV_8u_C3R", "kipiRGBToYUV_8u_C3P3R", "kipiRGBToYUV_8u_P3R"}},
    {16, forwardRunAlpha, forwardRest, {"kipiRGBToYUV_8u_AC4R"}},
    {8, differenceRun, differenceRest, {"kipiRGBToYUV_8u_AC4P4R"}},
    {1, inverse1, inverse1, {"kipiYUVToRGB_8u_C3R", "kipiYUVToRGB_8u_AC4R"}},
    {1, inverse3, inverse3, {"kipiYUVToRGB_8u_P3R"}},
    {1,
     inverse2,
     inverse2,
     {"kipiYUVToRGB_8u_P3C3R", "kipiYUV422ToRGB_8u_C2C3R", "kipiYUV422ToRGB_8u_P3C3R", "kipiYUV422ToRGB_8u_P3R",
      "kipiYUV422ToRGB_8u_P3", "kipiYUV422ToRGB_8u_P3C3", "kipiYUV420ToRGB_8u_P3C3R", "kipiYUV420ToRGB_8u_P3R",
      "kipiYUV420ToRGB_8u_P3", "kipiYUV420ToRGB_8u_P3C3"}},
    {1, inverseToBgr, inverseToBgr, {"kipiYUV420ToBGR_8u_P3C3R"}},
    {8, inverse4, inverse4Rest, {"kipiYUV422ToRGB_8u_P3AC4R", "kipiYUV420ToRGB_8u_P3AC4R"}},
};

Plain plain(const PixelFunctions& functions) {
  return [&](const Task& task) {
    const int width = task.whole.width, rest = width - width % functions.run;
    const bool single = task.from.packed() && width == 1;
    eachPixel([&](const Pixel& c, int x, int) {
      return single ? inverseSingle(c) : x < rest ? functions.inRun(c) : functions.inRest(c);
    })(task);
  };
}

TEST(Yuv, PixelsAreExact) {
  for (const PixelFunctions& functions : kPixelFunctions) {
    for (const char* name : functions.names) expectExactForAllSizes(*find(name), plain(functions));
    const Function& function = *find(functions.names[0]);
    expectExactForAllColours(function, 4096, plain(functions));
    const int noRun = (functions.run - 1) / groupOf(function.source.chroma).width;
    if (noRun > 0) expectExactForAllColours(function, noRun, plain(functions));
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// Subsampled chroma: of a pair, or of a 2 x 2 block

int doubledLuma422(const Pixel& c) { return ((c[0] * 9798 + c[1] * 19235) >> 14) + ((c[2] * 3736) >> 14); }
int doubledLuma420(const Pixel& c) { return (9798 * c[0] + 19235 * c[1] + 3736 * c[2]) >> 14; }

/// The last pixel of an odd width, by itself. In packed rows there is no room for its V.
void encodeLone(const Task& task, int x, int y) {
  const Pixel c = task.from.get(x, y);
  const int s = 9798 * c[0] + 19235 * c[1] + 3736 * c[2];
  task.to.at(0, x, y) = static_cast<uint8_t>(s >> 15);
  task.to.at(1, x, y) = static_cast<uint8_t>(((((c[2] << 15) - s + 16383) >> 15) * 16121 >> 15) + 128);
  if (task.to.packed()) return;
  task.to.at(2, x, y) = clampByte(((((c[0] << 15) - s + 32767) >> 15) * 28737 >> 15) + 128);
}

void encode(const Task& task) {
  const int height = task.to.groupHeight();
  const auto luma = height == 2 ? doubledLuma420 : doubledLuma422;
  for (int y = 0; y < task.whole.height; y += height) {
    for (int x = 0; x + 2 <= task.size.width; x += 2) {
      Pixel sum = {};  // of luma, red and blue
      for (int i = 0; i < 2 * height; ++i) {
        const Pixel c = task.from.get(x + i % 2, y + i / 2);
        task.to.at(0, x + i % 2, y + i / 2) = clampByte(luma(c) >> 1);
        sum[0] += luma(c), sum[1] += c[0], sum[2] += c[2];
      }
      const int y2 = sum[0] >> height;
      task.to.at(1, x, y) = clampByte(hi((sum[2] >> (height - 1)) - y2, 16121) + 128);
      task.to.at(2, x, y) = clampByte(hi((sum[1] >> (height - 1)) - y2, 28737) + 128);
    }
    if (height == 1 && task.size.width % 2) encodeLone(task, task.size.width - 1, y);
  }
}

TEST(Yuv, SubsampledEncodersAreExact) {
  for (const char* name :
       {"kipiRGBToYUV422_8u_C3C2R", "kipiRGBToYUV422_8u_C3P3R", "kipiRGBToYUV422_8u_P3R", "kipiRGBToYUV422_8u_C3P3",
        "kipiRGBToYUV422_8u_P3", "kipiRGBToYUV420_8u_C3P3R", "kipiRGBToYUV420_8u_P3R", "kipiRGBToYUV420_8u_C3P3",
        "kipiRGBToYUV420_8u_P3", "kipiBGRToYUV420_8u_AC4P3R"}) {
    expectExactForAllSizes(*find(name), encode);
  }
  expectExactForAllColours(*find("kipiRGBToYUV422_8u_C3P3R"), 3, encode);  // every third one by itself
}

}  // namespace
}  // namespace kip
