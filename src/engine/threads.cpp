#include "engine/threads.h"

#include <algorithm>

#include "engine/team.h"
#include "kipcore.h"

namespace kip {
namespace {

int sizeOf(Team team, int groups) {
  if (team == Team::kCallerOnly) return 1;
  const int most = std::min(ownGetNumThreads(), groups);
  return team == Team::kProcessors ? teamSizeOnProcessors(most) : teamSize(most);
}

struct Work {
  Kernel kernel;
  const Job& job;
  int groups;

  /// A contiguous share of the row groups; the larger shares come first.
  static void part(const void* context, int me, int team) {
    const auto& [kernel, job, groups] = *static_cast<const Work*>(context);
    const int share = groups / team, larger = groups % team;
    const int first = me * share + std::min(me, larger);
    kernel(job, first, first + share + (me < larger ? 1 : 0));
  }
};

}  // namespace

void runKernel(Kernel kernel, const Job& job, int groups, Team team) {
  const int threads = sizeOf(team, groups);
  if (threads <= 1) return kernel(job, 0, groups);
  const Work work = {kernel, job, groups};
  runTeam(threads, Work::part, &work);
}

}  // namespace kip
