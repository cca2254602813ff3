// RGB packed in 16-bit words: the words as a destination, truncated or dithered, and as a source.

#if defined(KIP_LUMACHROMA_PACKED16_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_LUMACHROMA_PACKED16_INL_H_
#undef KIP_LUMACHROMA_PACKED16_INL_H_
#else
#define KIP_LUMACHROMA_PACKED16_INL_H_
#endif

#include "engine/lanes-inl.h"
#include "engine/pairs-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

/// How many bits the three fields of a word have, from its lowest bit up. What is left at its top is zero.
struct Fields {
  int low, middle, high;
};
constexpr Fields k565 = {5, 6, 5}, k555 = {5, 5, 5}, k444 = {4, 4, 4};

/// The words of a space whose name begins with its lowest field: R of RGB565 and B of BGR565.
template <const Fields& kFields>
struct WordsOf : Interleaved<Tag<uint8_t>, 2> {
  static constexpr int kMiddleAt = kFields.low, kHighAt = kMiddleAt + kFields.middle, kEnd = kHighAt + kFields.high;
};

/// kBits bits that end at bit kEnd of each word.
template <int kEnd, int kBits>
KIP_INLINE U16 maskBits(U16 words) {
  return hn::And(words, set<uint16_t>(static_cast<uint16_t>((1 << kEnd) - (1 << (kEnd - kBits)))));
}

/// Words shifted left, or right where kBits is negative.
template <int kBits>
KIP_INLINE U16 shiftWords(U16 words) {
  if constexpr (kBits >= 0) {
    return hn::ShiftLeft<kBits>(words);
  } else {
    return hn::ShiftRight<-kBits>(words);
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// Words as a destination

/// The upper bits of each channel.
template <const Fields& kFields>
struct Truncated {
  using W = WordsOf<kFields>;

  /// Of one half of each block.
  KIP_INLINE U16 words(const Pixels<U8>& px, int half) const {
    return words(as<uint16_t>(sideBySideInBlocks(px.a, px.c, half)),
                 as<uint16_t>(sideBySideInBlocks(px.b, hn::Zero(Tag<uint8_t>()), half)));
  }
  /// From the first and the third channel as the bytes of 16-bit lanes, and from the second one in such lanes.
  KIP_INLINE static U16 words(U16 outer, U16 second) {
    constexpr int kDown = 8 - kFields.low, kHighDown = 16 - W::kEnd;
    const U16 middle = maskBits<W::kHighAt, kFields.middle>(shiftWords<W::kHighAt - 8>(second));
    if constexpr (kDown == kHighDown) {
      constexpr uint16_t kBoth = 0x101 * ((1 << kFields.low) - 1);
      return hn::Or(hn::And(hn::ShiftRight<kDown>(outer), set(kBoth)), middle);
    } else {
      const U16 low = maskBits<kFields.low, kFields.low>(hn::ShiftRight<kDown>(outer));
      return hn::Or(hn::Or(low, maskBits<W::kEnd, kFields.high>(shiftWords<-kHighDown>(outer))), middle);
    }
  }
};

/// A 4 x 4 ordered dither: levels whose rest is above a threshold that depends on the pixel's place become the next
/// one. The thresholds are at the scale of the channels x 256, those of 4 bits for steps of 17 and the others for
/// 255 / 31. The first channel is the lowest field or, if reversed, the highest one, which has as many bits.
template <const Fields& kFields>
class Dithered {
 public:
  using W = WordsOf<kFields>;

  /// For batches that begin at column x of row y.
  KIP_INLINE Dithered(size_t x, int y, bool reversed)
      : thresholds5_(row(kThresholds5, x, y)),
        thresholds4_(row(kThresholds4, x, y)),
        thresholds6_(hn::ShiftRight<1>(thresholds5_)),
        first_(keepInRegister<uint16_t>(reversed ? kHigh : kLow)),
        third_(keepInRegister<uint16_t>(reversed ? kLow : kHigh)) {}

  KIP_INLINE U16 words(const Pixels<U8>& px, int half) const {
    const auto times256 = [&](U8 channel) KIP_INLINE_LAMBDA {
      return as<uint16_t>(sideBySideInBlocks(hn::Zero(Tag<uint8_t>()), channel, half));
    };
    const U16 middle = hn::ShiftLeft<W::kMiddleAt>(level<kFields.middle>(times256(px.b)));
    return hn::Or(hn::Or(hn::Mul(level<kFields.low>(times256(px.a)), first_),
                         hn::Mul(level<kFields.high>(times256(px.c)), third_)),
                  middle);
  }

 private:
  static_assert(kFields.low == kFields.high);
  static constexpr uint16_t kLow = 1, kHigh = 1 << W::kHighAt;  // what moves a level to its field

  /// What it takes to find levels 0 .. last and the distance of one from the next, 65280 / last.
  struct Steps {
    U16 last, distance;
    KIP_INLINE Steps(uint16_t l, uint16_t d)
        : last(keepInRegister<uint16_t>(l)), distance(keepInRegister<uint16_t>(d)) {}
  };

  // Bayer's order, scaled to the distance of the levels.
  static constexpr uint16_t kThresholds5[4][4] = {
      {0, 1118, 279, 1398}, {1678, 559, 1957, 839}, {419, 1538, 139, 1258}, {2097, 978, 1817, 699}};
  static constexpr uint16_t kThresholds4[4][4] = {
      {0, 2312, 578, 2890}, {3468, 1156, 4046, 1734}, {867, 3179, 289, 2601}, {4335, 2023, 3757, 1445}};

  KIP_INLINE static I16 row(const uint16_t (&thresholds)[4][4], size_t x, int y) {
    uint64_t four = 0;
    for (size_t i = 0; i < 4; ++i) four |= uint64_t{thresholds[y % 4][(x + i) % 4]} << (16 * i);
    return as<int16_t>(keepInRegister<uint64_t>(four));
  }

  template <int kBits>
  KIP_INLINE U16 level(U16 channel) const {
    if constexpr (kBits == 4) return level(channel, steps4_, thresholds4_);
    if constexpr (kBits == 5) return level(channel, steps5_, thresholds5_);
    return level(channel, steps6_, thresholds6_);
  }
  KIP_INLINE static U16 level(U16 channel, const Steps& steps, I16 thresholds) {
    const U16 lower = hn::MulHigh(channel, steps.last);
    const I16 rest = as<int16_t>(hn::Sub(channel, hn::Mul(lower, steps.distance)));
    return incrementWhere(hn::Gt(rest, thresholds), lower);
  }

  I16 thresholds5_, thresholds4_, thresholds6_;
  U16 first_, third_;
  Steps steps5_{31, 2105}, steps6_{63, 1036}, steps4_{15, 4352};
};

/// Pixels to words, each channel quantized to its field, the first one to the lowest.
template <const Fields& kFields, class Quantizer = Truncated<kFields>>
struct ToWords : WordsOf<kFields> {
  KIP_INLINE explicit ToWords(Quantizer q = {}) : quantizer(q) {}

  KIP_INLINE void store(const Pixels<U8>& px, const Rows<Kip8u, 1>& to) const {
    storeTwoBlocks(as<uint8_t>(quantizer.words(px, 0)), as<uint8_t>(quantizer.words(px, 1)), to.at[0]);
  }

  Quantizer quantizer;
};

/// The same of lanes.
template <const Fields& kFields>
struct Whole<ToWords<kFields>> : ToWords<kFields> {
  KIP_INLINE Whole() {}
  KIP_INLINE void store(const ResultLanes& px, const Rows<Kip8u, 1>& to) const {
    const auto words = [](U8 first, U8 second) KIP_INLINE_LAMBDA {
      U8 outer, middle;
      unzipHalves(first, second, outer, middle);
      return as<uint8_t>(Truncated<kFields>::words(as<uint16_t>(outer), as<uint16_t>(middle)));
    };
    storeTwoUnits(words(px.of[0], px.of[1]), words(px.of[2], px.of[3]), to.at[0]);
  }
};

// ---------------------------------------------------------------------------------------------------------------------
// Words as a source

/// Each field at the top of its byte, the bits below zero.
template <const Fields& kFields, Order kOrder>
struct FromWords : WordsOf<kFields> {
  using W = WordsOf<kFields>;
  static constexpr bool kReversed = kOrder == Order::kReverse;

  /// In 16-bit lanes, the lower and the upper half of each block.
  KIP_INLINE static Pixels<I16> loadLanes(const Rows<const Kip8u, 1>& from, int half) {
    const U16 words = as<uint16_t>(loadBlocks(from.at[0] + 16 * half, 32));
    const I16 low = topOfByte<W::kMiddleAt, kFields.low>(words), high = topOfByte<W::kEnd, kFields.high>(words);
    const I16 middle = topOfByte<W::kHighAt, kFields.middle>(words);
    return kReversed ? Pixels<I16>(high, middle, low) : Pixels<I16>(low, middle, high);
  }
  KIP_INLINE Pixels<U8> load(const Rows<const Kip8u, 1>& from) const {
    return pack(loadLanes(from, 0), loadLanes(from, 1));
  }

 private:
  template <int kEnd, int kBits>
  KIP_INLINE static I16 topOfByte(U16 words) {
    return as<int16_t>(maskBits<8, kBits>(shiftWords<8 - kEnd>(words)));
  }
};

template <const Fields& kFields, Order kOrder>
KIP_INLINE HalfBatch<PixelPairs> pixelsOf(const FromWords<kFields, kOrder>&, const Rows<const Kip8u, 1>& from,
                                          int half) {
  return pairsOf(FromWords<kFields, kOrder>::loadLanes(from, half));
}

/// Bytes as they are.
struct Same {
  using Lane = uint8_t;
  KIP_INLINE Pixels<U8> operator()(const Pixels<U8>& px) const { return px; }
};

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
