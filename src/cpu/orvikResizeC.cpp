// Portable general resizers: the polyphase enlargement and the area,
// nearest and bilinear resize.  All in integers, so every processor gives
// the same bytes.
#include <algorithm>

#include "orvikInternal.h"
#include "orvikResize.h"

// ---- Polyphase resize -------------------------------------------------------------------

namespace {

// Catmull-Rom weights at t = p / 32, times 128: the cubic's coefficients
// over 512, rounded half up, the largest tap absorbing the rounding so that
// every phase sums to 128.
constexpr int32_t roundedOver512(int32_t n) { return (n + 256 - ((n + 256) % 512 + 512) % 512) / 512; }

struct PolyPhases {
  int32_t weights[32][4];
  constexpr PolyPhases() : weights() {
    for (int32_t p = 0; p < 32; ++p) {
      int32_t* w = weights[p];
      w[0] = roundedOver512(-p * p * p + 64 * p * p - 1024 * p);
      w[1] = roundedOver512(3 * p * p * p - 160 * p * p + 65536);
      w[2] = roundedOver512(-3 * p * p * p + 128 * p * p + 1024 * p);
      w[3] = roundedOver512(p * p * p - 32 * p * p);
      w[p < 16 ? 1 : 2] += 128 - (w[0] + w[1] + w[2] + w[3]);
    }
  }
};
constexpr PolyPhases kPolyPhases;

int64_t floorDiv(int64_t n, int64_t d) { return n >= 0 ? n / d : -((-n + d - 1) / d); }

// Source position of output i, centre-aligned, in 1/32 pixels.
int64_t polyPosition(uint32_t i, uint32_t srcSize, uint32_t dstSize) {
  const int64_t twiceCentre = (2 * int64_t(i) + 1) * srcSize - dstSize;  // 2 dstSize x position
  return floorDiv(twiceCentre * 32 + dstSize, 2 * int64_t(dstSize));
}

// Output i reads source lines first .. first + 3 (clamped to the line) with
// the weights of its phase.
struct PolyTap {
  int64_t first;
  const int32_t* weights;
};

PolyTap polyTap(uint32_t i, uint32_t srcSize, uint32_t dstSize) {
  const int64_t position = polyPosition(i, srcSize, dstSize);
  const int64_t whole = floorDiv(position, 32);
  return {whole - 1, kPolyPhases.weights[position - whole * 32]};
}

size_t clampLine(int64_t i, uint32_t size) { return size_t(std::min<int64_t>(std::max<int64_t>(i, 0), size - 1)); }

// Column sums in 32 bits, interleaved like the pixels; exact, so the order of
// the two passes does not change a result.  Weights, lines and taps are read
// into locals first: the stores could otherwise alias them and keep the
// compiler from vectorising the loops.
void polyVerticalRow(const uint8_t* const* lines, const int32_t* weights, ovkPolyStrip& strip) {
  const size_t values = size_t(strip.columns) * strip.channels;
  const int32_t w0 = weights[0], w1 = weights[1], w2 = weights[2], w3 = weights[3];
  const uint8_t *l0 = lines[0], *l1 = lines[1], *l2 = lines[2], *l3 = lines[3];
  int32_t* sums = strip.sums.wide;
  for (size_t i = 0; i < values; ++i) sums[i] = w0 * l0[i] + w1 * l1[i] + w2 * l2[i] + w3 * l3[i];
}

template <uint32_t kChannels>
void polyHorizontal(const ovkPolyStrip& strip, uint8_t* out) {
  const uint32_t count = strip.count;
  const ovkPolyTap* taps = strip.taps;
  const int32_t* sums = strip.sums.wide;
  for (uint32_t i = 0; i < count; ++i) {
    const ovkPolyTap tap = taps[i];
    const int32_t w0 = tap.weights[0], w1 = tap.weights[1], w2 = tap.weights[2], w3 = tap.weights[3];
    for (uint32_t c = 0; c < kChannels; ++c) {
      const int32_t sum = w0 * sums[tap.offset[0] * kChannels + c] + w1 * sums[tap.offset[1] * kChannels + c] +
                          w2 * sums[tap.offset[2] * kChannels + c] + w3 * sums[tap.offset[3] * kChannels + c];
      out[size_t(i) * kChannels + c] = uint8_t(std::min(std::max((sum + 8192) >> 14, 0), 255));
    }
  }
}

void polyHorizontalRow(const ovkPolyStrip& strip, uint8_t* out) {
  if (strip.channels == 1) return polyHorizontal<1>(strip, out);
  polyHorizontal<2>(strip, out);
}

}  // namespace

const ovkPolyRowOps ovkPolyRowOpsC = {nullptr, polyVerticalRow, polyHorizontalRow};

// Vertical pass first (the four rows of the output row, every source column
// the strip reads), then the horizontal one.
void ovkScaleUpPoly(const ovkPolyRowOps& ops, const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                    uint32_t srcStride, uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride,
                    uint32_t channels) {
  ovkPolyStrip strip;
  strip.channels = channels;
  for (uint32_t x0 = 0; x0 < dstWidth;) {
    const size_t low = clampLine(polyTap(x0, srcWidth, dstWidth).first, srcWidth);
    uint32_t count = 0;
    size_t high = low;
    for (uint32_t x = x0; x < dstWidth && count < OVK_POLY_OUTPUTS; ++x, ++count) {
      const PolyTap tap = polyTap(x, srcWidth, dstWidth);
      const size_t last = clampLine(tap.first + 3, srcWidth);
      if (last - low >= OVK_POLY_SPAN) break;
      high = last;
      for (int k = 0; k < 4; ++k) strip.taps[count].offset[k] = uint16_t(clampLine(tap.first + k, srcWidth) - low);
      strip.taps[count].weights = tap.weights;
    }
    strip.count = count;
    strip.columns = uint32_t(high - low + 1);
    if (ops.prepareStrip) ops.prepareStrip(strip);
    for (uint32_t y = 0; y < dstHeight; ++y) {
      const PolyTap rows = polyTap(y, srcHeight, dstHeight);
      const uint8_t* lines[4];
      for (int j = 0; j < 4; ++j) lines[j] = src + clampLine(rows.first + j, srcHeight) * srcStride + low * channels;
      ops.verticalRow(lines, rows.weights, strip);
      ops.horizontalRow(strip, dst + (size_t(y) * dstStride + size_t(x0) * channels));
    }
    x0 += count;
  }
}

void ovkScaleUpPolyu8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                       uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride) {
  ovkScaleUpPoly(ovkPolyRowOpsC, src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride, 1);
}

void ovkScaleUpPolyInterleaveu8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                 uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride) {
  ovkScaleUpPoly(ovkPolyRowOpsC, src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride, 2);
}

// ---- General resize ---------------------------------------------------------------------

namespace {

// Source pixels [first, last] that output i covers, with the overlap of
// pixel k as overlap(k): lengths in units of 1 / dstSize source pixels, so
// that the overlaps of one output sum to srcSize.
struct Coverage {
  uint64_t first, last, begin, end, dstSize;
  uint64_t overlap(uint64_t k) const { return std::min((k + 1) * dstSize, end) - std::max(k * dstSize, begin); }
};

Coverage coverage(uint32_t i, uint32_t srcSize, uint32_t dstSize) {
  const uint64_t begin = uint64_t(i) * srcSize, end = begin + srcSize;
  return {begin / dstSize, (end - 1) / dstSize, begin, end, dstSize};
}

// In 1/256 pixels, floored, clamped to the image.
uint32_t bilinearPosition(uint32_t i, uint32_t srcSize, uint32_t dstSize) {
  const int64_t twiceCentre = (2 * int64_t(i) + 1) * srcSize - dstSize;
  const int64_t position = floorDiv(twiceCentre * 256, 2 * int64_t(dstSize));
  return uint32_t(std::min<int64_t>(std::max<int64_t>(position, 0), (int64_t(srcSize) - 1) * 256));
}

uint8_t areaPixel(const uint8_t* src, uint32_t srcStride, const Coverage& columns, const Coverage& rows,
                  uint64_t area) {
  uint64_t sum = 0;
  for (uint64_t j = rows.first; j <= rows.last; ++j) {
    const uint8_t* row = src + j * srcStride;
    uint64_t rowSum = 0;
    for (uint64_t i = columns.first; i <= columns.last; ++i) rowSum += columns.overlap(i) * row[i];
    sum += rows.overlap(j) * rowSum;
  }
  return uint8_t((sum + area / 2) / area);
}

// (256 - fx) (256 - fy) p00 + ... in one exact sum, so whether the rows or
// the columns are combined first does not change it.
uint8_t bilinearPixel(const uint8_t* top, const uint8_t* bottom, uint32_t x0, uint32_t x1, uint32_t fx, uint32_t fy) {
  const uint32_t upper = (256 - fx) * top[x0] + fx * top[x1], lower = (256 - fx) * bottom[x0] + fx * bottom[x1];
  return uint8_t(((256 - fy) * upper + fy * lower + 32768) >> 16);
}

void nearestRow(const uint8_t* in, ovkResizeStrip& strip, uint8_t* out) {
  for (uint32_t k = 0; k < strip.count; ++k) out[k] = in[strip.column[k]];
}

void bilinearRow(const uint8_t* top, const uint8_t* bottom, uint32_t fy, ovkResizeStrip& strip, uint8_t* out) {
  for (uint32_t k = 0; k < strip.count; ++k)
    out[k] = bilinearPixel(top, bottom, strip.column[k], strip.next[k], strip.fraction[k], fy);
}

void areaResize(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride) {
  const uint64_t area = uint64_t(srcWidth) * srcHeight;
  for (uint32_t y = 0; y < dstHeight; ++y) {
    uint8_t* out = dst + size_t(y) * dstStride;
    const Coverage rows = coverage(y, srcHeight, dstHeight);
    for (uint32_t x = 0; x < dstWidth; ++x) out[x] = areaPixel(src, srcStride, coverage(x, srcWidth, dstWidth), rows, area);
  }
}

// The source columns of output x: nearest in column, bilinear in column,
// next and fraction.
void resizeColumns(ovkResizeStrip& strip, uint32_t k, uint32_t x, uint32_t dstWidth) {
  const uint32_t srcWidth = strip.srcWidth;
  if (strip.interpolation == ORVIK_INTERPOLATION_NEAREST) {
    strip.column[k] = uint32_t((2 * uint64_t(x) + 1) * srcWidth / (2 * uint64_t(dstWidth)));
    strip.next[k] = strip.column[k];
    strip.fraction[k] = 0;
  } else {
    const uint32_t position = bilinearPosition(x, srcWidth, dstWidth);
    strip.column[k] = position >> 8;
    strip.next[k] = std::min(strip.column[k] + 1, srcWidth - 1);
    strip.fraction[k] = position & 255;
  }
}

}  // namespace

const ovkResizeRowOps ovkResizeRowOpsC = {nullptr, nearestRow, bilinearRow};

// Columns only grow along a row, so a strip's first output reads its lowest
// column and its last output the highest.
ovkStatusCode ovkResize(const ovkResizeRowOps& ops, const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                        uint32_t srcStride, uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride,
                        ovkInterpolationType interpolation) {
  if (interpolation > ORVIK_INTERPOLATION_BILINEAR) return ORVIK_STATUS_UNSUPPORTED;
  if (interpolation == ORVIK_INTERPOLATION_AREA) {
    areaResize(src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride);
    return ORVIK_STATUS_SUCCESS;
  }
  ovkResizeStrip strip;
  strip.interpolation = interpolation;
  strip.srcWidth = srcWidth;
  for (uint32_t x0 = 0; x0 < dstWidth;) {
    uint32_t count = 0;
    for (uint32_t x = x0; x < dstWidth && count < OVK_RESIZE_OUTPUTS; ++x, ++count) {
      resizeColumns(strip, count, x, dstWidth);
      if (count > 0 && strip.next[count] - strip.column[0] >= OVK_RESIZE_SPAN) break;
    }
    strip.count = count;
    strip.first = strip.column[0];
    strip.columns = strip.next[count - 1] - strip.first + 1;
    if (ops.prepareStrip) ops.prepareStrip(strip);
    for (uint32_t y = 0; y < dstHeight; ++y) {
      uint8_t* out = dst + (size_t(y) * dstStride + x0);
      if (interpolation == ORVIK_INTERPOLATION_NEAREST) {
        const uint64_t row = (2 * uint64_t(y) + 1) * srcHeight / (2 * uint64_t(dstHeight));
        ops.nearestRow(src + size_t(row) * srcStride, strip, out);
      } else {
        const uint32_t position = bilinearPosition(y, srcHeight, dstHeight);
        const uint32_t y0 = position >> 8, y1 = std::min(y0 + 1, srcHeight - 1);
        ops.bilinearRow(src + size_t(y0) * srcStride, src + size_t(y1) * srcStride, position & 255, strip, out);
      }
    }
    x0 += count;
  }
  return ORVIK_STATUS_SUCCESS;
}

ovkStatusCode ovkScaleu8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                          uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride,
                          ovkInterpolationType interpolation) {
  return ovkResize(ovkResizeRowOpsC, src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride,
                   interpolation);
}
