// One call under test: run in any memory, compared anywhere.
#pragma once

#include <string>
#include <vector>

#include "support/cases.h"
#include "support/memory.h"

namespace kip {

/// A destination after a call, and which of its bytes the call wrote.
struct Outcome {
  KipStatus status;
  Content content;
  std::vector<std::vector<bool>> written;

  /// What a destination that held this holds after the same call.
  Content over(Content before) const;
};

/// A case in memory of some kind.
class Trial {
 public:
  Trial(const Case& that, Placement placement, int variation = 0);

  /// Calls the function over a destination of `fill`. A touched unmapped page is a failure of the test.
  KipStatus operator()(uint8_t fill = kFill);

  /// Fails the test unless the destination is as expected and everything around it, and the source, is as before. Any
  /// NaN stands for any other. Rows and gaps are overwritten.
  void expect(Content destination, const std::string& who) const;

  Content destination() const;

  Arguments arguments;  ///< may be changed before a call

 private:
  const Case& case_;
  Placement placement_;
  std::vector<PlaneMemory> source_, destination_;
};

/// Runs a case twice over different memory, to tell what it wrote.
Outcome outcomeOf(const Case& that);

/// What the function makes of this source, in memory without surprises. A status other than success fails the test.
Content convert(const Function& function, KipiSize size, const Content& source, const Arguments& settings = {});

/// The kinds of memory that a case can be run in.
std::vector<Placement> placementsFor(const Case& that);

/// The first kind, which every case fits in.
Placement plainPlacement(const Function& function);

}  // namespace kip
