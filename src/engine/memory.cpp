#include "engine/memory.h"

#include <cstdint>

#include "kipcore.h"

namespace kip {
namespace {

template <class T>
T* allocate(int count) {
  // In 32 bits, the number of bytes may not fit.
  if (count < 1 || static_cast<size_t>(count) > SIZE_MAX / sizeof(T)) return nullptr;
  return static_cast<T*>(kipMalloc(count * sizeof(T)));
}

}  // namespace

Kip16u* kipsMalloc_16u(int count) { return allocate<Kip16u>(count); }
Kip32f* kipsMalloc_32f(int count) { return allocate<Kip32f>(count); }

void kipsFree(void* memory) { kipFree(memory); }

}  // namespace kip
