#include "report.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>

#include "registry/registry.h"

namespace bench {
namespace {

constexpr double kLimits[] = {1, 0.95, 0.9, 0.8};  // below which results are counted
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

/// The group of the documentation that a benchmark's function belongs to.
const std::string& groupOf(const std::string& subject) {
  return kip::find(subject.substr(0, subject.find('/')))->group;
}

/// The first "key : value" of /proc/cpuinfo with this key; empty if there is none.
std::string cpuInfo(const std::string& key) {
  std::ifstream file("/proc/cpuinfo");
  for (std::string line; std::getline(file, line);) {
    const size_t colon = line.find(':');
    if (colon == std::string::npos || line.substr(0, line.find_last_not_of(" \t", colon - 1) + 1) != key) continue;
    return line.substr(std::min(colon + 2, line.size()));
  }
  return "";
}

std::string standingOf(std::string name, const std::vector<double>& ratios) {
  double logarithms = 0;
  for (const double ratio : ratios) logarithms += std::log(ratio);
  char text[100];
  std::snprintf(text, sizeof text, "%-22s %4zu results, geometric mean %.3f; below", name.c_str(), ratios.size(),
                std::exp(logarithms / static_cast<double>(ratios.size())));
  std::string line = text;
  for (const double limit : kLimits) {
    std::snprintf(text, sizeof text, "%s %g: %td", limit == kLimits[0] ? "" : ",", limit,
                  std::count_if(ratios.begin(), ratios.end(), [=](double ratio) { return ratio < limit; }));
    line += text;
  }
  return line + "\n";
}

}  // namespace

std::string platform(const std::string& target) {
  // Hypervisors tend to hide the name; family and model remain.
  std::string processor = cpuInfo("model name");
  if (processor.empty()) processor = "unknown processor";
  const std::string family = cpuInfo("cpu family"), model = cpuInfo("model");
  if (!family.empty()) processor += " (family " + family + ", model " + model + ")";
  return processor + ", " + target;
}

void Standing::add(const std::string& size, const std::string& group, double ratio) {
  ratios_[size][group].push_back(ratio);
}

std::string Standing::text() const {
  std::string text;
  for (const auto& [size, groups] : ratios_) {
    std::vector<double> all;
    for (const auto& [group, ratios] : groups) all.insert(all.end(), ratios.begin(), ratios.end());
    text += standingOf(size, all);
    if (groups.size() == 1) continue;
    for (const auto& [group, ratios] : groups) text += standingOf("  " + group, ratios);
  }
  return text;
}

bool Table::ReportContext(const Context&) {
  std::printf(
      "One thread, %s. x: how many times as fast; ~: a peer with coarser arithmetic or chroma; spread: how much more\n"
      "time the median of our timings took than the fastest, which is what counts.\n"
      "%-44s %-9s %8s %6s %6s %8s  %s\n",
      platform_.c_str(), "function", "size", "Mpixel/s", "GB/s", "spread", "x memcpy", "x peers, the fastest first");
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
    std::printf("%8.0f %6.1f %5.0f%% %8.2f  %s\n", figure(kSpeed), figure(kTraffic), 100 * figure(kSpread),
                figure(kMemcpy), peersOf(run.counters).c_str());
    std::fflush(stdout);
    note(run);
  }
}

void Table::note(const Run& run) {
  const auto [function, size] = splitName(run.run_name.function_name);
  const std::vector<Ratio> ratios = ratiosOf(run.counters);
  if (!ratios.empty()) {
    standing_.add(size, groupOf(function), ratios.front().value);
    if (ratios.front().value < 1) slow_.push_back({function + " " + size, textOf(ratios.front())});
  }
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
  std::printf("\nAgainst the fastest peer of each:\n%s", standing_.text().c_str());
}

bool Page::ReportContext(const Context&) {
  std::printf(
      "# Performance, function by function\n\n"
      "Written by `kipcc_bench --markdown`. How many times as fast as memcpy of as many bytes, and as other libraries\n"
      "that do the same, the fastest first; ~ marks one whose arithmetic or chroma is coarser. The spread is how much\n"
      "more time the median of our timings took than the fastest, which is what counts. One thread, %s.\n",
      platform_.c_str());
  return true;
}

void Page::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) {
    if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
    const auto [subject, size] = splitName(run.run_name.function_name);
    const std::string& group = groupOf(subject);
    if (group != group_) beginGroup(group);
    std::printf("| `%s` | %s | %.0f %% | %.2f | %s |\n", subject.c_str(), size.c_str(),
                100 * run.counters.at(kSpread).value, run.counters.at(kMemcpy).value, peersOf(run.counters).c_str());
    const std::vector<Ratio> ratios = ratiosOf(run.counters);
    if (!ratios.empty()) standing_.add(size, group, ratios.front().value);
    std::fflush(stdout);
  }
}

void Page::beginGroup(const std::string& group) {
  std::printf("\n## %s\n\n| function | size | spread | x memcpy | x others |\n|---|---|---|---|---|\n", group.c_str());
  group_ = group;
}

void Page::Finalize() {
  std::printf("\n## Altogether\n\nAgainst the fastest peer of each:\n\n```\n%s```\n", standing_.text().c_str());
}

}  // namespace bench
