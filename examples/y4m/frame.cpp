#include "frame.h"

#include <algorithm>
#include <cstring>

const Format k420 = {"420", {{1, 1, 1}, {1, 2, 2}, {1, 2, 2}}, "420jpeg"};
const Format k422 = {"422", {{1, 1, 1}, {1, 2, 1}, {1, 2, 1}}, "422"};
const Format k411 = {"411", {{1, 1, 1}, {1, 4, 1}, {1, 4, 1}}, "411"};
const Format k444 = {"444", {{1, 1, 1}, {1, 1, 1}, {1, 1, 1}}, "444"};
const Format kRgb24 = {"rgb24", {{3, 1, 1}}, ""};
const Format kBgra = {"bgra", {{4, 1, 1}}, ""};
const Format kYuy2 = {"yuy2", {{2, 1, 1}}, ""};
const Format kRgba = {"rgba", {{4, 1, 1}}, ""};

namespace {

int divideUp(int a, int b) { return (a + b - 1) / b; }

constexpr int kBlock = 4;  // columns that share chroma in 4:1:1, and rows that interlaced 4:2:0 is made of

}  // namespace

Frame::Frame(const Format& format, KipiSize picture)
    : format_(format),
      picture_(picture),
      padded_{divideUp(picture.width, kBlock) * kBlock, divideUp(picture.height, kBlock) * kBlock} {
  size_t offsets[3] = {}, total = 0;
  for (size_t p = 0; p < format.planes.size(); ++p) {
    const PlaneShape& plane = format.planes[p];
    steps_[p] = padded_.width / plane.perColumn * plane.bytes;
    offsets[p] = total;
    total += size_t(steps_[p]) * (padded_.height / plane.perRow);
  }
  memory_.resize(total);
  for (size_t p = 0; p < format.planes.size(); ++p) planes_[p] = memory_.data() + offsets[p];
}

int Frame::bytesOf(const PlaneShape& plane) const { return divideUp(picture_.width, plane.perColumn) * plane.bytes; }

int Frame::rowsOf(const PlaneShape& plane) const { return divideUp(picture_.height, plane.perRow); }

size_t Frame::bytes() const {
  size_t sum = 0;
  for (const PlaneShape& plane : format_.planes) sum += size_t(bytesOf(plane)) * rowsOf(plane);
  return sum;
}

void Frame::repeatEdges(int fields) {
  for (size_t p = 0; p < format_.planes.size(); ++p) {
    const PlaneShape& plane = format_.planes[p];
    const int step = steps_[p], filled = bytesOf(plane), rows = rowsOf(plane);
    for (int y = 0; y < rows; ++y) {
      Kip8u* row = planes_[p] + y * step;
      for (int x = filled; x < step; ++x) row[x] = row[x - plane.bytes];
    }
    for (int y = rows; y < padded_.height / plane.perRow; ++y) {
      std::memcpy(planes_[p] + y * step, planes_[p] + std::max(y - fields, 0) * step, step);
    }
  }
}
