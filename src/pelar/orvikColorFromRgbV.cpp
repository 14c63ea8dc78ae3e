// Vector RGB to YCbCr and gray conversions.  A vector of pixels is split
// into its even and its odd pixels, each in 16-bit lanes: the low byte of a
// 16-bit lane of the interleaved bytes is the even pixel, the high byte the
// odd one.  So the sub-sampled chroma is simply the even half, and results
// below 256 go back to bytes with one shift and OR, no lane crossing.
// Rows end with a vector moved back to end at the last pixel; rows narrower
// than a vector use the portable rows.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pelar/orvikColorFromRgbV.cpp"
#include <hwy/foreach_target.h>  // IWYU pragma: keep
#include <hwy/highway.h>

#include "pelar/orvikBytes3-inl.h"
#include "pelar/orvikPelar.h"

HWY_BEFORE_NAMESPACE();
namespace ovk {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// Sources: the family reads byte 0 as B, gray and YCrCb read it as R.
template <size_t kBytesPerPixel, bool kRedFirst>
struct PackedBytes;
using Bgr888 = PackedBytes<3, false>;
using Bgra8888 = PackedBytes<4, false>;
using Rgb888 = PackedBytes<3, true>;
struct Bgr565;
// Row kinds.
struct LumaRow;
struct PlanarRow;
struct SubsampledPlanarRow;
struct PseudoPlanarRow;
struct SubsampledPseudoPlanarRow;
struct GrayRow;
struct YCrCbRow;

#if HWY_TARGET != HWY_SCALAR
using D8 = hn::ScalableTag<uint8_t>;
using D16 = hn::RepartitionToWide<D8>;
using DI16 = hn::RebindToSigned<D16>;
using DHalf8 = hn::Rebind<uint8_t, D16>;
using V8 = hn::Vec<D8>;
using V16 = hn::Vec<D16>;
using VI16 = hn::Vec<DI16>;

// Colour values x held as x << 8: then MulHigh by k << 8 is exactly x k.
// Multiplying by constants with Mul would let the compiler turn each
// product into a longer chain of shifts and adds.
struct Channels {
  V16 r, g, b;
};

// Lanes(D8) pixels.
struct PixelPairs {
  Channels even, odd;
};

HWY_INLINE V16 EvenBytes(V8 v) { return hn::ShiftLeft<8>(hn::BitCast(D16(), v)); }
HWY_INLINE V16 OddBytes(V8 v) { return hn::And(hn::BitCast(D16(), v), hn::Set(D16(), 0xFF00)); }

HWY_INLINE PixelPairs SplitPairs(V8 r, V8 g, V8 b) {
  return {{EvenBytes(r), EvenBytes(g), EvenBytes(b)}, {OddBytes(r), OddBytes(g), OddBytes(b)}};
}

// Back to bytes: `even` into the low, `odd` into the high byte of each lane.
HWY_INLINE V8 BytesFromPairs(V16 even, V16 odd) { return hn::BitCast(D8(), hn::Or(even, hn::ShiftLeft<8>(odd))); }

HWY_INLINE void StoreNarrowed(V16 v, uint8_t* dst) {
  const DHalf8 d;
  hn::StoreU(hn::DemoteTo(d, hn::BitCast(DI16(), v)), d, dst);
}

// Three or four bytes a pixel, the colours in bytes 0 to 2 and alpha ignored.
template <size_t kBytesPerPixel, bool kRedFirst>
struct PackedBytes {
  static constexpr size_t kBytes = kBytesPerPixel;
  static HWY_INLINE PixelPairs Load(const uint8_t* p) {
    V8 byte0, byte1, byte2, alpha;
    if constexpr (kBytes == 3)
      LoadInterleavedBytes3(D8(), p, byte0, byte1, byte2);
    else
      hn::LoadInterleaved4(D8(), p, byte0, byte1, byte2, alpha);
    return kRedFirst ? SplitPairs(byte0, byte1, byte2) : SplitPairs(byte2, byte1, byte0);
  }
};

struct Bgr565 {
  static constexpr size_t kBytes = 2;
  // Bytes are loaded as bytes: the source need not be 2-byte aligned.
  static HWY_INLINE PixelPairs Load(const uint8_t* p) {
    const D8 d8;
    const D16 d16;
    const V16 low = hn::BitCast(d16, hn::LoadU(d8, p));
    const V16 high = hn::BitCast(d16, hn::LoadU(d8, p + hn::Lanes(d8)));
    return {Expand(hn::ConcatEven(d16, high, low)), Expand(hn::ConcatOdd(d16, high, low))};
  }

 private:
  static HWY_INLINE Channels Expand(V16 word) {
    const D16 d;
    return {hn::And(word, hn::Set(d, 0xF800)), hn::ShiftLeft<5>(hn::And(word, hn::Set(d, 0x07E0))),
            hn::ShiftLeft<11>(word)};
  }
};

// x k for a channel held as x << 8 and a weight below 256.
template <uint16_t k>
HWY_INLINE V16 Times(V16 shiftedChannel) {
  static_assert(k < 256, "the product must fit 16 bits");
  return hn::MulHigh(shiftedChannel, hn::Set(D16(), uint16_t(k << 8)));
}

// Callers keep the weighted sum below 2^16.
template <uint16_t kR, uint16_t kG, uint16_t kB>
HWY_INLINE V16 Weighted(const Channels& c) {
  return hn::Add(hn::Add(Times<kR>(c.r), Times<kG>(c.g)), Times<kB>(c.b));
}

// min(128 + ((sum + 64) >> 7), 255) for sums in [-16448, 16320]: biased by
// 64 + (128 << 7) the sum lies in [0, 32768], so a wrapping add and an
// unsigned shift give the floor with the 128 already added.
HWY_INLINE V16 ClampedChroma(VI16 sum) {
  const D16 d;
  const V16 biased = hn::BitCast(d, hn::Add(sum, hn::Set(DI16(), 64 + (128 << 7))));
  return hn::Min(hn::ShiftRight<7>(biased), hn::Set(d, 255));
}

// Family arithmetic, 8 fractional bits.
HWY_INLINE V16 Luma(const Channels& c) {
  return hn::ShiftRight<8>(hn::Add(Weighted<77, 150, 29>(c), hn::Set(D16(), 128)));
}

// t = 128 main - kA a - kB b lies within int16, t + 128 would not at the
// top end; ((t >> 1) + 64) >> 7 equals (t + 128) >> 8.
template <uint16_t kA, uint16_t kB>
HWY_INLINE V16 Difference(V16 main, V16 a, V16 b) {
  const DI16 di;
  const V16 t = hn::Sub(hn::ShiftRight<1>(main), hn::Add(Times<kA>(a), Times<kB>(b)));
  return ClampedChroma(hn::ShiftRight<1>(hn::BitCast(di, t)));
}

HWY_INLINE V16 BlueDifference(const Channels& c) { return Difference<85, 43>(c.b, c.g, c.r); }
HWY_INLINE V16 RedDifference(const Channels& c) { return Difference<107, 21>(c.r, c.g, c.b); }

// Weights with 15 or 16 fractional bits are split into a high byte and a low
// byte (w = 256 hi + lo): sum = 256 Hi + Lo, each part within 16 bits, and
// floor(sum / 2^k) = floor((Hi + floor(Lo / 256)) / 2^(k-8)).
HWY_INLINE V16 Gray(const Channels& c) {
  const V16 high = Weighted<76, 150, 29>(c), low = Weighted<139, 69, 47>(c);
  return hn::ShiftRight<8>(hn::Add(hn::Add(high, hn::ShiftRight<8>(low)), hn::Set(D16(), 128)));
}

HWY_INLINE V16 LumaQ15(const Channels& c) {
  const V16 high = Weighted<38, 75, 14>(c), low = Weighted<70, 35, 152>(c);
  return hn::ShiftRight<7>(hn::Add(hn::Add(high, hn::ShiftRight<8>(low)), hn::Set(D16(), 64)));
}

// 16384 main - wa a - wb b: the negative low parts round up, so
// floor((16384 - Lo) / 256) = 64 - ceil(Lo / 256).
template <uint16_t kHighA, uint16_t kLowA, uint16_t kHighB, uint16_t kLowB>
HWY_INLINE V16 DifferenceQ15(V16 main, V16 a, V16 b) {
  const D16 d;
  const DI16 di;
  const V16 high = hn::Sub(hn::ShiftRight<2>(main), hn::Add(Times<kHighA>(a), Times<kHighB>(b)));
  const V16 low = hn::Add(hn::Add(Times<kLowA>(a), Times<kLowB>(b)), hn::Set(d, 255));
  return ClampedChroma(hn::Sub(hn::BitCast(di, high), hn::BitCast(di, hn::ShiftRight<8>(low))));
}

// Calls step(x, pixels at x) for every whole vector of the row, then once
// for the last Lanes(D8) pixels, overlapping the previous vector.
// width >= Lanes(D8).
template <class Source, class Step>
HWY_INLINE void ForEachVector(const uint8_t* src, size_t width, Step step) {
  const size_t lanes = hn::Lanes(D8());
  size_t x = 0;
  for (; x + lanes <= width; x += lanes) step(x, Source::Load(src + x * Source::kBytes));
  if (x < width) step(width - lanes, Source::Load(src + (width - lanes) * Source::kBytes));
}

HWY_INLINE void StoreLuma(const PixelPairs& p, uint8_t* dstY) {
  hn::StoreU(BytesFromPairs(Luma(p.even), Luma(p.odd)), D8(), dstY);
}

struct LumaRow {
  static constexpr bool kEvenWidthOnly = false;
  template <class Source>
  static void Row(const uint8_t* src, uint8_t* dstY, size_t width) {
    ForEachVector<Source>(src, width, [&](size_t x, const PixelPairs& p) { StoreLuma(p, dstY + x); });
  }
};

struct PlanarRow {
  static constexpr bool kEvenWidthOnly = false;
  template <class Source>
  static void Row(const uint8_t* src, uint8_t* dstY, uint8_t* dstCb, uint8_t* dstCr, size_t width) {
    ForEachVector<Source>(src, width, [&](size_t x, const PixelPairs& p) {
      StoreLuma(p, dstY + x);
      hn::StoreU(BytesFromPairs(BlueDifference(p.even), BlueDifference(p.odd)), D8(), dstCb + x);
      hn::StoreU(BytesFromPairs(RedDifference(p.even), RedDifference(p.odd)), D8(), dstCr + x);
    });
  }
};

struct PseudoPlanarRow {
  static constexpr bool kEvenWidthOnly = false;
  template <class Source>
  static void Row(const uint8_t* src, uint8_t* dstY, uint8_t* dstC, size_t width) {
    ForEachVector<Source>(src, width, [&](size_t x, const PixelPairs& p) {
      StoreLuma(p, dstY + x);
      hn::StoreInterleaved2(BytesFromPairs(BlueDifference(p.even), BlueDifference(p.odd)),
                            BytesFromPairs(RedDifference(p.even), RedDifference(p.odd)), D8(), dstC + 2 * x);
    });
  }
};

// The sub-sampled rows have an even width, so the moved-back last vector
// still starts on an even pixel.
struct SubsampledPlanarRow {
  static constexpr bool kEvenWidthOnly = true;
  template <class Source>
  static void Row(const uint8_t* src, uint8_t* dstY, uint8_t* dstCb, uint8_t* dstCr, size_t width) {
    ForEachVector<Source>(src, width, [&](size_t x, const PixelPairs& p) {
      StoreLuma(p, dstY + x);
      StoreNarrowed(BlueDifference(p.even), dstCb + x / 2);
      StoreNarrowed(RedDifference(p.even), dstCr + x / 2);
    });
  }
};

struct SubsampledPseudoPlanarRow {
  static constexpr bool kEvenWidthOnly = true;
  template <class Source>
  static void Row(const uint8_t* src, uint8_t* dstY, uint8_t* dstC, size_t width) {
    ForEachVector<Source>(src, width, [&](size_t x, const PixelPairs& p) {
      StoreLuma(p, dstY + x);
      hn::StoreU(BytesFromPairs(BlueDifference(p.even), RedDifference(p.even)), D8(), dstC + x);
    });
  }
};

struct GrayRow {
  static constexpr bool kEvenWidthOnly = false;
  template <class Source>
  static void Row(const uint8_t* src, uint8_t* dst, size_t width) {
    ForEachVector<Source>(src, width, [&](size_t x, const PixelPairs& p) {
      hn::StoreU(BytesFromPairs(Gray(p.even), Gray(p.odd)), D8(), dst + x);
    });
  }
};

struct YCrCbRow {
  static constexpr bool kEvenWidthOnly = false;
  template <class Source>
  static void Row(const uint8_t* src, uint8_t* dst, size_t width) {
    ForEachVector<Source>(src, width, [&](size_t x, const PixelPairs& p) {
      const V8 y = BytesFromPairs(LumaQ15(p.even), LumaQ15(p.odd));
      const V8 cr = BytesFromPairs(DifferenceQ15<53, 152, 10, 104>(p.even.r, p.even.g, p.even.b),
                                   DifferenceQ15<53, 152, 10, 104>(p.odd.r, p.odd.g, p.odd.b));
      const V8 cb = BytesFromPairs(DifferenceQ15<21, 153, 42, 103>(p.even.b, p.even.r, p.even.g),
                                   DifferenceQ15<21, 153, 42, 103>(p.odd.b, p.odd.r, p.odd.g));
      StoreInterleavedBytes3(y, cr, cb, D8(), dst + 3 * x);
    });
  }
};
#endif  // HWY_TARGET != HWY_SCALAR

// Rows narrower than a vector run the portable row (as do odd widths of the
// sub-sampled rows, which leave them unwritten), and so does every row on
// the one-lane scalar target, where a pixel pair does not fit a vector.
template <class Kind, class Source, class Portable, class... Args>
HWY_INLINE void VectorOrPortable(Portable portable, uint32_t width, Args... args) {
#if HWY_TARGET == HWY_SCALAR
  portable(args..., width);
#else
  if (width < hn::Lanes(D8()) || (Kind::kEvenWidthOnly && (width & 1))) return portable(args..., width);
  Kind::template Row<Source>(args..., width);
#endif
}

template <class Kind>
HWY_INLINE void ConvertImage(ovkColorRGB888ToGrayu8Fn portable, const uint8_t* src, uint32_t width, uint32_t height,
                             uint32_t srcStride, uint8_t* dst, uint32_t dstStride) {
#if HWY_TARGET == HWY_SCALAR
  portable(src, width, height, srcStride, dst, dstStride);
#else
  if (width < hn::Lanes(D8())) return portable(src, width, height, srcStride, dst, dstStride);
  for (uint32_t y = 0; y < height; ++y)
    Kind::template Row<Rgb888>(src + size_t(y) * srcStride, dst + size_t(y) * dstStride, width);
#endif
}

void ColorRGB888ToGrayu8(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride, uint8_t* dst,
                         uint32_t dstStride) {
  ConvertImage<GrayRow>(ovkColorRGB888ToGrayu8C, src, width, height, srcStride, dst, dstStride);
}

void ColorRGB888toYCrCbu8(const uint8_t* src, uint32_t width, uint32_t height, uint32_t srcStride, uint8_t* dst,
                          uint32_t dstStride) {
  ConvertImage<YCrCbRow>(ovkColorRGB888toYCrCbu8C, src, width, height, srcStride, dst, dstStride);
}

// The five row kernels of one source format; each is named after its slot
// with V in place of the trailing underscore.
#define OVK_VECTOR_ROWS(lower, Source)                                                                     \
  void lower##2yV(const uint8_t* src, uint8_t* dstY, uint32_t width) {                                     \
    VectorOrPortable<LumaRow, Source>(lower##2yC, width, src, dstY);                                       \
  }                                                                                                        \
  void lower##2yuvpV(const uint8_t* src, uint8_t* dstY, uint8_t* dstCb, uint8_t* dstCr, uint32_t width) {  \
    VectorOrPortable<PlanarRow, Source>(lower##2yuvpC, width, src, dstY, dstCb, dstCr);                    \
  }                                                                                                        \
  void lower##2yyuvpV(const uint8_t* src, uint8_t* dstY, uint8_t* dstCb, uint8_t* dstCr, uint32_t width) { \
    VectorOrPortable<SubsampledPlanarRow, Source>(lower##2yyuvpC, width, src, dstY, dstCb, dstCr);         \
  }                                                                                                        \
  void lower##2yuvV(const uint8_t* src, uint8_t* dstY, uint8_t* dstC, uint32_t width) {                    \
    VectorOrPortable<PseudoPlanarRow, Source>(lower##2yuvC, width, src, dstY, dstC);                       \
  }                                                                                                        \
  void lower##2yyuvV(const uint8_t* src, uint8_t* dstY, uint8_t* dstC, uint32_t width) {                   \
    VectorOrPortable<SubsampledPseudoPlanarRow, Source>(lower##2yyuvC, width, src, dstY, dstC);            \
  }

OVK_VECTOR_ROWS(rgb565, Bgr565)
OVK_VECTOR_ROWS(rgb888, Bgr888)
OVK_VECTOR_ROWS(rgba8888, Bgra8888)
#undef OVK_VECTOR_ROWS

}  // namespace HWY_NAMESPACE
}  // namespace ovk
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
OVK_VECTOR_KERNEL(ColorRGB888ToGrayu8)
OVK_VECTOR_KERNEL(ColorRGB888toYCrCbu8)

// ovkVector<slot>() for the five slots of one source format.
#define OVK_VECTOR_ROW_KERNEL(lower, kind, Fn) OVK_VECTOR_DISPATCH(Fn, ovkVector##lower##2##kind##_, lower##2##kind##V)
#define OVK_VECTOR_ROW_KERNELS(lower)                               \
  OVK_VECTOR_ROW_KERNEL(lower, y, ovkRgbToLumaRowFn)                \
  OVK_VECTOR_ROW_KERNEL(lower, yuvp, ovkRgbToYCbCrPlanarRowFn)      \
  OVK_VECTOR_ROW_KERNEL(lower, yyuvp, ovkRgbToYCbCrPlanarRowFn)     \
  OVK_VECTOR_ROW_KERNEL(lower, yuv, ovkRgbToYCbCrPseudoPlanarRowFn) \
  OVK_VECTOR_ROW_KERNEL(lower, yyuv, ovkRgbToYCbCrPseudoPlanarRowFn)
OVK_VECTOR_ROW_KERNELS(rgb565)
OVK_VECTOR_ROW_KERNELS(rgb888)
OVK_VECTOR_ROW_KERNELS(rgba8888)
#undef OVK_VECTOR_ROW_KERNELS
#undef OVK_VECTOR_ROW_KERNEL
#endif  // HWY_ONCE
