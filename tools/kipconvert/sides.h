// What is converted to what: what files and options say, put together.
#pragma once

#include <string>
#include <vector>

#include "options.h"

struct Sides {
  Stream from, to;
  /// Sentences on what nobody said.
  std::vector<std::string> assumed;
};

Sides settleSides(const Stream& source, const Options& options, const Container& container);

/// As options have them.
const char* nameOf(KipChromaSite site);

/// Why there is no plan between two pictures, and what to write instead.
std::string explainFailure(KipStatus status, const KipPicture& from, const KipPicture& to);
