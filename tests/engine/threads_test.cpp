// Worker threads: how many there are, what they inherit, and what becomes of them in a forked process.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <random>
#include <vector>

#include "kipcc.h"
#include "kipcore.h"
#include "support/processors.h"

namespace {

class Threads : public testing::Test {
 protected:
  void TearDown() override {
    kipSetNumThreads(0);
    kip::pretendProcessors(0);
  }

  /// A column of Lab pixels, which is split over threads whatever its size.
  std::vector<Kip8u> convert(int threads) const {
    kipSetNumThreads(threads);
    std::vector<Kip8u> lab(bgr_.size());
    const KipiSize size = {1, static_cast<int>(bgr_.size() / 3)};
    EXPECT_EQ(kipiBGRToLab_8u_C3R(bgr_.data(), 3, lab.data(), 3, size), kipStatusOk);
    return lab;
  }

 private:
  std::vector<Kip8u> bgr_ = [] {
    std::vector<Kip8u> samples(3 * 40000);
    std::mt19937 random(1);
    for (Kip8u& v : samples) v = static_cast<Kip8u>(random());
    return samples;
  }();
};

/// More than a process can have: the runtime would end it.
TEST_F(Threads, AreNoMoreThanTheProcessors) { EXPECT_EQ(convert(40000), convert(1)); }

/// The runtime of a forked process believes in threads that only its parent has.
TEST_F(Threads, AreNotWaitedForInAForkedProcess) {
  kip::pretendProcessors(3);
  const std::vector<Kip8u> expected = convert(3);
  const pid_t child = fork();
  if (child == 0) {
    alarm(20);  // ends a child that waits for ever
    _exit(convert(3) == expected ? 0 : 1);
  }
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status;
}

}  // namespace
