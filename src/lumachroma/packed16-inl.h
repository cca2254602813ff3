// RGB packed in 16-bit words: the words as a destination, truncated or dithered, and as a source.

#if defined(KIP_LUMACHROMA_PACKED16_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_LUMACHROMA_PACKED16_INL_H_
#undef KIP_LUMACHROMA_PACKED16_INL_H_
#else
#define KIP_LUMACHROMA_PACKED16_INL_H_
#endif

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
// Words as a destination. Channels come as bytes x 256.

/// The upper bits of each channel.
struct Truncated {
  template <int kBits, int kAt>
  KIP_INLINE U16 field(U16 channel) const {
    return maskBits<kAt + kBits, kBits>(hn::ShiftRight<16 - kAt - kBits>(channel));
  }
};

/// A 4 x 4 ordered dither: levels whose rest is above a threshold that depends on the pixel's place become the next
/// one. The thresholds are at the scale of the channels, those of 4 bits for steps of 17 and the others for 255 / 31.
class Dithered {
 public:
  /// For batches that begin at column x of row y.
  KIP_INLINE Dithered(size_t x, int y)
      : thresholds5_(row(kThresholds5, x, y)),
        thresholds4_(row(kThresholds4, x, y)),
        thresholds6_(hn::ShiftRight<1>(thresholds5_)) {}

  template <int kBits, int kAt>
  KIP_INLINE U16 field(U16 channel) const {
    if constexpr (kBits == 4) return hn::ShiftLeft<kAt>(level(channel, steps4_, thresholds4_));
    if constexpr (kBits == 5) return hn::ShiftLeft<kAt>(level(channel, steps5_, thresholds5_));
    return hn::ShiftLeft<kAt>(level(channel, steps6_, thresholds6_));
  }

 private:
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

  KIP_INLINE static U16 level(U16 channel, const Steps& steps, I16 thresholds) {
    const U16 lower = hn::MulHigh(channel, steps.last);
    const I16 rest = as<int16_t>(hn::Sub(channel, hn::Mul(lower, steps.distance)));
    return incrementWhere(hn::Gt(rest, thresholds), lower);
  }

  I16 thresholds5_, thresholds4_, thresholds6_;
  Steps steps5_{31, 2105}, steps6_{63, 1036}, steps4_{15, 4352};
};

/// Pixels to words, each channel quantized to its field. The job says which channel is the lowest field.
template <const Fields& kFields, class Quantizer = Truncated>
struct ToWords : WordsOf<kFields> {
  using W = WordsOf<kFields>;

  KIP_INLINE explicit ToWords(const Job& job, Quantizer q = {})
      : quantizer(q), reversed_(keepInRegister<uint8_t>(job.reversed ? 0xFF : 0)) {}

  KIP_INLINE void store(const Pixels<U8>& px, const Rows<Kip8u, 1>& to) const {
    const U8 difference = hn::And(hn::Xor(px.a, px.c), reversed_);
    const U8 low = hn::Xor(px.a, difference), high = hn::Xor(px.c, difference);
    const Tag<uint8_t> d;
    const U8 zero = hn::Zero(d);
    const auto words = [&](U8 l, U8 m, U8 h) KIP_INLINE_LAMBDA {
      return as<uint8_t>(hn::Or(hn::Or(quantizer.template field<kFields.low, 0>(as<uint16_t>(l)),
                                       quantizer.template field<kFields.middle, W::kMiddleAt>(as<uint16_t>(m))),
                                quantizer.template field<kFields.high, W::kHighAt>(as<uint16_t>(h))));
    };
    storeTwoBlocks(
        words(hn::InterleaveLower(zero, low), hn::InterleaveLower(zero, px.b), hn::InterleaveLower(zero, high)),
        words(hn::InterleaveUpper(d, zero, low), hn::InterleaveUpper(d, zero, px.b),
              hn::InterleaveUpper(d, zero, high)),
        to.at[0]);
  }

  Quantizer quantizer;

 private:
  U8 reversed_;  ///< all bits, or none
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
