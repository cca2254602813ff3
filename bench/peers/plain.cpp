// What a plain loop reaches, for conversions that no library has in the same form.

#include <cmath>

#include "peers/peers.h"

namespace bench {
namespace {

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

const PeerTable table(
    "plain",
    {
        {{"kipiGammaFwd_32f_C3R", "kipiGammaFwd_32f_P3R"}, "pow", Result::kExact, direct(curveOfFloats<encode>)},
        {{"kipiGammaInv_32f_C3R", "kipiGammaInv_32f_P3R"}, "pow", Result::kExact, direct(curveOfFloats<decode>)},
        {{"kipiGammaFwd_16u_C3R", "kipiGammaFwd_16u_P3R"}, "65536 x pow", Result::kExact, direct(curveOfWords<encode>)},
        {{"kipiGammaInv_16u_C3R", "kipiGammaInv_16u_P3R"}, "65536 x pow", Result::kExact, direct(curveOfWords<decode>)},
    });

}  // namespace
}  // namespace bench
