// The golden bytes: hashes of what every function makes of generated images, which no change of the library, no other
// processor, word size or compiler may move. tests/golden/hashes.txt has a line for each function: its name, and a hash
// for each of its sets of calls.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "support/cases.h"
#include "support/targets.h"

namespace kip {

/// Calls whose results are hashed together: one choice of the optional arguments, one kind of values, all sizes.
struct GoldenSet {
  Arguments settings;
  Values values;
};

/// In the order of the hashes of a line.
std::vector<GoldenSet> goldenSets(const Function& function);

/// Calls the function once, with its rows in plain memory one after the other or so many samples apart.
struct PlainResult {
  KipStatus status;
  Content destination;  ///< with what is between the rows
};
PlainResult convertInPlainMemory(const Case& that, int gap = 0);

/// The hash of a set on each of the targets, with statuses and all bytes of the destinations.
std::vector<uint64_t> goldenHashes(const Function& function, const GoldenSet& set, std::span<const Target> targets);

}  // namespace kip
