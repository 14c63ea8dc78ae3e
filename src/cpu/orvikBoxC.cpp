// Portable box (mean) filters.
//
// Borders of the 5x5 and 11x11 filters follow the first-generation 3x3 one:
// taps outside the image read 0 and the divisor stays the full tap count, so
// the same multiplier serves every pixel and the edges darken.
#include <string.h>

#include <algorithm>

#include "orvikBox.h"
#include "orvikInternal.h"

namespace {

constexpr uint32_t kStripWidth = 2048;  // columns per strip: sums stay on the stack
constexpr uint32_t kMaxRadius = 5;

// How taps outside the image are read.
struct BoxBorder {
  bool replicate;  // nearest edge pixel; otherwise `fill`
  uint8_t fill;
};

struct BoxImage {
  const uint8_t* src;
  uint32_t width, height, srcStride;
  uint8_t* dst;
  uint32_t dstStride;
};

// One strip of output columns [x0, x1).  sums[i] is the column sum of column
// x0 - radius + i; the in-image columns [c0, c1) start at sums + lead.
void filterStrip(const ovkBoxRowOps& ops, uint32_t radius, uint32_t multiplier, BoxBorder border,
                 const BoxImage& image, uint32_t x0, uint32_t x1) {
  uint16_t sums[kStripWidth + 2 * kMaxRadius];
  uint8_t fillRow[kStripWidth + 2 * kMaxRadius];
  const uint32_t c0 = x0 > radius ? x0 - radius : 0;
  const uint32_t c1 = std::min(x1 + radius, image.width);
  const uint32_t lead = c0 + radius - x0, count = c1 - c0, padded = x1 - x0 + 2 * radius;
  const uint32_t taps = 2 * radius + 1;
  memset(fillRow, border.fill, count);

  // Source row ty (possibly outside the image) from column c0 on.
  const auto tapRow = [&](int64_t ty) -> const uint8_t* {
    if (!border.replicate && (ty < 0 || ty >= int64_t(image.height))) return fillRow;
    const int64_t clamped = std::min<int64_t>(std::max<int64_t>(ty, 0), image.height - 1);
    return image.src + size_t(clamped) * image.srcStride + c0;
  };

  uint16_t* inImage = sums + lead;
  memset(inImage, 0, count * sizeof(uint16_t));
  for (int64_t ty = -int64_t(radius); ty <= int64_t(radius); ++ty) ops.addRow(inImage, tapRow(ty), count);
  const uint16_t missingColumn = uint16_t(taps * border.fill);
  for (uint32_t y = 0; y < image.height; ++y) {
    if (y > 0) ops.slideRow(inImage, tapRow(int64_t(y) + radius), tapRow(int64_t(y) - radius - 1), count);
    for (uint32_t i = 0; i < lead; ++i) sums[i] = border.replicate ? inImage[0] : missingColumn;
    for (uint32_t i = lead + count; i < padded; ++i) sums[i] = border.replicate ? inImage[count - 1] : missingColumn;
    ops.meanRow(sums, taps, multiplier, image.dst + size_t(y) * image.dstStride + x0, x1 - x0);
  }
}

void filterBox(const ovkBoxRowOps& ops, uint32_t radius, uint32_t multiplier, BoxBorder border,
               const BoxImage& image) {
  for (uint32_t x0 = 0; x0 < image.width; x0 += kStripWidth)
    filterStrip(ops, radius, multiplier, border, image, x0, std::min(x0 + kStripWidth, image.width));
}

void addRowC(uint16_t* sums, const uint8_t* row, uint32_t count) {
  for (uint32_t i = 0; i < count; ++i) sums[i] = uint16_t(sums[i] + row[i]);
}

// Wraps modulo 2^16 on the way; the final sum is exact.
void slideRowC(uint16_t* sums, const uint8_t* entering, const uint8_t* leaving, uint32_t count) {
  for (uint32_t i = 0; i < count; ++i) sums[i] = uint16_t(sums[i] + entering[i] - leaving[i]);
}

void meanRowC(const uint16_t* sums, uint32_t taps, uint32_t multiplier, uint8_t* out, uint32_t count) {
  uint32_t window = 0;
  for (uint32_t k = 0; k + 1 < taps; ++k) window += sums[k];
  for (uint32_t i = 0; i < count; ++i) {
    window += sums[i + taps - 1];
    out[i] = uint8_t((window * multiplier + 32768) >> 16);
    window -= sums[i];
  }
}

}  // namespace

const ovkBoxRowOps ovkBoxRowOpsC = {addRowC, slideRowC, meanRowC};

ovkStatusCode ovkBox3x3Filter(const ovkBoxRowOps& ops, const uint8_t* src, uint32_t width, uint32_t height,
                              uint32_t srcStride, uint8_t* dst, uint32_t dstStride, ovkBorderType borderType,
                              uint8_t borderValue) {
  if (borderType > ORVIK_BORDER_REPLICATE) return ORVIK_STATUS_UNSUPPORTED;
  const BoxBorder border = {borderType == ORVIK_BORDER_REPLICATE,
                            uint8_t(borderType == ORVIK_BORDER_CONSTANT ? borderValue : 0)};
  filterBox(ops, 1, OVK_BOX_MUL_3X3, border, {src, width, height, srcStride, dst, dstStride});
  return ORVIK_STATUS_SUCCESS;
}

void ovkBoxZeroBorderFilter(const ovkBoxRowOps& ops, uint32_t radius, uint32_t multiplier, const uint8_t* src,
                            uint32_t width, uint32_t height, uint32_t srcStride, uint8_t* dst, uint32_t dstStride) {
  filterBox(ops, radius, multiplier, {false, 0}, {src, width, height, srcStride, dst, dstStride});
}

ovkStatusCode ovkBoxFilter3x3u8_v2C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                    uint8_t* dst, uint32_t dstStride, ovkBorderType borderType,
                                    uint8_t borderValue) {
  return ovkBox3x3Filter(ovkBoxRowOpsC, src, srcWidth, srcHeight, srcStride, dst, dstStride, borderType,
                         borderValue);
}

// Zero fill on purpose: the first generation darkens its border.
void ovkBoxFilter3x3u8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                        uint8_t* dst, uint32_t dstStride) {
  ovkBoxFilter3x3u8_v2C(src, srcWidth, srcHeight, srcStride, dst, dstStride, ORVIK_BORDER_UNDEFINED, 0);
}

void ovkBoxFilter5x5u8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                        uint8_t* dst, uint32_t dstStride) {
  ovkBoxZeroBorderFilter(ovkBoxRowOpsC, 2, OVK_BOX_MUL_5X5, src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

void ovkBoxFilter11x11u8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                          uint8_t* dst, uint32_t dstStride) {
  ovkBoxZeroBorderFilter(ovkBoxRowOpsC, 5, OVK_BOX_MUL_11X11, src, srcWidth, srcHeight, srcStride, dst,
                         dstStride);
}
