// Aligned allocation for applications, and the pool of reusable scratch
// buffers the implementations borrow their temporary memory from, so that
// operations run every frame do not allocate and free large buffers each time.
#include <pthread.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <atomic>

#include "orvikBackend.h"
#include "orvikInternal.h"

namespace {

bool isPowerOfTwo(uint32_t value) { return value != 0 && (value & (value - 1)) == 0; }

uint8_t* roundDown(uintptr_t address, uint32_t alignment) {
  return reinterpret_cast<uint8_t*>(address & ~uintptr_t(alignment - 1));
}

// ---- Aligned blocks -----------------------------------------------------------

// The byte just before an aligned block holds its distance from the raw
// block, at most alignment + 1, which must fit in that byte.
constexpr uint32_t kMaxAlignedBlockAlignment = 128;

bool sharedAllocatorInstalled() { return ovkSharedMemAlloc_ && ovkSharedMemFree_; }

// ---- Scratch pool --------------------------------------------------------------

constexpr uint32_t kPooledMarker = 0xCDCDCDCDu;
constexpr uint32_t kDirectMarker = 0xABABABABu;
constexpr uint32_t kSlotCount = 32;
constexpr uint32_t kPreAllocAlignment = 16;
// One 3840x2160 frame of four bytes per pixel.
constexpr uint32_t kMaxPreAllocBytes = 3840u * 2160u * 4u;

// Stored immediately before every scratch pointer.
struct ScratchHeader {
  uint32_t marker;  // kPooledMarker or kDirectMarker
  void* owner;      // the pool slot, or the raw block of a direct allocation
};
constexpr size_t kHeaderBytes = sizeof(ScratchHeader);

// A slot's mutex is held for as long as its buffer is lent out.
struct ScratchSlot {
  uint8_t* raw;
  size_t rawSize;
  uint8_t* data;        // start of the aligned, usable area
  uint32_t usableSize;  // bytes requested when the block was made
  std::atomic<uint32_t> inUse;
  pthread_mutex_t mutex;
};

ScratchSlot gSlots[kSlotCount];
std::atomic<uint32_t> gPoolInitialised{0};
int32_t gInitCount = 0;
pthread_mutex_t gInitCountMutex = PTHREAD_MUTEX_INITIALIZER;
pthread_once_t gSetUpOnce = PTHREAD_ONCE_INIT;
pthread_once_t gTearDownOnce = PTHREAD_ONCE_INIT;
// 1 between ovkMemInit and a non-final ovkMemDeInit.
std::atomic<uint8_t> CPU_initflag{0};

// Allocates room for `size` bytes at `alignment` behind a header; null when
// the size does not fit in the address space or the system has no memory.
uint8_t* allocateScratchBlock(uint32_t size, uint32_t alignment, size_t* rawSize) {
  if (__builtin_add_overflow(size_t(size), size_t(alignment) - 1 + kHeaderBytes, rawSize)) {
    return nullptr;
  }
  return static_cast<uint8_t*>(malloc(*rawSize));
}

uint8_t* scratchData(const uint8_t* raw, uint32_t alignment) {
  return roundDown(reinterpret_cast<uintptr_t>(raw) + alignment - 1 + kHeaderBytes, alignment);
}

void writeHeader(uint8_t* data, uint32_t marker, void* owner) {
  const ScratchHeader header{marker, owner};
  memcpy(data - kHeaderBytes, &header, sizeof header);
}

void* allocateDirect(uint32_t size, uint32_t alignment) {
  size_t rawSize;
  uint8_t* raw = allocateScratchBlock(size, alignment, &rawSize);
  if (!raw) return nullptr;
  uint8_t* data = scratchData(raw, alignment);
  writeHeader(data, kDirectMarker, raw);
  return data;
}

bool slotFits(const ScratchSlot& slot, uint32_t size, uint32_t alignment) {
  return slot.raw && slot.usableSize >= size && ovkAligned(slot.data, alignment);
}

// Moving the data pointer inside the slot's block would save an allocation,
// but the guard compares the block's size with its address, so in practice it
// never passes and a misaligned slot gets a new block.  The allocation pattern
// is kept as it always was; the room test keeps a moved area inside the block.
bool realignInPlace(ScratchSlot& slot, uint32_t size, uint32_t alignment) {
  if (!slot.raw || slot.usableSize < size) return false;
  if (slot.rawSize < reinterpret_cast<uintptr_t>(slot.raw) + alignment - 1 + kHeaderBytes) {
    return false;
  }
  uint8_t* data = scratchData(slot.raw, alignment);
  if (slot.rawSize - size_t(data - slot.raw) < slot.usableSize) return false;
  slot.data = data;
  return true;
}

bool replaceBlock(ScratchSlot& slot, uint32_t size, uint32_t alignment) {
  size_t rawSize;
  uint8_t* raw = allocateScratchBlock(size, alignment, &rawSize);
  if (!raw) return false;
  free(slot.raw);
  slot.raw = raw;
  slot.rawSize = rawSize;
  slot.data = scratchData(raw, alignment);
  slot.usableSize = size;
  return true;
}

// The caller holds the slot's mutex; it stays held while the buffer is lent.
void* lendSlot(ScratchSlot& slot, uint32_t size, uint32_t alignment) {
  if (!slotFits(slot, size, alignment) && !realignInPlace(slot, size, alignment) &&
      !replaceBlock(slot, size, alignment)) {
    pthread_mutex_unlock(&slot.mutex);
    return nullptr;
  }
  writeHeader(slot.data, kPooledMarker, &slot);
  slot.inUse.store(1, std::memory_order_relaxed);
  return slot.data;
}

void* local_ovkGetScratchBufferAligned(uint32_t size, uint32_t alignment) {
  if (!isPowerOfTwo(alignment)) alignment = 1;
  if (gPoolInitialised.load(std::memory_order_acquire) != 1) return allocateDirect(size, alignment);
  // Never wait: a slot another thread holds is skipped.
  for (ScratchSlot& slot : gSlots) {
    if (slot.inUse.load(std::memory_order_relaxed) != 0) continue;
    if (pthread_mutex_trylock(&slot.mutex) != 0) continue;
    return lendSlot(slot, size, alignment);
  }
  return nullptr;
}

void* local_ovkGetScratchBufferUnaligned(uint32_t size) {
  return local_ovkGetScratchBufferAligned(size, 1);
}

// Only a slot of this pool that lent out exactly this pointer takes it back,
// so a stray marker can neither unlock a mutex nor give away a lent slot.
void returnToPool(const void* owner, const void* data) {
  for (ScratchSlot& slot : gSlots) {
    if (&slot != owner) continue;
    if (slot.data == data && slot.inUse.load(std::memory_order_relaxed) != 0) {
      slot.inUse.store(0, std::memory_order_relaxed);
      pthread_mutex_unlock(&slot.mutex);
    }
    return;
  }
}

void local_ovkReleaseScratchBuffer(void* ptr) {
  if (!ptr) return;
  ScratchHeader header;
  memcpy(&header, static_cast<const uint8_t*>(ptr) - kHeaderBytes, sizeof header);
  if (header.marker == kPooledMarker) {
    returnToPool(header.owner, ptr);
  } else if (header.marker == kDirectMarker) {
    free(header.owner);
  }
}

void clearSlot(ScratchSlot& slot) {
  slot.raw = nullptr;
  slot.rawSize = 0;
  slot.data = nullptr;
  slot.usableSize = 0;
  slot.inUse.store(0, std::memory_order_relaxed);
}

void setUpPool() {
  pthread_mutex_init(&gInitCountMutex, nullptr);
  gInitCount = 0;
  for (ScratchSlot& slot : gSlots) {
    pthread_mutex_init(&slot.mutex, nullptr);
    clearSlot(slot);
  }
  gPoolInitialised.store(1, std::memory_order_release);
  gTearDownOnce = PTHREAD_ONCE_INIT;
}

// Waits for every lent buffer to come back.  Requests made afterwards are
// direct allocations again, so nothing touches the destroyed slot mutexes.
void tearDownPool() {
  gPoolInitialised.store(0, std::memory_order_release);
  for (ScratchSlot& slot : gSlots) {
    pthread_mutex_lock(&slot.mutex);
    free(slot.raw);
    clearSlot(slot);
    pthread_mutex_unlock(&slot.mutex);
    pthread_mutex_destroy(&slot.mutex);
  }
  gSetUpOnce = PTHREAD_ONCE_INIT;
}

}  // namespace

extern "C" {

OVK_API ovkGetScratchBufferAlignedFn ovkGetScratchBufferAligned_ = local_ovkGetScratchBufferAligned;
OVK_API ovkGetScratchBufferUnalignedFn ovkGetScratchBufferUnaligned_ =
    local_ovkGetScratchBufferUnaligned;
OVK_API ovkReleaseScratchBufferFn ovkReleaseScratchBuffer_ = local_ovkReleaseScratchBuffer;

// Alignments that are not powers of two, or too large to record in one byte,
// cannot be served and give null.
OVK_API void* ovkMemAlign(uint32_t size, uint32_t alignment) {
  if (!isPowerOfTwo(alignment) || alignment > kMaxAlignedBlockAlignment) return nullptr;
  size_t rawSize;
  if (__builtin_add_overflow(size_t(size), size_t(alignment) + 1, &rawSize)) return nullptr;
  auto* raw = static_cast<uint8_t*>(malloc(rawSize));
  if (!raw) return nullptr;
  uint8_t* aligned = roundDown(reinterpret_cast<uintptr_t>(raw) + alignment + 1, alignment);
  aligned[-1] = uint8_t(aligned - raw);
  return aligned;
}

OVK_API void ovkMemAlignFree(void* ptr) {
  if (!ptr) return;
  auto* aligned = static_cast<uint8_t*>(ptr);
  free(aligned - aligned[-1]);
}

OVK_API void* ovkMemAlloc(uint32_t size, uint32_t alignment) {
  if (sharedAllocatorInstalled()) {
    if (void* shared = ovkSharedMemAlloc_(size, alignment)) return shared;
  }
  return ovkMemAlign(size, alignment);
}

OVK_API void ovkMemFree(void* ptr) {
  if (!ptr) return;
  if (sharedAllocatorInstalled() && ovkSharedMemFree_(ptr) == 0) return;
  ovkMemAlignFree(ptr);
}

OVK_API void ovkMemInit(void) {
  pthread_once(&gSetUpOnce, setUpPool);
  pthread_mutex_lock(&gInitCountMutex);
  ++gInitCount;
  pthread_mutex_unlock(&gInitCountMutex);
  CPU_initflag.store(1, std::memory_order_relaxed);
}

// Leaves the first free slot holding a block of `size` bytes (one 4K frame at
// most) so that the first frames do not allocate.
OVK_API int32_t ovkMemInitPreAlloc(uint32_t size) {
  ovkMemInit();
  if (size == 0) return 1;
  const uint32_t bytes = std::min(size, kMaxPreAllocBytes);
  void* buffer = local_ovkGetScratchBufferAligned(bytes, kPreAllocAlignment);
  if (!buffer) return 0;
  memset(buffer, 0, bytes);
  local_ovkReleaseScratchBuffer(buffer);
  return 1;
}

// The last user tears the pool down and leaves CPU_initflag set, as callers
// have always seen it; any other user only clears the flag.
OVK_API int32_t ovkMemDeInit(void) {
  if (CPU_initflag.load(std::memory_order_relaxed) == 0) return 0;
  // Called again after the last user left: the count's mutex is gone, and the
  // count starts afresh at the next set-up, so only the flag is left to clear.
  if (gPoolInitialised.load(std::memory_order_acquire) == 0) {
    CPU_initflag.store(0, std::memory_order_relaxed);
    return 0;
  }
  pthread_mutex_lock(&gInitCountMutex);
  if (gInitCount-- == 1) {
    pthread_once(&gTearDownOnce, tearDownPool);
    pthread_mutex_unlock(&gInitCountMutex);
    return pthread_mutex_destroy(&gInitCountMutex);
  }
  pthread_mutex_unlock(&gInitCountMutex);
  CPU_initflag.store(0, std::memory_order_relaxed);
  return 0;
}

}  // extern "C"
