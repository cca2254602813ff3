// Measures every exported function on one thread, each in turns with its peers and with memcpy of as many bytes.
//
//   kipcc_bench [--all_sizes] [--markdown] [--rounds=N] [--target=name] [--against=library.so] [--call_costs]
//               [--benchmark_filter=regex] [options of Google Benchmark]
//
// Without --all_sizes only 1920x1080 is measured. With --markdown the ratios are printed as a page for docs/. The
// target is a set of kernels such as AVX2 that is to be measured instead of the best one. With --against another build
// of the library, whose file is named, takes the place of the peers. With --call_costs nothing else is printed than
// what a call of each function costs beyond its loops. Names are function/size or function/method/size.

#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "kipcore.h"
#include "peers/peers.h"
#include "race.h"
#include "report.h"
#include "subject.h"
#include "support/targets.h"

namespace bench {
namespace {

struct Size {
  int width, height;
};
constexpr Size kLarge = {1920, 1080};
constexpr Size kOthers[] = {{640, 480}, {64, 64}};  // in the cache; small enough that the cost of a call shows

struct Options {
  bool allSizes = false, markdown = false, callCosts = false;
  int rounds = 10;
  std::string target, against;
};

std::string figureOf(const Peer& peer) { return kTimes + (peer.result == Result::kCoarser ? "~" : "") + peer.name; }

/// Another build of the library.
class OtherBuild {
 public:
  /// None when the file has no name. The functions that it calls are its own, whatever ours are called.
  explicit OtherBuild(const std::string& file)
      : library_(file.empty() ? nullptr : dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_DEEPBIND)) {
    if (!file.empty() && !library_) throw std::runtime_error(dlerror());
  }

  explicit operator bool() const { return library_; }
  /// Null when it lacks the function.
  kip::Function::Call find(const kip::Function& function) const {
    void* address = dlsym(library_, function.name.c_str());
    return address ? function.callAt(address) : nullptr;
  }

 private:
  void* library_;
};

/// What all benchmarks are told.
struct Terms {
  int rounds;
  std::string target;
  OtherBuild other;
};

/// Ours first, then memcpy, then the peers.
std::vector<Contestant> contestantsOf(const Subject& subject, Setting& setting, const OtherBuild& other) {
  std::vector<Contestant> contestants = {{subject.name, [&setting] { setting.run(); }},
                                         {kMemcpy, [&setting] { setting.copy(); }}};
  if (other) {
    if (const auto call = other.find(*subject.function)) {
      contestants.push_back({kTimes + "the other build", [&setting, call] { setting.run(call); }});
    }
    return contestants;
  }
  for (const Peer& peer : peersOf(subject.name)) {
    if (auto run = peer.prepare(setting.call())) contestants.push_back({figureOf(peer), run});
  }
  return contestants;
}

void measure(benchmark::State& state, const Subject& subject, Size size, const Terms& terms) {
  Setting setting(subject, size.width, size.height, terms.target);
  if (setting.run() != kipStatusOk) state.SkipWithError("not converted");
  std::vector<Contestant> contestants = contestantsOf(subject, setting, terms.other);
  for (auto _ : state) {
    race(contestants, terms.rounds);
    state.SetIterationTime(contestants.front().fastest());
  }
  const double ours = contestants.front().fastest();
  state.counters[kSpeed] = size.width * size.height / ours * 1e-6;
  state.counters[kTraffic] = static_cast<double>(setting.bytes()) / ours * 1e-9;
  state.counters[kSpread] = contestants.front().spread();
  for (size_t i = 1; i < contestants.size(); ++i) {
    state.counters[contestants[i].name] = contestants[i].fastest() / ours;
  }
}

/// Takes our own options out of the arguments.
Options takeOptions(int& argc, char** argv) {
  Options options;
  int kept = 1;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--all_sizes") == 0) {
      options.allSizes = true;
    } else if (std::strcmp(argv[i], "--markdown") == 0) {
      options.markdown = true;
    } else if (std::strcmp(argv[i], "--call_costs") == 0) {
      options.callCosts = true;
    } else if (std::strncmp(argv[i], "--rounds=", 9) == 0) {
      options.rounds = std::max(1, std::atoi(argv[i] + 9));
    } else if (std::strncmp(argv[i], "--target=", 9) == 0) {
      options.target = argv[i] + 9;
    } else if (std::strncmp(argv[i], "--against=", 10) == 0) {
      options.against = argv[i] + 10;
    } else {
      argv[kept++] = argv[i];
    }
  }
  argc = kept;
  return options;
}

/// Makes the library use the named kernels, or the best ones, and returns their name; empty if there are none.
std::string selectKernels(const std::string& name) {
  std::vector<kip::Target> targets = kip::vectorTargets();
  targets.push_back(kip::fallbackTarget());
  for (const kip::Target& target : targets) {
    if (!name.empty() && name != target.name()) continue;
    target.select();
    return target.name();
  }
  return "";
}

void add(const Subject& subject, Size size, const Terms& terms) {
  const std::string name = subject.name + "/" + std::to_string(size.width) + "x" + std::to_string(size.height);
  benchmark::RegisterBenchmark(name.c_str(),
                               [=, &terms](benchmark::State& state) { measure(state, subject, size, terms); })
      ->UseManualTime()
      ->Iterations(1);
}

/// Prints what a call costs beyond its loops, in nanoseconds: twice the time of a few short rows less that of twice as
/// many.
void printCallCosts(const std::string& target, int rounds) {
  constexpr int kWidth = 64, kHeight = 8;
  for (const Subject& subject : allSubjects()) {
    Setting once(subject, kWidth, kHeight, target), twice(subject, kWidth, 2 * kHeight, target);
    std::vector<Contestant> contestants = {{"once", [&] { once.run(); }}, {"twice", [&] { twice.run(); }}};
    race(contestants, rounds);
    const double seconds = 2 * contestants[0].fastest() - contestants[1].fastest();
    std::printf("%7.0f  %s\n", seconds * 1e9, subject.name.c_str());
  }
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) try {
  const bench::Options options = bench::takeOptions(argc, argv);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  const std::string target = bench::selectKernels(options.target);
  if (target.empty()) throw std::runtime_error(options.target + ": not on this processor");
  const bench::Terms terms = {options.rounds, target, bench::OtherBuild(options.against)};
  kipSetNumThreads(1);
  if (options.callCosts) {
    bench::printCallCosts(target, options.rounds);
    return 0;
  }
  for (const bench::Subject& subject : bench::allSubjects()) {
    bench::add(subject, bench::kLarge, terms);
    if (!options.allSizes) continue;
    for (const bench::Size size : bench::kOthers) bench::add(subject, size, terms);
  }
  const std::string platform = bench::platform(target);
  bench::Table table(platform);
  bench::Page page(platform);
  benchmark::RunSpecifiedBenchmarks(options.markdown ? static_cast<benchmark::BenchmarkReporter*>(&page) : &table);
} catch (const std::exception& error) {
  std::fprintf(stderr, "kipcc_bench: %s\n", error.what());
  return 1;
}
