// Ways to convert one picture.
#pragma once

#include <memory>
#include <string>

#include "kipconvert.h"

/// Errors are std::runtime_error.
class Step {
 public:
  virtual ~Step() = default;
  virtual void run(const KipPlanes& from, const KipPlanes& to) = 0;
  /// One line for each stage.
  virtual std::string description() const = 0;
};

/// A plan of the library. Failing, says what to write instead.
std::unique_ptr<Step> makePlan(const KipPicture& from, const KipPicture& to, const KipPlanOptions& options);

/// Frames of two fields, whose rows do not mix. Heights are multiples of 2 << chromaShiftY of both formats.
std::unique_ptr<Step> makeFields(const KipPicture& from, const KipPicture& to, const KipPlanOptions& options);
