// RGB to subsampled YCbCr: the chroma of a group from the sum of its pixels.

#if defined(KIP_LUMACHROMA_YCBCR_ENCODE_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_LUMACHROMA_YCBCR_ENCODE_INL_H_
#undef KIP_LUMACHROMA_YCBCR_ENCODE_INL_H_
#else
#define KIP_LUMACHROMA_YCBCR_ENCODE_INL_H_
#endif

#include <algorithm>

#include "lumachroma/ycbcr-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

/// What is added to the sums of luma and of chroma, besides their zeros, before they are floored.
struct Rounding {
  int evenLuma, oddLuma;  // x 2^16
  int chroma;             // x 2^16, for each pixel of the group
  int crLess;             // by how much the sums for Cr get less than those for Cb
};

constexpr Rounding kToNearest = {kHalf, kHalf, kHalf, 0};
/// The second luma of each pair is truncated.
constexpr Rounding kOddLumaTruncated = {kHalf, 0, kHalf, 0};
/// An eighth of a step for chroma.
constexpr Rounding kChromaEighth = {kHalf, kHalf, kEighth, 0};
/// Cr gets two less than Cb.
constexpr Rounding kCrLess = {kHalf, kHalf, kHalf, 2};

constexpr int lumaOffset(const ForwardSet& set, int rounding) { return set.lumaZero * kOne + rounding; }
constexpr int chromaOffset(int rounding, int pixels) { return (kChromaZero * kOne + rounding) * pixels; }

/// 32-bit lanes that differ for even and odd pixels.
KIP_INLINE I32 keepPerPixel(int even, int odd) {
  const uint64_t both = static_cast<uint64_t>(static_cast<uint32_t>(odd)) << 32 | static_cast<uint32_t>(even);
  return as<int32_t>(keepInRegister<uint64_t>(both));
}

/// kPixels pixels to a group.
template <const ForwardSet& kSet, const Rounding& kRounding, int kPixels>
struct GroupSums {
  using Sums = I16;  // differences (B - G, R - G)
  Forward<kSet> forward;
  U16 lumaZero = as<uint16_t>(keepPairs(twiceLumaZero(kRounding.evenLuma), twiceLumaZero(kRounding.oddLuma)));
  I32 cbZero = keepInRegister<int32_t>(chromaOffset(kRounding.chroma, kPixels));
  I32 crZero = keepInRegister<int32_t>(chromaOffset(kRounding.chroma, kPixels) - kRounding.crLess);

  static_assert(lumaOffset(kSet, kRounding.evenLuma) % 256 == 0 && lumaOffset(kSet, kRounding.oddLuma) % 256 == 0);
  I32 lumaOffset256 =
      keepPerPixel(lumaOffset(kSet, kRounding.evenLuma) / 256, lumaOffset(kSet, kRounding.oddLuma) / 256);

  KIP_INLINE GroupSums() {}

  KIP_INLINE I16 luma(const HalfBatch<PixelPairs>& px) const {
    const I16 twice =
        packPixels(px, [this](const PixelPairs& p) KIP_INLINE_LAMBDA { return hn::ShiftRight<15>(forward.y(p)); });
    return as<int16_t>(hn::AverageRound(as<uint16_t>(twice), lumaZero));
  }
  KIP_INLINE LumaSums luma(const HalfBatch<PixelQuads>& px) const {
    return {{forward.y(px.of[0], lumaOffset256), forward.y(px.of[1], lumaOffset256)}};
  }
  KIP_INLINE static I16 toByte(I16 luma) { return luma; }
  template <class Px, class Luma>
  KIP_INLINE static ChannelPairs part(const HalfBatch<Px>& px, const Luma&) {
    return {{differencesOf(px.of[0]), differencesOf(px.of[1])}};
  }
  KIP_INLINE static Sums sums(const ChannelPairs& differences) {
    return addNeighbours(differences.of[0], differences.of[1]);
  }
  KIP_INLINE void chroma(const Sums (&half)[2], Subsampled& s) const {
    s.u = packWords(cb(half[0]), cb(half[1]));
    s.v = packWords(cr(half[0]), cr(half[1]));
  }
  KIP_INLINE void chroma(const Sums (&half)[2], Subsampled4& s) const {
    const I16 d = addNeighbours(half[0], half[1]);
    s.u = cb(d);
    s.v = cr(d);
  }

 private:
  /// What the average of it and twice a luma adds to that luma: the average rounds up, so one less truncates.
  static constexpr int twiceLumaZero(int rounding) { return 2 * kSet.lumaZero - (rounding == kHalf ? 0 : 1); }

  static constexpr int kShift = 16 + (kPixels == 4 ? 2 : 1);
  KIP_INLINE I32 cb(I16 d) const { return hn::ShiftRight<kShift>(forward.cb(cbZero, d)); }
  KIP_INLINE I32 cr(I16 d) const { return hn::ShiftRight<kShift>(forward.cr(crZero, d)); }
};

template <const ForwardSet& kSet, const Rounding& kRounding, class Src, class Dst>
using Groups = Encode<GroupSums<kSet, kRounding, Dst::kLumaRows * Dst::kGroupWidth>, Src, Dst>;

/// The last pixel of an odd width in packed 4:2:2 has two bytes: its luma, and its chroma in the place of the first
/// one.
template <const ForwardSet& kSet, const Rounding& kRounding, class Dst>
void writeTrailingPixel(const Pixel& rgb, Kip8u* to) {
  const auto sample = [&](const Row& row, int offset) {
    const int sum = row.r * rgb.a + row.g * rgb.b + row.b * rgb.c;
    return static_cast<Kip8u>(std::clamp((sum + offset) >> 16, 0, 255));
  };
  to[Dst::kLumaByte] = sample(kSet.y, lumaOffset(kSet, kRounding.evenLuma));
  to[1 - Dst::kLumaByte] = sample(Dst::kChromaSwapped ? kSet.cr : kSet.cb, chromaOffset(kRounding.chroma, 1));
}

/// To packed 4:2:2, with the last pixel of an odd width. LoneSrc is the layout in which that one is read.
template <const ForwardSet& kSet, const Rounding& kRounding, class Src, class Dst, class LoneSrc = Src>
struct Packed {
  static void rows(const Job& job, int first, int last) {
    Groups<kSet, kRounding, Src, Dst>::rows(job, first, last);
    if (job.width % 2 == 0) return;
    const size_t x = job.width - 1;
    for (int y = first; y < last; ++y) {
      const Pixel rgb = pixelAt<LoneSrc>(LoneSrc::rows(job.src, y), x);
      writeTrailingPixel<kSet, kRounding, Dst>(rgb, advance<Dst>(Dst::rows(job.dst, y), x).at[0]);
    }
  }
};

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
