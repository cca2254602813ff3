#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "conversions.h"

namespace accuracy {
namespace {

void toGray(Pictures& pictures) {
  cv::Mat gray(pictures.side(), pictures.side(), CV_8UC1, pictures.plane(0));
  cv::cvtColor(cv::Mat(pictures.side(), pictures.side(), CV_8UC3, pictures.rgb()), gray, cv::COLOR_RGB2GRAY);
}

}  // namespace

/// BT.601 only; grey is of full range, all else of limited. Its encoder takes the chroma of the first pixel of a group.
Convert opencvConvert(const PictureConversion& conversion) {
  const bool toGrey = conversion.format == kipFormatGray8;
  if (conversion.coding.matrix != kipMatrixBT601 || conversion.isLimited() == toGrey) return {};
  if (toGrey) return toGray;
  return [encodes = conversion.encodes](Pictures& pictures) {
    cv::Mat rgb(pictures.side(), pictures.side(), CV_8UC3, pictures.rgb());
    cv::Mat yuv(pictures.side() * 3 / 2, pictures.side(), CV_8UC1, pictures.plane(0));
    encodes ? cv::cvtColor(rgb, yuv, cv::COLOR_RGB2YUV_I420) : cv::cvtColor(yuv, rgb, cv::COLOR_YUV2RGB_I420);
  };
}

}  // namespace accuracy
