// Worker threads: a job's row groups, shared out over a team of OpenMP.
#pragma once

#include "engine/image.h"

namespace kip {

/// How many threads a call may run on. Never more than ownGetNumThreads tells, or than there are row groups; only the
/// caller's within a parallel region of OpenMP, and in a process forked after its parent had a team.
enum class Team {
  kCallerOnly,
  kProcessors,  ///< no more than there are processors: for results that do not depend on the team
  kAsTold,
};

/// Runs the kernel over `groups` row groups. Each thread gets a contiguous share of them.
void runKernel(Kernel kernel, const Job& job, int groups, Team team);

}  // namespace kip
