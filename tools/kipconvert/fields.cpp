// Chroma of interlaced 4:2:0 belongs to the rows of one field. Its samples lie a quarter of the field's row distance
// below the upper row of a pair in the first field, and as far above the lower row in the second, which no site of a
// progressive picture says. The layout functions for interlaced chroma have these positions; they are for 8 bits, and
// stand between 4:2:0 and formats that have chroma in every row. All others are converted as two pictures, one for each
// field.

#include <climits>
#include <stdexcept>

#include "frame.h"
#include "steps.h"

namespace {

/// Both fields by one plan, each as a picture of half the height.
class FieldByField : public Step {
 public:
  FieldByField(KipPicture from, KipPicture to, const KipPlanOptions& options) {
    from.height /= 2;
    to.height /= 2;
    plan_ = makePlan(from, to, options);
  }

  void run(const KipPlanes& from, const KipPlanes& to) override {
    for (int field = 0; field < 2; ++field) plan_->run(rowsOf(field, from), rowsOf(field, to));
  }

  std::string description() const override { return plan_->description(); }

 private:
  static KipPlanes rowsOf(int field, KipPlanes planes) {
    for (int p = 0; p < 4; ++p) {
      if (planes.plane[p]) planes.plane[p] = static_cast<Kip8u*>(planes.plane[p]) + field * planes.step[p];
      planes.step[p] *= 2;
    }
    return planes;
  }

  std::unique_ptr<Step> plan_;
};

using Function = KipStatus (*)(const Kip8u* src[3], int srcStep[3], Kip8u* dst[3], int dstStep[3], KipiSize size);

/// A picture between two steps, in three planes of 8 bits, with a whole pair of columns at the right edge.
class Between {
 public:
  Between(KipFormat format, const KipPicture& like)
      : picture_(withFormat(like, format)), padded_(evenWidth(picture_)), shape_(padded_), frame_(shape_) {}
  Between(const Between&) = delete;

  const KipPicture& picture() const { return picture_; }
  /// Memory is there from the first call on.
  KipPlanes planes() {
    frame_.reserveAll();
    return frame_.planes();
  }

  void make(Function function, Between& from) {
    const KipPlanes src = from.planes(), dst = planes();
    const Kip8u* srcPlanes[3];
    Kip8u* dstPlanes[3];
    int srcSteps[3], dstSteps[3];
    for (int p = 0; p < 3; ++p) {
      srcPlanes[p] = static_cast<const Kip8u*>(src.plane[p]);
      dstPlanes[p] = static_cast<Kip8u*>(dst.plane[p]);
      srcSteps[p] = static_cast<int>(src.step[p]);
      dstSteps[p] = static_cast<int>(dst.step[p]);
    }
    const KipStatus status = function(srcPlanes, srcSteps, dstPlanes, dstSteps, {padded_.width, padded_.height});
    if (status != kipStatusOk) throw std::runtime_error(kipStatusText(status));
  }

 private:
  static KipPicture withFormat(KipPicture picture, KipFormat format) {
    picture.format = format;
    return picture;
  }
  static KipPicture evenWidth(KipPicture picture) {
    if (picture.width == INT_MAX) throw std::runtime_error(kipStatusText(kipStatusBadSize));
    picture.width += picture.width % 2;
    return picture;
  }

  const KipPicture picture_, padded_;
  const Shape shape_;
  Frame frame_;
};

/// A plan to one sampling of chroma, an interlaced layout function to another, and a plan from there.
class OverLayout : public Step {
 public:
  OverLayout(const KipPicture& from, const KipPicture& to, const KipPlanOptions& options, bool from420)
      : function_(from420 ? kipiYCbCr420To422_Interlace_8u_P3R : kipiYCbCr422To420_Interlace_8u_P3R),
        first_(from420 ? kipFormatYUV420P : kipFormatYUV422P, from420 ? from : to),
        second_(from420 ? kipFormatYUV422P : kipFormatYUV420P, from420 ? from : to),
        before_(makePlan(from, first_.picture(), options)),
        after_(makePlan(second_.picture(), to, options)),
        text_(from420 ? "interlaced 4:2:0 to 4:2:2\n" : "4:2:2 to interlaced 4:2:0\n") {}

  void run(const KipPlanes& from, const KipPlanes& to) override {
    before_->run(from, first_.planes());
    second_.make(function_, first_);
    after_->run(second_.planes(), to);
  }

  std::string description() const override { return before_->description() + text_ + after_->description(); }

 private:
  const Function function_;
  Between first_, second_;
  const std::unique_ptr<Step> before_, after_;
  const char* const text_;
};

bool is420Of8Bits(const KipFormatInfo& info) {
  return info.chromaShiftX == 1 && info.chromaShiftY == 1 && info.bits[0] == 8 && !info.hasAlpha;
}

}  // namespace

std::unique_ptr<Step> makeFields(const KipPicture& from, const KipPicture& to, const KipPlanOptions& options) {
  const KipFormatInfo &source = *kipFormatInfo(from.format), &result = *kipFormatInfo(to.format);
  const bool from420 = is420Of8Bits(source) && result.chromaShiftY == 0;
  const bool to420 = source.chromaShiftY == 0 && is420Of8Bits(result);
  if (options.chroma == kipChromaLinear && (from420 || to420)) {
    return std::make_unique<OverLayout>(from, to, options, from420);
  }
  return std::make_unique<FieldByField>(from, to, options);
}
