/**
 * @file kipcore.h
 * The core library, libkipcore.so.6.1: aligned memory, the number of worker threads, the cache size.
 *
 * A separate shared object, so that an application can put its own definitions of these functions in front of it.
 * All functions may be called from any thread.
 */
#ifndef KIPCORE_H
#define KIPCORE_H

#include <stddef.h>

#ifndef KIPAPI
#if defined(__GNUC__)
#define KIPAPI __attribute__((visibility("default")))
#else
#define KIPAPI
#endif
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** Allocates @p length bytes, aligned to 64. Returns null when there is no memory or @p length is 0. */
KIPAPI void* kipMalloc(size_t length);

/** Releases what kipMalloc returned; null is ignored. */
KIPAPI void kipFree(void* ptr);

/** Writes the size in bytes of the largest processor cache to @p *sizeBytes. Returns 0, or -8 for a null pointer. */
KIPAPI int kipGetMaxCacheSizeB(int* sizeBytes);

/** Sets the number of worker threads that later calls ask for; below 1 restores the default, which is the number of
 *  processors that this process may run on. Conversions use no more threads than that, but for error diffusion. */
KIPAPI void kipSetNumThreads(int count);

/** The number of worker threads to use, at least 1. */
KIPAPI int ownGetNumThreads(void);

#ifdef __cplusplus
}
#endif
#endif
