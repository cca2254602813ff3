// libyuv decodes with any matrix, and encodes with that of BT.601.

#include <libyuv.h>

#include "conversions.h"

namespace accuracy {
namespace {

const libyuv::YuvConstants& constantsOf(const Coding& coding) {
  const bool limited = coding.range == kipRangeLimited;
  switch (coding.matrix) {
    case kipMatrixBT709:
      return limited ? libyuv::kYuvH709Constants : libyuv::kYuvF709Constants;
    case kipMatrixBT2020:
      return limited ? libyuv::kYuv2020Constants : libyuv::kYuvV2020Constants;
    default:
      return limited ? libyuv::kYuvI601Constants : libyuv::kYuvJPEGConstants;
  }
}

#define KIP_PLANE(p) pictures.plane(p), pictures.step(p)
#define KIP_PLANES KIP_PLANE(0), KIP_PLANE(1), KIP_PLANE(2)
#define KIP_SIZE pictures.side(), pictures.side()

/// By way of B, G, R, alpha.
Convert decoder(const PictureConversion& conversion) {
  const auto decode = conversion.sharesChroma() ? libyuv::I420ToARGBMatrix : libyuv::I444ToARGBMatrix;
  return [decode, &constants = constantsOf(conversion.coding)](Pictures& pictures) {
    std::vector<Kip8u> argb(4 * pictures.pixels());
    decode(KIP_PLANES, argb.data(), 4 * pictures.side(), &constants, KIP_SIZE);
    libyuv::ARGBToRAW(argb.data(), 4 * pictures.side(), pictures.rgb(), 3 * pictures.side(), KIP_SIZE);
  };
}

void encode444(Pictures& pictures) {
  std::vector<Kip8u> argb(4 * pictures.pixels());
  libyuv::RAWToARGB(pictures.rgb(), 3 * pictures.side(), argb.data(), 4 * pictures.side(), KIP_SIZE);
  libyuv::ARGBToI444(argb.data(), 4 * pictures.side(), KIP_PLANES, KIP_SIZE);
}

template <auto kFunction>
void encode420(Pictures& pictures) {
  kFunction(pictures.rgb(), 3 * pictures.side(), KIP_PLANES, KIP_SIZE);
}

void encodeGray(Pictures& pictures) { libyuv::RAWToJ400(pictures.rgb(), 3 * pictures.side(), KIP_PLANE(0), KIP_SIZE); }

}  // namespace

Convert libyuvConvert(const PictureConversion& conversion) {
  if (!conversion.encodes) return decoder(conversion);
  if (conversion.coding.matrix != kipMatrixBT601) return {};
  if (conversion.format == kipFormatGray8) return conversion.isLimited() ? Convert() : encodeGray;
  if (conversion.sharesChroma()) {
    return conversion.isLimited() ? encode420<libyuv::RAWToI420> : encode420<libyuv::RAWToJ420>;
  }
  return conversion.isLimited() ? Convert(encode444) : Convert();
}

}  // namespace accuracy
