// Integer samples to at most 16 levels of bytes, without dither or with ordered dither, in integers.
//
// A sample v of 0 .. F lies k = v L / F rounded down intervals up, L the number of intervals, and r = v L - k F beyond
// that level. Its level is k, or k + 1 where r exceeds a threshold t, which is F / 2 without dither and entry x F / 15
// with it. That is what the arithmetics in single precision come to as well, as they are precise enough to tell all r
// and t apart that are not the same. Where they are, for a few values of v, rounding decides: those are tried, and
// decide whether t itself exceeds t. If they disagree, or if the bytes of a level do, integers do not do.

#if defined(KIP_REDUCEBITS_FEWLEVELS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_REDUCEBITS_FEWLEVELS_INL_H_
#undef KIP_REDUCEBITS_FEWLEVELS_INL_H_
#else
#define KIP_REDUCEBITS_FEWLEVELS_INL_H_
#endif

#include <algorithm>

#include "reducebits/levels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

constexpr int kFewIntervals = 15;  // a block of bytes has room for the levels
constexpr int kBayerEntries = 16;

/// The bytes of the levels, and the thresholds by the entries of the dither's matrix, all the same without dither.
template <class S>
class FewLevels {
 public:
  static constexpr int kFull = sizeof(S) == 1 ? 255 : 65535;

  /// Of the arithmetic in single precision.
  template <class Op>
  FewLevels(const Op& op, const Reduction& reduction) : intervals(static_cast<int>(reduction.intervals)) {
    if (intervals > kFewIntervals) return;
    suffice_ = findBytes(op);
    const bool dithers = reduction.method == kipDitherBayer;
    for (int entry = 0; entry < kBayerEntries && suffice_; ++entry) {
      threshold[entry] = dithers ? kFull / 15 * entry : kFull / 2;
      if (dithers) suffice_ = settleTies(op, entry);
    }
  }

  bool suffice() const { return suffice_; }

  int intervals;
  int threshold[kBayerEntries];
  bool exceedsTop = false;  ///< the greatest byte where the threshold is 0: it stays as it is
  alignas(16) uint8_t bytes[16] = {};

 private:
  template <class Op>
  bool findBytes(const Op& op) {
    const F32 q = op.q;
    for (int k = 0; k <= intervals; ++k) {
      bytes[k] = saturated(op.written(hn::Mul(set(static_cast<float>(k)), q)));
      if (k == 0) continue;
      const F32 lower = hn::Mul(set(static_cast<float>(k - 1)), q);
      if (saturated(op.written(hn::Add(lower, q))) != bytes[k]) return false;
    }
    return true;
  }

  /// Samples for which r is the threshold are v = (k F + entry F / 15) / L.
  template <class Op>
  bool settleTies(const Op& op, int entry) {
    const F32 t = hn::Mul(set(static_cast<float>(entry) / 15), op.q);
    bool up = entry == kBayerEntries - 1, tried = false;  // the last threshold is F, which no r exceeds
    for (int k = 0, at = threshold[entry]; at <= kFull * intervals; ++k, at += kFull) {
      if (at % intervals != 0) continue;
      const float v = static_cast<float>(at / intervals);
      const uint8_t byte = saturated(reduced(op, op.normal(set(v)), t));
      if (k == intervals) {  // rounding may take the greatest sample beyond the highest level, where bytes saturate
        exceedsTop = byte != bytes[k];
        if (exceedsTop && (sizeof(S) != 1 || byte != kFull)) return false;
        continue;
      }
      const bool isUp = byte == bytes[k + 1];
      if (!isUp && byte != bytes[k]) return false;
      if (tried && isUp != up) return false;
      up = isUp, tried = true;
    }
    threshold[entry] -= up;
    return threshold[entry] >= 0 && (sizeof(S) == 1 || threshold[entry] < kFull);  // as the kernels have it
  }

  static uint8_t saturated(I32 byte) { return static_cast<uint8_t>(std::min(hn::GetLane(byte), 255)); }

  bool suffice_ = false;
};

/// A vector of levels' bytes from as many samples, by constants for each row of the dither's matrix.
template <class S>
class FewLevelsKernel;

/// k + (r > t) = (v L + 254 - t) / F, rounded down; that is ((v L + 255 - t) x 257) / 65536.
template <>
class FewLevelsKernel<Kip8u> {
 public:
  KIP_INLINE explicit FewLevelsKernel(const FewLevels<Kip8u>& levels)
      : even_(keepBytePairs(levels.intervals, 0)), odd_(keepBytePairs(0, levels.intervals)) {}

  /// Where among the constants of a vector that of its sample i is, and the constant.
  static int place(int i) { return i % 2 * kLanes<uint16_t> + i / 2; }
  static int constant(int threshold) { return 255 - threshold; }

  KIP_INLINE U8 operator()(const Kip8u* from, const uint16_t* constants) const {
    const U8 v = hn::LoadU(Tag<uint8_t>(), from);
    const auto level = [&](I8 factors, int half) KIP_INLINE_LAMBDA {
      const U16 added = hn::Load(Tag<uint16_t>(), constants + half * kLanes<uint16_t>);
      return hn::MulHigh(hn::Add(as<uint16_t>(dotBytes(v, factors)), added), times257_);
    };
    return as<uint8_t>(hn::Or(level(even_, 0), hn::ShiftLeft<8>(level(odd_, 1))));
  }

 private:
  I8 even_, odd_;
  U16 times257_ = keepInRegister<uint16_t>(257);
};

/// With v L = 65536 h + l: k is h, or h + 1 where h + l is F or more, and r is l + k.
template <class S>
class FewLevelsKernel {
 public:
  KIP_INLINE explicit FewLevelsKernel(const FewLevels<S>& levels)
      : intervals_(keepInRegister<uint16_t>(static_cast<uint16_t>(levels.intervals))) {}

  /// Vectors hold every second unit of the samples, so that their levels are packed in order.
  static int place(int i) {
    return i / kUnitSamples % 2 * kLanes<uint16_t> + i / (2 * kUnitSamples) * kUnitSamples + i % kUnitSamples;
  }
  static int constant(int threshold) { return threshold; }

  KIP_INLINE U8 operator()(const S* from, const uint16_t* constants) const {
    const auto level = [&](int half) KIP_INLINE_LAMBDA {
      U16 v = as<uint16_t>(loadUnits(reinterpret_cast<const uint8_t*>(from + half * kUnitSamples), 2 * kUnit));
      if constexpr (std::is_signed_v<S>) v = hn::Xor(v, set<uint16_t>(0x8000));
      const U16 high = hn::MulHigh(v, intervals_), low = hn::Mul(v, intervals_);
      // The average is (high + low + 1) / 2, rounded down, without overflow.
      const U16 k = hn::Add(high, hn::ShiftRight<15>(hn::AverageRound(high, low))), r = hn::Add(low, k);
      const U16 beyond = hn::SaturatedSub(r, hn::Load(Tag<uint16_t>(), constants + half * kLanes<uint16_t>));
      return as<int16_t>(hn::Add(k, hn::Min(beyond, one_)));
    };
    return unitsInOrder(packBytes(level(0), level(1)));
  }

 private:
  static constexpr int kUnitSamples = kUnit / 2;
  U16 intervals_, one_ = keepInRegister<uint16_t>(1);
};

/// Rows of samples to few levels.
template <class S>
struct ReduceToFew {
  static void rows(const FewLevels<S>& levels, const Job& job, int first, int last) {
    const Channels& channels = static_cast<const Reduction*>(job.parameters)->channels;
    Constants constants;
    constants.make(levels, channels.perPixel);
    if (channels.reduced < channels.perPixel) {
      rows<true>(levels, constants, job, first, last);
    } else {
      rows<false>(levels, constants, job, first, last);
    }
  }

 private:
  using Kernel = FewLevelsKernel<S>;
  static constexpr int kBatch = kLanes<uint8_t>;

  /// Of the samples of some pixels of four rows, again and again.
  struct Constants {
    static constexpr int kRows = 4, kVectors = 3;

    void make(const FewLevels<S>& levels, int perPixel) {
      vectors = perPixel == 3 ? 3 : 1;
      for (int y = 0; y < kRows; ++y) {
        uint16_t* to = row[y];
        uint8_t* untouched = greatest[y];
        for (int v = 0, sample = 0; v < vectors; ++v, to += kBatch) {
          for (int i = 0; i < kBatch; ++i, ++sample) {
            const int entry = kBayer[y][sample / perPixel % 4];
            to[Kernel::place(i)] = static_cast<uint16_t>(Kernel::constant(levels.threshold[entry]));
            *untouched++ = levels.exceedsTop && entry == 0 ? 255 : 0;
          }
        }
      }
    }

    int vectors;
    alignas(64) uint16_t row[kRows][kVectors * kBatch];
    alignas(64) uint8_t greatest[kRows][kVectors * kBatch];  // bytes that stay as they are
  };

  template <bool kKeepsFourth>
  static void rows(const FewLevels<S>& levels, const Constants& constants, const Job& job, int first, int last) {
    if (levels.exceedsTop) {
      rows<kKeepsFourth, sizeof(S) == 1>(levels, constants, job, first, last);
    } else {
      rows<kKeepsFourth, false>(levels, constants, job, first, last);
    }
  }

  template <bool kKeepsFourth, bool kExceedsTop>
  static void rows(const FewLevels<S>& levels, const Constants& constants, const Job& job, int first, int last) {
    using From = Flat<S, Kip8u, false>;
    using To = Flat<Kip8u, Kip8u, kKeepsFourth>;
    const Kernel kernel(levels);
    const U8 bytes = opaque(blockTable(levels.bytes));
    const size_t period = static_cast<size_t>(constants.vectors) * kBatch;
    const int perPixel = static_cast<const Reduction*>(job.parameters)->channels.perPixel;
    for (int y = first; y < last; ++y) {
      const uint16_t* const row = constants.row[y % Constants::kRows];
      const uint8_t* const greatest = constants.greatest[y % Constants::kRows];
      size_t at = 0;
      forBatches<From, To>({{job.src.row(0, y)}}, {{job.dst.row(0, y)}}, 0, static_cast<size_t>(job.width) * perPixel,
                           [&](const auto& from, const auto& to) KIP_INLINE_LAMBDA {
                             U8 v = lookUp(bytes, kernel(samples<S>(from.at[0]), row + at));
                             if constexpr (kExceedsTop) {
                               const U8 stays = hn::Load(Tag<uint8_t>(), greatest + at);
                               const auto is = hn::Eq(hn::LoadU(Tag<uint8_t>(), from.at[0]), stays);
                               v = hn::Or(v, hn::IfThenElseZero(is, stays));
                             }
                             storeReduced<kKeepsFourth>(v, to.at[0]);
                             at += kBatch;
                             if (at == period) at = 0;
                           });
    }
  }
};

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
