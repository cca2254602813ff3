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
#include <optional>
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
    "Usage: kipcc-verify [--first] [TARGET | FUNCTION]...\n"
    "       kipcc-verify --print\n"
    "Checks that the installed kipcc library makes the promised bytes on this machine: calls every function on\n"
    "generated images with each set of kernels that the processor runs, and compares hashes of the results.\n"
    "\n"
    "  TARGET    checks only these sets of kernels: names as in the last line of the output, or `best` for the one "
    "that\n"
    "            the library chooses by itself, or `lowest` for the one for the oldest processors\n"
    "  FUNCTION  checks only these functions\n"
    "  --first   stops at the first difference\n"
    "  --print   prints the hashes instead: a line for each function, with a hash for each set of its calls\n"
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

/// What is checked.
struct Request {
  std::vector<Target> targets;
  std::string targetNames;
  std::vector<const Function*> functions;
  bool untilFirst = false;
};

class Verification {
 public:
  explicit Verification(const Request& request)
      : request_(request), targets_(request.targets), golden_(goldenLines()) {}

  int run() {
    for (const Function* function : request_.functions) {
      check(*function);
      if (differences_ != 0 && request_.untilFirst) break;
    }
    std::printf("%zu functions, %s: %zu hashes compared, %zu differences\n", request_.functions.size(),
                request_.targetNames.c_str(), compared_, differences_);
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
      if (differences_ != 0 && request_.untilFirst) return;
      const Hashes found = goldenHashes(function, sets[s], targets_);
      for (size_t t = 0; t < targets_.size(); ++t, ++compared_) {
        if (found[t] == expected[s]) continue;
        std::printf("%s: %s: %016" PRIx64 " instead of %016" PRIx64 "\n", targets_[t].name().c_str(),
                    textOf(function, sets[s]).c_str(), found[t], expected[s]);
        ++differences_;
      }
    }
  }

  const Request& request_;
  const std::vector<Target>& targets_;
  std::map<std::string, Hashes> golden_;
  size_t compared_ = 0, differences_ = 0;
};

/// All that the library has and this processor runs, the best one first.
std::vector<Target> allTargets() {
  std::vector<Target> all = kip::vectorTargets();
  all.push_back(kip::fallbackTarget());
  return all;
}

std::vector<const Function*> allFunctions() {
  std::vector<const Function*> all;
  for (const Function& function : kip::registry()) all.push_back(&function);
  return all;
}

std::optional<Target> targetOf(const std::string& name) {
  const std::vector<Target> all = allTargets();
  if (name == "best") return kip::bestTarget();
  if (name == "lowest") return all[all.size() < 2 ? 0 : all.size() - 2];
  const auto found = std::find_if(all.begin(), all.end(), [&](const Target& target) { return target.name() == name; });
  return found == all.end() ? std::nullopt : std::optional(*found);
}

/// Nothing where a word is neither an option, nor a target of this processor and library, nor a function.
std::optional<Request> requestOf(std::span<char*> words) {
  Request request;
  for (const std::string word : words) {
    const Function* function = kip::find(word);
    const std::optional<Target> target = targetOf(word);
    if (word == "--first") {
      request.untilFirst = true;
    } else if (target) {
      request.targets.push_back(*target);
    } else if (function) {
      request.functions.push_back(function);
    } else {
      return std::nullopt;
    }
  }
  if (request.targets.empty()) request.targets = allTargets();
  if (request.functions.empty()) request.functions = allFunctions();
  return request;
}

int verify(Request request) {
  if (sharesHighway()) {
    request.targetNames = "targets";
    for (const Target& target : request.targets) request.targetNames.append(1, ' ').append(target.name());
  } else {
    request.targets = {kip::bestTarget()};
    request.targetNames = "the library's own target";
  }
  return Verification(request).run();
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
  if (const std::optional<Request> request = requestOf(std::span(words, count).subspan(1))) return verify(*request);
  const bool asked = option == "--help";
  std::fputs(kUsage, asked ? stdout : stderr);
  return asked ? EXIT_SUCCESS : 2;
}
