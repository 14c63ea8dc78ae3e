#include "entry_harness.h"

#include <string.h>

#include <algorithm>

// Under AddressSanitizer the bytes around each buffer are also poisoned, so a
// read of them is reported, not only a write.
#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ORVIK_POISON_SURROUNDINGS 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define ORVIK_POISON_SURROUNDINGS 1
#endif
#ifdef ORVIK_POISON_SURROUNDINGS
#include <sanitizer/asan_interface.h>
#endif

std::string Shape::label() const {
  std::string text = std::to_string(width) + "x" + std::to_string(height) + " pad=" + std::to_string(padding);
  if (zeroStrides) text += " strides=0";
  text += startOffset < 0 ? " start=end" : " start=" + std::to_string(startOffset);
  return text;
}

uint64_t SplitMix64::next() {
  uint64_t z = (state_ += 0x9e3779b97f4a7c15ull);
  z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ull;
  z = (z ^ (z >> 27)) * 0x94d049bb133111ebull;
  return z ^ (z >> 31);
}

uint64_t fnv1a64(const uint8_t* bytes, size_t count, uint64_t hash) {
  for (size_t i = 0; i < count; ++i) hash = (hash ^ bytes[i]) * 0x100000001b3ull;
  return hash;
}

uint64_t fnv1a64(const std::string& text) {
  return fnv1a64(reinterpret_cast<const uint8_t*>(text.data()), text.size());
}

namespace {

// Mostly normal floats of either sign with magnitudes in [2^-8, 2^9), whose
// sums round, so the order of the additions shows in the result; one in
// sixteen a value processors are known to treat differently: zeros, an
// infinity, a quiet or signalling NaN with a payload, a subnormal, the
// largest float.
uint32_t floatBits(uint64_t random) {
  const uint32_t sign = uint32_t(random >> 63) << 31, mantissa = uint32_t(random & 0x7FFFFF);
  if ((random >> 40) % 16) return sign | uint32_t(127 - 8 + (random >> 32) % 17) << 23 | mantissa;
  switch ((random >> 44) % 6) {
    case 0:
      return sign;  // zero
    case 1:
      return sign | 0x7F800000u;  // infinity
    case 2:
      return sign | 0x7FC00000u | (mantissa & 0x3FFFFF);  // quiet NaN
    case 3:
      return sign | 0x7F800000u | (mantissa & 0x3FFFFF) | 1;  // signalling NaN
    case 4:
      return sign | mantissa | 1;  // subnormal
    default:
      return sign | 0x7F7FFFFFu;  // largest
  }
}

}  // namespace

EntryBuffers::EntryBuffers(const EntryInfo& entry, const Shape& shape, uint64_t seed) : shape_(shape) {
  place(entry, shape);
  SplitMix64 rng(seed);
  fillInputs(rng);
}

EntryBuffers::EntryBuffers(const EntryInfo& entry, const Shape& shape, const uint8_t* bytes, size_t count)
    : shape_(shape) {
  place(entry, shape);
  size_t next = 0;
  for (Placed& buffer : buffers_) {
    if (buffer.info.output) continue;
    for (uint64_t i = 0; i < buffer.extent; ++i) buffer.data()[i] = count ? bytes[next++ % count] : 0;
    buffer.original.assign(buffer.data(), buffer.data() + buffer.extent);
  }
}

// Strides: the widest row that uses the argument, plus the padding; a zero
// stride the entry reads as packed leaves the rows packed.
void EntryBuffers::place(const EntryInfo& entry, const Shape& shape) {
  const std::vector<BufferInfo> bufferInfos = entry.buffers(shape.width, shape.height);
  std::vector<uint64_t> rowBytes(entry.strides.size(), 0);
  for (const BufferInfo& info : bufferInfos)
    for (const Region& region : info.regions)
      if (region.strideArg >= 0) rowBytes[region.strideArg] = std::max(rowBytes[region.strideArg], region.rowBytes);
  std::vector<uint64_t> actual(entry.strides.size());
  for (size_t i = 0; i < entry.strides.size(); ++i) {
    const int64_t adjust = i < shape.strideAdjust.size() ? shape.strideAdjust[i] : 0;
    const int64_t adjusted = std::max<int64_t>(0, int64_t(rowBytes[i] + shape.padding) + adjust);
    // An adjustment down to 0 gives the packed layout too.
    const bool packed = entry.zeroStrideIsPacked && (shape.zeroStrides || adjusted == 0);
    actual[i] = packed ? rowBytes[i] : uint64_t(adjusted);
    strides_.push_back(packed ? 0 : uint32_t(actual[i]));
  }
  for (const BufferInfo& info : bufferInfos) {
    Placed buffer;
    buffer.info = info;
    uint64_t offset = 0;
    for (size_t r = 0; r < info.regions.size(); ++r) {
      const Region& region = info.regions[r];
      const uint64_t stride = region.strideArg >= 0 ? actual[region.strideArg] : region.rowBytes;
      buffer.offsets.push_back(offset);
      buffer.strides.push_back(stride);
      if (region.rows) buffer.extent = offset + (region.rows - 1) * stride + region.rowBytes;
      offset += region.rows * stride;
    }
    if (shape.startOffset >= 0) buffer.tail = (64 - (buffer.extent + shape.startOffset) % 64) % 64;
    buffer.memory = std::make_unique<GuardedBuffer>(kLead + buffer.extent + buffer.tail);
    memset(buffer.memory->data(), kSentinel, buffer.memory->size());
    buffers_.push_back(std::move(buffer));
  }
  poisonSurroundings(true);
}

EntryBuffers::~EntryBuffers() { poisonSurroundings(false); }

void EntryBuffers::poisonSurroundings(bool poison) const {
#ifdef ORVIK_POISON_SURROUNDINGS
  const auto mark = poison ? __asan_poison_memory_region : __asan_unpoison_memory_region;
  for (const Placed& buffer : buffers_) {
    mark(buffer.memory->data(), kLead);
    mark(buffer.data() + buffer.extent, buffer.tail);
  }
#else
  (void)poison;
#endif
}

// The harness itself reads and writes the surroundings while one is alive.
class EntryBuffers::SurroundingsOpen {
 public:
  explicit SurroundingsOpen(const EntryBuffers& buffers) : buffers_(buffers) { buffers_.poisonSurroundings(false); }
  ~SurroundingsOpen() { buffers_.poisonSurroundings(true); }

 private:
  const EntryBuffers& buffers_;
};

void EntryBuffers::fillInputs(SplitMix64& rng) {
  for (Placed& buffer : buffers_) {
    if (buffer.info.output) continue;
    uint8_t* data = buffer.data();
    for (uint64_t i = 0; i < buffer.extent; ++i) data[i] = uint8_t(rng.next() >> 56);
    // Float rows get whole float values; their padding keeps random bytes.
    if (buffer.info.content == Content::kFloats)
      for (size_t r = 0; r < buffer.info.regions.size(); ++r)
        for (uint64_t y = 0; y < buffer.info.regions[r].rows; ++y)
          for (uint64_t x = 0; x + 4 <= buffer.info.regions[r].rowBytes; x += 4) {
            const uint32_t bits = floatBits(rng.next());
            memcpy(data + buffer.offsets[r] + y * buffer.strides[r] + x, &bits, 4);
          }
    buffer.original.assign(data, data + buffer.extent);
  }
}

EntryCall EntryBuffers::call(const std::vector<int64_t>& options) const {
  EntryCall c;
  c.width = shape_.width;
  c.height = shape_.height;
  for (const Placed& buffer : buffers_) c.buffers.push_back(buffer.data());
  c.strides = strides_;
  c.options = options;
  return c;
}

void EntryBuffers::resetOutputs() {
  const SurroundingsOpen open(*this);
  for (Placed& buffer : buffers_)
    if (buffer.info.output) memset(buffer.memory->data(), kSentinel, buffer.memory->size());
}

std::vector<uint8_t> EntryBuffers::contents(size_t i) const {
  const Placed& buffer = buffers_[i];
  return std::vector<uint8_t>(buffer.data(), buffer.data() + buffer.extent);
}

uint64_t EntryBuffers::hash(size_t i) const {
  const Placed& buffer = buffers_[i];
  return fnv1a64(buffer.data(), buffer.extent);
}

bool EntryBuffers::insideRows(const Placed& buffer, uint64_t offset) const {
  for (size_t r = 0; r < buffer.info.regions.size(); ++r) {
    const Region& region = buffer.info.regions[r];
    if (region.rows == 0 || offset < buffer.offsets[r]) continue;
    const uint64_t within = offset - buffer.offsets[r], stride = buffer.strides[r];
    if (within >= (region.rows - 1) * stride + region.rowBytes) continue;
    // Rows that overlap (a stride below the row size) leave no padding.
    if (stride <= region.rowBytes || within % stride < region.rowBytes) return true;
  }
  return false;
}

std::string EntryBuffers::damage() const {
  const SurroundingsOpen open(*this);
  for (const Placed& buffer : buffers_) {
    const uint8_t* all = buffer.memory->data();
    for (size_t i = 0; i < kLead; ++i)
      if (all[i] != kSentinel) return buffer.info.name + ": written before its start";
    for (uint64_t i = 0; i < buffer.tail; ++i)
      if (all[kLead + buffer.extent + i] != kSentinel) return buffer.info.name + ": written past its end";
    if (!buffer.info.output) {
      if (!std::equal(buffer.data(), buffer.data() + buffer.extent, buffer.original.begin()))
        return buffer.info.name + ": input changed";
      continue;
    }
    for (uint64_t i = 0; i < buffer.extent; ++i)
      if (buffer.data()[i] != kSentinel && !insideRows(buffer, i))
        return buffer.info.name + ": padding byte " + std::to_string(i) + " written";
  }
  return "";
}

bool EntryBuffers::outputsUntouched() const {
  const SurroundingsOpen open(*this);
  for (const Placed& buffer : buffers_) {
    const uint8_t* all = buffer.memory->data();
    if (buffer.info.output && std::any_of(all, all + buffer.memory->size(), [](uint8_t b) { return b != kSentinel; }))
      return false;
  }
  return true;
}
