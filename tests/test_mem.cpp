// Aligned allocation and the scratch-buffer pool.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

#include "cpu/orvikBackend.h"
#include "orvik.h"

namespace {

constexpr uint32_t kPoolSlots = 32;
constexpr uint32_t kDirectProbe = 40;  // more than the pool could ever lend
constexpr uint32_t kPreAllocCap = 3840u * 2160u * 4u;

uint8_t* getAligned(uint32_t size, uint32_t alignment) {
  return static_cast<uint8_t*>(ovkGetScratchBufferAligned_(size, alignment));
}
void release(void* ptr) { ovkReleaseScratchBuffer_(ptr); }
uintptr_t address(const void* ptr) { return reinterpret_cast<uintptr_t>(ptr); }

// Borrows buffers until one is refused (at most kDirectProbe) and returns them:
// kPoolSlots while the pool is in use and nothing is lent, kDirectProbe without it.
uint32_t lendableBuffers() {
  std::vector<void*> held;
  while (held.size() < kDirectProbe) {
    void* ptr = ovkGetScratchBufferUnaligned_(16);
    if (!ptr) break;
    held.push_back(ptr);
  }
  for (void* ptr : held) release(ptr);
  return uint32_t(held.size());
}

// The first round starts never initialised, the second after the last user
// left and initialises through a pre-allocation of nothing.
TEST(MemDeInit, WithoutInitReturnsZeroAndChangesNothing) {
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(ovkMemDeInit(), 0);
    EXPECT_EQ(lendableBuffers(), kDirectProbe);
    if (round == 0)
      ovkMemInit();
    else
      EXPECT_EQ(ovkMemInitPreAlloc(0), 1);
    EXPECT_EQ(lendableBuffers(), kPoolSlots);
    EXPECT_EQ(ovkMemDeInit(), 0);
    EXPECT_EQ(lendableBuffers(), kDirectProbe);
  }
}

// ovkMemAlign serves alignments up to 128; scratch requests, while there is
// no pool, are each their own block at any power-of-two alignment.
TEST(MemAlign, BlocksAreAlignedWritableAndFreedWhole) {
  const struct {
    ovkGetScratchBufferAlignedFn allocate;
    ovkReleaseScratchBufferFn free;
    uint32_t largestAlignment;
  } allocators[] = {{ovkMemAlign, ovkMemAlignFree, 128}, {ovkGetScratchBufferAligned_, release, 4096}};
  for (const auto& allocator : allocators)
    for (uint32_t alignment = 1; alignment <= allocator.largestAlignment; alignment *= 2)
      for (uint32_t size : {0u, 1u, 63u, 1000u}) {
        auto* block = static_cast<uint8_t*>(allocator.allocate(size, alignment));
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(address(block) % alignment, 0u) << alignment;
        memset(block, 0x5A, size);
        allocator.free(block);
      }
  ovkMemAlignFree(nullptr);
  for (uint32_t unservable : {0u, 24u, 256u}) EXPECT_EQ(ovkMemAlign(64, unservable), nullptr);
}

uint8_t gSharedArena[64];
int gSharedFrees = 0;
void* sharedAlloc(uint32_t size, uint32_t) { return size <= sizeof gSharedArena ? gSharedArena : nullptr; }
int32_t sharedFree(void* ptr) {
  ++gSharedFrees;
  return ptr == gSharedArena ? 0 : -1;
}

TEST(MemAlloc, UsesTheSharedAllocatorOnlyWhenBothHooksAreSet) {
  ovkSharedMemAlloc_ = sharedAlloc;
  ovkSharedMemFree_ = sharedFree;
  void* shared = ovkMemAlloc(32, 16);
  EXPECT_EQ(shared, gSharedArena);
  ovkMemFree(shared);
  EXPECT_EQ(gSharedFrees, 1);
  void* tooLargeForShared = ovkMemAlloc(1000, 16);  // falls back to an aligned block
  ASSERT_NE(tooLargeForShared, nullptr);
  EXPECT_EQ(address(tooLargeForShared) % 16, 0u);
  ovkMemFree(tooLargeForShared);
  EXPECT_EQ(gSharedFrees, 2);
  ovkSharedMemFree_ = nullptr;
  void* aligned = ovkMemAlloc(32, 16);
  EXPECT_NE(aligned, gSharedArena);
  ovkMemFree(aligned);
  ovkSharedMemAlloc_ = nullptr;
}

class ScratchPool : public ::testing::Test {
 protected:
  void SetUp() override { ovkMemInit(); }
  void TearDown() override { EXPECT_EQ(ovkMemDeInit(), 0); }
};

TEST_F(ScratchPool, LendsThirtyTwoBuffersAtATime) {
  std::vector<uint8_t*> held;
  for (uint32_t i = 0; i < kPoolSlots; ++i) {
    held.push_back(i % 2 ? getAligned(256, 16) : static_cast<uint8_t*>(ovkGetScratchBufferUnaligned_(256)));
    ASSERT_NE(held.back(), nullptr);
    memset(held.back(), int(i), 256);
  }
  EXPECT_EQ(getAligned(256, 16), nullptr);
  EXPECT_EQ(ovkGetScratchBufferUnaligned_(1), nullptr);
  void* fromOtherThread = &held;
  std::thread([&] { fromOtherThread = getAligned(1, 1); }).join();
  EXPECT_EQ(fromOtherThread, nullptr);
  for (uint32_t i = 0; i < kPoolSlots; ++i) EXPECT_EQ(held[i][255], i) << "buffers overlap";
  release(held[7]);
  EXPECT_EQ(getAligned(256, 16), held[7]);
  for (uint8_t* buffer : held) release(buffer);
}

TEST_F(ScratchPool, RepeatedRequestsReuseTheBlockWhichOnlyGrows) {
  uint8_t* block = getAligned(4096, 16);
  release(block);
  for (uint32_t size : {4096u, 100u, 0u}) {
    EXPECT_EQ(getAligned(size, 16), block) << size;
    release(block);
  }
  EXPECT_EQ(ovkGetScratchBufferUnaligned_(4096), block);
  release(block);
  uint8_t* grown = getAligned(8192, 16);
  EXPECT_NE(grown, block);
  memset(grown, 0, 8192);
  release(grown);
  EXPECT_EQ(getAligned(4096, 16), grown);
  release(grown);
}

TEST_F(ScratchPool, MisalignedBlockIsReplaced) {
  uint8_t* block = getAligned(64, 1);
  release(block);
  const uint32_t missedAlignment = uint32_t((address(block) & (~address(block) + 1)) << 1);
  uint8_t* aligned = getAligned(64, missedAlignment);
  EXPECT_NE(aligned, block);
  EXPECT_EQ(address(aligned) % missedAlignment, 0u);
  release(aligned);
}

TEST_F(ScratchPool, AlignmentThatIsNotAPowerOfTwoMeansNone) {
  constexpr int kHeld = 8;
  uint8_t* unaligned[kHeld];
  for (uint8_t*& buffer : unaligned) buffer = getAligned(64, 1);
  for (uint8_t* buffer : unaligned) release(buffer);
  // With eight blocks at least one would miss a real alignment of 24 or 1000.
  for (uint32_t alignment : {24u, 1000u}) {
    uint8_t* served[kHeld];
    for (uint8_t*& buffer : served) buffer = getAligned(64, alignment);
    for (int i = 0; i < kHeld; ++i) EXPECT_EQ(served[i], unaligned[i]) << alignment;
    for (uint8_t* buffer : served) release(buffer);
  }
}

TEST_F(ScratchPool, ReleasingForeignPointersChangesNothing) {
  struct ScratchHeader {  // what precedes every scratch pointer
    uint32_t marker;
    void* owner;
  };
  constexpr size_t kHeader = sizeof(ScratchHeader);
  uint8_t* lent = getAligned(64, 16);
  std::vector<uint8_t> noMarker(kHeader + 8, 0x5A);
  // A pooled marker naming the lent slot, in front of the wrong pointer.
  std::vector<uint8_t> forgedMarker(kHeader + 8, 0);
  memcpy(forgedMarker.data(), lent - kHeader, kHeader);
  // A pooled marker naming no slot at all.
  std::vector<uint8_t> strayMarker(kHeader + 8, 0);
  memset(strayMarker.data(), 0xCD, sizeof(uint32_t));
  for (std::vector<uint8_t>* foreign : {&noMarker, &forgedMarker, &strayMarker}) {
    const std::vector<uint8_t> before = *foreign;
    release(foreign->data() + kHeader);
    EXPECT_EQ(*foreign, before);
  }
  EXPECT_EQ(lendableBuffers(), kPoolSlots - 1);
  release(lent);
  EXPECT_EQ(lendableBuffers(), kPoolSlots);
}

TEST_F(ScratchPool, ThreadsOwnTheirBuffersExclusively) {
  constexpr int kThreads = 8, kRounds = 2000, kHeldPerThread = 3;  // 24 of 32 slots at most
  std::atomic<int> refused{0}, corrupted{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&, t] {
      for (int round = 0; round < kRounds; ++round) {
        uint8_t* held[kHeldPerThread];
        const uint32_t size = 64u << ((round + t) % 6);  // sizes vary so blocks get replaced
        for (uint8_t*& buffer : held) {
          buffer = getAligned(size, 16);
          if (buffer) memset(buffer, t + 1, size);
        }
        std::this_thread::yield();
        for (uint8_t* buffer : held) {
          refused += !buffer;
          if (!buffer) continue;
          corrupted += int(std::count_if(buffer, buffer + size, [&](uint8_t byte) { return byte != t + 1; }));
          release(buffer);
        }
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(refused, 0);
  EXPECT_EQ(corrupted, 0);
  EXPECT_EQ(lendableBuffers(), kPoolSlots);
}

// Nested initialisation cannot be undone within a process (an inner
// ovkMemDeInit clears the flag the outer one needs), so these run in a child.
TEST(MemInitPreAllocDeathTest, LargeRequestIsCappedToOneFrame) {
  EXPECT_EXIT(
      {
        ovkMemInit();
        uint8_t* block = getAligned(kPreAllocCap + 64, 16);
        memset(block, 0xEE, kPreAllocCap + 64);
        release(block);
        EXPECT_EQ(ovkMemInitPreAlloc(kPreAllocCap + 4096), 1);
        uint8_t* again = getAligned(kPreAllocCap + 64, 16);
        EXPECT_EQ(again, block);  // the capped request fitted the existing block
        EXPECT_EQ(again[0], 0);
        EXPECT_EQ(again[kPreAllocCap - 1], 0);
        EXPECT_EQ(again[kPreAllocCap], 0xEE);
        release(again);
        exit(::testing::Test::HasFailure() ? 2 : 0);
      },
      ::testing::ExitedWithCode(0), "");
}

TEST(MemInitDeathTest, InnerDeInitOfNestedInitsKeepsThePool) {
  EXPECT_EXIT(
      {
        ovkMemInit();
        ovkMemInit();
        EXPECT_EQ(ovkMemDeInit(), 0);
        EXPECT_EQ(lendableBuffers(), kPoolSlots);
        EXPECT_EQ(ovkMemDeInit(), 0);  // flag already cleared: nothing happens
        EXPECT_EQ(lendableBuffers(), kPoolSlots);
        exit(::testing::Test::HasFailure() ? 2 : 0);
      },
      ::testing::ExitedWithCode(0), "");
}

}  // namespace
