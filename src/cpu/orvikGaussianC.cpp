// Portable 5x5 and 11x11 Gaussians.
//
// The signed forms round negative results toward minus infinity, in the
// interior's shift and in the band's division alike: adding a constant to an
// image then adds exactly that constant to the result, and an interior pixel
// computed by the band rule equals the interior one.
#include "orvikGaussian.h"

#include <string.h>

#include <algorithm>
#include <type_traits>

#include "orvikInternal.h"

extern "C" {
const int32_t knl5x5[25] = {
    1, 4,  6,  4,  1,  //
    4, 16, 24, 16, 4,  //
    6, 24, 36, 24, 6,  //
    4, 16, 24, 16, 4,  //
    1, 4,  6,  4,  1,
};

const int32_t knl11x11[121] = {
    1,   10,   45,    120,   210,   252,   210,   120,   45,    10,   1,    //
    10,  100,  450,   1200,  2100,  2520,  2100,  1200,  450,   100,  10,   //
    45,  450,  2025,  5400,  9450,  11340, 9450,  5400,  2025,  450,  45,   //
    120, 1200, 5400,  14400, 25200, 30240, 25200, 14400, 5400,  1200, 120,  //
    210, 2100, 9450,  25200, 44100, 52920, 44100, 25200, 9450,  2100, 210,  //
    252, 2520, 11340, 30240, 52920, 63504, 52920, 30240, 11340, 2520, 252,  //
    210, 2100, 9450,  25200, 44100, 52920, 44100, 25200, 9450,  2100, 210,  //
    120, 1200, 5400,  14400, 25200, 30240, 25200, 14400, 5400,  1200, 120,  //
    45,  450,  2025,  5400,  9450,  11340, 9450,  5400,  2025,  450,  45,   //
    10,  100,  450,   1200,  2100,  2520,  2100,  1200,  450,   100,  10,   //
    1,   10,   45,    120,   210,   252,   210,   120,   45,    10,   1,
};
}  // extern "C"

namespace {

// The kernels are outer products of a binomial row with itself, and the
// first row of each table is that binomial row.
template <int Radius>
int32_t tapWeight(int tap) {
  static_assert(Radius == 2 || Radius == 5, "5x5 or 11x11");
  return Radius == 2 ? knl5x5[tap] : knl11x11[tap];
}

// Each binomial row sums to 2^(2 radius), so the kernel to 2^(4 radius).
template <int Radius>
constexpr int kShift = 4 * Radius;

// 32-bit sums hold 8- and 16-bit pixels times 2^20; 32-bit pixels need 64.
template <class Pixel>
using SumOf = std::conditional_t<sizeof(Pixel) == 4, int64_t, int32_t>;

template <class Sum>
Sum floorDivide(Sum sum, Sum divisor) {
  return sum / divisor - (sum % divisor < 0 ? 1 : 0);
}

// One interior row: out[x] for radius <= x < width - radius.  `top` is the
// source row `radius` rows above the output row.  A window of vertical sums
// slides along the row, so each column is summed once.
template <class Pixel, int Radius>
void interiorRow(const uint8_t* top, uint32_t srcStride, uint8_t* out, uint32_t width) {
  constexpr int kTaps = 2 * Radius + 1;
  using Sum = SumOf<Pixel>;
  if (width < uint32_t(kTaps)) return;
  const auto columnSum = [&](uint32_t x) {
    Sum sum = 0;
    for (int tap = 0; tap < kTaps; ++tap)
      sum += Sum(tapWeight<Radius>(tap)) * ovkLoadElement<Pixel>(top + size_t(tap) * srcStride, x);
    return sum;
  };
  Sum window[kTaps];
  for (int tap = 0; tap + 1 < kTaps; ++tap) window[tap] = columnSum(tap);
  for (uint32_t x = Radius; x + Radius < width; ++x) {
    window[kTaps - 1] = columnSum(x + Radius);
    Sum total = 0;
    for (int tap = 0; tap < kTaps; ++tap) total += Sum(tapWeight<Radius>(tap)) * window[tap];
    ovkStoreElement<Pixel>(out, x, Pixel(total >> kShift<Radius>));
    std::copy(window + 1, window + kTaps, window);
  }
}

}  // namespace

template <class Pixel, int Radius>
void ovkGaussianInteriorC(const Pixel* src, uint32_t width, uint32_t height, uint32_t srcStride, Pixel* dst,
                          uint32_t dstStride) {
  const auto* srcBytes = reinterpret_cast<const uint8_t*>(src);
  auto* dstBytes = reinterpret_cast<uint8_t*>(dst);
  for (uint32_t y = Radius; y + Radius < height; ++y)
    interiorRow<Pixel, Radius>(srcBytes + size_t(y - Radius) * srcStride, srcStride,
                               dstBytes + size_t(y) * dstStride, width);
}

// Pixels xBegin .. xEnd-1 of row y by the band rule.  Vertical sums over the
// in-image rows are kept for the last 2 radius + 1 columns, so each column is
// summed once per run.
template <class Pixel, int Radius>
void ovkGaussianBandRunC(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride, uint32_t y,
                         uint32_t xBegin, uint32_t xEnd, uint8_t* out) {
  constexpr int kTaps = 2 * Radius + 1;
  using Sum = SumOf<Pixel>;
  const int64_t firstRow = std::max<int64_t>(0, int64_t(y) - Radius);
  const int64_t lastRow = std::min<int64_t>(height - 1, int64_t(y) + Radius);
  Sum rowWeights = 0;
  for (int64_t ty = firstRow; ty <= lastRow; ++ty) rowWeights += tapWeight<Radius>(int(ty - y + Radius));
  const auto columnSum = [&](int64_t x) {
    Sum sum = 0;
    for (int64_t ty = firstRow; ty <= lastRow; ++ty)
      sum += Sum(tapWeight<Radius>(int(ty - y + Radius))) * ovkLoadElement<Pixel>(src + size_t(ty) * srcStride, x);
    return sum;
  };

  Sum columns[kTaps];  // column sum of x kept at x % kTaps
  int64_t nextColumn = std::max<int64_t>(0, int64_t(xBegin) - Radius);
  for (int64_t x = xBegin; x < xEnd; ++x) {
    const int64_t firstColumn = std::max<int64_t>(0, x - Radius);
    const int64_t lastColumn = std::min<int64_t>(width - 1, x + Radius);
    for (; nextColumn <= lastColumn; ++nextColumn) columns[nextColumn % kTaps] = columnSum(nextColumn);
    Sum total = 0, columnWeights = 0;
    for (int64_t tx = firstColumn; tx <= lastColumn; ++tx) {
      const Sum weight = tapWeight<Radius>(int(tx - x + Radius));
      total += weight * columns[tx % kTaps];
      columnWeights += weight;
    }
    ovkStoreElement<Pixel>(out, x, Pixel(floorDivide(total, rowWeights * columnWeights)));
  }
}

template <class Pixel, int Radius>
void ovkGaussianBlurBandC(const Pixel* src, uint32_t width, uint32_t height, uint32_t srcStride, Pixel* dst,
                          uint32_t dstStride) {
  const auto* srcBytes = reinterpret_cast<const uint8_t*>(src);
  auto* dstBytes = reinterpret_cast<uint8_t*>(dst);
  // Interior rows and columns are [top, bottom) and [left, right); empty when
  // the image is too small.
  const uint32_t top = std::min<uint32_t>(Radius, height);
  const uint32_t bottom = std::max<uint32_t>(top, height > Radius ? height - Radius : 0);
  const uint32_t left = std::min<uint32_t>(Radius, width);
  const uint32_t right = std::max<uint32_t>(left, width > Radius ? width - Radius : 0);
  for (uint32_t y = 0; y < height; ++y) {
    uint8_t* out = dstBytes + size_t(y) * dstStride;
    if (y < top || y >= bottom) {
      ovkGaussianBandRunC<Pixel, Radius>(srcBytes, width, height, srcStride, y, 0, width, out);
    } else {
      ovkGaussianBandRunC<Pixel, Radius>(srcBytes, width, height, srcStride, y, 0, left, out);
      ovkGaussianBandRunC<Pixel, Radius>(srcBytes, width, height, srcStride, y, right, width, out);
    }
  }
}

// The filters this library has.
template void ovkGaussianInteriorC<uint8_t, 2>(const uint8_t*, uint32_t, uint32_t, uint32_t, uint8_t*, uint32_t);
template void ovkGaussianInteriorC<uint8_t, 5>(const uint8_t*, uint32_t, uint32_t, uint32_t, uint8_t*, uint32_t);
template void ovkGaussianInteriorC<int16_t, 2>(const int16_t*, uint32_t, uint32_t, uint32_t, int16_t*, uint32_t);
template void ovkGaussianInteriorC<int32_t, 2>(const int32_t*, uint32_t, uint32_t, uint32_t, int32_t*, uint32_t);
template void ovkGaussianBlurBandC<uint8_t, 2>(const uint8_t*, uint32_t, uint32_t, uint32_t, uint8_t*, uint32_t);
template void ovkGaussianBlurBandC<uint8_t, 5>(const uint8_t*, uint32_t, uint32_t, uint32_t, uint8_t*, uint32_t);
template void ovkGaussianBlurBandC<int16_t, 2>(const int16_t*, uint32_t, uint32_t, uint32_t, int16_t*, uint32_t);
template void ovkGaussianBlurBandC<int32_t, 2>(const int32_t*, uint32_t, uint32_t, uint32_t, int32_t*, uint32_t);
template void ovkGaussianBandRunC<uint8_t, 2>(const uint8_t*, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t,
                                              uint32_t, uint8_t*);
template void ovkGaussianBandRunC<uint8_t, 5>(const uint8_t*, uint32_t, uint32_t, uint32_t, uint32_t, uint32_t,
                                              uint32_t, uint8_t*);

namespace {

template <class Pixel, int Radius>
void filterPortable(const Pixel* src, uint32_t width, uint32_t height, uint32_t srcStride, Pixel* dst,
                    uint32_t dstStride, int32_t blurBorder) {
  ovkGaussianFilter<Pixel>(ovkGaussianInteriorC<Pixel, Radius>, ovkGaussianBlurBandC<Pixel, Radius>, src, width,
                           height, srcStride, dst, dstStride, blurBorder);
}

}  // namespace

void ovkFilterGaussian5x5u8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                             uint8_t* dst, uint32_t dstStride, int32_t blurBorder) {
  filterPortable<uint8_t, 2>(src, srcWidth, srcHeight, srcStride, dst, dstStride, blurBorder);
}

void ovkFilterGaussian11x11u8C(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                               uint8_t* dst, uint32_t dstStride, int32_t blurBorder) {
  filterPortable<uint8_t, 5>(src, srcWidth, srcHeight, srcStride, dst, dstStride, blurBorder);
}

void ovkFilterGaussian5x5s16C(const int16_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                              int16_t* dst, uint32_t dstStride, int32_t blurBorder) {
  filterPortable<int16_t, 2>(src, srcWidth, srcHeight, srcStride, dst, dstStride, blurBorder);
}

void ovkFilterGaussian5x5s32C(const int32_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                              int32_t* dst, uint32_t dstStride, int32_t blurBorder) {
  filterPortable<int32_t, 2>(src, srcWidth, srcHeight, srcStride, dst, dstStride, blurBorder);
}
