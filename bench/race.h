// Timing several ways of doing the same thing against one another.
#pragma once

#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace bench {

struct Contestant {
  std::string name;
  std::function<void()> run;
  double seconds = std::numeric_limits<double>::infinity();  ///< of one run, the fastest of all rounds
};

/// Runs the contestants in turns, so that what else happens on the machine hits all alike.
void race(std::vector<Contestant>& contestants, int rounds);

}  // namespace bench
