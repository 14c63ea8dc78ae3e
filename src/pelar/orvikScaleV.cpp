// Vector scaling kernels.  Byte pairs are summed inside 16-bit lanes (low
// byte plus high byte), which both widens and deinterleaves even and odd
// columns without a shuffle; narrowing back takes the even bytes of two
// vectors at once.  Borders, tables and anything narrower than a vector go
// through the shared helpers of orvikScale.h or the same scalar formula as the
// portable code, so every byte matches it.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pelar/orvikScaleV.cpp"
#include <hwy/foreach_target.h>  // IWYU pragma: keep
#include <hwy/highway.h>

#include "cpu/orvikScale.h"
#include "pelar/orvikPelar.h"

HWY_BEFORE_NAMESPACE();
namespace ovk {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

using D8 = hn::ScalableTag<uint8_t>;
using D16 = hn::Repartition<uint16_t, D8>;
using D32 = hn::Repartition<uint32_t, D8>;
using V8 = hn::Vec<D8>;
using V16 = hn::Vec<D16>;
using V32 = hn::Vec<D32>;

// Vector starts covering [0, count) for count >= lanes; the last vector is
// moved back to end at count, so nothing beyond it is touched.  Every kernel
// here writes each output from its inputs alone, so the overlap rewrites the
// same bytes.
template <class At>
HWY_INLINE void ForEachVector(size_t count, size_t lanes, At at) {
  size_t i = 0;
  for (; i + lanes <= count; i += lanes) at(i);
  if (i < count) at(count - lanes);
}

#if HWY_TARGET != HWY_SCALAR

// Each 16-bit lane's low byte plus its high byte: the sum of a column pair.
HWY_INLINE V16 PairSums(V8 bytes) {
  const D16 d16;
  const V16 w = hn::BitCast(d16, bytes);
  return hn::Add(hn::And(w, hn::Set(d16, 0xFF)), hn::ShiftRight<8>(w));
}

// Lanes holding at most 255, low bytes of both in order: lo's first.
HWY_INLINE V8 NarrowPair(V16 lo, V16 hi) {
  const D8 d8;
  return hn::ConcatEven(d8, hn::BitCast(d8, hi), hn::BitCast(d8, lo));
}

// One vector of 16-bit lanes holding at most 255 as bytes, half a vector.
HWY_INLINE void StoreNarrow(V16 v, uint8_t* out) {
  const D16 d16;
  const hn::Rebind<uint8_t, D16> d8;
  hn::StoreU(hn::DemoteTo(d8, hn::BitCast(hn::RebindToSigned<D16>(), v)), d8, out);
}

#endif  // HWY_TARGET != HWY_SCALAR

// ---- Box reductions by 2 and 4 ----------------------------------------------------------

void Down2RowScalar(const uint8_t* top, const uint8_t* bottom, uint8_t* out, size_t count) {
  for (size_t x = 0; x < count; ++x)
    out[x] = uint8_t((top[2 * x] + top[2 * x + 1] + bottom[2 * x] + bottom[2 * x + 1]) >> 2);
}

// `count` outputs from two source rows: full vectors of outputs from two
// vectors of each row, else half vectors, else the scalar formula.
void Down2Row(const uint8_t* top, const uint8_t* bottom, uint8_t* out, size_t count) {
#if HWY_TARGET == HWY_SCALAR
  Down2RowScalar(top, bottom, out, count);
#else
  const D8 d8;
  const size_t lanes = hn::Lanes(d8), half = lanes / 2;
  // At most 4 x 255, so two bits off leave a byte.
  const auto halfAt = [&](size_t x) {
    const V16 sum = hn::Add(PairSums(hn::LoadU(d8, top + 2 * x)), PairSums(hn::LoadU(d8, bottom + 2 * x)));
    return hn::ShiftRight<2>(sum);
  };
  if (count >= lanes) {
    ForEachVector(count, lanes,
                  [&](size_t x) { hn::StoreU(NarrowPair(halfAt(x), halfAt(x + half)), d8, out + x); });
  } else if (count >= half) {
    ForEachVector(count, half, [&](size_t x) { StoreNarrow(halfAt(x), out + x); });
  } else {
    Down2RowScalar(top, bottom, out, count);
  }
#endif
}

int32_t ScaleDownBy2u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                       uint32_t dstStride) {
  for (uint32_t y = 0; y < srcHeight / 2; ++y) {
    const uint8_t* top = src + size_t(2 * y) * srcStride;
    Down2Row(top, top + srcStride, dst + size_t(y) * dstStride, srcWidth / 2);
  }
  return 0;
}

void Down4RowScalar(const uint8_t* const* rows, uint8_t* out, size_t count) {
  for (size_t x = 0; x < count; ++x) {
    uint32_t sum = 0;
    for (size_t j = 0; j < 4; ++j)
      for (size_t i = 0; i < 4; ++i) sum += rows[j][4 * x + i];
    out[x] = uint8_t(sum >> 4);
  }
}

// Column pairs summed over the four rows (at most 2040 in 16 bits), then the
// two pairs of each 32-bit lane.
void Down4Row(const uint8_t* const* rows, uint8_t* out, size_t count) {
#if HWY_TARGET == HWY_SCALAR
  Down4RowScalar(rows, out, count);
#else
  const D8 d8;
  const D16 d16;
  const D32 d32;
  const size_t lanes = hn::Lanes(d8), quarter = lanes / 4;
  const auto quarterAt = [&](size_t x) {
    V16 pairs = PairSums(hn::LoadU(d8, rows[0] + 4 * x));
    for (size_t j = 1; j < 4; ++j) pairs = hn::Add(pairs, PairSums(hn::LoadU(d8, rows[j] + 4 * x)));
    const V32 w = hn::BitCast(d32, pairs);
    return hn::ShiftRight<4>(hn::Add(hn::And(w, hn::Set(d32, 0xFFFF)), hn::ShiftRight<16>(w)));
  };
  if (count >= lanes) {
    ForEachVector(count, lanes, [&](size_t x) {
      const V16 lo = hn::ConcatEven(d16, hn::BitCast(d16, quarterAt(x + quarter)), hn::BitCast(d16, quarterAt(x)));
      const V16 hi = hn::ConcatEven(d16, hn::BitCast(d16, quarterAt(x + 3 * quarter)),
                                    hn::BitCast(d16, quarterAt(x + 2 * quarter)));
      hn::StoreU(NarrowPair(lo, hi), d8, out + x);
    });
  } else if (count >= quarter) {
    const hn::Rebind<uint8_t, D32> d8q;
    ForEachVector(count, quarter, [&](size_t x) {
      hn::StoreU(hn::DemoteTo(d8q, hn::BitCast(hn::RebindToSigned<D32>(), quarterAt(x))), d8q, out + x);
    });
  } else {
    Down4RowScalar(rows, out, count);
  }
#endif
}

int32_t ScaleDownBy4u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                       uint32_t dstStride) {
  for (uint32_t y = 0; y < srcHeight / 4; ++y) {
    const uint8_t* top = src + size_t(4 * y) * srcStride;
    const uint8_t* rows[4] = {top, top + srcStride, top + 2 * size_t(srcStride), top + 3 * size_t(srcStride)};
    Down4Row(rows, dst + size_t(y) * dstStride, srcWidth / 4);
  }
  return 0;
}

}  // namespace HWY_NAMESPACE
}  // namespace ovk
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
OVK_VECTOR_KERNEL(ScaleDownBy2u8)
OVK_VECTOR_KERNEL(ScaleDownBy4u8)
#endif
