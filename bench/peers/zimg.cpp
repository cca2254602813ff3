// Peers from zimg, which works on planes in exact float arithmetic; only its curves are approximated.

#include <zimg.h>

#include <cstdlib>
#include <memory>

#include "peers/peers.h"

namespace bench {
namespace {

/// What is said of an image beyond its size. Interleaved images are taken as planes of the same memory.
struct Format {
  zimg_pixel_type_e type = ZIMG_PIXEL_BYTE;
  zimg_color_family_e family = ZIMG_COLOR_RGB;
  zimg_matrix_coefficients_e matrix = ZIMG_MATRIX_RGB;
  unsigned chroma = 0;  // halvings of the chroma planes, both ways
  unsigned bits = 8;
  zimg_transfer_characteristics_e transfer = ZIMG_TRANSFER_UNSPECIFIED;
  int planes = 3;
};

unsigned bytesOf(zimg_pixel_type_e type) { return type == ZIMG_PIXEL_BYTE ? 1 : type == ZIMG_PIXEL_FLOAT ? 4 : 2; }

zimg_image_format describe(const Format& format, const Call& call) {
  zimg_image_format f;
  zimg_image_format_default(&f, ZIMG_API_VERSION);
  f.width = call.width, f.height = call.height;
  f.pixel_type = format.type;
  f.subsample_w = f.subsample_h = format.chroma;
  f.color_family = format.family;
  f.matrix_coefficients = format.matrix;
  f.transfer_characteristics = format.transfer;
  if (format.transfer != ZIMG_TRANSFER_UNSPECIFIED) f.color_primaries = ZIMG_PRIMARIES_BT709;
  f.depth = format.bits;
  f.pixel_range = ZIMG_RANGE_FULL;
  f.chroma_location = ZIMG_CHROMA_CENTER;
  return f;
}

/// Tight planes from the first plane's memory on.
template <class Buffer>
Buffer bufferOf(const Format& format, const Call& call, const Plane& first) {
  Buffer buffer = {};
  buffer.version = ZIMG_API_VERSION;
  uint8_t* at = first.at;
  for (int p = 0; p < format.planes; ++p) {
    const unsigned halvings = p == 0 ? 0 : format.chroma;
    const ptrdiff_t step = static_cast<ptrdiff_t>(bytesOf(format.type)) * (call.width >> halvings);
    buffer.plane[p].data = at;
    buffer.plane[p].stride = step;
    buffer.plane[p].mask = ZIMG_BUFFER_MAX;
    at += step * (call.height >> halvings);
  }
  return buffer;
}

Prepare graph(Format from, Format to, zimg_dither_type_e dither = ZIMG_DITHER_NONE) {
  return [=](const Call& call) -> std::function<void()> {
    zimg_graph_builder_params params;
    zimg_graph_builder_params_default(&params, ZIMG_API_VERSION);
    params.dither_type = dither;
    params.resample_filter = params.resample_filter_uv = ZIMG_RESIZE_POINT;
    params.allow_approximate_gamma = 1;
    params.cpu_type = ZIMG_CPU_AUTO_64B;
    const zimg_image_format in = describe(from, call), out = describe(to, call);
    const std::shared_ptr<zimg_filter_graph> built(zimg_filter_graph_build(&in, &out, &params), zimg_filter_graph_free);
    if (!built) return {};
    size_t bytes = 0;
    zimg_filter_graph_get_tmp_size(built.get(), &bytes);
    const std::shared_ptr<void> scratch(std::aligned_alloc(64, (bytes + 63) / 64 * 64), std::free);
    const auto src = bufferOf<zimg_image_buffer_const>(from, call, call.src[0]);
    const auto dst = bufferOf<zimg_image_buffer>(to, call, call.dst[0]);
    return
        [=] { zimg_filter_graph_process(built.get(), &src, &dst, scratch.get(), nullptr, nullptr, nullptr, nullptr); };
  };
}

constexpr Result kSame = Result::kExact, kCoarse = Result::kCoarser;
constexpr Format kRgb = {}, kRgbFloat = {.type = ZIMG_PIXEL_FLOAT, .bits = 32};
constexpr Format kRgb16 = {.type = ZIMG_PIXEL_WORD, .bits = 16};
constexpr Format kYuv444 = {.family = ZIMG_COLOR_YUV, .matrix = ZIMG_MATRIX_ST170_M};
constexpr Format kYuv420 = {.family = ZIMG_COLOR_YUV, .matrix = ZIMG_MATRIX_ST170_M, .chroma = 1};
constexpr Format kYCoCg = {.family = ZIMG_COLOR_YUV, .matrix = ZIMG_MATRIX_YCGCO};
constexpr Format kGray = {.family = ZIMG_COLOR_GREY, .matrix = ZIMG_MATRIX_ST170_M, .planes = 1};
constexpr Format kLinear = {.type = ZIMG_PIXEL_FLOAT, .bits = 32, .transfer = ZIMG_TRANSFER_LINEAR};
constexpr Format kCoded = {.type = ZIMG_PIXEL_FLOAT, .bits = 32, .transfer = ZIMG_TRANSFER_BT709};
constexpr Format kLinear16 = {.type = ZIMG_PIXEL_WORD, .bits = 16, .transfer = ZIMG_TRANSFER_LINEAR};
constexpr Format kCoded16 = {.type = ZIMG_PIXEL_WORD, .bits = 16, .transfer = ZIMG_TRANSFER_BT709};
constexpr Format kLinear8 = {.transfer = ZIMG_TRANSFER_LINEAR}, kCoded8 = {.transfer = ZIMG_TRANSFER_BT709};
constexpr Format kRgb3Bits = {.bits = 3};

// clang-format off
const PeerTable table("zimg", {
  {{"kipiRGBToYUV_8u_P3R", "kipiRGBToYCbCr_8u_P3R"}, "RGB to YUV", kSame, graph(kRgb, kYuv444)},
  {{"kipiYUVToRGB_8u_P3R", "kipiYCbCrToRGB_8u_P3R"}, "YUV to RGB", kSame, graph(kYuv444, kRgb)},
  {{"kipiRGBToYUV420_8u_P3R", "kipiRGBToYUV420_8u_P3"}, "RGB to YUV420", kSame, graph(kRgb, kYuv420)},
  {{"kipiYUV420ToRGB_8u_P3R", "kipiYUV420ToRGB_8u_P3"}, "YUV420 to RGB", kSame, graph(kYuv420, kRgb)},

  {{"kipiRGBToYCoCg_8u_C3P3R"}, "RGB to YCoCg", kSame, graph(kRgb, kYCoCg)},
  {{"kipiYCoCgToRGB_8u_P3C3R"}, "YCoCg to RGB", kSame, graph(kYCoCg, kRgb)},
  {{"kipiRGBToGray_8u_C3C1R"}, "RGB to grey", kSame, graph(kRgb, kGray)},

  {{"kipiGammaFwd_8u_C3R", "kipiGammaFwd_8u_P3R"}, "BT.709 encode", kCoarse, graph(kLinear8, kCoded8)},
  {{"kipiGammaInv_8u_C3R", "kipiGammaInv_8u_P3R"}, "BT.709 decode", kCoarse, graph(kCoded8, kLinear8)},
  {{"kipiGammaFwd_16u_C3R", "kipiGammaFwd_16u_P3R"}, "BT.709 encode", kCoarse, graph(kLinear16, kCoded16)},
  {{"kipiGammaInv_16u_C3R", "kipiGammaInv_16u_P3R"}, "BT.709 decode", kCoarse, graph(kCoded16, kLinear16)},
  {{"kipiGammaFwd_32f_C3R", "kipiGammaFwd_32f_P3R"}, "BT.709 encode", kCoarse, graph(kLinear, kCoded)},
  {{"kipiGammaInv_32f_C3R", "kipiGammaInv_32f_P3R"}, "BT.709 decode", kCoarse, graph(kCoded, kLinear)},

  {{"kipiReduceBits_8u_C3R/None"}, "to 3 bits", kSame, graph(kRgb, kRgb3Bits)},
  {{"kipiReduceBits_8u_C3R/Bayer"}, "to 3 bits, ordered", kSame, graph(kRgb, kRgb3Bits, ZIMG_DITHER_ORDERED)},
  {{"kipiReduceBits_8u_C3R/BayerNoise"}, "to 3 bits, random", kSame, graph(kRgb, kRgb3Bits, ZIMG_DITHER_RANDOM)},
  {{"kipiReduceBits_8u_C3R/FS", "kipiReduceBits_8u_C3R/FSNoise"}, "to 3 bits, diffusion", kSame, graph(kRgb, kRgb3Bits, ZIMG_DITHER_ERROR_DIFFUSION)},
  {{"kipiReduceBits_16u8u_C3R/None"}, "16 to 3 bits", kSame, graph(kRgb16, kRgb3Bits)},
  {{"kipiReduceBits_16u8u_C3R/Bayer"}, "16 to 3 bits, ordered", kSame, graph(kRgb16, kRgb3Bits, ZIMG_DITHER_ORDERED)},
  {{"kipiReduceBits_16u8u_C3R/FS"}, "16 to 3 bits, diffusion", kSame, graph(kRgb16, kRgb3Bits, ZIMG_DITHER_ERROR_DIFFUSION)},
  {{"kipiReduceBits_32f8u_C3R/None"}, "float to 3 bits", kSame, graph(kRgbFloat, kRgb3Bits)},
  {{"kipiReduceBits_32f8u_C3R/Bayer"}, "float to 3 bits, ordered", kSame, graph(kRgbFloat, kRgb3Bits, ZIMG_DITHER_ORDERED)},
  {{"kipiReduceBits_32f8u_C3R/FS"}, "float to 3 bits, diffusion", kSame, graph(kRgbFloat, kRgb3Bits, ZIMG_DITHER_ERROR_DIFFUSION)},
});
// clang-format on

}  // namespace
}  // namespace bench
