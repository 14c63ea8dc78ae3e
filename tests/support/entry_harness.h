// Runs an entry of the entry table on guard-page buffers laid out for a
// shape: deterministic inputs, outputs and the bytes around every buffer
// filled with a sentinel, and checks that nothing outside the documented
// outputs changed.  Shared by the golden-output test, the fuzz targets and
// the bad-argument sweep, so it depends on no test framework.
#ifndef ORVIK_TEST_ENTRY_HARNESS_H
#define ORVIK_TEST_ENTRY_HARNESS_H

#include <stdint.h>

#include <memory>
#include <string>
#include <vector>

#include "support/entry_table.h"
#include "support/guarded_image.h"

struct Shape {
  uint32_t width, height;
  uint32_t padding = 0;       // bytes between the end of a row and the next row
  bool zeroStrides = false;   // pass 0 for strides the entry reads as packed
  int startOffset = -1;       // -1: a buffer ends at its guard page; else its
                              // start lies this many bytes past a 64-byte line
  // Added to each stride argument (may make rows overlap); fuzzing only.
  std::vector<int32_t> strideAdjust;

  std::string label() const;
};

// Deterministic, the same on every architecture.
class SplitMix64 {
 public:
  explicit SplitMix64(uint64_t seed) : state_(seed) {}
  uint64_t next();

 private:
  uint64_t state_;
};

uint64_t fnv1a64(const uint8_t* bytes, size_t count, uint64_t hash = 0xcbf29ce484222325ull);
uint64_t fnv1a64(const std::string& text);

class EntryBuffers {
 public:
  static constexpr uint8_t kSentinel = 0xA5;
  static constexpr size_t kLead = 64;  // sentinel bytes before each buffer

  // Inputs are filled from `seed` (floats stay finite and normal).
  EntryBuffers(const EntryInfo& entry, const Shape& shape, uint64_t seed);
  // Inputs from the given bytes, repeated as needed (fuzzing).
  EntryBuffers(const EntryInfo& entry, const Shape& shape, const uint8_t* bytes, size_t count);
  ~EntryBuffers();
  EntryBuffers(const EntryBuffers&) = delete;
  EntryBuffers& operator=(const EntryBuffers&) = delete;

  EntryCall call(const std::vector<int64_t>& options) const;
  // Every output back to the sentinel.
  void resetOutputs();

  size_t bufferCount() const { return buffers_.size(); }
  const BufferInfo& info(size_t i) const { return buffers_[i].info; }
  // The bytes of buffer i the entry may address: rows, and the padding between them.
  std::vector<uint8_t> contents(size_t i) const;
  uint64_t hash(size_t i) const;
  // Empty when the inputs are unchanged and no byte outside the outputs'
  // rows (padding, the bytes around each buffer) was written; else what was.
  std::string damage() const;
  // True when every output still holds only the sentinel.
  bool outputsUntouched() const;

 private:
  struct Placed {
    BufferInfo info;
    std::vector<uint64_t> offsets, strides;  // per region
    uint64_t extent = 0, tail = 0;
    std::unique_ptr<GuardedBuffer> memory;
    std::vector<uint8_t> original;  // inputs as filled
    uint8_t* data() const { return memory->data() + kLead; }
  };

  void place(const EntryInfo& entry, const Shape& shape);
  class SurroundingsOpen;
  void poisonSurroundings(bool poison) const;
  void fillInputs(SplitMix64& rng);
  bool insideRows(const Placed& buffer, uint64_t offset) const;

  std::vector<Placed> buffers_;
  std::vector<uint32_t> strides_;
  Shape shape_;
};

#endif
