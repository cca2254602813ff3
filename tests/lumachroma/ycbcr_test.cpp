// RGB and YCbCr against plain 32-bit sums, one pixel and one group of pixels at a time.
#include <gtest/gtest.h>

#include <cmath>

#include "support/reference.h"

namespace kip {
namespace {

int dot(const Pixel& weights, const Pixel& c) { return weights[0] * c[0] + weights[1] * c[1] + weights[2] * c[2]; }

// ---------------------------------------------------------------------------------------------------------------------
// What is to be computed, x 2^16

struct ForwardSet {
  Pixel y;
  int lumaOffset;
  Pixel cb, cr;
};
constexpr ForwardSet kBt601 = {{16843, 33030, 6423}, 1081344, {-9699, -19071, 28770}, {28770, -24117, -4653}};
constexpr ForwardSet kCsc = {{11993, 40239, 4063}, 1081344, {-6619, -22151, 28770}, {28770, -26149, -2621}};
constexpr ForwardSet kHdtv = {{13959, 46858, 4719}, 32768, {-7668, -25821, 33489}, {33489, -30409, -3080}};

/// An arithmetic, with its offsets of the chroma sums of a group of 2^groupBits pixels, and the functions that have it.
struct Encoder {
  const ForwardSet& set;
  int groupBits, cbOffset, crOffset, oddLumaLess;
  std::vector<const char*> names;
};

const Encoder kEncoders[] = {
    {kBt601, 0, 8421376, 8421376, 0, {"kipiRGBToYCbCr_8u_C3R", "kipiRGBToYCbCr_8u_AC4R"}},
    {kBt601, 0, 8421376, 8421376, 0, {"kipiRGBToYCbCr_8u_C3P3R", "kipiRGBToYCbCr_8u_P3R", "kipiRGBToYCbCr_8u_AC4P3R"}},
    // The second luma of each pair is truncated.
    {kBt601,
     1,
     16842752,
     16842752,
     32768,
     {"kipiRGBToYCbCr422_8u_C3C2R", "kipiRGBToYCbCr422_8u_P3C2R", "kipiRGBToYCrCb422_8u_C3C2R",
      "kipiRGBToYCrCb422_8u_P3C2R"}},
    {kBt601,
     1,
     16793600,
     16793600,
     0,
     {"kipiRGBToYCbCr422_8u_C3P3R", "kipiBGRToYCbCr422_8u_C3C2R", "kipiBGRToYCbCr422_8u_AC4C2R",
      "kipiBGRToYCbCr422_8u_C3P3R", "kipiBGRToYCbCr422_8u_AC4P3R"}},
    {kBt601,
     2,
     33587200,
     33587200,
     0,
     {"kipiRGBToYCbCr420_8u_C3P3R", "kipiRGBToYCrCb420_8u_AC4P3R", "kipiBGRToYCbCr420_8u_C3P3R",
      "kipiBGRToYCbCr420_8u_AC4P3R", "kipiBGRToYCrCb420_8u_C3P3R", "kipiBGRToYCrCb420_8u_AC4P3R"}},
    {kBt601, 2, 33587200, 33587200, 0, {"kipiBGRToYCbCr411_8u_C3P3R", "kipiBGRToYCbCr411_8u_AC4P3R"}},
    {kCsc,
     2,
     33587200,
     33587200,
     0,
     {"kipiBGRToYCbCr420_709CSC_8u_C3P3R", "kipiBGRToYCbCr420_709CSC_8u_AC4P3R", "kipiBGRToYCrCb420_709CSC_8u_C3P3R",
      "kipiBGRToYCrCb420_709CSC_8u_AC4P3R"}},
    {kHdtv, 2, 33587200, 33587200, 0, {"kipiBGRToYCbCr420_709HDTV_8u_AC4P3R"}},
    // Cr gets two less than Cb.
    {kBt601, 1, 16842752, 16842750, 0, {"kipiBGRToCbYCr422_8u_AC4C2R"}},
    {kHdtv, 1, 16842752, 16842750, 0, {"kipiBGRToCbYCr422_709HDTV_8u_AC4C2R", "kipiBGRToCbYCr422_709HDTV_8u_C3C2R"}},
};

/// The sums of R, G and B are weights times (Y, Cb, Cr) and an offset.
struct InverseSet {
  Pixel r, g, b, offset;
};

constexpr InverseSet centred(int y, int crToR, int cbToG, int crToG, int cbToB, int black, int rounding) {
  const int luma = rounding - black * y;
  return {{y, 0, crToR},
          {y, -cbToG, -crToG},
          {y, cbToB, 0},
          {luma - 128 * crToR, luma + 128 * (cbToG + crToG), luma - 128 * cbToB}};
}
constexpr InverseSet kFloored1 = centred(76284, 104595, 25690, 53281, 132186, 16, 0);
constexpr InverseSet kRounded1 = centred(76284, 104595, 25690, 53281, 132186, 16, 32768);
constexpr InverseSet kFloored2 = centred(76282, 104593, 25689, 53279, 132184, 16, 0);
constexpr InverseSet kRounded2 = centred(76282, 104593, 25689, 53279, 132184, 16, 32768);
constexpr InverseSet kFloored3 = centred(76294, 104595, 25625, 53281, 132186, 16, 0);
constexpr InverseSet kFloored4 = centred(76309, 104597, 25675, 53279, 132201, 16, 0);
constexpr InverseSet kCscBack = centred(76284, 117506, 13959, 34996, 138609, 16, 32768);
constexpr InverseSet kHdtvBack = centred(65536, 100925, 11993, 30081, 119013, 0, 32768);
constexpr InverseSet kBiased1 = {
    {76284, 0, 104595}, {76284, -25690, -53281}, {76284, 132186, 0}, {-14608761, 8887730, -18140365}};

/// An arithmetic on pixels of one kind, and the functions that have both.
struct Decoder {
  const InverseSet& set;
  std::vector<const char*> names;
};

const Decoder kDecoders[] = {
    {kFloored1, {"kipiYCbCrToRGB_8u_C3R", "kipiYCbCrToRGB_8u_AC4R"}},
    {kFloored1, {"kipiYCbCrToRGB_8u_P3R"}},
    {kFloored2,
     {"kipiYCbCrToRGB_8u_P3C3R", "kipiYCbCrToRGB_8u_P3C4R", "kipiYCbCrToBGR_8u_P3C3R", "kipiYCbCrToBGR_8u_P3C4R"}},
    {kCscBack, {"kipiYCbCrToBGR_709CSC_8u_P3C3R", "kipiYCbCrToBGR_709CSC_8u_P3C4R"}},
    {kBiased1,
     {"kipiYCbCr422ToRGB_8u_C2C3R", "kipiYCbCr422ToRGB_8u_C2P3R", "kipiYCbCr422ToBGR_8u_C2C3R",
      "kipiYCbCr422ToBGR_8u_C2C4R", "kipiYCrCb422ToRGB_8u_C2C3R", "kipiYCrCb422ToRGB_8u_C2P3R"}},
    {kBiased1, {"kipiYCbCr422ToBGR_8u_P3C3R"}},
    {kRounded2, {"kipiYCbCr422ToRGB_8u_P3C3R"}},
    {kRounded2, {"kipiCbYCr422ToRGB_8u_C2C3R", "kipiCbYCr422ToBGR_8u_C2C4R"}},
    {kHdtvBack, {"kipiCbYCr422ToBGR_709HDTV_8u_C2C3R", "kipiCbYCr422ToBGR_709HDTV_8u_C2C4R"}},
    {kRounded1,
     {"kipiYCbCr420ToRGB_8u_P3C3R", "kipiYCbCr420ToBGR_8u_P3C3R", "kipiYCbCr420ToBGR_8u_P3C4R",
      "kipiYCrCb420ToRGB_8u_P3C4R"}},
    {kCscBack, {"kipiYCbCr420ToBGR_709CSC_8u_P3C3R"}},
    {kHdtvBack, {"kipiYCbCr420ToBGR_709HDTV_8u_P3C4R"}},
    {kFloored4, {"kipiYCrCb420ToBGR_Filter_8u_P3C4R"}},
    {kFloored3, {"kipiYCbCr411ToBGR_8u_P3C3R", "kipiYCbCr411ToBGR_8u_P3C4R"}},
};

// ---------------------------------------------------------------------------------------------------------------------

int sample(int sum, int bits) { return clampByte(sum >> bits); }

Plain plain(const Encoder& encoder) {
  return [&](const Task& task) {
    const auto [function, size, whole, from, to] = task;
    const ForwardSet& set = encoder.set;
    const int width = to.groupWidth(), height = to.groupHeight(), bits = 16 + encoder.groupBits;
    for (int y = 0; y + height <= size.height; y += height) {
      int x = 0;
      for (; x + width <= size.width; x += width) {
        Pixel sums = {};
        for (int py = y; py < y + height; ++py) {
          for (int px = x; px < x + width; ++px) {
            const Pixel pixel = from.get(px, py);
            to.at(0, px, py) = sample(dot(set.y, pixel) + set.lumaOffset - px % 2 * encoder.oddLumaLess, 16);
            for (int c = 0; c < 3; ++c) sums[c] += pixel[c];
          }
        }
        to.at(1, x, y) = sample(dot(set.cb, sums) + encoder.cbOffset, bits);
        to.at(2, x, y) = sample(dot(set.cr, sums) + encoder.crOffset, bits);
      }
      if (x == size.width || !to.packed()) continue;
      // The last pixel of an odd width, by itself: its luma and the chroma that comes first.
      Pixel lone = from.get(x, y);
      if (function.parts.is("kipiBGRToCbYCr422_8u_AC4C2R")) std::swap(lone[0], lone[2]);  // read as R, G, B, on purpose
      to.at(0, x, y) = sample(dot(set.y, lone) + set.lumaOffset, 16);
      to.at(to.firstChroma(), x, y) =
          sample(dot(to.firstChroma() == 1 ? set.cb : set.cr, lone) + encoder.cbOffset / 2, 16);
    }
  };
}

Plain plain(const Decoder& decoder) {
  return [&](const Task& task) {
    const bool filter = task.function.parts.has("Filter");
    const InverseSet& set = decoder.set;
    eachPixel([&](Pixel c, int x, int y) -> Pixel {
      if (filter && x % 2 && x + 1 < task.whole.width) {
        for (int i = 1; i < 3; ++i) c[i] = (c[i] + task.from.at(i, x + 1, y) + 1) >> 1;
      }
      return {sample(dot(set.r, c) + set.offset[0], 16), sample(dot(set.g, c) + set.offset[1], 16),
              sample(dot(set.b, c) + set.offset[2], 16)};
    })(task);
  };
}

template <class Coder>
void expectExact(const Coder& coder) {
  if (testing::Test::HasFailure()) return;
  for (const char* name : coder.names) expectExactForAllSizes(*find(name), plain(coder));
  expectExactForAllColours(*find(coder.names[0]), 4096, plain(coder));
}

TEST(YCbCr, EncodersAreExact) {
  for (const Encoder& encoder : kEncoders) expectExact(encoder);
}

TEST(YCbCr, DecodersAreExact) {
  for (const Decoder& decoder : kDecoders) expectExact(decoder);
}

// ---------------------------------------------------------------------------------------------------------------------
// Chroma from three pixels. Left of the first pixel there is none, and that counts as having no chroma.

int linear(int v) { return v; }

int transferred(int v) {
  const double light = v / 255.0;
  return static_cast<int>(std::nearbyint(255 * (light < 0.018 ? 4.5 * light : 1.099 * std::pow(light, 0.45) - 0.099)));
}

Plain smoothed(int (*curve)(int)) {
  std::array<int, 256> curved;
  for (int v = 0; v < 256; ++v) curved[v] = curve(v);
  return [curved](const Task& task) {
    constexpr Pixel kCentre[2] = {{-2426, -4769, 7193}, {7193, -6030, -1164}};
    constexpr Pixel kSide[2] = {{-1213, -2385, 3596}, {3596, -3015, -582}};
    const Samples &from = task.from, &to = task.to;
    const KipiSize size = task.size;
    for (int y = 0; y < size.height; ++y) {
      const auto pixel = [&](int x) -> Pixel {
        const Pixel c = from.get(x, y);
        return {curved[c[0]], curved[c[1]], curved[c[2]]};
      };
      int x = 0;
      for (; x + 2 <= size.width; x += 2) {
        for (int i = 0; i < 2; ++i) {
          to.at(0, x + i, y) = sample(dot({8422, 16515, 3212}, pixel(x + i)) + 540672, 15);
          const int left = x > 0 ? dot(kSide[i], pixel(x - 1)) : 0;
          to.at(1 + i, x, y) = sample(dot(kCentre[i], pixel(x)) + dot(kSide[i], pixel(x + 1)) + left + 4210687, 15);
        }
      }
      if (x == size.width) continue;
      to.at(0, x, y) = sample(dot(kBt601.y, pixel(x)) + 1081344, 16);
      to.at(1, x, y) = sample(dot(kBt601.cb, pixel(x)) + 8421376, 16);
    }
  };
}

TEST(YCbCr, SmoothedChromaIsExact) {
  for (const auto& [name, curve] :
       {std::pair{"kipiRGBToCbYCr422_8u_C3C2R", &linear}, {"kipiRGBToCbYCr422Gamma_8u_C3C2R", &transferred}}) {
    expectExactForAllSizes(*find(name), smoothed(curve));
    expectExactForAllColours(*find(name), 4096, smoothed(curve));
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// Round trips

/// There and back over blocks of one colour, large enough that the two pixels in a block's middle have neither chroma
/// nor a filter's neighbour from other blocks.
struct RoundTrip {
  const char *there, *back;
  KipiSize block;
  int largestError;
};

constexpr RoundTrip kRoundTrips[] = {
    {"kipiRGBToYCbCr_8u_C3R", "kipiYCbCrToRGB_8u_C3R", {2, 1}, 2},
    {"kipiRGBToYCbCr_8u_C3P3R", "kipiYCbCrToRGB_8u_P3C3R", {2, 1}, 2},
    {"kipiRGBToYCbCr422_8u_C3C2R", "kipiYCbCr422ToRGB_8u_C2C3R", {2, 1}, 3},
    {"kipiBGRToYCbCr422_8u_C3C2R", "kipiYCbCr422ToBGR_8u_C2C3R", {2, 1}, 3},
    {"kipiRGBToYCbCr422_8u_C3P3R", "kipiYCbCr422ToRGB_8u_P3C3R", {2, 1}, 3},
    {"kipiBGRToCbYCr422_8u_AC4C2R", "kipiCbYCr422ToBGR_8u_C2C4R", {2, 1}, 2},
    {"kipiRGBToCbYCr422_8u_C3C2R", "kipiCbYCr422ToRGB_8u_C2C3R", {6, 1}, 2},
    {"kipiBGRToCbYCr422_709HDTV_8u_AC4C2R", "kipiCbYCr422ToBGR_709HDTV_8u_C2C4R", {2, 1}, 6},
    {"kipiBGRToYCbCr420_8u_C3P3R", "kipiYCbCr420ToBGR_8u_P3C3R", {2, 2}, 3},
    {"kipiBGRToYCrCb420_8u_AC4P3R", "kipiYCrCb420ToBGR_Filter_8u_P3C4R", {6, 2}, 3},
    {"kipiBGRToYCbCr420_709CSC_8u_C3P3R", "kipiYCbCr420ToBGR_709CSC_8u_P3C3R", {2, 2}, 3},
    {"kipiBGRToYCbCr420_709HDTV_8u_AC4P3R", "kipiYCbCr420ToBGR_709HDTV_8u_P3C4R", {2, 2}, 6},
    {"kipiBGRToYCbCr411_8u_C3P3R", "kipiYCbCr411ToBGR_8u_P3C3R", {4, 1}, 3},
};

/// Prints the figures of docs/accuracy.md.
TEST(YCbCr, RoundTripsOfAllColours) {
  for (const RoundTrip& trip : kRoundTrips) {
    const Function &there = *find(trip.there), &back = *find(trip.back);
    const int width = trip.block.width, height = trip.block.height;
    int64_t samples = 0, sum = 0;
    int largest = 0;
    const auto add = [&](const Pixel* colours, int blocks) {
      const KipiSize size = {blocks * width, height};
      Content source = untouched(there, Side::kSource, size);
      const Samples from(there, Side::kSource, source);
      for (int y = 0; y < height; ++y) {
        for (int k = 0; k < blocks; ++k) {
          for (int x = 0; x < width; ++x) from.set(k * width + x, y, colours[k]);
        }
      }
      Content result = convert(back, size, convert(there, size, source));
      const Samples to(back, Side::kDestination, result);
      for (int i = 0; i < 2 * blocks; ++i) {
        const Pixel is = to.get(i / 2 * width + width / 2 - 1 + i % 2, 0);
        for (int c = 0; c < 3; ++c) {
          const int error = std::abs(is[c] - colours[i / 2][c]);
          ++samples, sum += error, largest = std::max(largest, error);
        }
      }
    };
    forAllColours(4096, [&](const PixelImage& colours) {
      for (int y = 0; y < colours.size.height; ++y) add(&colours.at(0, y), colours.size.width);
    });
    std::printf("%-36s %-36s largest %d, mean %.3f\n", trip.there, trip.back, largest, double(sum) / double(samples));
    const bool all = samples >= int64_t{2 * 3} << 24;  // of two pixels each, not of a sample of the colours
    EXPECT_TRUE(all ? largest == trip.largestError : largest <= trip.largestError) << trip.there << ": " << largest;
  }
}

}  // namespace
}  // namespace kip
