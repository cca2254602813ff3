#include "report.h"

#include <algorithm>
#include <cstdio>

#include "support/registry.h"

namespace bench {
namespace {

constexpr double kSmallImageShare = 0.7;  // of the large image's speed, that the cost of a call may leave of it

struct Ratio {
  std::string peer;
  double value;
};

/// How many times as fast as each peer, the fastest peer first.
std::vector<Ratio> ratiosOf(const benchmark::UserCounters& counters) {
  std::vector<Ratio> ratios;
  for (const auto& [name, counter] : counters) {
    if (name.starts_with(kTimes) && name != kMemcpy) ratios.push_back({name.substr(kTimes.size()), counter.value});
  }
  std::sort(ratios.begin(), ratios.end(), [](const Ratio& a, const Ratio& b) { return a.value < b.value; });
  return ratios;
}

std::string textOf(const Ratio& ratio) {
  char text[100];
  std::snprintf(text, sizeof text, "%.2f %s", ratio.value, ratio.peer.c_str());
  return text;
}

/// All ratios but that to memcpy, in a row.
std::string peersOf(const benchmark::UserCounters& counters) {
  std::string peers;
  for (const Ratio& ratio : ratiosOf(counters)) peers += (peers.empty() ? "" : ", ") + textOf(ratio);
  return peers;
}

/// The last part of function/size and what is before it.
std::pair<std::string, std::string> splitName(const std::string& name) {
  const size_t slash = name.rfind('/');
  return {name.substr(0, slash), name.substr(slash + 1)};
}

}  // namespace

bool Table::ReportContext(const Context&) {
  std::printf(
      "One thread, %s. x: how many times as fast; ~: a peer with coarser arithmetic or chroma.\n"
      "%-44s %-9s %8s %6s %8s  %s\n",
      kernels_.c_str(), "function", "size", "Mpixel/s", "GB/s", "x memcpy", "x peers, the fastest first");
  return true;
}

void Table::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) {
    if (run.run_type != Run::RT_Iteration) continue;
    const auto [function, size] = splitName(run.run_name.function_name);
    std::printf("%-44s %-9s ", function.c_str(), size.c_str());
    if (run.error_occurred) {
      std::printf("%s\n", run.error_message.c_str());
      slow_.push_back({function, run.error_message});
      continue;
    }
    const auto figure = [&](const std::string& name) { return run.counters.at(name).value; };
    std::printf("%8.0f %6.1f %8.2f  %s\n", figure(kSpeed), figure(kTraffic), figure(kMemcpy),
                peersOf(run.counters).c_str());
    std::fflush(stdout);
    noteSlow(run);
  }
}

void Table::noteSlow(const Run& run) {
  const auto [function, size] = splitName(run.run_name.function_name);
  const std::vector<Ratio> ratios = ratiosOf(run.counters);
  if (!ratios.empty() && ratios.front().value < 1) slow_.push_back({function + " " + size, textOf(ratios.front())});
  speeds_[function][size] = run.counters.at(kSpeed).value;
}

void Table::Finalize() {
  for (const auto& [function, bySize] : speeds_) {
    if (!bySize.contains("64x64") || !bySize.contains("1920x1080")) continue;
    const double share = bySize.at("64x64") / bySize.at("1920x1080");
    if (share < kSmallImageShare) slow_.push_back({function + " 64x64", textOf({"of 1920x1080", share})});
  }
  std::printf("\n%zu functions, %zu results below a peer or below what they should be\n", speeds_.size(), slow_.size());
  for (const Slow& slow : slow_) std::printf("%-54s %s\n", slow.name.c_str(), slow.why.c_str());
}

bool Page::ReportContext(const Context&) {
  std::printf(
      "# Performance, function by function\n\n"
      "Written by `kipcc_bench --markdown`. How many times as fast as memcpy of as many bytes, and as other libraries\n"
      "that do the same, the fastest first; ~ marks one whose arithmetic or chroma is coarser. One thread, %s.\n",
      kernels_.c_str());
  return true;
}

void Page::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) {
    if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
    const auto [subject, size] = splitName(run.run_name.function_name);
    const kip::Function* function = kip::find(subject.substr(0, subject.find('/')));
    if (function->group != group_) beginGroup(function->group);
    std::printf("| `%s` | %s | %.2f | %s |\n", subject.c_str(), size.c_str(), run.counters.at(kMemcpy).value,
                peersOf(run.counters).c_str());
    std::fflush(stdout);
  }
}

void Page::beginGroup(const std::string& group) {
  std::printf("\n## %s\n\n| function | size | x memcpy | x others |\n|---|---|---|---|\n", group.c_str());
  group_ = group;
}

}  // namespace bench
