// Timing several ways of doing the same thing against one another.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace bench {

struct Contestant {
  std::string name;
  std::function<void()> run;
  std::vector<double> timings = {};  ///< seconds of one run, in the order they were taken

  double fastest() const;
  /// How much slower the median timing is than the fastest, as a part of the fastest.
  double spread() const;
};

/// What is timed: the processor time of this thread, from which other processes take nothing; or all the time that
/// passes, where other threads work as well.
enum class Clock { kThisThread, kWall };

/// Lets the contestants take turns, so that what else happens on the machine hits all alike. Each turn starts with
/// untimed runs, which put the contestant's own data and code where the one before had its own. The order changes from
/// round to round.
void race(std::vector<Contestant>& contestants, int rounds, Clock clock = Clock::kThisThread);

}  // namespace bench
