#include "engine/threads.h"

#include <omp.h>
#include <pthread.h>

#include <algorithm>
#include <atomic>
#include <cfenv>

#include "kipcore.h"

namespace kip {
namespace {

/// A team's threads do not exist in a process forked from theirs, where the runtime would wait for them for ever.
std::atomic<bool> teamLost{false};

/// Whether a team can be had here. Once it was, processes forked from this one have none.
bool mayHaveTeam() {
  if (teamLost || omp_in_parallel()) return false;
  static const bool watchesForks = pthread_atfork(nullptr, nullptr, [] { teamLost = true; }) == 0;
  return watchesForks;
}

int sizeOf(Team team, int groups) {
  if (team == Team::kCallerOnly) return 1;
  const int most = std::min(ownGetNumThreads(), groups);
  if (most <= 1 || !mayHaveTeam()) return 1;
  return team == Team::kProcessors ? std::min(most, omp_get_num_procs()) : most;
}

/// Gives this thread a floating-point environment - rounding, subnormals, traps - for as long as it lives.
class Environment {
 public:
  explicit Environment(const fenv_t& environment) {
    fegetenv(&own_);
    fesetenv(&environment);
  }
  ~Environment() { fesetenv(&own_); }
  Environment(const Environment&) = delete;

 private:
  fenv_t own_;
};

}  // namespace

void runKernel(Kernel kernel, const Job& job, int groups, Team team) {
  const int threads = sizeOf(team, groups);
  if (threads <= 1) return kernel(job, 0, groups);
  fenv_t callers;
  fegetenv(&callers);
#pragma omp parallel num_threads(threads)
  {
    // Worker threads have the environment of whoever started them.
    const Environment environment(callers);
    // The static partition: contiguous shares, the larger ones first.
    const int granted = omp_get_num_threads(), me = omp_get_thread_num();
    const int share = groups / granted, larger = groups % granted;
    const int first = me * share + std::min(me, larger);
    kernel(job, first, first + share + (me < larger ? 1 : 0));
  }
}

}  // namespace kip
