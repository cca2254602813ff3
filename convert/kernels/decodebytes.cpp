// YCbCr of 8 bits to interleaved RGB of 8 bits: what most conversions of video are, in 16-bit arithmetic and without
// lanes in between.
#include "kernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/decodebytes.cpp"
#include "hwy/foreach_target.h"

#include "kernels/decode-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

using convert::ByteColours;
using convert::ChromaColumns;
using convert::DecodeWork;

/// What chroma adds to the three results.
struct Terms {
  I16 of[3];
};

/// Samples are 2^8 times as large on their way: the even and the odd ones, or the first and the second half.
template <class C, ChromaColumns kOf>
class DecodeBytes {
 public:
  using Luma = uint8_t;
  using Chroma = C;
  static constexpr ChromaColumns kColumns = kOf;

  KIP_INLINE explicit DecodeBytes(const DecodeWork& work)
      : chromaShift_(work.colours->chromaShift),
        luma_(set(work.colours->luma)),
        lumaZero_(set(work.colours->lumaZero)),
        first_(set(work.colours->first)),
        second_{set(work.colours->second[0]), set(work.colours->second[1])},
        third_(set(work.colours->third)),
        unit_(set<int16_t>(convert::kByteUnit)) {}

  KIP_INLINE void decode(const uint8_t* luma, const uint8_t* first, const uint8_t* third, U8 (&v)[3]) const {
    const Halves y = loadLuma(luma), a = loadChroma(first), b = loadChroma(third);
    Terms terms[2];
    terms[0] = termsOf(a.of[0], b.of[0]);
    terms[1] = kColumns == ChromaColumns::kPairs ? terms[0] : termsOf(a.of[1], b.of[1]);
    for (int o = 0; o < 3; ++o) v[o] = result(y, terms[0].of[o], terms[1].of[o]);
  }

 private:
  static constexpr bool kShared = kColumns != ChromaColumns::kEach;  // chroma samples of two pixels each
  static constexpr bool kEvenOdd = kShared || sizeof(Chroma) == 1;   // the order of halves

  KIP_INLINE Halves loadLuma(const uint8_t* from) const {
    const auto luma = [&](U16 v) KIP_INLINE_LAMBDA { return hn::Sub(as<int16_t>(hn::MulHigh(v, luma_)), lumaZero_); };
    const Halves v = loadBytes(from);
    return {{luma(as<uint16_t>(v.of[0])), luma(as<uint16_t>(v.of[1]))}};
  }
  KIP_INLINE static Halves loadBytes(const uint8_t* from) {
    if constexpr (kEvenOdd) {
      const U16 v = as<uint16_t>(loadLane<uint8_t>(from));
      return {{as<int16_t>(hn::ShiftLeft<8>(v)), as<int16_t>(hn::And(v, set<uint16_t>(0xFF00)))}};
    } else {
      return {{hn::ShiftLeft<8>(loadHalf(from)), hn::ShiftLeft<8>(loadHalf(from + kLanes<uint16_t>))}};
    }
  }

  /// 2^15 is in the middle.
  KIP_INLINE static I16 centred(I16 v) { return hn::Xor(v, set<int16_t>(INT16_MIN)); }

  KIP_INLINE I16 loadShared(const uint8_t* from, int offset) const {
    if constexpr (sizeof(Chroma) == 1) return loadHalf(from + offset);
    return as<int16_t>(loadLane<uint16_t>(from + offset * 2));
  }
  KIP_INLINE Halves loadChroma(const uint8_t* from) const {
    const auto scaled = [&](I16 sum) KIP_INLINE_LAMBDA { return centred(hn::ShiftLeftSame(sum, chromaShift_)); };
    if constexpr (!kShared && sizeof(Chroma) == 1) {
      const Halves v = loadBytes(from);
      return {{centred(v.of[0]), centred(v.of[1])}};
    } else if constexpr (!kShared) {
      return {{scaled(as<int16_t>(loadLane<uint16_t>(from, 0))), scaled(as<int16_t>(loadLane<uint16_t>(from, 1)))}};
    } else {
      const I16 own = loadShared(from, 0);
      if constexpr (kColumns == ChromaColumns::kCosited) {
        return {{scaled(hn::Add(own, own)), scaled(hn::Add(own, loadShared(from, 1)))}};
      } else if constexpr (kColumns == ChromaColumns::kMiddle) {
        const I16 three = hn::Add(own, hn::Add(own, own));
        return {{scaled(hn::Add(three, loadShared(from, -1))), scaled(hn::Add(three, loadShared(from, 1)))}};
      } else {
        const I16 v = scaled(own);
        return {{v, v}};
      }
    }
  }

  KIP_INLINE Terms termsOf(I16 a, I16 b) const {
    return {{hn::MulFixedPoint15(a, first_),
             hn::Add(hn::MulFixedPoint15(a, second_[0]), hn::MulFixedPoint15(b, second_[1])),
             hn::MulFixedPoint15(b, third_)}};
  }

  KIP_INLINE U8 result(const Halves& luma, I16 first, I16 second) const {
    const auto rounded = [&](I16 y, I16 term)
                             KIP_INLINE_LAMBDA { return hn::MulFixedPoint15(hn::SaturatedAdd(y, term), unit_); };
    const I16 a = rounded(luma.of[0], first), b = rounded(luma.of[1], second);
    return kEvenOdd ? mergeBytes(a, b) : packBytesInOrder(a, b);
  }

  int chromaShift_;
  U16 luma_;
  I16 lumaZero_, first_, second_[2], third_, unit_;
};

template <ChromaColumns kColumns>
constexpr void add(convert::DecodeBytesKernels& kernels) {
  auto& row = kernels.decode[static_cast<int>(kColumns)];
  row[0] = DecodeRow<DecodeBytes<uint8_t, kColumns>>::run;
  row[1] = DecodeRow<DecodeBytes<uint16_t, kColumns>>::run;
}

constexpr convert::DecodeBytesKernels makeKernels() {
  convert::DecodeBytesKernels k{};
  add<ChromaColumns::kEach>(k);
  add<ChromaColumns::kPairs>(k);
  add<ChromaColumns::kCosited>(k);
  add<ChromaColumns::kMiddle>(k);
  return k;
}

}  // namespace

const convert::DecodeBytesKernels* decodeBytesKernels() {
  static constexpr convert::DecodeBytesKernels kKernels = makeKernels();
  return &kKernels;
}

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kip {
HWY_EXPORT(decodeBytesKernels);
namespace convert {
const DecodeBytesKernels& decodeBytesKernels() { return *HWY_DYNAMIC_DISPATCH(decodeBytesKernels)(); }
}  // namespace convert
}  // namespace kip
#endif
