// The version record and the core library.
#include <gtest/gtest.h>
#include <sched.h>

#include <cstdint>
#include <cstring>

#include "kipcc.h"
#include "kipcore.h"

namespace {

TEST(Version, IsTheConstantRecord) {
  const KipLibraryVersion* version = kipccGetLibVersion();
  EXPECT_EQ(version->major, 6);
  EXPECT_EQ(version->minor, 1);
  EXPECT_EQ(version->majorBuild, 137);
  EXPECT_EQ(version->build, 754);
  EXPECT_EQ(std::memcmp(version->targetCpu, "t7\0\0", 4), 0);
  EXPECT_STREQ(version->Name, "libkipcct7.so.6.1");
  EXPECT_STREQ(version->Version, "6.1 build 137.56");
  EXPECT_STREQ(version->BuildDate, "Mar 17 2010");
  EXPECT_EQ(kipccGetLibVersion(), version);
}

TEST(CoreLibrary, AlignsMemoryOfAnyLengthToCacheLines) {
  for (const size_t length : {1, 63, 64, 65, 1000003}) {
    void* memory = kipMalloc(length);
    ASSERT_NE(memory, nullptr) << length;
    EXPECT_EQ(reinterpret_cast<uintptr_t>(memory) % 64, 0u) << length;
    std::memset(memory, 0, length);
    kipFree(memory);
  }
  kipFree(nullptr);
}

TEST(CoreLibrary, HasNoMemoryForNothingOrTooMuch) {
  EXPECT_EQ(kipMalloc(0), nullptr);
  // Rounding such a length up to whole cache lines must not wrap around.
  for (const size_t length : {SIZE_MAX, SIZE_MAX - 62}) {
    EXPECT_EQ(kipMalloc(length), nullptr) << length;
  }
}

TEST(CoreLibrary, UsesAsManyThreadsAsItIsTold) {
  cpu_set_t processors;
  ASSERT_EQ(sched_getaffinity(0, sizeof processors, &processors), 0);
  const int standard = CPU_COUNT(&processors);
  EXPECT_EQ(ownGetNumThreads(), standard);
  kipSetNumThreads(7);
  EXPECT_EQ(ownGetNumThreads(), 7);
  for (const int none : {0, -1}) {
    kipSetNumThreads(3);
    kipSetNumThreads(none);
    EXPECT_EQ(ownGetNumThreads(), standard) << none;
  }
}

TEST(CoreLibrary, KnowsTheCache) {
  int bytes = 0;
  EXPECT_EQ(kipGetMaxCacheSizeB(&bytes), 0);
  EXPECT_GE(bytes, 16 * 1024);
  EXPECT_EQ(kipGetMaxCacheSizeB(nullptr), -8);
}

}  // namespace
