// What is measured: each exported function, and of a function with several methods each method, on images of one size.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "images.h"

namespace bench {

/// A function with the arguments that select its method.
struct Subject {
  std::string name;  ///< the function's, with "/method" where it has several
  const kip::Function* function;
  int choice = 0, noise = 0;
};

std::vector<Subject> allSubjects();

/// A subject with images to work on.
class Setting {
 public:
  Setting(const Subject& subject, int width, int height, const std::string& target);

  KipStatus run() { return run(function_.call); }
  /// The same by another build of the function.
  KipStatus run(const kip::Function::Call& call) { return call(arguments_); }
  const Call& call() const { return call_; }

  /// Read and written by one run.
  size_t bytes() const { return bytes_; }

  /// memcpy that reads and writes as many bytes as one run, in the same memory.
  void copy();

 private:
  const kip::Function& function_;
  kip::Arguments arguments_;
  Call call_;
  size_t bytes_;
  std::unique_ptr<Image> source_, destination_;
};

}  // namespace bench
