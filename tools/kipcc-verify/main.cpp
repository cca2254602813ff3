// kipcc-verify: checks the library on this machine against the golden bytes that it is built with.
//
// Highway keeps the choice of the target in its shared object, which the library and this program both use; so the
// program makes the library run on one target after another. Where the library has Highway linked into it, this cannot
// be: then the target is checked that the library chooses by itself, and the last line says so.
#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <span>
#include <sstream>
#include <string>

#include "support/golden.h"

namespace {

using kip::Function;
using kip::GoldenSet;
using kip::Target;

using Hashes = std::vector<uint64_t>;

constexpr const char kUsage[] =
    "Usage: kipcc-verify [TARGET...]\n"
    "       kipcc-verify --print\n"
    "Checks that the installed kipcc library makes the promised bytes on this machine: calls every function on\n"
    "generated images with each set of kernels that the processor runs, and compares hashes of the results.\n"
    "\n"
    "  TARGET   checks only these sets of kernels: names as in the last line of the output, or `best` for the one "
    "that\n"
    "           the library chooses by itself, or `lowest` for the one for the oldest processors\n"
    "  --print  prints the hashes instead: a line for each function, with a hash for each set of its calls\n"
    "\n"
    "Prints a line for each difference and one at the end. Exit status: 0 without differences, 1 with differences,\n"
    "2 for other arguments.\n";

constexpr const char kGolden[] =
#include "golden.inc"
    ;

std::string textOf(const Function& function, const GoldenSet& set) {
  std::string text = function.name + textOf(function, set.settings);
  return kip::valuesOf(function).size() > 1 ? text + ", values: " + nameOf(set.values) : text;
}

/// The hashes of each function.
std::map<std::string, Hashes> goldenLines() {
  std::map<std::string, Hashes> lines;
  std::istringstream text(kGolden);
  for (std::string line; std::getline(text, line);) {
    std::istringstream words(line);
    std::string name;
    words >> name >> std::hex;
    for (uint64_t hash; words >> hash;) lines[name].push_back(hash);
  }
  return lines;
}

/// Whether the library asks the same Highway as this program for its target: its first call chooses one.
bool sharesHighway() {
  hwy::GetChosenTarget().DeInit();
  const Function& function = kip::registry().front();
  convertInPlainMemory(kip::Case(function, {16, 2}, {}));
  return hwy::GetChosenTarget().IsInitialized();
}

class Verification {
 public:
  Verification(std::vector<Target> targets, std::string targetNames)
      : targets_(std::move(targets)), targetNames_(std::move(targetNames)), golden_(goldenLines()) {}

  int run() {
    for (const Function& function : kip::registry()) check(function);
    std::printf("%zu functions, %s: %zu hashes compared, %zu differences\n", kip::registry().size(),
                targetNames_.c_str(), compared_, differences_);
    return differences_ ? EXIT_FAILURE : EXIT_SUCCESS;
  }

 private:
  void check(const Function& function) {
    const std::vector<GoldenSet> sets = goldenSets(function);
    const Hashes& expected = golden_[function.name];
    if (expected.size() != sets.size()) {
      std::printf("%s: %zu golden hashes for %zu sets of calls\n", function.name.c_str(), expected.size(), sets.size());
      ++differences_;
      return;
    }
    for (size_t s = 0; s < sets.size(); ++s) {
      const Hashes found = goldenHashes(function, sets[s], targets_);
      for (size_t t = 0; t < targets_.size(); ++t, ++compared_) {
        if (found[t] == expected[s]) continue;
        std::printf("%s: %s: %016" PRIx64 " instead of %016" PRIx64 "\n", targets_[t].name().c_str(),
                    textOf(function, sets[s]).c_str(), found[t], expected[s]);
        ++differences_;
      }
    }
  }

  std::vector<Target> targets_;
  std::string targetNames_;
  std::map<std::string, Hashes> golden_;
  size_t compared_ = 0, differences_ = 0;
};

/// The targets of these names, or all; none where this processor or the library lacks one of them.
std::vector<Target> targetsOf(std::span<char*> names) {
  const std::vector<Target> vectors = kip::vectorTargets();
  std::vector<Target> all = vectors, chosen;
  all.push_back(kip::fallbackTarget());
  if (names.empty()) return all;
  for (const std::string name : names) {
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const Target& target) { return target.name() == name; });
    if (name == "best") {
      chosen.push_back(all.front());
    } else if (name == "lowest") {
      chosen.push_back(vectors.empty() ? all.front() : vectors.back());
    } else if (found == all.end()) {
      return {};
    } else {
      chosen.push_back(*found);
    }
  }
  return chosen;
}

int verify(const std::vector<Target>& targets) {
  if (!sharesHighway()) return Verification({kip::bestTarget()}, "the library's own target").run();
  std::string names = "targets";
  for (const Target& target : targets) names += " " + target.name();
  return Verification(targets, names).run();
}

int print() {
  const Target best[] = {kip::bestTarget()};
  for (const Function& function : kip::registry()) {
    std::printf("%s", function.name.c_str());
    for (const GoldenSet& set : goldenSets(function)) std::printf(" %016" PRIx64, goldenHashes(function, set, best)[0]);
    std::printf("\n");
  }
  return EXIT_SUCCESS;
}

}  // namespace

int main(int count, char** words) {
  const std::string option = count == 2 ? words[1] : "";
  if (option == "--print") return print();
  const std::vector<Target> targets = targetsOf(std::span(words, count).subspan(1));
  if (!targets.empty()) return verify(targets);
  const bool asked = option == "--help";
  std::fputs(kUsage, asked ? stdout : stderr);
  return asked ? EXIT_SUCCESS : 2;
}
