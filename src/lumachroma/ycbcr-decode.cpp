// YCbCr to RGB, 8 bits: full resolution, 4:2:2, 4:2:0 and 4:1:1.

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "lumachroma/ycbcr-decode.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "lumachroma/ycbcr-decode-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

// ---------------------------------------------------------------------------------------------------------------------
// Chroma interpolated between its samples

/// Samples with the chroma of the odd pixels apart.
struct InLanesFiltered : InLanes {
  U8 oddChroma[2];
};

/// Planar 4:2:0 with the chroma rows twice among the pointers: where they are, and one sample further on. An even pixel
/// has its chroma sample, an odd one the mean of that and the next one.
struct Filtered420 : Planar420Swapped {
  static constexpr int kPointers = Planar420Swapped::kPointers + 2;

  template <class Byte>
  static Rows<Byte, kPointers> rows(const Image<Byte>& image, int group, ptrdiff_t next) {
    const auto here = Planar420Swapped::rows(image, group);
    return {{here.at[0], here.at[1], here.at[2], here.at[3], here.at[2] + next, here.at[3] + next}};
  }
  KIP_INLINE InLanesFiltered loadFiltered(const Rows<const Kip8u, kPointers>& from) const {
    InLanesFiltered s;
    static_cast<InLanes&>(s) = loadInLanes({{from.at[0], from.at[1], from.at[2], from.at[3]}});
    pairChroma(mean(from.at[2], from.at[4]), mean(from.at[3], from.at[5]), s.oddChroma);
    return s;
  }

 private:
  KIP_INLINE static I16 mean(const Kip8u* here, const Kip8u* next) {
    const auto wide = [](const Kip8u* from) KIP_INLINE_LAMBDA { return as<uint16_t>(loadHalf(from)); };
    return as<int16_t>(hn::AverageRound(wide(here), wide(next)));
  }
};

struct PerFilteredGroup {
  struct Terms {
    Pixels<I32> even[2], odd[2];
  };
  InversePairs<Filtered420, 1> inverse;

  KIP_INLINE explicit PerFilteredGroup(const InverseWeights& weights) : inverse(weights) {}
  KIP_INLINE static InLanesFiltered load(const Filtered420& src, const Rows<const Kip8u, 6>& from) {
    return src.loadFiltered(from);
  }
  KIP_INLINE Terms terms(const InLanesFiltered& s) const {
    return {{inverse.terms(s.chroma[0]), inverse.terms(s.chroma[1])},
            {inverse.terms(s.oddChroma[0]), inverse.terms(s.oddChroma[1])}};
  }
  KIP_INLINE Pixels<U8> row(const InLanesFiltered& s, int r, const Terms& terms) const {
    const auto half = [&](int h) KIP_INLINE_LAMBDA { return inverse.pixels(s.y[r][h], terms.even[h], terms.odd[h]); };
    return pack(half(0), half(1));
  }
};

template <const InverseSet& kSet, class To>
struct DecodeFiltered {
  using Dst = typename To::Layout;

  static void rows(const Job& job, int first, int last) {
    const size_t end = wholeGroups<Filtered420>(job.width);
    if (end == 0) return;
    static constexpr InverseWeights kWeights = groupWeights(kSet, To::kReversed);
    const Decode<PerFilteredGroup, Filtered420, Dst> decode(job, PerFilteredGroup(kWeights));
    for (int group = first; group < last; ++group) {
      const auto to = TwoRows<Dst>::rows(job.dst, group);
      decode.group(Filtered420::rows(job.src, group, 1), to, 0, end - 2);
      // The last pair has no sample after its own.
      decode.group(Filtered420::rows(job.src, group, 0), to, end - 2, end);
    }
  }
};

// ---------------------------------------------------------------------------------------------------------------------

/// Destinations: the coefficients are reversed, not the layouts.
template <class Layout_, bool kReversed_ = false>
struct To {
  using Layout = Layout_;
  static constexpr bool kReversed = kReversed_;
};
using Rgb = To<C3<>>;
using Bgr = To<C3<>, true>;
using RgbAlpha = To<AC4<>>;
using RgbAval = To<C4<>>;
using BgrAval = To<C4<>, true>;
using RgbPlanes = To<P3<>>;

template <const InverseSet& kSet, class Src, class To>
struct Full {
  static void rows(const Job& job, int first, int last) {
    static constexpr InverseWeights kWeights = laneWeights(kSet, To::kReversed);
    convertLanes<Src, typename To::Layout, To::kReversed>(kWeights, job, first, last);
  }
};
template <const InverseSet& kSet, class Src>
struct Full<kSet, Src, RgbPlanes> : Convert<PerPixel<kSet>, Src, P3<>> {};

template <const InverseSet& kSet, class Src, class To>
struct Planes {
  static void rows(const Job& job, int first, int last) {
    static constexpr InverseWeights kWeights = groupWeights(kSet, To::kReversed);
    decodeGroups<Src, typename To::Layout>(kWeights, job, first, last);
  }
};
template <const InverseSet& kSet, class Src, class To>
struct Packed {
  static void rows(const Job& job, int first, int last) {
    static constexpr InverseWeights kWeights = groupWeights(kSet, To::kReversed);
    decodePacked<Src, typename To::Layout>(kWeights, job, first, last);
  }
};

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include "lumachroma/rules.h"
#endif

#define KIP_FUNCTIONS "lumachroma/ycbcr-decode-functions.inc"
#include "engine/functions-inl.h"
