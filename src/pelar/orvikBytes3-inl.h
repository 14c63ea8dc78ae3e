// Three-byte pixels to and from three byte vectors, the work of Highway's
// LoadInterleaved3 and StoreInterleaved3.  On x86 those build their shuffle
// tables by broadcasting 16 bytes, and GCC repeats the broadcasts on every
// iteration of a loop; here the tables are stored at full vector width, so
// they are loaded once, or read as memory operands.  Other targets keep
// Highway's (on NEON a single structure load or store).
// Included once per target, after hwy/highway.h.
#if defined(ORVIK_PELAR_BYTES3_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef ORVIK_PELAR_BYTES3_INL_H_
#undef ORVIK_PELAR_BYTES3_INL_H_
#else
#define ORVIK_PELAR_BYTES3_INL_H_
#endif

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace ovk {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

#if HWY_ARCH_X86 && HWY_TARGET != HWY_SCALAR && HWY_TARGET != HWY_EMU128
namespace bytes3 {

// The shuffles work on 48-byte groups: 16 pixels, whose bytes Highway's
// transposed block loads and stores place in one 16-byte block of each of
// three vectors A, B and C (the group's parts 0, 1 and 2).  Byte j of part k
// is byte 16 k + j of the group: channel (16 k + j) % 3 of pixel
// (16 k + j) / 3.
constexpr uint8_t kNone = 0x80;  // the shuffle writes 0
constexpr size_t kTableBytes = 64;

// Each table set is indexed [output][input]: an output vector is the XOR of
// its three inputs, each shuffled by its table (unused bytes become 0).
struct Tables {
  // gather[c][k]: part k's bytes of channel c moved to their pixels.
  alignas(kTableBytes) uint8_t gather[3][3][kTableBytes];
  // scatter[k][c]: channel c's pixels moved to their bytes of part k.
  alignas(kTableBytes) uint8_t scatter[3][3][kTableBytes];
};

constexpr Tables MakeTables() {
  Tables t{};
  for (size_t c = 0; c < 3; ++c)
    for (size_t k = 0; k < 3; ++k)
      for (size_t i = 0; i < kTableBytes; ++i) {
        const size_t j = i % 16, byteOfPixel = 3 * j + c, byteOfPart = 16 * k + j;
        t.gather[c][k][i] = byteOfPixel / 16 == k ? uint8_t(byteOfPixel % 16) : kNone;
        t.scatter[k][c][i] = byteOfPart % 3 == c ? uint8_t(byteOfPart / 3) : kNone;
      }
  return t;
}

constexpr Tables kTables = MakeTables();

template <class D, class V = hn::Vec<D>>
HWY_INLINE V Merge(D d, V x0, V x1, V x2, const uint8_t (&tables)[3][kTableBytes]) {
  static_assert(hn::MaxLanes(D()) >= 16 && hn::MaxLanes(D()) <= kTableBytes, "whole blocks, within the tables");
  const auto shuffle = [d](V x, const uint8_t* table) { return hn::TableLookupBytesOr0(x, hn::Load(d, table)); };
  return hn::Xor3(shuffle(x0, tables[0]), shuffle(x1, tables[1]), shuffle(x2, tables[2]));
}

}  // namespace bytes3

template <class D>
HWY_INLINE void LoadInterleavedBytes3(D d, const uint8_t* HWY_RESTRICT p, hn::Vec<D>& v0, hn::Vec<D>& v1,
                                      hn::Vec<D>& v2) {
  using bytes3::kTables;
  hn::Vec<D> a, b, c;
  hn::detail::LoadTransposedBlocks3(d, p, a, b, c);
  v0 = bytes3::Merge(d, a, b, c, kTables.gather[0]);
  v1 = bytes3::Merge(d, a, b, c, kTables.gather[1]);
  v2 = bytes3::Merge(d, a, b, c, kTables.gather[2]);
}

template <class D>
HWY_INLINE void StoreInterleavedBytes3(hn::Vec<D> v0, hn::Vec<D> v1, hn::Vec<D> v2, D d, uint8_t* HWY_RESTRICT p) {
  using bytes3::kTables;
  hn::detail::StoreTransposedBlocks3(bytes3::Merge(d, v0, v1, v2, kTables.scatter[0]),
                                     bytes3::Merge(d, v0, v1, v2, kTables.scatter[1]),
                                     bytes3::Merge(d, v0, v1, v2, kTables.scatter[2]), d, p);
}
#else
template <class D>
HWY_INLINE void LoadInterleavedBytes3(D d, const uint8_t* HWY_RESTRICT p, hn::Vec<D>& v0, hn::Vec<D>& v1,
                                      hn::Vec<D>& v2) {
  hn::LoadInterleaved3(d, p, v0, v1, v2);
}

template <class D>
HWY_INLINE void StoreInterleavedBytes3(hn::Vec<D> v0, hn::Vec<D> v1, hn::Vec<D> v2, D d, uint8_t* HWY_RESTRICT p) {
  hn::StoreInterleaved3(v0, v1, v2, d, p);
}
#endif

}  // namespace HWY_NAMESPACE
}  // namespace ovk
HWY_AFTER_NAMESPACE();

#endif  // ORVIK_PELAR_BYTES3_INL_H_
