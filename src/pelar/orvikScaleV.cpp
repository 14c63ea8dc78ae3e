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

#include "cpu/orvikGradient.h"
#include "cpu/orvikScale.h"
#include "pelar/orvikPelar.h"

// Column pairs are read as 16-bit lanes, the even column in the low byte.
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "pairs of bytes read as little-endian lanes");

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
  const hn::Rebind<uint8_t, D16> d8;
  hn::StoreU(hn::DemoteTo(d8, hn::BitCast(hn::RebindToSigned<D16>(), v)), d8, out);
}

// Two outputs per lane, each at most 255, the first in the low byte.
HWY_INLINE void StorePairs(V16 first, V16 second, uint8_t* out) {
  const D8 d8;
  hn::StoreU(hn::BitCast(d8, hn::Or(first, hn::ShiftLeft<8>(second))), d8, out);
}

#endif  // HWY_TARGET != HWY_SCALAR

// ---- Box reductions by 2 and 4 ----------------------------------------------------------

// kBias 0: the truncated mean of the box reduction; 2: the rounded one of
// an exact bilinear halving.
template <uint32_t kBias>
void Down2RowScalar(const uint8_t* top, const uint8_t* bottom, uint8_t* out, size_t count) {
  for (size_t x = 0; x < count; ++x)
    out[x] = uint8_t((top[2 * x] + top[2 * x + 1] + bottom[2 * x] + bottom[2 * x + 1] + kBias) >> 2);
}

// `count` outputs from two source rows: full vectors of outputs from two
// vectors of each row, else half vectors, else the scalar formula.
template <uint32_t kBias>
void Down2Row(const uint8_t* top, const uint8_t* bottom, uint8_t* out, size_t count) {
#if HWY_TARGET == HWY_SCALAR
  Down2RowScalar<kBias>(top, bottom, out, count);
#else
  const D8 d8;
  const size_t lanes = hn::Lanes(d8), half = lanes / 2;
  const V16 bias = hn::Set(D16(), uint16_t(kBias));
  // At most 4 x 255 + 2, so two bits off leave a byte.
  const auto halfAt = [&](size_t x) {
    const V16 sum = hn::Add(PairSums(hn::LoadU(d8, top + 2 * x)), PairSums(hn::LoadU(d8, bottom + 2 * x)));
    return hn::ShiftRight<2>(kBias ? hn::Add(sum, bias) : sum);
  };
  if (count >= lanes) {
    ForEachVector(count, lanes,
                  [&](size_t x) { hn::StoreU(NarrowPair(halfAt(x), halfAt(x + half)), d8, out + x); });
  } else if (count >= half) {
    ForEachVector(count, half, [&](size_t x) { StoreNarrow(halfAt(x), out + x); });
  } else {
    Down2RowScalar<kBias>(top, bottom, out, count);
  }
#endif
}

int32_t ScaleDownBy2u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                       uint32_t dstStride) {
  for (uint32_t y = 0; y < srcHeight / 2; ++y) {
    const uint8_t* top = src + size_t(2 * y) * srcStride;
    Down2Row<0>(top, top + srcStride, dst + size_t(y) * dstStride, srcWidth / 2);
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

// ---- Gaussian reductions and enlargement -------------------------------------------------

// Outputs per strip: the column sums of one strip stay in L1.
constexpr size_t kStripOutputs = 512;

// Splits `count` outputs into strips of near-equal length, so that no strip
// is shorter than a vector when the row is not.
template <class Visit>
HWY_INLINE void ForEachStrip(size_t count, Visit visit) {
  const size_t strips = (count + kStripOutputs - 1) / kStripOutputs;
  const size_t length = (count + strips - 1) / strips;
  for (size_t begin = 0; begin < count; begin += length) visit(begin, HWY_MIN(length, count - begin));
}

// Output x of a 5x5 reduction row as the portable code computes it.
uint8_t Gaussian5DownPixel(const uint8_t* const* rows, uint32_t rowWeight, uint32_t x, uint32_t srcWidth) {
  const ovkGaussTaps columns = ovkGaussian5Taps(2 * x, srcWidth);
  uint16_t sums[5];
  for (int32_t i = columns.first; i <= columns.last; ++i) sums[i + 2] = ovkGaussianDown5Vertical(rows, 2 * x + i);
  return ovkGaussianDown5Finish(sums + 2, columns, rowWeight);
}

#if HWY_TARGET != HWY_SCALAR

// 1 4 6 4 1 as a + e + 4 (b + c + d) + 2 c: at most 16 x 255 on bytes and
// 16 x 4080 + 128 on column sums, so 16 bits hold both passes.
HWY_INLINE V16 Binomial5(V16 a, V16 b, V16 c, V16 d, V16 e) {
  const V16 inner = hn::Add(hn::Add(b, d), c);
  return hn::Add(hn::Add(hn::Add(a, e), hn::ShiftLeft<2>(inner)), hn::ShiftLeft<1>(c));
}

// Outputs [first, first + count) of an inner row (all five rows and all five
// columns in the image).  The vertical pass splits each column pair into an
// even and an odd sum: even[k] and odd[k] are columns 2 (first + k) - 2 and
// - 1, so output first + i reads even[i .. i + 2] and odd[i .. i + 1].  The
// last even sum, whose odd partner may lie past the row, is the scalar one.
void Gaussian5DownInner(const uint8_t* const* rows, uint8_t* out, size_t first, size_t count) {
  const D8 d8;
  const D16 d16;
  const size_t lanes = hn::Lanes(d16);
  HWY_ALIGN uint16_t even[kStripOutputs + 2], odd[kStripOutputs + 2];
  ForEachStrip(count, [&](size_t begin, size_t length) {
    const size_t x0 = first + begin;
    ForEachVector(length + 1, lanes, [&](size_t k) {
      const size_t byte = 2 * (x0 + k) - 2;
      V16 evens[5], odds[5];
      for (int j = 0; j < 5; ++j) {
        const V16 pairs = hn::BitCast(d16, hn::LoadU(d8, rows[j] + byte));
        evens[j] = hn::And(pairs, hn::Set(d16, 0xFF));
        odds[j] = hn::ShiftRight<8>(pairs);
      }
      hn::StoreU(Binomial5(evens[0], evens[1], evens[2], evens[3], evens[4]), d16, even + k);
      hn::StoreU(Binomial5(odds[0], odds[1], odds[2], odds[3], odds[4]), d16, odd + k);
    });
    even[length + 1] = ovkGaussianDown5Vertical(rows, 2 * (x0 + length));
    ForEachVector(length, lanes, [&](size_t i) {
      const V16 sum = Binomial5(hn::LoadU(d16, even + i), hn::LoadU(d16, odd + i), hn::LoadU(d16, even + i + 1),
                                hn::LoadU(d16, odd + i + 1), hn::LoadU(d16, even + i + 2));
      StoreNarrow(hn::ShiftRight<8>(hn::Add(sum, hn::Set(d16, 128))), out + x0 + i);
    });
  });
}

#endif  // HWY_TARGET != HWY_SCALAR

// Rows missing a tap, the border columns and rows with too few inner outputs
// for a vector take the shared per-pixel path.
void ScaleDownBy2Gaussian5x5u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                               uint8_t* dst, uint32_t dstStride) {
  const uint32_t count = srcWidth / 2;
#if HWY_TARGET != HWY_SCALAR
  // Outputs 1 .. innerEnd - 1 have all five columns: 2x + 2 <= srcWidth - 1.
  const uint32_t innerEnd = srcWidth > 2 ? (srcWidth - 1) / 2 : 1;
#endif
  for (uint32_t y = 0; y < srcHeight / 2; ++y) {
    const uint8_t* rows[5];
    const uint32_t rowWeight = ovkGaussianDown5Rows(src, srcHeight, srcStride, y, rows);
    uint8_t* out = dst + size_t(y) * dstStride;
    uint32_t x = 0;
#if HWY_TARGET != HWY_SCALAR
    if (rowWeight == 16 && innerEnd - 1 >= hn::Lanes(D16())) {
      out[0] = Gaussian5DownPixel(rows, rowWeight, 0, srcWidth);
      Gaussian5DownInner(rows, out, 1, innerEnd - 1);
      x = innerEnd;
    }
#endif
    for (; x < count; ++x) out[x] = Gaussian5DownPixel(rows, rowWeight, x, srcWidth);
  }
}

void Gaussian3DownRowScalar(const uint8_t* above, const uint8_t* centre, const uint8_t* below, uint8_t* out,
                            uint32_t begin, uint32_t end) {
  for (uint32_t x = begin; x < end; ++x) {
    const uint32_t c = 2 * x, l = x ? c - 1 : 0, r = c + 1;
    const uint32_t left = above[l] + 2 * centre[l] + below[l];
    const uint32_t middle = above[c] + 2 * centre[c] + below[c];
    const uint32_t right = above[r] + 2 * centre[r] + below[r];
    out[x] = uint8_t((left + 2 * middle + right + 8) >> 4);
  }
}

// Outputs from 1 on read columns 2x - 1 (the high bytes of the pairs from
// 2x - 2) and 2x, 2x + 1 (both bytes of the pairs from 2x); the last pair
// ends at column srcWidth - 1 at most.  Sums reach 16 x 255 + 8.
void ScaleDownBy2Gaussian3x3u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                               uint8_t* dst, uint32_t dstStride) {
  const uint32_t count = srcWidth / 2;
  for (uint32_t y = 0; y < srcHeight / 2; ++y) {
    const uint8_t* centre = src + size_t(2 * y) * srcStride;
    const uint8_t* above = y ? centre - srcStride : centre;
    const uint8_t* below = centre + srcStride;
    uint8_t* out = dst + size_t(y) * dstStride;
#if HWY_TARGET != HWY_SCALAR
    const D8 d8;
    const D16 d16;
    const size_t lanes = hn::Lanes(d16);
    if (count > lanes) {
      Gaussian3DownRowScalar(above, centre, below, out, 0, 1);
      const auto vertical = [](V16 a, V16 c, V16 b) { return hn::Add(hn::Add(a, b), hn::ShiftLeft<1>(c)); };
      const V16 lowByte = hn::Set(d16, 0xFF);
      ForEachVector(count - 1, lanes, [&](size_t i) {
        const size_t x = 1 + i;
        const auto before = [&](const uint8_t* row) { return hn::BitCast(d16, hn::LoadU(d8, row + 2 * x - 2)); };
        const auto at = [&](const uint8_t* row) { return hn::BitCast(d16, hn::LoadU(d8, row + 2 * x)); };
        const V16 a = at(above), c = at(centre), b = at(below);
        const V16 left = vertical(hn::ShiftRight<8>(before(above)), hn::ShiftRight<8>(before(centre)),
                                  hn::ShiftRight<8>(before(below)));
        const V16 middle = vertical(hn::And(a, lowByte), hn::And(c, lowByte), hn::And(b, lowByte));
        const V16 right = vertical(hn::ShiftRight<8>(a), hn::ShiftRight<8>(c), hn::ShiftRight<8>(b));
        const V16 sum = hn::Add(hn::Add(left, right), hn::Add(hn::ShiftLeft<1>(middle), hn::Set(d16, 8)));
        StoreNarrow(hn::ShiftRight<4>(sum), out + x);
      });
      continue;
    }
#endif
    Gaussian3DownRowScalar(above, centre, below, out, 0, count);
  }
}

#if HWY_TARGET != HWY_SCALAR

// Both output rows of one pass over a strip: v[k] is the vertical sum of
// column begin - 1 + k, the border columns copied from the sums that stand
// in for them.  Even outputs l + 6 m + r, odd ones 4 (m + r), at most
// 8 x 2040 + 32; each pair leaves as one 16-bit lane, even byte first.
void GaussianUpRows(const uint8_t* above, const uint8_t* centre, const uint8_t* below, uint32_t width,
                    uint8_t* evenOut, uint8_t* oddOut) {
  const D16 d16;
  const hn::Rebind<uint8_t, D16> d8h;
  const size_t lanes = hn::Lanes(d16);
  HWY_ALIGN uint16_t evenSums[kStripOutputs + 2], oddSums[kStripOutputs + 2];
  const auto storePairs = [&](const uint16_t* v, size_t i, uint8_t* out) {
    const V16 l = hn::LoadU(d16, v + i), m = hn::LoadU(d16, v + i + 1), r = hn::LoadU(d16, v + i + 2);
    const V16 half = hn::Set(d16, 32);
    const V16 sixM = hn::Add(hn::ShiftLeft<2>(m), hn::ShiftLeft<1>(m));
    const V16 even = hn::ShiftRight<6>(hn::Add(hn::Add(hn::Add(l, r), sixM), half));
    const V16 odd = hn::ShiftRight<6>(hn::Add(hn::ShiftLeft<2>(hn::Add(m, r)), half));
    StorePairs(even, odd, out + 2 * i);
  };
  ForEachStrip(width, [&](size_t begin, size_t length) {
    const size_t kFirst = begin == 0 ? 1 : 0, kEnd = begin + length == width ? length + 1 : length + 2;
    ForEachVector(kEnd - kFirst, lanes, [&](size_t i) {
      const size_t k = kFirst + i, x = begin + k - 1;
      const V16 a = hn::PromoteTo(d16, hn::LoadU(d8h, above + x));
      const V16 c = hn::PromoteTo(d16, hn::LoadU(d8h, centre + x));
      const V16 b = hn::PromoteTo(d16, hn::LoadU(d8h, below + x));
      const V16 sixC = hn::Add(hn::ShiftLeft<2>(c), hn::ShiftLeft<1>(c));
      hn::StoreU(hn::Add(hn::Add(a, b), sixC), d16, evenSums + k);
      hn::StoreU(hn::ShiftLeft<2>(hn::Add(c, b)), d16, oddSums + k);
    });
    if (begin == 0) {
      const size_t reflected = 1 + ovkUpSourceLine(-1, width);
      evenSums[0] = evenSums[reflected];
      oddSums[0] = oddSums[reflected];
    }
    if (begin + length == width) {
      evenSums[length + 1] = evenSums[length];
      oddSums[length + 1] = oddSums[length];
    }
    ForEachVector(length, lanes, [&](size_t i) {
      storePairs(evenSums, i, evenOut + 2 * begin);
      storePairs(oddSums, i, oddOut + 2 * begin);
    });
  });
}

#endif  // HWY_TARGET != HWY_SCALAR

// Narrower than a vector, the portable kernel.
int32_t ScaleUpBy2Gaussian5x5u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                uint8_t* dst, uint32_t dstStride) {
#if HWY_TARGET == HWY_SCALAR
  return ovkScaleUpBy2Gaussian5x5u8C(src, srcWidth, srcHeight, srcStride, dst, dstStride);
#else
  if (srcWidth < hn::Lanes(D16())) return ovkScaleUpBy2Gaussian5x5u8C(src, srcWidth, srcHeight, srcStride, dst, dstStride);
  for (uint32_t y = 0; y < srcHeight; ++y) {
    const uint8_t* above = src + size_t(ovkUpSourceLine(int64_t(y) - 1, srcHeight)) * srcStride;
    const uint8_t* centre = src + size_t(y) * srcStride;
    const uint8_t* below = src + size_t(ovkUpSourceLine(int64_t(y) + 1, srcHeight)) * srcStride;
    uint8_t* even = dst + size_t(2 * y) * dstStride;
    GaussianUpRows(above, centre, below, srcWidth, even, even + dstStride);
  }
  return int32_t(srcHeight);
#endif
}

// ---- Gaussian 5x5 reduction on floats ----------------------------------------------------

// Output x of a float row as the portable code computes it.
void Gaussian5DownPixelF(const uint8_t* const* rows, uint32_t rowWeight, uint32_t x, uint32_t srcWidth, uint8_t* out) {
  const ovkGaussTaps columns = ovkGaussian5Taps(2 * x, srcWidth);
  float sums[5];
  for (int32_t i = columns.first; i <= columns.last; ++i) sums[i + 2] = ovkGaussianDown5VerticalF(rows, 2 * x + i);
  ovkStoreElement(out, x, ovkGaussianDown5FinishF(sums + 2, columns, rowWeight));
}

#if HWY_TARGET != HWY_SCALAR

using DF = hn::ScalableTag<float>;
using VF = hn::Vec<DF>;

// The inner outputs [first, first + count) of a row, in the portable order of
// operations: the kept rows' products added top to bottom, then
// e(-2) + 4 o(-1) + 6 e(0) + 4 o(1) + e(2) left to right, times the factor.
// The vertical pass runs on whole columns and splits the sums into even and
// odd columns afterwards, laid out as in the 8-bit reduction.
void Gaussian5DownInnerF(const uint8_t* const* rows, uint32_t rowWeight, uint8_t* out, size_t first, size_t count) {
  const DF df;
  const size_t lanes = hn::Lanes(df);
  static const float kWeights[5] = {1.0f, 4.0f, 6.0f, 4.0f, 1.0f};
  int top = 0, bottom = 4;
  while (!rows[top]) ++top;
  while (!rows[bottom]) --bottom;
  const VF four = hn::Set(df, 4.0f), six = hn::Set(df, 6.0f);
  const VF factor = hn::Set(df, ovkGaussianFloatFactor(rowWeight * 16));
  const VF nan = hn::Set(df, ovkCanonicalNaN());  // every NaN leaves as the one quiet NaN
  HWY_ALIGN float even[kStripOutputs + 2], odd[kStripOutputs + 2];
  ForEachStrip(count, [&](size_t begin, size_t length) {
    const size_t x0 = first + begin;
    ForEachVector(length + 1, lanes, [&](size_t k) {
      const size_t column = 2 * (x0 + k) - 2;
      const auto vertical = [&](size_t at) {
        const auto load = [&](int j) { return hn::LoadU(df, reinterpret_cast<const float*>(rows[j]) + at); };
        VF sum = hn::Mul(hn::Set(df, kWeights[top]), load(top));
        for (int j = top + 1; j <= bottom; ++j) sum = hn::Add(sum, hn::Mul(hn::Set(df, kWeights[j]), load(j)));
        return sum;
      };
      const VF lo = vertical(column), hi = vertical(column + lanes);
      hn::StoreU(hn::ConcatEven(df, hi, lo), df, even + k);
      hn::StoreU(hn::ConcatOdd(df, hi, lo), df, odd + k);
    });
    even[length + 1] = ovkGaussianDown5VerticalF(rows, 2 * (x0 + length));
    ForEachVector(length, lanes, [&](size_t i) {
      VF sum = hn::Add(hn::LoadU(df, even + i), hn::Mul(four, hn::LoadU(df, odd + i)));
      sum = hn::Add(sum, hn::Mul(six, hn::LoadU(df, even + i + 1)));
      sum = hn::Add(sum, hn::Mul(four, hn::LoadU(df, odd + i + 1)));
      sum = hn::Add(sum, hn::LoadU(df, even + i + 2));
      const VF scaled = hn::Mul(sum, factor);
      hn::StoreU(hn::IfThenElse(hn::IsNaN(scaled), nan, scaled), df, reinterpret_cast<float*>(out) + x0 + i);
    });
  });
}

#endif  // HWY_TARGET != HWY_SCALAR

// ARMv7's vector unit flushes subnormal floats to zero, unlike its scalar
// unit, so there the portable code runs.
void ScaleDownBy2Gaussian5x5f32(const float* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                float* dst, uint32_t dstStride) {
#if HWY_TARGET == HWY_SCALAR
  return ovkScaleDownBy2Gaussian5x5f32C(src, srcWidth, srcHeight, srcStride, dst, dstStride);
#else
  if (HWY_ARCH_ARM_V7) return ovkScaleDownBy2Gaussian5x5f32C(src, srcWidth, srcHeight, srcStride, dst, dstStride);
  const uint8_t* base = reinterpret_cast<const uint8_t*>(src);
  const uint32_t count = srcWidth / 2;
  const uint32_t innerEnd = srcWidth > 2 ? (srcWidth - 1) / 2 : 1;  // as in the 8-bit reduction
  const bool vector = innerEnd - 1 >= hn::Lanes(DF());
  for (uint32_t y = 0; y < srcHeight / 2; ++y) {
    const uint8_t* rows[5];
    const uint32_t rowWeight = ovkGaussianDown5Rows(base, srcHeight, srcStride, y, rows);
    uint8_t* out = reinterpret_cast<uint8_t*>(dst) + size_t(y) * dstStride;
    uint32_t x = 0;
    if (vector) {
      Gaussian5DownPixelF(rows, rowWeight, 0, srcWidth, out);
      Gaussian5DownInnerF(rows, rowWeight, out, 1, innerEnd - 1);
      x = innerEnd;
    }
    for (; x < count; ++x) Gaussian5DownPixelF(rows, rowWeight, x, srcWidth, out);
  }
#endif
}

void ScaleDownBy2Gaussian5x5f32_v2(const float* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                   float* dst, uint32_t dstStride) {
  ScaleDownBy2Gaussian5x5f32(src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

// ---- 3 to 2 ---------------------------------------------------------------------------------

// Each lane is one 3x3 block, its columns split by a three-way deinterleave;
// corner weights 9 3 3 1 reach 16 x 255.  Fewer blocks than a vector holds,
// the portable kernel.
int32_t ScaleDown3To2u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                        uint8_t* dst, uint32_t dstStride) {
#if HWY_TARGET == HWY_SCALAR
  return ovkScaleDown3To2u8C(src, srcWidth, srcHeight, srcStride, dst, dstStride);
#else
  const D16 d16;
  const hn::Rebind<uint8_t, D16> d8h;
  const size_t lanes = hn::Lanes(d16), blocks = srcWidth / 3;
  if (srcWidth < 3 || srcHeight < 3 || blocks < lanes)
    return ovkScaleDown3To2u8C(src, srcWidth, srcHeight, srcStride, dst, dstStride);
  for (uint32_t by = 0; by + 2 < srcHeight; by += 3) {
    const uint8_t* r0 = src + size_t(by) * srcStride;
    const uint8_t* r1 = r0 + srcStride;
    const uint8_t* r2 = r1 + srcStride;
    uint8_t* top = dst + size_t(by / 3 * 2) * dstStride;
    uint8_t* bottom = top + dstStride;
    ForEachVector(blocks, lanes, [&](size_t i) {
      hn::Vec<decltype(d8h)> bytes[3][3];
      hn::LoadInterleaved3(d8h, r0 + 3 * i, bytes[0][0], bytes[0][1], bytes[0][2]);
      hn::LoadInterleaved3(d8h, r1 + 3 * i, bytes[1][0], bytes[1][1], bytes[1][2]);
      hn::LoadInterleaved3(d8h, r2 + 3 * i, bytes[2][0], bytes[2][1], bytes[2][2]);
      V16 p[3][3];
      for (int j = 0; j < 3; ++j)
        for (int k = 0; k < 3; ++k) p[j][k] = hn::PromoteTo(d16, bytes[j][k]);
      const V16 centre = p[1][1];
      // 9 corner + 3 (edge beside it + edge above or below it) + centre.
      const auto corner = [&](V16 c, V16 e1, V16 e2) {
        const V16 edges = hn::Add(e1, e2);
        const V16 sum = hn::Add(hn::Add(hn::ShiftLeft<3>(c), c), hn::Add(hn::ShiftLeft<1>(edges), edges));
        return hn::ShiftRight<4>(hn::Add(sum, centre));
      };
      StorePairs(corner(p[0][0], p[0][1], p[1][0]), corner(p[0][2], p[0][1], p[1][2]), top + 2 * i);
      StorePairs(corner(p[2][0], p[2][1], p[1][0]), corner(p[2][2], p[2][1], p[1][2]), bottom + 2 * i);
    });
  }
  return 0;
#endif
}

// ---- M-by-N row core -------------------------------------------------------------------------

#if HWY_TARGET != HWY_SCALAR

// The high halves of the 64-bit products of 32-bit lanes with `factor`.
HWY_INLINE V32 MulHigh32(V32 v, V32 factor) {
  const D32 d32;
  const hn::Repartition<uint64_t, D32> d64;
  const V32 evens = hn::BitCast(d32, hn::MulEven(v, factor));
  const V32 odds = hn::BitCast(d32, hn::MulEven(hn::BitCast(d32, hn::ShiftRight<32>(hn::BitCast(d64, v))), factor));
  return hn::OddEven(odds, hn::BitCast(d32, hn::ShiftRight<32>(hn::BitCast(d64, evens))));
}

// Block means of a row whose blocks all have `kCount` columns: lane x adds
// column sums [kCount x, kCount x + kCount) and multiplies the total by
// `reciprocal` (ceil(2^32 / block pixels)), keeping the high half.
template <int kCount>
void UniformBlockMeans(const uint16_t* columnSums, uint32_t reciprocal, uint8_t* dst, size_t dstWidth) {
  const D32 d32;
  const hn::Repartition<uint16_t, D32> d16;
  const hn::Rebind<uint16_t, D32> d16h;
  const hn::Rebind<uint8_t, D32> d8q;
  const size_t lanes = hn::Lanes(d32);
  const V32 divisor = hn::Set(d32, reciprocal);
  const auto pairSums = [&](const uint16_t* sums) {
    const V32 pairs = hn::BitCast(d32, hn::LoadU(d16, sums));
    return hn::Add(hn::And(pairs, hn::Set(d32, 0xFFFF)), hn::ShiftRight<16>(pairs));
  };
  ForEachVector(dstWidth, lanes, [&](size_t x) {
    const uint16_t* sums = columnSums + kCount * x;
    V32 sum;
    if constexpr (kCount == 1) {
      sum = hn::PromoteTo(d32, hn::LoadU(d16h, sums));
    } else if constexpr (kCount == 2) {
      sum = pairSums(sums);
    } else if constexpr (kCount == 3) {
      hn::Vec<decltype(d16h)> a, b, c;
      hn::LoadInterleaved3(d16h, sums, a, b, c);
      sum = hn::Add(hn::PromoteTo(d32, hn::Add(a, b)), hn::PromoteTo(d32, c));
    } else {
      const V32 lo = pairSums(sums), hi = pairSums(sums + 2 * lanes);
      sum = hn::Add(hn::ConcatEven(d32, hi, lo), hn::ConcatOdd(d32, hi, lo));
    }
    const V32 mean = MulHigh32(sum, divisor);
    hn::StoreU(hn::DemoteTo(d8q, hn::BitCast(hn::RebindToSigned<D32>(), mean)), d8q, dst + x);
  });
}

#endif  // HWY_TARGET != HWY_SCALAR

// Rows whose blocks are all 1 to 4 columns wide run in vectors; any other
// mix of counts, per column as the portable core.
void ScaleDownMNu8Core(const uint16_t* columnSums, const uint8_t* columnCounts, uint32_t rowCount, uint8_t* dst,
                       uint32_t dstWidth) {
#if HWY_TARGET != HWY_SCALAR
  if (dstWidth >= hn::Lanes(D32())) {
    const uint8_t count = columnCounts[0];
    uint32_t x = 1;
    while (x < dstWidth && columnCounts[x] == count) ++x;
    if (x == dstWidth) {
      switch (count) {
        case 1: return UniformBlockMeans<1>(columnSums, mn_div_table[rowCount], dst, dstWidth);
        case 2: return UniformBlockMeans<2>(columnSums, mn_div_table[rowCount * 2], dst, dstWidth);
        case 3: return UniformBlockMeans<3>(columnSums, mn_div_table[rowCount * 3], dst, dstWidth);
        case 4: return UniformBlockMeans<4>(columnSums, mn_div_table[rowCount * 4], dst, dstWidth);
        default: break;
      }
    }
  }
#endif
  ScaleDownMNu8CoreC(columnSums, columnCounts, rowCount, dst, dstWidth);
}

// ---- M-by-N outer loops --------------------------------------------------------------------

// Whole vectors of column sums; the last few columns as the portable row.
void MNSumRows(const uint8_t* first, uint32_t stride, uint32_t rows, uint32_t values, uint16_t* sums) {
  const D16 d16;
  const hn::Rebind<uint8_t, D16> d8h;
  const size_t lanes = hn::Lanes(d16);
  size_t i = 0;
  for (; i + lanes <= values; i += lanes) {
    V16 sum = hn::PromoteTo(d16, hn::LoadU(d8h, first + i));
    for (uint32_t j = 1; j < rows; ++j) sum = hn::Add(sum, hn::PromoteTo(d16, hn::LoadU(d8h, first + size_t(j) * stride + i)));
    hn::StoreU(sum, d16, sums + i);
  }
  if (i < values) ovkMNRowOpsC.sumRows(first + i, stride, rows, uint32_t(values - i), sums + i);
}

void MNDeinterleave(const uint16_t* pairs, uint16_t* first, uint16_t* second, uint32_t count) {
  const D16 d16;
  const size_t lanes = hn::Lanes(d16);
  size_t i = 0;
  for (; i + lanes <= count; i += lanes) {
    V16 even, odd;
    hn::LoadInterleaved2(d16, pairs + 2 * i, even, odd);
    hn::StoreU(even, d16, first + i);
    hn::StoreU(odd, d16, second + i);
  }
  if (i < count) ovkMNRowOpsC.deinterleave(pairs + 2 * i, first + i, second + i, uint32_t(count - i));
}

void MNInterleave(const uint8_t* first, const uint8_t* second, uint8_t* pairs, uint32_t count) {
  const D8 d8;
  const size_t lanes = hn::Lanes(d8);
  size_t i = 0;
  for (; i + lanes <= count; i += lanes)
    hn::StoreInterleaved2(hn::LoadU(d8, first + i), hn::LoadU(d8, second + i), d8, pairs + 2 * i);
  if (i < count) ovkMNRowOpsC.interleave(first + i, second + i, pairs + 2 * i, uint32_t(count - i));
}

const ovkMNRowOps kMNRowOps = {MNSumRows, MNDeinterleave, MNInterleave, ScaleDownMNu8Core};

void ScaleDownMNu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                   uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride) {
  ovkScaleDownMN(kMNRowOps, src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride, 1);
}

void ScaleDownMNInterleaveu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                             uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride) {
  ovkScaleDownMN(kMNRowOps, src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride, 2);
}

// ---- Bilinear reduction ------------------------------------------------------------------

#if HWY_TARGET != HWY_SCALAR

// Sixteen source bytes per 128-bit block, from the first index of the
// block's group of four taps.
template <class D8>
hn::Vec<D8> LoadGroupWindows(D8 d8, const uint8_t* in, const uint32_t* index) {
  constexpr size_t kBlocks = hn::MaxLanes(D8()) / 16;
  if constexpr (kBlocks == 1) {
    return hn::LoadU(d8, in + index[0]);
  } else {
    const hn::Half<D8> half;
    return hn::Combine(d8, LoadGroupWindows(half, in, index + 2 * kBlocks), LoadGroupWindows(half, in, index));
  }
}

// Whether the groups of taps x .. x + count - 1 fit their windows: indexes
// spread over at most 15 bytes, and the last window inside the row.
bool GroupsFit(const uint32_t* index, size_t x, size_t count, uint32_t srcWidth) {
  for (size_t g = x; g < x + count; g += 4)
    if (index[g + 3] - index[g] > 14) return false;
  return size_t(index[x + count - 4]) + 16 <= srcWidth;
}

// Four taps per 128-bit block: the block's window, the group's shuffle words
// put in[index] and in[index + 1] into the 16-bit halves of each lane, and
// one multiply-add of 16-bit pairs with the packed weights gives
// w0 a + w1 b.  Groups spread over more than 15 bytes (reductions beyond
// about 4.5), and those whose window would pass the end of the row, take the
// portable row.
template <class D32>
size_t InterpolateGroups(D32 d32, const uint8_t* in, const ovkBilinearTable& columns, uint32_t srcWidth,
                         uint32_t* out, size_t x, size_t count) {
  const hn::Repartition<uint8_t, D32> d8;
  const hn::Repartition<int16_t, D32> d16;
  const hn::RebindToUnsigned<D32> du32;
  const size_t lanes = hn::Lanes(d32);
  for (; x + lanes <= count && GroupsFit(columns.index, x, lanes, srcWidth); x += lanes) {
    const auto shuffle = hn::BitCast(d8, hn::LoadU(du32, columns.shuffle + x));
    const auto window = LoadGroupWindows(d8, in, columns.index + x);
    const auto pairs = hn::BitCast(d16, hn::TableLookupBytesOr0(window, shuffle));
    const auto weights = hn::BitCast(d16, hn::LoadU(du32, columns.weights + x));
    auto odd = hn::Zero(d32);
    const auto even = hn::ReorderWidenMulAccumulate(d32, pairs, weights, hn::Zero(d32), odd);
    hn::StoreU(hn::BitCast(du32, hn::RearrangeToOddPlusEven(even, odd)), du32, out + x);
  }
  return x;
}

void BilinearInterpolateRow(const uint8_t* in, const ovkBilinearTable& columns, uint32_t srcWidth, uint32_t* out,
                            uint32_t count) {
  size_t x = InterpolateGroups(hn::ScalableTag<int32_t>(), in, columns, srcWidth, out, 0, count);
  x = InterpolateGroups(hn::Full128<int32_t>(), in, columns, srcWidth, out, x, count);
  const ovkBilinearTable rest = {columns.index + x, columns.weights + x, columns.shuffle + x};
  ovkBilinearRowOpsC.interpolateRow(in, rest, srcWidth, out + x, uint32_t(count - x));
}

// 32-bit products as in the portable code (at most 2049 x 2049 x 255 + 2^21),
// the byte below bit 22 kept as its cast keeps it.
void BilinearCombineRows(const uint32_t* upper, const uint32_t* lower, uint32_t w0, uint32_t w1, uint8_t* out,
                         uint32_t count) {
  const D32 d32;
  const hn::Rebind<uint8_t, D32> d8q;
  const size_t lanes = hn::Lanes(d32);
  if (count < lanes) return ovkBilinearRowOpsC.combineRows(upper, lower, w0, w1, out, count);
  const V32 top = hn::Set(d32, w0), bottom = hn::Set(d32, w1), half = hn::Set(d32, 0x200000u);
  const V32 lowByte = hn::Set(d32, 0xFF);
  ForEachVector(count, lanes, [&](size_t x) {
    const V32 sum = hn::Add(hn::Add(hn::Mul(top, hn::LoadU(d32, upper + x)), hn::Mul(bottom, hn::LoadU(d32, lower + x))),
                            half);
    const V32 value = hn::And(hn::ShiftRight<22>(sum), lowByte);
    hn::StoreU(hn::DemoteTo(d8q, hn::BitCast(hn::RebindToSigned<D32>(), value)), d8q, out + x);
  });
}

const ovkBilinearRowOps kBilinearRowOps = {BilinearInterpolateRow, BilinearCombineRows};

#endif  // HWY_TARGET != HWY_SCALAR

// Halving exactly: every coordinate is 2x + 0.5 in single precision (sizes
// below 2^23), so both weights are 1024 on each axis and the Q22 result is
// (a + b + c + d + 2) >> 2.  The scratch block is still taken, so that its
// failure ends the process as in every other case.
bool HalvesBilinear(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                    uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride) {
  if (srcWidth != 2 * uint64_t(dstWidth) || srcHeight != 2 * uint64_t(dstHeight) || dstWidth >= (1u << 23) ||
      dstHeight >= (1u << 23))
    return false;
  void* scratch = ovkBilinearScratch(dstWidth, dstHeight);
  for (uint32_t y = 0; y < dstHeight; ++y) {
    const uint8_t* top = src + size_t(2 * y) * srcStride;
    Down2Row<2>(top, top + srcStride, dst + size_t(y) * dstStride, dstWidth);
  }
  ovkReleaseScratchBuffer_(scratch);
  return true;
}

void ScaleDownBLu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                   uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride) {
  if (HalvesBilinear(src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride)) return;
#if HWY_TARGET == HWY_SCALAR
  ovkScaleDownBLu8C(src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride);
#else
  ovkScaleDownBilinear(kBilinearRowOps, src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride);
#endif
}

// ---- Integer-factor box ---------------------------------------------------------------------

// Blocks of 1 to 4 columns and up to 257 rows (16-bit column sums) of at
// least two and at most 4104 pixels: for those, the high half of
// sum x ceil(2^32 / area) is the truncated quotient, since
// sum x (ceil(2^32 / area) area - 2^32) < 255 area^2 <= 2^32.  Other
// factors, and rows narrower than a vector, the portable kernel.
void ScaleDownu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                 uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride) {
  const uint32_t fx = srcWidth / dstWidth, fy = srcHeight / dstHeight;
  const uint64_t area = uint64_t(fx) * fy;
#if HWY_TARGET != HWY_SCALAR
  const D16 d16;
  const hn::Rebind<uint8_t, D16> d8h;
  if (fx <= 4 && fy <= 257 && area >= 2 && area <= 4104 && dstWidth >= hn::Lanes(D32()) &&
      dstWidth >= hn::Lanes(d16)) {
    const uint32_t reciprocal = uint32_t(((uint64_t(1) << 32) + area - 1) / area);
    HWY_ALIGN uint16_t sums[4 * kStripOutputs];
    for (uint32_t y = 0; y < dstHeight; ++y) {
      const uint8_t* block = src + size_t(y) * fy * srcStride;
      uint8_t* out = dst + size_t(y) * dstStride;
      ForEachStrip(dstWidth, [&](size_t begin, size_t length) {
        const uint8_t* first = block + begin * fx;
        ForEachVector(length * fx, hn::Lanes(d16), [&](size_t i) {
          V16 sum = hn::PromoteTo(d16, hn::LoadU(d8h, first + i));
          for (uint32_t j = 1; j < fy; ++j)
            sum = hn::Add(sum, hn::PromoteTo(d16, hn::LoadU(d8h, first + size_t(j) * srcStride + i)));
          hn::StoreU(sum, d16, sums + i);
        });
        switch (fx) {
          case 1: return UniformBlockMeans<1>(sums, reciprocal, out + begin, length);
          case 2: return UniformBlockMeans<2>(sums, reciprocal, out + begin, length);
          case 3: return UniformBlockMeans<3>(sums, reciprocal, out + begin, length);
          default: return UniformBlockMeans<4>(sums, reciprocal, out + begin, length);
        }
      });
    }
    return;
  }
#endif
  (void)area;
  ovkScaleDownu8C(src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride);
}

// ---- Nearest neighbour -----------------------------------------------------------------------

// The source columns of a strip are found once; groups of eight outputs whose
// columns lie within sixteen bytes (reductions by up to about 2) are one byte
// shuffle of a window per row, the byte offsets prepared with the columns.
// A group that spreads wider, and a strip shorter than a group, copy byte by
// byte.  Equal sizes and rows narrower than a group, the portable kernel.
int32_t ScaleDownNNu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                      uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride) {
#if HWY_TARGET != HWY_SCALAR
  constexpr size_t kGroup = 8;
  ovkNearestAxis columns, rows;
  if ((srcWidth != dstWidth || srcHeight != dstHeight) && dstWidth >= kGroup && srcWidth >= 16) {
    if (!ovkNearestAxes(srcWidth, dstWidth, srcHeight, dstHeight, &columns, &rows)) return 1;
    const hn::Full128<uint8_t> d8;
    const hn::Full64<uint8_t> d8g;
    constexpr size_t kMaxGroups = kStripOutputs / kGroup + 1;
    uint32_t source[kStripOutputs];
    uint32_t windowStart[kMaxGroups];
    bool shuffled[kMaxGroups];
    HWY_ALIGN uint8_t offsets[kMaxGroups * kGroup];
    ForEachStrip(dstWidth, [&](size_t begin, size_t length) {
      for (size_t k = 0; k < length; ++k) source[k] = ovkNearestSource(columns, uint32_t(begin + k), srcWidth);
      // Groups at 0, 8, ... and one ending at the strip's end.
      const size_t groups = length >= kGroup ? (length + kGroup - 1) / kGroup : 0;
      const auto groupAt = [&](size_t g) { return HWY_MIN(g * kGroup, length - kGroup); };
      for (size_t g = 0; g < groups; ++g) {
        const uint32_t* group = source + groupAt(g);
        // Wider sizes than 16 bits sample out of order, so both ends are looked for.
        uint32_t lowest = group[0], highest = group[0];
        for (size_t i = 1; i < kGroup; ++i) {
          lowest = HWY_MIN(lowest, group[i]);
          highest = HWY_MAX(highest, group[i]);
        }
        windowStart[g] = HWY_MIN(lowest, srcWidth - 16);
        shuffled[g] = highest - windowStart[g] < 16;
        for (size_t i = 0; i < kGroup; ++i) offsets[g * kGroup + i] = uint8_t(group[i] - windowStart[g]);
      }
      for (uint32_t y = 0; y < dstHeight; ++y) {
        const uint8_t* in = src + size_t(ovkNearestSource(rows, y, srcHeight)) * srcStride;
        uint8_t* out = dst + size_t(y) * dstStride + begin;
        if (groups == 0)
          for (size_t k = 0; k < length; ++k) out[k] = in[source[k]];
        for (size_t g = 0; g < groups; ++g) {
          const size_t at = groupAt(g);
          if (shuffled[g]) {
            const auto window = hn::LoadU(d8, in + windowStart[g]);
            hn::StoreU(hn::TableLookupBytes(window, hn::Load(d8g, offsets + g * kGroup)), d8g, out + at);
          } else {
            for (size_t i = at; i < at + kGroup; ++i) out[i] = in[source[i]];
          }
        }
      }
    });
    return 0;
  }
#endif
  return ovkScaleDownNNu8C(src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride);
}

}  // namespace HWY_NAMESPACE
}  // namespace ovk
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
OVK_VECTOR_KERNEL(ScaleDownBy2u8)
OVK_VECTOR_KERNEL(ScaleDownBy4u8)
OVK_VECTOR_KERNEL(ScaleDownBy2Gaussian5x5u8)
OVK_VECTOR_KERNEL(ScaleDownBy2Gaussian3x3u8)
OVK_VECTOR_KERNEL(ScaleUpBy2Gaussian5x5u8)
OVK_VECTOR_KERNEL(ScaleDownBy2Gaussian5x5f32)
OVK_VECTOR_KERNEL(ScaleDownBy2Gaussian5x5f32_v2)
OVK_VECTOR_KERNEL(ScaleDown3To2u8)
OVK_VECTOR_KERNEL(ScaleDownBLu8)
OVK_VECTOR_KERNEL(ScaleDownu8)
OVK_VECTOR_KERNEL(ScaleDownNNu8)
OVK_VECTOR_KERNEL(ScaleDownMNu8)
OVK_VECTOR_KERNEL(ScaleDownMNInterleaveu8)
OVK_VECTOR_DISPATCH(ovkScaleDownMNRowFn, ovkVectorScaleDownMNu8Core_, ScaleDownMNu8Core)
#endif
