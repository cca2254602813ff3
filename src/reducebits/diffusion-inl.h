// Error diffusion: what a sample loses or gains by its reduction is handed on to its neighbours right and below.
//
// Sequential as it looks, a band of rows is worked on at the same time, each row trailing the one above by just so many
// columns that the errors it needs are there. At step s, row r of the band is at column s - trail x r. Each lane of the
// band's vectors is a row, each row's sums are formed in the one order that the contract knows, so the results are those
// of one sample after the other.

#if defined(KIP_REDUCEBITS_DIFFUSION_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_REDUCEBITS_DIFFUSION_INL_H_
#undef KIP_REDUCEBITS_DIFFUSION_INL_H_
#else
#define KIP_REDUCEBITS_DIFFUSION_INL_H_
#endif

#include <algorithm>
#include <cstring>
#include <utility>

#include "reducebits/levels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

/// How errors are handed on, seen from the sample that receives them.
struct Diffusion {
  int trail;             ///< columns that each row trails the one above
  float divisor;         ///< the sum of the weights
  int weights[3][5];     ///< of the errors two rows above, one row above and in the same row, columns x - 2 .. x + 2
};
constexpr Diffusion kFloydSteinberg = {2, 16, {{0, 0, 0, 0, 0}, {0, 1, 5, 3, 0}, {0, 7, 0, 0, 0}}};
constexpr Diffusion kJarvisJudiceNinke = {3, 48, {{1, 3, 5, 3, 1}, {3, 5, 7, 5, 3}, {5, 7, 0, 0, 0}}};
constexpr Diffusion kStucki = {3, 42, {{1, 2, 4, 2, 1}, {2, 4, 8, 4, 2}, {4, 8, 0, 0, 0}}};

/// Vectors of a band; row r is in vector r mod kVectors, so that the row above is mostly in the same lane of the vector
/// before.
constexpr int kVectors = kBand / kLanes<float>;
constexpr int kSteps = 32;   // done at a time
constexpr int kHistory = 8;  // steps that errors are remembered: trail 3, two rows up and two columns to the left
constexpr int kAbove = 2;    // rows above a band that it needs the errors of

/// Where row r of a band is kept; the rows above it count as -1 and -2.
constexpr int slotOf(int row) {
  const int vector = row < 0 ? row : row % kVectors, lane = row < 0 ? 0 : row / kVectors;
  return (vector + kAbove) * kLanes<float> + lane;
}

/// What some steps work on. Of the errors, the first kHistory steps are those done before; and before the band's
/// vectors lie two that hold, in each lane, the rows one and two above that of the band's first vector.
struct BandSteps {
  static constexpr int kSlots = (kVectors + kAbove) * kLanes<float>;
  alignas(64) float values[kSteps][kSlots];
  alignas(64) float thresholds[kSteps][kSlots];
  alignas(64) int32_t levels[kSteps][kSlots];
  alignas(64) float errors[kHistory + kSteps][kSlots];
};

/// The scale that errors are diffused on.
struct Scale {
  float full, interval, perInterval;
};

template <class Function, int... kIndex>
KIP_INLINE void forEachIndex(const Function& function, std::integer_sequence<int, kIndex...>) {
  (function(std::integral_constant<int, kIndex>()), ...);
}
/// Calls the function with 0 .. kCount - 1 as types, so that arrays indexed with them are registers.
template <int kCount, class Function>
KIP_INLINE void unrolled(const Function& function) {
  forEachIndex(function, std::make_integer_sequence<int, kCount>());
}

/// The weighted errors that arrive at the rows of a vector. `now` is its slot in the errors of this step, `before` its
/// own errors of the last step.
template <const Diffusion& kDiffusion>
KIP_INLINE F32 incoming(const float* now, F32 before) {
  F32 sum = hn::Zero(Tag<float>());
  unrolled<15>([&](auto tap) KIP_INLINE_LAMBDA {
    constexpr int kUp = 2 - tap / 5, kRight = tap % 5 - 2, kWeight = kDiffusion.weights[2 - kUp][2 + kRight];
    if constexpr (kWeight != 0) {
      constexpr int kStepsAgo = kUp * kDiffusion.trail - kRight;
      const float* at = now - kStepsAgo * BandSteps::kSlots - kUp * kLanes<float>;
      const F32 error = kStepsAgo == 1 && kUp == 0 ? before : hn::Load(Tag<float>(), at);
      const F32 product = hn::Mul(error, set(float{kWeight}));
      constexpr bool kFirst = [] {
        for (int t = 0; t < decltype(tap)::value; ++t) {
          if (kDiffusion.weights[t / 5][t % 5] != 0) return false;
        }
        return true;
      }();
      sum = kFirst ? product : hn::Add(sum, product);
    }
  });
  return hn::Mul(sum, set(1 / kDiffusion.divisor));
}

/// Lanes moved up by one; the first one is given.
KIP_INLINE F32 laneUp(F32 v, float first) {
  const Tag<float> d;
  int32_t from[kLanes<float>];
  for (int i = 0; i < kLanes<float>; ++i) from[i] = std::max(i - 1, 0);
  return hn::IfThenElse(hn::FirstN(d, 1), set(first), hn::TableLookupLanes(v, hn::SetTableIndices(d, from)));
}

/// kSteps steps of a band. above[i] are the errors of the row i + 1 above it, from the first step's column on.
template <const Diffusion& kDiffusion>
void diffuseSteps(BandSteps& band, const Scale& scale, const float* const (&above)[kAbove]) {
  const Tag<float> d;
  const F32 full = set(scale.full), q = set(scale.interval), p = set(scale.perInterval), zero = hn::Zero(d);
  F32 before[kVectors];
  unrolled<kVectors>([&](auto v) KIP_INLINE_LAMBDA {
    before[v] = hn::Load(d, &band.errors[kHistory - 1][(v + kAbove) * kLanes<float>]);
  });
  for (int s = 0; s < kSteps; ++s) {
    float* errors = band.errors[kHistory + s];
    unrolled<kVectors>([&](auto v) KIP_INLINE_LAMBDA {
      const int slot = (v + kAbove) * kLanes<float>;
      const F32 wanted = hn::Add(hn::Load(d, &band.values[s][slot]), incoming<kDiffusion>(errors + slot, before[v]));
      const F32 lower = hn::Mul(hn::ConvertTo(d, truncated(hn::Mul(wanted, p))), q), upper = hn::Add(lower, q);
      const F32 lowerError = hn::Sub(wanted, lower), upperError = hn::Sub(wanted, upper);
      const auto up = hn::Gt(lowerError, hn::Load(d, &band.thresholds[s][slot]));
      const auto notNegative = hn::Ge(wanted, zero), notFull = hn::Lt(wanted, full);
      const F32 level = hn::IfThenElse(notFull, hn::Min(hn::IfThenElse(up, upper, lower), full), full);
      hn::Store(truncated(hn::IfThenElseZero(notNegative, level)), Tag<int32_t>(), &band.levels[s][slot]);
      before[v] = hn::IfThenElseZero(hn::And(notNegative, notFull), hn::IfThenElse(up, upperError, lowerError));
      hn::Store(before[v], d, errors + slot);
    });
    for (int up = 1; up <= kAbove; ++up) {
      const F32 lanesBelow = hn::Load(d, errors + (kVectors + kAbove - up) * kLanes<float>);
      hn::Store(laneUp(lanesBelow, above[up - 1][s + up * kDiffusion.trail]), d, errors + (kAbove - up) * kLanes<float>);
    }
  }
}

/// Error diffusion of channels one after the other. The errors of the last rows of one are those above the next one.
template <class S, class D>
struct Diffuse {
  static void channels(const Job& job, int first, int last) {
    const auto& reduction = *static_cast<const Reduction*>(job.parameters);
    Diffuse diffuse(job, reduction, reduction.errorRows + first * kAbove * reduction.errorRowLength);
    for (int c = first; c < last; ++c) diffuse.channel(c);
  }

 private:
  static constexpr float kFull = kFullScale<D>;
  static constexpr bool kSameScale = !std::is_same_v<S, float> && sizeof(S) == sizeof(D);
  // Far enough from the scale that no error brings it back: such a sample has no error itself.
  static constexpr float kOutside = -1e9f;

  Diffuse(const Job& job, const Reduction& reduction, float* errorRows)
      : job_(job), reduction_(reduction), rowLength_(reduction.errorRowLength) {
    const float q = intervalOf(reduction.intervals, kFull);
    scale_ = {kFull, q, reduction.intervals / kFull};
    for (int up = 0; up < kAbove; ++up) above_[up] = errorRows + up * rowLength_;
    std::fill_n(errorRows, kAbove * rowLength_, 0.f);
    for (auto& step : band_.thresholds) std::fill(std::begin(step), std::end(step), q * 0.5f);
  }

  void channel(int c) {
    for (int y = 0; y < job_.height; y += kBand) {
      channel_ = c, y_ = y, rows_ = std::min(kBand, job_.height - y);
      switch (reduction_.method) {
        case kipDitherFS: band<kFloydSteinberg>(); break;
        case kipDitherStucki: band<kStucki>(); break;
        default: band<kJarvisJudiceNinke>();
      }
    }
  }

  template <const Diffusion& kDiffusion>
  void band() {
    trail_ = kDiffusion.trail;
    const int64_t steps = int64_t{job_.width} + trail_ * (rows_ - 1);
    begin();
    for (int64_t s = 0; s < steps; s += kSteps) {
      readValues(s);
      if (reduction_.noise != nullptr) readThresholds(s);
      diffuseSteps<kDiffusion>(band_, scale_, {above_[0] + s, above_[1] + s});
      writeLevels(s);
      keepErrors(s);
      std::memmove(band_.errors[0], band_.errors[kSteps], sizeof(float) * kHistory * BandSteps::kSlots);
    }
  }

  /// Before a band's first step there are only the errors of the rows above.
  void begin() {
    std::fill_n(band_.errors[0], kHistory * BandSteps::kSlots, 0.f);
    for (int up = 1; up <= kAbove; ++up) {
      for (int s = -up * trail_; s < 0; ++s) {
        band_.errors[kHistory + s][slotOf(-up)] = above_[up - 1][s + up * trail_];
      }
    }
    // The row above a single row will be two rows above the next one; these columns of it come before the first step.
    if (rows_ == 1) std::copy_n(above_[0], trail_, above_[1]);
  }

  /// Calls visit(row of the image, its slot, column, step) for all samples that kSteps steps from s on come by.
  template <class Visit>
  KIP_INLINE void forSamples(int64_t s, const Visit& visit) const {
    for (int r = 0; r < rows_; ++r) visitRow(r, slotOf(r), s, visit);
  }
  template <class Visit>
  KIP_INLINE void visitRow(int r, int slot, int64_t s, const Visit& visit) const {
    const int64_t column = s - r * trail_;
    const int begin = static_cast<int>(std::clamp<int64_t>(-column, 0, kSteps));
    const int end = static_cast<int>(std::clamp<int64_t>(job_.width - column, 0, kSteps));
    for (int step = begin; step < end; ++step) visit(y_ + r, slot, column + step, step);
  }

  void readValues(int64_t s) {
    std::fill_n(band_.values[0], kSteps * BandSteps::kSlots, kOutside);
    forSamples(s, [&](int y, int slot, int64_t x, int step) {
      const S* row = reinterpret_cast<const S*>(job_.src.row(0, y)) + channel_;
      band_.values[step][slot] = value(row[x * reduction_.channels.perPixel]);
    });
  }

  static float value(S sample) {
    if constexpr (kSameScale) {
      return static_cast<float>(sample) + (std::is_signed_v<S> ? 32768 : 0);
    }
    float v;
    if constexpr (std::is_same_v<S, float>) {
      // As in the other methods; not a number becomes the lower limit.
      v = sample > -4 ? std::min(sample, 4.f) : -4;
    } else {
      v = (static_cast<float>(sample) + (std::is_signed_v<S> ? 32768 : 0)) * kNormal<S>;
    }
    return v * kFull;
  }

  void readThresholds(int64_t s) {
    forSamples(s, [&](int y, int slot, int64_t x, int step) {
      band_.thresholds[step][slot] = reduction_.noise->row(y)[reduction_.noise->columns()[x % NoiseTables::kCount]];
    });
  }

  void writeLevels(int64_t s) const {
    forSamples(s, [&](int y, int slot, int64_t x, int step) {
      D* row = reinterpret_cast<D*>(job_.dst.row(0, y)) + channel_;
      row[x * reduction_.channels.perPixel] = static_cast<D>(band_.levels[step][slot] - (std::is_signed_v<D> ? 32768 : 0));
    });
  }

  /// The errors of the band's last rows, for the band below.
  void keepErrors(int64_t s) {
    for (int up = 1; up <= kAbove; ++up) {
      const int row = rows_ - up;
      visitRow(row, slotOf(row), s, [&](int, int slot, int64_t x, int step) {
        above_[up - 1][x] = band_.errors[kHistory + step][slot];
      });
    }
  }

  const Job& job_;
  const Reduction& reduction_;
  size_t rowLength_;
  Scale scale_;
  float* above_[kAbove];
  int channel_ = 0, y_ = 0, rows_ = 0, trail_ = 0;
  BandSteps band_;
};

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
