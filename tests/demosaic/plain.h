// Demosaicing one pixel after the other, on whole images: what the library must give to the byte.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "support/reference.h"

namespace kip {

enum Colour { kRed, kGreen, kBlue };
constexpr Colour otherThan(Colour chroma) { return chroma == kRed ? kBlue : kRed; }

/// A sensor image, mirrored beyond its edges.
template <class T>
struct Mosaic {
  int width, height;
  KipiBayerGrid grid;
  std::vector<T> samples;

  int at(int x, int y) const { return samples[static_cast<size_t>(inside(y, height)) * width + inside(x, width)]; }
  Colour colour(int x, int y) const {
    static constexpr const char* kCells[] = {"BGGR", "RGGB", "GBRG", "GRBG"};
    const char letter = kCells[grid][(y & 1) * 2 + (x & 1)];
    return letter == 'R' ? kRed : letter == 'G' ? kGreen : kBlue;
  }
  /// What a row has besides green.
  Colour colourOfRow(int y) const { return colour(0, y) == kGreen ? colour(1, y) : colour(0, y); }

 private:
  static int inside(int i, int n) {
    const int period = 2 * (n - 1), phase = (i % period + period) % period;
    return phase < n ? phase : period - phase;
  }
};

template <class T>
Pixel bilinear(const Mosaic<T>& m, int x, int y) {
  const auto two = [](int a, int b) { return (a + b + 1) >> 1; };
  const auto four = [](int a, int b, int c, int d) { return (a + b + c + d + 2) >> 2; };
  const int left = m.at(x - 1, y), right = m.at(x + 1, y), up = m.at(x, y - 1), down = m.at(x, y + 1);
  const Colour own = m.colour(x, y), ofRow = m.colourOfRow(y);
  Pixel px;
  px[own] = m.at(x, y);
  if (own == kGreen) {
    px[ofRow] = two(left, right), px[otherThan(ofRow)] = two(up, down);
    return px;
  }
  px[otherThan(own)] = four(m.at(x - 1, y - 1), m.at(x + 1, y - 1), m.at(x - 1, y + 1), m.at(x + 1, y + 1));
  const int dV = std::abs(m.at(x, y - 2) - m.at(x, y + 2)), dH = std::abs(m.at(x - 2, y) - m.at(x + 2, y));
  const bool border = x < 2 || y < 2 || x >= m.width - 2 || y >= m.height - 2;
  px[kGreen] = border || dV == dH ? four(left, right, up, down) : dV < dH ? two(up, down) : two(left, right);
  return px;
}

template <class T>
std::vector<Pixel> bilinear(const Mosaic<T>& m) {
  std::vector<Pixel> all;
  for (int y = 0; y < m.height; ++y) {
    for (int x = 0; x < m.width; ++x) all.push_back(bilinear(m, x, y));
  }
  return all;
}

/// Two Halley steps from a third of the bits.
inline float cubeRoot(float t) {
  int32_t bits;
  std::memcpy(&bits, &t, sizeof bits);
  bits = static_cast<int32_t>(static_cast<float>(bits) * 0.33333334f) + 709958130;
  float y;
  std::memcpy(&y, &bits, sizeof y);
  for (int i = 0; i < 2; ++i) {
    const float y3 = y * y * y;
    y = y - y * ((y3 - t) / (2 * y3 + t));
  }
  return y;
}

using Lab = std::array<float, 3>;

template <class T>
Lab labOf(const std::array<float, 3>& rgb) {
  static constexpr float k16[3][3] = {{6.6216944e-6f, 5.74074e-6f, 2.896587e-6f},
                                      {3.2451514e-6f, 1.0912642e-5f, 1.1012283e-6f},
                                      {2.7096837e-7f, 1.6705045e-6f, 1.3317548e-5f}};
  static constexpr double kXyz[3][3] = {
      {0.412453, 0.357580, 0.180423}, {0.212671, 0.715160, 0.072169}, {0.019334, 0.119193, 0.950227}};
  static constexpr double kWhite[3] = {0.950456, 1, 1.088754};
  float f[3];
  for (int i = 0; i < 3; ++i) {
    float k[3];
    for (int c = 0; c < 3; ++c) k[c] = sizeof(T) == 2 ? k16[i][c] : static_cast<float>(kXyz[i][c] / kWhite[i] / 255);
    const float t = k[0] * rgb[0] + k[1] * rgb[1] + k[2] * rgb[2];
    f[i] = t > 0.008856f ? cubeRoot(t) : 7.787037f * t + 0.13793103f;
  }
  return {116.0f * f[1] - 16.0f, 500.0f * (f[0] - f[1]), 200.0f * (f[1] - f[2])};
}

/// Values for each pixel of an image and of a frame around it.
template <class T>
class Field {
 public:
  static constexpr int kFrame = 3;

  Field(int width, int height)
      : width_(width), height_(height), values_(static_cast<size_t>(width + 2 * kFrame) * (height + 2 * kFrame)) {}
  T& operator()(int x, int y) { return values_[static_cast<size_t>(y + kFrame) * (width_ + 2 * kFrame) + x + kFrame]; }
  /// Sets the image and so many pixels around it to of(x, y).
  template <class Function>
  void fill(int around, const Function& of) {
    for (int y = -around; y < height_ + around; ++y) {
      for (int x = -around; x < width_ + around; ++x) (*this)(x, y) = of(x, y);
    }
  }

 private:
  int width_, height_;
  std::vector<T> values_;
};

struct Step {
  int x, y;
};
constexpr Step kAcross = {1, 0}, kDown = {0, 1};

/// An image as interpolated in one direction.
template <class T>
class Candidate {
 public:
  Candidate(const Mosaic<T>& m, Step along)
      : rgb(m.width, m.height), lab(m.width, m.height), m_(m), along_(along), green_(m.width, m.height) {
    green_.fill(3, [&](int x, int y) { return green(x, y); });
    rgb.fill(2, [&](int x, int y) { return pixel(x, y); });
    lab.fill(2, [&](int x, int y) { return labOf<T>(rgb(x, y)); });
  }

  Field<std::array<float, 3>> rgb;
  Field<Lab> lab;

 private:
  float green(int x, int y) const {
    if (m_.colour(x, y) == kGreen) return m_.at(x, y);
    const auto c = [&](int i) { return m_.at(x + i * along_.x, y + i * along_.y); };
    const float mean = (2 * (c(-1) + c(0) + c(1)) - (c(-2) + c(2))) / 4.0f;
    return std::clamp<float>(mean, std::min(c(-1), c(1)), std::max(c(-1), c(1)));
  }

  std::array<float, 3> pixel(int x, int y) {
    const auto difference = [&](int dx, int dy) { return m_.at(x + dx, y + dy) - green_(x + dx, y + dy); };
    const auto plusGreen = [&](float d) { return std::clamp<float>(green_(x, y) + d, 0, static_cast<T>(-1)); };
    const Colour own = m_.colour(x, y), ofRow = m_.colourOfRow(y);
    std::array<float, 3> px;
    px[kGreen] = green_(x, y);
    if (own == kGreen) {
      px[ofRow] = plusGreen((difference(-1, 0) + difference(1, 0)) / 2);
      px[otherThan(ofRow)] = plusGreen((difference(0, -1) + difference(0, 1)) / 2);
    } else {
      px[own] = m_.at(x, y);
      px[otherThan(own)] =
          plusGreen((difference(-1, -1) + difference(1, -1) + difference(-1, 1) + difference(1, 1)) / 4);
    }
    return px;
  }

  const Mosaic<T>& m_;
  Step along_;
  Field<float> green_;
};

inline float lightnessApart(const Lab& p, const Lab& q) { return std::fabs(p[0] - q[0]); }
inline float chromaApart(const Lab& p, const Lab& q) {
  const float a = p[1] - q[1], b = p[2] - q[2];
  return a * a + b * b;
}

template <class Function>
void forNeighbours(const Function& with) {
  for (int i = 0; i < 9; ++i) with(i % 3 - 1, i / 3 - 1);
}

/// Each pixel from the candidate with the more homogeneous surroundings.
template <class T>
std::vector<Pixel> homogeneityDirected(const Mosaic<T>& m) {
  Candidate<T> across(m, kAcross), down(m, kDown);
  Field<int> more(m.width, m.height);  // neighbours alike across, less those down
  more.fill(1, [&](int x, int y) {
    const auto tolerance = [&](auto apart) {
      const auto busiest = [&](Field<Lab>& lab, Step s) {
        return std::max(apart(lab(x, y), lab(x - s.x, y - s.y)), apart(lab(x, y), lab(x + s.x, y + s.y)));
      };
      return std::min(busiest(across.lab, kAcross), busiest(down.lab, kDown));
    };
    const float lightness = tolerance(lightnessApart), chroma = tolerance(chromaApart);
    const auto alike = [&](Field<Lab>& lab) {
      int count = 0;
      forNeighbours([&](int dx, int dy) {
        const Lab &p = lab(x, y), &q = lab(x + dx, y + dy);
        count += (dx || dy) && lightnessApart(p, q) <= lightness && chromaApart(p, q) <= chroma;
      });
      return count;
    };
    return alike(across.lab) - alike(down.lab);
  });

  std::vector<Pixel> result;
  for (int y = 0; y < m.height; ++y) {
    for (int x = 0; x < m.width; ++x) {
      int sum = 0;
      forNeighbours([&](int dx, int dy) { sum += more(x + dx, y + dy); });
      Pixel px;
      for (int c = 0; c < 3; ++c) {
        const float p = across.rgb(x, y)[c], q = down.rgb(x, y)[c];
        px[c] = static_cast<int>(std::nearbyint(sum > 0 ? p : sum < 0 ? q : (p + q) / 2));
      }
      result.push_back(px);
    }
  }
  return result;
}

}  // namespace kip
