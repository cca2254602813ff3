// The first call of every function comes from many threads at once: what is made at first use is made once. In a
// process of its own, where no other test has called the functions before.
#include <gtest/gtest.h>

#include <latch>
#include <thread>
#include <vector>

#include "kipcore.h"
#include "support/golden.h"

namespace kip {
namespace {

TEST(FirstCalls, MayComeFromManyThreadsAtOnce) {
  constexpr int kCallers = 8;
  kipSetNumThreads(1);
  for (const Function& function : registry()) {
    const Case that(function, allowed(function, {37, 6}), settingsOf(function).front());
    std::vector<Content> results(kCallers);
    std::latch start(kCallers);
    std::vector<std::thread> callers;
    for (Content& result : results) {
      callers.emplace_back([&] {
        start.arrive_and_wait();
        result = convertInPlainMemory(that).destination;
      });
    }
    for (std::thread& caller : callers) caller.join();
    for (const Content& result : results) {
      for (size_t p = 0; p < result.size(); ++p) EXPECT_EQ(result[p].bytes, results[0][p].bytes) << that.text();
    }
  }
  kipSetNumThreads(0);
}

}  // namespace
}  // namespace kip
