// Peers from libyuv. Its names give the channels from the highest byte down: RAW is R, G, B in memory, RGB24 is
// B, G, R; ARGB is B, G, R, A and ABGR is R, G, B, A. It works with 6 to 8 bits per coefficient and averages pixels
// before weighting them.

#include <libyuv.h>

#include <algorithm>
#include <array>
#include <memory>
#include <tuple>
#include <utility>

#include "peers/peers.h"

namespace bench {
namespace {

/// The arguments (pointer, step) of N planes from row y on.
template <size_t... P>
auto planeArguments(const Plane* planes, int y, std::index_sequence<P...>) {
  return std::tuple_cat(std::make_tuple(planes[P].at + y * static_cast<ptrdiff_t>(planes[P].step), planes[P].step)...);
}

template <int S, int D>
auto arguments(const Plane* src, const Plane* dst, int y) {
  return std::tuple_cat(planeArguments(src, y, std::make_index_sequence<S>()),
                        planeArguments(dst, y, std::make_index_sequence<D>()));
}

/// A conversion of S source planes to D destination planes, with whatever arguments come after the size.
template <int S, int D, class Convert, class... More>
Prepare convert(Convert function, More... more) {
  return direct([=](const Call& call) {
    std::apply(function, std::tuple_cat(arguments<S, D>(call.src, call.dst, 0),
                                        std::make_tuple(call.width, call.height, more...)));
  });
}

/// Two conversions with ARGB between them, in strips that stay in the cache.
template <int S, int D, class First, class Second>
Prepare throughArgb(First first, Second second) {
  constexpr int kRows = 16;
  return [=](const Call& call) -> std::function<void()> {
    const int width = call.width, height = call.height;
    auto memory = std::make_shared<std::vector<uint8_t>>(static_cast<size_t>(4) * width * kRows);
    return [=] {
      const Plane strip = {memory->data(), 4 * width};
      for (int y = 0; y < height; y += kRows) {
        const auto size = std::make_tuple(width, std::min(kRows, height - y));
        const auto in = planeArguments(call.src, y, std::make_index_sequence<S>());
        const auto out = planeArguments(call.dst, y, std::make_index_sequence<D>());
        std::apply(first, std::tuple_cat(in, planeArguments(&strip, 0, std::make_index_sequence<1>()), size));
        std::apply(second, std::tuple_cat(planeArguments(&strip, 0, std::make_index_sequence<1>()), out, size));
      }
    };
  };
}

/// Reorders the four bytes of each pixel pair of packed 4:2:2.
Prepare shuffle(std::array<uint8_t, 4> order) {
  return direct([order](const Call& call) {
    uint8_t pattern[16];
    for (int i = 0; i < 16; ++i) pattern[i] = static_cast<uint8_t>(i / 4 * 4 + order[i % 4]);
    libyuv::ARGBShuffle(call.src[0].at, call.src[0].step, call.dst[0].at, call.dst[0].step, pattern, call.width / 2,
                        call.height);
  });
}

Prepare colorMatrix() {
  return direct([](const Call& call) {
    static constexpr int8_t kMatrix[16] = {50, 10, 4, 0, 5, 48, 11, 0, 7, 12, 45, 0, 0, 0, 0, 64};  // in 1/64
    libyuv::ARGBColorMatrix(call.src[0].at, call.src[0].step, call.dst[0].at, call.dst[0].step, kMatrix, call.width,
                            call.height);
  });
}

Prepare colorTable() {
  return direct([](const Call& call) {
    static const std::vector<uint8_t> kTable(4 * 256, 77);
    libyuv::RGBColorTable(call.dst[0].at, call.dst[0].step, kTable.data(), 0, 0, call.width, call.height);
  });
}

using namespace libyuv;
constexpr Result kSame = Result::kExact, kCoarse = Result::kCoarser;

// clang-format off
const PeerTable table("libyuv", {
  // RGB and YUV
  {{"kipiRGBToYUV_8u_C3P3R", "kipiRGBToYCbCr_8u_C3P3R"}, "RAWToARGB, ARGBToI444", kCoarse, throughArgb<1, 3>(RAWToARGB, ARGBToI444)},
  {{"kipiRGBToYUV_8u_AC4P4R", "kipiRGBToYCbCr_8u_AC4P3R"}, "ARGBToI444", kCoarse, convert<1, 3>(ARGBToI444)},
  {{"kipiYUVToRGB_8u_P3C3R", "kipiYCbCrToRGB_8u_P3C3R"}, "I444ToRAW", kCoarse, convert<3, 1>(I444ToRAW)},
  {{"kipiYCbCrToRGB_8u_P3C4R"}, "I444ToABGR", kCoarse, convert<3, 1>(I444ToABGR)},
  {{"kipiYCbCrToBGR_8u_P3C3R", "kipiYCbCrToBGR_709CSC_8u_P3C3R"}, "I444ToRGB24", kCoarse, convert<3, 1>(I444ToRGB24)},
  {{"kipiYCbCrToBGR_8u_P3C4R", "kipiYCbCrToBGR_709CSC_8u_P3C4R"}, "I444ToARGB", kCoarse, convert<3, 1>(I444ToARGB)},

  // To 4:2:2
  {{"kipiRGBToYUV422_8u_C3C2R", "kipiRGBToYCbCr422_8u_C3C2R", "kipiRGBToYCrCb422_8u_C3C2R"}, "RAWToARGB, ARGBToYUY2", kCoarse, throughArgb<1, 1>(RAWToARGB, ARGBToYUY2)},
  {{"kipiBGRToYCbCr422_8u_C3C2R"}, "RGB24ToARGB, ARGBToYUY2", kCoarse, throughArgb<1, 1>(RGB24ToARGB, ARGBToYUY2)},
  {{"kipiBGRToYCbCr422_8u_AC4C2R"}, "ARGBToYUY2", kCoarse, convert<1, 1>(ARGBToYUY2)},
  {{"kipiRGBToCbYCr422_8u_C3C2R", "kipiRGBToCbYCr422Gamma_8u_C3C2R"}, "RAWToARGB, ARGBToUYVY", kCoarse, throughArgb<1, 1>(RAWToARGB, ARGBToUYVY)},
  {{"kipiBGRToCbYCr422_709HDTV_8u_C3C2R"}, "RGB24ToARGB, ARGBToUYVY", kCoarse, throughArgb<1, 1>(RGB24ToARGB, ARGBToUYVY)},
  {{"kipiBGRToCbYCr422_8u_AC4C2R", "kipiBGRToCbYCr422_709HDTV_8u_AC4C2R"}, "ARGBToUYVY", kCoarse, convert<1, 1>(ARGBToUYVY)},
  {{"kipiRGBToYUV422_8u_C3P3R", "kipiRGBToYUV422_8u_C3P3", "kipiRGBToYCbCr422_8u_C3P3R"}, "RAWToARGB, ARGBToI422", kCoarse, throughArgb<1, 3>(RAWToARGB, ARGBToI422)},
  {{"kipiBGRToYCbCr422_8u_C3P3R"}, "RGB24ToARGB, ARGBToI422", kCoarse, throughArgb<1, 3>(RGB24ToARGB, ARGBToI422)},
  {{"kipiBGRToYCbCr422_8u_AC4P3R"}, "ARGBToI422", kCoarse, convert<1, 3>(ARGBToI422)},

  // To 4:2:0
  {{"kipiRGBToYUV420_8u_C3P3R", "kipiRGBToYUV420_8u_C3P3", "kipiRGBToYCbCr420_8u_C3P3R"}, "RAWToI420", kCoarse, convert<1, 3>(RAWToI420)},
  {{"kipiBGRToYCbCr420_8u_C3P3R", "kipiBGRToYCrCb420_8u_C3P3R", "kipiBGRToYCbCr420_709CSC_8u_C3P3R", "kipiBGRToYCrCb420_709CSC_8u_C3P3R"}, "RGB24ToI420", kCoarse, convert<1, 3>(RGB24ToI420)},
  {{"kipiRGBToYCrCb420_8u_AC4P3R"}, "ABGRToI420", kCoarse, convert<1, 3>(ABGRToI420)},
  {{"kipiBGRToYUV420_8u_AC4P3R", "kipiBGRToYCbCr420_8u_AC4P3R", "kipiBGRToYCrCb420_8u_AC4P3R", "kipiBGRToYCbCr420_709CSC_8u_AC4P3R",
    "kipiBGRToYCrCb420_709CSC_8u_AC4P3R", "kipiBGRToYCbCr420_709HDTV_8u_AC4P3R"}, "ARGBToI420", kCoarse, convert<1, 3>(ARGBToI420)},

  // From 4:2:2
  {{"kipiYUV422ToRGB_8u_C2C3R", "kipiYCbCr422ToRGB_8u_C2C3R", "kipiYCrCb422ToRGB_8u_C2C3R"}, "YUY2ToARGB, ARGBToRAW", kCoarse, throughArgb<1, 1>(YUY2ToARGB, ARGBToRAW)},
  {{"kipiYCbCr422ToBGR_8u_C2C3R"}, "YUY2ToARGB, ARGBToRGB24", kCoarse, throughArgb<1, 1>(YUY2ToARGB, ARGBToRGB24)},
  {{"kipiYCbCr422ToBGR_8u_C2C4R"}, "YUY2ToARGB", kCoarse, convert<1, 1>(YUY2ToARGB)},
  {{"kipiCbYCr422ToRGB_8u_C2C3R"}, "UYVYToARGB, ARGBToRAW", kCoarse, throughArgb<1, 1>(UYVYToARGB, ARGBToRAW)},
  {{"kipiCbYCr422ToBGR_709HDTV_8u_C2C3R"}, "UYVYToARGB, ARGBToRGB24", kCoarse, throughArgb<1, 1>(UYVYToARGB, ARGBToRGB24)},
  {{"kipiCbYCr422ToBGR_8u_C2C4R", "kipiCbYCr422ToBGR_709HDTV_8u_C2C4R"}, "UYVYToARGB", kCoarse, convert<1, 1>(UYVYToARGB)},
  {{"kipiYUV422ToRGB_8u_P3C3R", "kipiYUV422ToRGB_8u_P3C3", "kipiYCbCr422ToRGB_8u_P3C3R"}, "I422ToRAW", kCoarse, convert<3, 1>(I422ToRAW)},
  {{"kipiYCbCr422ToBGR_8u_P3C3R"}, "I422ToRGB24", kCoarse, convert<3, 1>(I422ToRGB24)},
  {{"kipiYUV422ToRGB_8u_P3AC4R"}, "I422ToABGR", kCoarse, convert<3, 1>(I422ToABGR)},

  // From 4:2:0
  {{"kipiYUV420ToRGB_8u_P3C3R", "kipiYUV420ToRGB_8u_P3C3", "kipiYCbCr420ToRGB_8u_P3C3R"}, "I420ToRAW", kCoarse, convert<3, 1>(I420ToRAW)},
  {{"kipiYUV420ToBGR_8u_P3C3R", "kipiYCbCr420ToBGR_8u_P3C3R", "kipiYCbCr420ToBGR_709CSC_8u_P3C3R"}, "I420ToRGB24", kCoarse, convert<3, 1>(I420ToRGB24)},
  {{"kipiYUV420ToRGB_8u_P3AC4R", "kipiYCrCb420ToRGB_8u_P3C4R"}, "I420ToABGR", kCoarse, convert<3, 1>(I420ToABGR)},
  {{"kipiYCbCr420ToBGR_8u_P3C4R", "kipiYCbCr420ToBGR_709HDTV_8u_P3C4R"}, "I420ToARGB", kCoarse, convert<3, 1>(I420ToARGB)},

  // Chroma layouts
  {{"kipiYCbCr422ToCbYCr422_8u_C2R", "kipiCbYCr422ToYCbCr422_8u_C2R"}, "ARGBShuffle", kSame, shuffle({1, 0, 3, 2})},
  {{"kipiYCbCr422ToYCrCb422_8u_C2R"}, "ARGBShuffle", kSame, shuffle({0, 3, 2, 1})},
  {{"kipiYCbCr422_8u_C2P3R", "kipiYCrCb422ToYCbCr422_8u_C2P3R"}, "YUY2ToI422", kSame, convert<1, 3>(YUY2ToI422)},
  {{"kipiCbYCr422ToYCbCr422_8u_C2P3R"}, "UYVYToI422", kSame, convert<1, 3>(UYVYToI422)},
  {{"kipiYCbCr422_8u_P3C2R", "kipiYCbCr422ToYCrCb422_8u_P3C2R"}, "I422ToYUY2", kSame, convert<3, 1>(I422ToYUY2)},
  {{"kipiYCbCr420_8u_P3P2R", "kipiYCrCb420ToYCbCr420_8u_P3P2R"}, "I420ToNV12", kSame, convert<3, 2>(I420ToNV12)},
  {{"kipiYCbCr420_8u_P2P3R", "kipiYCbCr420ToYCrCb420_8u_P2P3R", "kipiYCbCr420ToYCrCb420_Filter_8u_P2P3R"}, "NV12ToI420", kSame, convert<2, 3>(NV12ToI420)},
  {{"kipiYCbCr422ToYCbCr420_8u_P3R"}, "I422ToI420", kSame, convert<3, 3>(I422ToI420)},
  {{"kipiYCbCr422ToYCbCr420_8u_C2P3R", "kipiYCbCr422ToYCrCb420_8u_C2P3R", "kipiYCrCb422ToYCbCr420_8u_C2P3R"}, "YUY2ToI420", kSame, convert<1, 3>(YUY2ToI420)},
  {{"kipiYCbCr422ToYCbCr420_8u_C2P2R"}, "YUY2ToNV12", kSame, convert<1, 2>(YUY2ToNV12)},
  {{"kipiCbYCr422ToYCbCr420_8u_C2P3R", "kipiCbYCr422ToYCrCb420_8u_C2P3R"}, "UYVYToI420", kSame, convert<1, 3>(UYVYToI420)},
  {{"kipiCbYCr422ToYCbCr420_8u_C2P2R"}, "UYVYToNV12", kSame, convert<1, 2>(UYVYToNV12)},
  {{"kipiYCbCr420ToYCbCr422_8u_P3R", "kipiYCrCb420ToYCbCr422_8u_P3R"}, "I420ToI422", kSame, convert<3, 3>(I420ToI422)},
  {{"kipiYCrCb420ToYCbCr422_8u_P3C2R"}, "I420ToYUY2", kSame, convert<3, 1>(I420ToYUY2)},
  {{"kipiYCrCb420ToCbYCr422_8u_P3C2R"}, "I420ToUYVY", kSame, convert<3, 1>(I420ToUYVY)},

  // Packed 16-bit RGB
  {{"kipiYCbCr420ToRGB565_8u16u_P3C3R", "kipiYCbCr420ToBGR565_8u16u_P3C3R", "kipiYUV420ToRGB565_8u16u_P3C3R", "kipiYUV420ToBGR565_8u16u_P3C3R"},
    "I420ToRGB565", kCoarse, convert<3, 1>(I420ToRGB565)},
  {{"kipiYCbCr420ToRGB555_8u16u_P3C3R", "kipiYCbCr420ToBGR555_8u16u_P3C3R", "kipiYUV420ToRGB555_8u16u_P3C3R", "kipiYUV420ToBGR555_8u16u_P3C3R"},
    "I420ToARGB1555", kCoarse, convert<3, 1>(I420ToARGB1555)},
  {{"kipiYCbCr420ToRGB444_8u16u_P3C3R", "kipiYCbCr420ToBGR444_8u16u_P3C3R", "kipiYUV420ToRGB444_8u16u_P3C3R", "kipiYUV420ToBGR444_8u16u_P3C3R"},
    "I420ToARGB4444", kCoarse, convert<3, 1>(I420ToARGB4444)},
  {{"kipiYCbCr422ToRGB565_8u16u_P3C3R", "kipiYCbCr422ToBGR565_8u16u_P3C3R"}, "I422ToRGB565", kCoarse, convert<3, 1>(I422ToRGB565)},
  {{"kipiYCbCr422ToRGB565_8u16u_C2C3R", "kipiYCbCr422ToBGR565_8u16u_C2C3R"}, "YUY2ToARGB, ARGBToRGB565", kCoarse, throughArgb<1, 1>(YUY2ToARGB, ARGBToRGB565)},
  {{"kipiYCbCrToRGB565_8u16u_P3C3R", "kipiYCbCrToBGR565_8u16u_P3C3R"}, "I444ToARGB, ARGBToRGB565", kCoarse, throughArgb<3, 1>(I444ToARGB, ARGBToRGB565)},
  {{"kipiRGBToRGB565_8u16u_C3R", "kipiBGRToBGR565_8u16u_C3R"}, "RGB24ToARGB, ARGBToRGB565", kSame, throughArgb<1, 1>(RGB24ToARGB, ARGBToRGB565)},
  {{"kipiRGB565ToRGB_16u8u_C3R", "kipiBGR565ToBGR_16u8u_C3R"}, "RGB565ToARGB, ARGBToRGB24", kSame, throughArgb<1, 1>(RGB565ToARGB, ARGBToRGB24)},
  {{"kipiBGR565ToYCbCr420_16u8u_C3P3R", "kipiBGR565ToYCrCb420_16u8u_C3P3R", "kipiBGR565ToYUV420_16u8u_C3P3R", "kipiRGB565ToYUV420_16u8u_C3P3R"},
    "RGB565ToI420", kCoarse, convert<1, 3>(RGB565ToI420)},
  {{"kipiBGR555ToYCbCr420_16u8u_C3P3R", "kipiBGR555ToYCrCb420_16u8u_C3P3R", "kipiBGR555ToYUV420_16u8u_C3P3R"},
    "ARGB1555ToI420", kCoarse, convert<1, 3>(ARGB1555ToI420)},
  {{"kipiBGR565ToYCbCr422_16u8u_C3C2R"}, "RGB565ToARGB, ARGBToYUY2", kCoarse, throughArgb<1, 1>(RGB565ToARGB, ARGBToYUY2)},
  {{"kipiBGR565ToYCbCr422_16u8u_C3P3R", "kipiRGB565ToYUV422_16u8u_C3P3R"}, "RGB565ToARGB, ARGBToI422", kCoarse, throughArgb<1, 3>(RGB565ToARGB, ARGBToI422)},

  // Colour models
  {{"kipiRGBToGray_8u_C3C1R", "kipiColorToGray_8u_C3C1R"}, "RAWToJ400", kCoarse, convert<1, 1>(RAWToJ400)},
  {{"kipiRGBToGray_8u_AC4C1R", "kipiColorToGray_8u_AC4C1R"}, "ABGRToJ400", kCoarse, convert<1, 1>(ABGRToJ400)},
  {{"kipiColorTwist32f_8u_AC4R", "kipiColorTwist32f_8u_AC4IR"}, "ARGBColorMatrix", kCoarse, colorMatrix()},
  {{"kipiGammaFwd_8u_AC4IR", "kipiGammaInv_8u_AC4IR"}, "RGBColorTable", kSame, colorTable()},
});
// clang-format on

/// The dithered and the filtered conversions, which take more arguments.
const PeerTable more(
    "libyuv",
    {
        {{"kipiYCbCr420ToRGB565Dither_8u16u_P3C3R", "kipiYCbCr420ToBGR565Dither_8u16u_P3C3R",
          "kipiYUV420ToRGB565Dither_8u16u_P3C3R", "kipiYUV420ToBGR565Dither_8u16u_P3C3R"},
         "I420ToRGB565Dither",
         kCoarse,
         direct([](const Call& c) {
           std::apply(I420ToRGB565Dither,
                      std::tuple_cat(arguments<3, 1>(c.src, c.dst, 0), std::make_tuple(nullptr, c.width, c.height)));
         })},
        {{"kipiYCrCb420ToBGR_Filter_8u_P3C4R"}, "I420ToARGBMatrixFilter", kCoarse, direct([](const Call& c) {
           std::apply(I420ToARGBMatrixFilter,
                      std::tuple_cat(arguments<3, 1>(c.src, c.dst, 0),
                                     std::make_tuple(&kYuvI601Constants, c.width, c.height, kFilterBilinear)));
         })},
    });

}  // namespace
}  // namespace bench
