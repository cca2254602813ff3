// Scratch memory: the only way in which the library allocates.
#pragma once

#include <memory>

#include "kipcc.h"

namespace kip {

/// `count` elements, aligned to 64 bytes; null when there is no memory or the count is below 1.
Kip16u* kipsMalloc_16u(int count);
Kip32f* kipsMalloc_32f(int count);

/// Releases what the functions above returned; null is ignored.
void kipsFree(void* memory);

/// Owns what the functions above returned.
struct Release {
  void operator()(void* memory) const { kipsFree(memory); }
};
template <class T>
using Scratch = std::unique_ptr<T[], Release>;

}  // namespace kip
