#include "race.h"

#include <time.h>

#include <algorithm>

namespace bench {
namespace {

constexpr double kTurn = 1e-3;     // seconds of a contestant's turn, or one run if that takes longer
constexpr double kPatience = 1.0;  // seconds after which no further round begins
constexpr int kFewestRounds = 3;

/// Processor time of this thread in seconds: what other processes take does not count.
double now() {
  timespec t;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}

double secondsOf(const std::function<void()>& run, int times) {
  const double begin = now();
  for (int i = 0; i < times; ++i) run();
  return (now() - begin) / times;
}

/// Seconds of one run in a turn. The first run fetches the images into the caches and counts only if it alone is a
/// turn.
double takeTurn(const std::function<void()>& run) {
  const double first = secondsOf(run, 1);
  return first > kTurn ? first : secondsOf(run, 1 + static_cast<int>(kTurn / first));
}

}  // namespace

void race(std::vector<Contestant>& contestants, int rounds) {
  const double begin = now();
  for (int round = 0; round < rounds; ++round) {
    if (round >= kFewestRounds && now() - begin > kPatience) break;
    for (Contestant& one : contestants) one.seconds = std::min(one.seconds, takeTurn(one.run));
  }
}

}  // namespace bench
