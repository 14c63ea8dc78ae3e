// Back-end constraints shared by the 8-bit image filters' entries.  A DSP
// call must carry enough work to pay for the round trip (more pixels, or
// stride bytes times rows, than the floor) and 8-byte aligned buffers; the
// GPU wants 16-byte aligned pointers and rows in multiples of 8.
#ifndef ORVIK_CONSTRAINTS_H
#define ORVIK_CONSTRAINTS_H

#include "orvikInternal.h"

// Most entries need more work than the floor; a few accept exactly it.
enum class ovkDspFloor { kAbove, kFrom };

inline bool ovkPassesDspFloor(uint64_t work, ovkDspFloor floor) {
  return floor == ovkDspFloor::kFrom ? work >= 25344 : work > 25344;
}

// For groups with a DSP form but no GPU form.
constexpr auto ovkNoGpuForm = [] { return true; };

// Entries without strides: the floor counts pixels.
inline bool ovkGpuTakesPacked(const void* src, uint32_t width, const void* dst) {
  return ovkAligned(src, 16) && ovkAligned(dst, 16) && width % 8 == 0;
}

inline bool ovkDspTakesPacked(const void* src, uint32_t width, uint32_t height, const void* dst) {
  return width % 8 == 0 && height >= 4 && ovkPassesDspFloor(uint64_t(width) * height, ovkDspFloor::kAbove) &&
         ovkAligned(src, 8) && ovkAligned(dst, 8);
}

// Strided entries: the floor counts stride bytes, not pixels.
inline bool ovkGpuTakesStrided(const void* src, uint32_t width, uint32_t srcStride, const void* dst,
                               uint32_t dstStride) {
  return ovkAligned(src, 16) && ovkAligned(dst, 16) && srcStride >= width && dstStride >= width &&
         srcStride % 8 == 0 && dstStride % 8 == 0;
}

inline bool ovkDspTakesStrided(const void* src, uint32_t width, uint32_t height, uint32_t srcStride,
                               const void* dst, uint32_t dstStride, ovkDspFloor floor = ovkDspFloor::kAbove) {
  return height >= 4 && ovkPassesDspFloor(uint64_t(srcStride) * height, floor) && srcStride % 8 == 0 &&
         width % 8 == 0 && dstStride % 8 == 0 && ovkAligned(src, 8) && ovkAligned(dst, 8);
}

#endif
