#include <utility>

#include "conversions.h"

namespace accuracy {
namespace {

using Encode444 = KipStatus(const Kip8u*, int, Kip8u* [3], int, KipiSize);
using Encode420 = KipStatus(const Kip8u*, int, Kip8u* [3], int[3], KipiSize);
using EncodeGray = KipStatus(const Kip8u*, int, Kip8u*, int, KipiSize);
using Decode444 = KipStatus(const Kip8u* [3], int, Kip8u*, int, KipiSize);
using Decode420 = KipStatus(const Kip8u* [3], int[3], Kip8u*, int, KipiSize);

/// The arguments of such functions.
struct Arguments {
  explicit Arguments(Pictures& pictures)
      : rgb(pictures.rgb()), rgbStep(3 * pictures.side()), size{pictures.side(), pictures.side()} {
    for (int p = 0; p < 3; ++p) result[p] = pictures.plane(p), source[p] = result[p], steps[p] = pictures.step(p);
  }

  void call(Encode444* function) { function(rgb, rgbStep, result, steps[0], size); }
  void call(Encode420* function) { function(rgb, rgbStep, result, steps, size); }
  void call(EncodeGray* function) { function(rgb, rgbStep, result[0], steps[0], size); }
  void call(Decode444* function) { function(source, steps[0], rgb, rgbStep, size); }
  void call(Decode420* function) { function(source, steps, rgb, rgbStep, size); }

  Kip8u *rgb, *result[3];
  const Kip8u* source[3];
  int rgbStep, steps[3];
  KipiSize size;
};

template <auto kFunction>
void convert(Pictures& pictures) {
  Arguments(pictures).call(kFunction);
}

void exchangeRedAndBlue(Pictures& pictures) {
  for (size_t i = 0; i < pictures.pixels(); ++i) std::swap(pictures.rgb()[3 * i], pictures.rgb()[3 * i + 2]);
}
template <auto kFunction>
void convertBgr(Pictures& pictures) {
  exchangeRedAndBlue(pictures);
  convert<kFunction>(pictures);
  exchangeRedAndBlue(pictures);
}

constexpr struct {
  KipFormat format;
  bool encodes;
  KipMatrix matrix;
  KipRange range;
  void (*convert)(Pictures&);
} kFunctions[] = {
    {kipFormatGray8, true, kipMatrixBT601, kipRangeFull, convert<kipiRGBToGray_8u_C3C1R>},
    {kipFormatYUV444P, true, kipMatrixBT601, kipRangeLimited, convert<kipiRGBToYCbCr_8u_C3P3R>},
    {kipFormatYUV444P, false, kipMatrixBT601, kipRangeLimited, convert<kipiYCbCrToRGB_8u_P3C3R>},
    {kipFormatYUV444P, false, kipMatrixBT709, kipRangeLimited, convertBgr<kipiYCbCrToBGR_709CSC_8u_P3C3R>},
    {kipFormatYUV420P, true, kipMatrixBT601, kipRangeLimited, convert<kipiRGBToYCbCr420_8u_C3P3R>},
    {kipFormatYUV420P, true, kipMatrixBT709, kipRangeLimited, convertBgr<kipiBGRToYCbCr420_709CSC_8u_C3P3R>},
    {kipFormatYUV420P, false, kipMatrixBT601, kipRangeLimited, convert<kipiYCbCr420ToRGB_8u_P3C3R>},
    {kipFormatYUV420P, false, kipMatrixBT709, kipRangeLimited, convertBgr<kipiYCbCr420ToBGR_709CSC_8u_P3C3R>},
};

}  // namespace

Convert kipcct7Convert(const PictureConversion& conversion) {
  for (const auto& function : kFunctions) {
    if (conversion.coding.range == function.range && conversion.format == function.format &&
        conversion.encodes == function.encodes && conversion.coding.matrix == function.matrix) {
      return function.convert;
    }
  }
  return {};
}

}  // namespace accuracy
