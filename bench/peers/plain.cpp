// What a plain loop reaches, for conversions that no library has in the same form: some loops here, some compiled for
// each SIMD target.

#include <cmath>
#include <utility>

#include "peers/loops.h"
#include "peers/peers.h"

namespace bench {

// loops.inc has a line KIP_LOOPS(target) for every target that loops are compiled for.
#define KIP_LOOPS(target) extern const Loops kLoops##target;
#include "loops.inc"
#undef KIP_LOOPS

namespace {

#define KIP_LOOPS(target) &kLoops##target,
constexpr const Loops* kLoops[] = {
#include "loops.inc"
};
#undef KIP_LOOPS

/// A loop as it is compiled for the library's target; the emulated target has none.
Prepare compiled(Loop Loops::*member) {
  return [member](const Call& call) -> std::function<void()> {
    for (const Loops* loops : kLoops) {
      if (call.target != loops->target) continue;
      return [loop = loops->*member, images = LoopImages{call.src[0].at, call.dst[0].at, call.width, call.height}] {
        loop(images);
      };
    }
    return {};
  };
}

/// The BT.709 curve on 0..1 in double precision.
double encode(double linear) { return linear < 0.018 ? 4.5 * linear : 1.099 * std::pow(linear, 0.45) - 0.099; }
double decode(double coded) { return coded < 0.0812 ? coded / 4.5 : std::pow((coded + 0.099) / 1.099, 1 / 0.45); }

/// The curve at every sample of three channels.
template <double (*kCurve)(double)>
void curveOfFloats(const Call& call) {
  const float* src = reinterpret_cast<const float*>(call.src[0].at);
  float* dst = reinterpret_cast<float*>(call.dst[0].at);
  const size_t samples = static_cast<size_t>(3) * call.width * call.height;
  for (size_t i = 0; i < samples; ++i) dst[i] = static_cast<float>(kCurve(src[i]));
}

/// The curve at all 65536 values, then a table.
template <double (*kCurve)(double)>
void curveOfWords(const Call& call) {
  std::vector<uint16_t> entries(65536);
  for (int i = 0; i < 65536; ++i) entries[i] = static_cast<uint16_t>(static_cast<float>(65535 * kCurve(i / 65535.0)));
  const uint16_t* src = reinterpret_cast<const uint16_t*>(call.src[0].at);
  uint16_t* dst = reinterpret_cast<uint16_t*>(call.dst[0].at);
  const size_t samples = static_cast<size_t>(3) * call.width * call.height;
  for (size_t i = 0; i < samples; ++i) dst[i] = entries[src[i]];
}

/// Errors of a channel's row, with two zeros at each end.
class ErrorRow {
 public:
  explicit ErrorRow(int width) : errors_(width + 4) {}
  float& operator[](int x) { return errors_[x + 2]; }

 private:
  std::vector<float> errors_;
};

/// Floyd-Steinberg: what arrives at x from the row above and from the left.
float floydSteinberg(ErrorRow&, ErrorRow& above, ErrorRow& row, int x) {
  return (1 * above[x - 1] + 5 * above[x] + 3 * above[x + 1] + 7 * row[x - 1]) * 0.0625f;
}

/// Stucki, over two rows.
float stucki(ErrorRow& twoAbove, ErrorRow& above, ErrorRow& row, int x) {
  const float far =
      1 * twoAbove[x - 2] + 2 * twoAbove[x - 1] + 4 * twoAbove[x] + 2 * twoAbove[x + 1] + 1 * twoAbove[x + 2];
  const float sum = far + 2 * above[x - 2] + 4 * above[x - 1] + 8 * above[x] + 4 * above[x + 1] + 2 * above[x + 2];
  return (sum + 4 * row[x - 2] + 8 * row[x - 1]) * (1.0f / 42);
}

/// Error diffusion of three interleaved 8-bit channels, one after the other, pixel by pixel.
template <float (*kArriving)(ErrorRow&, ErrorRow&, ErrorRow&, int)>
void diffuse(const Call& call) {
  const float interval = 65280.0f / (kLevels - 1) * 0.00390625f, perValue = (kLevels - 1) / 255.0f;
  ErrorRow twoAbove(call.width), above(call.width), row(call.width);
  for (int channel = 0; channel < 3; ++channel) {
    for (int y = 0; y < call.height; ++y) {
      const uint8_t* src = call.src[0].at + y * static_cast<ptrdiff_t>(call.src[0].step) + channel;
      uint8_t* dst = call.dst[0].at + y * static_cast<ptrdiff_t>(call.dst[0].step) + channel;
      for (int x = 0; x < call.width; ++x) {
        const float value = src[3 * x] + kArriving(twoAbove, above, row, x);
        float level = value >= 255 ? 255.0f : 0.0f;
        row[x] = 0;
        if (value >= 0 && value < 255) {
          level = static_cast<float>(static_cast<int>(value * perValue)) * interval;
          if (value - level > interval * 0.5f) level += interval;
          row[x] = value - level;
        }
        dst[3 * x] = static_cast<uint8_t>(level);
      }
      std::swap(twoAbove, above);
      std::swap(above, row);
    }
  }
}

const PeerTable table(
    "plain",
    {
        {{"kipiGammaFwd_32f_C3R", "kipiGammaFwd_32f_P3R"}, "pow", Result::kExact, direct(curveOfFloats<encode>)},
        {{"kipiGammaInv_32f_C3R", "kipiGammaInv_32f_P3R"}, "pow", Result::kExact, direct(curveOfFloats<decode>)},
        {{"kipiGammaFwd_16u_C3R", "kipiGammaFwd_16u_P3R"}, "65536 x pow", Result::kExact, direct(curveOfWords<encode>)},
        {{"kipiGammaInv_16u_C3R", "kipiGammaInv_16u_P3R"}, "65536 x pow", Result::kExact, direct(curveOfWords<decode>)},
        {{"kipiReduceBits_8u_C3R/FS"}, "loop", Result::kExact, direct(diffuse<floydSteinberg>)},
        {{"kipiReduceBits_8u_C3R/Stucki"}, "loop", Result::kExact, direct(diffuse<stucki>)},
        {{"kipiToneMapLinear_32f8u_C1R"}, "loop", Result::kExact, compiled(&Loops::toneMapLinear)},
        {{"kipiToneMapMean_32f8u_C1R"}, "loop", Result::kExact, compiled(&Loops::toneMapMean)},
        {{"kipiRGBToYCC_8u_C3R"}, "loop", Result::kExact, compiled(&Loops::encodeYcc8u)},
        {{"kipiYCCToRGB_8u_C3R"}, "loop", Result::kExact, compiled(&Loops::decodeYcc8u)},
        {{"kipiRGBToYCC_16u_C3R"}, "loop", Result::kExact, compiled(&Loops::encodeYcc16u)},
        {{"kipiYCCToRGB_16u_C3R"}, "loop", Result::kExact, compiled(&Loops::decodeYcc16u)},
        {{"kipiRGBToYCC_16s_C3R"}, "loop", Result::kExact, compiled(&Loops::encodeYcc16s)},
        {{"kipiYCCToRGB_16s_C3R"}, "loop", Result::kExact, compiled(&Loops::decodeYcc16s)},
        {{"kipiRGBToYCC_32f_C3R"}, "loop", Result::kExact, compiled(&Loops::encodeYcc32f)},
        {{"kipiYCCToRGB_32f_C3R"}, "loop", Result::kExact, compiled(&Loops::decodeYcc32f)},
        {{"kipiRGBToLUV_16u_C3R"}, "loop", Result::kExact, compiled(&Loops::encodeLuv16u)},
        {{"kipiLUVToRGB_16u_C3R"}, "loop", Result::kExact, compiled(&Loops::decodeLuv16u)},
        {{"kipiRGBToLUV_16s_C3R"}, "loop", Result::kExact, compiled(&Loops::encodeLuv16s)},
        {{"kipiLUVToRGB_16s_C3R"}, "loop", Result::kExact, compiled(&Loops::decodeLuv16s)},
        {{"kipiBGRToLab_8u16u_C3R"}, "loop", Result::kExact, compiled(&Loops::encodeLab8u16u)},
        {{"kipiLabToBGR_16u8u_C3R"}, "loop", Result::kExact, compiled(&Loops::decodeLab16u8u)},
        {{"kipiRGBToHLS_16u_C3R"}, "loop", Result::kExact, compiled(&Loops::encodeHls16u)},
        {{"kipiHLSToRGB_16u_C3R"}, "loop", Result::kExact, compiled(&Loops::decodeHls16u)},
        {{"kipiRGBToHLS_16s_C3R"}, "loop", Result::kExact, compiled(&Loops::encodeHls16s)},
        {{"kipiHLSToRGB_16s_C3R"}, "loop", Result::kExact, compiled(&Loops::decodeHls16s)},
        {{"kipiRGBToHSV_16u_C3R"}, "loop", Result::kExact, compiled(&Loops::encodeHsv16u)},
        {{"kipiHSVToRGB_16u_C3R"}, "loop", Result::kExact, compiled(&Loops::decodeHsv16u)},
        {{"kipiReduceBits_8u_C3R/BayerNoise"}, "loop", Result::kExact, compiled(&Loops::noise8u)},
        {{"kipiReduceBits_16u_C3R/BayerNoise"}, "loop", Result::kExact, compiled(&Loops::noise16u)},
        {{"kipiReduceBits_16u8u_C3R/BayerNoise"}, "loop", Result::kExact, compiled(&Loops::noise16u8u)},
        {{"kipiReduceBits_32f8u_C3R/BayerNoise"}, "loop", Result::kExact, compiled(&Loops::noise32f8u)},
    });

}  // namespace
}  // namespace bench
