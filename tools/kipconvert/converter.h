// Converts the frames of a stream.
#pragma once

#include <memory>
#include <string>

#include "frame.h"
#include "steps.h"

class Converter {
 public:
  /// `scan` is that of a Stream. Where frames may have fields, the pictures' heights are rowsInMemory.
  Converter(const KipPicture& from, const KipPicture& to, const KipPlanOptions& options, char scan);

  void run(const Frame& from, Frame& to);
  std::string description() const;

 private:
  std::unique_ptr<Step> whole_, fields_;  ///< no fields_ where it does not matter how a frame was scanned
};

/// The rows that frames need in memory: where they may have fields, these have the same height, in luma and in chroma.
int rowsInMemory(const KipPicture& from, const KipPicture& to, char scan);
