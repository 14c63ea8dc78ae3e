// Portable general resizers: the polyphase enlargement and the area,
// nearest and bilinear resize.  All in integers, so every processor gives
// the same bytes.
#include <algorithm>

#include "orvikInternal.h"

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

// A strip of outputs reads at most kPolySpan source columns and writes at
// most kPolyOutputs pixels, so that its tables and the column sums of one
// output row stay on the stack.
constexpr uint32_t kPolySpan = 1024, kPolyOutputs = 1024;

// The taps of one output inside its strip: offsets from the strip's first
// source column (edges already clamped) and the phase's weights.
struct StripTap {
  uint16_t offset[4];
  const int32_t* weights;
};

// Vertical pass first (the four rows of the output row, every source column
// the strip reads), then the horizontal one; exact in 32 bits, so the order
// of the two passes does not change a result.
void scaleUpPoly(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                 uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride, uint32_t channels) {
  int32_t columnSums[kPolySpan * 2];
  StripTap taps[kPolyOutputs];
  for (uint32_t x0 = 0; x0 < dstWidth;) {
    const size_t low = clampLine(polyTap(x0, srcWidth, dstWidth).first, srcWidth);
    uint32_t count = 0;
    size_t high = low;
    for (uint32_t x = x0; x < dstWidth && count < kPolyOutputs; ++x, ++count) {
      const PolyTap tap = polyTap(x, srcWidth, dstWidth);
      const size_t last = clampLine(tap.first + 3, srcWidth);
      if (last - low >= kPolySpan) break;
      high = last;
      for (int k = 0; k < 4; ++k) taps[count].offset[k] = uint16_t(clampLine(tap.first + k, srcWidth) - low);
      taps[count].weights = tap.weights;
    }
    const size_t values = (high - low + 1) * channels;
    for (uint32_t y = 0; y < dstHeight; ++y) {
      const PolyTap rows = polyTap(y, srcHeight, dstHeight);
      const uint8_t* lines[4];
      for (int j = 0; j < 4; ++j) lines[j] = src + clampLine(rows.first + j, srcHeight) * srcStride + low * channels;
      for (size_t i = 0; i < values; ++i)
        columnSums[i] = rows.weights[0] * lines[0][i] + rows.weights[1] * lines[1][i] +
                        rows.weights[2] * lines[2][i] + rows.weights[3] * lines[3][i];
      uint8_t* out = dst + (size_t(y) * dstStride + size_t(x0) * channels);
      for (uint32_t i = 0; i < count; ++i)
        for (uint32_t c = 0; c < channels; ++c) {
          int32_t sum = 0;
          for (int k = 0; k < 4; ++k) sum += taps[i].weights[k] * columnSums[taps[i].offset[k] * channels + c];
          out[size_t(i) * channels + c] = uint8_t(std::min(std::max((sum + 8192) >> 14, 0), 255));
        }
    }
    x0 += count;
  }
}

}  // namespace

void ovkScaleUpPolyu8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                       uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride) {
  scaleUpPoly(src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride, 1);
}

void ovkScaleUpPolyInterleaveu8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                 uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride) {
  scaleUpPoly(src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride, 2);
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

uint8_t bilinearPixel(const uint8_t* src, uint32_t srcStride, uint32_t srcWidth, uint32_t srcHeight, uint32_t px,
                      uint32_t py) {
  const uint32_t x0 = px >> 8, y0 = py >> 8, fx = px & 255, fy = py & 255;
  const uint32_t x1 = std::min(x0 + 1, srcWidth - 1), y1 = std::min(y0 + 1, srcHeight - 1);
  const uint8_t* top = src + size_t(y0) * srcStride;
  const uint8_t* bottom = src + size_t(y1) * srcStride;
  const uint32_t upper = (256 - fx) * top[x0] + fx * top[x1], lower = (256 - fx) * bottom[x0] + fx * bottom[x1];
  return uint8_t(((256 - fy) * upper + fy * lower + 32768) >> 16);
}

}  // namespace

ovkStatusCode ovkScaleu8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                          uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride,
                          ovkInterpolationType interpolation) {
  if (interpolation > ORVIK_INTERPOLATION_BILINEAR) return ORVIK_STATUS_UNSUPPORTED;
  const uint64_t area = uint64_t(srcWidth) * srcHeight;
  for (uint32_t y = 0; y < dstHeight; ++y) {
    uint8_t* out = dst + size_t(y) * dstStride;
    const Coverage rows = coverage(y, srcHeight, dstHeight);
    const uint32_t nearestRow = uint32_t((2 * uint64_t(y) + 1) * srcHeight / (2 * uint64_t(dstHeight)));
    const uint32_t bilinearRow = bilinearPosition(y, srcHeight, dstHeight);
    for (uint32_t x = 0; x < dstWidth; ++x) {
      if (interpolation == ORVIK_INTERPOLATION_AREA) {
        out[x] = areaPixel(src, srcStride, coverage(x, srcWidth, dstWidth), rows, area);
      } else if (interpolation == ORVIK_INTERPOLATION_NEAREST) {
        const uint64_t column = (2 * uint64_t(x) + 1) * srcWidth / (2 * uint64_t(dstWidth));
        out[x] = src[size_t(nearestRow) * srcStride + column];
      } else {
        out[x] = bilinearPixel(src, srcStride, srcWidth, srcHeight, bilinearPosition(x, srcWidth, dstWidth),
                               bilinearRow);
      }
    }
  }
  return ORVIK_STATUS_SUCCESS;
}
