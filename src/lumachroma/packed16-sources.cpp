// RGB packed in 16-bit words to RGB bytes, YCbCr and YUV: as from bytes whose upper bits are the words' fields.

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "lumachroma/packed16-sources.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"

#include "lumachroma/packed16-inl.h"
#include "lumachroma/ycbcr-encode-inl.h"
#include "lumachroma/yuv-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
namespace {

using Rgb565 = FromWords<k565, Order::kForward>;
using Bgr565 = FromWords<k565, Order::kReverse>;
using Bgr555 = FromWords<k555, Order::kReverse>;

template <class Src, class Dst>
using YCbCr = Groups<kBt601, kChromaEighth, Src, Dst>;
template <class Src>
using Yuv420 = Encode<yuv::EncodeSums<yuv::Mean420>, Src, Planar420>;
template <class Src>
using Yuv422 = Encode<yuv::EncodeSums<yuv::Mean422>, Src, Planar422>;

/// To packed 4:2:2. The last pixel of an odd width is the first half of a pair of its own kind.
template <class Src>
struct PackedPairs {
  using Dst = YCbYCr;

  static void rows(const Job& job, int first, int last) {
    YCbCr<Src, Dst>::rows(job, first, last);
    if (job.width % 2 == 0) return;
    const size_t x = job.width - 1;
    for (int y = first; y < last; ++y) {
      const Kip8u* word = advance<Src>(Src::rows(job.src, y), x).at[0];
      const Kip8u pair[4] = {word[0], word[1], word[0], word[1]};
      PaddedBatch<Dst> out;
      YCbCr<Src, Dst>(job).group({{pair}}, out.rows, 2);
      out.copyTo(advance<Dst>(Dst::rows(job.dst, y), x), 1);
    }
  }
};

}  // namespace
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include "lumachroma/rules.h"

namespace kip {
constexpr Rules kYuv422 = {.warnWidth = 2, .warnHeight = 2};
}  // namespace kip
#endif

#define KIP_FUNCTIONS "lumachroma/packed16-sources-functions.inc"
#include "engine/functions-inl.h"
