#include "converter.h"

#include <algorithm>
#include <climits>
#include <stdexcept>

namespace {

int chromaShiftY(const KipPicture& from, const KipPicture& to) {
  return std::max(kipFormatInfo(from.format)->chromaShiftY, kipFormatInfo(to.format)->chromaShiftY);
}

bool mayHaveFields(char scan) { return scan == 't' || scan == 'b' || scan == 'm'; }

}  // namespace

Converter::Converter(const KipPicture& from, const KipPicture& to, const KipPlanOptions& options, char scan)
    : whole_(makePlan(from, to, options)) {
  if (mayHaveFields(scan) && chromaShiftY(from, to) > 0) fields_ = makeFields(from, to, options);
}

void Converter::run(const Frame& from, Frame& to) {
  to.reserveAll();
  to.scan = from.scan;
  to.timing = from.timing;
  Step& step = fields_ && from.scan == Scan::kInterlaced ? *fields_ : *whole_;
  step.run(from.planes(), to.planes());
}

std::string Converter::description() const {
  if (!fields_) return whole_->description();
  return "progressive frames:\n" + whole_->description() + "interlaced frames:\n" + fields_->description();
}

int rowsInMemory(const KipPicture& from, const KipPicture& to, char scan) {
  if (!mayHaveFields(scan)) return from.height;
  const int unit = 2 << chromaShiftY(from, to);
  if (from.height > INT_MAX - unit) throw std::runtime_error(kipStatusText(kipStatusBadSize));
  return (from.height + unit - 1) / unit * unit;
}
