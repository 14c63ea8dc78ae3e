// Portable YCbCr to RGB kernels: every chroma sample is read once for the
// pixels that share it (two columns, and two rows of 4:2:0 inputs).
#include "orvikColorToRgb.h"

namespace {

using Kernels = ovkYccKernels<ovkPortableYccRows>;

}  // namespace

void ovkConvertBlockUnitC(const ovkBlockUnit& unit, const uint8_t* src, uint32_t columns, uint32_t rows, uint8_t* dst,
                          size_t dstStride) {
  const uint8_t* cb = src + unit.lumaBytes();
  const uint8_t* cr = cb + 64;
  const uint32_t blocksPerRow = unit.width() / 8;
  for (uint32_t y = 0; y < rows; ++y) {
    uint8_t* out = dst + y * dstStride;
    for (uint32_t x = 0; x < columns; ++x) {
      const uint8_t* block = src + ((y >> 3) * blocksPerRow + (x >> 3)) * 64;
      const uint32_t chroma = (y >> unit.shiftY) * 8 + (x >> unit.shiftX);
      const ovkChromaTerms terms = ovkChromaTermsOf(kOvkBlockQ15, cb[chroma], cr[chroma]);
      ovkPutRgb<ovkRgbFormat::kRgb888>(out, x, ovkRgbOf(kOvkBlockQ15, block[(y & 7) * 8 + (x & 7)], terms));
    }
  }
}

#define OVK_X(Sampling, Layout, Output, ShiftX, ShiftY) \
  OVK_YCC_FAMILY_KERNEL(Kernels, ovkColorYCbCr##Sampling##Layout##ToRGB##Output##u8C, Layout, Output, ShiftX, ShiftY)
OVK_YCC_FAMILY(OVK_X)
#undef OVK_X

#define OVK_PORTABLE_NAME(Group) ovk##Group##C
OVK_YCC_CAMERA_AND_BLOCK_KERNELS(Kernels, OVK_PORTABLE_NAME)
#undef OVK_PORTABLE_NAME
