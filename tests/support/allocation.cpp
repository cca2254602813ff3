#include "support/allocation.h"

#include <dlfcn.h>

#include <atomic>

#include "kipcore.h"

namespace {

std::atomic<int> failing{0}, asked{0}, held{0};

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
  if (memory) ++held;
  return memory;
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
int allocationsAsked() { return asked; }
int allocationsHeld() { return held; }

}  // namespace kip
