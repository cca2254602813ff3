#include "support/allocation.h"

#include <dlfcn.h>

#include <atomic>
#include <cstring>

#include "kipcore.h"

namespace {

std::atomic<int> failing{0}, asked{0}, held{0};
std::atomic<unsigned char> fill{0xCD};

template <class F>
F* coreLibrarys(const char* name) {
  return reinterpret_cast<F*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

void* kipMalloc(size_t length) {
  static const auto real = coreLibrarys<void*(size_t)>("kipMalloc");
  if (++asked == failing) return nullptr;
  void* memory = real(length);
  if (memory == nullptr) return nullptr;
  ++held;
  return std::memset(memory, fill, length);
}

void kipFree(void* memory) {
  static const auto real = coreLibrarys<void(void*)>("kipFree");
  if (memory) --held;
  real(memory);
}

}  // extern "C"

namespace kip {

void failAllocation(int number) {
  failing = number;
  asked = held = 0;
}
void fillAllocations(unsigned char byte) { fill = byte; }
int allocationsAsked() { return asked; }
int allocationsHeld() { return held; }

}  // namespace kip
