// What the stack and fresh memory held before a call does not enter its result.
#include <gtest/gtest.h>

#include "kipcore.h"
#include "support/allocation.h"
#include "support/golden.h"

namespace kip {
namespace {

/// Leaves so many known bytes below the caller's frame, more than any function uses there.
__attribute__((noinline)) void fillStack(uint8_t byte) {
  volatile uint8_t bytes[200 << 10];
  for (volatile uint8_t& b : bytes) b = byte;
}

Content convertOver(const Case& that, uint8_t byte) {
  fillAllocations(byte);
  fillStack(byte);
  Content result = convertInPlainMemory(that).destination;
  if (that.function.image(Side::kDestination).sample == Sample::k32f) canonicalizeNan(result);
  return result;
}

TEST(StaleMemory, DoesNotMatter) {
  kipSetNumThreads(1);
  for (const Target& target : vectorTargets()) {
    target.select();
    for (const Function& function : registry()) {
      for (const Arguments& settings : settingsOf(function)) {
        for (const KipiSize size : {KipiSize{3, 2}, {33, 3}, {129, 6}}) {
          const Case that(function, allowed(function, size), settings);
          const Content zeros = convertOver(that, 0), ones = convertOver(that, 0xFF);
          for (size_t p = 0; p < zeros.size(); ++p) {
            ASSERT_EQ(zeros[p].bytes, ones[p].bytes) << target.name() << ", " << that.text();
          }
        }
      }
    }
  }
  bestTarget().select();
  kipSetNumThreads(0);
}

}  // namespace
}  // namespace kip
