// Where bytes go.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

/// A file, or standard output where the name is "-". A regular file is there under its name, replacing what was there
/// before, only after finish(): until then it is written under another one, which is removed when it is not finished or
/// a signal ends the program. Errors are std::runtime_error.
class Output {
 public:
  explicit Output(const std::string& name);
  ~Output();
  Output(const Output&) = delete;

  void write(std::span<const uint8_t> bytes);
  void write(const std::string& text);
  void finish();

 private:
  void openBeside(const std::string& target);

  const std::string name_;
  std::string target_, partial_;  ///< where the file goes and where it is meanwhile; none for what is no regular file
  int file_ = -1;
};
