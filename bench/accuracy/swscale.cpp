extern "C" {
#include <libavutil/pixfmt.h>
#include <libswscale/swscale.h>
}

#include <memory>

#include "conversions.h"

namespace accuracy {
namespace {

int coefficientsOf(const Coding& coding) {
  return coding.matrix == kipMatrixBT709    ? SWS_CS_ITU709
         : coding.matrix == kipMatrixBT2020 ? SWS_CS_BT2020
                                            : SWS_CS_ITU601;
}

constexpr int kAccurate = SWS_BILINEAR | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT | SWS_FULL_CHR_H_INP;

}  // namespace

/// With the flags that make it most accurate.
Convert swscaleConvert(const PictureConversion& conversion) {
  const bool encodes = conversion.encodes;
  const AVPixelFormat format = conversion.format == kipFormatGray8 ? AV_PIX_FMT_GRAY8 : AV_PIX_FMT_YUV444P;
  const AVPixelFormat from = encodes ? AV_PIX_FMT_RGB24 : format, to = encodes ? format : AV_PIX_FMT_RGB24;
  const std::shared_ptr<SwsContext> context(
      sws_getContext(kSide, kSide, from, kSide, kSide, to, kAccurate, nullptr, nullptr, nullptr), sws_freeContext);
  const int* coefficients = sws_getCoefficients(coefficientsOf(conversion.coding));
  const int yuvIsFull = !conversion.isLimited(), rgbIsFull = 1, unchanged = 1 << 16;
  if (!context || sws_setColorspaceDetails(context.get(), coefficients, encodes ? rgbIsFull : yuvIsFull, coefficients,
                                           encodes ? yuvIsFull : rgbIsFull, 0, unchanged, unchanged) < 0) {
    return {};
  }
  return [=](Pictures& pictures) {
    const int rgbSteps[4] = {3 * pictures.side()};
    const int yuvSteps[4] = {pictures.step(0), pictures.step(1), pictures.step(2)};
    Kip8u* rgb[4] = {pictures.rgb()};
    Kip8u* yuv[4] = {pictures.plane(0), pictures.plane(1), pictures.plane(2)};
    sws_scale(context.get(), encodes ? rgb : yuv, encodes ? rgbSteps : yuvSteps, 0, kSide, encodes ? yuv : rgb,
              encodes ? yuvSteps : rgbSteps);
  };
}

}  // namespace accuracy
