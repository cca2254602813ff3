// Bayer sources: rows of interleaved RGB, demosaiced in blocks by libkipcct7.
#pragma once

#include "plan.h"

namespace kip::convert {

class BayerRows {
 public:
  BayerRows(const KipPlan& plan, const KipPlanes& src, uint8_t* scratch) : plan_(plan), src_(src), scratch_(scratch) {}

  /// A row of the picture as interleaved RGB. Rows are asked for from top to bottom.
  const uint8_t* row(int y);

 private:
  void demosaic(int first, int rows);
  /// Rows first to last - 1 of packed samples, as 16-bit samples whose highest bits they are.
  void unpack(int first, int last);

  const KipPlan& plan_;
  const KipPlanes& src_;
  uint8_t* scratch_;
  int first_ = 0, rows_ = 0;  // what the block holds
};

}  // namespace kip::convert
