// Portable smoothing filters.
#include "orvikBlur.h"

#include "orvikInternal.h"

namespace {

constexpr uint32_t kWeights3[3] = {1, 2, 1};

// Calls visit(x, y) once for every pixel of the outermost rows and columns.
template <class Visit>
void forEachBorderPixel(uint32_t width, uint32_t height, Visit visit) {
  for (uint32_t x = 0; x < width; ++x) visit(x, 0u);
  if (height > 1)
    for (uint32_t x = 0; x < width; ++x) visit(x, height - 1);
  for (uint32_t y = 1; y + 1 < height; ++y) {
    visit(0u, y);
    if (width > 1) visit(width - 1, y);
  }
}

}  // namespace

void ovkGaussian3x3RowC(const uint8_t* above, const uint8_t* row, const uint8_t* below, uint8_t* out,
                        uint32_t width) {
  if (width < 3) return;
  // Sliding vertical sums: each column is summed once per row.
  uint32_t left = above[0] + 2u * row[0] + below[0];
  uint32_t centre = above[1] + 2u * row[1] + below[1];
  for (uint32_t x = 1; x + 1 < width; ++x) {
    const uint32_t right = above[x + 1] + 2u * row[x + 1] + below[x + 1];
    out[x] = static_cast<uint8_t>((left + 2u * centre + right) >> 4);
    left = centre;
    centre = right;
  }
}

void ovkGaussian3x3InteriorC(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride, uint8_t* dst,
                             uint32_t dstStride) {
  for (uint32_t y = 1; y + 1 < height; ++y) {
    const uint8_t* row = src + size_t(y) * srcStride;
    ovkGaussian3x3RowC(row - srcStride, row, row + srcStride, dst + size_t(y) * dstStride, width);
  }
}

void ovkGaussian3x3BlurBorderC(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride,
                               uint8_t* dst, uint32_t dstStride) {
  forEachBorderPixel(width, height, [&](uint32_t x, uint32_t y) {
    uint32_t sum = 0, weights = 0;
    for (int dy = -1; dy <= 1; ++dy) {
      const int64_t ty = int64_t(y) + dy;
      if (ty < 0 || ty >= height) continue;
      for (int dx = -1; dx <= 1; ++dx) {
        const int64_t tx = int64_t(x) + dx;
        if (tx < 0 || tx >= width) continue;
        const uint32_t weight = kWeights3[dy + 1] * kWeights3[dx + 1];
        sum += weight * src[size_t(ty) * srcStride + size_t(tx)];
        weights += weight;
      }
    }
    dst[size_t(y) * dstStride + x] = static_cast<uint8_t>(sum / weights);
  });
}

void ovkGaussian3x3BorderTypeC(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride,
                               uint8_t* dst, uint32_t dstStride, ovkBorderType borderType,
                               uint8_t borderValue) {
  const bool replicate = borderType == ORVIK_BORDER_REPLICATE;
  forEachBorderPixel(width, height, [&](uint32_t x, uint32_t y) {
    uint32_t sum = 0;
    for (int dy = -1; dy <= 1; ++dy) {
      const int64_t ty = int64_t(y) + dy;
      const int64_t cy = ty < 0 ? 0 : (ty >= height ? height - 1 : ty);
      for (int dx = -1; dx <= 1; ++dx) {
        const int64_t tx = int64_t(x) + dx;
        const int64_t cx = tx < 0 ? 0 : (tx >= width ? width - 1 : tx);
        const bool inside = cx == tx && cy == ty;
        const uint32_t tap =
            inside || replicate ? src[size_t(cy) * srcStride + size_t(cx)] : borderValue;
        sum += kWeights3[dy + 1] * kWeights3[dx + 1] * tap;
      }
    }
    dst[size_t(y) * dstStride + x] = static_cast<uint8_t>(sum >> 4);
  });
}

void ovkGaussian3x3Filter(ovkGaussian3x3InteriorFn interior, const uint8_t* src, uint32_t width, uint32_t height,
                          uint32_t srcStride, uint8_t* dst, uint32_t dstStride, int32_t blurBorder) {
  interior(src, width, height, srcStride, dst, dstStride);
  if (blurBorder == 1) ovkGaussian3x3BlurBorderC(src, width, height, srcStride, dst, dstStride);
}

ovkStatusCode ovkGaussian3x3FilterBorderType(ovkGaussian3x3InteriorFn interior, const uint8_t* src, uint32_t width,
                                             uint32_t height, uint32_t srcStride, uint8_t* dst,
                                             uint32_t dstStride, ovkBorderType borderType,
                                             uint8_t borderValue) {
  if (borderType > ORVIK_BORDER_REPLICATE) return ORVIK_STATUS_UNSUPPORTED;
  interior(src, width, height, srcStride, dst, dstStride);
  if (borderType != ORVIK_BORDER_UNDEFINED)
    ovkGaussian3x3BorderTypeC(src, width, height, srcStride, dst, dstStride, borderType, borderValue);
  return ORVIK_STATUS_SUCCESS;
}

void ovkFilterGaussian3x3u8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                             uint8_t* dst, uint32_t dstStride, int32_t blurBorder) {
  ovkGaussian3x3Filter(ovkGaussian3x3InteriorC, src, srcWidth, srcHeight, srcStride, dst, dstStride, blurBorder);
}

ovkStatusCode ovkFilterGaussian3x3u8_v3C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                         uint32_t srcStride, uint8_t* dst, uint32_t dstStride,
                                         ovkBorderType borderType, uint8_t borderValue) {
  return ovkGaussian3x3FilterBorderType(ovkGaussian3x3InteriorC, src, srcWidth, srcHeight, srcStride, dst, dstStride,
                                        borderType, borderValue);
}
