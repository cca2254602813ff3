// Colour twist: an affine 3 x 4 matrix, or a linear 4 x 4 one, applied to every pixel in single precision.

#include "engine/rounding.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "colormodels/twist.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "engine/convert-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

/// out_c = t[c][0] in_0 + t[c][1] in_1 + t[c][2] in_2 + t[c][3], summed from left to right.
class Matrix3x4 {
 public:
  using Lane = float;
  static constexpr int kInterleavedChains = 2;
  KIP_INLINE explicit Matrix3x4(const Job& job) {
    const float* t = static_cast<const float*>(job.parameters);
    for (int i = 0; i < 12; ++i) t_[i] = keepInRegister(t[i]);
  }
  KIP_INLINE Pixels<F32> operator()(const Pixels<F32>& px) const { return {row<0>(px), row<1>(px), row<2>(px)}; }

 private:
  template <int kRow>
  KIP_INLINE F32 row(const Pixels<F32>& px) const {
    const F32* t = t_ + 4 * kRow;
    const F32 sum = hn::Add(hn::Mul(t[0], px.a), hn::Mul(t[1], px.b));
    return hn::Add(hn::Add(sum, hn::Mul(t[2], px.c)), t[3]);
  }
  F32 t_[12];
};

/// The matrix on integer samples between kLow and kHigh, which arrive as unsigned lanes raised by -kLow and leave so:
/// rounded to nearest, ties to even. The limit below is the packing's saturation.
template <int kLow, int kHigh>
class IntegerMatrix {
 public:
  using Lane = float;
  KIP_INLINE explicit IntegerMatrix(const Job& job) : matrix_(job) {}

  KIP_INLINE Pixels<I32> operator()(const Pixels<F32>& raised) const {
    const Pixels<F32> px = eachChannel(raised, [this](F32 v) KIP_INLINE_LAMBDA { return lower(v); });
    return eachChannel(matrix_(px), [this](F32 v) KIP_INLINE_LAMBDA { return round(v); });
  }

 private:
  KIP_INLINE F32 lower(F32 v) const { return kLow == 0 ? v : hn::Add(v, low_); }
  KIP_INLINE I32 round(F32 v) const {
    const I32 nearest = rounded(atMost(v, high_));
    return kLow == 0 ? nearest : hn::Sub(nearest, set<int32_t>(kLow));
  }
  Matrix3x4 matrix_;
  F32 low_ = keepInRegister<float>(kLow), high_ = keepInRegister<float>(kHigh);
};

#if HWY_NATIVE_FMA
/// The matrix on unsigned samples, for numbers with which no sum leaves the 32-bit integers: the same results from
/// less. Joined with the exponent of 2^23, a sample x is the float 2^23 + x. A factor t of it and -2^23 t, which is
/// exact, make t x in one fused operation, with t x's one rounding.
template <class T>
class ModestMatrix {
 public:
  using Lane = T;
  KIP_INLINE explicit ModestMatrix(const Job& job) {
    const float* t = static_cast<const float*>(job.parameters);
    for (int i = 0; i < 12; ++i) {
      t_[i] = keepInRegister(t[i]);
      if (i % 4 != 3) less_[i] = keepInRegister(t[i] * -kRaise);
    }
  }
  static bool takes(const Job& job) {
    constexpr float kMostFactor = 1 << 12, kMostOffset = 1 << 30;
    static_assert(3. * kMostFactor * static_cast<T>(-1) + kMostOffset < 0x7F000000);
    const float* t = static_cast<const float*>(job.parameters);
    for (int i = 0; i < 12; ++i) {
      if (!(std::fabs(t[i]) <= (i % 4 == 3 ? kMostOffset : kMostFactor))) return false;
    }
    return true;
  }

  KIP_INLINE Pixels<U16> operator()(const Pixels<U16>& px) const {
    return converted(px, [](I32 l, I32 u) KIP_INLINE_LAMBDA { return packUnsignedWords(l, u); });
  }
  KIP_INLINE Pixels<U8> operator()(const Pixels<U8>& px) const {
    const auto words = [](I32 l, I32 u) KIP_INLINE_LAMBDA { return packWords(l, u); };
    const auto half = [&](auto bytes) KIP_INLINE_LAMBDA {
      return converted(eachChannel(px, [&](U8 v) KIP_INLINE_LAMBDA { return as<uint16_t>(bytes(v)); }), words);
    };
    return pack(half([](U8 v) KIP_INLINE_LAMBDA { return lowerBytes(v); }),
                half([](U8 v) KIP_INLINE_LAMBDA { return upperBytes(v); }));
  }

 private:
  static constexpr float kRaise = 1 << 23;

  /// Two sums side by side: each waits for its own terms.
  template <class Pack>
  KIP_INLINE auto converted(const Pixels<U16>& px, const Pack& pack) const {
    const auto lower = [this](U16 v) KIP_INLINE_LAMBDA { return as<float>(hn::InterleaveLower(v, exponent_)); };
    const auto upper = [this](U16 v)
                           KIP_INLINE_LAMBDA { return as<float>(hn::InterleaveUpper(Tag<uint16_t>(), v, exponent_)); };
    const Pixels<F32> l = eachChannel(px, lower), u = eachChannel(px, upper);
    return Pixels<decltype(pack(I32(), I32()))>(row<0>(l, u, pack), row<1>(l, u, pack), row<2>(l, u, pack));
  }
  template <int kRow, class Pack>
  KIP_INLINE auto row(const Pixels<F32>& l, const Pixels<F32>& u, const Pack& pack) const {
    const auto product = [this](int i, F32 x)
                             KIP_INLINE_LAMBDA { return hn::MulAdd(x, t_[4 * kRow + i], less_[4 * kRow + i]); };
    F32 lower = hn::Add(product(0, l.a), product(1, l.b)), upper = hn::Add(product(0, u.a), product(1, u.b));
    lower = hn::Add(lower, product(2, l.c)), upper = hn::Add(upper, product(2, u.c));
    return pack(rounded(hn::Add(lower, t_[4 * kRow + 3])), rounded(hn::Add(upper, t_[4 * kRow + 3])));
  }

  F32 t_[12], less_[12];
  U16 exponent_ = keepInRegister<uint16_t>(0x4B00);  // the upper half of 2^23
};
#endif

template <int kLow, int kHigh, class Layout>
struct TwistIntegers {
  static void rows(const Job& job, int first, int last) {
    const RoundToNearest mode;
#if HWY_NATIVE_FMA
    if constexpr (kLow == 0) {
      using Modest = ModestMatrix<typename Layout::T>;
      if (Modest::takes(job)) return Convert<Modest, Layout>::rows(job, first, last);
    }
#endif
    Convert<IntegerMatrix<kLow, kHigh>, Layout>::rows(job, first, last);
  }
};

template <class Layout>
using Twist8u = TwistIntegers<0, 255, Layout>;
template <class Layout>
using Twist8s = TwistIntegers<-128, 127, Biased<Layout>>;
template <class Layout>
using Twist16u = TwistIntegers<0, 65535, Layout>;
template <class Layout>
using Twist16s = TwistIntegers<-32768, 32767, Biased<Layout>>;
template <class Layout>
using Twist32f = Convert<Matrix3x4, Layout>;

/// out_c = t[c][0] in_0 + t[c][1] in_1 + t[c][2] in_2 + t[c][3] in_3: the fourth sample takes part.
struct FourChannels {
  static void rows(const Job& job, int first, int last) {
    using Layout = AC4<float>;
    const float* t = static_cast<const float*>(job.parameters);
    F32 m[16];
    for (int i = 0; i < 16; ++i) m[i] = keepInRegister(t[i]);
    for (int y = first; y < last; ++y) {
      forBatches<Layout, Layout>(Layout::rows(job.src, y), Layout::rows(job.dst, y), 0, job.width,
                                 [&](const auto& from, const auto& to) KIP_INLINE_LAMBDA {
                                   const Pixels<F32> px = Layout().load(from);
                                   const auto row = [&](const F32* r) KIP_INLINE_LAMBDA {
                                     const F32 sum = hn::Add(hn::Mul(r[0], px.a), hn::Mul(r[1], px.b));
                                     return hn::Add(hn::Add(sum, hn::Mul(r[2], px.c)), hn::Mul(r[3], px.alpha));
                                   };
                                   C4<float>::storeWith({row(m), row(m + 4), row(m + 8)}, row(m + 12), to);
                                 });
    }
  }
};

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include "engine/convert.h"

namespace kip {
constexpr Rules kTwist = {.planesBeforeSize = true, .needsParameters = true, .steps = StepCheck::kAfterSize};
}  // namespace kip

// The matrix of n rows.
#define KIP_MATRIX(n) (const Kip32f twist[n][4]), ({.parameters = twist})
#endif

#define KIP_FUNCTIONS "colormodels/twist-functions.inc"
#include "engine/functions-inl.h"
