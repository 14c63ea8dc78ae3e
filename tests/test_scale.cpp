// Scaling entries against per-pixel definitions written out here, the
// hand-worked cases of each reduction, constant images through every
// scaler, refused calls, scratch failures and the DSP constraints.
#include <gtest/gtest.h>
#include <math.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "orvik.h"
#include "support/entry_test.h"
#include "support/fake_backends.h"
#include "support/log_capture.h"

namespace {

// A plane with row padding that the entries must leave alone.
struct Plane {
  static constexpr uint8_t kPad = 0xA5;
  Plane(uint32_t w, uint32_t h, uint32_t pad = 3) : width(w), height(h), stride(w + pad), bytes(size_t(stride) * h, kPad) {}
  uint8_t& at(uint32_t x, uint32_t y) { return bytes[size_t(y) * stride + x]; }
  uint8_t at(uint32_t x, uint32_t y) const { return bytes[size_t(y) * stride + x]; }
  uint8_t* data() { return bytes.data(); }
  void fillRandom(std::mt19937& rng) {
    for (uint32_t y = 0; y < height; ++y)
      for (uint32_t x = 0; x < width; ++x) at(x, y) = uint8_t(rng());
  }
  void fill(uint8_t v) {
    for (uint32_t y = 0; y < height; ++y)
      for (uint32_t x = 0; x < width; ++x) at(x, y) = v;
  }
  bool padIntact() const {
    for (uint32_t y = 0; y < height; ++y)
      for (uint32_t x = width; x < stride; ++x)
        if (bytes[size_t(y) * stride + x] != kPad) return false;
    return true;
  }
  uint32_t width, height, stride;
  std::vector<uint8_t> bytes;
};

using Formula = std::function<int(uint32_t x, uint32_t y)>;

void expectPlane(const Plane& dst, const Formula& formula, const std::string& what) {
  for (uint32_t y = 0; y < dst.height; ++y)
    for (uint32_t x = 0; x < dst.width; ++x)
      ASSERT_EQ(dst.at(x, y), formula(x, y)) << what << " at " << x << "," << y;
  EXPECT_TRUE(dst.padIntact()) << what;
}

// ---- Fixed ratios --------------------------------------------------------------------------

using Scale = EntryTest;

TEST_F(Scale, BoxReductionsTruncateTheBlockMean) {
  std::mt19937 rng(1);
  for (const uint32_t factor : {2u, 4u})
    for (const auto& [w, h] : {std::pair{8u, 4u}, {24u, 12u}, {36u, 8u}, {4u, 16u}}) {
      Plane src(w, h), dst(w / factor, h / factor), packed(w / factor, h / factor, 0);
      src.fillRandom(rng);
      const Formula mean = [&](uint32_t x, uint32_t y) {
        int sum = 0;
        for (uint32_t j = 0; j < factor; ++j)
          for (uint32_t i = 0; i < factor; ++i) sum += src.at(factor * x + i, factor * y + j);
        return sum / int(factor * factor);
      };
      const std::string what = "by " + std::to_string(factor) + " " + std::to_string(w) + "x" + std::to_string(h);
      const auto v2 = factor == 2 ? ovkScaleDownBy2u8_v2 : ovkScaleDownBy4u8_v2;
      ASSERT_EQ(v2(src.data(), w, h, src.stride, dst.data(), dst.stride), 0);
      expectPlane(dst, mean, what);
      Plane packedSrc(w, h, 0);
      for (uint32_t y = 0; y < h; ++y)
        for (uint32_t x = 0; x < w; ++x) packedSrc.at(x, y) = src.at(x, y);
      const auto v1 = factor == 2 ? ovkScaleDownBy2u8 : ovkScaleDownBy4u8;
      ASSERT_EQ(v1(packedSrc.data(), w, h, packed.data()), 0);
      expectPlane(packed, mean, what + " packed");
    }
  uint8_t block[4] = {1, 1, 1, 2}, out = 0;
  ovkScaleDownBy2u8(block, 2, 2, &out);
  EXPECT_EQ(out, 1);  // 5 / 4 truncates
}

TEST_F(Scale, BoxReductionsRefuseSilently) {
  uint8_t src[64] = {}, dst[16];
  LogCapture log;
  const auto refused = [&](int32_t result, const char* what) {
    EXPECT_EQ(result, -1) << what;
    for (const uint8_t b : dst) EXPECT_EQ(b, 0xEE) << what;
  };
  memset(dst, 0xEE, sizeof dst);
  refused(ovkScaleDownBy2u8(src, 7, 4, dst), "odd width");
  refused(ovkScaleDownBy2u8(src, 8, 0, dst), "zero height");
  refused(ovkScaleDownBy2u8(nullptr, 8, 4, dst), "null src");
  refused(ovkScaleDownBy2u8_v2(src, 8, 4, 7, dst, 0), "short stride");
  refused(ovkScaleDownBy2u8_v2(src, 8, 4, 0, dst, 3), "short dst stride");
  refused(ovkScaleDownBy4u8(src, 8, 6, dst), "height not a multiple of 4");
  refused(ovkScaleDownBy4u8_v2(src, 4, 4, 0, nullptr, 0), "null dst");
  refused(ovkScaleDown3To2u8(src, 6, 6, 5, dst, 0), "3 to 2 short stride");
  refused(ovkScaleDown3To2u8(src, 6, 6, 0, dst, 3), "3 to 2 short dst stride");
  refused(ovkScaleDownNNu8(src, 8, 8, 0, dst, 0, 2, 0), "zero dst width");
  refused(ovkScaleDownNNu8(src, 8, 8, 0, dst, 4, 2, 3), "nn short dst stride");
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(Scale, ThreeToTwoWeighsEachCornerAroundTheCentre) {
  std::mt19937 rng(2);
  for (const auto& [w, h] : {std::pair{3u, 3u}, {4u, 4u}, {9u, 7u}, {17u, 11u}}) {
    Plane src(w, h), dst(w / 3 * 2, h / 3 * 2);
    src.fillRandom(rng);
    ASSERT_EQ(ovkScaleDown3To2u8(src.data(), w, h, src.stride, dst.data(), dst.stride), 0);
    expectPlane(dst, [&](uint32_t x, uint32_t y) {
      // Corner (cx, cy) of its block, the centre, and the two between.
      const uint32_t bx = x / 2 * 3, by = y / 2 * 3, cx = bx + (x % 2) * 2, cy = by + (y % 2) * 2;
      return (9 * src.at(cx, cy) + 3 * src.at(bx + 1, cy) + 3 * src.at(cx, by + 1) + src.at(bx + 1, by + 1)) >> 4;
    }, std::to_string(w) + "x" + std::to_string(h));
  }
  uint8_t narrow[8] = {}, out[4] = {7, 7, 7, 7};
  EXPECT_EQ(ovkScaleDown3To2u8(narrow, 2, 4, 0, out, 0), 1);
  EXPECT_EQ(out[0], 7);
}

// ---- Nearest neighbour -------------------------------------------------------------------

TEST_F(Scale, NearestNeighbourSamplesNearTheScaledPosition) {
  std::mt19937 rng(3);
  // Hand-worked: 640 -> 320 has R = 1048575, S = 19, just below 2, so
  // column x >= 1 reads 2x - 1; 3 -> 2 reads 0 and 1.
  Plane ramp(640, 2, 0);
  for (uint32_t x = 0; x < 640; ++x) ramp.at(x, 0) = ramp.at(x, 1) = uint8_t(x / 3);
  Plane half(320, 1);
  ASSERT_EQ(ovkScaleDownNNu8(ramp.data(), 640, 2, 0, half.data(), 320, 1, half.stride), 0);
  for (const uint32_t x : {1u, 2u, 100u, 319u}) EXPECT_EQ(half.at(x, 0), (2 * x - 1) / 3) << x;
  // 1000 -> 999 splits the product (10 + 10 - 3 > 16): R = 131250 in two
  // halves of 5 bits, S = 12; x = 500 reads 500, x = 998 reads 999.
  Plane wide(1000, 1, 0), narrower(999, 1);
  for (uint32_t x = 0; x < 1000; ++x) wide.at(x, 0) = uint8_t(x);
  ASSERT_EQ(ovkScaleDownNNu8(wide.data(), 1000, 1, 0, narrower.data(), 999, 1, 0), 0);
  EXPECT_EQ(narrower.at(500, 0), uint8_t(500));
  EXPECT_EQ(narrower.at(998, 0), uint8_t(999));
  uint8_t three[3] = {10, 20, 30}, two[2];
  ASSERT_EQ(ovkScaleDownNNu8(three, 3, 1, 0, two, 2, 1, 0), 0);
  EXPECT_EQ(two[0], 10);
  EXPECT_EQ(two[1], 20);

  // Any sizes: the sampled column lies within one of x * src / dst (plus the
  // reciprocal's drift, under 1/512 of it) and never goes back; the pixel's
  // value says which column it was.
  for (int trial = 0; trial < 300; ++trial) {
    const uint32_t sw = 1 + rng() % 250, dw = 1 + rng() % 250, sh = 1 + rng() % 9, dh = 1 + rng() % 9;
    Plane src(sw, sh, 0), dst(dw, dh);
    for (uint32_t y = 0; y < sh; ++y)
      for (uint32_t x = 0; x < sw; ++x) src.at(x, y) = uint8_t(y * 29 + x);
    ASSERT_EQ(ovkScaleDownNNu8(src.data(), sw, sh, 0, dst.data(), dw, dh, dst.stride), 0);
    EXPECT_TRUE(dst.padIntact());
    int previous = -1;
    for (uint32_t x = 0; x < dw; ++x) {
      // Column 0 always samples column 0; sizes below 256 keep the differences unique.
      const double exact = double(x) * sw / dw;
      const int sampled = int(uint8_t(dst.at(x, 0) - dst.at(0, 0)));
      EXPECT_LT(fabs(sampled - exact), 1.0 + exact / 512) << sw << "->" << dw << " x " << x;
      EXPECT_GE(sampled, previous);
      previous = sampled;
    }
  }
  // Equal sizes copy.
  Plane src(33, 5), same(33, 5);
  src.fillRandom(rng);
  ASSERT_EQ(ovkScaleDownNNu8(src.data(), 33, 5, src.stride, same.data(), 33, 5, same.stride), 0);
  expectPlane(same, [&](uint32_t x, uint32_t y) { return src.at(x, y); }, "copy");
}

// ---- Integer-factor box and bilinear -------------------------------------------------------

TEST_F(Scale, IntegerFactorBoxDividesTheBlockSum) {
  std::mt19937 rng(4);
  for (const auto& [fx, fy] : {std::pair{3u, 2u}, {1u, 5u}, {7u, 1u}, {2u, 2u}}) {
    const uint32_t dw = 5, dh = 3;
    Plane src(dw * fx, dh * fy), dst(dw, dh);
    src.fillRandom(rng);
    ovkScaleDownu8_v2(src.data(), src.width, src.height, src.stride, dst.data(), dw, dh, dst.stride);
    expectPlane(dst, [&](uint32_t x, uint32_t y) {
      int sum = 0;
      for (uint32_t j = 0; j < fy; ++j)
        for (uint32_t i = 0; i < fx; ++i) sum += src.at(fx * x + i, fy * y + j);
      return sum / int(fx * fy);
    }, "factor " + std::to_string(fx) + "x" + std::to_string(fy));
  }
  uint8_t src[12] = {}, dst[4] = {9, 9, 9, 9};
  LogCapture log;
  ovkScaleDownu8(src, 4, 3, dst, 3, 3);  // 4 / 3 is not whole
  ovkScaleDownu8(src, 4, 3, dst, 0, 3);  // refused before dividing by 0
  ovkScaleDownu8_v2(src, 4, 3, 4, dst, 2, 3, 1);
  EXPECT_EQ(log.messages(), (std::vector<std::string>{
                                "Error at ovkScaleDownu8\n", "Error at ovkScaleDownu8\n",
                                "Assertion failed @ovkScaleDownu8_v2: src && dst && srcWidth && srcHeight && "
                                "(srcStride >= srcWidth) && dstWidth && dstHeight && (dstStride >= dstWidth) && "
                                "srcWidth >= dstWidth && srcHeight >= dstHeight\n"}));
  EXPECT_EQ(dst[0], 9);
}

// Single-precision centre-aligned coordinate, Q11 weights, Q22 result.
struct BilinearTap {
  uint32_t i0, i1;
  uint32_t w0, w1;
};
BilinearTap bilinearTap(uint32_t d, uint32_t srcSize, uint32_t dstSize) {
  const float ratio = float(dstSize) / float(srcSize);
  const float s = std::min(std::max((float(d) + 0.5f) / ratio - 0.5f, 0.0f), float(srcSize - 1));
  const uint32_t i = uint32_t(floorf(s));
  const float f = s - float(i);
  return {i, std::min(i + 1, srcSize - 1), uint32_t((1.0f - f) * 2048.0f + 0.5f), uint32_t(f * 2048.0f + 0.5f)};
}

TEST_F(Scale, BilinearReductionFromQ11Weights) {
  std::mt19937 rng(5);
  for (const auto& [sw, sh, dw, dh] : {std::tuple{9u, 7u, 4u, 3u}, {640u, 4u, 427u, 3u}, {5u, 5u, 5u, 5u},
                                       {3u, 8u, 7u, 2u}, {1u, 1u, 3u, 2u}}) {
    Plane src(sw, sh), dst(dw, dh);
    src.fillRandom(rng);
    ovkScaleDownBLu8(src.data(), sw, sh, src.stride, dst.data(), dw, dh, dst.stride);
    expectPlane(dst, [&](uint32_t x, uint32_t y) {
      const BilinearTap c = bilinearTap(x, sw, dw), r = bilinearTap(y, sh, dh);
      const uint32_t top = c.w0 * src.at(c.i0, r.i0) + c.w1 * src.at(c.i1, r.i0);
      const uint32_t bottom = c.w0 * src.at(c.i0, r.i1) + c.w1 * src.at(c.i1, r.i1);
      return int((r.w0 * top + r.w1 * bottom + 0x200000) >> 22);
    }, std::to_string(sw) + "x" + std::to_string(sh) + " -> " + std::to_string(dw) + "x" + std::to_string(dh));
  }
  // Enlarging 3 -> 7, the last column's coordinate 2.2857 is clamped to 2
  // (the 3 -> 7 case above reads it).
  const BilinearTap last = bilinearTap(6, 3, 7);
  EXPECT_EQ(last.i0, 2u);
  EXPECT_EQ(last.w1, 0u);
}

void* noScratch(uint32_t, uint32_t) { return nullptr; }
void* noUnalignedScratch(uint32_t) { return nullptr; }

TEST(ScaleDeathTest, BilinearWithoutScratchEndsTheProcess) {
  uint8_t src[16] = {}, dst[4];
  EXPECT_EXIT(
      {
        ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE);
        ovkGetScratchBufferAligned_ = noScratch;
        ovkScaleDownBLu8(src, 4, 4, 4, dst, 2, 2, 2);
      },
      ::testing::ExitedWithCode(1), "src/cpu/orvikScaleC@[0-9]+: buffer Assertion failed");
}

// ---- M-by-N -------------------------------------------------------------------------------

// Destination pixel k of an axis covers source lines [ceil(k s / d), ceil((k + 1) s / d)).
uint32_t blockEnd(uint32_t k, uint32_t s, uint32_t d) { return uint32_t((uint64_t(k + 1) * s + d - 1) / d); }

TEST_F(Scale, MByNAveragesWholeBlocksThroughTheTable) {
  EXPECT_EQ(mn_div_table[0], 0xFFFFFFFFu);
  EXPECT_EQ(mn_div_table[1], 0xFFFFFFFFu);
  EXPECT_EQ(mn_div_table[2], 0x80000000u);
  EXPECT_EQ(mn_div_table[3], 0x55555556u);
  EXPECT_EQ(mn_div_table[400], 10737419u);  // 2^32 / 400 = 10737418.24
  std::mt19937 rng(6);
  for (const auto& [sw, sh, dw, dh] : {std::tuple{9u, 7u, 4u, 3u}, {100u, 41u, 7u, 3u}, {13u, 13u, 13u, 13u},
                                       {640u, 6u, 427u, 4u}}) {
    Plane src(sw, sh), dst(dw, dh);
    src.fillRandom(rng);
    ovkScaleDownMNu8(src.data(), sw, sh, src.stride, dst.data(), dw, dh, dst.stride);
    expectPlane(dst, [&](uint32_t x, uint32_t y) {
      const uint32_t x0 = x ? blockEnd(x - 1, sw, dw) : 0, y0 = y ? blockEnd(y - 1, sh, dh) : 0;
      const uint32_t x1 = blockEnd(x, sw, dw), y1 = blockEnd(y, sh, dh);
      uint64_t sum = 0;
      for (uint32_t j = y0; j < y1; ++j)
        for (uint32_t i = x0; i < x1; ++i) sum += src.at(i, j);
      const uint32_t n = (x1 - x0) * (y1 - y0);
      return n == 1 ? int(sum ? sum - 1 : 0) : int(sum / n);  // ceil reciprocals divide exactly here
    }, std::to_string(sw) + "x" + std::to_string(sh) + " -> " + std::to_string(dw) + "x" + std::to_string(dh));
  }
}

TEST_F(Scale, MByNRefusalsAndScratchFailure) {
  uint8_t src[400] = {}, dst[40];
  memset(dst, 0xEE, sizeof dst);
  LogCapture log;
  ovkScaleDownMNu8(src, 40, 1, 0, dst, 2, 1, 0);  // 2 x 20 is not above 40
  ASSERT_EQ(log.messages().size(), 1u);
  EXPECT_EQ(log.messages()[0],
            "Assertion failed @ovkScaleDownMNu8: src && dst && srcWidth && srcHeight && dstWidth && dstHeight && "
            "(srcStride==0 || srcStride >=srcWidth) && (dstStride == 0 || dstStride >= dstWidth) && dstWidth * 20 > "
            "srcWidth && dstHeight * 20 > srcHeight\n");
  const auto saved = ovkGetScratchBufferUnaligned_;
  ovkGetScratchBufferUnaligned_ = noUnalignedScratch;
  ovkScaleDownMNu8(src, 40, 1, 0, dst, 3, 1, 0);
  ovkGetScratchBufferUnaligned_ = saved;
  EXPECT_EQ(dst[0], 0xEE);
  uint8_t one = 200, out = 0;
  ovkScaleDownMNu8(&one, 1, 1, 0, &out, 1, 1, 0);
  EXPECT_EQ(out, 199);  // a block of one pixel gives S - 1
}

TEST_F(Scale, InterleavedMByNReducesEachChannelAlone) {
  std::mt19937 rng(7);
  // Wide rows go through the channels in chunks of columns; enlarging
  // repeats columns across chunk edges.
  for (const auto& [sw, sh, dw, dh] : {std::tuple{23u, 9u, 10u, 4u}, {700u, 3u, 290u, 2u}, {300u, 2u, 610u, 3u}}) {
  Plane pairs(2 * sw, sh), out(2 * dw, dh);
  pairs.fillRandom(rng);
  ovkScaleDownMNInterleaveu8(pairs.data(), sw, sh, pairs.stride, out.data(), dw, dh, out.stride);
  for (uint32_t c = 0; c < 2; ++c) {
    Plane channel(sw, sh, 0), reduced(dw, dh, 0);
    for (uint32_t y = 0; y < sh; ++y)
      for (uint32_t x = 0; x < sw; ++x) channel.at(x, y) = pairs.at(2 * x + c, y);
    ovkScaleDownMNu8(channel.data(), sw, sh, 0, reduced.data(), dw, dh, 0);
    for (uint32_t y = 0; y < dh; ++y)
      for (uint32_t x = 0; x < dw; ++x) ASSERT_EQ(out.at(2 * x + c, y), reduced.at(x, y)) << c << " " << x << "," << y;
  }
  EXPECT_TRUE(out.padIntact());
  }
}

// ---- Gaussian reductions and enlargement ---------------------------------------------------

// Taps outside the image dropped; renormalised by 1/W rounded to float.
int gaussianDown5(const Plane& src, uint32_t x, uint32_t y) {
  static const int k[5] = {1, 4, 6, 4, 1};
  int64_t sum = 0, weight = 0;
  for (int j = -2; j <= 2; ++j)
    for (int i = -2; i <= 2; ++i) {
      const int sx = int(2 * x) + i, sy = int(2 * y) + j;
      if (sx < 0 || sy < 0 || sx >= int(src.width) || sy >= int(src.height)) continue;
      sum += k[i + 2] * k[j + 2] * src.at(sx, sy);
      weight += k[i + 2] * k[j + 2];
    }
  if (weight == 256) return int((sum + 128) >> 8);
  return int(floor(0.5 + double(sum) * double(float(1.0 / double(weight)))));
}

TEST_F(Scale, GaussianDownRenormalisesDroppedTaps) {
  // The border factors are 1/W in single precision.
  const std::pair<int, float> factors[] = {{121, 0.0082644625f}, {176, 0.0056818184f}, {165, 0.0060606059f},
                                           {240, 0.0041666669f}, {225, 0.0044444446f}, {110, 0.0090909088f},
                                           {160, 0.0062500001f}, {150, 0.0066666668f}};
  for (const auto& [w, k] : factors) EXPECT_EQ(float(1.0 / w), k) << w;
  std::mt19937 rng(8);
  for (const auto& [w, h] : {std::pair{2u, 2u}, {4u, 2u}, {6u, 8u}, {20u, 14u}, {7u, 9u}, {3u, 5u}, {2u, 11u}}) {
    Plane src(w, h), dst(w / 2, h / 2);
    src.fillRandom(rng);
    ovkScaleDownBy2Gaussian5x5u8_v2(src.data(), w, h, src.stride, dst.data(), dst.stride);
    const std::string what = std::to_string(w) + "x" + std::to_string(h);
    expectPlane(dst, [&](uint32_t x, uint32_t y) { return gaussianDown5(src, x, y); }, what);
    if (w % 2 || h % 2) continue;
    Plane packedSrc(w, h, 0), packed(w / 2, h / 2, 0);
    packedSrc.bytes = std::vector<uint8_t>(size_t(w) * h);
    for (uint32_t y = 0; y < h; ++y)
      for (uint32_t x = 0; x < w; ++x) packedSrc.at(x, y) = src.at(x, y);
    ovkScaleDownBy2Gaussian5x5u8(packedSrc.data(), w, h, packed.data());
    expectPlane(packed, [&](uint32_t x, uint32_t y) { return dst.at(x, y); }, what + " first generation");
  }
  uint8_t odd[15] = {}, out[4] = {5, 5, 5, 5};
  LogCapture log;
  ovkScaleDownBy2Gaussian5x5u8(odd, 5, 3, out);
  EXPECT_EQ(log.messages(), std::vector<std::string>{"Error at ovkScaleDownBy2Gaussian5x5u8\n"});
  EXPECT_EQ(out[0], 5);
}

TEST_F(Scale, ConstantImagesStayConstant) {
  for (const uint8_t value : {0, 1, 77, 254, 255}) {
    Plane src(13, 10, 0);
    src.fill(value);
    const auto expectConstant = [&](Plane& dst, const std::string& what) {
      expectPlane(dst, [&](uint32_t, uint32_t) { return value; }, what + " of " + std::to_string(value));
    };
    Plane down5(6, 5), down3(6, 5), up(26, 20), bl(9, 4), poly(29, 23), polyDown(5, 4), mn(7, 4);
    ovkScaleDownBy2Gaussian5x5u8_v2(src.data(), 12, 10, 13, down5.data(), down5.stride);
    expectConstant(down5, "gaussian down");
    ovkScaleDownBy2Gaussian3x3u8(src.data(), 12, 10, 13, down3.data(), down3.stride);
    expectConstant(down3, "gaussian 3x3 down");
    ovkScaleUpBy2Gaussian5x5u8_v2(src.data(), 13, 10, 13, up.data(), up.stride);
    expectConstant(up, "gaussian up");
    ovkScaleDownBLu8(src.data(), 13, 10, 13, bl.data(), 9, 4, bl.stride);
    expectConstant(bl, "bilinear");
    ovkScaleUpPolyu8(src.data(), 13, 10, 13, poly.data(), 29, 23, poly.stride);
    expectConstant(poly, "poly");
    ovkScaleUpPolyu8(src.data(), 13, 10, 13, polyDown.data(), 5, 4, polyDown.stride);
    expectConstant(polyDown, "poly reducing");
    for (const ovkInterpolationType type : {ORVIK_INTERPOLATION_AREA, ORVIK_INTERPOLATION_NEAREST,
                                            ORVIK_INTERPOLATION_BILINEAR})
      for (const auto& [dw, dh] : {std::pair{5u, 4u}, {31u, 17u}}) {
        Plane dst(dw, dh);
        ASSERT_EQ(ovkScaleu8(src.data(), 13, 10, 13, dst.data(), dw, dh, dst.stride, type), ORVIK_STATUS_SUCCESS);
        expectConstant(dst, "resize type " + std::to_string(type));
      }
    // No block of a single pixel (those give S - 1).
    ovkScaleDownMNu8(src.data(), 13, 10, 13, mn.data(), 7, 4, mn.stride);
    expectConstant(mn, "m by n");
  }
}

TEST_F(Scale, GaussianDownOnFloats) {
  std::mt19937 rng(9);
  std::uniform_real_distribution<float> value(-100.0f, 100.0f);
  const uint32_t w = 10, h = 6, stride = 11;  // floats a row, one of padding
  std::vector<float> src(stride * h), dst(stride * (h / 2), -1.0f), packed(w / 2 * (h / 2));
  for (float& v : src) v = value(rng);
  ovkScaleDownBy2Gaussian5x5f32_v2(src.data(), w, h, stride * 4, dst.data(), stride * 4);
  static const float k[5] = {1, 4, 6, 4, 1};
  for (uint32_t y = 0; y < h / 2; ++y)
    for (uint32_t x = 0; x < w / 2; ++x) {
      // Kept taps of each column top to bottom, then the columns left to right.
      float total = 0;
      bool first = true;
      for (int i = -2; i <= 2; ++i) {
        const int sx = int(2 * x) + i;
        if (sx < 0 || sx >= int(w)) continue;
        float column = 0;
        bool top = true;
        for (int j = -2; j <= 2; ++j) {
          const int sy = int(2 * y) + j;
          if (sy < 0 || sy >= int(h)) continue;
          column = top ? k[j + 2] * src[sy * stride + sx] : column + k[j + 2] * src[sy * stride + sx];
          top = false;
        }
        total = first ? k[i + 2] * column : total + k[i + 2] * column;
        first = false;
      }
      int rows = 0, columns = 0;
      for (int j = -2; j <= 2; ++j) rows += (int(2 * y) + j >= 0 && int(2 * y) + j < int(h)) ? int(k[j + 2]) : 0;
      for (int i = -2; i <= 2; ++i) columns += (int(2 * x) + i >= 0 && int(2 * x) + i < int(w)) ? int(k[i + 2]) : 0;
      const float want = total * float(1.0 / double(rows * columns));
      ASSERT_EQ(dst[y * stride + x], want) << x << "," << y;
    }
  // Whatever NaN goes in (here a negative signalling one), the one quiet NaN comes out.
  const uint32_t signalling = 0xFF800123u;
  std::vector<float> packedSrc(w * h, 1.0f);
  memcpy(&packedSrc[2 * w + 4], &signalling, 4);
  ovkScaleDownBy2Gaussian5x5f32(packedSrc.data(), w, h, packed.data());
  for (uint32_t y = 0; y < h / 2; ++y)
    for (uint32_t x = 0; x < w / 2; ++x) {
      uint32_t bits;
      memcpy(&bits, &packed[y * (w / 2) + x], 4);
      const bool reached = abs(int(2 * x) - 4) <= 2 && abs(int(2 * y) - 2) <= 2;
      if (reached)
        EXPECT_EQ(bits, 0x7FC00000u) << x << "," << y;
      else
        EXPECT_NEAR(packed[y * (w / 2) + x], 1.0f, 1e-6f) << x << "," << y;
    }
  LogCapture log;
  ovkScaleDownBy2Gaussian5x5f32(src.data(), w, h, nullptr);
  EXPECT_EQ(log.messages(), std::vector<std::string>{"Assertion failed @ovkScaleDownBy2Gaussian5x5f32: dst\n"});
}

// Even rows c = s(y-1) + 6 s(y) + s(y+1), odd rows 4 (s(y) + s(y+1)); then
// columns likewise; line -1 reads line 1, the line after the last repeats it.
int gaussianUp(const Plane& src, uint32_t ox, uint32_t oy) {
  const auto line = [](int i, uint32_t size) {
    return i < 0 ? (size > 1 ? 1 : 0) : i >= int(size) ? int(size) - 1 : i;
  };
  const auto vertical = [&](int x) {
    const int y = int(oy / 2);
    const int a = src.at(x, line(y - 1, src.height)), b = src.at(x, y), c = src.at(x, line(y + 1, src.height));
    return oy % 2 ? 4 * (b + c) : a + 6 * b + c;
  };
  const int x = int(ox / 2);
  const int left = vertical(line(x - 1, src.width)), centre = vertical(x), right = vertical(line(x + 1, src.width));
  return (ox % 2 ? 4 * centre + 4 * right : left + 6 * centre + right) + 32 >> 6;
}

TEST_F(Scale, GaussianUpReflectsTopLeftAndRepeatsBottomRight) {
  std::mt19937 rng(10);
  for (const auto& [w, h] : {std::pair{1u, 1u}, {1u, 5u}, {2u, 2u}, {9u, 4u}, {17u, 3u}}) {
    Plane src(w, h), dst(2 * w, 2 * h);
    src.fillRandom(rng);
    ovkScaleUpBy2Gaussian5x5u8_v2(src.data(), w, h, src.stride, dst.data(), dst.stride);
    expectPlane(dst, [&](uint32_t x, uint32_t y) { return gaussianUp(src, x, y); },
                std::to_string(w) + "x" + std::to_string(h));
  }
  // A one-column ramp 0 64 128, worked by hand: the top is pulled up by the
  // reflected row (16), the bottom keeps its value (128).
  uint8_t ramp[3] = {0, 64, 128}, out[12];
  ovkScaleUpBy2Gaussian5x5u8(ramp, 1, 3, out);
  EXPECT_EQ(out[0], 16);
  EXPECT_EQ(out[2], 32);
  EXPECT_EQ(out[8], 120);
  EXPECT_EQ(out[10], 128);
}

TEST_F(Scale, GaussianThreeByThreeDown) {
  std::mt19937 rng(11);
  for (const auto& [w, h] : {std::pair{2u, 2u}, {9u, 6u}, {16u, 5u}}) {
    Plane src(w, h), dst(w / 2, h / 2);
    src.fillRandom(rng);
    ovkScaleDownBy2Gaussian3x3u8(src.data(), w, h, src.stride, dst.data(), dst.stride);
    expectPlane(dst, [&](uint32_t x, uint32_t y) {
      int sum = 0;
      for (int j = -1; j <= 1; ++j)
        for (int i = -1; i <= 1; ++i)
          sum += (2 - abs(i)) * (2 - abs(j)) * src.at(std::max(int(2 * x) + i, 0), std::max(int(2 * y) + j, 0));
      return (sum + 8) >> 4;
    }, std::to_string(w) + "x" + std::to_string(h));
  }
}

// ---- Polyphase and general resize ----------------------------------------------------------

TEST_F(Scale, PolyphaseCopiesAtEqualSizeAndFollowsRamps) {
  std::mt19937 rng(12);
  Plane src(21, 6), same(21, 6);
  src.fillRandom(rng);
  ovkScaleUpPolyu8(src.data(), 21, 6, src.stride, same.data(), 21, 6, same.stride);
  expectPlane(same, [&](uint32_t x, uint32_t y) { return src.at(x, y); }, "equal size");
  // Cubic interpolation of a straight ramp is the ramp, within rounding.
  Plane ramp(40, 2, 0), wide(80, 2);
  for (uint32_t x = 0; x < 40; ++x) ramp.at(x, 0) = ramp.at(x, 1) = uint8_t(40 + 4 * x);
  ovkScaleUpPolyu8(ramp.data(), 40, 2, 0, wide.data(), 80, 2, wide.stride);
  for (uint32_t x = 4; x < 76; ++x) EXPECT_NEAR(wide.at(x, 1), 40 + 4 * ((x + 0.5) / 2 - 0.5), 1.0) << x;
  // Two interleaved channels are two planes.
  Plane pairs(14, 5), both(22, 8);
  pairs.fillRandom(rng);
  ovkScaleUpPolyInterleaveu8(pairs.data(), 7, 5, pairs.stride, both.data(), 11, 8, both.stride);
  for (uint32_t c = 0; c < 2; ++c) {
    Plane channel(7, 5, 0), scaled(11, 8, 0);
    for (uint32_t y = 0; y < 5; ++y)
      for (uint32_t x = 0; x < 7; ++x) channel.at(x, y) = pairs.at(2 * x + c, y);
    ovkScaleUpPolyu8(channel.data(), 7, 5, 0, scaled.data(), 11, 8, 0);
    for (uint32_t y = 0; y < 8; ++y)
      for (uint32_t x = 0; x < 11; ++x) ASSERT_EQ(both.at(2 * x + c, y), scaled.at(x, y));
  }
}

TEST_F(Scale, AreaResizeIsTheMeanOfTheCoveredArea) {
  std::mt19937 rng(13);
  for (const auto& [sw, sh, dw, dh] : {std::tuple{7u, 5u, 3u, 4u}, {4u, 4u, 6u, 3u}, {9u, 2u, 2u, 5u}}) {
    Plane src(sw, sh), dst(dw, dh);
    src.fillRandom(rng);
    ASSERT_EQ(ovkScaleu8(src.data(), sw, sh, src.stride, dst.data(), dw, dh, dst.stride, ORVIK_INTERPOLATION_AREA),
              ORVIK_STATUS_SUCCESS);
    // Blow every source pixel up to dw x dh, then average sw x sh blocks.
    expectPlane(dst, [&](uint32_t x, uint32_t y) {
      uint64_t sum = 0;
      for (uint32_t j = y * sh; j < (y + 1) * sh; ++j)
        for (uint32_t i = x * sw; i < (x + 1) * sw; ++i) sum += src.at(i / dw, j / dh);
      return int((sum + sw * sh / 2) / (sw * sh));
    }, "area " + std::to_string(sw) + "x" + std::to_string(sh));

    ASSERT_EQ(ovkScaleu8_v2(src.data(), sw, sh, src.stride, dst.data(), dw, dh, 0 /* packed */,
                            ORVIK_INTERPOLATION_NEAREST), ORVIK_STATUS_SUCCESS);
    Plane nearest(dw, dh, 0);
    nearest.bytes.assign(dst.bytes.begin(), dst.bytes.begin() + dw * dh);
    expectPlane(nearest, [&](uint32_t x, uint32_t y) {
      return src.at(uint32_t((x + 0.5) * sw / dw), uint32_t((y + 0.5) * sh / dh));
    }, "nearest");
  }
  uint8_t px[4] = {};
  EXPECT_EQ(ovkScaleu8(px, 2, 2, 2, px, 1, 1, 1, 3), ORVIK_STATUS_BAD_PARAM);
  EXPECT_EQ(ovkScaleu8(px, 2, 2, 0, px, 1, 1, 1, 0), ORVIK_STATUS_BAD_PARAM);  // zero stride is not packed here
}

TEST_F(Scale, BilinearResizeIsCentreAligned) {
  // 2 -> 4 of 0, 255: positions -0.25, 0.25, 0.75, 1.25, clamped at the ends.
  uint8_t src[2] = {0, 255}, dst[4];
  ASSERT_EQ(ovkScaleu8(src, 2, 1, 2, dst, 4, 1, 4, ORVIK_INTERPOLATION_BILINEAR), ORVIK_STATUS_SUCCESS);
  EXPECT_EQ(dst[0], 0);
  EXPECT_EQ(dst[1], 64);   // (192 * 0 + 64 * 255) / 256 = 63.75
  EXPECT_EQ(dst[2], 191);  // 191.25
  EXPECT_EQ(dst[3], 255);
}

// ---- Helpers and back-end constraints ------------------------------------------------------

TEST(ScaleHelpers, BitCounts) {
  EXPECT_EQ(ovkGetNumBits(0), 0u);
  EXPECT_EQ(ovkGetNumBits(1), 1u);
  EXPECT_EQ(ovkGetNumBits(640), 10u);
  EXPECT_EQ(ovkGetNumBits(0xFFFF), 16u);
  EXPECT_EQ(ovkGetMaxNumTrail0s(0), 15u);
  EXPECT_EQ(ovkGetMaxNumTrail0s(640), 7u);
  EXPECT_EQ(ovkGetMaxNumTrail0s(0x8000), 15u);
  EXPECT_EQ(ovkGetMaxNumTrail0s(3), 0u);
}

TEST(ScaleBackends, BoxReductionsNeedLargeAlignedImagesOnTheDsp) {
  FakeBackends fakes;
  ASSERT_EQ(ovkSetOperationMode(ORVIK_OP_LOW_POWER), 0);
  alignas(16) static uint8_t src[200 * 144], dst[100 * 72];
  // More than 25344 pixels, width a multiple of 8, aligned planes.
  ovkScaleDownBy2u8(src, 176, 144, dst);  // exactly 25344
  EXPECT_EQ(fakes.state().dspCalls, 0);
  ovkScaleDownBy2u8(src, 184, 144, dst);
  EXPECT_EQ(fakes.state().dspCalls, 1);
  ovkScaleDownBy2u8_v2(src + 4, 184, 144, 0, dst, 0);  // 4-byte alignment is enough
  EXPECT_EQ(fakes.state().dspCalls, 2);
  ovkScaleDownBy2u8_v2(src + 2, 184, 144, 0, dst, 0);
  ovkScaleDownBy2u8(src, 186, 144, dst);  // width not a multiple of 8
  ovkScaleDownBy4u8(src + 4, 184, 144, dst);  // by 4 wants 8 bytes
  EXPECT_EQ(fakes.state().dspCalls, 2);
  ovkScaleDownBy4u8_v2(src + 8, 184, 144, 0, dst, 0);
  EXPECT_EQ(fakes.state().dspCalls, 3);
  ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE);
}

}  // namespace
