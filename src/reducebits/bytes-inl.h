// Bytes to bytes, where there are instructions for tables of 256 bytes: what can become of each byte is found out once
// per call, by the arithmetics of samples, and looked up.

#if defined(KIP_REDUCEBITS_BYTES_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_REDUCEBITS_BYTES_INL_H_
#undef KIP_REDUCEBITS_BYTES_INL_H_
#else
#define KIP_REDUCEBITS_BYTES_INL_H_
#endif

#include <algorithm>
#include <bit>
#include <iterator>

#include "engine/bytetable-inl.h"
#include "reducebits/levels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

#if KIP_HAS_64_ENTRY_TABLES

/// A table of the results of an arithmetic on floats.
template <class Entry>
AnyByteTable tableOf(const Entry& entry) {
  alignas(64) uint8_t table[256];
  F32 bytes = hn::Iota(Tag<float>(), 0.f);
  for (int i = 0; i < 256; i += kLanes<uint8_t>) {
    I32 of[4];
    for (I32& v : of) {
      v = entry(bytes);
      bytes = bytes + static_cast<float>(kLanes<float>);
    }
    hn::Store(samplesFrom(of, uint8_t()), Tag<uint8_t>(), table + i);
  }
  return AnyByteTable(table);
}

/// No dither.
class NearestByte {
 public:
  NearestByte(const Plain<uint8_t, uint8_t>& op, float intervals)
      : nearest_(tableOf([&](F32 v) { return reduced(op, op.normal(v), set(0.5f / intervals)); })) {}
  KIP_INLINE U8 operator()(U8 v, const uint8_t*) const { return nearest_(v); }

 private:
  AnyByteTable nearest_;
};

/// Ordered dither by thresholds that are entries of its matrix.
class DitheredByte {
 public:
  explicit DitheredByte(const Scaled<uint8_t, uint8_t>& op)
      : lower_(tableOf([&](F32 v) { return op.written(lowerLevel(op, v)); })),
        upper_(tableOf([&](F32 v) { return op.written(hn::Add(lowerLevel(op, v), op.q)); })),
        exceeded_(tableOf([&](F32 v) { return exceeded(op, hn::Sub(v, lowerLevel(op, v))); })) {}
  KIP_INLINE U8 operator()(U8 v, const uint8_t* thresholds) const {
    const auto up = hn::Gt(exceeded_(v), hn::Load(Tag<uint8_t>(), thresholds));
    return hn::IfThenElse(up, upper_(v), lower_(v));
  }

 private:
  /// How many of the matrix's entries, 0 .. 15, a distance to the lower level exceeds.
  static KIP_INLINE I32 exceeded(const Scaled<uint8_t, uint8_t>& op, F32 distance) {
    I32 count = set(0);
#pragma GCC unroll 16
    for (int entry = 0; entry < 16; ++entry) {
      const F32 threshold = hn::Mul(set(static_cast<float>(entry) / 15), op.q);
      const auto exceeds = hn::RebindMask(Tag<int32_t>(), hn::Gt(distance, threshold));
      count = hn::IfThenElse(exceeds, hn::Add(count, set(1)), count);
    }
    return count;
  }

  AnyByteTable lower_, upper_, exceeded_;
};

/// The dither's matrix as the samples of four rows of pixels have it, again and again.
template <int kPerPixel>
struct BayerOfSamples {
  static constexpr int kSamples = kLanes<uint8_t> * (kPerPixel == 3 ? 3 : 1);

  constexpr BayerOfSamples() {
    for (int y = 0; y < 4; ++y) {
      for (int i = 0; i < kSamples; ++i) row[y][i] = static_cast<uint8_t>(kBayer[y][i / kPerPixel % 4]);
    }
  }
  alignas(64) uint8_t row[4][kSamples] = {};
};

/// Ordered dither with noise. Distances to the lower level and thresholds are compared as codes of 16 bits, of which
/// the greater ones are those of greater floats; where two are the same, the floats themselves decide.
class NoisyByte : public Precise<uint8_t, uint8_t> {
 public:
  explicit NoisyByte(const Reduction& reduction)
      : Precise(reduction.intervals),
        tables{tableOf([&](F32 v) { return written(lowerLevel(*this, normal(v))); }),
               tableOf([&](F32 v) { return written(hn::Add(lowerLevel(*this, normal(v)), q)); }),
               tableOf([&](F32 v) { return hn::ShiftRight<8>(code(distance(v))); }),
               tableOf([&](F32 v) { return hn::And(code(distance(v)), set(0xFF)); })},
        noise_(*reduction.noise) {}

  const struct Tables {
    AnyByteTable lower, upper;  // level
    AnyByteTable high, low;     // byte of the distance's code
  } tables;

  /// The codes of the thresholds of pixels, a quarter of them in each vector.
  KIP_INLINE I32 thresholdCodes(F32 bayer, F32 noise) const { return code(hn::Mul(hn::Add(bayer, noise), q)); }

  /// The samples from sample `first` on of row y, by a copy of the tables.
  KIP_INLINE U8 reduced(const Tables& copy, U8 v, U8 highThresholds, U8 lowThresholds, int perPixel, size_t first,
                        int y) const {
    const __m512i high = copy.high(v).raw, low = copy.low(v).raw;
    const __mmask64 sameHigh = _mm512_cmpeq_epi8_mask(high, highThresholds.raw);
    const __mmask64 same = _mm512_mask_cmpeq_epi8_mask(sameHigh, low, lowThresholds.raw);
    __mmask64 up = _mm512_cmpgt_epu8_mask(high, highThresholds.raw) |
                   _mm512_mask_cmpgt_epu8_mask(sameHigh, low, lowThresholds.raw);
    if (HWY_UNLIKELY(same != 0)) up |= exceeding(same, v, perPixel, first, y);
    return U8{_mm512_mask_blend_epi8(up, copy.lower(v).raw, copy.upper(v).raw)};
  }

 private:
  /// A distance of 0 becomes kZero, and of an interval kZero + kInterval. The thresholds that 16 bits do not hold
  /// saturate, which leaves them below or above all distances.
  static constexpr float kZero = 5000, kInterval = 55000;

  KIP_INLINE F32 distance(F32 byte) const {
    const F32 v = normal(byte);
    return hn::Sub(v, lowerLevel(*this, v));
  }
  KIP_INLINE I32 code(F32 v) const { return truncated(hn::MulAdd(v, set(kInterval * intervals), set(kZero))); }

  /// Which of some samples exceed their thresholds.
  HWY_NOINLINE uint64_t exceeding(uint64_t which, U8 v, int perPixel, size_t first, int y) const {
    alignas(64) uint8_t bytes[kLanes<uint8_t>];
    hn::Store(v, Tag<uint8_t>(), bytes);
    uint64_t up = 0;
    for (; which != 0; which &= which - 1) {
      const int i = std::countr_zero(which);
      const size_t x = (first + i) / perPixel;
      const float noise = noise_.row(y)[*NoiseTables::columnsFrom(x)];
      const F32 threshold = hn::Mul(hn::Add(set(bayerAt(x, y)), set(noise)), q);
      const F32 exact = distance(set(static_cast<float>(bytes[i])));
      up |= uint64_t{hn::GetLane(exact) > hn::GetLane(threshold)} << i;
    }
    return up;
  }

  const NoiseTables& noise_;
};

/// Which of a vector of pixels, packed from four of floats, belong to the samples of as many pixels.
template <int kPerPixel>
struct PackedPixels {
  constexpr PackedPixels() {
    for (int i = 0; i < kPerPixel * kLanes<uint8_t>; ++i) {
      const int pixel = i / kPerPixel, lane = pixel % kLanes<float>;
      of[i / kLanes<uint8_t>][i % kLanes<uint8_t>] =
          static_cast<uint8_t>(lane / 4 * 16 + pixel / kLanes<float> * 4 + lane % 4);
    }
  }
  alignas(64) uint8_t of[kPerPixel][kLanes<uint8_t>] = {};
};

/// The codes of the thresholds of the samples of some pixels of four rows.
template <int kPerPixel>
class NoisyThresholds {
 public:
  static constexpr int kRows = 4;
  static constexpr int kPixels = 256;

  NoisyThresholds() : bayer_{bayerRow(0), bayerRow(1), bayerRow(2), bayerRow(3)} {}

  /// Of `count` pixels from x on, of the rows from y on, multiples of kPixels and kRows.
  void make(const NoisyByte& op, const NoiseTables& noise, size_t x, int count, int y) {
    for (int i = 0; i < count; i += kLanes<uint8_t>) {
      F32 noises[4][kRows];
      for (int k = 0; k < 4; ++k) {
        loadNoise(noise.row(y), NoiseTables::columnsFrom(x + i + k * kLanes<float>), noises[k]);
      }
      for (int row = 0; row < kRows; ++row) {
        I32 codes[4];
        for (int k = 0; k < 4; ++k) codes[k] = op.thresholdCodes(bayer_[row], noises[k][row]);
        const U16 words[2] = {packUnsignedWords(codes[0], codes[1]), packUnsignedWords(codes[2], codes[3])};
        spread(packBytes(oddBytes(as<uint8_t>(words[0])), oddBytes(as<uint8_t>(words[1]))), &high[row][i * kPerPixel]);
        spread(packBytes(evenBytes(as<uint8_t>(words[0])), evenBytes(as<uint8_t>(words[1]))), &low[row][i * kPerPixel]);
      }
    }
  }

  alignas(64) uint8_t high[kRows][kPixels * kPerPixel], low[kRows][kPixels * kPerPixel];

 private:
  static constexpr PackedPixels<kPerPixel> kPacked{};

  KIP_INLINE static void spread(U8 packed, uint8_t* to) {
    for (int v = 0; v < kPerPixel; ++v) {
      hn::Store(permute(packed, kPacked.of[v]), Tag<uint8_t>(), to + v * kLanes<uint8_t>);
    }
  }

  F32 bayer_[kRows];
};

/// Reduces whole rows byte by byte.
struct ReduceBytes {
  static void rows(const Job& job, int first, int last) {
    const auto& reduction = *static_cast<const Reduction*>(job.parameters);
    const Plain<uint8_t, uint8_t> plain(reduction.intervals);
    if (reduction.method == kipDitherNone) return rows(NearestByte(plain, reduction.intervals), job, first, last);
    if (reduction.noise != nullptr) return rows(NoisyByte(reduction), job, first, last);
    rows(DitheredByte(Scaled<uint8_t, uint8_t>(reduction.intervals)), job, first, last);
  }

 private:
  template <class Op>
  static void rows(const Op& op, const Job& job, int first, int last) {
    const Channels& channels = static_cast<const Reduction*>(job.parameters)->channels;
    switch (channels.perPixel) {
      case 1:
        return rows<1, false>(op, job, first, last);
      case 3:
        return rows<3, false>(op, job, first, last);
      default:
        return channels.reduced == 3 ? rows<4, true>(op, job, first, last) : rows<4, false>(op, job, first, last);
    }
  }

  /// Samples first .. last - 1 of row y through reduced(bytes, sample).
  template <bool kKeepsFourth, class Reduced>
  KIP_INLINE static void samples(const Job& job, int y, size_t first, size_t last, const Reduced& reduced) {
    using From = Flat<uint8_t, uint8_t, false>;
    using To = Flat<uint8_t, uint8_t, kKeepsFourth>;
    size_t at = first;
    forBatches<From, To>({{job.src.row(0, y)}}, {{job.dst.row(0, y)}}, first, last,
                         [&](const auto& from, const auto& to) KIP_INLINE_LAMBDA {
                           storeReduced<kKeepsFourth>(reduced(hn::LoadU(Tag<uint8_t>(), from.at[0]), at), to.at[0]);
                           at += kLanes<uint8_t>;
                         });
  }

  /// `op` by value: through a reference every store might alias its tables.
  template <int kPerPixel, bool kKeepsFourth, class Op>
  static void rows(Op op, const Job& job, int first, int last) {
    static constexpr BayerOfSamples<kPerPixel> kThresholds;
    for (int y = first; y < last; ++y) {
      const auto& thresholds = kThresholds.row[y % 4];
      const uint8_t* threshold = thresholds;
      samples<kKeepsFourth>(job, y, 0, size_t{kPerPixel} * job.width, [&](U8 v, size_t) KIP_INLINE_LAMBDA {
        const uint8_t* now = threshold;
        threshold += kLanes<uint8_t>;
        if (threshold == std::end(thresholds)) threshold = thresholds;
        return op(v, now);
      });
    }
  }

  template <int kPerPixel, bool kKeepsFourth>
  static void rows(const NoisyByte& op, const Job& job, int first, int last) {
    using Thresholds = NoisyThresholds<kPerPixel>;
    const NoiseTables& noise = *static_cast<const Reduction*>(job.parameters)->noise;
    Thresholds thresholds;
    const NoisyByte::Tables tables = op.tables;
    const size_t width = job.width;
    for (int y = first, next; y < last; y = next) {
      const int period = y - y % Thresholds::kRows;
      next = std::min(period + Thresholds::kRows, last);
      for (size_t x = 0; x < width; x += Thresholds::kPixels) {
        const size_t end = std::min(x + Thresholds::kPixels, width), begin = x * kPerPixel;
        thresholds.make(op, noise, x, static_cast<int>(end - x), period);
        for (int row = y; row < next; ++row) {
          const auto &high = thresholds.high[row - period], &low = thresholds.low[row - period];
          samples<kKeepsFourth>(job, row, begin, end * kPerPixel, [&](U8 v, size_t sample) KIP_INLINE_LAMBDA {
            const Tag<uint8_t> d;
            return op.reduced(tables, v, hn::Load(d, high + (sample - begin)), hn::Load(d, low + (sample - begin)),
                              kPerPixel, sample, row);
          });
        }
      }
    }
  }
};

#endif

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
