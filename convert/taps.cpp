#include "taps.h"

#include <algorithm>
#include <numeric>

namespace kip::convert {
namespace {

// Weights of interpolation and of means, and their products.
constexpr int kInterpolated = 16, kMean = 8;

int floorDivide(int a, int b) { return a >= 0 ? a / b : -((-a + b - 1) / b); }

/// Sums up weights of source samples, which may lie left of the first one.
class Weights {
 public:
  void add(int place, int weight) {
    if (weight != 0) at_[place + kOffset] += weight;
  }
  int first() const {
    return static_cast<int>(std::find_if(at_, at_ + kPlaces, [](int w) { return w; }) - at_) - kOffset;
  }
  int operator[](int place) const { return place + kOffset < kPlaces ? at_[place + kOffset] : 0; }
  /// The last place with a weight.
  int last() const {
    int place = kPlaces - 1;
    while (at_[place] == 0) --place;
    return place - kOffset;
  }

 private:
  static constexpr int kOffset = 16, kPlaces = 48;
  int at_[kPlaces] = {};
};

/// The source at a pixel, linearly between its samples, times `scale`.
void addPixel(Weights& weights, Grid from, int pixel, int scale) {
  const int distance4 = 4 << from.shift;
  const int place4 = 4 * pixel - from.offset4;
  const int left = floorDivide(place4, distance4), beyond4 = place4 - left * distance4;
  const int right = kInterpolated * beyond4 / distance4;
  weights.add(left, scale * (kInterpolated - right));
  weights.add(left + 1, scale * right);
}

/// The source at a place between pixels, which its own samples are further apart than.
void addPlace(Weights& weights, Grid from, int place4) {
  const int distance4 = 4 << from.shift;
  const int beyondFirst4 = place4 - from.offset4;
  const int left = floorDivide(beyondFirst4, distance4), beyond4 = beyondFirst4 - left * distance4;
  const int right = kInterpolated * beyond4 / distance4;
  weights.add(left, kMean * (kInterpolated - right));
  weights.add(left + 1, kMean * right);
}

/// Sample `i` of the result, by linear interpolation or as a mean of pixels.
Weights linear(Grid from, Grid to, int i) {
  Weights weights;
  const int place4 = 4 * (i << to.shift) + to.offset4;
  if (to.shift <= from.shift) {
    addPlace(weights, from, place4);
    return weights;
  }
  // Pixels within half the distance of two samples; those that are half within count half.
  const int width = 1 << to.shift, half4 = 2 * width;
  for (int pixel = floorDivide(place4 - half4, 4); 4 * pixel - 2 < place4 + half4; ++pixel) {
    const int begin4 = std::max(4 * pixel - 2, place4 - half4), end4 = std::min(4 * pixel + 2, place4 + half4);
    if (end4 > begin4) addPixel(weights, from, pixel, kMean * (end4 - begin4) / (4 * width));
  }
  return weights;
}

Weights nearest(Grid from, Grid to, int i) {
  Weights weights;
  weights.add((i << to.shift) >> from.shift, kMean * kInterpolated);
  return weights;
}

}  // namespace

Taps makeTaps(Grid from, Grid to, KipChromaFilter filter) {
  Taps taps{};
  taps.phases = from.shift > to.shift ? 1 << (from.shift - to.shift) : 1;
  taps.advance = to.shift > from.shift ? 1 << (to.shift - from.shift) : 1;
  Weights phase[Taps::kPhases];
  int divisor = kMean * kInterpolated;
  for (int p = 0; p < taps.phases; ++p) {
    phase[p] = filter == kipChromaNearest ? nearest(from, to, p) : linear(from, to, p);
    taps.first[p] = phase[p].first();
    taps.count = std::max(taps.count, phase[p].last() - taps.first[p] + 1);
    for (int place = taps.first[p]; place <= phase[p].last(); ++place) divisor = std::gcd(divisor, phase[p][place]);
  }
  taps.sum = kMean * kInterpolated / divisor;
  for (int p = 0; p < taps.phases; ++p) {
    for (int t = 0; t < taps.count; ++t) taps.weight[p][t] = phase[p][taps.first[p] + t] / divisor;
  }
  return taps;
}

}  // namespace kip::convert
