#include "frame.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <stdexcept>

namespace {

int divideUp(int a, int shift) { return (a >> shift) + ((a & ((1 << shift) - 1)) != 0); }

}  // namespace

Shape::Shape(const KipPicture& picture, int memoryRows) {
  KipPicture padded = picture;
  padded.height = memoryRows;
  const KipStatus status = kipPictureLayout(&padded, 1, &memory_);
  if (status != kipStatusOk) throw std::runtime_error(kipStatusText(status));
  const KipFormatInfo& info = *kipFormatInfo(picture.format);
  planes_ = info.planes;
  for (int p = 0; p < planes_; ++p) {
    plane_[p] = {divideUp(picture.height, info.rowShift[p]), divideUp(memoryRows, info.rowShift[p])};
  }
}

size_t Shape::fileBytes() const {
  size_t sum = 0;
  for (int p = 0; p < planes_; ++p) sum += bytes(p);
  return sum;
}

uint8_t* Frame::reserve(size_t bytes) {
  if (bytes > reserved_) {
    const size_t size = std::min(std::max(bytes, 2 * reserved_), shape_.memoryBytes());
    uint8_t* const memory = static_cast<uint8_t*>(std::realloc(memory_.get(), size));
    if (!memory) throw std::bad_alloc();
    memory_.release();
    memory_.reset(memory);
    reserved_ = size;
  }
  return memory_.get();
}

KipPlanes Frame::planes() const {
  KipPlanes planes = {};
  for (int p = 0; p < shape_.planes(); ++p) {
    planes.plane[p] = memory_.get() + shape_.offset(p);
    planes.step[p] = shape_.step(p);
  }
  return planes;
}

void Frame::repeatLastRows() {
  const int fields = scan == Scan::kInterlaced ? 2 : 1;
  uint8_t* const memory = reserveAll();
  for (int p = 0; p < shape_.planes(); ++p) {
    const size_t step = shape_.step(p);
    for (int y = shape_.rows(p); y < shape_.memoryRows(p); ++y) {
      uint8_t* const row = memory + shape_.offset(p) + y * step;
      std::memcpy(row, row - std::min(y, fields) * step, step);
    }
  }
}
