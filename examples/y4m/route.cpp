#include "route.h"

#include <algorithm>
#include <deque>
#include <map>
#include <stdexcept>
#include <type_traits>

namespace {

// What a frame is as an argument: functions that take a pointer or a step for all planes get those of the first.
struct From {
  const Kip8u* planes[3];
  operator const Kip8u*() const { return planes[0]; }
  operator const Kip8u**() { return planes; }
};

struct To {
  Kip8u* planes[3];
  operator Kip8u*() const { return planes[0]; }
  operator Kip8u**() { return planes; }
};

struct Steps {
  int steps[3];
  operator int() const { return steps[0]; }
  operator int*() { return steps; }
};

constexpr Kip8u kOpaque = 255;

template <auto function>
KipStatus call(const Frame& src, Frame& dst) {
  From from = {src.planes()[0], src.planes()[1], src.planes()[2]};
  To to = {dst.planes()[0], dst.planes()[1], dst.planes()[2]};
  Steps srcSteps = {src.steps()[0], src.steps()[1], src.steps()[2]};
  Steps dstSteps = {dst.steps()[0], dst.steps()[1], dst.steps()[2]};
  if constexpr (std::is_invocable_v<decltype(function), From&, Steps&, To&, Steps&, KipiSize>) {
    return function(from, srcSteps, to, dstSteps, src.size());
  } else {
    return function(from, srcSteps, to, dstSteps, src.size(), kOpaque);
  }
}

KipStatus exchangeRedAndBlue(const Frame& src, Frame& dst) {
  static const Kip32f kExchange[3][4] = {{0, 0, 1, 0}, {0, 1, 0, 0}, {1, 0, 0, 0}};
  return kipiColorTwist32f_8u_AC4R(src.planes()[0], src.steps()[0], dst.planes()[0], dst.steps()[0], src.size(),
                                   kExchange);
}

enum class Of { kProgressive, kInterlaced, kBoth };

}  // namespace

struct Conversion {
  const Format &from, &to;
  Of scan;
  KipStatus (*run)(const Frame&, Frame&);
};

namespace {

// The rows of two fields must not share chroma, so that from and to 4:2:0 it matters how a picture was scanned. Of what
// a format is converted to, that with the most chroma comes first.
// clang-format off
const Conversion kConversions[] = {
    {k420,   kRgb24, Of::kProgressive, call<kipiYCbCr420ToRGB_8u_P3C3R>},
    {k420,   kBgra,  Of::kProgressive, call<kipiYCbCr420ToBGR_8u_P3C4R>},
    {k420,   k422,   Of::kProgressive, call<kipiYCbCr420ToYCbCr422_8u_P3R>},
    {k420,   k422,   Of::kInterlaced,  call<kipiYCbCr420To422_Interlace_8u_P3R>},
    {k420,   k411,   Of::kProgressive, call<kipiYCbCr420To411_8u_P3R>},

    {k422,   kRgb24, Of::kBoth,        call<kipiYCbCr422ToRGB_8u_P3C3R>},
    {k422,   kYuy2,  Of::kBoth,        call<kipiYCbCr422_8u_P3C2R>},
    {k422,   k420,   Of::kProgressive, call<kipiYCbCr422ToYCbCr420_8u_P3R>},
    {k422,   k420,   Of::kInterlaced,  call<kipiYCbCr422To420_Interlace_8u_P3R>},
    {k422,   k411,   Of::kBoth,        call<kipiYCbCr422ToYCbCr411_8u_P3R>},
    {kYuy2,  kBgra,  Of::kBoth,        call<kipiYCbCr422ToBGR_8u_C2C4R>},

    {k411,   kBgra,  Of::kBoth,        call<kipiYCbCr411ToBGR_8u_P3C4R>},
    {k411,   k422,   Of::kBoth,        call<kipiYCbCr411ToYCbCr422_8u_P3R>},
    {k411,   k420,   Of::kProgressive, call<kipiYCbCr411To420_8u_P3R>},

    {k444,   kRgb24, Of::kBoth,        call<kipiYCbCrToRGB_8u_P3C3R>},
    {k444,   kBgra,  Of::kBoth,        call<kipiYCbCrToBGR_8u_P3C4R>},

    {kRgb24, k444,   Of::kBoth,        call<kipiRGBToYCbCr_8u_C3P3R>},
    {kRgb24, k422,   Of::kBoth,        call<kipiRGBToYCbCr422_8u_C3P3R>},
    {kRgb24, k420,   Of::kProgressive, call<kipiRGBToYCbCr420_8u_C3P3R>},

    {kBgra,  kRgba,  Of::kBoth,        exchangeRedAndBlue},
    {kBgra,  k422,   Of::kBoth,        call<kipiBGRToYCbCr422_8u_AC4P3R>},
    {kBgra,  k420,   Of::kProgressive, call<kipiBGRToYCbCr420_8u_AC4P3R>},
    {kBgra,  k411,   Of::kBoth,        call<kipiBGRToYCbCr411_8u_AC4P3R>},
    {kRgba,  k444,   Of::kBoth,        call<kipiRGBToYCbCr_8u_AC4P3R>},
};
// clang-format on

bool suits(Of conversion, Scan scan) {
  return conversion == Of::kBoth || (conversion == Of::kInterlaced) == (scan == Scan::kInterlaced);
}

/// The conversions of the shortest way; the table's order decides among equally long ones.
std::vector<const Conversion*> findWay(const Format& from, const Format& to, Scan scan) {
  std::map<const Format*, std::vector<const Conversion*>> ways = {{&from, {}}};
  std::deque<const Format*> ends = {&from};
  for (; !ends.empty() && !ways.contains(&to); ends.pop_front()) {
    for (const Conversion& next : kConversions) {
      if (&next.from != ends.front() || !suits(next.scan, scan) || ways.contains(&next.to)) continue;
      ways[&next.to] = ways[&next.from];
      ways[&next.to].push_back(&next);
      ends.push_back(&next.to);
    }
  }
  return ways.at(&to);
}

}  // namespace

Route::Route(const Format& from, const Format& to, Scan scan, KipiSize picture)
    : conversions_(findWay(from, to, scan)) {
  frames_.push_back(std::make_unique<Frame>(from, picture));
  for (const Conversion* conversion : conversions_) {
    frames_.push_back(std::make_unique<Frame>(conversion->to, picture));
  }
}

bool Route::hasRgb() const {
  return std::any_of(conversions_.begin(), conversions_.end(),
                     [](const Conversion* c) { return &c->to == &kRgb24 || &c->to == &kBgra; });
}

void Route::run() {
  for (size_t i = 0; i < conversions_.size(); ++i) {
    const KipStatus status = conversions_[i]->run(*frames_[i], *frames_[i + 1]);
    if (status != kipStatusOk) throw std::runtime_error("a conversion failed with status " + std::to_string(status));
  }
}
