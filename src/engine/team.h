// Teams of worker threads, by OpenMP. Compiled into each library that has them.
#pragma once

namespace kip {

/// How many threads a call that wants so many may have: one within a parallel region of OpenMP, and in a process forked
/// after its parent had a team.
int teamSize(int wanted);
/// The same, and no more than there are processors.
int teamSizeOnProcessors(int wanted);

/// Calls part(context, me, team) on each of at most `threads` threads, which are `team` together, in the floating-point
/// environment of the caller.
void runTeam(int threads, void (*part)(const void* context, int me, int team), const void* context);

}  // namespace kip
