// RGB to and from CIE XYZ.

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "colormodels/cie-xyz.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "colormodels/cie-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

/// A coefficient at scale 2^bits as whole multiples of 1 and a remainder that fits 16 signed bits.
struct Split {
  int whole, rest;
  constexpr Split(int coefficient, int bits)
      : whole(coefficient >= -32768 && coefficient <= 32767 ? 0 : (coefficient + (1 << (bits - 1))) >> bits),
        rest(coefficient - whole * (1 << bits)) {}
};

/// A matrix with coefficients at scale 2^bits. Each sum is exact, and floored when it is brought back.
struct FixedMatrix {
  int bits;
  int rows[3][3];
};

template <const FixedMatrix& kMatrix>
struct Fixed {
  using Lane = int16_t;

  KIP_INLINE Pixels<I16> operator()(const Pixels<I16>& px) const {
    const Tag<int16_t> d;
    const I16 zero = hn::Zero(d);
    const I16 ab[2] = {hn::InterleaveLower(px.a, px.b), hn::InterleaveUpper(d, px.a, px.b)};
    const I16 c[2] = {hn::InterleaveLower(px.c, zero), hn::InterleaveUpper(d, px.c, zero)};
    return {row<0>(px, ab, c), row<1>(px, ab, c), row<2>(px, ab, c)};
  }

 private:
  template <int kRow>
  KIP_INLINE static I16 row(const Pixels<I16>& px, const I16 (&ab)[2], const I16 (&c)[2]) {
    constexpr Split kA(kMatrix.rows[kRow][0], kMatrix.bits), kB(kMatrix.rows[kRow][1], kMatrix.bits),
        kC(kMatrix.rows[kRow][2], kMatrix.bits);
    const auto sum = [&](int half) KIP_INLINE_LAMBDA {
      return hn::ShiftRight<kMatrix.bits>(
          hn::Add(dotPairs(ab[half], setPairs(kA.rest, kB.rest)), dotPairs(c[half], setPairs(kC.rest, 0))));
    };
    const I16 rest = packWords(sum(0), sum(1));
    return plusTimes<kA.whole>(plusTimes<kB.whole>(plusTimes<kC.whole>(rest, px.c), px.b), px.a);
  }

  template <int kTimes>
  KIP_INLINE static I16 plusTimes(I16 sum, I16 v) {
    if constexpr (kTimes == 0) {
      return sum;
    } else {
      return hn::Add(sum, hn::Mul(v, set<int16_t>(kTimes)));
    }
  }
};

// The pixels left over after the runs of 8 have more precise coefficients, which are not all twice or eight times those
// of the runs, and may come out one step apart.
constexpr FixedMatrix kForwardRun = {15, {{13515, 11717, 5912}, {6969, 23434, 2365}, {634, 3906, 31137}}};
constexpr FixedMatrix kForwardRest = {16, {{27030, 23434, 11824}, {13937, 46868, 4729}, {1267, 7811, 62274}}};
constexpr FixedMatrix kInverseRun = {13, {{26546, -12591, -4083}, {-7939, 15368, 340}, {456, -1671, 8661}}};
constexpr FixedMatrix kInverseRest = {16, {{212368, -100738, -32671}, {-63521, 122944, 2723}, {3646, -13372, 69291}}};

template <const FixedMatrix& kRun, const FixedMatrix& kRest, class Layout>
using ConvertBytes = ConvertRuns<8, Fixed<kRun>, Fixed<kRest>, Layout, Layout>;

/// 16-bit samples: results are truncated.
template <const Matrix& kMatrix>
struct Words {
  using Lane = float;
  KIP_INLINE Pixels<I32> operator()(const Pixels<F32>& px) const { return truncated(kMatrix(px)); }
};

/// Z alone can exceed 1 for RGB within 0 .. 1, and is clamped.
struct FloatForward {
  using Lane = float;
  KIP_INLINE Pixels<F32> operator()(const Pixels<F32>& px) const {
    const Pixels<F32> xyz = kRgbToXyz(px);
    return {xyz.a, xyz.b, toUnit(xyz.c)};
  }
};

struct FloatInverse {
  using Lane = float;
  KIP_INLINE Pixels<F32> operator()(const Pixels<F32>& px) const { return toUnit(kXyzToRgb(px)); }
};

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include "colormodels/rules.h"
#endif

#define KIP_FUNCTIONS "colormodels/cie-xyz-functions.inc"
#include "engine/functions-inl.h"
