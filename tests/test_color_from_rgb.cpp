// RGB to YCbCr and gray against per-pixel formulas: row kernels, whole
// conversions and the interleaved YCrCb and gray kernels on the portable code
// and every vector target, sub-sampling, odd sizes, strides, the row slots
// per mode and the DSP size floor.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <array>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "cpu/orvikInternal.h"
#include "support/color_reference.h"
#include "support/entry_test.h"
#include "support/fake_backends.h"
#include "support/guarded_image.h"
#include "support/log_capture.h"

namespace {

enum class Format { kRGB565 = 2, kRGB888 = 3, kRGBA8888 = 4 };
enum class Layout { k444, k422, k420 };
enum class Dst { kPlanar, kPseudoPlanar, kLuma };

uint32_t bytesPerPixel(Format format) { return uint32_t(format); }

// Byte 0 is B; RGB565 expands by shifting alone, R in the high bits.
Ycc familyPixel(Format format, const uint8_t* p) {
  if (format != Format::kRGB565) return yccQ8(p[2], p[1], p[0]);
  const int word = p[0] + 256 * p[1];
  return yccQ8((word / 2048) * 8, (word / 32 % 64) * 4, (word % 32) * 8);
}

uint32_t chromaWidth(uint32_t w, Layout layout) { return layout == Layout::k444 ? w : (w + 1) / 2; }
uint32_t chromaHeight(uint32_t h, Layout layout) { return layout == Layout::k420 ? (h + 1) / 2 : h; }

// Planar Y, Cb, Cr and pseudo-planar Cb, Cr pairs of one conversion, every
// byte kUntouched.
struct Planes {
  Planes(uint32_t w, uint32_t h, Layout layout, uint32_t pad)
      : y(w, h, w + pad),
        cb(chromaWidth(w, layout), chromaHeight(h, layout), chromaWidth(w, layout) + pad),
        cr(cb.width(), cb.height(), cb.stride()),
        c(cb.width(), cb.height(), 2 * cb.width() + pad, 2) {
    for (GuardedImage* plane : {&y, &cb, &cr, &c}) plane->fill(kUntouched);
  }
  GuardedImage y, cb, cr, c;
};

// Writes into `want` what converting `src` must leave in each plane: chroma
// from the top-left pixel of each block, and nothing on a chroma row of an
// odd width when sub-sampled (4:2:2 writes nothing, 4:2:0 only the odd rows'
// luma).
void writeReference(Format format, Layout layout, const GuardedImage& src, Planes& want) {
  for (uint32_t y = 0; y < src.height(); ++y) {
    const bool chromaRow = layout != Layout::k420 || y % 2 == 0;
    if (layout != Layout::k444 && chromaRow && src.width() % 2 != 0) continue;
    for (uint32_t x = 0; x < src.width(); ++x) {
      const Ycc v = familyPixel(format, src.row(y) + x * bytesPerPixel(format));
      want.y.at(x, y) = uint8_t(v.y);
      if (!chromaRow || (layout != Layout::k444 && x % 2 != 0)) continue;
      const uint32_t cx = layout == Layout::k444 ? x : x / 2, cy = layout == Layout::k420 ? y / 2 : y;
      want.cb.at(cx, cy) = want.c.row(cy)[2 * cx] = uint8_t(v.cb);
      want.cr.at(cx, cy) = want.c.row(cy)[2 * cx + 1] = uint8_t(v.cr);
    }
  }
}

// Same bytes in the rows and the padding between them.
void expectSameBytes(const GuardedImage& actual, const GuardedImage& want, uint32_t pixelBytes,
                     const std::string& what) {
  const size_t size = size_t(want.stride()) * (want.height() - 1) + want.width() * pixelBytes;
  const auto diff = std::mismatch(want.data(), want.data() + size, actual.data());
  ASSERT_EQ(diff.first, want.data() + size) << what << ": byte " << diff.first - want.data() << " is "
                                            << int(*diff.second) << ", expected " << int(*diff.first);
}

void expectPlanes(const Planes& out, const Planes& want, Dst dst, const std::string& what) {
  expectSameBytes(out.y, want.y, 1, what + " Y");
  if (dst == Dst::kPlanar) {
    expectSameBytes(out.cb, want.cb, 1, what + " Cb");
    expectSameBytes(out.cr, want.cr, 1, what + " Cr");
  } else if (dst == Dst::kPseudoPlanar) {
    expectSameBytes(out.c, want.c, 2, what + " CbCr");
  }
}

// ---- Row kernels ----

// A slot (read when called), its portable routine and its vector routine for
// the chosen target.  The stem names the source format and, after the '2',
// the row: yuvp / yuv 4:4:4 planar / pseudo-planar, yyuvp / yyuv one chroma
// sample per two pixels, y luma only.
struct RowKernel {
  std::string stem;
  ovkFuncPtr (*slot)();
  ovkFuncPtr portable;
  ovkFuncPtr (*vector)();

  Format format() const {
    return stem.rfind("rgba", 0) == 0     ? Format::kRGBA8888
           : stem.rfind("rgb888", 0) == 0 ? Format::kRGB888
                                          : Format::kRGB565;
  }
  std::string row() const { return stem.substr(stem.find('2', 6) + 1); }
  Layout layout() const { return row().rfind("yy", 0) == 0 ? Layout::k422 : Layout::k444; }
  Dst dst() const { return row() == "y" ? Dst::kLuma : row().back() == 'p' ? Dst::kPlanar : Dst::kPseudoPlanar; }
};

const RowKernel kRowKernels[] = {
#define OVK_X(stem, Fn, vector) \
  {#stem, [] { return asPointer(stem##_); }, asPointer(stem##C), [] { return asPointer(ovkVector##stem##_()); }},
    OVK_RGB_TO_YCBCR_ROW_KERNELS(OVK_X)
#undef OVK_X
};

void runRow(ovkFuncPtr kernel, Dst dst, const uint8_t* src, uint32_t width, Planes& out) {
  if (dst == Dst::kPlanar)
    reinterpret_cast<ovkRgbToYCbCrPlanarRowFn>(kernel)(src, out.y.data(), out.cb.data(), out.cr.data(), width);
  else if (dst == Dst::kLuma)
    reinterpret_cast<ovkRgbToLumaRowFn>(kernel)(src, out.y.data(), width);
  else
    reinterpret_cast<ovkRgbToYCbCrPseudoPlanarRowFn>(kernel)(src, out.y.data(), out.c.data(), width);
}

// Every 16-bit word (RGB565), or every (G, R) pair with B running through
// 0..255 in steps of 15 (RGB888, RGBA8888; alpha random), in packed rows of
// `width` pixels.
uint32_t densePixels(Format format) { return format == Format::kRGB565 ? 65536 : 18 * 65536; }

std::unique_ptr<GuardedImage> denseImage(Format format, uint32_t width, std::mt19937& rng) {
  const uint32_t bpp = bytesPerPixel(format), pixels = densePixels(format);
  auto image = std::make_unique<GuardedImage>(width, pixels / width, width * bpp, bpp);
  uint8_t* p = image->data();
  for (uint32_t i = 0; i < pixels; ++i, p += bpp) {
    p[0] = format == Format::kRGB565 ? uint8_t(i) : uint8_t(15 * (i >> 16));
    p[1] = uint8_t(format == Format::kRGB565 ? i >> 8 : i);
    if (bpp > 2) p[2] = uint8_t(i >> 8);
    if (bpp > 3) p[3] = uint8_t(rng());
  }
  return image;
}

// The references at hand-computed points, all inside the dense inputs below:
// white; byte 0 blue, its Cb ((128 * 255 + 128) >> 8) + 128 = 256 clamped
// and Cr (-21 * 255 + 128) >> 8 = -21; RGB565 red 0xF800 as 248 (no bit
// replication) and blue 0x001F's Cb 252, below the clamp; YCrCb and gray
// reading byte 0 as red.
TEST(ColorFromRgb, ReferenceAtHandComputedPoints) {
  const uint8_t white[3] = {255, 255, 255}, blue[3] = {255, 0, 0}, red565[2] = {0x00, 0xF8}, blue565[2] = {0x1F, 0};
  EXPECT_EQ(channels(familyPixel(Format::kRGB888, white)), (std::array<int, 3>{255, 128, 128}));
  EXPECT_EQ(channels(familyPixel(Format::kRGB888, blue)), (std::array<int, 3>{29, 255, 107}));
  EXPECT_EQ(familyPixel(Format::kRGB565, red565).y, 75);
  EXPECT_EQ(familyPixel(Format::kRGB565, blue565).cb, 252);
  EXPECT_EQ(channels(yccQ15(255, 0, 0)), (std::array<int, 3>{76, 85, 255}));
  EXPECT_EQ((std::array<int, 3>{grayQ16(255, 0, 0), grayQ16(0, 0, 255), grayQ16(255, 255, 255)}),
            (std::array<int, 3>{76, 29, 255}));
}

TEST(ColorFromRgb, RowKernelsMatchTheFormula) {
  std::mt19937 rng(17);
  forPortableAndEveryVectorTarget([&](const std::string& variant, bool vector) {
    for (const RowKernel& row : kRowKernels) {
      const uint32_t bpp = bytesPerPixel(row.format());
      std::vector<std::unique_ptr<GuardedImage>> rows;
      rows.push_back(denseImage(row.format(), densePixels(row.format()), rng));
      for (const uint32_t w : testWidths()) {
        rows.push_back(std::make_unique<GuardedImage>(w, 1, w * bpp, bpp));
        rows.back()->fillRandom(rng);
      }
      for (const auto& src : rows) {
        const uint32_t w = src->width();
        Planes out(w, 1, row.layout(), 0), want(w, 1, row.layout(), 0);
        writeReference(row.format(), row.layout(), *src, want);
        runRow(vector ? row.vector() : row.portable, row.dst(), src->data(), w, out);
        expectPlanes(out, want, row.dst(), variant + " " + row.stem + " " + std::to_string(w));
      }
    }
  });
}

// ---- Gray and interleaved YCrCb ----

// Every pixel of `dst` from its pixel in `src` (byte 0 read as R); dst's row
// padding untouched.
void expectPacked(const GuardedImage& src, const GuardedImage& dst, uint32_t dstBytes, const std::string& what) {
  ASSERT_TRUE(dst.paddingIntact()) << what;
  for (uint32_t y = 0; y < dst.height(); ++y)
    for (uint32_t x = 0; x < dst.width(); ++x) {
      const uint8_t *p = src.row(y) + 3 * x, *out = dst.row(y) + dstBytes * x;
      if (dstBytes == 1) {
        ASSERT_EQ(out[0], grayQ16(p[0], p[1], p[2])) << what << " at (" << x << "," << y << ")";
        continue;
      }
      const Ycc v = yccQ15(p[0], p[1], p[2]);
      ASSERT_EQ((std::array<int, 3>{out[0], out[1], out[2]}), (std::array<int, 3>{v.y, v.cr, v.cb}))
          << what << " at (" << x << "," << y << ")";
    }
}

TEST(ColorFromRgb, GrayAndYCrCbMatchTheFormula) {
  std::mt19937 rng(19);
  const auto dense = denseImage(Format::kRGB888, 4096, rng);
  const struct {
    const char* name;
    ovkColorRGB888ToGrayu8Fn portable, (*vector)(), entry;
    uint32_t dstBytes;
  } kernels[] = {{"gray", ovkColorRGB888ToGrayu8C, ovkVectorColorRGB888ToGrayu8, ovkColorRGB888ToGrayu8, 1},
                 {"YCrCb", ovkColorRGB888toYCrCbu8C, ovkVectorColorRGB888toYCrCbu8, ovkColorRGB888toYCrCbu8_v2, 3}};
  forEveryVariant([&](const std::string& variant, Variant v) {
    for (const auto& kernel : kernels) {
      const ovkColorRGB888ToGrayu8Fn fn = pick(v, kernel.portable, kernel.vector, kernel.entry);
      for (const uint32_t w : testWidths()) {
        // Zero strides (the entries' defaults) over unpadded rows.
        const bool packed = v == Variant::kEntry && w % 3 == 0;
        const uint32_t h = 1 + rng() % 5, srcPad = packed ? 0 : rng() % 7, dstPad = packed ? 0 : rng() % 5;
        GuardedImage src(w, h, w * 3 + srcPad, 3), dst(w, h, w * kernel.dstBytes + dstPad, kernel.dstBytes);
        src.fillRandom(rng);
        fn(src.data(), w, h, packed ? 0 : src.stride(), dst.data(), packed ? 0 : dst.stride());
        const std::string what = variant + " " + kernel.name + " " + std::to_string(w) + "x" + std::to_string(h);
        expectPacked(src, dst, kernel.dstBytes, what);
        if (packed && kernel.dstBytes == 3) {  // the first generation takes packed rows only
          GuardedImage firstGeneration(w, h, w * 3, 3);
          ovkColorRGB888toYCrCbu8(src.data(), w, h, firstGeneration.data());
          expectPacked(src, firstGeneration, 3, what + " first generation");
        }
      }
      GuardedImage dst(4096, dense->height(), 4096 * kernel.dstBytes, kernel.dstBytes);
      fn(dense->data(), 4096, dense->height(), dense->stride(), dst.data(), dst.stride());
      expectPacked(*dense, dst, kernel.dstBytes, variant + " " + kernel.name + " dense");
    }
  });
}

// ---- Entries ----

struct EntryPair {
  Format format;
  Layout layout;
  ovkColorRGB888ToYCbCr444Planaru8Fn planar;
  ovkColorRGB888ToYCbCr444PseudoPlanaru8Fn pseudoPlanar;
};

#define OVK_PAIR(F, L) \
  { Format::k##F, Layout::k##L, ovkColor##F##ToYCbCr##L##Planaru8, ovkColor##F##ToYCbCr##L##PseudoPlanaru8 }
#define OVK_LAYOUTS(F) OVK_PAIR(F, 444), OVK_PAIR(F, 422), OVK_PAIR(F, 420)
const EntryPair kEntries[] = {OVK_LAYOUTS(RGB565), OVK_LAYOUTS(RGB888), OVK_LAYOUTS(RGBA8888)};
#undef OVK_LAYOUTS
#undef OVK_PAIR

class ColorFromRgbEntries : public EntryTest {
 protected:
  // Both layouts of one entry pair on one random image; `packed` passes zero
  // strides over buffers with no padding.
  static void checkEntryPair(const EntryPair& entry, uint32_t w, uint32_t h, bool packed, std::mt19937& rng) {
    const uint32_t bpp = bytesPerPixel(entry.format), pad = packed ? 0 : 1 + rng() % 9;
    GuardedImage src(w, h, w * bpp + (packed ? 0 : rng() % 13), bpp);
    src.fillRandom(rng);
    Planes want(w, h, entry.layout, pad), planar(w, h, entry.layout, pad), pseudo(w, h, entry.layout, pad);
    writeReference(entry.format, entry.layout, src, want);
    const char* layoutNames[] = {"444", "422", "420"};
    const std::string what = std::to_string(bpp) + "-byte " + layoutNames[int(entry.layout)] + " " + std::to_string(w) +
                             "x" + std::to_string(h) + (packed ? " packed" : "");
    // Planar chroma is allocated (w + 1) / 2 wide; the default stride w / 2
    // only matters for even widths, where the two agree.
    const auto stride = [packed](const GuardedImage& image) { return packed ? 0u : image.stride(); };
    entry.planar(src.data(), w, h, stride(src), planar.y.data(), planar.cb.data(), planar.cr.data(), stride(planar.y),
                 stride(planar.cb), stride(planar.cr));
    expectPlanes(planar, want, Dst::kPlanar, what + " planar");
    entry.pseudoPlanar(src.data(), w, h, stride(src), pseudo.y.data(), pseudo.c.data(), stride(pseudo.y),
                       stride(pseudo.c));
    expectPlanes(pseudo, want, Dst::kPseudoPlanar, what + " pseudo-planar");
  }
};

TEST_F(ColorFromRgbEntries, EveryFamilyEntryConvertsWholeImagesWithPortableAndVectorRows) {
  std::mt19937 rng(11);
  for (const uint32_t mode : {0x80000002u, ORVIK_OP_CPU_PERFORMANCE}) {
    ASSERT_EQ(ovkSetOperationMode(mode), 0);
    for (const EntryPair& entry : kEntries)
      for (const uint32_t w : {1u, 2u, 5u, 6u, 31u, 64u, 77u})
        for (const uint32_t h : {1u, 2u, 3u, 8u, 9u})
          for (const bool packed : {false, true}) checkEntryPair(entry, w, h, packed, rng);
  }
}

TEST_F(ColorFromRgbEntries, SlotsHoldPortableOrVectorRowsByMode) {
  ASSERT_EQ(ovkSetOperationMode(0x80000002u), 0);
  for (const RowKernel& row : kRowKernels) EXPECT_EQ(row.slot(), row.portable) << row.stem;
  ASSERT_EQ(ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE), 0);
  for (const RowKernel& row : kRowKernels) {
    EXPECT_EQ(row.slot(), row.vector()) << row.stem;
    EXPECT_NE(row.slot(), row.portable) << row.stem;
  }
}

TEST_F(ColorFromRgbEntries, YCrCbGoesToTheDspOnlyAboveTheSizeFloor) {
  FakeBackends fakes;
  setenv("RUNTIME_ORVIK_LOG", "1", 1);
  ASSERT_EQ(ovkSetOperationMode(ORVIK_OP_LOW_POWER), 0);
  ASSERT_EQ(ovkImplTable[ovkGroup::ColorRGB888toYCrCbu8], OVK_IMPL_RDSP);
  // Page-end buffers of a multiple of 64 bytes start 64-byte aligned, so the
  // size floors are what decides.
  GuardedImage src(184, 144, 184 * 3, 3), dst(184, 144, 184 * 3, 3), srcV2(64, 144, 192, 3), dstV2(64, 144, 192, 3);
  std::mt19937 rng(23);
  src.fillRandom(rng);
  srcV2.fillRandom(rng);
  LogCapture log;
  // First generation counts pixels: 176 x 144 = 25344 is not above the floor.
  ovkColorRGB888toYCrCbu8(src.data(), 176, 144, dst.data());
  ovkColorRGB888toYCrCbu8(src.data(), 184, 144, dst.data());
  // _v2 counts stride bytes: 192 x 132 = 25344 is not above it either.
  ovkColorRGB888toYCrCbu8_v2(srcV2.data(), 64, 132, 192, dstV2.data(), 192);
  ovkColorRGB888toYCrCbu8_v2(srcV2.data(), 64, 144, 192, dstV2.data(), 192);
  const std::vector<std::string> expected = {"ovkColorRGB888toYCrCbu8_PELAR", "ovkColorRGB888toYCrCbu8_RDSP",
                                             "ovkColorRGB888toYCrCbu8_v2_PELAR", "ovkColorRGB888toYCrCbu8_v2_RDSP"};
  EXPECT_EQ(log.messages(), expected);
  // Without a DSP kernel for the group its DSP entries run the vector code.
  expectPacked(src, dst, 3, "first generation");
  expectPacked(srcV2, dstV2, 3, "_v2");
}

}  // namespace
