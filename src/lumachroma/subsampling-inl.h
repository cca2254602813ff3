// Conversions between full-resolution pixels and subsampled chroma: the layouts, and the walk over pixel pairs and
// 2 x 2 blocks. What is computed comes from the families' arithmetic types.
//
// Encoding works on pixels as pairs of 16-bit channels in 32-bit lanes, (R, G) and (B, G), so that dotPairs weights
// them exactly; splitting a coefficient for G over both pairs allows coefficients above 32767. An encoder is a type
// with
//   I32 luma(rg, bg)                               the luma of one vector of pixels, at the encoder's scale
//   I16 toByte(luma)                               that luma as a sample
//   void chroma(rgSums, bgSums, lumaSums, u, v)    the chroma of a group from its sums
//
// Decoding works on 16-bit lanes. A decoder is a type with
//   Pixels<I16> terms(u, v)                        what the chroma adds to each channel
//   Pixels<I16> pixel(y, terms)                    a pixel, before saturation

#if defined(KIP_LUMACHROMA_SUBSAMPLING_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_LUMACHROMA_SUBSAMPLING_INL_H_
#undef KIP_LUMACHROMA_SUBSAMPLING_INL_H_
#else
#define KIP_LUMACHROMA_SUBSAMPLING_INL_H_
#endif

#include "frame/pairs-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

// ---------------------------------------------------------------------------------------------------------------------
// Layouts of subsampled images. y[] is one vector per luma row; u and v are 16-bit lanes, one per pixel pair, in order.

struct Subsampled {
  U8 y[2];
  I16 u, v;
};

/// Packed 4:2:2, four bytes for a pixel pair. kLumaFirst: Y0 u Y1 v, else u Y0 v Y1; kSwapped: v and u change places.
template <bool kLumaFirst = true, bool kSwapped = false>
struct Packed422 : Interleaved<Tag<uint8_t>, 2> {
  static constexpr int kLumaRows = 1;

  KIP_INLINE Subsampled load(const Rows<const Kip8u, 1>& from) const {
    U8 first, second;
    hn::LoadInterleaved2(Tag<uint8_t>(), from.at[0], first, second);
    Subsampled s;
    s.y[0] = kLumaFirst ? first : second;
    const U8 chroma = kLumaFirst ? second : first;
    s.u = kSwapped ? oddBytes(chroma) : evenBytes(chroma);
    s.v = kSwapped ? evenBytes(chroma) : oddBytes(chroma);
    return s;
  }
  KIP_INLINE void store(const Subsampled& s, const Rows<Kip8u, 1>& to) const {
    const U8 chroma = kSwapped ? mergeBytes(s.v, s.u) : mergeBytes(s.u, s.v);
    const U8 first = kLumaFirst ? s.y[0] : chroma, second = kLumaFirst ? chroma : s.y[0];
    hn::StoreInterleaved2(first, second, Tag<uint8_t>(), to.at[0]);
  }
};

/// Planar 4:2:2 (one luma row) and 4:2:0 (two luma rows, which come first among the pointers).
template <int kRows>
struct PlanarChroma {
  static constexpr int kBlock = kLanes<uint8_t>;
  static constexpr int kLumaRows = kRows;
  static constexpr int kPointers = kRows + 2;
  static constexpr bool kKeeps = false;
  static constexpr bool kTakesAlpha = false;
  static constexpr size_t bytes(int p, size_t pixels) { return p < kRows ? pixels : (pixels + 1) / 2; }

  template <class Byte>
  static Rows<Byte, kPointers> rows(const Image<Byte>& image, int group) {
    Rows<Byte, kPointers> rows;
    for (int r = 0; r < kRows; ++r) rows.at[r] = image.row(0, kRows * group + r);
    rows.at[kRows] = image.row(1, group);
    rows.at[kRows + 1] = image.row(2, group);
    return rows;
  }
  KIP_INLINE Subsampled load(const Rows<const Kip8u, kPointers>& from) const {
    Subsampled s;
    for (int r = 0; r < kRows; ++r) s.y[r] = hn::LoadU(Tag<uint8_t>(), from.at[r]);
    s.u = loadHalf(from.at[kRows]);
    s.v = loadHalf(from.at[kRows + 1]);
    return s;
  }
  KIP_INLINE void store(const Subsampled& s, const Rows<Kip8u, kPointers>& to) const {
    for (int r = 0; r < kRows; ++r) hn::StoreU(s.y[r], Tag<uint8_t>(), to.at[r]);
    storeHalf(s.u, to.at[kRows]);
    storeHalf(s.v, to.at[kRows + 1]);
  }
};
using Planar422 = PlanarChroma<1>;
using Planar420 = PlanarChroma<2>;

// ---------------------------------------------------------------------------------------------------------------------
// Sums over groups of pixels

/// Sums over neighbouring pixels: one pair of 16-bit sums for each two lanes of `lower`, then of `upper`.
KIP_INLINE I16 addNeighbours(I16 lower, I16 upper) {
  const I32 a = as<int32_t>(lower), b = as<int32_t>(upper);
  return hn::Add(as<int16_t>(evenLanes(a, b)), as<int16_t>(oddLanes(a, b)));
}

/// The even channel (R of (R, G)) of pairs, as 16-bit lanes in order.
KIP_INLINE I16 evenChannel(I16 lower, I16 upper) {
  const auto even = [](I16 v) { return hn::And(as<int32_t>(v), set<int32_t>(0xFFFF)); };
  return packWords(even(lower), even(upper));
}

// ---------------------------------------------------------------------------------------------------------------------
// The walks

/// One block of one luma row: its luma, and its luma at the encoder's scale as 16-bit lanes in order.
template <class Op>
KIP_INLINE U8 encodeLuma(const Op& op, const PixelPairs& px, I16 (&scaled)[2]) {
  for (int half = 0; half < 2; ++half) {
    scaled[half] =
        packWords(op.luma(px.rg[2 * half], px.bg[2 * half]), op.luma(px.rg[2 * half + 1], px.bg[2 * half + 1]));
  }
  return packBytes(op.toByte(scaled[0]), op.toByte(scaled[1]));
}

/// The chroma of a block's groups from what the rows of the group have in sum.
template <class Op>
KIP_INLINE void encodeChroma(const Op& op, const PixelPairs& px, const I16 (&luma)[2], Subsampled& s) {
  const I16 one = set<int16_t>(1);
  const I16 rg[2] = {addNeighbours(px.rg[0], px.rg[1]), addNeighbours(px.rg[2], px.rg[3])};
  const I16 bg[2] = {addNeighbours(px.bg[0], px.bg[1]), addNeighbours(px.bg[2], px.bg[3])};
  op.chroma(rg, bg, packWords(dotPairs(luma[0], one), dotPairs(luma[1], one)), s.u, s.v);
}

/// Pixels to subsampled chroma: groups of 2 x Dst::kLumaRows pixels. The last column of an odd width is left out.
template <class Op, class Src, class Dst>
struct Encode {
  static void rows(const Job& job, int first, int last) {
    const Op op = makeFor<Op>(job);
    const Dst dst = makeFor<Dst>(job);
    for (int y = first; y < last; ++y) {
      forBlocks<GroupOf, Dst>(GroupOf::rows(job.src, y), Dst::rows(job.dst, y), 0, job.width / 2 * 2,
                              [&](const auto& from, const auto& to)
                                  KIP_INLINE_LAMBDA { dst.store(block(op, from), to); });
    }
  }

 private:
  using GroupOf = std::conditional_t<Dst::kLumaRows == 2, TwoRows<Src>, Src>;

  KIP_INLINE static Subsampled block(const Op& op, const Rows<const Kip8u, GroupOf::kPointers>& from) {
    Subsampled s;
    I16 luma[2];
    if constexpr (Dst::kLumaRows == 1) {
      const PixelPairs px = pairsOf(Src(), from);
      s.y[0] = encodeLuma(op, px, luma);
      encodeChroma(op, px, luma, s);
    } else {
      I16 lowerLuma[2];
      PixelPairs px = pairsOf(Src(), GroupOf::row(from, 0));
      const PixelPairs lower = pairsOf(Src(), GroupOf::row(from, 1));
      s.y[0] = encodeLuma(op, px, luma);
      s.y[1] = encodeLuma(op, lower, lowerLuma);
      for (int k = 0; k < 4; ++k) px.rg[k] = hn::Add(px.rg[k], lower.rg[k]), px.bg[k] = hn::Add(px.bg[k], lower.bg[k]);
      for (int half = 0; half < 2; ++half) luma[half] = hn::Add(luma[half], lowerLuma[half]);
      encodeChroma(op, px, luma, s);
    }
    return s;
  }
};

/// Subsampled chroma to pixels, each chroma sample serving its group of 2 x Src::kLumaRows pixels.
template <class Op, class Src, class Dst>
struct Decode {
  using GroupOf = std::conditional_t<Src::kLumaRows == 2, TwoRows<Dst>, Dst>;

  KIP_INLINE static void pixels(const Job& job, int group, size_t first, size_t last) {
    walk(job, Src::rows(job.src, group), GroupOf::rows(job.dst, group), first, last);
  }

  KIP_INLINE static void walk(const Job& job, const Rows<const Kip8u, Src::kPointers>& from,
                              const Rows<Kip8u, GroupOf::kPointers>& to, size_t first, size_t last) {
    const Op op = makeFor<Op>(job);
    const Src src = makeFor<Src>(job);
    const Dst dst = makeFor<Dst>(job);
    forBlocks<Src, GroupOf>(from, to, first, last, [&](const auto& in, const auto& out) KIP_INLINE_LAMBDA {
      const Subsampled s = src.load(in);
      const Pixels<I16> terms = op.terms(s.u, s.v);
      for (int r = 0; r < Src::kLumaRows; ++r) {
        const Pixels<I16> even = op.pixel(evenBytes(s.y[r]), terms), odd = op.pixel(oddBytes(s.y[r]), terms);
        const Pixels<U8> px = {mergeBytes(even.a, odd.a), mergeBytes(even.b, odd.b), mergeBytes(even.c, odd.c)};
        if constexpr (Src::kLumaRows == 2) {
          dst.store(px, GroupOf::row(out, r));
        } else {
          dst.store(px, out);
        }
      }
    });
  }

  /// Whole groups for 4:2:0; for 4:2:2 also the pixel of an odd width.
  static constexpr int converted(int width) { return Src::kLumaRows == 2 ? width / 2 * 2 : width; }

  static void rows(const Job& job, int first, int last) {
    for (int y = first; y < last; ++y) pixels(job, y, 0, converted(job.width));
  }
};

/// As Decode, with another arithmetic for the pixels after the last whole run of kRun.
template <int kRun, class Op, class Rest, class Src, class Dst>
struct DecodeRuns {
  static void rows(const Job& job, int first, int last) {
    const int end = Decode<Op, Src, Dst>::converted(job.width), runs = end - end % kRun;
    for (int y = first; y < last; ++y) {
      Decode<Op, Src, Dst>::pixels(job, y, 0, runs);
      Decode<Rest, Src, Dst>::pixels(job, y, runs, end);
    }
  }
};

/// A decoder as an arithmetic for full-resolution pixels.
template <class Decoder>
struct PerPixel {
  using Lane = int16_t;
  Decoder decoder;

  KIP_INLINE PerPixel() {}
  KIP_INLINE Pixels<I16> operator()(const Pixels<I16>& px) const {
    return decoder.pixel(px.a, decoder.terms(px.b, px.c));
  }
};

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
