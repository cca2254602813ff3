#include "output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <stdexcept>

#include "files.h"

namespace {

/// The file that a signal has to remove; a program writes one at a time.
char unfinished[4096] = "";

extern "C" void removeUnfinished(int signal) {
  if (unfinished[0]) unlink(unfinished);
  std::signal(signal, SIG_DFL);
  raise(signal);
}

void removeOnSignals(const std::string& name) {
  std::strcpy(unfinished, name.c_str());
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction before = {};
    sigaction(signal, nullptr, &before);
    if (before.sa_handler != SIG_IGN) std::signal(signal, removeUnfinished);  // nohup ignores one of them
  }
}

bool isSpecial(const std::string& name) {
  struct stat status = {};
  return stat(name.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

}  // namespace

Output::Output(const std::string& name) : name_(name == "-" ? "standard output" : name) {
  if (name == "-") {
    file_ = STDOUT_FILENO;
  } else if (isSpecial(name)) {
    file_ = open(name.c_str(), O_WRONLY | O_CLOEXEC);
  } else {
    openBeside(std::filesystem::weakly_canonical(name));  // a link stays one
  }
  if (file_ < 0) failOn(name);
  enlargePipe(file_);
}

void Output::openBeside(const std::string& target) {
  target_ = target;
  partial_ = target + "." + std::to_string(getpid()) + ".part";
  if (partial_.size() >= sizeof unfinished) throw std::runtime_error(name_ + ": the name is too long");
  file_ = open(partial_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (file_ < 0) failOn(name_);
  removeOnSignals(partial_);
}

Output::~Output() {
  if (file_ > STDERR_FILENO) close(file_);
  if (!partial_.empty()) unlink(partial_.c_str());
  unfinished[0] = '\0';
}

void Output::write(std::span<const uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file_, bytes.data(), bytes.size());
    if (written >= 0) {
      bytes = bytes.subspan(written);
    } else if (errno != EINTR) {
      failOn("cannot write " + name_);
    }
  }
}

void Output::write(const std::string& text) { write({reinterpret_cast<const uint8_t*>(text.data()), text.size()}); }

void Output::finish() {
  const int file = file_;
  file_ = -1;
  if (close(file) != 0) failOn("cannot write " + name_);
  if (partial_.empty()) return;
  if (std::rename(partial_.c_str(), target_.c_str()) != 0) failOn("cannot write " + name_);
  partial_.clear();
}
