// Memory storage: a chain of fixed-size blocks borrowed as scratch buffers,
// and the sequences kept in it for algorithms that produce an unknown number
// of elements.  Elements never move once written; growing adds a block.
#include <string.h>

#include <algorithm>

#include "orvikInternal.h"

namespace {

constexpr uint32_t kDefaultBlockSize = 65408;
constexpr uint32_t kLinkBytes = sizeof(ovkMemBlock);
// Block data is read as floats by the circle Hough transform, whose checks
// these are.
constexpr char kHoughSource[] = "src/cpu/orvikHoughCircleC";

void logError(const char* message) { ovkLog(OVK_LOG_ERROR, OVK_LOG_TAG, "%s", message); }

// Bytes behind a block's links; a block size too small for the links has none.
uint32_t blockCapacity(const ovkMemStorage* storage) {
  return storage && storage->blockSize > kLinkBytes ? storage->blockSize - kLinkBytes : 0;
}

void linkBlock(ovkMemStorage* storage, ovkMemBlock* block) {
  block->prev = storage->top;
  block->next = nullptr;
  if (storage->top) {
    storage->top->next = block;
  } else {
    storage->bottom = block;
  }
  storage->top = block;
}

void checkBlockAlignment(const ovkMemStorage* storage, const void* block) {
  if (storage->blockSize % sizeof(float) != 0) {
    ovkFatal(kHoughSource, 205, "st->free_space % ((int32_t)sizeof(float32_t)) == 0");
  }
  if ((reinterpret_cast<uintptr_t>(block) + kLinkBytes) % sizeof(float) != 0) {
    ovkFatal(kHoughSource, 208, "(uintptr_t)ptr % ((int32_t)sizeof(float32_t)) == 0");
  }
}

// Appends a fresh block meant to hold `size` bytes and returns its data.
// Null when the last block still has room for them (blocks are never shared
// out) or when no memory is left.
uint8_t* addBlock(ovkMemStorage* storage, int32_t size) {
  if (!storage) {
    logError("NULL storage pointer\n");
    return nullptr;
  }
  const uint32_t capacity = blockCapacity(storage);
  const uint32_t bytes = uint32_t(size);
  if (size < 0 || bytes > (capacity & ~3u)) logError("Too large memory block is requested\n");
  if (storage->freeSpace >= bytes) return nullptr;
  void* buffer = ovkGetScratchBufferUnaligned_(std::max(storage->blockSize, kLinkBytes));
  if (!buffer) {
    logError("NULL storage pointer\n");
    return nullptr;
  }
  // Checked before the links are written: a misaligned block is fatal anyway.
  checkBlockAlignment(storage, buffer);
  auto* block = static_cast<ovkMemBlock*>(buffer);
  linkBlock(storage, block);
  storage->freeSpace = (capacity - bytes) & ~3u;
  return reinterpret_cast<uint8_t*>(block) + kLinkBytes;
}

uint8_t* blockElements(const ovkSeq* seq, ovkMemBlock* block) {
  return reinterpret_cast<uint8_t*>(block) + seq->headerSize;
}

size_t blockAreaBytes(const ovkSeq* seq) { return size_t(seq->elemSize) * seq->elemsPerBlock; }

ovkMemBlock* firstBlock(const ovkSeq* seq) { return seq->storage ? seq->storage->bottom : nullptr; }

// Makes a new block the sequence's current one; logs and returns false when
// none can be added.
bool openSeqBlock(ovkSeq* seq) {
  const size_t areaBytes = blockAreaBytes(seq);
  uint8_t* data = addBlock(seq->storage, int32_t(areaBytes));
  if (!data) {
    logError("cannot allocate new block\n");
    return false;
  }
  seq->ptr = data;
  seq->blockMax = data + areaBytes;
  return true;
}

void appendElements(ovkSeq* seq, const uint8_t* elements, uint32_t count) {
  const size_t bytes = size_t(count) * seq->elemSize;
  memcpy(seq->ptr, elements, bytes);
  seq->ptr += bytes;
  seq->total += count;
}

void enterBlock(ovkSeqReader* reader, ovkMemBlock* block) {
  reader->block = block;
  if (!block) {
    reader->ptr = nullptr;
    reader->blockMax = nullptr;
    return;
  }
  reader->ptr = blockElements(reader->seq, block);
  reader->blockMax = reader->ptr + blockAreaBytes(reader->seq);
}

}  // namespace

extern "C" {

OVK_API void ovkInitMemStorage(ovkMemStorage* storage) {
  storage->bottom = nullptr;
  storage->top = nullptr;
  storage->blockSize = kDefaultBlockSize;
  storage->freeSpace = 0;
}

OVK_API int32_t ovkDeInitMemStorage(ovkMemStorage* storage) {
  if (!storage) {
    logError("NULL storage pointer\n");
    return 0;
  }
  for (ovkMemBlock* block = storage->bottom; block;) {
    ovkMemBlock* next = block->next;
    ovkReleaseScratchBuffer_(block);
    block = next;
  }
  storage->bottom = nullptr;
  storage->top = nullptr;
  storage->freeSpace = 0;
  return 0;
}

OVK_API void* ovkAllocateMemBlock(ovkMemStorage* storage, int32_t size) {
  return addBlock(storage, size);
}

OVK_API int32_t ovkInitSeq(ovkSeq* seq, uint32_t elemSize, ovkMemStorage* storage) {
  seq->total = 0;
  seq->elemSize = elemSize;
  seq->blockMax = nullptr;
  seq->ptr = nullptr;
  seq->elemsPerBlock = elemSize ? blockCapacity(storage) / elemSize : 0;
  seq->headerSize = kLinkBytes;
  seq->storage = storage;
  return int32_t(seq->elemsPerBlock);
}

OVK_API int32_t ovkClearSeq(ovkSeq* seq) {
  ovkDeInitMemStorage(seq->storage);
  seq->total = 0;
  seq->blockMax = nullptr;
  seq->ptr = nullptr;
  return 0;
}

// A push that cannot get a block stores nothing and leaves the count alone,
// so the count always matches the elements the blocks hold.
OVK_API int32_t ovkSeqPush(ovkSeq* seq, const void* element) {
  if (seq->ptr == seq->blockMax && !openSeqBlock(seq)) return int32_t(seq->total);
  appendElements(seq, static_cast<const uint8_t*>(element), 1);
  return int32_t(seq->total);
}

// Fills whole blocks first, then puts the rest in one more block.
OVK_API void ovkSeqPushMulti(ovkSeq* seq, const void* elements, uint32_t count) {
  if (seq->ptr && seq->blockMax && seq->total) {
    logError("seq is not clear or initialized\n");
    return;
  }
  const uint32_t perBlock = seq->elemsPerBlock;
  const uint32_t wholeBlocks = perBlock ? count / perBlock : 0;
  const uint32_t rest = count - wholeBlocks * perBlock;
  const auto* source = static_cast<const uint8_t*>(elements);
  for (uint32_t i = 0; i < wholeBlocks; ++i) {
    if (!openSeqBlock(seq)) return;
    appendElements(seq, source, perBlock);
    source += blockAreaBytes(seq);
  }
  if (rest == 0) return;
  if (seq->ptr == seq->blockMax && !openSeqBlock(seq)) return;
  appendElements(seq, source, rest);
}

// Index == count is accepted: it addresses the next free place.  Each element
// is found inside its own block; past the end of the chain there is none.
OVK_API void* ovkGetSeqElem(ovkSeq* seq, uint32_t index) {
  if (index > seq->total) {
    logError("bad index\n");
    return nullptr;
  }
  if (seq->elemsPerBlock == 0) return nullptr;
  ovkMemBlock* block = firstBlock(seq);
  for (uint32_t hops = index / seq->elemsPerBlock; block && hops > 0; --hops) block = block->next;
  if (!block) return nullptr;
  return blockElements(seq, block) + size_t(seq->elemSize) * (index % seq->elemsPerBlock);
}

// Copies the first `count` elements, block after block; the sequence keeps them.
OVK_API void ovkSeqPopMulti(ovkSeq* seq, void* elements, uint32_t count) {
  if (count > seq->total) {
    logError("require too pop too much elements\n");
    return;
  }
  auto* out = static_cast<uint8_t*>(elements);
  uint32_t left = count;
  for (ovkMemBlock* block = firstBlock(seq); left > 0 && block; block = block->next) {
    const uint32_t taken = std::min(left, seq->elemsPerBlock);
    const size_t bytes = size_t(taken) * seq->elemSize;
    memcpy(out, blockElements(seq, block), bytes);
    out += bytes;
    left -= taken;
  }
}

OVK_API void ovkStartReadSeq(ovkSeq* seq, ovkSeqReader* reader) {
  reader->seq = seq;
  enterBlock(reader, firstBlock(seq));
}

// Steps within the current block; a step reaching its end moves to the next
// block's first element, or leaves the reader where it was on the last block.
OVK_API void ovkNextSeqElem(ovkSeqReader* reader, int32_t step) {
  if (!reader->block) return;
  const uint8_t* start = blockElements(reader->seq, reader->block);
  const ptrdiff_t offset = (reader->ptr - start) + step;
  if (offset >= 0 && offset < reader->blockMax - start) {
    reader->ptr += step;
  } else if (offset >= 0 && reader->block->next) {
    enterBlock(reader, reader->block->next);
  }
}

}  // extern "C"
