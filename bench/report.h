// The results, as a table to look at or as a page of the documentation.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace bench {

// The names of the figures that a benchmark reports; a peer's figure is its name behind kTimes.
inline const std::string kSpeed = "Mpixel/s", kTraffic = "GB/s", kTimes = "x ", kMemcpy = "x memcpy";

/// Prints a line for each benchmark as it ends, and at the end what should be faster.
class Table : public benchmark::BenchmarkReporter {
 public:
  explicit Table(std::string kernels) : kernels_(std::move(kernels)) {}
  bool ReportContext(const Context&) override;
  void ReportRuns(const std::vector<Run>& runs) override;
  void Finalize() override;

 private:
  struct Slow {
    std::string name, why;
  };
  void noteSlow(const Run& run);

  std::string kernels_;
  std::vector<Slow> slow_;
  std::map<std::string, std::map<std::string, double>> speeds_;  // by function, then by size
};

/// Prints the ratios alone as a page in Markdown, with a table for each group of the documentation.
class Page : public benchmark::BenchmarkReporter {
 public:
  explicit Page(std::string kernels) : kernels_(std::move(kernels)) {}
  bool ReportContext(const Context&) override;
  void ReportRuns(const std::vector<Run>& runs) override;

 private:
  void beginGroup(const std::string& group);

  std::string kernels_, group_;
};

}  // namespace bench
