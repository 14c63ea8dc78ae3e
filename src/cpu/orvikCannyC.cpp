// Portable Canny edge detector: unscaled 3x3 Sobel gradients, L1 magnitude,
// non-maximum suppression along the gradient quantised to four directions,
// then hysteresis through 8-connected neighbours with an explicit stack, so
// that a frame full of edges needs no recursion.
#include <stdlib.h>
#include <string.h>

#include <initializer_list>

#include "orvikCanny.h"
#include "orvikGradient.h"

namespace {

// Scratch buffers of one call; any of them may be missing when the pool has
// no room.
class Scratch {
 public:
  explicit Scratch(uint64_t bytes) {
    if (bytes <= UINT32_MAX) data_ = static_cast<uint8_t*>(ovkGetScratchBufferAligned_(uint32_t(bytes), 16));
  }
  ~Scratch() {
    if (data_) ovkReleaseScratchBuffer_(data_);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
  uint8_t* data() const { return data_; }

 private:
  uint8_t* data_ = nullptr;
};

// Gradient rows may sit at any byte address: their elements are copied.
uint8_t* gradientRow(int16_t* plane, uint32_t stride, uint32_t y) {
  return reinterpret_cast<uint8_t*>(plane) + size_t(y) * stride;
}

}  // namespace

void ovkCannyClearBorder(uint32_t width, uint32_t height, const ovkCannyGradients& g, uint16_t* magnitude) {
  const auto clear = [&](uint32_t x, uint32_t y, uint32_t count) {
    memset(gradientRow(g.gx, g.stride, y) + x * sizeof(int16_t), 0, count * sizeof(int16_t));
    memset(gradientRow(g.gy, g.stride, y) + x * sizeof(int16_t), 0, count * sizeof(int16_t));
    memset(magnitude + size_t(y) * width + x, 0, count * sizeof(uint16_t));
  };
  clear(0, 0, width);
  clear(0, height - 1, width);
  for (uint32_t y = 1; y + 1 < height; ++y) {
    clear(0, y, 1);
    clear(width - 1, y, 1);
  }
}

void ovkCannyGradientPassC(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride,
                           const ovkCannyGradients& g, uint16_t* magnitude) {
  ovkCannyClearBorder(width, height, g, magnitude);
  ovkForEachInteriorGradient<ovkGradientOperator::kSobel, uint8_t, int32_t>(
      src, width, height, srcStride, [&](uint32_t x, uint32_t y, int32_t dx, int32_t dy) {
        ovkStoreElement<int16_t>(gradientRow(g.gx, g.stride, y), x, int16_t(dx));
        ovkStoreElement<int16_t>(gradientRow(g.gy, g.stride, y), x, int16_t(dy));
        magnitude[size_t(y) * width + x] = uint16_t(abs(dx) + abs(dy));
      });
}

namespace {

// The offset, in pixels of the magnitude plane, of the neighbour the
// gradient points away from (the other one is its mirror).
ptrdiff_t acrossEdge(int32_t dx, int32_t dy, uint32_t width) {
  const int64_t ax = abs(dx), ay = abs(dy);
  if (ay * 32768 <= ax * kCannyTan22Q15) return 1;                    // horizontal gradient: left and right
  if (ay * 32768 >= ax * (2 * 32768 + kCannyTan22Q15)) return width;  // vertical: above and below
  return (dx > 0) == (dy > 0) ? ptrdiff_t(width) + 1 : ptrdiff_t(width) - 1;
}

// Hysteresis: weak pixels touching an edge pixel become edge pixels.  Each
// pixel is pushed once, when it turns into an edge, so the stack never holds
// more than the image.
void connectWeakEdges(uint8_t* map, uint32_t width, uint32_t height, uint32_t* stack) {
  size_t top = 0;
  for (size_t i = 0; i < size_t(width) * height; ++i)
    if (map[i] == kCannyEdge) stack[top++] = uint32_t(i);
  const ptrdiff_t w = ptrdiff_t(width);
  while (top > 0) {
    const size_t i = stack[--top];
    for (const ptrdiff_t offset : {-w - 1, -w, -w + 1, ptrdiff_t(-1), ptrdiff_t(1), w - 1, w, w + 1}) {
      const size_t n = size_t(ptrdiff_t(i) + offset);
      if (map[n] != kCannyWeak) continue;
      map[n] = kCannyEdge;
      stack[top++] = uint32_t(n);
    }
  }
}

}  // namespace

void ovkCannySuppressPassC(const uint16_t* magnitude, const ovkCannyGradients& gradients, uint32_t width,
                           uint32_t height, int32_t low, int32_t high, uint8_t* map) {
  for (uint32_t y = 1; y + 1 < height; ++y) {
    const uint8_t* gx = gradientRow(gradients.gx, gradients.stride, y);
    const uint8_t* gy = gradientRow(gradients.gy, gradients.stride, y);
    for (uint32_t x = 1; x + 1 < width; ++x) {
      const size_t i = size_t(y) * width + x;
      const int32_t m = magnitude[i];
      if (m <= low) continue;
      const ptrdiff_t step = acrossEdge(ovkLoadElement<int16_t>(gx, x), ovkLoadElement<int16_t>(gy, x), width);
      if (m <= magnitude[i - step] || m < magnitude[i + step]) continue;
      map[i] = m > high ? kCannyEdge : kCannyWeak;
    }
  }
}

bool ovkCannyDetect(const ovkCannyPasses& passes, const uint8_t* src, uint32_t width, uint32_t height,
                    uint32_t srcStride, uint8_t* dst, uint32_t dstStride, int16_t* gx, int16_t* gy, uint32_t gradStride,
                    int32_t low, int32_t high) {
  const bool callerGradients = gx && gy;
  const size_t pixels = size_t(width) * height;
  // Counted in 64 bits: on 32-bit processors the byte count of a large
  // image would wrap around to a small buffer.
  Scratch scratch(uint64_t(pixels) * (2 + 1 + 4) + (callerGradients ? 0 : uint64_t(pixels) * 4));
  if (!scratch.data()) return false;
  // Widest elements first, so that every plane is aligned to its type.
  auto* stack = reinterpret_cast<uint32_t*>(scratch.data());
  auto* magnitude = reinterpret_cast<uint16_t*>(stack + pixels);
  auto* own = reinterpret_cast<int16_t*>(magnitude + pixels);  // when the caller gives no planes
  uint8_t* map = reinterpret_cast<uint8_t*>(own + (callerGradients ? 0 : 2 * pixels));
  const ovkCannyGradients gradients =
      callerGradients ? ovkCannyGradients{gx, gy, gradStride} : ovkCannyGradients{own, own + pixels, width * 2};
  passes.gradients(src, width, height, srcStride, gradients, magnitude);
  memset(map, kCannyNotEdge, pixels);
  passes.suppress(magnitude, gradients, width, height, low, high, map);
  connectWeakEdges(map, width, height, stack);
  for (uint32_t y = 0; y < height; ++y)
    for (uint32_t x = 0; x < width; ++x)
      dst[size_t(y) * dstStride + x] = map[size_t(y) * width + x] == kCannyEdge ? 255 : 0;
  return true;
}

namespace {
constexpr ovkCannyPasses kPortablePasses = {ovkCannyGradientPassC, ovkCannySuppressPassC};
}  // namespace

void ovkFilterCanny3x3u8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                          uint32_t dstStride, int32_t low, int32_t high) {
  ovkCannyDetect(kPortablePasses, src, srcWidth, srcHeight, srcStride, dst, dstStride, nullptr, nullptr, 0, low, high);
}

void ovkFilterCannyu8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                       uint32_t dstStride, int32_t low, int32_t high) {
  ovkFilterCanny3x3u8C(src, srcWidth, srcHeight, srcStride, dst, dstStride, low, high);
}

void ovkFilterCanny3x3u8_v3C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                             uint8_t* dst, uint32_t dstStride, int16_t* gx, int16_t* gy, uint32_t gradStride,
                             int32_t low, int32_t high) {
  ovkCannyDetect(kPortablePasses, src, srcWidth, srcHeight, srcStride, dst, dstStride, gx, gy, gradStride, low, high);
}
