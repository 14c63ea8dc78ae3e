// Vector general resizers: the strip frames of orvikResizeC.cpp with vector
// row operations.
//
// Both separable filters first sum source rows per column into 16-bit lanes,
// then gather, for groups of four outputs, each output's pair of column sums
// from a window of eight sums with one byte shuffle and multiply-add the pairs
// into 32-bit lanes.  The column sums are stored biased so that they fit
// signed 16 bits; since the horizontal weights of an output sum to a known
// constant, the bias comes back as one constant added before the shift:
//   polyphase: a vertical sum of bytes with Q7 weights lies in
//     -16 x 255 .. 144 x 255 (-4080 .. 36720, the half-phase weights
//     -8 72 72 -8), so it is stored minus 16384 (-20464 .. 20336), and the
//     horizontal sum gets 128 x 16384 back;
//   bilinear: (256 - fy) top + fy bottom lies in 0 .. 65280, so it is stored
//     minus 32768, and the horizontal sum gets 256 x 32768 back.
// The 16-bit vertical arithmetic wraps, but the stored value is exact since
// the true one fits.  Groups whose taps spread wider than the window
// (reductions) take the same sums one output at a time.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pelar/orvikResizeV.cpp"
#include <hwy/foreach_target.h>  // IWYU pragma: keep
#include <hwy/highway.h>
#include <string.h>

#include "cpu/orvikResize.h"
#include "pelar/orvikPelar.h"

HWY_BEFORE_NAMESPACE();
namespace ovk {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET != HWY_SCALAR

using D8 = hn::ScalableTag<uint8_t>;
using D16 = hn::Repartition<uint16_t, D8>;
using D8h = hn::Rebind<uint8_t, D16>;
using V16 = hn::Vec<D16>;
using B8 = hn::Full128<uint8_t>;
using B16 = hn::Full128<int16_t>;
using B32 = hn::Full128<int32_t>;
using V32Block = hn::Vec<B32>;

// Groups of kGroup outputs at 0, kGroup, ... and the last one ending at the
// strip's end (overlapping its neighbour: each output depends on its inputs
// alone, so rewriting it gives the same byte).
template <size_t kGroup>
HWY_INLINE size_t GroupCount(size_t count) {
  return count >= kGroup ? (count + kGroup - 1) / kGroup : 0;
}
template <size_t kGroup>
HWY_INLINE size_t GroupAt(size_t g, size_t count) {
  return HWY_MIN(g * kGroup, count - kGroup);
}

// Shuffle bytes that put the 16-bit values at `first` and `second` (indices
// from the window's start) into the 32-bit lane `lane`.
HWY_INLINE void SetPairPick(uint8_t* pick, size_t lane, uint32_t first, uint32_t second) {
  pick[4 * lane + 0] = uint8_t(2 * first);
  pick[4 * lane + 1] = uint8_t(2 * first + 1);
  pick[4 * lane + 2] = uint8_t(2 * second);
  pick[4 * lane + 3] = uint8_t(2 * second + 1);
}

// 32-bit lane i: the sum of the products of 16-bit lanes 2i and 2i + 1.
HWY_INLINE V32Block PairProducts(hn::Vec<B16> values, hn::Vec<B16> weights, V32Block& odd) {
  return hn::ReorderWidenMulAccumulate(B32(), values, weights, hn::Zero(B32()), odd);
}

// Four outputs of one plane: the sums at the picked pairs times their weights.
HWY_INLINE hn::Vec<B16> Gather(const int16_t* plane, uint32_t start, const uint8_t* pick) {
  const auto window = hn::LoadU(B8(), reinterpret_cast<const uint8_t*>(plane + start));
  return hn::BitCast(B16(), hn::TableLookupBytes(window, hn::Load(B8(), pick)));
}

// ---- Polyphase ----------------------------------------------------------------------------

constexpr size_t kPolyGroups = OVK_POLY_OUTPUTS / 4 + 1;
constexpr int32_t kPolyBias = 16384;
// 128 x the bias, plus the rounding half of (sum + 8192) >> 14.
constexpr int32_t kPolyRestore = 128 * kPolyBias + 8192;

// Per group of four outputs: the window's first column, whether all taps
// lie in its eight columns, and for taps 0, 1 and taps 2, 3 the pair picks
// and weights.
struct PolyTables {
  uint32_t start[kPolyGroups];
  uint8_t fits[kPolyGroups];
  alignas(16) uint8_t pick01[kPolyGroups][16];
  alignas(16) uint8_t pick23[kPolyGroups][16];
  alignas(16) int16_t weight01[kPolyGroups][8];
  alignas(16) int16_t weight23[kPolyGroups][8];
};
static_assert(sizeof(PolyTables) <= OVK_POLY_TABLE_BYTES, "polyphase tables fit the strip");

PolyTables& PolyTablesOf(ovkPolyStrip& strip) { return *reinterpret_cast<PolyTables*>(strip.tables); }
const PolyTables& PolyTablesOf(const ovkPolyStrip& strip) {
  return *reinterpret_cast<const PolyTables*>(strip.tables);
}

// Offsets grow along the strip, so a group's lowest tap is its first
// output's first and its highest its last output's last.
void PolyPrepareStrip(ovkPolyStrip& strip) {
  PolyTables& t = PolyTablesOf(strip);
  const size_t groups = GroupCount<4>(strip.count);
  for (size_t g = 0; g < groups; ++g) {
    const ovkPolyTap* taps = strip.taps + GroupAt<4>(g, strip.count);
    const uint32_t start = taps[0].offset[0];
    t.start[g] = start;
    t.fits[g] = taps[3].offset[3] - start < 8;
    if (!t.fits[g]) continue;
    for (size_t j = 0; j < 4; ++j) {
      const ovkPolyTap& tap = taps[j];
      SetPairPick(t.pick01[g], j, tap.offset[0] - start, tap.offset[1] - start);
      SetPairPick(t.pick23[g], j, tap.offset[2] - start, tap.offset[3] - start);
      for (size_t k = 0; k < 2; ++k) {
        t.weight01[g][2 * j + k] = int16_t(tap.weights[k]);
        t.weight23[g][2 * j + k] = int16_t(tap.weights[2 + k]);
      }
    }
  }
  // Windows may reach past the last column into the slack; keep it defined.
  for (uint32_t c = 0; c < strip.channels; ++c) memset(strip.sums.narrow[c] + strip.columns, 0, 16 * sizeof(int16_t));
}

void PolyVerticalRow(const uint8_t* const* lines, const int32_t* weights, ovkPolyStrip& strip) {
  const D16 d16;
  const D8h d8h;
  const D8 d8;
  const hn::RebindToSigned<D16> di16;
  const size_t lanes = hn::Lanes(d16), columns = strip.columns;
  const uint32_t channels = strip.channels;
  V16 w[4];
  for (int j = 0; j < 4; ++j) w[j] = hn::Set(d16, uint16_t(weights[j]));
  const V16 bias = hn::Set(d16, uint16_t(kPolyBias));
  const auto combine = [&](const V16* p) {
    const V16 sum = hn::Add(hn::Add(hn::Mul(p[0], w[0]), hn::Mul(p[1], w[1])),
                            hn::Add(hn::Mul(p[2], w[2]), hn::Mul(p[3], w[3])));
    return hn::BitCast(di16, hn::Sub(sum, bias));
  };
  if (columns < lanes) {
    for (size_t i = 0; i < columns; ++i)
      for (uint32_t c = 0; c < channels; ++c) {
        int32_t sum = 0;
        for (int j = 0; j < 4; ++j) sum += weights[j] * lines[j][i * channels + c];
        strip.sums.narrow[c][i] = int16_t(sum - kPolyBias);
      }
    return;
  }
  if (channels == 1) {
    ForEachVector(columns, lanes, [&](size_t i) {
      V16 p[4];
      for (int j = 0; j < 4; ++j) p[j] = hn::PromoteTo(d16, hn::LoadU(d8h, lines[j] + i));
      hn::StoreU(combine(p), di16, strip.sums.narrow[0] + i);
    });
  } else {
    // A pair of channels is one 16-bit lane, the first in the low byte.
    static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "pairs of bytes read as little-endian lanes");
    const V16 lowByte = hn::Set(d16, 0xFF);
    ForEachVector(columns, lanes, [&](size_t i) {
      V16 first[4], second[4];
      for (int j = 0; j < 4; ++j) {
        const V16 pairs = hn::BitCast(d16, hn::LoadU(d8, lines[j] + 2 * i));
        first[j] = hn::And(pairs, lowByte);
        second[j] = hn::ShiftRight<8>(pairs);
      }
      hn::StoreU(combine(first), di16, strip.sums.narrow[0] + i);
      hn::StoreU(combine(second), di16, strip.sums.narrow[1] + i);
    });
  }
}

HWY_INLINE uint8_t PolyPixel(const int16_t* plane, const ovkPolyTap& tap) {
  int32_t sum = kPolyRestore;
  for (int k = 0; k < 4; ++k) sum += tap.weights[k] * plane[tap.offset[k]];
  return uint8_t(HWY_MIN(HWY_MAX(sum >> 14, 0), 255));
}

// Four outputs of one channel as 32-bit lanes, already shifted.
HWY_INLINE V32Block PolyGroup(const int16_t* plane, const PolyTables& t, size_t g) {
  const B16 d16;
  V32Block odd = hn::Zero(B32());
  V32Block even = PairProducts(Gather(plane, t.start[g], t.pick01[g]), hn::Load(d16, t.weight01[g]), odd);
  even = hn::ReorderWidenMulAccumulate(B32(), Gather(plane, t.start[g], t.pick23[g]), hn::Load(d16, t.weight23[g]),
                                       even, odd);
  const V32Block sum = hn::Add(hn::RearrangeToOddPlusEven(even, odd), hn::Set(B32(), kPolyRestore));
  return hn::ShiftRight<14>(sum);
}

void PolyHorizontalRow(const ovkPolyStrip& strip, uint8_t* out) {
  const PolyTables& t = PolyTablesOf(strip);
  const uint32_t count = strip.count, channels = strip.channels;
  const size_t groups = GroupCount<4>(count);
  const hn::Rebind<uint8_t, B32> d8q;
  const hn::Rebind<int16_t, B32> d16h;
  const hn::Full64<uint8_t> d8p;
  const auto scalar = [&](size_t begin, size_t end) {
    for (size_t i = begin; i < end; ++i)
      for (uint32_t c = 0; c < channels; ++c) out[i * channels + c] = PolyPixel(strip.sums.narrow[c], strip.taps[i]);
  };
  if (groups == 0) return scalar(0, count);
  for (size_t g = 0; g < groups; ++g) {
    const size_t at = GroupAt<4>(g, count);
    if (!t.fits[g]) {
      scalar(at, at + 4);
    } else if (channels == 1) {
      // Saturating narrowing clamps to 0..255.
      hn::StoreU(hn::DemoteTo(d8q, PolyGroup(strip.sums.narrow[0], t, g)), d8q, out + at);
    } else {
      const V32Block first = PolyGroup(strip.sums.narrow[0], t, g), second = PolyGroup(strip.sums.narrow[1], t, g);
      const auto lo = hn::DemoteTo(d16h, hn::InterleaveLower(first, second));
      const auto hi = hn::DemoteTo(d16h, hn::InterleaveUpper(B32(), first, second));
      hn::StoreU(hn::DemoteTo(d8p, hn::Combine(B16(), hi, lo)), d8p, out + 2 * at);
    }
  }
}

const ovkPolyRowOps kPolyRowOps = {PolyPrepareStrip, PolyVerticalRow, PolyHorizontalRow};

// ---- Nearest and bilinear -----------------------------------------------------------------

constexpr size_t kNearestGroup = 16, kNearestGroups = OVK_RESIZE_OUTPUTS / kNearestGroup + 1;
constexpr size_t kBilinearGroups = OVK_RESIZE_OUTPUTS / 4 + 1;
constexpr int32_t kBilinearBias = 32768;
// 256 x the bias, plus the rounding half of (sum + 32768) >> 16.
constexpr int32_t kBilinearRestore = 256 * kBilinearBias + 32768;

// Nearest: groups of sixteen outputs whose columns lie in a sixteen-byte
// window are one byte shuffle.  Bilinear: groups of four outputs whose taps
// lie in eight vertical sums are one pair pick and multiply-add; `dense`
// says the strip reads few enough columns per output for the vertical pass
// over all of them to pay (reductions by more than 16 go per output).
struct ResizeTables {
  bool vector;
  bool dense;
  uint32_t start[kBilinearGroups];
  uint8_t fits[kBilinearGroups];
  alignas(16) uint8_t pick[kBilinearGroups][16];
  alignas(16) int16_t weight[kBilinearGroups][8];
};
static_assert(sizeof(ResizeTables) <= OVK_RESIZE_TABLE_BYTES, "resize tables fit the strip");
static_assert(kNearestGroups <= kBilinearGroups, "nearest groups share the tables");

ResizeTables& ResizeTablesOf(ovkResizeStrip& strip) { return *reinterpret_cast<ResizeTables*>(strip.tables); }

void NearestPrepare(ovkResizeStrip& strip, ResizeTables& t) {
  t.vector = strip.count >= kNearestGroup && strip.srcWidth >= 16;
  if (!t.vector) return;
  for (size_t g = 0; g < GroupCount<kNearestGroup>(strip.count); ++g) {
    const uint32_t* column = strip.column + GroupAt<kNearestGroup>(g, strip.count);
    const uint32_t start = HWY_MIN(column[0], strip.srcWidth - 16);
    t.start[g] = start;
    t.fits[g] = column[kNearestGroup - 1] - start < 16;
    if (t.fits[g])
      for (size_t i = 0; i < kNearestGroup; ++i) t.pick[g][i] = uint8_t(column[i] - start);
  }
}

void BilinearPrepare(ovkResizeStrip& strip, ResizeTables& t) {
  t.dense = strip.columns <= 16 * strip.count + 16;
  t.vector = strip.count >= 4;
  if (!t.dense || !t.vector) return;
  for (size_t g = 0; g < GroupCount<4>(strip.count); ++g) {
    const size_t at = GroupAt<4>(g, strip.count);
    const uint32_t start = strip.column[at] - strip.first;
    t.start[g] = start;
    t.fits[g] = strip.next[at + 3] - strip.first - start < 8;
    if (!t.fits[g]) continue;
    for (size_t j = 0; j < 4; ++j) {
      SetPairPick(t.pick[g], j, strip.column[at + j] - strip.first - start, strip.next[at + j] - strip.first - start);
      t.weight[g][2 * j] = int16_t(256 - strip.fraction[at + j]);
      t.weight[g][2 * j + 1] = int16_t(strip.fraction[at + j]);
    }
  }
  memset(strip.vertical + strip.columns, 0, 16 * sizeof(int16_t));
}

void ResizePrepareStrip(ovkResizeStrip& strip) {
  ResizeTables& t = ResizeTablesOf(strip);
  if (strip.interpolation == ORVIK_INTERPOLATION_NEAREST) return NearestPrepare(strip, t);
  BilinearPrepare(strip, t);
}

void NearestRow(const uint8_t* in, ovkResizeStrip& strip, uint8_t* out) {
  const ResizeTables& t = ResizeTablesOf(strip);
  if (!t.vector) return ovkResizeRowOpsC.nearestRow(in, strip, out);
  const B8 d8;
  for (size_t g = 0; g < GroupCount<kNearestGroup>(strip.count); ++g) {
    const size_t at = GroupAt<kNearestGroup>(g, strip.count);
    if (t.fits[g]) {
      hn::StoreU(hn::TableLookupBytes(hn::LoadU(d8, in + t.start[g]), hn::Load(d8, t.pick[g])), d8, out + at);
    } else {
      for (size_t i = at; i < at + kNearestGroup; ++i) out[i] = in[strip.column[i]];
    }
  }
}

// Vertical sums of the strip's columns first, then the columns of each output.
void BilinearRow(const uint8_t* top, const uint8_t* bottom, uint32_t fy, ovkResizeStrip& strip, uint8_t* out) {
  const ResizeTables& t = ResizeTablesOf(strip);
  if (!t.dense || !t.vector) return ovkResizeRowOpsC.bilinearRow(top, bottom, fy, strip, out);
  const D16 d16;
  const D8h d8h;
  const hn::RebindToSigned<D16> di16;
  const size_t lanes = hn::Lanes(d16), columns = strip.columns;
  top += strip.first;
  bottom += strip.first;
  int16_t* vertical = strip.vertical;
  if (columns < lanes) {
    for (size_t i = 0; i < columns; ++i)
      vertical[i] = int16_t(int32_t((256 - fy) * top[i] + fy * bottom[i]) - kBilinearBias);
  } else {
    const V16 upper = hn::Set(d16, uint16_t(256 - fy)), lower = hn::Set(d16, uint16_t(fy));
    const V16 bias = hn::Set(d16, uint16_t(kBilinearBias));
    ForEachVector(columns, lanes, [&](size_t i) {
      const V16 sum = hn::Add(hn::Mul(hn::PromoteTo(d16, hn::LoadU(d8h, top + i)), upper),
                              hn::Mul(hn::PromoteTo(d16, hn::LoadU(d8h, bottom + i)), lower));
      hn::StoreU(hn::BitCast(di16, hn::Sub(sum, bias)), di16, vertical + i);
    });
  }
  const hn::Rebind<uint8_t, B32> d8q;
  const B16 dw;
  for (size_t g = 0; g < GroupCount<4>(strip.count); ++g) {
    const size_t at = GroupAt<4>(g, strip.count);
    if (t.fits[g]) {
      V32Block odd = hn::Zero(B32());
      const V32Block even = PairProducts(Gather(vertical, t.start[g], t.pick[g]), hn::Load(dw, t.weight[g]), odd);
      const V32Block sum = hn::Add(hn::RearrangeToOddPlusEven(even, odd), hn::Set(B32(), kBilinearRestore));
      hn::StoreU(hn::DemoteTo(d8q, hn::ShiftRight<16>(sum)), d8q, out + at);
    } else {
      for (size_t k = at; k < at + 4; ++k) {
        const int32_t fx = int32_t(strip.fraction[k]);
        const int32_t sum = (256 - fx) * vertical[strip.column[k] - strip.first] +
                            fx * vertical[strip.next[k] - strip.first] + kBilinearRestore;
        out[k] = uint8_t(sum >> 16);
      }
    }
  }
}

const ovkResizeRowOps kResizeRowOps = {ResizePrepareStrip, NearestRow, BilinearRow};

#endif  // HWY_TARGET != HWY_SCALAR

void ScaleUpPolyu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                   uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride) {
#if HWY_TARGET == HWY_SCALAR
  ovkScaleUpPolyu8C(src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride);
#else
  ovkScaleUpPoly(kPolyRowOps, src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride, 1);
#endif
}

void ScaleUpPolyInterleaveu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                             uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride) {
#if HWY_TARGET == HWY_SCALAR
  ovkScaleUpPolyInterleaveu8C(src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride);
#else
  ovkScaleUpPoly(kPolyRowOps, src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride, 2);
#endif
}

ovkStatusCode Scaleu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride, uint8_t* dst,
                      uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride, ovkInterpolationType interpolation) {
#if HWY_TARGET == HWY_SCALAR
  return ovkScaleu8C(src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride, interpolation);
#else
  return ovkResize(kResizeRowOps, src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride,
                   interpolation);
#endif
}

}  // namespace HWY_NAMESPACE
}  // namespace ovk
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
OVK_VECTOR_KERNEL(ScaleUpPolyu8)
OVK_VECTOR_KERNEL(ScaleUpPolyInterleaveu8)
OVK_VECTOR_KERNEL(Scaleu8)
#endif
