// Peers from swscale. Without SWS_ACCURATE_RND its fast paths truncate.

extern "C" {
#include <libavutil/opt.h>
#include <libswscale/swscale.h>
}

#include <memory>

#include "peers/peers.h"

namespace bench {
namespace {

enum class Dither { kNone = 1, kBayer = 2, kDiffusion = 3 };  // its own numbers

/// Of its flags, the rows have those with which it is fastest: accurate rounding wins for some formats.
Prepare scale(AVPixelFormat from, AVPixelFormat to, int flags = SWS_POINT, Dither dither = Dither::kNone) {
  return [=](const Call& call) -> std::function<void()> {
    SwsContext* made = sws_alloc_context();
    av_opt_set_int(made, "srcw", call.width, 0);
    av_opt_set_int(made, "srch", call.height, 0);
    av_opt_set_int(made, "dstw", call.width, 0);
    av_opt_set_int(made, "dsth", call.height, 0);
    av_opt_set_int(made, "src_format", from, 0);
    av_opt_set_int(made, "dst_format", to, 0);
    av_opt_set_int(made, "sws_flags", flags, 0);
    av_opt_set_int(made, "sws_dither", static_cast<int>(dither), 0);
    av_opt_set_int(made, "threads", 1, 0);
    if (sws_init_context(made, nullptr, nullptr) < 0) return {};
    const std::shared_ptr<SwsContext> context(made, sws_freeContext);
    return [=] {
      const uint8_t* in[4] = {};
      uint8_t* out[4] = {};
      int inSteps[4] = {}, outSteps[4] = {};
      for (int p = 0; p < 4; ++p) {
        in[p] = call.src[p].at, inSteps[p] = call.src[p].step;
        out[p] = call.dst[p].at, outSteps[p] = call.dst[p].step;
      }
      sws_scale(context.get(), in, inSteps, 0, call.height, out, outSteps);
    };
  };
}

constexpr int kAccurate = SWS_BILINEAR | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT | SWS_FULL_CHR_H_INP;
constexpr int kFilter = SWS_BILINEAR;
constexpr Result kSame = Result::kExact, kCoarse = Result::kCoarser;

// clang-format off
const PeerTable table("swscale", {
  {{"kipiRGBToYUV_8u_C3P3R", "kipiRGBToYCbCr_8u_C3P3R"}, "rgb24 to yuv444p", kCoarse, scale(AV_PIX_FMT_RGB24, AV_PIX_FMT_YUV444P)},
  {{"kipiYUVToRGB_8u_P3C3R", "kipiYCbCrToRGB_8u_P3C3R"}, "yuv444p to rgb24", kCoarse, scale(AV_PIX_FMT_YUV444P, AV_PIX_FMT_RGB24, kFilter)},
  {{"kipiRGBToYUV420_8u_C3P3R", "kipiRGBToYUV420_8u_C3P3", "kipiRGBToYCbCr420_8u_C3P3R"}, "rgb24 to yuv420p", kSame, scale(AV_PIX_FMT_RGB24, AV_PIX_FMT_YUV420P, kAccurate)},
  {{"kipiBGRToYCbCr420_8u_C3P3R", "kipiBGRToYCrCb420_8u_C3P3R"}, "bgr24 to yuv420p", kCoarse, scale(AV_PIX_FMT_BGR24, AV_PIX_FMT_YUV420P)},
  {{"kipiBGRToYUV420_8u_AC4P3R", "kipiBGRToYCbCr420_8u_AC4P3R", "kipiBGRToYCrCb420_8u_AC4P3R"}, "bgra to yuv420p", kSame, scale(AV_PIX_FMT_BGRA, AV_PIX_FMT_YUV420P, kAccurate)},
  {{"kipiYUV420ToRGB_8u_P3C3R", "kipiYUV420ToRGB_8u_P3C3", "kipiYCbCr420ToRGB_8u_P3C3R"}, "yuv420p to rgb24", kCoarse, scale(AV_PIX_FMT_YUV420P, AV_PIX_FMT_RGB24, kFilter)},
  {{"kipiYUV420ToBGR_8u_P3C3R", "kipiYCbCr420ToBGR_8u_P3C3R"}, "yuv420p to bgr24", kCoarse, scale(AV_PIX_FMT_YUV420P, AV_PIX_FMT_BGR24, kFilter)},
  {{"kipiYUV420ToRGB_8u_P3AC4R", "kipiYCrCb420ToRGB_8u_P3C4R"}, "yuv420p to rgba", kCoarse, scale(AV_PIX_FMT_YUV420P, AV_PIX_FMT_RGBA, kFilter)},
  {{"kipiYCbCr420ToBGR_8u_P3C4R"}, "yuv420p to bgra", kCoarse, scale(AV_PIX_FMT_YUV420P, AV_PIX_FMT_BGRA, kFilter)},
  {{"kipiYCrCb420ToBGR_Filter_8u_P3C4R"}, "yuv420p to bgra, accurate", kSame, scale(AV_PIX_FMT_YUV420P, AV_PIX_FMT_BGRA, kAccurate)},
  {{"kipiBGRToYCbCr422_8u_AC4C2R"}, "bgra to yuyv422", kSame, scale(AV_PIX_FMT_BGRA, AV_PIX_FMT_YUYV422, kAccurate)},
  {{"kipiBGRToCbYCr422_8u_AC4C2R"}, "bgra to uyvy422", kSame, scale(AV_PIX_FMT_BGRA, AV_PIX_FMT_UYVY422, kAccurate)},
  {{"kipiYCbCr422ToBGR_8u_C2C3R"}, "yuyv422 to bgr24", kCoarse, scale(AV_PIX_FMT_YUYV422, AV_PIX_FMT_BGR24, kFilter)},
  {{"kipiCbYCr422ToBGR_8u_C2C4R"}, "uyvy422 to bgra", kCoarse, scale(AV_PIX_FMT_UYVY422, AV_PIX_FMT_BGRA, kFilter)},

  {{"kipiYCbCr422ToYCbCr420_8u_C2P3R"}, "yuyv422 to yuv420p", kSame, scale(AV_PIX_FMT_YUYV422, AV_PIX_FMT_YUV420P)},
  {{"kipiYCrCb420ToYCbCr422_8u_P3C2R"}, "yuv420p to yuyv422", kSame, scale(AV_PIX_FMT_YUV420P, AV_PIX_FMT_YUYV422)},
  {{"kipiYCbCr420ToYCbCr422_8u_P3R"}, "yuv420p to yuv422p", kSame, scale(AV_PIX_FMT_YUV420P, AV_PIX_FMT_YUV422P)},
  {{"kipiYCbCr420_8u_P2P3R"}, "nv12 to yuv420p", kSame, scale(AV_PIX_FMT_NV12, AV_PIX_FMT_YUV420P)},
  {{"kipiYCbCr420_8u_P3P2R"}, "yuv420p to nv12", kSame, scale(AV_PIX_FMT_YUV420P, AV_PIX_FMT_NV12)},

  {{"kipiYCbCr420ToRGB565_8u16u_P3C3R", "kipiYCbCr420ToBGR565_8u16u_P3C3R", "kipiYUV420ToRGB565_8u16u_P3C3R", "kipiYUV420ToBGR565_8u16u_P3C3R"},
    "yuv420p to rgb565", kCoarse, scale(AV_PIX_FMT_YUV420P, AV_PIX_FMT_RGB565LE, kFilter)},
  {{"kipiYCbCr420ToRGB565Dither_8u16u_P3C3R", "kipiYCbCr420ToBGR565Dither_8u16u_P3C3R", "kipiYUV420ToRGB565Dither_8u16u_P3C3R",
    "kipiYUV420ToBGR565Dither_8u16u_P3C3R"}, "yuv420p to rgb565, bayer", kCoarse, scale(AV_PIX_FMT_YUV420P, AV_PIX_FMT_RGB565LE, kFilter, Dither::kBayer)},
  {{"kipiRGBToRGB565_8u16u_C3R", "kipiBGRToBGR565_8u16u_C3R"}, "bgr24 to rgb565", kSame, scale(AV_PIX_FMT_BGR24, AV_PIX_FMT_RGB565LE)},
  {{"kipiRGB565ToRGB_16u8u_C3R", "kipiBGR565ToBGR_16u8u_C3R"}, "rgb565 to bgr24", kSame, scale(AV_PIX_FMT_RGB565LE, AV_PIX_FMT_BGR24)},

  {{"kipiRGBToGray_8u_C3C1R"}, "rgb24 to gray8", kSame, scale(AV_PIX_FMT_RGB24, AV_PIX_FMT_GRAY8, kAccurate)},

  // To 3, 3 and 2 bits, packed into one byte
  {{"kipiReduceBits_8u_C3R/FS"}, "rgb24 to rgb8, diffusion", kSame, scale(AV_PIX_FMT_RGB24, AV_PIX_FMT_RGB8, SWS_BILINEAR, Dither::kDiffusion)},
  {{"kipiReduceBits_8u_C3R/Bayer"}, "rgb24 to rgb8, bayer", kSame, scale(AV_PIX_FMT_RGB24, AV_PIX_FMT_RGB8, SWS_BILINEAR, Dither::kBayer)},

  {{"kipiCFAToRGB_8u_C1C3R"}, "bayer to rgb24", kCoarse, scale(AV_PIX_FMT_BAYER_BGGR8, AV_PIX_FMT_RGB24, kFilter)},
  {{"kipiCFAToRGB_16u_C1C3R"}, "bayer to rgb48", kCoarse, scale(AV_PIX_FMT_BAYER_BGGR16LE, AV_PIX_FMT_RGB48LE, kFilter)},
});
// clang-format on

}  // namespace
}  // namespace bench
