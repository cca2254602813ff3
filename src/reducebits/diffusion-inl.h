// Error diffusion, which is compiled apart from the other methods.

#if defined(KIP_REDUCEBITS_DIFFUSION_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KIP_REDUCEBITS_DIFFUSION_INL_H_
#undef KIP_REDUCEBITS_DIFFUSION_INL_H_
#else
#define KIP_REDUCEBITS_DIFFUSION_INL_H_
#endif

#include "engine/image.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {

/// From samples of type S to samples of type D.
template <class S, class D>
struct Diffuse {
  static void channels(const Job& job, int first, int last);
};

}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#endif  // include guard per target
