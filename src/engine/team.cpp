#include "engine/team.h"

#include <omp.h>
#include <pthread.h>

#include <algorithm>
#include <atomic>
#include <cfenv>

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

int teamSize(int wanted) { return wanted > 1 && mayHaveTeam() ? wanted : 1; }

int teamSizeOnProcessors(int wanted) {
  const int size = teamSize(wanted);
  return size > 1 ? std::min(size, omp_get_num_procs()) : 1;
}

void runTeam(int threads, void (*part)(const void* context, int me, int team), const void* context) {
  if (threads <= 1) return part(context, 0, 1);
  fenv_t callers;
  fegetenv(&callers);
#pragma omp parallel num_threads(threads)
  {
    // Worker threads have the environment of whoever started them.
    const Environment environment(callers);
    part(context, omp_get_thread_num(), omp_get_num_threads());
  }
}

}  // namespace kip
