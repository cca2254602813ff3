// Reduction of samples one by one: without dither, with ordered dither, and with ordered dither and noise.
//
// A sample v lies in interval k, between the levels k q and k q + q. It becomes the upper one where it exceeds the
// lower one by more than a threshold. The arithmetics below say what v, k and q are and how a level is written.

#if defined(KIP_REDUCEBITS_LEVELS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_REDUCEBITS_LEVELS_INL_H_
#undef KIP_REDUCEBITS_LEVELS_INL_H_
#else
#define KIP_REDUCEBITS_LEVELS_INL_H_
#endif

#include <algorithm>
#include <type_traits>

#include "engine/pixels-inl.h"
#include "reducebits/reduction.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

/// The largest value of a type of samples, signed ones taken as 32768 higher.
template <class T>
constexpr float kFullScale = sizeof(T) == 1 ? 255 : 65535;

/// What brings the samples of a type to 0 .. 1.
template <class T>
constexpr float kNormal = std::is_same_v<T, float> ? 1.f
                          : sizeof(T) == 1         ? 0.003921568859368563f
                                                   : 1.5259021893143654e-05f;

/// A vector of floats from as many samples. Of floats, those beyond four times the nominal range 0 .. 1 come out as its
/// ends, and NaN as the lower one: they saturate anyway, and no later step overflows.
KIP_INLINE F32 loadFloats(const uint8_t* from) {
  return hn::ConvertTo(Tag<float>(), hn::PromoteTo(Tag<int32_t>(), hn::LoadU(SamplesLike<uint8_t, float>(), from)));
}
KIP_INLINE F32 loadFloats(const uint16_t* from) {
  return hn::ConvertTo(Tag<float>(), hn::PromoteTo(Tag<int32_t>(), hn::LoadU(SamplesLike<uint16_t, float>(), from)));
}
KIP_INLINE F32 loadFloats(const int16_t* from) {
  const I32 v = hn::PromoteTo(Tag<int32_t>(), hn::LoadU(SamplesLike<int16_t, float>(), from));
  return hn::ConvertTo(Tag<float>(), hn::Add(v, set<int32_t>(32768)));
}
KIP_INLINE F32 loadFloats(const float* from) {
  return atMost(numberAtLeast(hn::LoadU(Tag<float>(), from), set(-4.f)), set(4.f));
}

/// Levels, saturated to full vectors of samples, in order.
KIP_INLINE U8 samplesFrom(const I32 (&v)[4], uint8_t) { return packInOrder(v[0], v[1], v[2], v[3]); }
KIP_INLINE U16 samplesFrom(const I32 (&v)[2], uint16_t) { return packInOrder(v[0], v[1]); }
KIP_INLINE I16 samplesFrom(const I32 (&v)[2], int16_t) {
  return as<int16_t>(hn::Xor(packInOrder(v[0], v[1]), set<uint16_t>(0x8000)));
}

/// v x factor + 0.000009 in double precision, rounded down; 0 where it is negative. Whole factors below 2^16 only.
KIP_INLINE F32 preciseProduct(F32 v, float factor) {
  constexpr double kTolerance = 9e-6;
  if constexpr (kHasFusedMultiplyAdd) {
    // One whole number is within half of the product, or a little more. How far the product is beyond it, rounded once,
    // is exact where that is near the tolerance: v is at least 2^-16 there, the distance a multiple of 2^-40 and below
    // 2^-16.
    const F32 whole = hn::Round(hn::Mul(v, set(factor)));
    const F32 beyond = hn::MulSub(v, set(factor), whole);
    const auto above = hn::Lt(beyond, set(static_cast<float>(-kTolerance)));
    return hn::Max(addWhere(above, whole, set(-1.f)), set(0.f));
  } else {
    const Tag<double> d;
    const hn::Half<Tag<float>> halfFloats;
    const auto product = [&](hn::Vec<decltype(halfFloats)> half) KIP_INLINE_LAMBDA {
      const auto sum = hn::Add(hn::Mul(hn::PromoteTo(d, half), hn::Set(d, factor)), hn::Set(d, kTolerance));
      return hn::DemoteTo(hn::Half<Tag<int32_t>>(), sum);
    };
    const I32 whole =
        hn::Combine(Tag<int32_t>(), product(hn::UpperHalf(halfFloats, v)), product(hn::LowerHalf(halfFloats, v)));
    return hn::ConvertTo(Tag<float>(), hn::Max(whole, set(0)));
  }
}

/// Samples on the scale 0 .. 1, single precision: no dither.
template <class S, class D>
struct Plain {
  explicit Plain(float intervals) : intervals(set(intervals)), q(set(1 / intervals)) {}
  KIP_INLINE F32 normal(F32 v) const { return hn::Mul(v, set(kNormal<S>)); }
  KIP_INLINE F32 interval(F32 v) const { return hn::Trunc(hn::Mul(v, intervals)); }
  KIP_INLINE I32 written(F32 level) const { return truncated(hn::Mul(level, set(kFullScale<D>))); }
  F32 intervals, q;
};

/// Samples as they are, single precision: ordered dither of integers.
template <class S, class D>
struct Scaled {
  explicit Scaled(float intervals)
      : perInterval(set(intervals / kFullScale<S>)), q(set(intervalOf(intervals, kFullScale<S>))) {}
  KIP_INLINE F32 normal(F32 v) const { return v; }
  KIP_INLINE F32 interval(F32 v) const { return hn::Trunc(hn::Mul(v, perInterval)); }
  KIP_INLINE I32 written(F32 level) const { return hn::ShiftRight<8 * (sizeof(S) - sizeof(D))>(truncated(level)); }
  F32 perInterval, q;
};

/// Samples on the scale 0 .. 1, products in double precision: ordered dither of floats, and all noise.
template <class S, class D>
struct Precise {
  explicit Precise(float intervals) : intervals(intervals), q(set(1 / intervals)) {}
  KIP_INLINE F32 normal(F32 v) const { return hn::Mul(v, set(kNormal<S>)); }
  KIP_INLINE F32 interval(F32 v) const {
    // Of bytes, single precision gives the same.
    if constexpr (sizeof(S) == 1) return hn::Trunc(hn::Mul(v, set(intervals)));
    return preciseProduct(v, intervals);
  }
  KIP_INLINE I32 written(F32 level) const { return truncated(preciseProduct(level, kFullScale<D>)); }
  float intervals;
  F32 q;
};

/// The same where single precision writes every level as the same byte.
template <class S>
struct PreciseBytes : Precise<S, Kip8u> {
  using Precise<S, Kip8u>::Precise;

  /// True of five numbers of intervals in six.
  static bool suffices(float intervals) {
    const float q = 1 / intervals;
    for (float k = 0; k <= intervals; ++k) {
      for (const float level : {k * q, k * q + q}) {
        if (static_cast<int>(level * 255) != static_cast<int>(double{level} * 255 + 9e-6)) return false;
      }
    }
    return true;
  }
  KIP_INLINE I32 written(F32 level) const { return truncated(hn::Mul(level, set(255.f))); }
};

template <class Op>
KIP_INLINE F32 lowerLevel(const Op& op, F32 v) {
  return hn::Mul(op.interval(v), op.q);
}
template <class Op>
KIP_INLINE I32 reduced(const Op& op, F32 v, F32 threshold) {
  const F32 lower = lowerLevel(op, v);
  return op.written(addWhere(hn::Gt(hn::Sub(v, lower), threshold), lower, op.q));
}

/// Rows as samples without regard to pixels: a layout of one channel, in batches of a full vector of `Widest` samples.
template <class T, class Widest, bool kKeepsOld>
struct Flat {
  static constexpr int kBatch = kLanes<Widest>;
  static constexpr int kPointers = 1;
  static constexpr bool kKeeps = kKeepsOld;
  static constexpr size_t bytes(int, size_t samples) { return samples * sizeof(T); }
};

/// A vector of samples, all of them or the first three of each four.
template <bool kKeepsFourth, class V, class D>
KIP_INLINE void storeReduced(V v, D* to) {
  const Tag<D> d;
  if constexpr (kKeepsFourth) {
    const Tag<std::conditional_t<sizeof(D) == 1, uint32_t, uint64_t>> pixels;
    constexpr auto kFourth = ~hn::TFromD<decltype(pixels)>{} << (8 * 3 * sizeof(D));
    v = hn::IfThenElse(hn::MaskFromVec(hn::BitCast(d, hn::Set(pixels, kFourth))), hn::LoadU(d, to), v);
  }
  hn::StoreU(v, d, to);
}

/// A full vector of values of noise of each of four rows from a multiple of four on: NoiseTables::row() of the first
/// and columnsFrom() the first pixel.
KIP_INLINE void loadNoise(const float* values, const Kip16s* columns, F32 (&rows)[4]) {
  for (int pixel = 0; pixel < 4; ++pixel) {  // of the four of a block of `values`; at first, rows are below one another
    rows[pixel] = as<float>(loadBlocksAt([&](int block) KIP_INLINE_LAMBDA {
      return reinterpret_cast<const uint8_t*>(values + columns[4 * block + pixel]);
    }));
  }
  transposeBlocks<float>(rows);
}

/// A row of the dither's matrix, in intervals, again and again.
KIP_INLINE F32 bayerRow(int y) {
  float row[4];
  for (int x = 0; x < 4; ++x) row[x] = bayerAt(x, y);
  return hn::LoadDup128(Tag<float>(), row);
}

/// The thresholds of the samples of some pixels of four rows: as many rows as the dither's period.
class Thresholds {
 public:
  static constexpr int kRows = 4;
  static constexpr int kSamples = 512;  // of a row, at most

  HWY_NOINLINE Thresholds(const Reduction& reduction, float q) : reduction_(reduction), q_(set(q)) {
    for (int y = 0; y < kRows; ++y) bayer_[y] = bayerRow(y);
    if (!repeat()) {
      pixels_ = reduction.channels.perPixel == 1 ? kSamples : kSamples / 4;
      return;
    }
    pixels_ = kLanes<uint8_t>;
    for (int y = 0; y < kRows; ++y) {
      const F32 row = reduction.method == kipDitherNone ? set(0.5f / reduction.intervals) : hn::Mul(bayer_[y], q_);
      for (int x = 0; x < pixels_; x += kLanes<float>) hn::Store(row, Tag<float>(), &ofPixels_[y][x]);
    }
    spread(pixels_);
  }

  /// A multiple of a full vector of samples, and of the dither's period.
  int pixels() const { return pixels_; }

  /// Without noise, the thresholds are those of all pixels from a multiple of pixels() on.
  bool repeat() const { return reduction_.method == kipDitherNone || reduction_.noise == nullptr; }

  /// Adds the noise of `count` pixels from x on of the rows from y on, multiples of pixels() and of kRows.
  HWY_NOINLINE void addNoise(size_t x, int count, int y) {
    const float* values = reduction_.noise->row(y);
    for (int i = 0; i < count; i += kLanes<float>) {
      F32 noise[kRows];
      loadNoise(values, NoiseTables::columnsFrom(x + i), noise);
      for (int row = 0; row < kRows; ++row) {
        hn::Store(hn::Mul(hn::Add(bayer_[row], noise[row]), q_), Tag<float>(), &ofPixels_[row][i]);
      }
    }
    spread(count);
  }

  const float* row(int y) const { return ofSamples_[y % kRows]; }
  int samples() const { return pixels_ * reduction_.channels.perPixel; }

 private:
  /// Makes the thresholds of pixels those of each of their samples.
  void spread(int count) {
    switch (reduction_.channels.perPixel) {
      case 1:
        return spreadOver<1>(count);
      case 3:
        return spreadOver<3>(count);
      default:
        return spreadOver<4>(count);
    }
  }

  template <int kPerPixel>
  void spreadOver(int count) {
    const Tag<float> d;
    decltype(hn::SetTableIndices(d, static_cast<const int32_t*>(nullptr))) pixelOf[kPerPixel];
    for (int v = 0; v < kPerPixel; ++v) {
      int32_t of[kLanes<float>];
      for (int i = 0; i < kLanes<float>; ++i) of[i] = (v * kLanes<float> + i) / kPerPixel;
      pixelOf[v] = hn::SetTableIndices(d, of);
    }
    for (int y = 0; y < kRows; ++y) {
      float* to = ofSamples_[y];
      for (int x = 0; x < count; x += kLanes<float>) {
        const F32 pixels = hn::Load(d, &ofPixels_[y][x]);
        for (int v = 0; v < kPerPixel; ++v, to += kLanes<float>) {
          hn::Store(hn::TableLookupLanes(pixels, pixelOf[v]), d, to);
        }
      }
    }
  }

  const Reduction& reduction_;
  int pixels_;
  F32 q_, bayer_[kRows];
  alignas(64) float ofPixels_[kRows][kSamples];
  alignas(64) float ofSamples_[kRows][kSamples];
};

/// Reduces whole rows sample by sample.
template <class S, class D, class Op>
struct Levels {
  static void rows(const Job& job, int first, int last) {
    const auto& reduction = *static_cast<const Reduction*>(job.parameters);
    if (reduction.channels.reduced < reduction.channels.perPixel) {
      rows<true>(job, reduction, first, last);
    } else {
      rows<false>(job, reduction, first, last);
    }
  }

 private:
  static constexpr int kVectors = kLanes<D> / kLanes<float>;

  template <bool kKeepsFourth>
  static void rows(const Job& job, const Reduction& reduction, int first, int last) {
    const Op op(reduction.intervals);
    Thresholds thresholds(reduction, hn::GetLane(op.q));
    const size_t width = job.width, stride = thresholds.repeat() ? width : thresholds.pixels();
    for (int y = first, next; y < last; y = next) {
      const int period = y - y % Thresholds::kRows;
      next = std::min(period + Thresholds::kRows, last);
      for (size_t x = 0; x < width; x += stride) {
        const size_t end = std::min(x + stride, width);
        if (!thresholds.repeat()) thresholds.addNoise(x, static_cast<int>(end - x), period);
        for (int row = y; row < next; ++row) {
          pixels<kKeepsFourth>(job, reduction.channels.perPixel, op, thresholds, row, x, end);
        }
      }
    }
  }

  /// Pixels first .. last - 1 of row y.
  template <bool kKeepsFourth>
  static void pixels(const Job& job, int perPixel, const Op& op, const Thresholds& thresholds, int y, size_t first,
                     size_t last) {
    using From = Flat<S, D, false>;
    using To = Flat<D, D, kKeepsFourth>;
    const Rows<const Kip8u, 1> from = {{job.src.row(0, y)}};
    const Rows<Kip8u, 1> to = {{job.dst.row(0, y)}};
    const float *const begin = thresholds.row(y), *const end = begin + thresholds.samples(), *threshold = begin;
    forBatches<From, To>(from, to, first * perPixel, last * perPixel,
                         [&](const auto& in, const auto& out) KIP_INLINE_LAMBDA {
                           batch<kKeepsFourth>(op, samples<S>(in.at[0]), threshold, samples<D>(out.at[0]));
                           threshold += kLanes<D>;
                           if (threshold == end) threshold = begin;
                         });
  }

  template <bool kKeepsFourth>
  KIP_INLINE static void batch(const Op& op, const S* from, const float* threshold, D* to) {
    I32 levels[kVectors];
    for (int i = 0; i < kVectors; ++i) {
      const int at = i * kLanes<float>;
      levels[i] = reduced(op, op.normal(loadFloats(from + at)), hn::Load(Tag<float>(), threshold + at));
    }
    storeReduced<kKeepsFourth>(samplesFrom(levels, D()), to);
  }
};

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
