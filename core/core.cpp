#include "kipcore.h"

#include <sched.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdlib>

namespace {

constexpr size_t kAlignment = 64;                     // one cache line, and the widest vector
constexpr int kFallbackCacheBytes = 2 * 1024 * 1024;  // where the system does not tell
constexpr int kNullPointer = -8;

std::atomic<int> configuredThreads{0};  // 0: the default

int availableProcessors() {
  cpu_set_t allowed;
  if (sched_getaffinity(0, sizeof allowed, &allowed) == 0) return std::max(1, CPU_COUNT(&allowed));
  return static_cast<int>(std::max(1L, sysconf(_SC_NPROCESSORS_ONLN)));
}

}  // namespace

extern "C" {

void* kipMalloc(size_t length) {
  if (length == 0 || length > SIZE_MAX - kAlignment) return nullptr;
  const size_t wholeLines = (length + kAlignment - 1) / kAlignment * kAlignment;
  return std::aligned_alloc(kAlignment, wholeLines);
}

void kipFree(void* ptr) { std::free(ptr); }

int kipGetMaxCacheSizeB(int* sizeBytes) {
  if (sizeBytes == nullptr) return kNullPointer;
  const long largest = std::max({sysconf(_SC_LEVEL1_DCACHE_SIZE), sysconf(_SC_LEVEL2_CACHE_SIZE),
                                 sysconf(_SC_LEVEL3_CACHE_SIZE), sysconf(_SC_LEVEL4_CACHE_SIZE)});
  *sizeBytes = largest > 0 ? static_cast<int>(std::min(largest, 1L << 30)) : kFallbackCacheBytes;
  return 0;
}

void kipSetNumThreads(int count) { configuredThreads = std::max(count, 0); }

int ownGetNumThreads(void) {
  static const int standard = availableProcessors();
  const int configured = configuredThreads;
  return configured > 0 ? configured : standard;
}

}  // extern "C"
