// YCbCr to RGB: the portable kernels and the vector kernels of every target
// against the conversion formulas written out per pixel here, over dense
// values and many shapes; hand-computed edge cases, the RGB565 layout,
// rotation, odd sizes, strides and the entries' condition texts, all on
// guard-page buffers.
#include <gtest/gtest.h>
#include <string.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "cpu/orvikColorToRgb.h"
#include "support/guarded_image.h"
#include "support/log_capture.h"
#include "support/vector_targets.h"

namespace {

constexpr uint8_t kUntouched = 0x5C;

struct Rgb {
  int r, g, b;
};

int clamp255(int v) { return v < 0 ? 0 : v > 255 ? 255 : v; }

// ---- The four conversions, straight from their definitions --------------------

Rgb fullRangeQ8(int Y, int Cb, int Cr) {
  const int y = (Y << 8) + 128, u = Cb - 128, v = Cr - 128;
  return {clamp255((y + 359 * v) >> 8), clamp255((y - 88 * u - 183 * v) >> 8), clamp255((y + 454 * u) >> 8)};
}

Rgb videoRangeQ10(int Y, int Cb, int Cr) {
  const int y = std::max(Y - 16, 0) * 1192, u = Cb - 128, v = Cr - 128;
  const auto channel = [](int value) { return std::min(std::max(value, 0), 0x3FFFF) >> 10; };
  return {channel(y + 1634 * v), channel(y - 833 * v - 400 * u), channel(y + 2066 * u)};
}

Rgb videoRangeQ8(int Y, int Cb, int Cr) {
  const int y = 298 * Y - 4768, u = Cb - 128, v = Cr - 128;
  return {clamp255((y + 409 * v) >> 8), clamp255((y - 100 * u - 208 * v) >> 8), clamp255((y + 517 * u) >> 8)};
}

Rgb blockQ15(int Y, int Cb, int Cr) {
  const int cb = 2 * Cb - 255, cr = 2 * Cr - 255;
  return {clamp255(Y + ((22970 * cr + 16384) >> 15)), clamp255(Y + ((-5638 * cb - 11700 * cr + 16384) >> 15)),
          clamp255(Y + ((29032 * cb + 16384) >> 15))};
}

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
        const int word = (want.r >> 3) | ((want.g >> 2) << 5) | ((want.b >> 3) << 11);
        ASSERT_EQ(p[0] | (p[1] << 8), word) << where;
      } else {
        ASSERT_EQ(p[0], want.r) << where;
        ASSERT_EQ(p[1], want.g) << where;
        ASSERT_EQ(p[2], want.b) << where;
        if (out == Out::kA8888) ASSERT_EQ(p[3], 255) << where;
      }
    }
}

// ---- The planar and pseudo-planar family ------------------------------------------

using PlanarFn = ovkColorYCbCr444PlanarToRGB565u8Fn;
using PseudoPlanarFn = ovkColorYCbCr444PseudoPlanarToRGB565u8Fn;

template <class Fn>
ovkFuncPtr asFn(Fn fn) {
  return reinterpret_cast<ovkFuncPtr>(fn);
}

struct Member {
  std::string name;
  uint32_t shiftX, shiftY;
  bool planar;
  Out out;
  ovkFuncPtr portable;
  ovkFuncPtr (*vector)();
  ovkFuncPtr entry;
};

#define OVK_MEMBER(Sampling, Layout, Output, ShiftX, ShiftY)                              \
  Member{"ovkColorYCbCr" #Sampling #Layout "ToRGB" #Output "u8",                          \
         ShiftX,                                                                          \
         ShiftY,                                                                          \
         std::string(#Layout) == "Planar",                                                \
         Out::k##Output,                                                                  \
         asFn(ovkColorYCbCr##Sampling##Layout##ToRGB##Output##u8C),                       \
         [] { return asFn(ovkVectorColorYCbCr##Sampling##Layout##ToRGB##Output##u8()); }, \
         asFn(ovkColorYCbCr##Sampling##Layout##ToRGB##Output##u8)},
const std::vector<Member>& familyMembers() {
  static const std::vector<Member> members = {OVK_YCC_FAMILY(OVK_MEMBER)};
  return members;
}
#undef OVK_MEMBER

// A random source of one member's layout, with `padding` bytes after each row.
class FamilyFrame {
 public:
  FamilyFrame(const Member& m, uint32_t width, uint32_t height, uint32_t padding, std::mt19937& rng)
      : m_(m),
        width_(width),
        height_(height),
        chromaWidth_(m.shiftX ? (width + 1) / 2 : width),
        chromaRows_(m.shiftY ? (height + 1) / 2 : height),
        pairRowBytes_(m.shiftX ? width : 2 * width),
        y_(width, height, width + padding),
        cb_(chromaWidth_, chromaRows_, chromaWidth_ + padding),
        cr_(chromaWidth_, chromaRows_, chromaWidth_ + padding),
        c_(pairRowBytes_, chromaRows_, pairRowBytes_ + padding) {
    for (GuardedImage* plane : {&y_, &cb_, &cr_, &c_}) plane->fillRandom(rng);
  }

  GuardedImage& y() { return y_; }
  GuardedImage& cb() { return cb_; }
  GuardedImage& cr() { return cr_; }
  GuardedImage& c() { return c_; }

  // The pseudo-planar Cr of an odd width's last column is the byte after the
  // row, 128 on the last chroma row.
  Rgb expected(uint32_t x, uint32_t y) const {
    const uint32_t i = x >> m_.shiftX, j = y >> m_.shiftY;
    if (m_.planar) return fullRangeQ8(y_.at(x, y), cb_.at(i, j), cr_.at(i, j));
    const bool crPastPlane = 2 * i + 1 >= pairRowBytes_ && j + 1 == chromaRows_;
    return fullRangeQ8(y_.at(x, y), c_.at(2 * i, j), crPastPlane ? 128 : c_.row(j)[2 * i + 1]);
  }

  // Strides of 0 leave them to the entry.
  void convert(ovkFuncPtr fn, GuardedImage& dst, bool zeroStrides) const {
    const auto stride = [&](const GuardedImage& image) { return zeroStrides ? 0u : image.stride(); };
    if (m_.planar)
      reinterpret_cast<PlanarFn>(fn)(y_.data(), cb_.data(), cr_.data(), width_, height_, stride(y_), stride(cb_),
                                     stride(cr_), dst.data(), stride(dst));
    else
      reinterpret_cast<PseudoPlanarFn>(fn)(y_.data(), c_.data(), width_, height_, stride(y_), stride(c_), dst.data(),
                                           stride(dst));
  }

 private:
  const Member& m_;
  uint32_t width_, height_, chromaWidth_, chromaRows_, pairRowBytes_;
  GuardedImage y_, cb_, cr_, c_;
};

// A destination of `out` pixels, every byte of it kUntouched.
struct OutputImage : GuardedImage {
  OutputImage(uint32_t width, uint32_t height, uint32_t stride, Out out)
      : GuardedImage(width, height, stride, uint32_t(out)) {
    fill(kUntouched);
  }
};

// Widths around every vector size, and a few wide rows.
std::vector<uint32_t> kernelWidths() {
  std::vector<uint32_t> widths;
  for (uint32_t w = 1; w <= 70; ++w) widths.push_back(w);
  for (const uint32_t w : {127u, 128u, 129u, 255u, 641u}) widths.push_back(w);
  return widths;
}

// Runs `check` for the portable kernels, then for the vector kernels of
// every target; returns the variants' names.
std::vector<std::string> forPortableAndEveryVectorTarget(
    const std::function<void(const std::string& variant, bool vector)>& check) {
  std::vector<std::string> variants = {"portable"};
  check(variants[0], false);
  forEachVectorTarget([&](const std::string& target) {
    variants.push_back(target);
    check(target, true);
  });
  return variants;
}

// 444 planar frames whose columns run through every luma value and whose rows
// walk a dense grid of chroma pairs, portable and vector.
TEST(YccToRgbFamily, FullRangeOverDenseValues) {
  std::vector<int> chroma;
  for (int c = 0; c < 256; c += 5) chroma.push_back(c);
  chroma.push_back(255);
  const uint32_t width = 256, height = uint32_t(chroma.size() * chroma.size());
  GuardedImage y(width, height, width), cb(width, height, width), cr(width, height, width);
  for (uint32_t row = 0; row < height; ++row)
    for (uint32_t x = 0; x < width; ++x) {
      y.at(x, row) = uint8_t(x);
      cb.at(x, row) = uint8_t(chroma[row / chroma.size()]);
      cr.at(x, row) = uint8_t(chroma[row % chroma.size()]);
    }
  const auto check = [&](ovkColorYCbCr444PlanarToRGB888u8Fn kernel, const std::string& what) {
    OutputImage dst(width, height, width * 3, Out::k888);
    kernel(y.data(), cb.data(), cr.data(), width, height, width, width, width, dst.data(), width * 3);
    expectPixels(
        dst, Out::k888,
        [&](uint32_t x, uint32_t row) { return fullRangeQ8(y.at(x, row), cb.at(x, row), cr.at(x, row)); }, what);
  };
  check(ovkColorYCbCr444PlanarToRGB888u8C, "portable");
  forEachVectorTarget([&](const std::string& target) { check(ovkVectorColorYCbCr444PlanarToRGB888u8(), target); });
}

// One pixel of 444 planar input through the RGB888 or RGB565 kernel.
std::vector<uint8_t> fullRangePixel(uint8_t Y, uint8_t Cb, uint8_t Cr, Out out) {
  GuardedImage y(1, 1, 1), cb(1, 1, 1), cr(1, 1, 1), dst(1, 1, 4, 4);
  y.at(0, 0) = Y;
  cb.at(0, 0) = Cb;
  cr.at(0, 0) = Cr;
  const auto kernel = out == Out::k565   ? ovkColorYCbCr444PlanarToRGB565u8C
                      : out == Out::k888 ? ovkColorYCbCr444PlanarToRGB888u8C
                                         : ovkColorYCbCr444PlanarToRGBA8888u8C;
  kernel(y.data(), cb.data(), cr.data(), 1, 1, 1, 1, 1, dst.data(), 4);
  return std::vector<uint8_t>(dst.data(), dst.data() + uint32_t(out));
}

TEST(YccToRgbFamily, HandComputedCasesAndTheRgb565Layout) {
  using Bytes = std::vector<uint8_t>;
  EXPECT_EQ(fullRangePixel(0, 128, 128, Out::k888), (Bytes{0, 0, 0}));
  EXPECT_EQ(fullRangePixel(255, 128, 128, Out::k888), (Bytes{255, 255, 255}));
  // R = (32896 + 359 * 127) >> 8 = 306 clamps; G = (32896 - 183 * 127) >> 8 = 37.
  EXPECT_EQ(fullRangePixel(128, 128, 255, Out::k888), (Bytes{255, 37, 128}));
  EXPECT_EQ(fullRangePixel(128, 128, 255, Out::kA8888), (Bytes{255, 37, 128, 255}));
  // B = (32896 - 454 * 128) >> 8 < 0 clamps to 0; G = (32896 + 88 * 128) >> 8 = 172.
  EXPECT_EQ(fullRangePixel(128, 0, 128, Out::k888), (Bytes{128, 172, 0}));
  // 565 words: grey 128 = 16 | 32 << 5 | 16 << 11 = 0x8410; (255, 37, 128) =
  // 31 | 9 << 5 | 16 << 11 = 0x813F; white 0xFFFF; low byte first.
  EXPECT_EQ(fullRangePixel(128, 128, 128, Out::k565), (Bytes{0x10, 0x84}));
  EXPECT_EQ(fullRangePixel(128, 128, 255, Out::k565), (Bytes{0x3F, 0x81}));
  EXPECT_EQ(fullRangePixel(255, 128, 128, Out::k565), (Bytes{0xFF, 0xFF}));
  EXPECT_EQ(fullRangePixel(128, 0, 128, Out::k565), (Bytes{0x70, 0x05}));  // 16 | 43 << 5 | 0
}

// An odd width's last column takes its pair's Cb; the Cr is the byte after
// the row, or 128 on the last chroma row, where that byte is past the plane.
TEST(YccToRgbFamily, OddWidthLastColumnChroma) {
  const uint32_t width = 3, height = 4, stride = 6;
  GuardedImage y(width, height, width), c(width, height / 2, stride);
  y.fill(100);
  c.fill(60);
  c.row(0)[3] = 200;  // padding byte after chroma row 0: Cr of column 2, rows 0-1
  OutputImage dst(width, height, width * 3, Out::k888);
  ovkColorYCbCr420PseudoPlanarToRGB888u8C(y.data(), c.data(), width, height, width, stride, dst.data(), width * 3);
  const Rgb top = fullRangeQ8(100, 60, 200), bottom = fullRangeQ8(100, 60, 128);
  EXPECT_EQ(dst.row(1)[6], top.r);
  EXPECT_EQ(dst.row(1)[8], top.b);
  EXPECT_EQ(dst.row(3)[6], bottom.r);
  EXPECT_EQ(dst.row(3)[7], bottom.g);
  EXPECT_EQ(dst.row(3)[3], fullRangeQ8(100, 60, 60).r);  // column 1 pairs normally
}

TEST(YccToRgbFamilyDeathTest, SubsampledRowsOfOneColumnEndTheProcess) {
  GuardedImage y(1, 2, 1), cb(1, 1, 1), cr(1, 1, 1), c(2, 1, 2), dst(1, 2, 4);
  EXPECT_DEATH(ovkColorYCbCr420PlanarToRGB888u8C(y.data(), cb.data(), cr.data(), 1, 2, 1, 1, 1, dst.data(), 3),
               "length > 1 Assertion failed");
  EXPECT_DEATH(ovkColorYCbCr422PseudoPlanarToRGB565u8C(y.data(), c.data(), 1, 2, 1, 2, dst.data(), 2),
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

  const uint8_t* data() const { return buffer_.data(); }
  uint8_t* data() { return buffer_.data(); }
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

Rgb cameraRgba(const CameraFrame& f, uint32_t x, uint32_t y) {
  return videoRangeQ10(f.luma(x, y), f.pairByte(x, y, 1), f.pairByte(x, y, 0));  // Cr first
}

Rgb camera565(const CameraFrame& f, uint32_t x, uint32_t y) {
  return videoRangeQ8(f.luma(x, y), f.pairByte(x, y, 0), f.pairByte(x, y, 1));  // Cb first
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
  const auto check = [&](ovkColorYUV420toRGB8888u8Fn rgbaKernel, ovkColorYUV420toRGB565u8Fn kernel565,
                         const std::string& what) {
    OutputImage rgba(width, height, width * 4, Out::kA8888);
    OutputImage rgb565(width, height, width * 2, Out::k565);
    rgbaKernel(frame.data(), width, height, width, width, rgba.data(), width * 4);
    kernel565(frame.data(), width, height, rgb565.data());
    expectPixels(
        rgba, Out::kA8888, [&](uint32_t x, uint32_t y) { return cameraRgba(frame, x, y); }, what + " rgba");
    expectPixels(
        rgb565, Out::k565, [&](uint32_t x, uint32_t y) { return camera565(frame, x, y); }, what + " 565");
  };
  check(ovkColorYUV420toRGB8888u8C, ovkColorYUV420toRGB565u8C, "portable");
  forEachVectorTarget([&](const std::string& target) {
    check(ovkVectorColorYUV420toRGB8888u8(), ovkVectorColorYUV420toRGB565u8(), target);
  });
}

TEST(YccToRgbCamera, HandComputedCases) {
  EXPECT_EQ(videoRangeQ10(235, 128, 128).g, 254);  // the formula itself: (219 * 1192) >> 10
  std::mt19937 rng(3);
  CameraFrame frame(4, 2, 4, 4, rng);
  const uint8_t luma[8] = {0, 15, 16, 235, 255, 235, 16, 100};
  memcpy(frame.data(), luma, 8);
  memset(frame.chroma(0), 128, 4);
  OutputImage rgba(4, 2, 16, Out::kA8888);
  ovkColorYCrCb420PseudoPlanarToRGB8888u8C(frame.data(), 4, 2, 4, 4, rgba.data(), 16);
  const uint8_t* p = rgba.data();
  EXPECT_EQ(p[0] | p[5] | p[10] | p[8], 0);  // Y 0, 15, 16 are black
  EXPECT_EQ(p[12], 254);                     // Y 235 is not quite white
  EXPECT_EQ(p[15], 255);
  EXPECT_EQ(rgba.row(1)[0], 255);  // Y 255 saturates

  OutputImage rgb565(4, 2, 8, Out::k565);
  ovkColorYUV420toRGB565u8C(frame.data(), 4, 2, rgb565.data());
  EXPECT_EQ(rgb565.data()[4] | rgb565.data()[5], 0);  // Y 16 is black
  // Y 235: (298 * 235 - 4768) >> 8 = 254: R 31, G 63, B 31 -> 0xFFFF.
  EXPECT_EQ(rgb565.data()[6], 0xFF);
  EXPECT_EQ(rgb565.data()[7], 0xFF);
}

// ---- Block-ordered units ----------------------------------------------------------------

struct BlockKind {
  std::string name;
  uint32_t shiftX, shiftY;
  ovkColorYCrCbH1V1toRGB888u8Fn portable, entry;
  ovkColorYCrCbH1V1toRGB888u8Fn (*vector)();
};

const std::vector<BlockKind>& blockKinds() {
  static const std::vector<BlockKind> kinds = {
      {"H1V1", 0, 0, ovkColorYCrCbH1V1toRGB888u8C, ovkColorYCrCbH1V1toRGB888u8, ovkVectorColorYCrCbH1V1toRGB888u8},
      {"H2V1", 1, 0, ovkColorYCrCbH2V1toRGB888u8C, ovkColorYCrCbH2V1toRGB888u8, ovkVectorColorYCrCbH2V1toRGB888u8},
      {"H1V2", 0, 1, ovkColorYCrCbH1V2toRGB888u8C, ovkColorYCrCbH1V2toRGB888u8, ovkVectorColorYCrCbH1V2toRGB888u8},
      {"H2V2", 1, 1, ovkColorYCrCbH2V2toRGB888u8C, ovkColorYCrCbH2V2toRGB888u8, ovkVectorColorYCrCbH2V2toRGB888u8}};
  return kinds;
}

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

TEST(YccToRgbBlocks, NeutralChromaIsNotQuiteNeutral) {
  // Cb = Cr = 128 is 1/255 above the centre: R and B gain one, G loses one.
  std::mt19937 rng(5);
  BlockFrame frame(blockKinds()[0], 8, 8, rng);
  for (int i = 0; i < 64; ++i) frame.data()[i] = uint8_t(i * 4);
  memset(frame.data() + 64, 128, 128);
  OutputImage dst(8, 8, 24, Out::k888);
  ovkColorYCrCbH1V1toRGB888u8C(frame.data(), 8, 8, dst.data());
  EXPECT_EQ(dst.at(3 * 5, 1), 13 * 4 + 1);
  EXPECT_EQ(dst.at(3 * 5 + 1, 1), 13 * 4 - 1);
  EXPECT_EQ(dst.at(3 * 5 + 2, 1), 13 * 4 + 1);
  EXPECT_EQ(dst.at(0, 0), 1);  // Y 0: G would be -1, clamped
  EXPECT_EQ(dst.at(1, 0), 0);
  EXPECT_EQ(dst.at(3 * 7 + 1, 7), 251);  // Y 252
}

// ---- Portable and vector kernels on many shapes --------------------------------------------

TEST(YccToRgbKernels, FamilyMatchesTheFormula) {
  std::mt19937 rng(23);
  const std::vector<std::string> targets =
      forPortableAndEveryVectorTarget([&](const std::string& variant, bool vector) {
        for (const Member& m : familyMembers())
          for (const uint32_t width : kernelWidths()) {
            if (width == 1 && m.shiftX) continue;  // fatal by design
            const uint32_t height = 1 + width % 6, bytes = uint32_t(m.out);
            FamilyFrame frame(m, width, height, rng() % 9, rng);
            OutputImage dst(width, height, width * bytes + rng() % 13, m.out);
            frame.convert(vector ? m.vector() : m.portable, dst, false);
            expectPixels(
                dst, m.out, [&](uint32_t x, uint32_t y) { return frame.expected(x, y); },
                variant + " " + m.name + " " + std::to_string(width) + "x" + std::to_string(height));
          }
      });
#if defined(__ARM_NEON)
  EXPECT_NE(std::find(targets.begin(), targets.end(), "NEON"), targets.end()) << ::testing::PrintToString(targets);
#endif
  EXPECT_GE(targets.size(), 2u);
}

TEST(YccToRgbKernels, CameraAndBlockKernelsMatchTheFormula) {
  std::mt19937 rng(29);
  forPortableAndEveryVectorTarget([&](const std::string& variant, bool vector) {
    for (const uint32_t width : kernelWidths()) {
      const uint32_t height = 1 + width % 6;
      const std::string what = variant + " " + std::to_string(width) + "x" + std::to_string(height);
      const uint32_t yStride = width + rng() % 7, cStride = width + rng() % 7;
      CameraFrame frame(width, height, yStride, cStride, rng);
      OutputImage rgba(width, height, width * 4 + rng() % 9, Out::kA8888);
      (vector ? ovkVectorColorYCrCb420PseudoPlanarToRGB8888u8() : ovkColorYCrCb420PseudoPlanarToRGB8888u8C)(
          frame.data(), width, height, yStride, cStride, rgba.data(), rgba.stride());
      expectPixels(
          rgba, Out::kA8888, [&](uint32_t x, uint32_t y) { return cameraRgba(frame, x, y); }, what);

      CameraFrame packed(width, height, width, width, rng);
      OutputImage upright(width, height, width * 2, Out::k565), rotated(width, height, width * 2, Out::k565);
      (vector ? ovkVectorColorYUV420toRGB565u8() : ovkColorYUV420toRGB565u8C)(packed.data(), width, height,
                                                                              upright.data());
      (vector ? ovkVectorColorYUV420toRGB565u8Rotate180() : ovkColorYUV420toRGB565u8Rotate180C)(packed.data(), width,
                                                                                                height, rotated.data());
      const Expected expected = [&](uint32_t x, uint32_t y) { return camera565(packed, x, y); };
      expectPixels(upright, Out::k565, expected, what + " 565");
      expectPixels(rotated, Out::k565, expected, what + " 565 rotated", true);

      for (const BlockKind& kind : blockKinds()) {
        BlockFrame blocks(kind, width, height * 7, rng);
        OutputImage dst(width, height * 7, width * 3, Out::k888);
        (vector ? kind.vector() : kind.portable)(blocks.data(), width, height * 7, dst.data());
        expectPixels(
            dst, Out::k888, [&](uint32_t x, uint32_t y) { return blocks.expected(x, y); }, what + " " + kind.name);
      }
    }
  });
}

// ---- Entries ----------------------------------------------------------------------------------

class YccToRgbEntries : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE), 0); }
};

TEST_F(YccToRgbEntries, FamilyConvertsWithGivenAndZeroStrides) {
  std::mt19937 rng(31);
  for (const Member& m : familyMembers())
    for (const bool zeroStrides : {false, true}) {
      const uint32_t width = 37, height = 9, bytes = uint32_t(m.out);
      FamilyFrame frame(m, width, height, zeroStrides ? 0 : 4, rng);
      OutputImage dst(width, height, width * bytes + (zeroStrides ? 0 : 6), m.out);
      frame.convert(m.entry, dst, zeroStrides);
      expectPixels(
          dst, m.out, [&](uint32_t x, uint32_t y) { return frame.expected(x, y); },
          m.name + (zeroStrides ? " zero strides" : ""));
    }
}

TEST_F(YccToRgbEntries, CameraAndBlockEntriesConvert) {
  std::mt19937 rng(37);
  const uint32_t width = 40, height = 6;
  CameraFrame frame(width, height, width, width, rng);
  OutputImage rgba(width, height, width * 4, Out::kA8888);
  OutputImage strided(width, height, width * 4 + 8, Out::kA8888);
  OutputImage rgb565(width, height, width * 2, Out::k565);
  OutputImage rotated(width, height, width * 2, Out::k565);
  ovkColorYUV420toRGB8888u8(frame.data(), width, height, rgba.data());
  ovkColorYCrCb420PseudoPlanarToRGB8888u8(frame.data(), width, height, width, width, strided.data(), strided.stride());
  ovkColorYUV420toRGB565u8(frame.data(), width, height, rgb565.data());
  ovkColorYUV420toRGB565u8Rotate180(frame.data(), width, height, rotated.data());
  expectPixels(
      rgba, Out::kA8888, [&](uint32_t x, uint32_t y) { return cameraRgba(frame, x, y); }, "YUV420 RGBA");
  expectPixels(
      strided, Out::kA8888, [&](uint32_t x, uint32_t y) { return cameraRgba(frame, x, y); }, "YCrCb");
  const Expected expected565 = [&](uint32_t x, uint32_t y) { return camera565(frame, x, y); };
  expectPixels(rgb565, Out::k565, expected565, "565");
  expectPixels(rotated, Out::k565, expected565, "565 rotated", true);
  for (const BlockKind& kind : blockKinds()) {
    BlockFrame blocks(kind, 24, 20, rng);
    OutputImage dst(24, 20, 72, Out::k888);
    kind.entry(blocks.data(), 24, 20, dst.data());
    expectPixels(
        dst, Out::k888, [&](uint32_t x, uint32_t y) { return blocks.expected(x, y); }, kind.name);
  }
}

std::string planarText(const char* factor, const char* chromaWidth) {
  return std::string(
             "srcY && srcCb && srcCr && dst && srcWidth && srcHeight && ( srcYStride == 0 || srcYStride >= "
             "(srcWidth*sizeof(uint8_t)) ) && ( srcCbStride == 0 || srcCbStride >= (") +
         chromaWidth + "*sizeof(uint8_t)) ) && ( srcCrStride == 0 || srcCrStride >= (" + chromaWidth +
         "*sizeof(uint8_t)) ) && ( dstStride == 0 || dstStride >= (srcWidth*" + factor + "*sizeof(uint8_t)))";
}

std::string pseudoPlanarText(const char* factor, const char* chromaBytes) {
  return std::string(
             "srcY && srcC && dst && srcWidth && srcHeight && ( srcYStride == 0 || srcYStride >= "
             "(srcWidth*sizeof(uint8_t)) ) && ( srcCStride == 0 || srcCStride >= (") +
         chromaBytes + "*sizeof(uint8_t)) ) && ( dstStride == 0 || dstStride >= (srcWidth*" + factor +
         "*sizeof(uint8_t)))";
}

// A too-small destination stride fails every family member; the text names
// the member's factor and chroma row size.
TEST_F(YccToRgbEntries, FamilyLogsItsConditionAndWritesNothing) {
  std::mt19937 rng(41);
  for (const Member& m : familyMembers()) {
    const uint32_t width = 6, height = 4, bytes = uint32_t(m.out);
    FamilyFrame frame(m, width, height, 0, rng);
    OutputImage dst(width, height, width * bytes, m.out);
    LogCapture log;
    if (m.planar)
      reinterpret_cast<PlanarFn>(m.entry)(frame.y().data(), frame.cb().data(), frame.cr().data(), width, height, 0, 0,
                                          0, dst.data(), width * bytes - 1);
    else
      reinterpret_cast<PseudoPlanarFn>(m.entry)(frame.y().data(), frame.c().data(), width, height, 0, 0, dst.data(),
                                                width * bytes - 1);
    const std::string factor = std::to_string(bytes);
    const char* chroma = m.planar ? (m.shiftX ? "(srcWidth+1)/2" : "srcWidth") : (m.shiftX ? "srcWidth" : "srcWidth*2");
    std::string text = m.planar ? planarText(factor.c_str(), chroma) : pseudoPlanarText(factor.c_str(), chroma);
    if (m.name == "ovkColorYCbCr422PseudoPlanarToRGB888u8") text += " && srcWidth > 1";
    EXPECT_EQ(log.messages(), std::vector<std::string>{"Assertion failed @" + m.name + ": " + text + "\n"});
    for (uint32_t y = 0; y < height; ++y)
      for (uint32_t x = 0; x < width * bytes; ++x) ASSERT_EQ(dst.row(y)[x], kUntouched) << m.name;
  }
}

TEST_F(YccToRgbEntries, ChromaStridesBelowTheRowAreRejected) {
  GuardedImage y(8, 2, 8), cb(4, 1, 4), cr(4, 1, 4), dst(8, 2, 24, 3);
  dst.fill(kUntouched);
  LogCapture log;
  ovkColorYCbCr420PlanarToRGB888u8(y.data(), cb.data(), cr.data(), 8, 2, 8, 3, 4, dst.data(), 24);
  ovkColorYCbCr444PseudoPlanarToRGB888u8(y.data(), y.data(), 8, 2, 8, 15, dst.data(), 24);
  ovkColorYCbCr420PlanarToRGB888u8(nullptr, cb.data(), cr.data(), 8, 2, 8, 4, 4, dst.data(), 24);
  EXPECT_EQ(log.messages().size(), 3u);
  EXPECT_EQ(dst.at(0, 0), kUntouched);
  EXPECT_EQ(dst.at(23, 1), kUntouched);
}

TEST_F(YccToRgbEntries, SingleColumnIsRefusedOnlyBy422PseudoPlanarRgb888) {
  GuardedImage y(1, 2, 1), c(2, 2, 2), dst(1, 2, 3, 3);
  dst.fill(kUntouched);
  {
    LogCapture log;
    ovkColorYCbCr422PseudoPlanarToRGB888u8(y.data(), c.data(), 1, 2, 0, 0, dst.data(), 0);
    ASSERT_EQ(log.messages().size(), 1u);
    EXPECT_NE(log.messages()[0].find("dstStride >= (srcWidth*3*sizeof(uint8_t))) && srcWidth > 1\n"),
              std::string::npos);
  }
  EXPECT_EQ(dst.at(0, 0), kUntouched);
  EXPECT_DEATH(ovkColorYCbCr422PseudoPlanarToRGBA8888u8(y.data(), c.data(), 1, 2, 0, 0, dst.data(), 0),
               "length > 1 Assertion failed");
}

TEST_F(YccToRgbEntries, OtherEntriesLogTheirConditions) {
  GuardedImage src(8, 3, 8), dst(32, 2, 32);
  dst.fill(kUntouched);
  LogCapture log;
  ovkColorYCrCb420PseudoPlanarToRGB8888u8(src.data(), 8, 2, 8, 0, dst.data(), 32);
  ovkColorYUV420toRGB8888u8(src.data(), 8, 2, nullptr);
  ovkColorYUV420toRGB565u8(src.data(), 0, 2, dst.data());
  ovkColorYUV420toRGB565u8Rotate180(nullptr, 8, 2, dst.data());
  ovkColorYCrCbH1V1toRGB888u8(src.data(), 8, 0, dst.data());
  ovkColorYCrCbH2V1toRGB888u8(nullptr, 8, 8, dst.data());
  ovkColorYCrCbH1V2toRGB888u8(nullptr, 8, 8, dst.data());
  ovkColorYCrCbH2V2toRGB888u8(nullptr, 8, 8, dst.data());
  const std::vector<std::string> expected = {
      "Assertion failed @ovkColorYCrCb420PseudoPlanarToRGB8888u8: src && dst && srcWidth && srcHeight && "
      "srcYStride && srcCStride && dstStride\n",
      "Assertion failed @ovkColorYUV420toRGB8888u8: src && dst && width && height\n",
      "Assertion failed @ovkColorYUV420toRGB565u8: src && dst && width && height\n",
      "Assertion failed @ovkColorYUV420toRGB565u8Rotate180: src && dst && width && height\n",
      "Assertion failed @ovkColorYCrCbH1V1toRGB888u8: src && dst && width && height\n",
      "Assertion failed @ovkColorYCrCbH2V1toRGB888u8: src && dst && width && height\n",
      "Assertion failed @ovkColorYCrCbH1V2toRGB888u8: ysrc && dst && width && height\n",
      "Assertion failed @ovkColorYCrCbH2V2toRGB888u8: y_src && dst && width && height\n"};
  EXPECT_EQ(log.messages(), expected);
  for (const LogLine& line : log.lines()) EXPECT_EQ(line.priority, 6);
  for (uint32_t y = 0; y < 2; ++y)
    for (uint32_t x = 0; x < 32; ++x) ASSERT_EQ(dst.row(y)[x], kUntouched);
}

}  // namespace
