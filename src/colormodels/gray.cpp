// Grey from colour: Y = 0.299 R + 0.587 G + 0.114 B, or a weighted sum with the caller's weights.

#include <algorithm>
#include <cmath>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "colormodels/gray.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "engine/pairs-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

/// The weights of a call, those of BT.601 where the caller gives none.
inline const float* grayWeights(const Job& job) {
  static constexpr float kBt601[3] = {0.299f, 0.587f, 0.114f};
  return job.parameters ? static_cast<const float*>(job.parameters) : kBt601;
}

/// A weight x 2^12, rounded, as the signed 16-bit number that it is kept in; 0 for NaN.
inline int weight12(float weight) {
  if (std::isnan(weight)) return 0;
  const double scaled = std::clamp(weight * 4096.0 + 0.5, -2147483648.0, 2147483647.0);
  return static_cast<int16_t>(static_cast<int32_t>(scaled));
}

/// Weighted sums of the channels of byte pixels, weights x 2^12, and one half.
class WeighGray {
 public:
  KIP_INLINE explicit WeighGray(const Job& job)
      : weigh_(weight12(grayWeights(job)[2]), weight12(grayWeights(job)[1]), weight12(grayWeights(job)[0])) {}
  /// Whether two signed bytes hold each weight; G's are halves of its weight.
  static bool fits(const Job& job) {
    const float* w = grayWeights(job);
    return std::max(weight12(w[0]), weight12(w[2])) <= 127 * 256 + 127;
  }

  KIP_INLINE I32 operator()(const PixelPairs& px) const { return hn::Add(weigh_(px), half_); }
  KIP_INLINE I32 operator()(const PixelQuads& px) const { return weigh_(px, half256_); }

 private:
  WeighPixels weigh_;
  I32 half_ = keepInRegister<int32_t>(1 << 11);
  I32 half256_ = keepInRegister<int32_t>((1 << 11) / 256);
};

/// Bytes: exact sums, rounded, of which the low byte is kept.
template <class Src>
struct GrayBytes {
  static void rows(const Job& job, int first, int last) {
    const WeighGray weigh(job);
    if (!kHasDotQuads || WeighGray::fits(job)) return rows(job, first, last, weigh);
    rows(job, first, last, [&weigh](const auto& px) KIP_INLINE_LAMBDA {
      return weigh(PixelPairs{brOf(px), ggOf(px)});
    });
  }

 private:
  template <class Weigh>
  KIP_INLINE static void rows(const Job& job, int first, int last, const Weigh& weigh) {
    for (int y = first; y < last; ++y) {
      forBatches<Src, C1<>>(
          Src::rows(job.src, y), C1<>::rows(job.dst, y), 0, job.width,
          [&](const auto& from, const auto& to) KIP_INLINE_LAMBDA {
            const auto lower = pixelsOf(Src(), from, 0), upper = pixelsOf(Src(), from, 1);
            const I32 sums[4] = {weigh(lower.of[0]), weigh(lower.of[1]), weigh(upper.of[0]), weigh(upper.of[1])};
            hn::StoreU(bytesFrom<12>(sums), Tag<uint8_t>(), to.at[0]);
          });
    }
  }
};

/// Floats, summed from left to right.
struct GraySum {
  KIP_INLINE explicit GraySum(const Job& job)
      : r(keepInRegister(grayWeights(job)[0])),
        g(keepInRegister(grayWeights(job)[1])),
        b(keepInRegister(grayWeights(job)[2])) {}
  KIP_INLINE F32 operator()(const Pixels<F32>& px) const {
    return hn::Add(hn::Add(hn::Mul(r, px.a), hn::Mul(g, px.b)), hn::Mul(b, px.c));
  }
  F32 r, g, b;
};

struct GrayFloats {
  using Lane = float;
  KIP_INLINE explicit GrayFloats(const Job& job) : sum(job) {}
  KIP_INLINE Pixels<F32> operator()(const Pixels<F32>& px) const {
    const F32 gray = sum(px);
    return {gray, gray, gray};
  }
  GraySum sum;
};

/// 16-bit samples: truncated, the low 16 bits kept. Signed ones, raised by 32768, saturate instead; sums beyond the
/// range are limited before they become integers, which could not hold all of them.
template <bool kSaturates>
struct GrayWords {
  using Lane = float;
  KIP_INLINE explicit GrayWords(const Job& job) : sum(job) {}
  KIP_INLINE Pixels<I32> operator()(const Pixels<F32>& px) const {
    const F32 y = sum(px);
    const I32 gray = kSaturates ? truncated(atMost(y, set(65535.f))) : hn::And(truncated(y), set<int32_t>(0xFFFF));
    return {gray, gray, gray};
  }
  GraySum sum;
};

template <class Src>
using Gray16u = Convert<GrayWords<false>, Src, C1<uint16_t>>;
template <class Src>
using Gray16s = Convert<GrayWords<true>, Biased<Src>, Biased<C1<uint16_t>>>;
template <class Src>
using Gray32f = Convert<GrayFloats, Src, C1<float>>;

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include "engine/convert.h"

namespace kip {
constexpr Rules kGray = {};
constexpr Rules kGrayFloats = {.stepUnit = sizeof(float)};
}  // namespace kip

// The caller's weights, null for those of BT.601.
#define KIP_WEIGHTS (const Kip32f coeffs[3]), ({.parameters = coeffs})
#endif

#define KIP_FUNCTIONS "colormodels/gray-functions.inc"
#include "engine/functions-inl.h"
