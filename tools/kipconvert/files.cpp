#include "files.h"

#include <fcntl.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

void failOn(const std::string& name) { throw std::runtime_error(name + ": " + std::strerror(errno)); }

void enlargePipe(int file) {
  constexpr int kBytes = 1 << 20;  // what users other than root may ask for
  fcntl(file, F_SETPIPE_SZ, kBytes);
}
