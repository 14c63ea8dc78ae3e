#include "guarded_image.h"

#include <string.h>
#include <sys/mman.h>
#include <unistd.h>

#include <stdexcept>

GuardedBuffer::GuardedBuffer(size_t bytes) : bytes_(bytes) {
  const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
  const size_t dataPages = (bytes + page - 1) / page;
  mappingBytes_ = (dataPages + 1) * page;
  void* mapping = mmap(nullptr, mappingBytes_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (mapping == MAP_FAILED) throw std::runtime_error("mmap failed");
  mapping_ = static_cast<uint8_t*>(mapping);
  if (mprotect(mapping_ + dataPages * page, page, PROT_NONE) != 0) throw std::runtime_error("mprotect failed");
  data_ = mapping_ + dataPages * page - bytes;
}

GuardedBuffer::~GuardedBuffer() { munmap(mapping_, mappingBytes_); }

namespace {
size_t imageBytes(uint32_t height, uint32_t stride, uint32_t rowBytes) {
  return height ? size_t(height - 1) * stride + rowBytes : 0;
}
}  // namespace

GuardedImage::GuardedImage(uint32_t width, uint32_t height, uint32_t stride, uint32_t bytesPerPixel)
    : width_(width),
      height_(height),
      stride_(stride),
      rowBytes_(width * bytesPerPixel),
      buffer_(imageBytes(height, stride, width * bytesPerPixel)) {
  if (stride < rowBytes_) throw std::invalid_argument("stride below row size");
  memset(buffer_.data(), kSentinel, buffer_.size());
}

void GuardedImage::fillRandom(std::mt19937& rng) {
  for (uint32_t y = 0; y < height_; ++y)
    for (uint32_t x = 0; x < rowBytes_; ++x) row(y)[x] = static_cast<uint8_t>(rng());
}

void GuardedImage::fill(uint8_t value) {
  for (uint32_t y = 0; y < height_; ++y) memset(row(y), value, rowBytes_);
}

bool GuardedImage::paddingIntact() const {
  for (uint32_t y = 0; y + 1 < height_; ++y)
    for (uint32_t x = rowBytes_; x < stride_; ++x)
      if (row(y)[x] != kSentinel) return false;
  return true;
}

uint32_t strideWithStartParity(uint32_t rowBytes, uint32_t height, bool odd, std::mt19937& rng) {
  const uint32_t base = rowBytes + rng() % 11;
  for (uint32_t extra = 0; extra < 2; ++extra) {
    const uint32_t stride = base + extra;
    const size_t bytes = size_t(height - 1) * stride + rowBytes;  // the start is a page end minus this
    if ((bytes & 1) == odd) return stride;
  }
  return base;
}

int64_t firstDifference(const GuardedImage& a, const GuardedImage& b) {
  const size_t bytes = size_t(a.height() - 1) * a.stride() + a.width();
  for (size_t i = 0; i < bytes; ++i)
    if (a.data()[i] != b.data()[i]) return int64_t(i);
  return -1;
}
