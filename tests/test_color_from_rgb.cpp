// RGB to YCbCr and gray: row kernels and whole conversions against per-pixel
// formulas written here, sub-sampling and odd sizes, strides, rejected
// arguments, the inner-kernel slots per mode, vector == portable on every
// target, and the DSP size floor of the interleaved YCrCb entries.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "cpu/orvikInternal.h"
#include "support/fake_backends.h"
#include "support/guarded_image.h"
#include "support/log_capture.h"
#include "support/vector_targets.h"

namespace {

constexpr uint8_t kUntouched = 0x5C;

// ---- Reference formulas --------------------------------------------------------

int floorDiv(int numerator, int denominator) {
  int quotient = numerator / denominator;
  if (numerator % denominator != 0 && numerator < 0) --quotient;
  return quotient;
}

struct Ycc {
  int y, cb, cr;
};

Ycc familyYcc(int r, int g, int b) {
  const int cb = floorDiv(128 * b - 85 * g - 43 * r + 128, 256) + 128;
  const int cr = floorDiv(128 * r - 107 * g - 21 * b + 128, 256) + 128;
  return {(77 * r + 150 * g + 29 * b + 128) / 256, cb > 255 ? 255 : cb, cr > 255 ? 255 : cr};
}

// Interleaved Y, Cr, Cb from bytes R, G, B.
Ycc ycrcbOf(int r, int g, int b) {
  const int cr = 128 + floorDiv(16384 * r - 13720 * g - 2664 * b + 16384, 32768);
  const int cb = 128 + floorDiv(-5529 * r - 10855 * g + 16384 * b + 16384, 32768);
  return {(9798 * r + 19235 * g + 3736 * b + 16384) / 32768, cb > 255 ? 255 : cb, cr > 255 ? 255 : cr};
}

int grayOf(int byte0, int byte1, int byte2) { return (19595 * byte0 + 38469 * byte1 + 7471 * byte2 + 32768) / 65536; }

// The family's view of one source pixel.
enum class Format { kRgb565, kRgb888, kRgba8888 };

uint32_t bytesPerPixel(Format format) { return format == Format::kRgb565 ? 2 : format == Format::kRgb888 ? 3 : 4; }

Ycc familyPixel(Format format, const uint8_t* p) {
  if (format != Format::kRgb565) return familyYcc(p[2], p[1], p[0]);
  const int word = p[0] + 256 * p[1];
  return familyYcc((word / 2048) * 8, (word / 32 % 64) * 4, (word % 32) * 8);
}

const char* formatName(Format format) {
  return format == Format::kRgb565 ? "RGB565" : format == Format::kRgb888 ? "RGB888" : "RGBA8888";
}

// ---- The row kernels, from the registry -------------------------------------------

enum class Kind { kPlanar, kSubsampledPlanar, kLuma, kPseudoPlanar, kSubsampledPseudoPlanar };

bool subsampled(Kind kind) { return kind == Kind::kSubsampledPlanar || kind == Kind::kSubsampledPseudoPlanar; }

template <class Fn>
ovkFuncPtr asPointer(Fn fn) {
  return reinterpret_cast<ovkFuncPtr>(fn);
}

// A slot (read when called), its portable routine and its vector routine for
// the chosen target.  The stem names the source format and the row kind.
struct RowKernel {
  std::string stem;
  ovkFuncPtr (*slot)();
  ovkFuncPtr portable;
  ovkFuncPtr (*vector)();

  Format format() const {
    return stem.rfind("rgba8888", 0) == 0 ? Format::kRgba8888
           : stem.rfind("rgb888", 0) == 0 ? Format::kRgb888
                                          : Format::kRgb565;
  }
  Kind kind() const {
    const std::string suffix = stem.substr(stem.find('2', 6) + 1);
    return suffix == "yuvp"    ? Kind::kPlanar
           : suffix == "yyuvp" ? Kind::kSubsampledPlanar
           : suffix == "y"     ? Kind::kLuma
           : suffix == "yuv"   ? Kind::kPseudoPlanar
                               : Kind::kSubsampledPseudoPlanar;
  }
};

const RowKernel kRowKernels[] = {
#define OVK_X(stem, Fn) \
  {#stem, [] { return asPointer(stem##_); }, asPointer(stem##C), [] { return asPointer(ovkVector##stem##_()); }},
    OVK_INNER_KERNELS(OVK_X)
#undef OVK_X
};

// One row's outputs in guarded buffers sized exactly for `width` pixels.
struct RowOutput {
  explicit RowOutput(uint32_t width) : y(width), cb(width), cr(width), c(2 * width) {
    for (GuardedBuffer* buffer : {&y, &cb, &cr, &c}) std::fill_n(buffer->data(), buffer->size(), kUntouched);
  }
  GuardedBuffer y, cb, cr, c;
};

void runRow(ovkFuncPtr kernel, Kind kind, const uint8_t* src, uint32_t width, RowOutput& out) {
  switch (kind) {
    case Kind::kPlanar:
    case Kind::kSubsampledPlanar:
      return reinterpret_cast<ovkRgbToYCbCrPlanarRowFn>(kernel)(src, out.y.data(), out.cb.data(), out.cr.data(), width);
    case Kind::kLuma:
      return reinterpret_cast<ovkRgbToLumaRowFn>(kernel)(src, out.y.data(), width);
    default:
      return reinterpret_cast<ovkRgbToYCbCrPseudoPlanarRowFn>(kernel)(src, out.y.data(), out.c.data(), width);
  }
}

// Expected bytes of one row kernel's outputs, kUntouched where nothing is
// written.
struct ExpectedRow {
  std::vector<int> y, cb, cr, c;
};

ExpectedRow expectedRow(Format format, Kind kind, const uint8_t* src, uint32_t width) {
  ExpectedRow e{std::vector<int>(width, kUntouched), std::vector<int>(width, kUntouched),
                std::vector<int>(width, kUntouched), std::vector<int>(2 * width, kUntouched)};
  if (subsampled(kind) && width % 2 != 0) return e;
  const bool planar = kind == Kind::kPlanar || kind == Kind::kSubsampledPlanar;
  for (uint32_t x = 0; x < width; ++x) {
    const Ycc v = familyPixel(format, src + x * bytesPerPixel(format));
    e.y[x] = v.y;
    if (kind == Kind::kLuma || (subsampled(kind) && x % 2 != 0)) continue;
    const uint32_t slot = subsampled(kind) ? x / 2 : x;
    if (planar) {
      e.cb[slot] = v.cb;
      e.cr[slot] = v.cr;
    } else {
      e.c[2 * slot] = v.cb;
      e.c[2 * slot + 1] = v.cr;
    }
  }
  return e;
}

void expectBytes(const GuardedBuffer& actual, const std::vector<int>& expected, const std::string& what) {
  for (size_t i = 0; i < expected.size(); ++i) ASSERT_EQ(actual.data()[i], expected[i]) << what << " byte " << i;
}

void expectRow(const RowOutput& out, const ExpectedRow& e, const std::string& what) {
  expectBytes(out.y, e.y, what + " Y");
  expectBytes(out.cb, e.cb, what + " Cb");
  expectBytes(out.cr, e.cr, what + " Cr");
  expectBytes(out.c, e.c, what + " CbCr");
}

// A row holding every 16-bit word (RGB565), or every (G, R) pair with B
// running through 0..255 in steps of 15 (RGB888, RGBA8888; alpha random).
std::vector<uint8_t> denseRow(Format format, std::mt19937& rng) {
  std::vector<uint8_t> row;
  if (format == Format::kRgb565) {
    for (int word = 0; word < 65536; ++word) row.insert(row.end(), {uint8_t(word), uint8_t(word >> 8)});
    return row;
  }
  for (int b = 0; b <= 255; b += 15)
    for (int r = 0; r < 256; ++r)
      for (int g = 0; g < 256; ++g) {
        row.insert(row.end(), {uint8_t(b), uint8_t(g), uint8_t(r)});
        if (format == Format::kRgba8888) row.push_back(uint8_t(rng()));
      }
  return row;
}

// Copies `bytes` to the end of a guarded buffer, so reading past them faults.
std::unique_ptr<GuardedBuffer> guardedCopy(const std::vector<uint8_t>& bytes) {
  auto buffer = std::make_unique<GuardedBuffer>(bytes.size());
  std::copy(bytes.begin(), bytes.end(), buffer->data());
  return buffer;
}

TEST(ColorFromRgb, HandComputedPixels) {
  // White: 77 + 150 + 29 = 256 makes Y exactly 255.
  const uint8_t white[3] = {255, 255, 255}, black[3] = {0, 0, 0}, blue[3] = {255, 0, 0};
  uint8_t y, cb, cr;
  rgb8882yuvpC(white, &y, &cb, &cr, 1);
  EXPECT_EQ((std::vector<int>{y, cb, cr}), (std::vector<int>{255, 128, 128}));
  rgb8882yuvpC(black, &y, &cb, &cr, 1);
  EXPECT_EQ((std::vector<int>{y, cb, cr}), (std::vector<int>{0, 128, 128}));
  // Byte 0 is blue: Cb ((128 * 255 + 128) >> 8) + 128 = 256 clamps to 255;
  // Cr (-21 * 255 + 128) >> 8 = -21 gives 107.
  rgb8882yuvpC(blue, &y, &cb, &cr, 1);
  EXPECT_EQ((std::vector<int>{y, cb, cr}), (std::vector<int>{29, 255, 107}));

  // Interleaved YCrCb and gray read byte 0 as red.
  uint8_t ycrcb[3];
  ovkColorRGB888toYCrCbu8C(blue, 1, 1, 3, ycrcb, 3);
  EXPECT_EQ((std::vector<int>{ycrcb[0], ycrcb[1], ycrcb[2]}), (std::vector<int>{76, 255, 85}));
  uint8_t gray[3];
  ovkColorRGB888ToGrayu8C(blue, 1, 1, 3, gray, 1);
  const uint8_t blueLast[3] = {0, 0, 255};
  ovkColorRGB888ToGrayu8C(blueLast, 1, 1, 3, gray + 1, 1);
  ovkColorRGB888ToGrayu8C(white, 1, 1, 3, gray + 2, 1);
  EXPECT_EQ((std::vector<int>{gray[0], gray[1], gray[2]}), (std::vector<int>{76, 29, 255}));
}

TEST(ColorFromRgb, Rgb565ExpandsByShiftingWithRedInTheHighBits) {
  // 0xF800 red 248, 0x07E0 green 252, 0x001F blue 248, little-endian words.
  const uint8_t words[8] = {0x00, 0xF8, 0xE0, 0x07, 0x1F, 0x00, 0xFF, 0xFF};
  uint8_t y[4], cb[4], cr[4];
  rgb5652yuvpC(words, y, cb, cr, 4);
  const Ycc red = familyYcc(248, 0, 0), green = familyYcc(0, 252, 0), blue = familyYcc(0, 0, 248),
            white = familyYcc(248, 252, 248);
  EXPECT_EQ((std::vector<int>{y[0], y[1], y[2], y[3]}), (std::vector<int>{red.y, green.y, blue.y, white.y}));
  EXPECT_EQ((std::vector<int>{cb[0], cb[2], cr[0], cr[1]}), (std::vector<int>{red.cb, blue.cb, red.cr, green.cr}));
  EXPECT_EQ(y[0], 75);    // (77 * 248 + 128) >> 8, no bit replication
  EXPECT_EQ(cb[2], 252);  // ((128 * 248 + 128) >> 8) + 128: below the clamp
}

TEST(ColorFromRgb, PortableRowsMatchTheFormulasOverDenseInputs) {
  std::mt19937 rng(5);
  for (const RowKernel& row : kRowKernels) {
    const std::vector<uint8_t> bytes = denseRow(row.format(), rng);
    const auto src = guardedCopy(bytes);
    const uint32_t width = uint32_t(bytes.size() / bytesPerPixel(row.format()));
    RowOutput out(width);
    runRow(row.portable, row.kind(), src->data(), width, out);
    expectRow(out, expectedRow(row.format(), row.kind(), src->data(), width), row.stem);
  }
}

TEST(ColorFromRgb, SubsampledRowsShareTheLeftChromaAndSkipOddWidths) {
  // Red then blue: the pair's chroma is red's; blue only shows in its luma.
  const uint8_t pair[6] = {0, 0, 255, 255, 0, 0};
  uint8_t y[2], cb[1], cr[1], c[2];
  rgb8882yyuvpC(pair, y, cb, cr, 2);
  const Ycc red = familyYcc(255, 0, 0);
  EXPECT_EQ((std::vector<int>{y[0], y[1], cb[0], cr[0]}), (std::vector<int>{red.y, 29, red.cb, red.cr}));
  rgb8882yyuvC(pair, y, c, 2);
  EXPECT_EQ((std::vector<int>{c[0], c[1]}), (std::vector<int>{red.cb, red.cr}));

  std::mt19937 rng(6);
  for (const uint32_t width : {1u, 3u, 5u, 33u}) {
    std::vector<uint8_t> bytes(width * 4);
    for (uint8_t& byte : bytes) byte = uint8_t(rng());
    const auto src = guardedCopy(bytes);
    for (const RowKernel& row : kRowKernels) {
      if (!subsampled(row.kind())) continue;
      RowOutput out(width);
      runRow(row.portable, row.kind(), src->data(), width, out);
      expectRow(out, expectedRow(row.format(), row.kind(), src->data(), width), row.stem + " " + std::to_string(width));
    }
  }
}

TEST(ColorFromRgb, GrayAndYCrCbMatchTheFormulasOverDenseInputs) {
  std::mt19937 rng(7);
  const std::vector<uint8_t> bytes = denseRow(Format::kRgb888, rng);
  const uint32_t width = 4096, height = uint32_t(bytes.size() / 3 / width);
  const auto src = guardedCopy(bytes);
  GuardedImage gray(width, height, width), ycrcb(width, height, width * 3, 3);
  ovkColorRGB888ToGrayu8C(src->data(), width, height, width * 3, gray.data(), width);
  ovkColorRGB888toYCrCbu8C(src->data(), width, height, width * 3, ycrcb.data(), width * 3);
  for (uint32_t y = 0; y < height; ++y)
    for (uint32_t x = 0; x < width; ++x) {
      const uint8_t* p = src->data() + (size_t(y) * width + x) * 3;
      ASSERT_EQ(gray.at(x, y), grayOf(p[0], p[1], p[2])) << x << "," << y;
      const Ycc v = ycrcbOf(p[0], p[1], p[2]);
      const uint8_t* out = ycrcb.row(y) + 3 * x;
      ASSERT_EQ((std::vector<int>{out[0], out[1], out[2]}), (std::vector<int>{v.y, v.cr, v.cb})) << x << "," << y;
    }
}

// ---- Whole conversions through the entries ----------------------------------------

enum class Layout { k444, k422, k420 };

const char* layoutName(Layout layout) {
  return layout == Layout::k444 ? "444" : layout == Layout::k422 ? "422" : "420";
}

using PlanarEntry = void (*)(const uint8_t*, uint32_t, uint32_t, uint32_t, uint8_t*, uint8_t*, uint8_t*, uint32_t,
                             uint32_t, uint32_t);
using PseudoPlanarEntry = void (*)(const uint8_t*, uint32_t, uint32_t, uint32_t, uint8_t*, uint8_t*, uint32_t,
                                   uint32_t);

struct EntryPair {
  Format format;
  Layout layout;
  PlanarEntry planar;
  PseudoPlanarEntry pseudoPlanar;
};

const EntryPair kEntries[] = {
    {Format::kRgb565, Layout::k444, ovkColorRGB565ToYCbCr444Planaru8, ovkColorRGB565ToYCbCr444PseudoPlanaru8},
    {Format::kRgb565, Layout::k422, ovkColorRGB565ToYCbCr422Planaru8, ovkColorRGB565ToYCbCr422PseudoPlanaru8},
    {Format::kRgb565, Layout::k420, ovkColorRGB565ToYCbCr420Planaru8, ovkColorRGB565ToYCbCr420PseudoPlanaru8},
    {Format::kRgb888, Layout::k444, ovkColorRGB888ToYCbCr444Planaru8, ovkColorRGB888ToYCbCr444PseudoPlanaru8},
    {Format::kRgb888, Layout::k422, ovkColorRGB888ToYCbCr422Planaru8, ovkColorRGB888ToYCbCr422PseudoPlanaru8},
    {Format::kRgb888, Layout::k420, ovkColorRGB888ToYCbCr420Planaru8, ovkColorRGB888ToYCbCr420PseudoPlanaru8},
    {Format::kRgba8888, Layout::k444, ovkColorRGBA8888ToYCbCr444Planaru8, ovkColorRGBA8888ToYCbCr444PseudoPlanaru8},
    {Format::kRgba8888, Layout::k422, ovkColorRGBA8888ToYCbCr422Planaru8, ovkColorRGBA8888ToYCbCr422PseudoPlanaru8},
    {Format::kRgba8888, Layout::k420, ovkColorRGBA8888ToYCbCr420Planaru8, ovkColorRGBA8888ToYCbCr420PseudoPlanaru8},
};

// Expected planes, kUntouched where nothing is written: chroma from the
// top-left pixel of each block, and no even row of an odd width when
// sub-sampled (no row at all for 4:2:2).
struct ExpectedPlanes {
  std::vector<int> y, cb, cr;  // cb, cr indexed [row * width + column] of the chroma plane
  uint32_t chromaWidth, chromaHeight;
};

ExpectedPlanes expectedPlanes(Format format, Layout layout, const GuardedImage& src) {
  const uint32_t w = src.width(), h = src.height();
  const uint32_t cw = layout == Layout::k444 ? w : (w + 1) / 2, ch = layout == Layout::k420 ? (h + 1) / 2 : h;
  ExpectedPlanes e{std::vector<int>(size_t(w) * h, kUntouched), std::vector<int>(size_t(cw) * ch, kUntouched),
                   std::vector<int>(size_t(cw) * ch, kUntouched), cw, ch};
  for (uint32_t y = 0; y < h; ++y) {
    const bool chromaRow = layout != Layout::k420 || y % 2 == 0;
    if (layout != Layout::k444 && chromaRow && w % 2 != 0) continue;
    for (uint32_t x = 0; x < w; ++x) {
      const Ycc v = familyPixel(format, src.row(y) + x * bytesPerPixel(format));
      e.y[size_t(y) * w + x] = v.y;
      if (!chromaRow || (layout != Layout::k444 && x % 2 != 0)) continue;
      const size_t at = size_t(layout == Layout::k420 ? y / 2 : y) * cw + (layout == Layout::k444 ? x : x / 2);
      e.cb[at] = v.cb;
      e.cr[at] = v.cr;
    }
  }
  return e;
}

void expectPlane(const GuardedImage& plane, const std::vector<int>& expected, uint32_t planeWidth, uint32_t pixelBytes,
                 size_t channel, const std::string& what) {
  ASSERT_TRUE(plane.paddingIntact()) << what;
  for (uint32_t y = 0; y < plane.height(); ++y)
    for (uint32_t x = 0; x < planeWidth; ++x)
      ASSERT_EQ(plane.row(y)[x * pixelBytes + channel], expected[size_t(y) * planeWidth + x])
          << what << " at (" << x << "," << y << ")";
}

class ColorFromRgbEntries : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE), 0); }
  void TearDown() override {
    unsetenv("RUNTIME_ORVIK_LOG");
    ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE);
  }

  // Both layouts of one entry pair on one random image; `packed` passes zero
  // strides over buffers with no padding.
  static void checkEntryPair(const EntryPair& entry, uint32_t w, uint32_t h, bool packed, std::mt19937& rng) {
    const uint32_t bpp = bytesPerPixel(entry.format), pad = packed ? 0 : 1 + rng() % 9;
    GuardedImage src(w, h, w * bpp + (packed ? 0 : rng() % 13), bpp);
    src.fillRandom(rng);
    const ExpectedPlanes e = expectedPlanes(entry.format, entry.layout, src);
    const std::string what = std::string(formatName(entry.format)) + " " + layoutName(entry.layout) + " " +
                             std::to_string(w) + "x" + std::to_string(h) + (packed ? " packed" : "");
    // Planar chroma is allocated (w + 1) / 2 wide; the default stride w / 2
    // only matters for even widths, where the two agree.
    GuardedImage y(w, h, w + pad), cb(e.chromaWidth, e.chromaHeight, e.chromaWidth + pad),
        cr(e.chromaWidth, e.chromaHeight, e.chromaWidth + pad);
    for (GuardedImage* plane : {&y, &cb, &cr}) plane->fill(kUntouched);
    const auto stride = [packed](const GuardedImage& image) { return packed ? 0u : image.stride(); };
    entry.planar(src.data(), w, h, packed ? 0 : src.stride(), y.data(), cb.data(), cr.data(), stride(y), stride(cb),
                 stride(cr));
    expectPlane(y, e.y, w, 1, 0, what + " planar Y");
    expectPlane(cb, e.cb, e.chromaWidth, 1, 0, what + " planar Cb");
    expectPlane(cr, e.cr, e.chromaWidth, 1, 0, what + " planar Cr");

    GuardedImage luma(w, h, w + pad), c(e.chromaWidth, e.chromaHeight, 2 * e.chromaWidth + pad, 2);
    for (GuardedImage* plane : {&luma, &c}) plane->fill(kUntouched);
    entry.pseudoPlanar(src.data(), w, h, packed ? 0 : src.stride(), luma.data(), c.data(), stride(luma), stride(c));
    expectPlane(luma, e.y, w, 1, 0, what + " pseudo-planar Y");
    expectPlane(c, e.cb, e.chromaWidth, 2, 0, what + " pseudo-planar Cb");
    expectPlane(c, e.cr, e.chromaWidth, 2, 1, what + " pseudo-planar Cr");
  }
};

TEST_F(ColorFromRgbEntries, EveryFamilyEntryConvertsWholeImagesWithPortableAndVectorRows) {
  std::mt19937 rng(11);
  for (const uint32_t mode : {0x80000002u, ORVIK_OP_CPU_PERFORMANCE}) {
    ASSERT_EQ(ovkSetOperationMode(mode), 0);
    for (const EntryPair& entry : kEntries)
      for (const uint32_t w : {1u, 2u, 5u, 6u, 31u, 64u, 77u})
        for (const uint32_t h : {1u, 2u, 3u, 8u, 9u}) {
          checkEntryPair(entry, w, h, false, rng);
          // Zero strides: the defaults, exactly the packed rows.
          checkEntryPair(entry, w, h, true, rng);
        }
  }
}

TEST_F(ColorFromRgbEntries, OddWidth420WritesNoLumaOnEvenRows) {
  GuardedImage src(5, 4, 15, 3), y(5, 4, 5), cb(3, 2, 3), cr(3, 2, 3);
  src.fill(200);
  for (GuardedImage* plane : {&y, &cb, &cr}) plane->fill(kUntouched);
  ovkColorRGB888ToYCbCr420Planaru8(src.data(), 5, 4, 15, y.data(), cb.data(), cr.data(), 5, 3, 3);
  for (uint32_t x = 0; x < 5; ++x) {
    EXPECT_EQ(y.at(x, 0), kUntouched);
    EXPECT_EQ(y.at(x, 1), 200);  // gray stays gray: 256 * 200 / 256
    EXPECT_EQ(y.at(x, 2), kUntouched);
  }
  EXPECT_EQ(cb.at(0, 0), kUntouched);
}

TEST_F(ColorFromRgbEntries, InterleavedYCrCbAndGrayEntries) {
  std::mt19937 rng(13);
  for (const uint32_t w : {1u, 7u, 16u, 33u, 100u})
    for (const uint32_t h : {1u, 4u}) {
      GuardedImage src(w, h, w * 3, 3), packed(w, h, w * 3, 3), strided(w, h, w * 3 + 5, 3);
      GuardedImage gray(w, h, w), grayStrided(w, h, w + 3);
      src.fillRandom(rng);
      for (GuardedImage* out : {&packed, &strided, &gray, &grayStrided}) out->fill(kUntouched);
      ovkColorRGB888toYCrCbu8(src.data(), w, h, packed.data());
      ovkColorRGB888toYCrCbu8_v2(src.data(), w, h, 0, strided.data(), strided.stride());
      ovkColorRGB888ToGrayu8(src.data(), w, h, 0, gray.data(), 0);
      ovkColorRGB888ToGrayu8(src.data(), w, h, w * 3, grayStrided.data(), grayStrided.stride());
      ASSERT_TRUE(strided.paddingIntact() && grayStrided.paddingIntact());
      for (uint32_t y = 0; y < h; ++y)
        for (uint32_t x = 0; x < w; ++x) {
          const uint8_t* p = src.row(y) + 3 * x;
          const Ycc v = ycrcbOf(p[0], p[1], p[2]);
          for (const GuardedImage* out : {&packed, &strided})
            ASSERT_EQ((std::vector<int>{out->row(y)[3 * x], out->row(y)[3 * x + 1], out->row(y)[3 * x + 2]}),
                      (std::vector<int>{v.y, v.cr, v.cb}));
          ASSERT_EQ(gray.at(x, y), grayOf(p[0], p[1], p[2]));
          ASSERT_EQ(grayStrided.at(x, y), grayOf(p[0], p[1], p[2]));
        }
    }
}

TEST_F(ColorFromRgbEntries, RejectedArgumentsLogTheConditionAndWriteNothing) {
  GuardedImage src(8, 4, 32), y(8, 4, 8), cb(8, 4, 16), cr(8, 4, 8);
  src.fill(7);
  for (GuardedImage* plane : {&y, &cb, &cr}) plane->fill(kUntouched);
  LogCapture log;
  ovkColorRGB565ToYCbCr444Planaru8(src.data(), 8, 4, 15, y.data(), cb.data(), cr.data(), 8, 8, 8);
  ovkColorRGB888ToYCbCr420Planaru8(src.data(), 8, 4, 0, y.data(), cb.data(), cr.data(), 0, 3, 0);
  ovkColorRGBA8888ToYCbCr444PseudoPlanaru8(src.data(), 8, 4, 0, y.data(), cb.data(), 0, 15);
  ovkColorRGB565ToYCbCr420PseudoPlanaru8(src.data(), 8, 4, 0, y.data(), nullptr, 0, 0);
  ovkColorRGB888ToYCbCr422PseudoPlanaru8(src.data(), 8, 4, 23, y.data(), cb.data(), 0, 0);
  ovkColorRGB888toYCrCbu8(src.data(), 8, 0, y.data());
  ovkColorRGB888toYCrCbu8_v2(src.data(), 8, 4, 0, y.data(), 23);
  ovkColorRGB888ToGrayu8(src.data(), 8, 4, 0, y.data(), 7);
  const std::vector<std::string> expected = {
      "Assertion failed @ovkColorRGB565ToYCbCr444Planaru8: src && dstY && dstCb && dstCr && srcWidth && srcHeight && "
      "( srcStride == 0 || srcStride >= (srcWidth*2) ) && ( dstYStride == 0 || dstYStride >= srcWidth ) && "
      "( dstCbStride == 0 || dstCbStride >= srcWidth ) && ( dstCrStride == 0 || dstCrStride >= srcWidth )\n",
      "Assertion failed @ovkColorRGB888ToYCbCr420Planaru8: src && dstY && dstCb && dstCr && srcWidth && srcHeight && "
      "( srcStride == 0 || srcStride >= (srcWidth*3) ) && ( dstYStride == 0 || dstYStride >= srcWidth ) && "
      "( dstCbStride == 0 || dstCbStride >= ((srcWidth+1)/2) ) && ( dstCrStride == 0 || dstCrStride >= "
      "((srcWidth+1)/2) )\n",
      "Assertion failed @ovkColorRGBA8888ToYCbCr444PseudoPlanaru8: src && dstY && dstC && srcWidth && srcHeight && "
      "( srcStride == 0 || srcStride >= (srcWidth*4) ) && ( dstYStride == 0 || dstYStride >= srcWidth ) && "
      "( dstCStride == 0 || dstCStride >= (srcWidth*2) )\n",
      "Assertion failed @ovkColorRGB565ToYCbCr420PseudoPlanaru8: src && dstY && dstC && srcWidth && srcHeight && "
      "( srcStride == 0 || srcStride >= (srcWidth*2)) && ( dstYStride == 0 || dstYStride >= srcWidth ) && "
      "( dstCStride == 0 || dstCStride >= srcWidth )\n",
      "Assertion failed @ovkColorRGB888ToYCbCr422PseudoPlanaru8: src && dstY && dstC && srcWidth && srcHeight && "
      "( srcStride == 0 || srcStride >= (srcWidth*3)) && ( dstYStride == 0 || dstYStride >= srcWidth ) && "
      "( dstCStride == 0 || dstCStride >= srcWidth )\n",
      "Assertion failed @ovkColorRGB888toYCrCbu8: src && dst && srcWidth && srcHeight\n",
      "Assertion failed @ovkColorRGB888toYCrCbu8_v2: src && dst && srcWidth && srcHeight && "
      "(srcStride >= srcWidth * 3) && (dstStride >= srcWidth * 3)\n",
      "Assertion failed @ovkColorRGB888ToGrayu8: src && srcWidth && srcHeight && (srcStride ==0 || "
      "srcStride >= srcWidth*3) && dst && (dstStride ==0 || dstStride >= srcWidth)\n"};
  EXPECT_EQ(log.messages(), expected);
  for (const LogLine& line : log.lines()) EXPECT_EQ(line.priority, 6);
  for (const GuardedImage* plane : {&y, &cb, &cr})
    for (uint32_t row = 0; row < plane->height(); ++row)
      for (uint32_t x = 0; x < plane->width(); ++x) ASSERT_EQ(plane->at(x, row), kUntouched);
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
  const size_t bytes = 184 * 144 * 3;
  GuardedBuffer srcBuffer(bytes), dstBuffer(bytes);
  uint8_t *src = srcBuffer.data(), *dst = dstBuffer.data();
  std::mt19937 rng(23);
  std::generate_n(src, bytes, [&] { return uint8_t(rng()); });
  LogCapture log;
  // First generation counts pixels: 176 x 144 = 25344 is not above the floor.
  ovkColorRGB888toYCrCbu8(src, 176, 144, dst);
  ovkColorRGB888toYCrCbu8(src, 184, 144, dst);
  // _v2 counts stride bytes: 192 x 132 = 25344 is not above it either.
  ovkColorRGB888toYCrCbu8_v2(src, 64, 132, 192, dst, 192);
  ovkColorRGB888toYCrCbu8_v2(src, 64, 144, 192, dst, 192);
  const std::vector<std::string> expected = {"ovkColorRGB888toYCrCbu8_PELAR", "ovkColorRGB888toYCrCbu8_RDSP",
                                             "ovkColorRGB888toYCrCbu8_v2_PELAR", "ovkColorRGB888toYCrCbu8_v2_RDSP"};
  EXPECT_EQ(log.messages(), expected);
  // Without a DSP kernel for the group its DSP entry runs the vector code.
  for (size_t i = 0; i < size_t(64) * 144; ++i) {
    const uint8_t* p = src + 3 * i;
    const Ycc v = ycrcbOf(p[0], p[1], p[2]);
    ASSERT_EQ((std::vector<int>{dst[3 * i], dst[3 * i + 1], dst[3 * i + 2]}), (std::vector<int>{v.y, v.cr, v.cb}))
        << "pixel " << i;
  }
}

// ---- Vector == portable ------------------------------------------------------------

std::vector<uint32_t> vectorWidths() {
  std::vector<uint32_t> widths;
  for (uint32_t w = 1; w <= 80; ++w) widths.push_back(w);
  for (const uint32_t w : {127u, 128u, 129u, 255u, 256u, 641u, 1920u}) widths.push_back(w);
  return widths;
}

void expectNeonOnArm(const std::vector<std::string>& targets) {
#if defined(__ARM_NEON)
  EXPECT_NE(std::find(targets.begin(), targets.end(), "NEON"), targets.end()) << ::testing::PrintToString(targets);
#else
  EXPECT_FALSE(targets.empty());
#endif
}

void expectSameRows(const RowKernel& row, const uint8_t* src, uint32_t width, const std::string& what) {
  RowOutput portable(width), vector(width);
  runRow(row.portable, row.kind(), src, width, portable);
  runRow(row.vector(), row.kind(), src, width, vector);
  for (const auto& [p, v, plane] :
       {std::make_tuple(&portable.y, &vector.y, "Y"), std::make_tuple(&portable.cb, &vector.cb, "Cb"),
        std::make_tuple(&portable.cr, &vector.cr, "Cr"), std::make_tuple(&portable.c, &vector.c, "CbCr")})
    ASSERT_TRUE(std::equal(p->data(), p->data() + p->size(), v->data())) << what << " " << plane;
}

TEST(ColorFromRgbVector, RowKernelsMatchPortableOnEveryTarget) {
  std::mt19937 rng(17);
  std::vector<std::string> targets;
  forEachVectorTarget([&](const std::string& target) {
    targets.push_back(target);
    for (const RowKernel& row : kRowKernels) {
      const uint32_t bpp = bytesPerPixel(row.format());
      const std::vector<uint8_t> dense = denseRow(row.format(), rng);
      expectSameRows(row, guardedCopy(dense)->data(), uint32_t(dense.size() / bpp), target + " " + row.stem);
      for (const uint32_t width : vectorWidths()) {
        std::vector<uint8_t> bytes(width * bpp);
        for (uint8_t& byte : bytes) byte = uint8_t(rng());
        expectSameRows(row, guardedCopy(bytes)->data(), width, target + " " + row.stem + " " + std::to_string(width));
      }
    }
  });
  expectNeonOnArm(targets);
}

TEST(ColorFromRgbVector, GrayAndYCrCbMatchPortableOnEveryTarget) {
  std::mt19937 rng(19);
  std::vector<std::string> targets;
  forEachVectorTarget([&](const std::string& target) {
    targets.push_back(target);
    const struct {
      const char* name;
      ovkColorRGB888ToGrayu8Fn portable, vector;
      uint32_t dstBytes;
    } kernels[] = {{"gray", ovkColorRGB888ToGrayu8C, ovkVectorColorRGB888ToGrayu8(), 1},
                   {"YCrCb", ovkColorRGB888toYCrCbu8C, ovkVectorColorRGB888toYCrCbu8(), 3}};
    for (const auto& kernel : kernels)
      for (const uint32_t width : vectorWidths()) {
        const uint32_t height = 1 + rng() % 5, srcStride = width * 3 + rng() % 7;
        const uint32_t dstStride = width * kernel.dstBytes + rng() % 5;
        GuardedImage src(width, height, srcStride, 3);
        GuardedImage portable(width, height, dstStride, kernel.dstBytes),
            vector(width, height, dstStride, kernel.dstBytes);
        src.fillRandom(rng);
        portable.fill(kUntouched);
        vector.fill(kUntouched);
        kernel.portable(src.data(), width, height, srcStride, portable.data(), dstStride);
        kernel.vector(src.data(), width, height, srcStride, vector.data(), dstStride);
        ASSERT_TRUE(vector.paddingIntact());
        for (uint32_t y = 0; y < height; ++y)
          ASSERT_TRUE(std::equal(portable.row(y), portable.row(y) + width * kernel.dstBytes, vector.row(y)))
              << target << " " << kernel.name << " " << width << "x" << height << " row " << y;
      }
    // Every (G, R) pair with B in steps of 15, as one image.
    const std::vector<uint8_t> dense = denseRow(Format::kRgb888, rng);
    const auto src = guardedCopy(dense);
    const uint32_t width = 4096, height = uint32_t(dense.size() / 3 / width);
    for (const auto& kernel : kernels) {
      std::vector<uint8_t> portable(size_t(width) * height * kernel.dstBytes), vector(portable.size());
      kernel.portable(src->data(), width, height, width * 3, portable.data(), width * kernel.dstBytes);
      kernel.vector(src->data(), width, height, width * 3, vector.data(), width * kernel.dstBytes);
      ASSERT_EQ(portable, vector) << target << " " << kernel.name << " dense";
    }
  });
  expectNeonOnArm(targets);
}

}  // namespace
