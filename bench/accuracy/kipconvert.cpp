#include <memory>
#include <stdexcept>

#include "conversions.h"

namespace accuracy {

/// Means are those of a group, which has one colour.
Convert kipconvertConvert(const PictureConversion& conversion) {
  KipPlanOptions options = {};
  options.size = sizeof options, options.threads = 1;
  options.chroma = conversion.encodes ? kipChromaLinear : kipChromaNearest;
  const int side = Pictures(conversion).side();
  const KipPicture rgb = {kipFormatRGB24, side, side, kipMatrixIdentity, kipRangeFull, kipSiteUnspecified};
  const Coding& coding = conversion.coding;
  const KipPicture yuv = {conversion.format, side, side, coding.matrix, coding.range, kipSiteCenter};
  const bool encodes = conversion.encodes;
  KipPlan* made = nullptr;
  const KipStatus status = kipPlanMake(encodes ? &rgb : &yuv, encodes ? &yuv : &rgb, &options, &made);
  if (status != kipStatusOk) throw std::runtime_error(kipStatusText(status));
  return [encodes, plan = std::shared_ptr<KipPlan>(made, kipPlanFree)](Pictures& pictures) {
    const KipPlanes pixels = {{pictures.rgb()}, {3 * pictures.side()}};
    const KipPlanes planes = {{pictures.plane(0), pictures.plane(1), pictures.plane(2)},
                              {pictures.step(0), pictures.step(1), pictures.step(2)}};
    kipPlanRun(plan.get(), encodes ? &pixels : &planes, encodes ? &planes : &pixels);
  };
}

}  // namespace accuracy
