// Turns a family's table of functions (the file that KIP_FUNCTIONS names) into code. A line of the table is
//
//   KIP_FUNCTION(name, shape, rules, kernel)
//
// with the exported name, its argument shape (frame/shapes.h), its Rules, and the type whose static rows() converts.
// The file is included once per SIMD target and defines the kernels there, under the function's name; the last time,
// it also defines the exported functions, which pick the kernel of the best target.

HWY_BEFORE_NAMESPACE();
namespace kip {
namespace HWY_NAMESPACE {
#define KIP_FUNCTION(name, shape, rules, ...) \
  void name(const Job& job, int first, int last) { __VA_ARGS__::rows(job, first, last); }
#include KIP_FUNCTIONS
#undef KIP_FUNCTION
}  // namespace HWY_NAMESPACE
}  // namespace kip
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include "engine/convert.h"
#include "engine/shapes.h"

namespace kip {
#define KIP_FUNCTION(name, shape, rules, ...) HWY_EXPORT(name);
#include KIP_FUNCTIONS
#undef KIP_FUNCTION

}  // namespace kip

#define KIP_KERNEL(name) (HWY_DISPATCH_TABLE(name)[hwy::GetChosenTarget().GetIndex()])
#define KIP_DEFINE(name, rules, parameters, source, target, ...) \
  KipStatus name parameters { return convert(KIP_KERNEL(name), rules, source, target, roiSize, __VA_ARGS__); }

using namespace kip;
#define KIP_FUNCTION(name, shape, rules, ...) KIP_EXPAND(KIP_DEFINE, name, rules, shape)
#include KIP_FUNCTIONS
#undef KIP_FUNCTION
#endif  // HWY_ONCE
