// The results, as a table to look at or as a page of the documentation.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace bench {

// The names of the figures that a benchmark reports; a peer's figure is its name behind kTimes.
inline const std::string kSpeed = "Mpixel/s", kTraffic = "GB/s", kSpread = "spread", kTimes = "x ",
                         kMemcpy = "x memcpy";

/// What was measured on: the processor and the SIMD target.
std::string platform(const std::string& target);

/// Ratios to the fastest peer of each result, by image size and by the group of the documentation.
class Standing {
 public:
  void add(const std::string& size, const std::string& group, double ratio);
  /// A line for each size and, if there are several, each group: geometric mean, and how many are below some limits.
  std::string text() const;

 private:
  std::map<std::string, std::map<std::string, std::vector<double>>> ratios_;
};

/// Prints a line for each benchmark as it ends, and at the end what should be faster.
class Table : public benchmark::BenchmarkReporter {
 public:
  explicit Table(std::string platform) : platform_(std::move(platform)) {}
  bool ReportContext(const Context&) override;
  void ReportRuns(const std::vector<Run>& runs) override;
  void Finalize() override;

 private:
  struct Slow {
    std::string name, why;
  };
  void note(const Run& run);

  std::string platform_;
  Standing standing_;
  std::vector<Slow> slow_;
  std::map<std::string, std::map<std::string, double>> speeds_;  // by function, then by size
};

/// Prints the ratios alone as a page in Markdown, with a table for each group of the documentation.
class Page : public benchmark::BenchmarkReporter {
 public:
  explicit Page(std::string platform) : platform_(std::move(platform)) {}
  bool ReportContext(const Context&) override;
  void ReportRuns(const std::vector<Run>& runs) override;
  void Finalize() override;

 private:
  void beginGroup(const std::string& group);

  std::string platform_, group_;
  Standing standing_;
};

}  // namespace bench
