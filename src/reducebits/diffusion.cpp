// Error diffusion: what a sample loses or gains by its reduction is handed on to its neighbours right and below.
//
// Rows of a band run as a skewed wavefront, each so many columns behind the one above that the errors it needs are
// there: at step s, row r of the band is at column s - skew x r. Each row of the
// band is a lane of its vectors. The sums of every sample are formed in the one order that the contract knows, so the
// results are those of one sample after the other.

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "reducebits/diffusion.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "reducebits/band-inl.h"
#include "reducebits/diffusion-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

/// How errors are handed on, seen from the sample that receives them.
struct Diffusion {
  int skew;           ///< columns that each row is behind the one above: one more than it must, which hides latency
  float divisor;      ///< the sum of the weights
  int weights[3][5];  ///< of the errors two rows above, one row above and in the same row, columns x - 2 .. x + 2
};
constexpr Diffusion kFloydSteinberg = {3, 16, {{0, 0, 0, 0, 0}, {0, 1, 5, 3, 0}, {0, 7, 0, 0, 0}}};
constexpr Diffusion kJarvisJudiceNinke = {4, 48, {{1, 3, 5, 3, 1}, {3, 5, 7, 5, 3}, {5, 7, 0, 0, 0}}};
constexpr Diffusion kStucki = {4, 42, {{1, 2, 4, 2, 1}, {2, 4, 8, 4, 2}, {4, 8, 0, 0, 0}}};

constexpr int kHistory = 10;  // steps that errors are remembered: skew 4, two rows up and two columns to the left
constexpr int kAbove = kErrorRows;

/// What some steps of a band work on and leave behind. Samples are words, or floats where the source is floats.
template <class Sample>
struct BandState {
  BandSteps<Sample> samples;
  BandSteps<uint16_t> levels;
  BandSteps<float> thresholds;
  BandSteps<float> limits;  // the scale's end; minus infinity outside the image, whose samples then have no error
  int thresholdStep;        // 1, or 0 where all steps have the thresholds of the first one
  int limitStep;            // likewise
  /// The first kHistory steps are those done before. Before the band's own vectors lie two that hold, in each lane, the
  /// rows two above and one above that of the band's first vector.
  static constexpr int kErrorLanes = (kVectors + kAbove) * kLanes<float>;
  alignas(64) float errors[kHistory + kSteps][kErrorLanes];
};

/// Where the errors of row r of a band are; the rows above it count as -1 and -2.
constexpr int errorLaneOf(int row) {
  return row < 0 ? (kAbove + row) * kLanes<float> : kAbove * kLanes<float> + laneOf(row);
}

/// The scale that errors are diffused on: its end, the distance of its levels, how many there are in one unit, and what
/// brings samples to it.
struct Scale {
  float full, interval, perInterval, normal;
};

constexpr int firstTap(const Diffusion& diffusion) {
  int tap = 0;
  while (diffusion.weights[tap / 5][tap % 5] == 0) ++tap;
  return tap;
}

/// The weighted errors from all but the last column of a diffusion, in order. `now` is the vector's place in the errors
/// of this step.
template <const Diffusion& kDiffusion>
KIP_INLINE F32 earlierErrors(const float* now) {
  F32 sum = hn::Zero(Tag<float>());
  unrolled<11>([&](auto tap) KIP_INLINE_LAMBDA {
    constexpr int kUp = 2 - tap / 5, kRight = tap % 5 - 2, kWeight = kDiffusion.weights[2 - kUp][2 + kRight];
    if constexpr (kWeight != 0) {
      constexpr int kStepsAgo = kUp * kDiffusion.skew - kRight;
      const float* at = now - kStepsAgo * BandState<float>::kErrorLanes - kUp * kLanes<float>;
      const F32 product = hn::Mul(hn::Load(Tag<float>(), at), set(float{kWeight}));
      sum = tap == firstTap(kDiffusion) ? product : hn::Add(sum, product);
    }
  });
  return sum;
}

/// Lanes moved up by one; the first one is given.
KIP_INLINE F32 laneUp(F32 v, float first) {
  const Tag<float> d;
  if constexpr (kBlocksPerVector == 1) return hn::IfThenElse(hn::FirstN(d, 1), set(first), hn::ShiftLeftLanes<1>(d, v));
  int32_t from[kLanes<float>];
  for (int i = 0; i < kLanes<float>; ++i) from[i] = std::max(i - 1, 0);
  return hn::IfThenElse(hn::FirstN(d, 1), set(first), hn::TableLookupLanes(v, hn::SetTableIndices(d, from)));
}

/// kSteps steps of a band. above[i] are the errors of the row i + 1 above it, from the first step's column on. The
/// band's vectors go through each part of the work together: one by one they would wait for their own results.
template <const Diffusion& kDiffusion, bool kNormalize, class Sample>
void diffuseSteps(BandState<Sample>& band, const Scale& scale, const float* const (&above)[kAbove]) {
  const Tag<float> d;
  const F32 full = set(scale.full), q = set(scale.interval), p = set(scale.perInterval), normal = set(scale.normal);
  const U16 fullWord = set(static_cast<uint16_t>(scale.full));
  const float *threshold = band.thresholds.at[0], *limit = band.limits.at[0];
  const int thresholdStep = band.thresholdStep * kBand, limitStep = band.limitStep * kBand;
  const float *above1 = above[0] + kDiffusion.skew, *above2 = above[1] + 2 * kDiffusion.skew;
  F32 before[kVectors], wanted[kVectors], lower[kVectors];
  I32 levels[kVectors];
  unrolled<kVectors>([&](auto v) KIP_INLINE_LAMBDA {
    before[v] = hn::Load(d, &band.errors[kHistory - 1][(kAbove + v) * kLanes<float>]);
  });
  for (int s = 0; s < kSteps; ++s, threshold += thresholdStep, limit += limitStep) {
    reloadBarrier();  // of errors, which kept from step to step would be spilled
    float* now = &band.errors[kHistory + s][kAbove * kLanes<float>];
    unrolled<kVectors>([&](auto v)
                           KIP_INLINE_LAMBDA { wanted[v] = earlierErrors<kDiffusion>(now + v * kLanes<float>); });
    unrolled<kVectors>([&](auto v) KIP_INLINE_LAMBDA {
      const F32 sum = hn::Add(wanted[v], hn::Mul(before[v], set(float{kDiffusion.weights[2][1]})));
      const F32 sample = loadFloats(&band.samples.at[s][v * kLanes<float>]);
      const F32 value = kNormalize ? hn::Mul(hn::Mul(sample, normal), full) : sample;
      wanted[v] = hn::Add(value, hn::Mul(sum, set(1 / kDiffusion.divisor)));
    });
    unrolled<kVectors>(
        [&](auto v) KIP_INLINE_LAMBDA { lower[v] = hn::Mul(hn::ConvertTo(d, truncated(hn::Mul(wanted[v], p))), q); });
    unrolled<kVectors>([&](auto v) KIP_INLINE_LAMBDA {
      const auto up = hn::Gt(hn::Sub(wanted[v], lower[v]), hn::Load(d, threshold + v * kLanes<float>));
      const F32 level = hn::IfThenElse(up, hn::Add(lower[v], q), lower[v]);
      const auto onScale =
          hn::And(hn::Ge(wanted[v], hn::Zero(d)), hn::Lt(wanted[v], hn::Load(d, limit + v * kLanes<float>)));
      // What is beyond the scale saturates when it is packed, and has no error.
      levels[v] = truncated(hn::IfThenElse(onScale, level, wanted[v]));
      before[v] = hn::IfThenElseZero(onScale, hn::Sub(wanted[v], level));
      hn::Store(before[v], d, now + v * kLanes<float>);
    });
    unrolled<kVectors / 2>([&](auto pair) KIP_INLINE_LAMBDA {
      const U16 words = packInOrder(levels[2 * pair], levels[2 * pair + 1]);
      hn::Store(hn::Min(words, fullWord), Tag<uint16_t>(), &band.levels.at[s][pair * kLanes<uint16_t>]);
    });
    hn::Store(laneUp(before[kVectors - 1], above1[s]), d, now - kLanes<float>);
    hn::Store(laneUp(before[kVectors - 2], above2[s]), d, now - 2 * kLanes<float>);
  }
}

/// Where a row is during the steps: at column first + i at step i, inside the image from step begin to before step end.
struct Place {
  int64_t first;
  int begin, end;
  int inside() const { return end - begin; }
};

/// What a band works on during some steps: a channel of so many rows from y on.
struct BandPlaces {
  int channel, y, rows;
  bool sharesPixels;  // with other threads
  Place of[kBand];
};

/// A band has more streams than the hardware prefetcher tracks. Their lines go to the second-level cache: in the
/// first one they would drive out one another.
KIP_INLINE void prefetchNext(const uint8_t* row, ptrdiff_t offset, int bytes) {
  constexpr int kForReading = 0, kSecondLevel = 2, kStepsAhead = 3, kCacheLine = 64;
  // A number: it may be outside the image, where there are no pointers.
  const uintptr_t from = reinterpret_cast<uintptr_t>(row) + offset + kStepsAhead * bytes;
  for (int i = 0; i < bytes; i += kCacheLine) {
    __builtin_prefetch(reinterpret_cast<const void*>(from + i), kForReading, kSecondLevel);
  }
}

template <class S, int kPerPixel, class Sample>
void readSamples(const Job& job, const BandPlaces& band, BandRows<Sample>& samples) {
  constexpr int kBytes = kPerPixel * sizeof(S);
  for (int row = 0; row < band.rows; ++row) {
    const Place& place = band.of[row];
    const uint8_t* from = job.src.row(0, band.y + row);
    prefetchNext(from, place.first * kBytes, kSteps * kBytes);
    if (place.inside() == 0) continue;
    from += (place.first + place.begin) * kBytes;
    alignas(64) uint8_t inside[kSteps * kBytes];
    if (place.inside() < kSteps) {
      std::fill_n(inside, sizeof inside, 0);
      std::copy(from, from + place.inside() * kBytes, inside + place.begin * kBytes);
      from = inside;
    }
    takeChannel<S, kPerPixel>(from, band.channel, samples.at[row]);
  }
}

template <class D, int kPerPixel>
void writeLevels(const Job& job, const BandPlaces& band, const BandRows<uint16_t>& levels) {
  constexpr int kBytes = kPerPixel * sizeof(D);
  for (int row = 0; row < band.rows; ++row) {
    const Place& place = band.of[row];
    uint8_t* to = job.dst.row(0, band.y + row);
    prefetchNext(to, place.first * kBytes, kSteps * kBytes);
    if (place.inside() == 0) continue;
    to += (place.first + place.begin) * kBytes;
    const int bytes = place.inside() * kBytes;
    if (band.sharesPixels) {
      putChannel<D, kPerPixel>(levels.at[row] + place.begin, to + band.channel * sizeof(D), place.inside());
    } else if (place.inside() == kSteps) {
      replaceChannel<D, kPerPixel>(levels.at[row], band.channel, to);
    } else {
      alignas(64) uint8_t inside[kSteps * kBytes];
      std::copy_n(to, bytes, inside + place.begin * kBytes);
      replaceChannel<D, kPerPixel>(levels.at[row], band.channel, inside);
      std::copy_n(inside + place.begin * kBytes, bytes, to);
    }
  }
}

/// The way from and to images.
template <class Sample>
struct BandAccess {
  void (*read)(const Job& job, const BandPlaces& band, BandRows<Sample>& samples);
  void (*write)(const Job& job, const BandPlaces& band, const BandRows<uint16_t>& levels);
};

/// The large part of what a band is worked on in.
template <class Sample>
struct BandMemory {
  static constexpr int kMostSkew = 4;
  static constexpr int kColumns = (kSteps + 3 * kMostSkew + kLanes<float> - 1) / kLanes<float> * kLanes<float>;

  BandRows<Sample> samples;
  BandRows<uint16_t> levels;
  alignas(64) float thresholds[kBand][kColumns];
  BandState<Sample> steps;
};
static_assert(sizeof(BandMemory<float>) <= kBandFloats * sizeof(float));

/// Error diffusion of channels one after the other. The errors of the last rows of one are those above the next one.
template <class Sample>
class DiffuseChannels {
 public:
  DiffuseChannels(const Job& job, const BandAccess<Sample>& access, const Scale& scale, bool normalize,
                  float* errorRows, float* band)
      : job_(job),
        reduction_(*static_cast<const Reduction*>(job.parameters)),
        access_(access),
        scale_(scale),
        normalize_(normalize),
        memory_(*new (band) BandMemory<Sample>) {
    for (int up = 0; up < kAbove; ++up) above_[up] = errorRows + up * reduction_.errorRowLength;
    std::fill_n(errorRows, kAbove * reduction_.errorRowLength, 0.f);
    band_.thresholdStep = reduction_.noise != nullptr;
    std::fill_n(band_.thresholds.at[0], kBand, scale.interval * 0.5f);
    memory_.samples = {};  // outside the image they have no error, but are computed with
  }

  void channels(int first, int last) {
    places_.sharesPixels = last - first < reduction_.channels.reduced;
    for (int c = first; c < last; ++c) channel(c);
  }

 private:
  void channel(int c) {
    places_.channel = c;
    for (int y = 0; y < job_.height; y += kBand) {
      places_.y = y, places_.rows = std::min(kBand, job_.height - y);
      switch (reduction_.method) {
        case kipDitherFS:
          band<kFloydSteinberg>();
          break;
        case kipDitherStucki:
          band<kStucki>();
          break;
        default:
          band<kJarvisJudiceNinke>();
      }
    }
  }

  template <const Diffusion& kDiffusion>
  void band() {
    skew_ = kDiffusion.skew;
    const int64_t steps = int64_t{job_.width} + skew_ * (places_.rows - 1);
    begin();
    for (int64_t s = 0; s < steps; s += kSteps) {
      place(s);
      access_.read(job_, places_, memory_.samples);
      toSteps([&](int row) KIP_INLINE_LAMBDA { return memory_.samples.at[row]; }, band_.samples);
      if (reduction_.noise != nullptr) readThresholds(s);
      diffuse<kDiffusion>({above_[0] + s, above_[1] + s});
      toRows(band_.levels, memory_.levels);
      access_.write(job_, places_, memory_.levels);
      for (int up = 1; up <= kAbove; ++up) keepErrors(up, s);
      std::memmove(band_.errors[0], band_.errors[kSteps], kHistory * sizeof(band_.errors[0]));
    }
  }

  template <const Diffusion& kDiffusion>
  void diffuse(const float* const (&above)[kAbove]) {
    if (std::is_same_v<Sample, float> || normalize_) {
      diffuseSteps<kDiffusion, true>(band_, scale_, above);
    } else if constexpr (!std::is_same_v<Sample, float>) {
      diffuseSteps<kDiffusion, false>(band_, scale_, above);
    }
  }

  /// Before a band's first step there are only the errors of the rows above.
  void begin() {
    std::fill_n(band_.errors[0], kHistory * band_.kErrorLanes, 0.f);
    for (int up = 1; up <= kAbove; ++up) {
      for (int s = -up * skew_; s < 0; ++s) {
        band_.errors[kHistory + s][errorLaneOf(-up)] = above_[up - 1][s + up * skew_];
      }
    }
    // The row above a single row will be two rows above the next one; these columns of it come before the first step.
    if (places_.rows == 1) std::copy_n(above_[0], skew_, above_[1]);
  }

  Place placeOf(int row, int64_t s) const {
    const int64_t first = s - row * skew_;
    const auto step = [](int64_t s) { return static_cast<int>(std::clamp<int64_t>(s, 0, kSteps)); };
    return {first, step(-first), step(job_.width - first)};
  }

  /// The places of all rows in the steps from s on, and their limits.
  void place(int64_t s) {
    bool inside = places_.rows == kBand;
    for (int row = 0; row < kBand; ++row) {
      places_.of[row] = row < places_.rows ? placeOf(row, s) : Place{};
      inside = inside && places_.of[row].inside() == kSteps;
    }
    band_.limitStep = !inside;
    setLimits(inside ? 1 : kSteps);
  }

  /// For each step and row, the scale's end or, where the row is outside the image, minus infinity.
  void setLimits(int steps) {
    const Tag<int32_t> d;
    const F32 full = set(scale_.full), none = set(-std::numeric_limits<float>::infinity());
    for (int lane = 0; lane < kBand; lane += kLanes<float>) {
      alignas(64) int32_t begin[kLanes<float>], end[kLanes<float>];
      for (int i = 0; i < kLanes<float>; ++i) {
        begin[i] = places_.of[rowAt(lane + i)].begin;
        end[i] = places_.of[rowAt(lane + i)].end;
      }
      const I32 first = hn::Load(d, begin), last = hn::Load(d, end);
      for (int step = 0; step < steps; ++step) {
        const I32 now = set<int32_t>(step);
        const auto inside = hn::AndNot(hn::VecFromMask(d, hn::Lt(now, first)), hn::VecFromMask(d, hn::Lt(now, last)));
        hn::Store(hn::IfThenElse(hn::MaskFromVec(as<float>(inside)), full, none), Tag<float>(),
                  &band_.limits.at[step][lane]);
      }
    }
  }

  /// Four rows together, from the column on that the last one of them is at.
  void readThresholds(int64_t s) {
    for (int group = 0; group < places_.rows; group += 4) {
      const float* values = reduction_.noise->row(places_.y + group);
      const Kip16s* columns = NoiseTables::columnsFrom(s - (group + 3) * skew_);
      for (int i = 0; i < kSteps + 3 * skew_; i += kLanes<float>) {
        F32 noise[4];
        loadNoise(values, columns + i, noise);
        for (int row = 0; row < 4; ++row) hn::Store(noise[row], Tag<float>(), &memory_.thresholds[group + row][i]);
      }
    }
    toSteps([&](int row) KIP_INLINE_LAMBDA { return memory_.thresholds[row] + (3 - row % 4) * skew_; },
            band_.thresholds);
  }

  /// The errors of the row that is `up` rows above the next band.
  void keepErrors(int up, int64_t s) {
    const Place place = placeOf(places_.rows - up, s);
    const int lane = errorLaneOf(places_.rows - up);
    for (int i = place.begin; i < place.end; ++i) above_[up - 1][place.first + i] = band_.errors[kHistory + i][lane];
  }

  const Job& job_;
  const Reduction& reduction_;
  const BandAccess<Sample> access_;
  const Scale scale_;
  const bool normalize_;
  float* above_[kAbove];
  int skew_ = 0;
  BandPlaces places_;
  BandMemory<Sample>& memory_;
  BandState<Sample>& band_ = memory_.steps;
};

template <class Sample, class S, class D>
BandAccess<Sample> accessFor(int perPixel) {
  switch (perPixel) {
    case 1:
      return {readSamples<S, 1, Sample>, writeLevels<D, 1>};
    case 3:
      return {readSamples<S, 3, Sample>, writeLevels<D, 3>};
    default:
      return {readSamples<S, 4, Sample>, writeLevels<D, 4>};
  }
}

}  // namespace

template <class S, class D>
void Diffuse<S, D>::channels(const Job& job, int first, int last) {
  constexpr bool kFloats = std::is_same_v<S, float>;
  constexpr bool kNormalize = kFloats || sizeof(S) != sizeof(D);
  using Sample = std::conditional_t<kFloats, float, uint16_t>;
  const auto& reduction = *static_cast<const Reduction*>(job.parameters);
  const float full = kFullScale<D>;
  const Scale scale = {full, intervalOf(reduction.intervals, full), reduction.intervals / full, kNormal<S>};
  float* errorRows = reduction.errorRows + first * kAbove * reduction.errorRowLength;
  float* band = reduction.bands + first * kBandFloats;
  DiffuseChannels<Sample>(job, accessFor<Sample, S, D>(reduction.channels.perPixel), scale, kNormalize, errorRows, band)
      .channels(first, last);
}

template struct Diffuse<Kip8u, Kip8u>;
template struct Diffuse<Kip16u, Kip16u>;
template struct Diffuse<Kip16s, Kip16s>;
template struct Diffuse<Kip16u, Kip8u>;
template struct Diffuse<Kip16s, Kip8u>;
template struct Diffuse<Kip32f, Kip8u>;
template struct Diffuse<Kip32f, Kip16u>;
template struct Diffuse<Kip32f, Kip16s>;

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();
