// Buffers whose last byte touches an inaccessible page, so any read or write
// past the end faults, and images whose row padding holds a sentinel that the
// code under test must leave alone.
#ifndef ORVIK_TEST_GUARDED_IMAGE_H
#define ORVIK_TEST_GUARDED_IMAGE_H

#include <stddef.h>
#include <stdint.h>

#include <random>

class GuardedBuffer {
 public:
  // The start is page end - bytes, so its alignment varies with the size.
  explicit GuardedBuffer(size_t bytes);
  ~GuardedBuffer();
  GuardedBuffer(const GuardedBuffer&) = delete;
  GuardedBuffer& operator=(const GuardedBuffer&) = delete;

  uint8_t* data() const { return data_; }
  size_t size() const { return bytes_; }

 private:
  uint8_t* mapping_ = nullptr;
  size_t mappingBytes_ = 0;
  uint8_t* data_ = nullptr;
  size_t bytes_ = 0;
};

// An image of `bytesPerPixel`-byte pixels; stride is in bytes and at least the
// row size.  The last row ends exactly at the guard page (no padding after it).
class GuardedImage {
 public:
  static constexpr uint8_t kSentinel = 0xA5;

  GuardedImage(uint32_t width, uint32_t height, uint32_t stride, uint32_t bytesPerPixel = 1);

  uint8_t* data() const { return buffer_.data(); }
  uint8_t* row(uint32_t y) const { return buffer_.data() + size_t(y) * stride_; }
  uint8_t& at(uint32_t x, uint32_t y) const { return row(y)[x]; }
  uint32_t width() const { return width_; }
  uint32_t height() const { return height_; }
  uint32_t stride() const { return stride_; }

  void fillRandom(std::mt19937& rng);
  void fill(uint8_t value);
  // The bytes between rows still hold kSentinel.
  bool paddingIntact() const;

 private:
  uint32_t width_, height_, stride_, rowBytes_;
  GuardedBuffer buffer_;
};

// A stride of at least `rowBytes` (a little more, drawn from `rng`) whose
// image of `height` rows starts at an odd or even address, where the padding
// can decide it.
uint32_t strideWithStartParity(uint32_t rowBytes, uint32_t height, bool odd, std::mt19937& rng);

// Offset of the first byte, row padding included, where two images of bytes
// differ; -1 when none does.
int64_t firstDifference(const GuardedImage& a, const GuardedImage& b);

#endif
