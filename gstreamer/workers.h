// The rows of a picture in bands, one for each thread.
#pragma once

#include <gst/gst.h>

#include <functional>

#include "kipcc.h"

namespace gstkip {

/// Threads that an element keeps while it plays. Its streaming thread is one of them.
class Workers {
 public:
  /// Converts `rows` rows from `first` on; `worker` is below count() and the same for no two calls at a time.
  using Band = std::function<KipStatus(int worker, int first, int rows)>;

  Workers() = default;
  ~Workers() { stop(); }
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  /// How many threads to use, 0 for one per processor. Costs nothing where it is what it was.
  void setCount(unsigned count);
  int count() const { return count_; }

  /// Calls `band` for bands that make up all rows, and returns when all are done: the first status that is not ok, in
  /// the order of rows. Bands start at multiples of `unit`.
  KipStatus run(int rows, int unit, const Band& band);

  /// Ends the threads.
  void stop();

 private:
  GstTaskPool* pool_ = nullptr;
  int count_ = 1;
};

}  // namespace gstkip
