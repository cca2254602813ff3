// RGB to and from YUV: the arithmetic that the 8-bit functions share with those of packed 16-bit RGB.
//
// Y = 0.299 R + 0.587 G + 0.114 B, U = 0.492 (B - Y) + 128, V = 0.877 (R - Y) + 128. The integers are these decimals at
// scale 2^15 (2^16 where a comment says so), some of them one step apart from kernel to kernel: each kernel's results
// are promised to the bit, so they stay apart.

#if defined(KIP_LUMACHROMA_YUV_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_LUMACHROMA_YUV_INL_H_
#undef KIP_LUMACHROMA_YUV_INL_H_
#else
#define KIP_LUMACHROMA_YUV_INL_H_
#endif

#include "lumachroma/subsampling-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace yuv {

constexpr int kChromaZero = 128;
constexpr int kR15 = 9798, kG15 = 19235, kB15 = 3736;  // luma weights x 2^15
constexpr int kU15 = 16121, kV15 = 28737;              // 0.492, 0.877 x 2^15

template <int kBits>
KIP_INLINE I16 shiftLeft(I16 v) {
  return hn::ShiftLeft<kBits>(v);
}

/// A factor whose products are floored to their upper 16 bits.
class Factor {
 public:
  KIP_INLINE explicit Factor(int value) : value_(keepInRegister<int16_t>(value)) {}
  KIP_INLINE I16 operator()(I16 v) const { return hn::MulHigh(v, value_); }

 private:
  I16 value_;
};

class ChromaZero {
 public:
  KIP_INLINE ChromaZero() {}
  KIP_INLINE I16 plus(I16 v) const { return hn::Add(v, zero_); }
  template <int kBits>
  KIP_INLINE I16 centre(I16 chroma) const {
    return shiftLeft<kBits>(hn::Sub(chroma, zero_));
  }

 private:
  I16 zero_ = keepInRegister<int16_t>(kChromaZero);
};

// ---------------------------------------------------------------------------------------------------------------------
// Forward

/// 2 Y from pairs of channels: the weighted R and G floored together, B by itself.
struct DoubledLuma {
  WeighPixels rg{0, kG15, kR15};
  I16 bWeight = keepPairs(kB15, 0);

  KIP_INLINE DoubledLuma() {}

  template <class Px>
  KIP_INLINE I32 operator()(const Px& px) const {
    return hn::Add(hn::ShiftRight<14>(rg(px)), hn::ShiftRight<14>(dotPairs(brOf(px), bWeight)));
  }
};

/// Chroma from the differences of blue and of red to luma, all doubled.
struct Differences {
  Factor uFactor{kU15}, vFactor{kV15};
  ChromaZero zero;

  KIP_INLINE Differences() {}

  KIP_INLINE I16 u(I16 doubledBlue, I16 doubledLuma) const {
    return zero.plus(uFactor(hn::Sub(doubledBlue, doubledLuma)));
  }
  KIP_INLINE I16 v(I16 doubledRed, I16 doubledLuma) const {
    return zero.plus(vFactor(hn::Sub(doubledRed, doubledLuma)));
  }
};

// ---------------------------------------------------------------------------------------------------------------------
// Forward, subsampled: the chroma of a group is that of its mean colour

/// Encodes by the sums of a group's colours and luma. Of the arithmetic it wants
///   I32 luma(pixels)                      the luma of one vector of pixels, at the arithmetic's scale
///   I16 toByte(luma)                      that luma as a sample
///   I16 u(blues, lumas), v(reds, lumas)   the chroma of groups from their sums
template <class Arithmetic>
struct EncodeSums : Arithmetic {
  struct Part {
    ChannelPairs br;
    I16 luma;

    KIP_INLINE Part operator+(const Part& other) const { return {br + other.br, hn::Add(luma, other.luma)}; }
  };
  struct Sums {
    I32 red, blue, luma;
  };

  KIP_INLINE EncodeSums() {}

  template <class Px>
  KIP_INLINE I16 luma(const HalfBatch<Px>& px) const {
    return packPixels(px, [this](const Px& p) KIP_INLINE_LAMBDA { return Arithmetic::luma(p); });
  }
  template <class Px>
  KIP_INLINE static Part part(const HalfBatch<Px>& px, I16 luma) {
    return {{{brOf(px.of[0]), brOf(px.of[1])}}, luma};
  }
  KIP_INLINE static Sums sums(const Part& part) {
    const I32 br = as<int32_t>(addNeighbours(part.br.of[0], part.br.of[1]));
    return {hn::ShiftRight<16>(br), hn::And(br, set<int32_t>(0xFFFF)), dotPairs(part.luma, set<int16_t>(1))};
  }
  KIP_INLINE void chroma(const Sums (&half)[2], Subsampled& s) const {
    const I16 luma = packWords(half[0].luma, half[1].luma);
    s.u = this->u(packWords(half[0].blue, half[1].blue), luma);
    s.v = this->v(packWords(half[0].red, half[1].red), luma);
  }
};

/// Sums of a pixel pair; the mean luma is floored, so S = (Y2 + Y2) >> 1 against R + R.
struct Mean422 {
  DoubledLuma luma;
  Differences differences;

  KIP_INLINE Mean422() {}

  KIP_INLINE I16 toByte(I16 y2) const { return hn::ShiftRight<1>(y2); }
  KIP_INLINE I16 u(I16 blues, I16 lumas) const { return differences.u(blues, hn::ShiftRight<1>(lumas)); }
  KIP_INLINE I16 v(I16 reds, I16 lumas) const { return differences.v(reds, hn::ShiftRight<1>(lumas)); }
};

/// Sums of a 2 x 2 group, brought to the scale of one doubled pixel.
struct Mean420 {
  WeighPixels weigh{kB15, kG15, kR15};
  Differences differences;

  KIP_INLINE Mean420() {}

  template <class Px>
  KIP_INLINE I32 luma(const Px& px) const {
    return hn::ShiftRight<14>(weigh(px));
  }
  KIP_INLINE I16 toByte(I16 y2) const { return hn::ShiftRight<1>(y2); }
  KIP_INLINE I16 u(I16 blues, I16 lumas) const {
    return differences.u(hn::ShiftRight<1>(blues), hn::ShiftRight<2>(lumas));
  }
  KIP_INLINE I16 v(I16 reds, I16 lumas) const {
    return differences.v(hn::ShiftRight<1>(reds), hn::ShiftRight<2>(lumas));
  }
};

// ---------------------------------------------------------------------------------------------------------------------
// Inverse: R = Y + 1.140 V, G = Y - 0.394 U - 0.581 V, B = Y + 2.032 U

struct Factors {
  int vToR, uToG, vToG, uToB;
};
constexpr Factors kFactors1 = {9339, -3228, -4760, 16646};  // x 2^13
constexpr Factors kFactors2 = {9338, -3227, -4759, 16645};

/// Luma doubled and the sums halved, so that the terms carry one more bit.
struct Doubled {
  ChromaZero zero;

  KIP_INLINE Doubled() {}

  KIP_INLINE Pixels<I16> pixel(I16 y, const Pixels<I16>& t) const {
    const I16 y2 = shiftLeft<1>(y);
    return {hn::ShiftRight<1>(hn::Add(y2, t.a)), hn::ShiftRight<1>(hn::Add(y2, t.b)),
            hn::ShiftRight<1>(hn::Add(y2, t.c))};
  }
};

struct InverseDoubled : Doubled {
  Factor vToR, uToG, vToG, uToB;

  KIP_INLINE explicit InverseDoubled(const Factors& f) : vToR(f.vToR), uToG(f.uToG), vToG(f.vToG), uToB(f.uToB) {}

  KIP_INLINE Pixels<I16> terms(I16 chromaU, I16 chromaV) const {
    const I16 u = zero.centre<4>(chromaU), v = zero.centre<4>(chromaV);
    return {vToR(v), hn::Add(uToG(u), vToG(v)), uToB(u)};
  }
};
struct Inverse2 : InverseDoubled {
  KIP_INLINE Inverse2() : InverseDoubled(kFactors2) {}
};

// ---------------------------------------------------------------------------------------------------------------------
// Inverse, by source. Of the arithmetic these want
//   Pixels<I16> terms(u, v)       what the chroma adds to each channel
//   Pixels<I16> pixel(y, terms)   a pixel, before saturation

/// An arithmetic for full-resolution pixels.
template <class Arithmetic>
struct PerPixel {
  using Lane = int16_t;
  Arithmetic arithmetic;

  KIP_INLINE PerPixel() {}
  KIP_INLINE Pixels<I16> operator()(const Pixels<I16>& px) const {
    return arithmetic.pixel(px.a, arithmetic.terms(px.b, px.c));
  }
};

/// An arithmetic for subsampled pixels.
template <class Arithmetic>
struct PerPair {
  Arithmetic arithmetic;

  KIP_INLINE PerPair() {}
  KIP_INLINE explicit PerPair(const Arithmetic& a) : arithmetic(a) {}
  template <class Src, class From>
  KIP_INLINE static Subsampled load(const Src& src, const From& from) {
    return src.load(from);
  }
  KIP_INLINE Pixels<I16> terms(const Subsampled& s) const { return arithmetic.terms(s.u, s.v); }
  KIP_INLINE Pixels<U8> row(const Subsampled& s, int r, const Pixels<I16>& terms) const {
    const Pixels<I16> even = arithmetic.pixel(evenBytes(s.y[r]), terms);
    const Pixels<I16> odd = arithmetic.pixel(oddBytes(s.y[r]), terms);
    return {mergeBytes(even.a, odd.a), mergeBytes(even.b, odd.b), mergeBytes(even.c, odd.c)};
  }
};

}  // namespace yuv

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
