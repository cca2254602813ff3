// Interleaved byte pixels as 32-bit lanes, from load to store: for arithmetics in 32 bits, which then need no channel
// taken apart from the others. Layouts and results for Convert.

#if defined(KIP_ENGINE_LANES_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_ENGINE_LANES_INL_H_
#undef KIP_ENGINE_LANES_INL_H_
#else
#define KIP_ENGINE_LANES_INL_H_
#endif

#include "engine/convert-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

/// Which channel comes again as the fourth byte of a lane.
enum Again { kSecondAgain = 1, kThirdAgain = 2 };

/// A batch of pixels, a quarter of it in each vector: four bytes to a lane, the third channel, the second, the first
/// and the second or the third again.
struct PixelLanes {
  static constexpr int kVectors = 4;
  U8 of[kVectors];
};

/// A batch of results: in each 128 bits the first and the third channels of four pixels alternately, and then the
/// second channels, each of which a zero follows.
struct ResultLanes {
  U8 of[PixelLanes::kVectors];
};

/// Results x 2^16 in 32-bit lanes, floored and saturated to bytes.
KIP_INLINE U8 packLanes(const Pixels<I32>& px) {
  return packBytes(interleaveHigh16(px.a, px.c), as<int16_t>(hn::ShiftRight<16>(as<uint32_t>(px.b))));
}

/// An arithmetic from one vector of PixelLanes to one of ResultLanes.
template <class S, class D, class Op>
KIP_INLINE ResultLanes convertPixels(const Op& op, const PixelLanes& px) {
  ResultLanes result;
  for (int k = 0; k < PixelLanes::kVectors; ++k) result.of[k] = op(px.of[k]);
  return result;
}

/// Which channel is byte i of a lane.
constexpr int channelAt(Again again, int i) { return i == 3 ? again : 2 - i; }
/// Where channel c of pixel p lies in ResultLanes.
constexpr uint8_t resultAt(int p, int c) { return p / 4 * 16 + 2 * (p % 4) + (c == 0 ? 0 : c == 2 ? 1 : 8); }

/// Shuffles between interleaved pixels, lanes and results.
template <Again kAgain>
struct LaneTables {
  static constexpr int kBytes = kUnit / 4 * 3;  // of as many pixels of three bytes as a unit has lanes
  static constexpr int kBack = kUnit - kBytes;  // the last unit is loaded so that it ends where the pixels end
  alignas(kUnit) uint8_t spread[2][kUnit];      // three bytes to a lane; from the beginning, or from kBack on
  alignas(kUnit) uint8_t gathered[4][kUnit];    // results to the bytes of unit k, where they fall in three units
  alignas(kUnit) uint8_t last[kUnit], upper[kUnit],
      first[kUnit];                     // 0xFF in the last, the upper two, the first quarter of a unit
  alignas(16) uint8_t ordered[16];      // four bytes to a lane
  alignas(16) uint8_t interleaved[16];  // results to four bytes

  constexpr LaneTables() : spread(), gathered(), last(), upper(), first(), ordered(), interleaved() {
    for (int i = 0; i < kUnit; ++i) {
      for (int end = 0; end < 2; ++end) spread[end][i] = i / 4 * 3 + channelAt(kAgain, i % 4) + end * kBack;
      const int quarter = i / kBack;
      last[i] = quarter == 3 ? 0xFF : 0, upper[i] = quarter >= 2 ? 0xFF : 0, first[i] = quarter == 0 ? 0xFF : 0;
    }
    for (int k = 0; k < 4; ++k) {
      for (int i = 0; i < kBytes; ++i) gathered[k][(kBytes * k + i) % kUnit] = resultAt(i / 3, i % 3);
    }
    for (int i = 0; i < 16; ++i) {
      const int pixel = i / 4, channel = i % 4;
      ordered[i] = pixel * 4 + channelAt(kAgain, channel);
      interleaved[i] = channel == 3 ? kNoByte : resultAt(pixel, channel);
    }
  }
};
template <Again kAgain>
constexpr LaneTables<kAgain> kLaneTables{};

/// Four bytes to a lane as PixelLanes have them.
template <Again kAgain>
KIP_INLINE U8 orderedLanes(U8 v) {
  if constexpr (kHasByteShuffle) return shuffleBlocks(v, kLaneTables<kAgain>.ordered);
  return LaneShuffle<2, 1, 0, kAgain>::of(v);
}
/// Results as four bytes to a lane, the fourth of them zero.
KIP_INLINE U8 interleavedLanes(U8 v) {
  if constexpr (kHasByteShuffle) return shuffleBlocks(v, kLaneTables<kSecondAgain>.interleaved);
  return as<uint8_t>(hn::Or(lowerBytes(v), hn::ShiftLeft<8>(upperBytes(v))));
}

/// Layouts of bytes whose batches are lanes or results.
template <class Layout, Again kAgain = kSecondAgain>
struct Whole;

/// Four interleaved bytes; the fourth of a destination stays.
template <Again kAgain>
struct Whole<AC4<>, kAgain> : AC4<> {
  KIP_INLINE PixelLanes load(const Rows<const Kip8u, 1>& from) const {
    PixelLanes px;
    for (int k = 0; k < PixelLanes::kVectors; ++k) {
      px.of[k] = orderedLanes<kAgain>(hn::LoadU(Tag<uint8_t>(), from.at[0] + k * kBytes));
    }
    return px;
  }
  KIP_INLINE void store(const ResultLanes& px, const Rows<Kip8u, 1>& to) const {
    const Tag<uint8_t> d;
    const U8 fourth = as<uint8_t>(set<uint32_t>(0xFF000000u));
    for (int k = 0; k < PixelLanes::kVectors; ++k) {
      Kip8u* at = to.at[0] + k * kBytes;
      hn::StoreU(hn::Or(interleavedLanes(px.of[k]), hn::And(hn::LoadU(d, at), fourth)), d, at);
    }
  }

 private:
  static constexpr int kBytes = kLanes<uint8_t>;
};

/// Three interleaved bytes: four vectors with three quarters of each unit, or three with all.
template <Again kAgain>
struct Whole<C3<>, kAgain> : C3<> {
  KIP_INLINE PixelLanes load(const Rows<const Kip8u, 1>& from) const {
    using T = LaneTables<kAgain>;
    PixelLanes px;
    for (int k = 0; k < PixelLanes::kVectors; ++k) {
      const int end = k == 3;
      const U8 v = loadUnits(from.at[0] + T::kBytes * k - end * T::kBack, 3 * kUnit);
      if constexpr (kHasByteShuffle) {
        px.of[k] = shuffleUnits(v, kLaneTables<kAgain>.spread[end]);
      } else {
        px.of[k] = orderedLanes<kAgain>(end ? threesToLanes<T::kBack>(v) : threesToLanes<0>(v));
      }
    }
    return px;
  }
  KIP_INLINE void store(const ResultLanes& px, const Rows<Kip8u, 1>& to) const {
    U8 v[PixelLanes::kVectors];
    if constexpr (!kHasByteShuffle) {
      for (int k = 0; k < PixelLanes::kVectors; ++k) v[k] = interleavedLanes(px.of[k]);
      return storeWithoutFourths<uint8_t>(v, to.at[0]);
    }
    for (int k = 0; k < PixelLanes::kVectors; ++k) v[k] = shuffleUnits(px.of[k], kTables.gathered[k]);
    const auto join = [&](U8 a, U8 b, const uint8_t(&ofB)[kUnit]) KIP_INLINE_LAMBDA {
      const auto lanes = hn::MaskFromVec(as<uint32_t>(unitTable(ofB)));
      return as<uint8_t>(hn::IfThenElse(lanes, as<uint32_t>(b), as<uint32_t>(a)));
    };
    storeThreeUnits(join(v[0], v[1], kTables.last), join(v[1], v[2], kTables.upper), join(v[3], v[2], kTables.first),
                    to.at[0]);
  }

 private:
  static constexpr const auto& kTables = kLaneTables<kSecondAgain>;  // those of results are the same
};

/// Three planes: the pixels of each unit of each vector are those that it has of C3.
template <Again kAgain>
struct Whole<P3<>, kAgain> : P3<> {
  KIP_INLINE PixelLanes load(const Rows<const Kip8u, 3>& from) const {
    const Pixels<U8> px = P3<>::load(from);
    PixelLanes lanes;
    interleaveFour<uint8_t>(px.c, px.b, px.a, kAgain == kSecondAgain ? px.b : px.c, lanes.of);
    return lanes;
  }
};

/// Four interleaved bytes, all written, of pixels as C3 or P3 have them.
template <>
struct Whole<C4<>> : C4<> {
  KIP_INLINE explicit Whole(const Job& job)
      : C4<>(job), fourth_(as<uint8_t>(keepInRegister<uint32_t>(static_cast<uint32_t>(job.alpha & 0xFF) << 24))) {}
  KIP_INLINE void store(const ResultLanes& px, const Rows<Kip8u, 1>& to) const {
    U8 v[PixelLanes::kVectors];
    for (int k = 0; k < PixelLanes::kVectors; ++k) v[k] = hn::Or(interleavedLanes(px.of[k]), fourth_);
    storeFourUnits(v, to.at[0]);
  }

 private:
  U8 fourth_;
};

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
