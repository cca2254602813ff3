// RGB packed in 16-bit words from YCbCr, YUV and RGB bytes, truncated or with an ordered dither.

#include <utility>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "lumachroma/packed16.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "lumachroma/packed16-inl.h"
#include "lumachroma/ycbcr-decode-inl.h"
#include "lumachroma/yuv-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

// ---------------------------------------------------------------------------------------------------------------------
// Truncated: the arithmetic of BT.601, floored

template <class Src, class Dst>
struct Full {
  static void rows(const Job& job, int first, int last) {
    static constexpr InverseWeights kForward = laneWeights(kFloored1, false), kReversed = laneWeights(kFloored1, true);
    if (job.reversed) {
      convertLanes<Src, Dst, true>(kReversed, job, first, last);
    } else {
      convertLanes<Src, Dst, false>(kForward, job, first, last);
    }
  }
};

KIP_INLINE const InverseWeights& weightsFor(const Job& job) {
  static constexpr InverseWeights kForward = groupWeights(kFloored1, false), kReversed = groupWeights(kFloored1, true);
  return job.reversed ? kReversed : kForward;
}

template <class Src, class Dst>
struct Groups {
  static void rows(const Job& job, int first, int last) { decodeGroups<Src, Dst>(weightsFor(job), job, first, last); }
};
template <class Dst>
struct Packed {
  static void rows(const Job& job, int first, int last) {
    decodePacked<YCbYCr, Dst>(weightsFor(job), job, first, last);
  }
};

/// For the reverse order, U and V change places, and what they are multiplied by.
template <class Dst>
struct Yuv420 {
  static void rows(const Job& job, int first, int last) {
    const auto [vToR, uToG, vToG, uToB] = yuv::kFactors2;
    const yuv::Factors factors = job.reversed ? yuv::Factors{uToB, vToG, uToG, vToR} : yuv::kFactors2;
    Job ordered = job;
    if (job.reversed) {
      std::swap(ordered.src.plane[1], ordered.src.plane[2]);
      std::swap(ordered.src.step[1], ordered.src.step[2]);
    }
    using Op = yuv::PerPair<yuv::InverseDoubled>;
    Decode<Op, Planar420, Dst>::rows(ordered, Op(yuv::InverseDoubled(factors)), first, last);
  }
};

/// Planar 4:2:2 has chroma for the last pixel of an odd width.
template <class Dst>
struct Planes422 {
  static void rows(const Job& job, int first, int last) {
    const Decode<PerGroup<Planar422>, Planar422, Dst> groups(job, PerGroup<Planar422>(weightsFor(job)));
    for (int y = first; y < last; ++y) groups.pixels(y, 0, job.width);
  }
};

// ---------------------------------------------------------------------------------------------------------------------
// Dithered: an arithmetic with every product floored

/// Factors x 2^13, sums x 2^4.
struct Floored13 {
  yuv::Factor luma{9535}, crToR{13074}, cbToG{3211}, crToG{6660}, cbToB{16523};
  I16 black = keepInRegister<int16_t>(16);
  yuv::ChromaZero zero;

  KIP_INLINE Floored13() {}

  KIP_INLINE Pixels<I16> terms(I16 cb, I16 cr) const {
    const I16 b = zero.centre<7>(cb), r = zero.centre<7>(cr);
    return {crToR(r), hn::Neg(hn::Add(cbToG(b), crToG(r))), cbToB(b)};
  }
  KIP_INLINE Pixels<I16> pixel(I16 y, const Pixels<I16>& t) const {
    const I16 scaled = luma(hn::ShiftLeft<7>(hn::Sub(y, black)));
    const auto sum = [&](I16 term) KIP_INLINE_LAMBDA { return hn::ShiftRight<4>(hn::Add(scaled, term)); };
    return {sum(t.a), sum(t.b), sum(t.c)};
  }
};

/// Layouts as sources of RGB pixels: with full resolution, and with chroma for several pixels.
template <class Arithmetic, class Layout>
struct FromFull : Layout {
  yuv::PerPixel<Arithmetic> op;

  KIP_INLINE FromFull() {}
  template <class From>
  KIP_INLINE Pixels<U8> pixels(const From& from) const {
    return applyTo<uint8_t>(op, this->load(from));
  }
};
template <class Arithmetic, class Layout>
struct FromPairs : Layout {
  yuv::PerPair<Arithmetic> op;

  KIP_INLINE FromPairs() {}
  template <class From>
  KIP_INLINE Pixels<U8> pixels(const From& from) const {
    const Subsampled s = this->load(from);
    return op.row(s, 0, op.terms(s));
  }
};

/// Planar 4:2:0 row by row.
struct RowsOf420 : Planar422 {
  template <class Byte>
  static Rows<Byte, kPointers> rows(const Image<Byte>& image, int y) {
    return {{image.row(0, y), image.row(1, y / 2), image.row(2, y / 2)}};
  }
};

/// Rows in groups of kGroup, and columns too.
template <class Src, const Fields& kFields, int kGroup = 1>
struct Dither {
  using Dst = ToWords<kFields, Dithered<kFields>>;

  static void rows(const Job& job, int first, int last) {
    const Src src;
    for (int y = first * kGroup; y < last * kGroup; ++y) {
      const Dst dst(Dithered<kFields>(0, y, job.reversed));
      walk(src, dst, Src::rows(job.src, y), Dst::rows(job.dst, y), job.width / kGroup * kGroup);
    }
  }

  template <class From>
  KIP_INLINE static void walk(const Src& src, const Dst& dst, const From& from, const Rows<Kip8u, 1>& to,
                              size_t width) {
    forBatches<Src, Dst>(from, to, 0, width,
                         [&](const auto& in, const auto& out) KIP_INLINE_LAMBDA { dst.store(src.pixels(in), out); });
  }
};

/// Packed 4:2:2, and the last pixel of an odd width.
template <class Src, const Fields& kFields>
struct DitherPacked {
  using Walk = Dither<Src, kFields>;
  using Dst = typename Walk::Dst;

  static void rows(const Job& job, int first, int last) {
    const Src src;
    const int pairs = wholeGroups<Src>(job.width);
    for (int y = first; y < last; ++y) {
      const auto to = Dst::rows(job.dst, y);
      Walk::walk(src, Dst(Dithered<kFields>(0, y, job.reversed)), Src::rows(job.src, y), to, pairs);
      if (pairs == job.width) continue;
      Kip8u pair[4];
      lastPair<Src>(job, y, pair);
      PaddedBatch<Dst> out;
      Walk::walk(src, Dst(Dithered<kFields>(pairs, y, job.reversed)), Rows<const Kip8u, 1>{{pair}}, out.rows, 2);
      out.copyTo(advance<Dst>(to, pairs), 1);
    }
  }
};

// ---------------------------------------------------------------------------------------------------------------------
// As the table of functions has them

using Words565 = ToWords<k565>;
using Words555 = ToWords<k555>;
using Words444 = ToWords<k444>;

template <class Src, const Fields& kFields>
using DitherFull = Dither<FromFull<Floored13, Src>, kFields>;
template <const Fields& kFields>
using DitherC2 = DitherPacked<FromPairs<Floored13, YCbYCr>, kFields>;
template <const Fields& kFields>
using Dither422 = Dither<FromPairs<Floored13, Planar422>, kFields>;
template <const Fields& kFields>
using Dither420 = Dither<FromPairs<Floored13, RowsOf420>, kFields>;
template <const Fields& kFields>
using DitherYuv420 = Dither<FromPairs<yuv::Inverse2, RowsOf420>, kFields, 2>;

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include "lumachroma/rules.h"
#endif

#define KIP_FUNCTIONS "lumachroma/packed16-functions.inc"
#include "engine/functions-inl.h"
