#include "reference.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <random>
#include <string>

namespace kip::test {

int64_t rowBytes(const KipFormatInfo& info, int plane, int width) {
  return (width + info.groupPixels[plane] - 1) / info.groupPixels[plane] * info.groupBytes[plane];
}
int rowCount(const KipFormatInfo& info, int plane, int height) {
  return (height + (1 << info.rowShift[plane]) - 1) >> info.rowShift[plane];
}

namespace {

constexpr size_t kGap = 13;  // odd, so that rows of 16-bit samples are at odd addresses

using Number = double;

struct Weight {
  int index;
  Number weight;
};

/// Where sample i of a grid lies, in pixels.
struct Axis {
  int distance;
  Number first;
};

Axis axisOf(const KipPicture& picture, int channel, bool vertical) {
  const KipFormatInfo& info = *kipFormatInfo(picture.format);
  if (info.family != kipFamilyYCbCr || channel == 0 || channel == 3) return {1, 0};
  const int distance = 1 << (vertical ? info.chromaShiftY : info.chromaShiftX);
  KipChromaSite site = picture.site;
  if (site == kipSiteUnspecified) site = picture.range == kipRangeFull ? kipSiteCenter : kipSiteLeft;
  const bool onFirst = vertical ? site == kipSiteTopLeft : site != kipSiteCenter;
  return {distance, onFirst ? 0 : (distance - 1) / 2.0};
}

/// Linear interpolation at a place.
void addPlace(std::vector<Weight>& weights, Axis from, Number place, Number weight) {
  const Number beyond = (place - from.first) / from.distance, left = std::floor(beyond);
  weights.push_back({static_cast<int>(left), weight * (1 - (beyond - left))});
  weights.push_back({static_cast<int>(left) + 1, weight * (beyond - left)});
}

std::vector<Weight> weightsOf(Axis from, Axis to, int i, KipChromaFilter filter) {
  std::vector<Weight> weights;
  if (filter == kipChromaNearest) return {{i * to.distance / from.distance, 1}};
  const Number place = i * to.distance + to.first;
  if (to.distance <= from.distance) {
    addPlace(weights, from, place, 1);
    return weights;
  }
  // The mean of the pixels that are within half a distance, by how much of them is.
  const Number half = to.distance / 2.0;
  for (int pixel = static_cast<int>(place - half) - 2; pixel <= place + half + 2; ++pixel) {
    const Number part = std::min(pixel + 0.5, place + half) - std::max(pixel - 0.5, place - half);
    if (part > 0) addPlace(weights, from, pixel, part / to.distance);
  }
  return weights;
}

/// Scale and zero of a channel's numbers.
struct Coding {
  Number scale, zero;
};
Coding codingOf(const KipPicture& picture, int channel) {
  const KipFormatInfo& info = *kipFormatInfo(picture.format);
  if (info.isFloat) return {1, 0};
  const int bits = info.bits[channel];
  const Number full = std::exp2(bits) - 1, step = std::exp2(bits - 8);
  const bool chroma = info.family == kipFamilyYCbCr && (channel == 1 || channel == 2);
  if (picture.range != kipRangeLimited || channel == 3) return {full, chroma ? std::exp2(bits - 1) : 0};
  return {(chroma && picture.matrix != kipMatrixYCgCo ? 224 : 219) * step, (chroma ? 128 : 16) * step};
}

using Triple = std::array<Number, 3>;

Triple lumaOf(KipMatrix matrix) {
  const Triple weights = matrix == kipMatrixBT709    ? Triple{0.2126, 0.7152, 0.0722}
                         : matrix == kipMatrixBT2020 ? Triple{0.2627, 0.678, 0.0593}
                                                     : Triple{0.299, 0.587, 0.114};
  return weights;
}

Triple toRgb(const KipPicture& picture, Triple v) {
  const KipFormatFamily family = kipFormatInfo(picture.format)->family;
  if (family == kipFamilyRGB) return v;
  if (family == kipFamilyGray) return {v[0], v[0], v[0]};
  if (picture.matrix == kipMatrixYCgCo) return {v[0] - v[1] + v[2], v[0] + v[1], v[0] - v[1] - v[2]};
  const auto [kr, kg, kb] = lumaOf(picture.matrix);
  const Number r = v[0] + (2 - 2 * kr) * v[2], b = v[0] + (2 - 2 * kb) * v[1];
  return {r, (v[0] - kr * r - kb * b) / kg, b};
}

Triple fromRgb(const KipPicture& picture, Triple v) {
  const KipFormatFamily family = kipFormatInfo(picture.format)->family;
  if (family == kipFamilyRGB) return v;
  const auto [r, g, b] = v;
  if (picture.matrix == kipMatrixYCgCo) return {(r + 2 * g + b) / 4, (2 * g - r - b) / 4, (r - b) / 2};
  const auto [kr, kg, kb] = lumaOf(picture.matrix);
  const Number y = kr * r + kg * g + kb * b;
  return {y, (b - y) / (2 - 2 * kb), (r - y) / (2 - 2 * kr)};
}

/// Whether channels stay what they are: one family, or luma, and nothing said about matrices that differ.
bool keepsChannels(const KipPicture& from, const KipPicture& to) {
  const KipFormatFamily a = kipFormatInfo(from.format)->family, b = kipFormatInfo(to.format)->family;
  if (a == b && a != kipFamilyYCbCr) return true;
  if (a == kipFamilyRGB || b == kipFamilyRGB) return false;
  return a == kipFamilyGray || from.matrix == to.matrix || to.matrix == kipMatrixUnspecified ||
         to.matrix == kipMatrixIdentity;
}

}  // namespace

Memory::Memory(const KipPicture& picture, bool bottomUp, uint8_t value) : picture_(picture), value_(value) {
  const KipFormatInfo& info = *kipFormatInfo(picture.format);
  size_t bytes = kGap;
  for (int p = 0; p < info.planes; ++p)
    bytes += (rowBytes(info, p, picture.width) + kGap) * rowCount(info, p, picture.height);
  bytes_.assign(bytes, value);
  planes = {};
  uint8_t* at = bytes_.data() + kGap;
  for (int p = 0; p < info.planes; ++p) {
    const int rows = rowCount(info, p, picture.height);
    const ptrdiff_t step = rowBytes(info, p, picture.width) + kGap;
    planes.plane[p] = bottomUp ? at + (rows - 1) * step : at;
    planes.step[p] = bottomUp ? -step : step;
    at += rows * step;
  }
}

bool Memory::gapsAreWhole() const {
  std::vector<uint8_t> copy = bytes_;
  const KipFormatInfo& info = *kipFormatInfo(picture_.format);
  for (int p = 0; p < info.planes; ++p) {
    for (int y = 0; y < rowCount(info, p, picture_.height); ++y) {
      const auto* row = static_cast<const uint8_t*>(planes.plane[p]) + y * planes.step[p];
      std::fill_n(copy.begin() + (row - bytes_.data()), rowBytes(info, p, picture_.width), value_);
    }
  }
  return std::all_of(copy.begin(), copy.end(), [this](uint8_t b) { return b == value_; });
}

std::vector<uint8_t> Memory::rows() const {
  std::vector<uint8_t> all;
  const KipFormatInfo& info = *kipFormatInfo(picture_.format);
  for (int p = 0; p < info.planes; ++p) {
    for (int y = 0; y < rowCount(info, p, picture_.height); ++y) {
      const auto* row = static_cast<const uint8_t*>(planes.plane[p]) + y * planes.step[p];
      all.insert(all.end(), row, row + rowBytes(info, p, picture_.width));
    }
  }
  return all;
}

void Memory::fillRandom(uint32_t seed) {
  std::mt19937 random(seed);
  const KipFormatInfo& info = *kipFormatInfo(picture_.format);
  for (int p = 0; p < info.planes; ++p) {
    for (int y = 0; y < rowCount(info, p, picture_.height); ++y) {
      auto* row = static_cast<uint8_t*>(planes.plane[p]) + y * planes.step[p];
      for (int64_t i = 0; i < rowBytes(info, p, picture_.width); ++i) row[i] = random() >> 24;
      for (int64_t i = 0; info.isFloat && i < rowBytes(info, p, picture_.width); i += 4) {
        const float v = random() / 4294967296.f;
        std::memcpy(row + i, &v, 4);
      }
    }
  }
}

namespace {

/// The letters of a plane in KipFormatInfo::order.
std::string lettersOf(const KipFormatInfo& info, int plane) {
  std::string order = info.order;
  for (; plane > 0; --plane) order.erase(0, order.find(' ') + 1);
  return order.substr(0, order.find(' '));
}

/// The channel of a letter; -1 for unused ones.
int channelOf(char letter) {
  static const std::string kLetters[4] = {"RY", "GU", "BV", "A"};
  for (int c = 0; c < 4; ++c) {
    if (kLetters[c].find(letter) != std::string::npos) return c;
  }
  return -1;
}

Number sampleAt(const uint8_t* from, const KipFormatInfo& info, bool high) {
  if (info.isFloat) {
    float v;
    std::memcpy(&v, from, 4);
    return v;
  }
  if (info.sampleBytes == 1) return *from;
  const int bits = info.bits[0], v = from[0] | from[1] << 8;
  return high ? v >> (16 - bits) : v & ((1 << bits) - 1);
}

uint32_t little32(const uint8_t* from) { return from[0] | from[1] << 8 | from[2] << 16 | uint32_t{from[3]} << 24; }

/// The samples of a group that share bytes, in memory order.
std::vector<Number> unpackGroup(const uint8_t* from, const KipFormatInfo& info) {
  std::vector<Number> samples;
  if (info.format == kipFormatV210) {
    for (int i = 0; i < 12; ++i) samples.push_back(little32(from + i / 3 * 4) >> i % 3 * 10 & 1023);
    return samples;
  }
  int shift = info.bits[0] + info.bits[1] + info.bits[2];
  for (int k = 0; k < 3; ++k) {
    const int bits = info.bits[k];
    shift -= bits;
    samples.push_back((from[0] | from[1] << 8) >> shift & ((1 << bits) - 1));
  }
  return samples;
}

}  // namespace

Samples readSamples(const KipPicture& picture, const KipPlanes& planes) {
  const KipFormatInfo& info = *kipFormatInfo(picture.format);
  Samples samples;
  for (int c = 0; c < 4; ++c) {
    if (info.bits[c] == 0) continue;
    const bool chroma = info.family == kipFamilyYCbCr && (c == 1 || c == 2);
    const auto size = [&](int pixels, int shift) { return chroma ? (pixels + (1 << shift) - 1) >> shift : pixels; };
    samples.channel[c].width = size(picture.width, info.chromaShiftX);
    samples.channel[c].height = size(picture.height, info.chromaShiftY);
  }
  const bool high = info.name[0] == 'p' || info.format == kipFormatY210;
  for (int p = 0; p < info.planes; ++p) {
    std::string letters = lettersOf(info, p);
    if (info.format == kipFormatV210) letters = "UYVYUYVYUYVY";
    if (info.sampleBytes == 0 && info.family == kipFamilyRGB) std::erase(letters, 'X');
    for (int y = 0; y < rowCount(info, p, picture.height); ++y) {
      const auto* row = static_cast<const uint8_t*>(planes.plane[p]) + y * planes.step[p];
      std::array<int, 4> x = {};
      for (int64_t at = 0; at < rowBytes(info, p, picture.width); at += info.groupBytes[p]) {
        std::vector<Number> group;
        if (info.sampleBytes == 0) group = unpackGroup(row + at, info);
        for (size_t k = 0; k < letters.size(); ++k) {
          const int c = channelOf(letters[k]);
          if (c < 0 || info.bits[c] == 0) continue;
          Samples::Channel& channel = samples.channel[c];
          if (x[c]++ >= channel.width) continue;
          channel.at.push_back(group.empty() ? sampleAt(row + at + k * info.sampleBytes, info, high) : group[k]);
        }
      }
    }
  }
  return samples;
}

Samples convertReal(const KipPicture& from, const Samples& samples, const KipPicture& to, KipChromaFilter filter) {
  const KipFormatInfo &source = *kipFormatInfo(from.format), &result = *kipFormatInfo(to.format);
  Samples converted;
  for (int c = 0; c < 4; ++c) {
    if (result.bits[c] == 0) continue;
    Samples::Channel& channel = converted.channel[c];
    const Axis toX = axisOf(to, c, false), toY = axisOf(to, c, true);
    channel.width = (to.width + toX.distance - 1) / toX.distance;
    channel.height = (to.height + toY.distance - 1) / toY.distance;
    const Coding out = codingOf(to, c);
    // The number that a source channel has at the place of the result's sample.
    const auto number = [&](int k, int x, int y) -> Number {
      const Samples::Channel& in = samples.channel[k];
      if (in.at.empty()) return k == 3 ? 1 : 0;
      const Coding coding = codingOf(from, k);
      Number sum = 0;
      for (const Weight& wy : weightsOf(axisOf(from, k, true), toY, y, filter)) {
        const int row = std::clamp(wy.index, 0, in.height - 1);
        for (const Weight& wx : weightsOf(axisOf(from, k, false), toX, x, filter)) {
          sum += wy.weight * wx.weight * in.at[row * in.width + std::clamp(wx.index, 0, in.width - 1)];
        }
      }
      return (sum - coding.zero) / coding.scale;
    };
    for (int y = 0; y < channel.height; ++y) {
      for (int x = 0; x < channel.width; ++x) {
        Number v;
        if (c == 3) {
          v = number(3, x, y);
        } else if (keepsChannels(from, to)) {
          const bool onlyLuma = source.family == kipFamilyGray && c > 0;
          v = onlyLuma ? 0 : number(c, x, y);
        } else {
          v = fromRgb(to, toRgb(from, {number(0, x, y), number(1, x, y), number(2, x, y)}))[c];
        }
        channel.at.push_back(v * out.scale + out.zero);
      }
    }
  }
  return converted;
}

}  // namespace kip::test
