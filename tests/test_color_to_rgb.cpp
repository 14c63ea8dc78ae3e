// YCbCr to RGB against the conversion formulas written out per pixel: the
// portable kernels, the vector kernels of every target and the entries, over
// dense values and many shapes; hand-computed edge cases, the RGB565 layout,
// rotation, odd sizes, strides and the fatal checks, all on guard-page
// buffers.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "cpu/orvikColorToRgb.h"
#include "support/color_reference.h"
#include "support/entry_test.h"
#include "support/guarded_image.h"

namespace {

// ---- Output checks ----------------------------------------------------------------

enum class Out { k565 = 2, k888 = 3, kA8888 = 4 };

using Expected = std::function<Rgb(uint32_t x, uint32_t y)>;

// Every pixel of `dst` (width x height of `out` pixels) as expected, its row
// padding untouched.  Rotated output holds source pixel (x, y) at
// (width - 1 - x, height - 1 - y).
void expectPixels(const GuardedImage& dst, Out out, const Expected& expected, const std::string& what,
                  bool rotated = false) {
  ASSERT_TRUE(dst.paddingIntact()) << what;
  const uint32_t w = dst.width(), h = dst.height(), bytes = uint32_t(out);
  for (uint32_t y = 0; y < h; ++y)
    for (uint32_t x = 0; x < w; ++x) {
      const Rgb want = expected(x, y);
      const uint8_t* p = dst.row(rotated ? h - 1 - y : y) + (rotated ? w - 1 - x : x) * bytes;
      const std::string where = what + " at (" + std::to_string(x) + "," + std::to_string(y) + ")";
      if (out == Out::k565) {
        ASSERT_EQ(p[0] | (p[1] << 8), rgb565Word(want)) << where;
      } else {
        ASSERT_EQ((std::array<int, 4>{p[0], p[1], p[2], out == Out::kA8888 ? p[3] : 255}),
                  (std::array<int, 4>{want.r, want.g, want.b, 255}))
            << where;
      }
    }
}

// ---- The planar and pseudo-planar family ------------------------------------------

using PlanarFn = ovkColorYCbCr444PlanarToRGB565u8Fn;
using PseudoPlanarFn = ovkColorYCbCr444PseudoPlanarToRGB565u8Fn;

struct Member {
  std::string name;
  uint32_t shiftX, shiftY;
  bool planar;
  Out out;
  ovkFuncPtr portable;
  ovkFuncPtr (*vector)();
  ovkFuncPtr entry;
};

#define OVK_MEMBER(Sampling, Layout, Output, ShiftX, ShiftY)                             \
  {"ovkColorYCbCr" #Sampling #Layout "ToRGB" #Output "u8",                               \
   ShiftX,                                                                               \
   ShiftY,                                                                               \
   std::string(#Layout) == "Planar",                                                     \
   Out::k##Output,                                                                       \
   asPointer(ovkColorYCbCr##Sampling##Layout##ToRGB##Output##u8C),                       \
   [] { return asPointer(ovkVectorColorYCbCr##Sampling##Layout##ToRGB##Output##u8()); }, \
   asPointer(ovkColorYCbCr##Sampling##Layout##ToRGB##Output##u8)},
const Member kMembers[] = {OVK_YCC_FAMILY(OVK_MEMBER)};
#undef OVK_MEMBER

// A random source of one member's layout, with `padding` bytes after each row.
struct FamilyFrame {
  FamilyFrame(const Member& m, uint32_t width, uint32_t height, uint32_t padding, std::mt19937& rng)
      : m(m),
        chromaWidth(m.shiftX ? (width + 1) / 2 : width),
        pairRowBytes(m.shiftX ? width : 2 * width),
        y(width, height, width + padding),
        cb(chromaWidth, m.shiftY ? (height + 1) / 2 : height, chromaWidth + padding),
        cr(chromaWidth, cb.height(), chromaWidth + padding),
        c(pairRowBytes, cb.height(), pairRowBytes + padding) {
    for (GuardedImage* plane : {&y, &cb, &cr, &c}) plane->fillRandom(rng);
  }

  // The pseudo-planar Cr of an odd width's last column is the byte after the
  // row, 128 on the last chroma row.
  Rgb expected(uint32_t x, uint32_t row) const {
    const uint32_t i = x >> m.shiftX, j = row >> m.shiftY;
    if (m.planar) return fullRangeQ8(y.at(x, row), cb.at(i, j), cr.at(i, j));
    const bool crPastPlane = 2 * i + 1 >= pairRowBytes && j + 1 == c.height();
    return fullRangeQ8(y.at(x, row), c.at(2 * i, j), crPastPlane ? 128 : c.row(j)[2 * i + 1]);
  }

  // Zero source strides leave them to the entry.
  void convert(ovkFuncPtr fn, uint8_t* dst, uint32_t dstStride, bool zeroStrides) const {
    const auto stride = [&](const GuardedImage& image) { return zeroStrides ? 0u : image.stride(); };
    if (m.planar)
      reinterpret_cast<PlanarFn>(fn)(y.data(), cb.data(), cr.data(), y.width(), y.height(), stride(y), stride(cb),
                                     stride(cr), dst, dstStride);
    else
      reinterpret_cast<PseudoPlanarFn>(fn)(y.data(), c.data(), y.width(), y.height(), stride(y), stride(c), dst,
                                           dstStride);
  }

  const Member& m;
  uint32_t chromaWidth, pairRowBytes;
  GuardedImage y, cb, cr, c;
};

// A destination of `out` pixels, every byte of it kUntouched.
struct OutputImage : GuardedImage {
  OutputImage(uint32_t width, uint32_t height, uint32_t stride, Out out)
      : GuardedImage(width, height, stride, uint32_t(out)) {
    fill(kUntouched);
  }
};

// Columns run through every luma value, rows through a grid of chroma pairs
// that includes the centre.
TEST(YccToRgbFamily, FullRangeOverDenseValues) {
  std::vector<int> chroma = {127, 128, 129};
  for (int c = 0; c < 256; c += 5) chroma.push_back(c);
  const uint32_t height = uint32_t(chroma.size() * chroma.size());
  std::mt19937 rng(2);
  const Member& m = *std::find_if(std::begin(kMembers), std::end(kMembers),
                                  [](const Member& m) { return m.name == "ovkColorYCbCr444PlanarToRGB888u8"; });
  FamilyFrame frame(m, 256, height, 0, rng);
  for (uint32_t row = 0; row < height; ++row)
    for (uint32_t x = 0; x < 256; ++x) {
      frame.y.at(x, row) = uint8_t(x);
      frame.cb.at(x, row) = uint8_t(chroma[row / chroma.size()]);
      frame.cr.at(x, row) = uint8_t(chroma[row % chroma.size()]);
    }
  forPortableAndEveryVectorTarget([&](const std::string& variant, bool vector) {
    OutputImage dst(256, height, 256 * 3, Out::k888);
    frame.convert(vector ? m.vector() : m.portable, dst.data(), dst.stride(), false);
    expectPixels(
        dst, Out::k888, [&](uint32_t x, uint32_t y) { return frame.expected(x, y); }, variant);
  });
}

// The references at hand-computed points.  Full range: R (32896 + 359 * 127)
// >> 8 = 306 clamps, G (32896 - 183 * 127) >> 8 = 37; B (32896 - 454 * 128)
// >> 8 < 0 clamps, G (32896 + 88 * 128) >> 8 = 172; RGB565 with R
// in the low bits.  Video range: Y up to 16 is black, Y 235 is not quite white
// ((219 * 1192) >> 10 = 254) in Q10 but (298 * 235 - 4768) >> 8 = 254 is
// white in RGB565, Y 255 saturates.  Blocks: Cb = Cr = 128 is 1/255 above
// the centre, R and B gain one, G loses one.
TEST(YccToRgbReference, HandComputedPoints) {
  using Triple = std::array<int, 3>;
  EXPECT_EQ(channels(fullRangeQ8(0, 128, 128)), (Triple{0, 0, 0}));
  EXPECT_EQ(channels(fullRangeQ8(255, 128, 128)), (Triple{255, 255, 255}));
  EXPECT_EQ(channels(fullRangeQ8(128, 128, 255)), (Triple{255, 37, 128}));
  EXPECT_EQ(channels(fullRangeQ8(128, 0, 128)), (Triple{128, 172, 0}));
  EXPECT_EQ((Triple{rgb565Word({128, 128, 128}), rgb565Word({255, 37, 128}), rgb565Word({128, 172, 0})}),
            (Triple{0x8410, 0x813F, 0x0570}));
  EXPECT_EQ((Triple{videoRangeQ10(0, 128, 128).r, videoRangeQ10(15, 128, 128).g, videoRangeQ10(16, 128, 128).b}),
            (Triple{0, 0, 0}));
  EXPECT_EQ(channels(videoRangeQ10(235, 128, 128)), (Triple{254, 254, 254}));
  EXPECT_EQ(channels(videoRangeQ10(255, 128, 128)), (Triple{255, 255, 255}));
  EXPECT_EQ(rgb565Word(videoRangeQ8(16, 128, 128)), 0);
  EXPECT_EQ(rgb565Word(videoRangeQ8(235, 128, 128)), 0xFFFF);
  EXPECT_EQ(channels(blockQ15(52, 128, 128)), (Triple{53, 51, 53}));
  EXPECT_EQ(channels(blockQ15(0, 128, 128)), (Triple{1, 0, 1}));
}

TEST(YccToRgbFamilyDeathTest, SubsampledRowsOfOneColumnEndTheProcess) {
  ASSERT_EQ(ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE), 0);
  GuardedImage y(1, 2, 1), cb(1, 1, 1), cr(1, 1, 1), c(2, 1, 2), dst(1, 2, 4);
  EXPECT_DEATH(ovkColorYCbCr420PlanarToRGB888u8C(y.data(), cb.data(), cr.data(), 1, 2, 1, 1, 1, dst.data(), 3),
               "length > 1 Assertion failed");
  EXPECT_DEATH(ovkColorYCbCr422PseudoPlanarToRGB565u8C(y.data(), c.data(), 1, 2, 1, 2, dst.data(), 2),
               "length > 1 Assertion failed");
  EXPECT_DEATH(ovkColorYCbCr422PseudoPlanarToRGBA8888u8(y.data(), c.data(), 1, 2, 0, 0, dst.data(), 0),
               "length > 1 Assertion failed");
  forEachVectorTarget([&](const std::string&) {
    EXPECT_DEATH(
        ovkVectorColorYCbCr422PlanarToRGBA8888u8()(y.data(), cb.data(), cr.data(), 1, 2, 1, 1, 1, dst.data(), 4),
        "length > 1 Assertion failed");
  });
}

// ---- Camera frames ------------------------------------------------------------------

// Luma rows of `width` bytes at yStride, then chroma rows of `width` bytes at
// cStride; the last chroma row ends at the guard page.
class CameraFrame {
 public:
  CameraFrame(uint32_t width, uint32_t height, uint32_t yStride, uint32_t cStride, std::mt19937& rng)
      : width_(width),
        height_(height),
        yStride_(yStride),
        cStride_(cStride),
        buffer_(size_t(yStride) * height + size_t(cStride) * ((height + 1) / 2 - 1) + width) {
    for (size_t i = 0; i < buffer_.size(); ++i) buffer_.data()[i] = uint8_t(rng());
  }

  uint8_t* data() const { return buffer_.data(); }
  uint8_t luma(uint32_t x, uint32_t y) const { return buffer_.data()[size_t(y) * yStride_ + x]; }
  // Byte `k` of the pair of pixel (x, y); 128 past the plane.
  uint8_t pairByte(uint32_t x, uint32_t y, uint32_t k) const {
    const uint32_t at = (x & ~1u) + k, row = y / 2;
    if (at >= width_ && row + 1 == (height_ + 1) / 2) return 128;
    return buffer_.data()[size_t(yStride_) * height_ + size_t(row) * cStride_ + at];
  }
  uint8_t* chroma(uint32_t row) { return buffer_.data() + size_t(yStride_) * height_ + size_t(row) * cStride_; }

 private:
  uint32_t width_, height_, yStride_, cStride_;
  GuardedBuffer buffer_;
};

Expected cameraRgba(const CameraFrame& f) {
  return [&f](uint32_t x, uint32_t y) { return videoRangeQ10(f.luma(x, y), f.pairByte(x, y, 1), f.pairByte(x, y, 0)); };
}

Expected camera565(const CameraFrame& f) {
  return [&f](uint32_t x, uint32_t y) { return videoRangeQ8(f.luma(x, y), f.pairByte(x, y, 0), f.pairByte(x, y, 1)); };
}

// Every chroma pair, luma over every value, portable and vector.
TEST(YccToRgbCamera, VideoRangesOverDenseValues) {
  const uint32_t width = 512, height = 512;
  std::mt19937 rng(1);
  CameraFrame frame(width, height, width, width, rng);
  for (uint32_t y = 0; y < height; ++y)
    for (uint32_t x = 0; x < width; ++x) frame.data()[size_t(y) * width + x] = uint8_t(x + y / 2);
  for (uint32_t row = 0; row < height / 2; ++row)
    for (uint32_t x = 0; x < width; x += 2) {
      frame.chroma(row)[x] = uint8_t(row);
      frame.chroma(row)[x + 1] = uint8_t(x / 2 + row * 3);
    }
  forPortableAndEveryVectorTarget([&](const std::string& variant, bool vector) {
    OutputImage rgba(width, height, width * 4, Out::kA8888), rgb565(width, height, width * 2, Out::k565);
    (vector ? ovkVectorColorYUV420toRGB8888u8() : ovkColorYUV420toRGB8888u8C)(frame.data(), width, height, width, width,
                                                                              rgba.data(), width * 4);
    (vector ? ovkVectorColorYUV420toRGB565u8() : ovkColorYUV420toRGB565u8C)(frame.data(), width, height, rgb565.data());
    expectPixels(rgba, Out::kA8888, cameraRgba(frame), variant + " rgba");
    expectPixels(rgb565, Out::k565, camera565(frame), variant + " 565");
  });
}

// ---- Block-ordered units ----------------------------------------------------------------

struct BlockKind {
  std::string name;
  uint32_t shiftX, shiftY;
  ovkColorYCrCbH1V1toRGB888u8Fn portable, entry;
  ovkColorYCrCbH1V1toRGB888u8Fn (*vector)();
};

const BlockKind kBlockKinds[] = {
    {"H1V1", 0, 0, ovkColorYCrCbH1V1toRGB888u8C, ovkColorYCrCbH1V1toRGB888u8, ovkVectorColorYCrCbH1V1toRGB888u8},
    {"H2V1", 1, 0, ovkColorYCrCbH2V1toRGB888u8C, ovkColorYCrCbH2V1toRGB888u8, ovkVectorColorYCrCbH2V1toRGB888u8},
    {"H1V2", 0, 1, ovkColorYCrCbH1V2toRGB888u8C, ovkColorYCrCbH1V2toRGB888u8, ovkVectorColorYCrCbH1V2toRGB888u8},
    {"H2V2", 1, 1, ovkColorYCrCbH2V2toRGB888u8C, ovkColorYCrCbH2V2toRGB888u8, ovkVectorColorYCrCbH2V2toRGB888u8}};

class BlockFrame {
 public:
  BlockFrame(const BlockKind& k, uint32_t width, uint32_t height, std::mt19937& rng)
      : k_(k),
        unitWidth_(8u << k.shiftX),
        unitHeight_(8u << k.shiftY),
        unitsPerRow_((width + unitWidth_ - 1) / unitWidth_),
        buffer_(size_t(unitsPerRow_) * ((height + unitHeight_ - 1) / unitHeight_) * (unitWidth_ * unitHeight_ + 128)) {
    for (size_t i = 0; i < buffer_.size(); ++i) buffer_.data()[i] = uint8_t(rng());
  }

  uint8_t* data() { return buffer_.data(); }

  Rgb expected(uint32_t x, uint32_t y) const {
    const uint32_t lumaBytes = unitWidth_ * unitHeight_;
    const uint8_t* unit =
        buffer_.data() + size_t((y / unitHeight_) * unitsPerRow_ + x / unitWidth_) * (lumaBytes + 128);
    const uint32_t ux = x % unitWidth_, uy = y % unitHeight_;
    const uint32_t block = (uy / 8) * (unitWidth_ / 8) + ux / 8;
    const uint32_t sample = (uy >> k_.shiftY) * 8 + (ux >> k_.shiftX);
    return blockQ15(unit[block * 64 + (uy % 8) * 8 + ux % 8], unit[lumaBytes + sample], unit[lumaBytes + 64 + sample]);
  }

 private:
  const BlockKind& k_;
  uint32_t unitWidth_, unitHeight_, unitsPerRow_;
  GuardedBuffer buffer_;
};

// ---- Kernels and entries on many shapes --------------------------------------------

TEST(YccToRgbConversions, FamilyMatchesTheFormula) {
  std::mt19937 rng(23);
  forEveryVariant([&](const std::string& variant, Variant v) {
    for (const Member& m : kMembers)
      for (const uint32_t width : testWidths()) {
        if (width == 1 && m.shiftX) continue;  // fatal by design
        // Zero strides (the entries' defaults) over unpadded rows.
        const bool zeroStrides = v == Variant::kEntry && width % 3 == 0;
        const uint32_t height = 1 + width % 6, srcPad = zeroStrides ? 0 : rng() % 9,
                       dstPad = zeroStrides ? 0 : rng() % 13;
        FamilyFrame frame(m, width, height, srcPad, rng);
        OutputImage dst(width, height, width * uint32_t(m.out) + dstPad, m.out);
        frame.convert(pick(v, m.portable, m.vector, m.entry), dst.data(), zeroStrides ? 0 : dst.stride(), zeroStrides);
        expectPixels(
            dst, m.out, [&](uint32_t x, uint32_t y) { return frame.expected(x, y); },
            variant + " " + m.name + " " + std::to_string(width) + "x" + std::to_string(height));
      }
  });
}

TEST(YccToRgbConversions, CameraAndBlockFramesMatchTheFormula) {
  std::mt19937 rng(29);
  forEveryVariant([&](const std::string& variant, Variant v) {
    for (const uint32_t width : testWidths()) {
      const uint32_t height = 1 + width % 6;
      const std::string what = variant + " " + std::to_string(width) + "x" + std::to_string(height);
      const uint32_t yStride = width + rng() % 7, cStride = width + rng() % 7;
      CameraFrame frame(width, height, yStride, cStride, rng);
      OutputImage rgba(width, height, width * 4 + rng() % 9, Out::kA8888);
      pick(v, ovkColorYCrCb420PseudoPlanarToRGB8888u8C, ovkVectorColorYCrCb420PseudoPlanarToRGB8888u8,
           ovkColorYCrCb420PseudoPlanarToRGB8888u8)(frame.data(), width, height, yStride, cStride, rgba.data(),
                                                    rgba.stride());
      expectPixels(rgba, Out::kA8888, cameraRgba(frame), what);

      CameraFrame packed(width, height, width, width, rng);
      OutputImage upright(width, height, width * 2, Out::k565), rotated(width, height, width * 2, Out::k565);
      pick(v, ovkColorYUV420toRGB565u8C, ovkVectorColorYUV420toRGB565u8, ovkColorYUV420toRGB565u8)(
          packed.data(), width, height, upright.data());
      pick(v, ovkColorYUV420toRGB565u8Rotate180C, ovkVectorColorYUV420toRGB565u8Rotate180,
           ovkColorYUV420toRGB565u8Rotate180)(packed.data(), width, height, rotated.data());
      expectPixels(upright, Out::k565, camera565(packed), what + " 565");
      expectPixels(rotated, Out::k565, camera565(packed), what + " 565 rotated", true);
      if (v == Variant::kEntry) {  // the RGBA entry without strides
        OutputImage packedRgba(width, height, width * 4, Out::kA8888);
        ovkColorYUV420toRGB8888u8(packed.data(), width, height, packedRgba.data());
        expectPixels(packedRgba, Out::kA8888, cameraRgba(packed), what + " packed");
      }

      for (const BlockKind& kind : kBlockKinds) {
        BlockFrame blocks(kind, width, height * 7, rng);
        OutputImage dst(width, height * 7, width * 3, Out::k888);
        pick(v, kind.portable, kind.vector, kind.entry)(blocks.data(), width, height * 7, dst.data());
        expectPixels(
            dst, Out::k888, [&](uint32_t x, uint32_t y) { return blocks.expected(x, y); }, what + " " + kind.name);
      }
    }
  });
}

}  // namespace
