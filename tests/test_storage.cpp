// Memory storage and block sequences.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "orvik.h"
#include "support/log_capture.h"

namespace {

using Messages = std::vector<std::string>;

constexpr uint32_t kLinks = sizeof(ovkMemBlock);
constexpr uint32_t kDefaultBlockSize = 65408;

TEST(MemStorage, AllocateHandsOutOnlyFreshBlocks) {
  ovkMemStorage storage;
  ovkInitMemStorage(&storage);
  ovkSeq seq;
  EXPECT_EQ(ovkInitSeq(&seq, 8, &storage), int32_t((kDefaultBlockSize - kLinks) / 8));
  LogCapture log;
  auto* first = static_cast<uint8_t*>(ovkAllocateMemBlock(&storage, 100));
  EXPECT_EQ(first, reinterpret_cast<uint8_t*>(storage.top) + kLinks);
  EXPECT_EQ(storage.freeSpace, (kDefaultBlockSize - kLinks - 100) & ~3u);
  EXPECT_EQ(ovkAllocateMemBlock(&storage, int32_t(storage.freeSpace)), nullptr);
  ovkMemBlock* firstBlock = storage.top;
  ASSERT_NE(ovkAllocateMemBlock(&storage, int32_t(storage.freeSpace) + 1), nullptr);
  EXPECT_EQ(storage.bottom, firstBlock);
  EXPECT_EQ(firstBlock->next, storage.top);
  EXPECT_EQ(storage.top->prev, firstBlock);
  EXPECT_EQ(log.messages(), Messages{});
  // Requests beyond a block's room are reported and served all the same.
  const int32_t room = int32_t((kDefaultBlockSize - kLinks) & ~3u);
  for (int32_t size : {room, room + 1, -4}) {
    ovkMemStorage fresh;
    ovkInitMemStorage(&fresh);
    EXPECT_NE(ovkAllocateMemBlock(&fresh, size), nullptr) << size;
    ovkDeInitMemStorage(&fresh);
  }
  EXPECT_EQ(log.messages(), Messages(2, "Too large memory block is requested\n"));
  EXPECT_EQ(ovkDeInitMemStorage(&storage), 0);
  EXPECT_EQ(storage.bottom, nullptr);
  EXPECT_EQ(storage.blockSize, kDefaultBlockSize);
  EXPECT_EQ(ovkDeInitMemStorage(nullptr), 0);
  ASSERT_EQ(log.lines().size(), 3u);
  EXPECT_EQ(log.lines()[2].message, "NULL storage pointer\n");
  EXPECT_EQ(log.lines()[2].priority, 6);
  EXPECT_EQ(log.lines()[2].tag, "orvik_lib_log");
}

using Element = std::array<uint32_t, 3>;
Element element(uint32_t i) { return {i, i * i, ~i}; }

// Three elements per block, so a handful of elements spans several blocks.
class Sequence : public ::testing::Test {
 protected:
  static constexpr uint32_t kPerBlock = 3;
  void SetUp() override {
    for (uint32_t i = 0; i < 16; ++i) elements.push_back(element(i));
    ovkInitMemStorage(&storage);
    storage.blockSize = kLinks + kPerBlock * sizeof(Element) + 4;
    ASSERT_EQ(ovkInitSeq(&seq, sizeof(Element), &storage), int32_t(kPerBlock));
  }
  void TearDown() override { ovkDeInitMemStorage(&storage); }

  void push(uint32_t from, uint32_t to) {
    for (uint32_t i = from; i < to; ++i) ASSERT_EQ(ovkSeqPush(&seq, &elements[i]), int32_t(i + 1));
  }
  // Element i lives in block i / 3 at place i % 3.
  void expectLaidOut(uint32_t count) const {
    std::vector<ovkMemBlock*> chain;
    for (ovkMemBlock* block = storage.bottom; block; block = block->next) chain.push_back(block);
    ASSERT_EQ(chain.size(), (count + kPerBlock - 1) / kPerBlock);
    for (uint32_t i = 0; i < count; ++i) {
      const uint8_t* data = reinterpret_cast<const uint8_t*>(chain[i / kPerBlock]) + kLinks;
      EXPECT_EQ(reinterpret_cast<const Element*>(data)[i % kPerBlock], element(i)) << i;
    }
  }

  std::vector<Element> elements;
  ovkMemStorage storage;
  ovkSeq seq;
};

TEST_F(Sequence, PushFillsBlockAfterBlockAndReaderWalksThem) {
  push(0, 10);
  expectLaidOut(10);
  ovkSeqReader reader;
  ovkStartReadSeq(&seq, &reader);
  for (uint32_t i = 0; i < 10; ++i) {
    EXPECT_EQ(*reinterpret_cast<const Element*>(reader.ptr), element(i)) << i;
    ovkNextSeqElem(&reader, sizeof(Element));
  }
  // Now at the second of three places in the last block: one more step
  // reaches its last place, the next one finds no block to move to.
  EXPECT_EQ(reader.ptr, seq.ptr);
  ovkNextSeqElem(&reader, sizeof(Element));
  const uint8_t* lastPlace = reader.ptr;
  ovkNextSeqElem(&reader, sizeof(Element));
  EXPECT_EQ(reader.ptr, lastPlace);
  EXPECT_EQ(reader.block, storage.top);
}

TEST_F(Sequence, GetElementAcceptsIndexesUpToTheCount) {
  push(0, 10);
  for (uint32_t i = 0; i < 10; ++i) EXPECT_EQ(*static_cast<Element*>(ovkGetSeqElem(&seq, i)), element(i)) << i;
  EXPECT_EQ(ovkGetSeqElem(&seq, 10), seq.ptr);  // the next free place
  LogCapture log;
  EXPECT_EQ(ovkGetSeqElem(&seq, 11), nullptr);
  EXPECT_EQ(log.messages(), Messages{"bad index\n"});
}

TEST_F(Sequence, PushMultiOnlyIntoAnEmptySequence) {
  ovkSeqPushMulti(&seq, elements.data(), 10);
  EXPECT_EQ(seq.total, 10u);
  push(10, 13);  // fills the remainder's block, then opens a fifth
  expectLaidOut(13);
  LogCapture log;
  ovkSeqPushMulti(&seq, elements.data(), 2);
  EXPECT_EQ(seq.total, 13u);
  EXPECT_EQ(log.messages(), Messages{"seq is not clear or initialized\n"});
  EXPECT_EQ(ovkClearSeq(&seq), 0);
  EXPECT_EQ(seq.total, 0u);
  EXPECT_EQ(storage.bottom, nullptr);
  ovkSeqPushMulti(&seq, elements.data(), 6);
  expectLaidOut(6);
}

TEST_F(Sequence, PopMultiCopiesTheFirstElements) {
  push(0, 10);
  const std::vector<Element> untouched(8, element(99));
  std::vector<Element> out = untouched;
  LogCapture log;
  ovkSeqPopMulti(&seq, out.data(), 11);
  EXPECT_EQ(log.messages(), Messages{"require too pop too much elements\n"});
  EXPECT_EQ(out, untouched);
  ovkSeqPopMulti(&seq, out.data(), 7);
  for (uint32_t i = 0; i < 7; ++i) EXPECT_EQ(out[i], element(i)) << i;
  EXPECT_EQ(out[7], element(99));
}

void* noScratch(uint32_t) { return nullptr; }

TEST_F(Sequence, FailedPushStoresNothing) {
  LogCapture log;
  const ovkGetScratchBufferUnalignedFn scratch = ovkGetScratchBufferUnaligned_;
  ovkGetScratchBufferUnaligned_ = noScratch;
  EXPECT_EQ(ovkSeqPush(&seq, &elements[0]), 0);
  ovkGetScratchBufferUnaligned_ = scratch;
  EXPECT_EQ(log.messages(), (Messages{"NULL storage pointer\n", "cannot allocate new block\n"}));
  // A block taken for other use still has room for a whole element area.
  log.clear();
  ASSERT_NE(ovkAllocateMemBlock(&storage, 4), nullptr);
  EXPECT_EQ(ovkSeqPush(&seq, &elements[0]), 0);
  EXPECT_EQ(log.messages(), Messages{"cannot allocate new block\n"});
  EXPECT_EQ(seq.ptr, nullptr);
  log.clear();
  seq.storage = nullptr;
  EXPECT_EQ(ovkClearSeq(&seq), 0);
  EXPECT_EQ(log.messages(), Messages{"NULL storage pointer\n"});
}

// Borrows scratch buffers until the pool refuses one, and gives them back.
size_t lendableBuffers() {
  std::vector<void*> held;
  while (void* buffer = ovkGetScratchBufferUnaligned_(16)) held.push_back(buffer);
  for (void* buffer : held) ovkReleaseScratchBuffer_(buffer);
  return held.size();
}

TEST_F(Sequence, BlocksAreScratchBuffersGivenBackOnClear) {
  ovkMemInit();
  push(0, 10);
  EXPECT_EQ(lendableBuffers(), 32u - 4u);
  ovkClearSeq(&seq);
  // Tearing the pool down waits for lent blocks, so stop here if any are left.
  ASSERT_EQ(lendableBuffers(), 32u);
  EXPECT_EQ(ovkMemDeInit(), 0);
}

uint8_t gMisalignedBlock[256];
void* misalignedScratch(uint32_t) { return gMisalignedBlock + 2; }

TEST(MemStorageDeathTest, MisalignedBlocksEndTheProcess) {
  ovkMemStorage storage;
  ovkInitMemStorage(&storage);
  storage.blockSize = kLinks + 42;
  EXPECT_EXIT(ovkAllocateMemBlock(&storage, 4), ::testing::ExitedWithCode(1),
              "src/cpu/orvikHoughCircleC@205: "
              "st->free_space % \\(\\(int32_t\\)sizeof\\(float32_t\\)\\) == 0 Assertion failed");
  storage.blockSize = kLinks + 40;
  EXPECT_EXIT(
      {
        ovkGetScratchBufferUnaligned_ = misalignedScratch;
        ovkAllocateMemBlock(&storage, 4);
      },
      ::testing::ExitedWithCode(1),
      "src/cpu/orvikHoughCircleC@208: "
      "\\(uintptr_t\\)ptr % \\(\\(int32_t\\)sizeof\\(float32_t\\)\\) == 0 Assertion failed");
}

}  // namespace
