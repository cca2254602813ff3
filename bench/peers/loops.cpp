// The loops of the target that KIP_LOOPS_TARGET names. All code is in this file's anonymous namespace: what several
// targets defined under one name would be taken from any of them.

#include "peers/loops.h"

#include <cstddef>
#include <cstdint>

namespace bench {
namespace {

float least(float a, float b) { return a < b ? a : b; }
float most(float a, float b) { return a > b ? a : b; }
float limited(float v, float limit) { return most(0, least(v, limit)); }

/// A third of the exponent, then two steps of Halley's iteration: 23 bits.
float cubeRoot(float x) {
  const auto step = [x](float root) {
    const float cube = root * root * root;
    return root * (cube + 2 * x) / (2 * cube + x);
  };
  return step(step(__builtin_bit_cast(float, __builtin_bit_cast(int32_t, x) / 3 + 709921077)));
}

// ---------------------------------------------------------------------------------------------------------------------
// Tone mapping

void scaleToBytes(const LoopImages& images, float scale) {
  const float* src = static_cast<const float*>(images.src);
  uint8_t* dst = static_cast<uint8_t*>(images.dst);
  const ptrdiff_t pixels = static_cast<ptrdiff_t>(images.width) * images.height;
  for (ptrdiff_t i = 0; i < pixels; ++i) dst[i] = static_cast<uint8_t>(static_cast<int>(limited(src[i] * scale, 255)));
}

void toneMapLinear(const LoopImages& images) {
  const float* src = static_cast<const float*>(images.src);
  const ptrdiff_t pixels = static_cast<ptrdiff_t>(images.width) * images.height;
  float highest = src[0];
  for (ptrdiff_t i = 0; i < pixels; ++i) highest = most(highest, src[i]);
  scaleToBytes(images, 255 / highest);
}

void toneMapMean(const LoopImages& images) {
  const float* src = static_cast<const float*>(images.src);
  double sum = 0;
  for (int y = 0; y < images.height; ++y, src += images.width) {
    float sumOfRow = 0;
    for (int x = 0; x < images.width; ++x) sumOfRow += src[x];
    sum += sumOfRow;
  }
  scaleToBytes(images, static_cast<float>(255 * 0.5 * images.width * images.height / sum));
}

// ---------------------------------------------------------------------------------------------------------------------
// Three channels to three channels, pixel by pixel

struct Pixel {
  float a, b, c;
};

/// Samples as floats and back. Integers are on their unsigned scale, and rounded.
template <class T>
constexpr int kBias = 0;
template <>
constexpr int kBias<int16_t> = 32768;

template <class T>
float toFloat(T v) {
  return static_cast<float>(v + kBias<T>);
}
template <class T>
T fromFloat(float v) {
  constexpr float kMost = sizeof(T) == 1 ? 255.f : 65535.f;
  return static_cast<T>(static_cast<int>(limited(v + .5f, kMost)) - kBias<T>);
}
template <>
float fromFloat<float>(float v) {
  return v;
}

template <class From, class To, Pixel (*kConvert)(Pixel)>
[[gnu::flatten]] void pixels(const LoopImages& images) {
  const From* __restrict src = static_cast<const From*>(images.src);
  To* __restrict dst = static_cast<To*>(images.dst);
  const ptrdiff_t pixels = static_cast<ptrdiff_t>(images.width) * images.height;
  for (ptrdiff_t i = 0; i < pixels; ++i) {
    const Pixel to = kConvert({toFloat(src[3 * i]), toFloat(src[3 * i + 1]), toFloat(src[3 * i + 2])});
    dst[3 * i] = fromFloat<To>(to.a), dst[3 * i + 1] = fromFloat<To>(to.b), dst[3 * i + 2] = fromFloat<To>(to.c);
  }
}

/// Photo YCC; kFull is the samples' full scale.
template <int kFull>
Pixel encodeYcc(Pixel rgb) {
  const float luma = .299f * rgb.a + .587f * rgb.b + .114f * rgb.c;
  return {.71327f * luma, .43686f * (rgb.c - luma) + .61176f * kFull, .53192f * (rgb.a - luma) + .53725f * kFull};
}
template <int kFull>
Pixel decodeYcc(Pixel ycc) {
  const float luma = 1.3584f * ycc.a;
  const float c1 = 2.2179f * (ycc.b - .61176f * kFull), c2 = 1.8215f * (ycc.c - .53725f * kFull);
  return {limited(luma + c2, kFull), limited(luma - .194f * c1 - .509f * c2, kFull), limited(luma + c1, kFull)};
}

Pixel toXyz(Pixel rgb) {
  return {.412453f * rgb.a + .35758f * rgb.b + .180423f * rgb.c, .212671f * rgb.a + .71516f * rgb.b + .072169f * rgb.c,
          .019334f * rgb.a + .119193f * rgb.b + .950227f * rgb.c};
}
Pixel fromXyz(float x, float y, float z) {
  return {3.240479f * x - 1.53715f * y - .498535f * z, -.969256f * x + 1.875991f * y + .041556f * z,
          .055648f * x - .204043f * y + 1.057311f * z};
}

constexpr float kDarkest = .008856f, kUWhite = .197839f, kVWhite = .468342f, kXWhite = .950455f, kZWhite = 1.088753f;

Pixel encodeLuv(Pixel rgb) {
  const Pixel xyz = toXyz(rgb);
  const float y = xyz.b * (1 / 65535.f), l = y > kDarkest ? 116 * cubeRoot(y) - 16 : 903.3f * y;
  const float per = 13 * l / most(xyz.a + 15 * xyz.b + 3 * xyz.c, 1e-9f);
  return {655.35f * l, 185.127f * (4 * xyz.a * per - 13 * kUWhite * l + 134),
          250.134f * (9 * xyz.b * per - 13 * kVWhite * l + 140)};
}
Pixel decodeLuv(Pixel luv) {
  const float l = luv.a * (1 / 655.35f), per = 1 / (13 * most(l, 1e-9f));
  const float u = (luv.b * (1 / 185.127f) - 134) * per + kUWhite, v = (luv.c * (1 / 250.134f) - 140) * per + kVWhite;
  const float t = (l + 16) * (1 / 116.f), y = 65535 * (l > 8 ? t * t * t : l * (1 / 903.3f)), part = y / (4 * v);
  return fromXyz(9 * u * part, y, (12 - 3 * u - 20 * v) * part);
}

float labCurve(float t) { return t > kDarkest ? cubeRoot(t) : 7.787f * t + 16 / 116.f; }
float labInverse(float f) { return f > .206893f ? f * f * f : (f - 16 / 116.f) * (1 / 7.787f); }

Pixel encodeLab(Pixel bgr) {
  const Pixel xyz = toXyz({bgr.c, bgr.b, bgr.a});
  const float fx = labCurve(xyz.a * (1 / (255 * kXWhite))), fy = labCurve(xyz.b * (1 / 255.f)),
              fz = labCurve(xyz.c * (1 / (255 * kZWhite)));
  return {655.35f * (116 * fy - 16), 257 * (500 * (fx - fy) + 128), 257 * (200 * (fy - fz) + 128)};
}
Pixel decodeLab(Pixel lab) {
  const float fy = (lab.a * (1 / 655.35f) + 16) * (1 / 116.f), fx = fy + (lab.b * (1 / 257.f) - 128) * (1 / 500.f),
              fz = fy - (lab.c * (1 / 257.f) - 128) * (1 / 200.f);
  const Pixel rgb = fromXyz(255 * kXWhite * labInverse(fx), 255 * labInverse(fy), 255 * kZWhite * labInverse(fz));
  return {rgb.c, rgb.b, rgb.a};
}

/// Hue on 0 .. 65535, with the largest and the smallest channel.
Pixel hueOf(Pixel rgb) {
  constexpr float kSixth = 65535 / 6.f;
  const float max = most(most(rgb.a, rgb.b), rgb.c), min = least(least(rgb.a, rgb.b), rgb.c);
  const float per = kSixth / most(max - min, 1);
  const float fromGreen = (rgb.c - rgb.a) * per + 2 * kSixth, fromBlue = (rgb.a - rgb.b) * per + 4 * kSixth;
  const float hue = rgb.a == max ? (rgb.b - rgb.c) * per : rgb.b == max ? fromGreen : fromBlue;
  return {hue < 0 ? hue + 65535 : hue, max, min};
}
Pixel encodeHls(Pixel rgb) {
  const Pixel hue = hueOf(rgb);
  const float sum = hue.b + hue.c;
  return {hue.a, .5f * sum, 65535 * (hue.b - hue.c) / most(least(sum, 2 * 65535.f - sum), 1)};
}
Pixel encodeHsv(Pixel rgb) {
  const Pixel hue = hueOf(rgb);
  return {hue.a, 65535 * (hue.b - hue.c) / most(hue.b, 1), hue.b};
}

/// Red, green and blue, of which the smallest is `low` and the largest `span` above it.
Pixel fromHue(float hue, float low, float span) {
  const auto channel = [=](float turn) {
    const float at = hue * (6 / 65535.f) + turn, sextants = at >= 6 ? at - 6 : at;
    return low + span * limited(least(sextants, 4 - sextants), 1);
  };
  return {channel(2), channel(0), channel(4)};
}
Pixel decodeHls(Pixel hls) {
  const float span = 2 * least(hls.b, 65535 - hls.b) * hls.c * (1 / 65535.f);
  return fromHue(hls.a, hls.b - .5f * span, span);
}
Pixel decodeHsv(Pixel hsv) {
  const float span = hsv.c * hsv.b * (1 / 65535.f);
  return fromHue(hsv.a, hsv.c - span, span);
}

// ---------------------------------------------------------------------------------------------------------------------
// Bit reduction to eight levels with ordered dither and noise

constexpr int kIntervals = 7, kNoiseEntries = 1024, kMostPixels = 4096;

struct Noise {
  float shift[kNoiseEntries];
  int offset[kNoiseEntries];

  Noise() {
    uint32_t state = 1;
    for (int i = 0; i < kNoiseEntries; ++i) {
      state = state * 1664525u + 1013904223u;
      shift[i] = static_cast<float>(state >> 8) * (1 / 16777216.f) - .5f;
      offset[i] = static_cast<int>(state >> 4) % kNoiseEntries;
    }
  }

  /// Thresholds of a row's samples, in intervals: those of the matrix, shifted by up to half an interval.
  void thresholds(int y, int width, float* to) const {
    static constexpr float kMatrix[4][4] = {{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}};
    for (int x = 0; x < width; ++x) {
      to[3 * x] = to[3 * x + 1] = to[3 * x + 2] =
          kMatrix[y % 4][x % 4] * (1 / 15.f) + shift[(offset[x % kNoiseEntries] + 2 * y + x) % kNoiseEntries];
    }
  }
};

template <class From, int kFrom, class To, int kTo>
void noise(const LoopImages& images) {
  if (images.width > kMostPixels) return;
  static const Noise noise;
  float thresholds[3 * kMostPixels];
  const From* __restrict src = static_cast<const From*>(images.src);
  To* __restrict dst = static_cast<To*>(images.dst);
  const int samples = 3 * images.width;
  for (int y = 0; y < images.height; ++y, src += samples, dst += samples) {
    noise.thresholds(y, images.width, thresholds);
    for (int i = 0; i < samples; ++i) {
      const float v = static_cast<float>(src[i]) * (kIntervals / static_cast<float>(kFrom));
      const int level = static_cast<int>(v);
      const int dithered = v - static_cast<float>(level) > thresholds[i] ? level + 1 : level;
      dst[i] = static_cast<To>(static_cast<int>(static_cast<float>(dithered) * (static_cast<float>(kTo) / kIntervals)));
    }
  }
}

}  // namespace

#define KIP_TEXT_OF(name) #name
#define KIP_TEXT(name) KIP_TEXT_OF(name)
#define KIP_LOOPS_OF(target) kLoops##target
#define KIP_LOOPS(target) KIP_LOOPS_OF(target)

extern const Loops KIP_LOOPS(KIP_LOOPS_TARGET);
const Loops KIP_LOOPS(KIP_LOOPS_TARGET) = {
    .target = KIP_TEXT(KIP_LOOPS_TARGET),
    .toneMapLinear = toneMapLinear,
    .toneMapMean = toneMapMean,
    .encodeYcc8u = pixels<uint8_t, uint8_t, encodeYcc<255>>,
    .encodeYcc16u = pixels<uint16_t, uint16_t, encodeYcc<65535>>,
    .encodeYcc16s = pixels<int16_t, int16_t, encodeYcc<65535>>,
    .encodeYcc32f = pixels<float, float, encodeYcc<1>>,
    .decodeYcc8u = pixels<uint8_t, uint8_t, decodeYcc<255>>,
    .decodeYcc16u = pixels<uint16_t, uint16_t, decodeYcc<65535>>,
    .decodeYcc16s = pixels<int16_t, int16_t, decodeYcc<65535>>,
    .decodeYcc32f = pixels<float, float, decodeYcc<1>>,
    .encodeLuv16u = pixels<uint16_t, uint16_t, encodeLuv>,
    .encodeLuv16s = pixels<int16_t, int16_t, encodeLuv>,
    .decodeLuv16u = pixels<uint16_t, uint16_t, decodeLuv>,
    .decodeLuv16s = pixels<int16_t, int16_t, decodeLuv>,
    .encodeLab8u16u = pixels<uint8_t, uint16_t, encodeLab>,
    .decodeLab16u8u = pixels<uint16_t, uint8_t, decodeLab>,
    .encodeHls16u = pixels<uint16_t, uint16_t, encodeHls>,
    .encodeHls16s = pixels<int16_t, int16_t, encodeHls>,
    .decodeHls16u = pixels<uint16_t, uint16_t, decodeHls>,
    .decodeHls16s = pixels<int16_t, int16_t, decodeHls>,
    .encodeHsv16u = pixels<uint16_t, uint16_t, encodeHsv>,
    .decodeHsv16u = pixels<uint16_t, uint16_t, decodeHsv>,
    .noise8u = noise<uint8_t, 255, uint8_t, 255>,
    .noise16u = noise<uint16_t, 65535, uint16_t, 65535>,
    .noise16u8u = noise<uint16_t, 65535, uint8_t, 255>,
    .noise32f8u = noise<float, 1, uint8_t, 255>,
};

}  // namespace bench
