#include "race.h"

#include <time.h>

#include <algorithm>

namespace bench {
namespace {

constexpr int kUntimedRuns = 4, kTimings = 4;  // of a turn
constexpr double kTiming = 0.5e-3;             // seconds that a timing takes, or one run if that takes longer
constexpr double kLongTurn = 20e-3;            // seconds after which untimed runs, or timings, are not gone on with
constexpr double kPatience = 1.0;              // seconds after which no further round begins
constexpr int kFewestRounds = 3;

double now(Clock clock) {
  timespec t;
  clock_gettime(clock == Clock::kWall ? CLOCK_MONOTONIC : CLOCK_THREAD_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}

double secondsOf(const std::function<void()>& run, int times, Clock clock) {
  const double begin = now(clock);
  for (int i = 0; i < times; ++i) run();
  return (now(clock) - begin) / times;
}

void takeTurn(Contestant& contestant, Clock clock) {
  double begin = now(clock), last = kTiming;
  for (int i = 0; i < kUntimedRuns && now(clock) - begin < kLongTurn; ++i) last = secondsOf(contestant.run, 1, clock);
  begin = now(clock);
  for (int i = 0; i < kTimings && now(clock) - begin < kLongTurn; ++i) {
    contestant.timings.push_back(secondsOf(contestant.run, 1 + static_cast<int>(kTiming / last), clock));
  }
}

}  // namespace

double Contestant::fastest() const { return *std::min_element(timings.begin(), timings.end()); }

double Contestant::spread() const {
  std::vector<double> sorted = timings;
  std::nth_element(sorted.begin(), sorted.begin() + sorted.size() / 2, sorted.end());
  return sorted[sorted.size() / 2] / fastest() - 1;
}

void race(std::vector<Contestant>& contestants, int rounds, Clock clock) {
  std::vector<Contestant*> order;
  for (Contestant& contestant : contestants) order.push_back(&contestant);
  const double begin = now(clock);
  for (int round = 0; round < rounds; ++round) {
    if (round >= kFewestRounds && now(clock) - begin > kPatience) break;
    for (Contestant* contestant : order) takeTurn(*contestant, clock);
    // Everyone comes first once, and after each of its neighbours.
    std::rotate(order.begin(), order.begin() + 1, order.end());
    if (round % 2 == 1) std::reverse(order.begin(), order.end());
  }
}

}  // namespace bench
