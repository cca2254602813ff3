// Interleaved byte pixels as 32-bit lanes, from load to store: for arithmetics in 32 bits, which then need no channel
// taken apart from the others. Layouts and results for Convert.

#if defined(KIP_FRAME_LANES_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_FRAME_LANES_INL_H_
#undef KIP_FRAME_LANES_INL_H_
#else
#define KIP_FRAME_LANES_INL_H_
#endif

#include "frame/convert-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

/// A block of pixels, a quarter of it in each vector: four bytes to a lane, the third channel, the second, the first
/// and the second again.
struct PixelLanes {
  static constexpr int kVectors = 4;
  U8 of[kVectors];
};

/// A block of results: in each 128 bits the first and the third channels of four pixels by turns, and then the second
/// channels, which zeros follow.
struct ResultLanes {
  U8 of[PixelLanes::kVectors];
};

/// Results x 2^16 in 32-bit lanes, floored and saturated to bytes.
KIP_INLINE U8 packLanes(const Pixels<I32>& px) {
  return packBytes(mergeUpper(px.a, px.c), as<int16_t>(hn::ShiftRight<16>(as<uint32_t>(px.b))));
}

/// An arithmetic from one vector of PixelLanes to one of ResultLanes.
template <class S, class D, class Op>
KIP_INLINE ResultLanes convertPixels(const Op& op, const PixelLanes& px) {
  ResultLanes result;
  for (int k = 0; k < PixelLanes::kVectors; ++k) result.of[k] = op(px.of[k]);
  return result;
}

constexpr uint8_t kNoByte = 0x80;
/// Which channel is byte i of a lane.
constexpr int channelAt(int i) { return i % 2 == 1 ? 1 : 2 - i; }
/// Where channel c of pixel p lies in ResultLanes.
constexpr uint8_t resultAt(int p, int c) { return 2 * p + (c == 0 ? 0 : c == 2 ? 1 : 8); }

/// Shuffles of 16 bytes between interleaved pixels, lanes and results.
struct LaneTables {
  static constexpr int kBack = 4;  // of twelve bytes, the last sixteen are loaded so that they end where those end
  uint8_t spread[2][16];           // three bytes to a lane; from the beginning, or from kBack on
  uint8_t ordered[16];             // four bytes to a lane
  uint8_t interleaved[16];         // results to four bytes
  uint8_t gathered[4][16];         // results to twelve bytes k, each where it falls in the sixteens of 48

  constexpr LaneTables() : spread(), ordered(), interleaved(), gathered() {
    for (int i = 0; i < 16; ++i) {
      const int pixel = i / 4, channel = i % 4;
      const int from = channelAt(channel);
      for (int last = 0; last < 2; ++last) spread[last][i] = pixel * 3 + from + last * kBack;
      ordered[i] = pixel * 4 + from;
      interleaved[i] = channel == 3 ? kNoByte : resultAt(pixel, channel);
    }
    for (int k = 0; k < 4; ++k) {
      for (uint8_t& place : gathered[k]) place = kNoByte;
      for (int i = 0; i < 12; ++i) gathered[k][(12 * k + i) % 16] = resultAt(i / 3, i % 3);
    }
  }
};
alignas(16) constexpr LaneTables kLaneTables{};

KIP_INLINE U8 arrange(U8 v, const uint8_t (&places)[16]) {
  return hn::TableLookupBytesOr0(v, hn::LoadDup128(Tag<uint8_t>(), places));
}

template <class Layout>
struct Whole;

/// Four interleaved bytes; the fourth of a destination stays.
template <>
struct Whole<AC4<>> : AC4<> {
  KIP_INLINE PixelLanes load(const Rows<const Kip8u, 1>& from) const {
    PixelLanes px;
    for (int k = 0; k < PixelLanes::kVectors; ++k) {
      px.of[k] = arrange(hn::LoadU(Tag<uint8_t>(), from.at[0] + k * kBytes), kLaneTables.ordered);
    }
    return px;
  }
  KIP_INLINE void store(const ResultLanes& px, const Rows<Kip8u, 1>& to) const {
    const Tag<uint8_t> d;
    const U8 fourth = as<uint8_t>(set<uint32_t>(0xFF000000u));
    for (int k = 0; k < PixelLanes::kVectors; ++k) {
      Kip8u* at = to.at[0] + k * kBytes;
      hn::StoreU(hn::Or(arrange(px.of[k], kLaneTables.interleaved), hn::And(hn::LoadU(d, at), fourth)), d, at);
    }
  }

 private:
  static constexpr int kBytes = kLanes<uint8_t>;
};

/// Three interleaved bytes: four vectors of twelve bytes in each 128 bits, or three of sixteen.
template <>
struct Whole<C3<>> : C3<> {
  KIP_INLINE PixelLanes load(const Rows<const Kip8u, 1>& from) const {
    PixelLanes px;
    for (int k = 0; k < PixelLanes::kVectors; ++k) {
      const int last = k == 3;
      px.of[k] = arrange(loadBlocks(from.at[0] + 12 * k - last * LaneTables::kBack, 48), kLaneTables.spread[last]);
    }
    return px;
  }
  KIP_INLINE void store(const ResultLanes& px, const Rows<Kip8u, 1>& to) const {
    U8 v[PixelLanes::kVectors];
    for (int k = 0; k < PixelLanes::kVectors; ++k) v[k] = arrange(px.of[k], kLaneTables.gathered[k]);
    const auto lanes = [](const uint32_t(&of)[4])
                           KIP_INLINE_LAMBDA { return hn::MaskFromVec(hn::LoadDup128(Tag<uint32_t>(), of)); };
    const auto join = [&](U8 a, U8 b, const uint32_t(&ofB)[4]) KIP_INLINE_LAMBDA {
      return as<uint8_t>(hn::IfThenElse(lanes(ofB), as<uint32_t>(b), as<uint32_t>(a)));
    };
    storeThreeBlocks(join(v[0], v[1], kLast), join(v[1], v[2], kUpper), join(v[3], v[2], kFirst), to.at[0]);
  }

 private:
  static constexpr uint32_t kOnes = 0xFFFFFFFFu;
  alignas(16) static constexpr uint32_t kLast[4] = {0, 0, 0, kOnes}, kUpper[4] = {0, 0, kOnes, kOnes},
                                        kFirst[4] = {kOnes, 0, 0, 0};
};

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
