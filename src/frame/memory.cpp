#include "frame/memory.h"

#include "kipcore.h"

namespace kip {
namespace {

template <class T>
T* allocate(int count) {
  return count < 1 ? nullptr : static_cast<T*>(kipMalloc(static_cast<size_t>(count) * sizeof(T)));
}

}  // namespace

Kip16s* kipsMalloc_16s(int count) { return allocate<Kip16s>(count); }
Kip16u* kipsMalloc_16u(int count) { return allocate<Kip16u>(count); }
Kip32f* kipsMalloc_32f(int count) { return allocate<Kip32f>(count); }

void kipsFree(void* memory) { kipFree(memory); }

}  // namespace kip
