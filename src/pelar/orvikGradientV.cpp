// Vector 3x3 gradients.  Each vector covers `lanes` interior pixels of a row,
// loading the three source rows at columns x-1, x and x+1; the last vector
// of a row is moved back to end at column width-2, so nothing outside the
// image is read.  8-bit sources are widened to 16-bit lanes (32-bit for
// float outputs), which hold every Sobel and Scharr value exactly.  Images
// narrower than a vector plus the two edge columns use the portable code.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pelar/orvikGradientV.cpp"
#include <hwy/foreach_target.h>  // IWYU pragma: keep
#include <hwy/highway.h>
#include <string.h>

#include <type_traits>

#include "cpu/orvikCanny.h"
#include "cpu/orvikGradient.h"
#include "pelar/orvikPelar.h"

HWY_BEFORE_NAMESPACE();
namespace ovk {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

enum class Operator { kCentral, kSobel, kScharr };

template <class T>
T* RowOf(T* base, uint32_t stride, uint32_t y) {
  using Byte = std::conditional_t<std::is_const<T>::value, const uint8_t, uint8_t>;
  return reinterpret_cast<T*>(reinterpret_cast<Byte*>(base) + size_t(y) * stride);
}

// dx and dy of the pixels at columns x.. of `row`; load(line, column) gives
// a source row's lanes from a column, widened to D.  Columns are weighed as
// (above + 2 row) + below, the order the portable float code uses.
template <Operator Op, class D, class Load>
HWY_INLINE void GradientsAt(D d, const uint8_t* above, const uint8_t* row, const uint8_t* below, size_t x,
                            const Load& load, hn::Vec<D>& dx, hn::Vec<D>& dy) {
  if constexpr (Op == Operator::kCentral) {
    dx = hn::Sub(load(row, x + 1), load(row, x - 1));
    dy = hn::Sub(load(below, x), load(above, x));
  } else if constexpr (!hwy::IsFloat<hn::TFromD<D>>()) {
    // Exact in integers, so the corners can be shared: with
    // S = below(x+1) - above(x-1) and T = below(x-1) - above(x+1), the
    // corner terms are S - T of dx and S + T of dy.
    using T = hn::TFromD<D>;
    const auto s = hn::Sub(load(below, x + 1), load(above, x - 1));
    const auto t = hn::Sub(load(below, x - 1), load(above, x + 1));
    const auto across = hn::Sub(load(row, x + 1), load(row, x - 1));
    const auto down = hn::Sub(load(below, x), load(above, x));
    if constexpr (Op == Operator::kSobel) {
      dx = hn::Add(hn::Sub(s, t), hn::Add(across, across));
      dy = hn::Add(hn::Add(s, t), hn::Add(down, down));
    } else {
      const auto three = hn::Set(d, T(3)), ten = hn::Set(d, T(10));
      dx = hn::Add(hn::Mul(hn::Sub(s, t), three), hn::Mul(across, ten));
      dy = hn::Add(hn::Mul(hn::Add(s, t), three), hn::Mul(down, ten));
    }
  } else {
    const auto weigh = [d](hn::Vec<D> edge1, hn::Vec<D> centre, hn::Vec<D> edge2) {
      if constexpr (Op == Operator::kSobel) return hn::Add(hn::Add(edge1, hn::Add(centre, centre)), edge2);
      using T = hn::TFromD<D>;
      return hn::Add(hn::Add(hn::Mul(edge1, hn::Set(d, T(3))), hn::Mul(centre, hn::Set(d, T(10)))),
                     hn::Mul(edge2, hn::Set(d, T(3))));
    };
    const auto column = [&](size_t c) { return weigh(load(above, c), load(row, c), load(below, c)); };
    const auto line = [&](const uint8_t* l) { return weigh(load(l, x - 1), load(l, x), load(l, x + 1)); };
    dx = hn::Sub(column(x + 1), column(x - 1));
    dy = hn::Sub(line(below), line(above));
  }
}

// Calls store(x, y, dx, dy) for vectors covering the interior of every
// interior row.  Needs width >= Lanes(d) + 2.
template <Operator Op, class D, class Load, class Store>
void ForEachGradientVector(D d, const void* src, uint32_t width, uint32_t height, uint32_t srcStride, const Load& load,
                           const Store& store) {
  const size_t lanes = hn::Lanes(d), count = width - 2;
  const auto* bytes = static_cast<const uint8_t*>(src);
  for (uint32_t y = 1; y + 1 < height; ++y) {
    const uint8_t* row = bytes + size_t(y) * srcStride;
    const auto at = [&](size_t x) {
      hn::Vec<D> dx, dy;
      GradientsAt<Op>(d, row - srcStride, row, row + srcStride, x, load, dx, dy);
      store(x, y, dx, dy);
    };
    size_t i = 0;
    for (; i + lanes <= count; i += lanes) at(1 + i);
    if (i < count) at(1 + count - lanes);
  }
}

template <class D>
bool TooNarrow(D d, uint32_t width, uint32_t height) {
  return width < hn::Lanes(d) + 2 || height < 3;
}

// 8-bit source rows widened to the lanes of D.
template <class D>
auto WidenedBytes(D d) {
  return [d](const uint8_t* line, size_t x) { return hn::PromoteTo(d, hn::LoadU(hn::Rebind<uint8_t, D>(), line + x)); };
}

// ---- 16-bit lanes: s16 and s8 outputs and the magnitude ------------------------------

using D16 = hn::ScalableTag<int16_t>;
using V16 = hn::Vec<D16>;

// Each helper runs the portable kernel for images too narrow for a vector.
template <Operator Op, class Convert>
void Interleaved16(ovkImageGradientInterleaveds16Fn portable, const uint8_t* src, uint32_t width, uint32_t height,
                   uint32_t srcStride, int16_t* gradients, uint32_t gradStride, const Convert& convert) {
  const D16 d;
  if (TooNarrow(d, width, height)) return portable(src, width, height, srcStride, gradients, gradStride);
  ForEachGradientVector<Op>(d, src, width, height, srcStride, WidenedBytes(d),
                            [&](size_t x, uint32_t y, V16 dx, V16 dy) {
                              int16_t* out = RowOf(gradients, gradStride, y - 1) + 2 * (x - 1);
                              hn::StoreInterleaved2(convert(dx), convert(dy), d, out);
                            });
}

template <Operator Op, class Out, class Portable, class Convert>
void Planar16(Portable portable, const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride, Out* dx,
              Out* dy, uint32_t dxyStride, const Convert& convert) {
  const D16 d;
  if (TooNarrow(d, width, height)) return portable(src, width, height, srcStride, dx, dy, dxyStride);
  const hn::Rebind<Out, D16> dOut;
  ForEachGradientVector<Op>(d, src, width, height, srcStride, WidenedBytes(d),
                            [&](size_t x, uint32_t y, V16 gx, V16 gy) {
                              hn::StoreU(convert(dOut, gx), dOut, RowOf(dx, dxyStride, y) + x);
                              hn::StoreU(convert(dOut, gy), dOut, RowOf(dy, dxyStride, y) + x);
                            });
}

const auto kSame16 = [](V16 v) { return v; };
const auto kEighth16 = [](V16 v) { return hn::ShiftRight<3>(v); };  // arithmetic: floors

// ---- 32-bit float outputs ---------------------------------------------------------------

using D32 = hn::ScalableTag<int32_t>;
using DF = hn::ScalableTag<float>;
using VF = hn::Vec<DF>;

template <Operator Op, class D, class Load, class Convert>
void InterleavedF32(ovkImageGradientInterleavedf32Fn portable, D d, const Load& load, const uint8_t* src,
                    uint32_t width, uint32_t height, uint32_t srcStride, float* gradients, uint32_t gradStride,
                    const Convert& convert) {
  if (TooNarrow(d, width, height)) return portable(src, width, height, srcStride, gradients, gradStride);
  ForEachGradientVector<Op>(d, src, width, height, srcStride, load,
                            [&](size_t x, uint32_t y, hn::Vec<D> dx, hn::Vec<D> dy) {
                              float* out = RowOf(gradients, gradStride, y - 1) + 2 * (x - 1);
                              hn::StoreInterleaved2(convert(dx), convert(dy), DF(), out);
                            });
}

template <Operator Op, class D, class Src, class Load, class Convert>
void PlanarF32(void (*portable)(const Src*, uint32_t, uint32_t, uint32_t, float*, float*, uint32_t), D d,
               const Load& load, const Src* src, uint32_t width, uint32_t height, uint32_t srcStride, float* dx,
               float* dy, uint32_t dxyStride, const Convert& convert) {
  if (TooNarrow(d, width, height)) return portable(src, width, height, srcStride, dx, dy, dxyStride);
  ForEachGradientVector<Op>(d, src, width, height, srcStride, load,
                            [&](size_t x, uint32_t y, hn::Vec<D> gx, hn::Vec<D> gy) {
                              hn::StoreU(convert(gx), DF(), RowOf(dx, dxyStride, y) + x);
                              hn::StoreU(convert(gy), DF(), RowOf(dy, dxyStride, y) + x);
                            });
}

const auto kFloat = [](hn::Vec<D32> v) { return hn::ConvertTo(DF(), v); };
const auto kFloatEighth = [](hn::Vec<D32> v) { return hn::Mul(hn::ConvertTo(DF(), v), hn::Set(DF(), 0.125f)); };

// ---- Kernels -------------------------------------------------------------------------------

void ImageGradientInterleaveds16(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                 int16_t* gradients, uint32_t gradStride) {
  Interleaved16<Operator::kCentral>(ovkImageGradientInterleaveds16C, src, srcWidth, srcHeight, srcStride, gradients,
                                    gradStride, kSame16);
}

void ImageGradientSobelInterleaveds16(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                      int16_t* gradients, uint32_t gradStride) {
  Interleaved16<Operator::kSobel>(ovkImageGradientSobelInterleaveds16C, src, srcWidth, srcHeight, srcStride, gradients,
                                  gradStride, kEighth16);
}

void ImageGradientSobelInterleaveds16_v3(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                         int16_t* gradients, uint32_t gradStride) {
  Interleaved16<Operator::kSobel>(ovkImageGradientSobelInterleaveds16_v3C, src, srcWidth, srcHeight, srcStride,
                                  gradients, gradStride, kSame16);
}

void ImageGradientScharrInterleaveds16(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                       int16_t* gradients, uint32_t gradStride) {
  Interleaved16<Operator::kScharr>(ovkImageGradientScharrInterleaveds16C, src, srcWidth, srcHeight, srcStride,
                                   gradients, gradStride, kSame16);
}

void ImageGradientPlanars16(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, int16_t* dx,
                            int16_t* dy, uint32_t dxyStride) {
  Planar16<Operator::kCentral>(ovkImageGradientPlanars16C, src, srcWidth, srcHeight, srcStride, dx, dy, dxyStride,
                               [](D16, V16 v) { return v; });
}

void ImageGradientSobelPlanars16(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                 int16_t* dx, int16_t* dy, uint32_t dxyStride) {
  Planar16<Operator::kSobel>(ovkImageGradientSobelPlanars16C, src, srcWidth, srcHeight, srcStride, dx, dy, dxyStride,
                             [](D16, V16 v) { return kEighth16(v); });
}

// |value| / 8 <= 127.5, so the narrowing never saturates.
void ImageGradientSobelPlanars8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                int8_t* dx, int8_t* dy, uint32_t dxyStride) {
  Planar16<Operator::kSobel>(ovkImageGradientSobelPlanars8C, src, srcWidth, srcHeight, srcStride, dx, dy, dxyStride,
                             [](auto d8, V16 v) { return hn::DemoteTo(d8, kEighth16(v)); });
}

// |dx| + |dy| <= 2040 fits 16 bits; the narrowing saturates at 255.
void FilterSobel3x3u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                      uint32_t dstStride) {
  if (TooNarrow(D16(), srcWidth, srcHeight))
    return ovkFilterSobel3x3u8C(src, srcWidth, srcHeight, srcStride, dst, dstStride);
  const D16 d;
  const hn::Rebind<uint8_t, D16> d8;
  ForEachGradientVector<Operator::kSobel>(d, src, srcWidth, srcHeight, srcStride, WidenedBytes(d),
                                          [&](size_t x, uint32_t y, V16 dx, V16 dy) {
                                            const V16 magnitude = hn::Add(hn::Abs(dx), hn::Abs(dy));
                                            hn::StoreU(hn::DemoteTo(d8, magnitude), d8, RowOf(dst, dstStride, y) + x);
                                          });
}

void ImageGradientInterleavedf32(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                 float* gradients, uint32_t gradStride) {
  InterleavedF32<Operator::kCentral>(ovkImageGradientInterleavedf32C, D32(), WidenedBytes(D32()), src, srcWidth,
                                     srcHeight, srcStride, gradients, gradStride, kFloat);
}

void ImageGradientSobelInterleavedf32(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                      float* gradients, uint32_t gradStride) {
  InterleavedF32<Operator::kSobel>(ovkImageGradientSobelInterleavedf32C, D32(), WidenedBytes(D32()), src, srcWidth,
                                   srcHeight, srcStride, gradients, gradStride, kFloatEighth);
}

void ImageGradientPlanarf32(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, float* dx,
                            float* dy, uint32_t dxyStride) {
  PlanarF32<Operator::kCentral>(ovkImageGradientPlanarf32C, D32(), WidenedBytes(D32()), src, srcWidth, srcHeight,
                                srcStride, dx, dy, dxyStride, kFloat);
}

void ImageGradientSobelPlanarf32(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                 float* dx, float* dy, uint32_t dxyStride) {
  PlanarF32<Operator::kSobel>(ovkImageGradientSobelPlanarf32C, D32(), WidenedBytes(D32()), src, srcWidth, srcHeight,
                              srcStride, dx, dy, dxyStride, kFloatEighth);
}

// ARMv7's vector unit flushes subnormal floats to zero, unlike its scalar
// unit and every other processor, so there the portable code runs.
void ImageGradientSobelPlanarf32f32(const float* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                    float* dx, float* dy, uint32_t dxyStride) {
  if (HWY_ARCH_ARM_V7) return ovkImageGradientSobelPlanarf32f32C(src, srcWidth, srcHeight, srcStride, dx, dy, dxyStride);
  const auto load = [](const uint8_t* line, size_t x) {
    return hn::LoadU(DF(), reinterpret_cast<const float*>(line) + x);
  };
  const VF nan = hn::Set(DF(), ovkCanonicalNaN());
  PlanarF32<Operator::kSobel>(ovkImageGradientSobelPlanarf32f32C, DF(), load, src, srcWidth, srcHeight, srcStride, dx,
                              dy, dxyStride, [nan](VF v) {
                                const VF scaled = hn::Mul(v, hn::Set(DF(), 0.125f));
                                return hn::IfThenElse(hn::IsNaN(scaled), nan, scaled);
                              });
}

// ---- Canny: the gradient pass in vectors, suppression and hysteresis shared ----------------

void CannyGradientPass(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride,
                       const ovkCannyGradients& g, uint16_t* magnitude) {
  if (TooNarrow(D16(), width, height)) return ovkCannyGradientPassC(src, width, height, srcStride, g, magnitude);
  ovkCannyClearBorder(width, height, g, magnitude);
  const D16 d;
  const hn::RebindToUnsigned<D16> du;
  ForEachGradientVector<Operator::kSobel>(d, src, width, height, srcStride, WidenedBytes(d),
                                          [&](size_t x, uint32_t y, V16 dx, V16 dy) {
                                            hn::StoreU(dx, d, RowOf(g.gx, g.stride, y) + x);
                                            hn::StoreU(dy, d, RowOf(g.gy, g.stride, y) + x);
                                            const V16 l1 = hn::Add(hn::Abs(dx), hn::Abs(dy));
                                            hn::StoreU(hn::BitCast(du, l1), du, magnitude + size_t(y) * width + x);
                                          });
}

// Suppression in 16-bit lanes: magnitudes are at most 2040 and the
// gradients 1020, so the direction tests of the portable pass,
//   horizontal  ay * 2^15 <= ax * t        (t = tan 22.5 deg in Q15)
//   vertical    ay * 2^15 >= ax * (2^16 + t),
// become ay <= h and ay >= 2 ax + h + (ax != 0) with h = (ax * t) >> 15, the
// high half of ax * 2t (ax * t is a multiple of 2^15 only for ax = 0).
void CannySuppressPass(const uint16_t* magnitude, const ovkCannyGradients& g, uint32_t width, uint32_t height,
                       int32_t low, int32_t high, uint8_t* map) {
  const D16 d;
  const size_t lanes = hn::Lanes(d);
  if (width < lanes + 2) return ovkCannySuppressPassC(magnitude, g, width, height, low, high, map);
  const hn::Rebind<uint8_t, D16> d8;
  const auto* m16 = reinterpret_cast<const int16_t*>(magnitude);
  // Thresholds outside the magnitudes' range act like their nearest end.
  const V16 lowV = hn::Set(d, int16_t(HWY_MIN(HWY_MAX(low, -1), 2041)));
  const V16 highV = hn::Set(d, int16_t(HWY_MIN(HWY_MAX(high, -1), 2041)));
  const V16 twiceTan = hn::Set(d, int16_t(2 * kCannyTan22Q15)), zero = hn::Zero(d);
  const size_t w = width;
  for (uint32_t y = 1; y + 1 < height; ++y) {
    const int16_t* gx = RowOf(g.gx, g.stride, y);
    const int16_t* gy = RowOf(g.gy, g.stride, y);
    const auto at = [&](size_t x) {
      const size_t i = size_t(y) * w + x;
      const auto near = [&](ptrdiff_t offset) { return hn::LoadU(d, m16 + ptrdiff_t(i) + offset); };
      const V16 m = near(0), dx = hn::LoadU(d, gx + x), dy = hn::LoadU(d, gy + x);
      const V16 ax = hn::Abs(dx), ay = hn::Abs(dy);
      const V16 h = hn::MulHigh(ax, twiceTan);
      const auto horizontal = hn::Not(hn::Gt(ay, h));
      const V16 steep = hn::Add(hn::Add(hn::Add(ax, ax), h), hn::IfThenElseZero(hn::Gt(ax, zero), hn::Set(d, 1)));
      const auto vertical = hn::Not(hn::Lt(ay, steep));
      const auto falling = hn::Xor(hn::Gt(dx, zero), hn::Gt(dy, zero));  // the diagonal from above right
      const ptrdiff_t up = -ptrdiff_t(w);
      const V16 before =
          hn::IfThenElse(horizontal, near(-1),
                         hn::IfThenElse(vertical, near(up), hn::IfThenElse(falling, near(up + 1), near(up - 1))));
      const V16 after =
          hn::IfThenElse(horizontal, near(1),
                         hn::IfThenElse(vertical, near(-up), hn::IfThenElse(falling, near(-up - 1), near(-up + 1))));
      const auto kept = hn::And(hn::And(hn::Gt(m, lowV), hn::Gt(m, before)), hn::Not(hn::Lt(m, after)));
      const V16 edgeClass = hn::IfThenElse(hn::Gt(m, highV), hn::Set(d, kCannyEdge), hn::Set(d, kCannyWeak));
      hn::StoreU(hn::DemoteTo(d8, hn::IfThenElseZero(kept, edgeClass)), d8, map + i);
    };
    size_t i = 0;
    for (; i + lanes <= w - 2; i += lanes) at(1 + i);
    if (i < w - 2) at(w - 1 - lanes);
  }
}

constexpr ovkCannyPasses kVectorPasses = {CannyGradientPass, CannySuppressPass};

void FilterCanny3x3u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                      uint32_t dstStride, int32_t low, int32_t high) {
  ovkCannyDetect(kVectorPasses, src, srcWidth, srcHeight, srcStride, dst, dstStride, nullptr, nullptr, 0, low, high);
}

void FilterCannyu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                   uint32_t dstStride, int32_t low, int32_t high) {
  FilterCanny3x3u8(src, srcWidth, srcHeight, srcStride, dst, dstStride, low, high);
}

void FilterCanny3x3u8_v3(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                         uint32_t dstStride, int16_t* gx, int16_t* gy, uint32_t gradStride, int32_t low, int32_t high) {
  ovkCannyDetect(kVectorPasses, src, srcWidth, srcHeight, srcStride, dst, dstStride, gx, gy, gradStride, low, high);
}

}  // namespace HWY_NAMESPACE
}  // namespace ovk
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
OVK_VECTOR_KERNEL(ImageGradientInterleaveds16)
OVK_VECTOR_KERNEL(ImageGradientInterleavedf32)
OVK_VECTOR_KERNEL(ImageGradientPlanars16)
OVK_VECTOR_KERNEL(ImageGradientPlanarf32)
OVK_VECTOR_KERNEL(ImageGradientSobelInterleaveds16)
OVK_VECTOR_KERNEL(ImageGradientSobelInterleaveds16_v3)
OVK_VECTOR_KERNEL(ImageGradientSobelInterleavedf32)
OVK_VECTOR_KERNEL(ImageGradientSobelPlanars16)
OVK_VECTOR_KERNEL(ImageGradientSobelPlanars8)
OVK_VECTOR_KERNEL(ImageGradientSobelPlanarf32)
OVK_VECTOR_KERNEL(ImageGradientSobelPlanarf32f32)
OVK_VECTOR_KERNEL(ImageGradientScharrInterleaveds16)
OVK_VECTOR_KERNEL(FilterSobel3x3u8)
OVK_VECTOR_KERNEL(FilterCanny3x3u8)
OVK_VECTOR_KERNEL(FilterCannyu8)
OVK_VECTOR_KERNEL(FilterCanny3x3u8_v3)
#endif
