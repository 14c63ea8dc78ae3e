// 3x3 gradients and the Sobel magnitude: every output type against formulas
// written out here, the layouts, the documented edge cases, the condition
// texts, and the vector kernels against the portable ones on every target.
#include <gtest/gtest.h>
#include <string.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "cpu/orvikInternal.h"
#include "support/guarded_image.h"
#include "support/log_capture.h"
#include "support/vector_targets.h"

namespace {

constexpr uint8_t kUntouched = 0x5C;

// ---- The operators, spelled out ------------------------------------------------------

using Formula = std::function<double(const GuardedImage& s, uint32_t x, uint32_t y)>;

int px(const GuardedImage& s, uint32_t x, uint32_t y) { return s.at(x, y); }

double centralDx(const GuardedImage& s, uint32_t x, uint32_t y) { return px(s, x + 1, y) - px(s, x - 1, y); }
double centralDy(const GuardedImage& s, uint32_t x, uint32_t y) { return px(s, x, y + 1) - px(s, x, y - 1); }

// Weights e c e across the column pair (dx) or the row pair (dy).
double weighedDx(const GuardedImage& s, uint32_t x, uint32_t y, int e, int c) {
  return (e * px(s, x + 1, y - 1) + c * px(s, x + 1, y) + e * px(s, x + 1, y + 1)) -
         (e * px(s, x - 1, y - 1) + c * px(s, x - 1, y) + e * px(s, x - 1, y + 1));
}
double weighedDy(const GuardedImage& s, uint32_t x, uint32_t y, int e, int c) {
  return (e * px(s, x - 1, y + 1) + c * px(s, x, y + 1) + e * px(s, x + 1, y + 1)) -
         (e * px(s, x - 1, y - 1) + c * px(s, x, y - 1) + e * px(s, x + 1, y - 1));
}
double sobelDx(const GuardedImage& s, uint32_t x, uint32_t y) { return weighedDx(s, x, y, 1, 2); }
double sobelDy(const GuardedImage& s, uint32_t x, uint32_t y) { return weighedDy(s, x, y, 1, 2); }

// Division by 8 rounded toward minus infinity.
double floorEighth(double value) { return std::floor(value / 8); }

Formula floorEighthOf(Formula f) {
  return [f](const GuardedImage& s, uint32_t x, uint32_t y) { return floorEighth(f(s, x, y)); };
}
Formula eighthOf(Formula f) {
  return [f](const GuardedImage& s, uint32_t x, uint32_t y) { return f(s, x, y) / 8; };
}

template <class T>
T elementAt(const GuardedImage& image, uint32_t index, uint32_t y) {
  T value;
  memcpy(&value, image.row(y) + size_t(index) * sizeof(T), sizeof value);
  return value;
}

// ---- Outputs -------------------------------------------------------------------------------

// Interleaved pairs of the interior: srcWidth-2 pairs per row, srcHeight-2 rows.
struct Interleaved {
  GuardedImage out;
  Interleaved(uint32_t width, uint32_t height, uint32_t elementBytes, uint32_t padding)
      : out(2 * (width - 2), height - 2, 2 * (width - 2) * elementBytes + padding, elementBytes) {
    out.fill(kUntouched);
  }
};

template <class T>
void expectInterleaved(const GuardedImage& src, const GuardedImage& out, const Formula& dx, const Formula& dy,
                       const std::string& what) {
  ASSERT_TRUE(out.paddingIntact()) << what;
  for (uint32_t y = 1; y + 1 < src.height(); ++y) {
    for (uint32_t x = 1; x + 1 < src.width(); ++x) {
      ASSERT_EQ(double(elementAt<T>(out, 2 * (x - 1), y - 1)), dx(src, x, y)) << what << " dx at " << x << "," << y;
      ASSERT_EQ(double(elementAt<T>(out, 2 * (x - 1) + 1, y - 1)), dy(src, x, y)) << what << " dy at " << x << "," << y;
    }
  }
}

// A planar output holds the formula in the interior and untouched bytes on
// the outermost rows and columns.
template <class T>
void expectPlanar(const GuardedImage& src, const GuardedImage& out, const Formula& f, const std::string& what) {
  ASSERT_TRUE(out.paddingIntact()) << what;
  T untouched;
  memset(&untouched, kUntouched, sizeof untouched);
  for (uint32_t y = 0; y < src.height(); ++y) {
    for (uint32_t x = 0; x < src.width(); ++x) {
      const bool interior = x > 0 && y > 0 && x + 1 < src.width() && y + 1 < src.height();
      const T got = elementAt<T>(out, x, y);
      if (interior)
        ASSERT_EQ(double(got), f(src, x, y)) << what << " at " << x << "," << y;
      else
        ASSERT_EQ(memcmp(&got, &untouched, sizeof got), 0) << what << " wrote border " << x << "," << y;
    }
  }
}

// A planar output (or any image of the source's size) before the call.
struct Planar : GuardedImage {
  Planar(uint32_t width, uint32_t height, uint32_t elementBytes, uint32_t padding)
      : GuardedImage(width, height, width * elementBytes + padding, elementBytes) {
    fill(kUntouched);
  }
};

template <class T>
T* as(const GuardedImage& image) {
  return reinterpret_cast<T*>(image.data());
}

class Gradients : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE), 0); }
  std::mt19937 rng{31};
};

// Every entry through the table, on random images with padded rows, the
// `_v2` forms with padded outputs and the first generation with packed ones.
TEST_F(Gradients, EveryEntryMatchesItsFormula) {
  for (const auto& [width, height] : std::vector<std::pair<uint32_t, uint32_t>>{{3, 3}, {7, 4}, {45, 9}, {130, 6}}) {
    GuardedImage src(width, height, width + 5);
    src.fillRandom(rng);
    const std::string size = " " + std::to_string(width) + "x" + std::to_string(height);
    const uint32_t s = src.stride();
    {
      Interleaved a(width, height, 2, 6), b(width, height, 2, 0);
      ovkImageGradientInterleaveds16_v2(src.data(), width, height, s, as<int16_t>(a.out), a.out.stride());
      ovkImageGradientInterleaveds16(src.data(), width, height, s, as<int16_t>(b.out));
      expectInterleaved<int16_t>(src, a.out, centralDx, centralDy, "central s16 v2" + size);
      expectInterleaved<int16_t>(src, b.out, centralDx, centralDy, "central s16" + size);
    }
    {
      Interleaved a(width, height, 4, 5), b(width, height, 4, 0);
      ovkImageGradientInterleavedf32_v2(src.data(), width, height, s, as<float>(a.out), a.out.stride());
      ovkImageGradientInterleavedf32(src.data(), width, height, s, as<float>(b.out));
      expectInterleaved<float>(src, a.out, centralDx, centralDy, "central f32 v2" + size);
      expectInterleaved<float>(src, b.out, centralDx, centralDy, "central f32" + size);
    }
    {
      Interleaved a(width, height, 2, 2), b(width, height, 2, 0), c(width, height, 2, 3), d(width, height, 4, 1);
      ovkImageGradientSobelInterleaveds16_v2(src.data(), width, height, s, as<int16_t>(a.out), a.out.stride());
      ovkImageGradientSobelInterleaveds16(src.data(), width, height, s, as<int16_t>(b.out));
      ovkImageGradientSobelInterleaveds16_v3(src.data(), width, height, s, as<int16_t>(c.out), c.out.stride());
      ovkImageGradientSobelInterleavedf32_v2(src.data(), width, height, s, as<float>(d.out), d.out.stride());
      expectInterleaved<int16_t>(src, a.out, floorEighthOf(sobelDx), floorEighthOf(sobelDy), "sobel s16 v2" + size);
      expectInterleaved<int16_t>(src, b.out, floorEighthOf(sobelDx), floorEighthOf(sobelDy), "sobel s16" + size);
      expectInterleaved<int16_t>(src, c.out, sobelDx, sobelDy, "sobel s16 v3" + size);
      expectInterleaved<float>(src, d.out, eighthOf(sobelDx), eighthOf(sobelDy), "sobel f32 v2" + size);
    }
    {
      Interleaved a(width, height, 2, 7);
      ovkImageGradientScharrInterleaveds16(src.data(), width, height, s, as<int16_t>(a.out), a.out.stride());
      const Formula dx = [](const GuardedImage& i, uint32_t x, uint32_t y) { return weighedDx(i, x, y, 3, 10); };
      const Formula dy = [](const GuardedImage& i, uint32_t x, uint32_t y) { return weighedDy(i, x, y, 3, 10); };
      expectInterleaved<int16_t>(src, a.out, dx, dy, "scharr" + size);
    }
    {
      Planar dx(width, height, 2, 4), dy(width, height, 2, 4);
      ovkImageGradientPlanars16_v2(src.data(), width, height, s, as<int16_t>(dx), as<int16_t>(dy), dx.stride());
      expectPlanar<int16_t>(src, dx, centralDx, "central planar s16 dx" + size);
      expectPlanar<int16_t>(src, dy, centralDy, "central planar s16 dy" + size);
      Planar fx(width, height, 4, 0), fy(width, height, 4, 0);
      ovkImageGradientPlanarf32(src.data(), width, height, s, as<float>(fx), as<float>(fy));
      expectPlanar<float>(src, fx, centralDx, "central planar f32 dx" + size);
      expectPlanar<float>(src, fy, centralDy, "central planar f32 dy" + size);
    }
    {
      Planar dx(width, height, 2, 0), dy(width, height, 2, 0);
      ovkImageGradientSobelPlanars16(src.data(), width, height, s, as<int16_t>(dx), as<int16_t>(dy));
      expectPlanar<int16_t>(src, dx, floorEighthOf(sobelDx), "sobel planar s16 dx" + size);
      expectPlanar<int16_t>(src, dy, floorEighthOf(sobelDy), "sobel planar s16 dy" + size);
      Planar bx(width, height, 1, 3), by(width, height, 1, 3);
      ovkImageGradientSobelPlanars8_v2(src.data(), width, height, s, as<int8_t>(bx), as<int8_t>(by), bx.stride());
      expectPlanar<int8_t>(src, bx, floorEighthOf(sobelDx), "sobel planar s8 dx" + size);
      expectPlanar<int8_t>(src, by, floorEighthOf(sobelDy), "sobel planar s8 dy" + size);
      Planar fx(width, height, 4, 6), fy(width, height, 4, 6);
      ovkImageGradientSobelPlanarf32_v2(src.data(), width, height, s, as<float>(fx), as<float>(fy), fx.stride());
      expectPlanar<float>(src, fx, eighthOf(sobelDx), "sobel planar f32 dx" + size);
      expectPlanar<float>(src, fy, eighthOf(sobelDy), "sobel planar f32 dy" + size);
    }
    {
      Planar magnitude(width, height, 1, 2);
      ovkFilterSobel3x3u8_v2(src.data(), width, height, s, magnitude.data(), magnitude.stride());
      const Formula l1 = [](const GuardedImage& i, uint32_t x, uint32_t y) {
        return std::min(std::fabs(sobelDx(i, x, y)) + std::fabs(sobelDy(i, x, y)), 255.0);
      };
      expectPlanar<uint8_t>(src, magnitude, l1, "sobel magnitude" + size);
    }
  }
}

// The float-source Sobel on integer-valued floats, where every sum is exact.
TEST_F(Gradients, FloatSourceSobelMatchesItsFormula) {
  const uint32_t width = 37, height = 6;
  GuardedImage values(width, height, width);
  values.fillRandom(rng);
  GuardedImage src(width, height, width * 4 + 8, 4);
  for (uint32_t y = 0; y < height; ++y)
    for (uint32_t x = 0; x < width; ++x) {
      const float value = float(values.at(x, y)) - 100.0f;
      memcpy(src.row(y) + x * 4, &value, 4);
    }
  Planar dx(width, height, 4, 0), dy(width, height, 4, 0);
  ovkImageGradientSobelPlanarf32f32_v2(as<float>(src), width, height, src.stride(), as<float>(dx), as<float>(dy), 0);
  // Subtracting 100 from every pixel leaves the differences as they are.
  expectPlanar<float>(values, dx, eighthOf(sobelDx), "sobel f32 from f32 dx");
  expectPlanar<float>(values, dy, eighthOf(sobelDy), "sobel f32 from f32 dy");
}

// A vertical step from 0 to 255: Sobel 1020 beside it, saturated or scaled.
TEST_F(Gradients, StepEdgeGivesTheDocumentedExtremes) {
  GuardedImage src(6, 3, 6);
  for (uint32_t y = 0; y < 3; ++y)
    for (uint32_t x = 0; x < 6; ++x) src.at(x, y) = x < 3 ? 0 : 255;
  Planar magnitude(6, 3, 1, 0);
  ovkFilterSobel3x3u8(src.data(), 6, 3, magnitude.data());
  EXPECT_EQ(magnitude.at(2, 1), 255);
  EXPECT_EQ(magnitude.at(1, 1), 0);
  Interleaved s16(6, 3, 2, 0), v3(6, 3, 2, 0), f32(6, 3, 4, 0), scharr(6, 3, 2, 0);
  ovkImageGradientSobelInterleaveds16(src.data(), 6, 3, 6, as<int16_t>(s16.out));
  ovkImageGradientSobelInterleaveds16_v3(src.data(), 6, 3, 6, as<int16_t>(v3.out), 0);
  ovkImageGradientSobelInterleavedf32(src.data(), 6, 3, 6, as<float>(f32.out));
  ovkImageGradientScharrInterleaveds16(src.data(), 6, 3, 6, as<int16_t>(scharr.out), 0);
  EXPECT_EQ(elementAt<int16_t>(s16.out, 2, 0), 127);  // pair 1 = column 2
  EXPECT_EQ(elementAt<int16_t>(v3.out, 2, 0), 1020);
  EXPECT_EQ(elementAt<float>(f32.out, 2, 0), 127.5f);
  EXPECT_EQ(elementAt<int16_t>(scharr.out, 2, 0), 4080);
  Planar s8x(6, 3, 1, 0), s8y(6, 3, 1, 0);
  ovkImageGradientSobelPlanars8(src.data(), 6, 3, 6, as<int8_t>(s8x), as<int8_t>(s8y));
  EXPECT_EQ(elementAt<int8_t>(s8x, 2, 1), 127);
  EXPECT_EQ(elementAt<int8_t>(s8y, 2, 1), 0);
}

// A horizontal ramp rising by 3 a column: central dx 6, Sobel dx 4 * 6,
// Scharr dx 16 * 6, and no dy anywhere.
TEST_F(Gradients, RampGivesConstantGradients) {
  GuardedImage src(20, 5, 20);
  for (uint32_t y = 0; y < 5; ++y)
    for (uint32_t x = 0; x < 20; ++x) src.at(x, y) = uint8_t(3 * x + 10);
  Interleaved central(20, 5, 2, 0), sobel(20, 5, 4, 0), scharr(20, 5, 2, 0);
  ovkImageGradientInterleaveds16(src.data(), 20, 5, 20, as<int16_t>(central.out));
  ovkImageGradientSobelInterleavedf32(src.data(), 20, 5, 20, as<float>(sobel.out));
  ovkImageGradientScharrInterleaveds16(src.data(), 20, 5, 20, as<int16_t>(scharr.out), 0);
  for (uint32_t y = 0; y < 3; ++y)
    for (uint32_t pair = 0; pair < 18; ++pair) {
      EXPECT_EQ(elementAt<int16_t>(central.out, 2 * pair, y), 6);
      EXPECT_EQ(elementAt<float>(sobel.out, 2 * pair, y), 3.0f);
      EXPECT_EQ(elementAt<int16_t>(scharr.out, 2 * pair, y), 96);
      EXPECT_EQ(elementAt<int16_t>(central.out, 2 * pair + 1, y), 0);
      EXPECT_EQ(elementAt<float>(sobel.out, 2 * pair + 1, y), 0.0f);
      EXPECT_EQ(elementAt<int16_t>(scharr.out, 2 * pair + 1, y), 0);
    }
}

// A Sobel dx of -1 floors to -1 when scaled; a 3x3 image has one pair, and
// a constant image gives zeros.
TEST_F(Gradients, SmallCasesFloorAndFitExactly) {
  GuardedImage src(3, 3, 3);
  src.fill(1);
  src.at(2, 0) = 0;
  GuardedBuffer pair(2 * sizeof(int16_t));  // ends at a guard page
  auto* out = reinterpret_cast<int16_t*>(pair.data());
  ovkImageGradientSobelInterleaveds16_v2(src.data(), 3, 3, 3, out, 0);
  EXPECT_EQ(out[0], -1);
  EXPECT_EQ(out[1], 0);  // dy = (1 + 2 + 1) - (1 + 2 + 0) = 1
  for (const uint32_t size : {3u, 16u, 70u}) {
    GuardedImage flat(size, 4, size);
    flat.fill(77);
    Interleaved g(size, 4, 2, 0);
    ovkImageGradientScharrInterleaveds16(flat.data(), size, 4, size, as<int16_t>(g.out), 0);
    for (uint32_t y = 0; y < 2; ++y)
      for (uint32_t i = 0; i < 2 * (size - 2); ++i) ASSERT_EQ(elementAt<int16_t>(g.out, i, y), 0);
  }
}

TEST_F(Gradients, ImagesBelowThreeWriteNothing) {
  for (const auto& [width, height] : std::vector<std::pair<uint32_t, uint32_t>>{{2, 9}, {9, 2}, {1, 1}}) {
    GuardedImage src(width, height, width);
    src.fill(200);
    Planar dst(width, height, 1, 0);
    ovkFilterSobel3x3u8(src.data(), width, height, dst.data());
    for (uint32_t y = 0; y < height; ++y)
      for (uint32_t x = 0; x < width; ++x) ASSERT_EQ(dst.at(x, y), kUntouched);
  }
}

// Scharr is also internal group 3, which other kernels call through the
// internal table.
TEST_F(Gradients, ScharrIsInternalGroupThree) {
  const ovkFuncPtr* group = &ovkInternalFuncTable[3 * OVK_NUM_IMPLS];
  EXPECT_EQ(group[OVK_IMPL_CPU], reinterpret_cast<ovkFuncPtr>(ovkImageGradientScharrInterleaveds16C));
  EXPECT_EQ(group[OVK_IMPL_PELAR], reinterpret_cast<ovkFuncPtr>(ovkVectorImageGradientScharrInterleaveds16()));
  EXPECT_EQ(ovkInternalImplTable[3], uint32_t(OVK_IMPL_PELAR));
}

TEST_F(Gradients, RejectedArgumentsLogTheConditionAndWriteNothing) {
  GuardedImage src(16, 8, 16);
  src.fill(3);
  Planar out(64, 8, 1, 0), untouched(64, 8, 1, 0);
  auto* s16 = as<int16_t>(out);
  auto* f32 = as<float>(out);
  LogCapture log;
  ovkFilterSobel3x3u8(src.data(), 16, 0, out.data());
  ovkFilterSobel3x3u8_v2(src.data(), 16, 8, 15, out.data(), 16);
  ovkImageGradientInterleaveds16_v2(src.data(), 16, 8, 16, s16, 27);
  ovkImageGradientPlanarf32_v2(src.data(), 16, 8, 16, f32, nullptr, 64);
  ovkImageGradientSobelPlanars8_v2(src.data(), 16, 8, 16, as<int8_t>(out), as<int8_t>(out), 15);
  ovkImageGradientSobelPlanarf32f32(as<float>(src), 16, 2, 15, f32, f32);
  ovkImageGradientSobelPlanarf32f32_v2(as<float>(src), 4, 2, 15, f32, f32, 16);
  ovkImageGradientScharrInterleaveds16(src.data(), 16, 8, 16, s16, 55);
  const std::string a = "Assertion failed @";
  const std::vector<std::string> expected = {
      a + "ovkFilterSobel3x3u8: src && width && height && dst\n",
      a + "ovkFilterSobel3x3u8_v2: src && srcWidth && srcHeight && (srcStride >= srcWidth) && dst && "
          "(dstStride >= srcWidth)\n",
      a + "ovkImageGradientInterleaveds16_v2: src && srcWidth && srcHeight && (srcStride >= srcWidth) && gradients "
          "&& (gradStride >= ((srcWidth-2)*2*sizeof(int16_t)))\n",
      a + "ovkImageGradientPlanarf32_v2: src && srcWidth && srcHeight && (srcStride >= srcWidth) && dx && dy && "
          "(dxyStride >= (srcWidth*sizeof(float)))\n",
      a + "ovkImageGradientSobelPlanars8_v2: src && srcWidth && srcHeight && (srcStride >= srcWidth) && dx && dy "
          "&& (dxyStride >= srcWidth)\n",
      a + "ovkImageGradientSobelPlanarf32f32: src && srcWidth && srcHeight && srcStride >= srcWidth && dx && dy\n",
      a + "ovkImageGradientSobelPlanarf32f32_v2: src && srcWidth && srcHeight && (srcStride >= "
          "(srcWidth*sizeof(float))) && dx && dy && (dxyStride >= (srcWidth*sizeof(float)))\n",
      a + "ovkImageGradientScharrInterleaveds16: src && srcWidth && srcHeight && (srcStride >= srcWidth)&& "
          "gradients && (gradStride >= ((srcWidth-2)*2*sizeof(int16_t)))\n",
  };
  EXPECT_EQ(log.messages(), expected);
  EXPECT_EQ(memcmp(out.data(), untouched.data(), 64 * 8), 0);
}

// ---- Vector kernels --------------------------------------------------------------------------

// Runs one kernel into outputs that start as kUntouched; returns their bytes.
using Runner = std::function<std::vector<uint8_t>(bool vector, const GuardedImage& src)>;

template <class Out, class Fn>
Runner interleavedRunner(Fn vectorKernel, Fn portable, uint32_t padding) {
  return [=](bool vector, const GuardedImage& src) {
    const uint32_t pairs = src.width() > 2 ? src.width() - 2 : 1, rows = src.height() > 2 ? src.height() - 2 : 1;
    GuardedImage out(2 * pairs, rows, 2 * pairs * sizeof(Out) + padding, sizeof(Out));
    out.fill(kUntouched);
    (vector ? vectorKernel : portable)(src.data(), src.width(), src.height(), src.stride(), as<Out>(out), out.stride());
    EXPECT_TRUE(out.paddingIntact());
    return std::vector<uint8_t>(out.data(), out.data() + size_t(out.stride()) * (rows - 1) + 2 * pairs * sizeof(Out));
  };
}

template <class Out, class Src, class Fn>
Runner planarRunner(Fn vectorKernel, Fn portable, uint32_t padding) {
  return [=](bool vector, const GuardedImage& src) {
    Planar dx(src.width(), src.height(), sizeof(Out), padding);
    Planar dy(src.width(), src.height(), sizeof(Out), padding);
    (vector ? vectorKernel : portable)(reinterpret_cast<const Src*>(src.data()), src.width(), src.height(),
                                       src.stride(), as<Out>(dx), as<Out>(dy), dx.stride());
    EXPECT_TRUE(dx.paddingIntact() && dy.paddingIntact());
    const size_t bytes = size_t(dx.stride()) * (src.height() - 1) + src.width() * sizeof(Out);
    std::vector<uint8_t> both(dx.data(), dx.data() + bytes);
    both.insert(both.end(), dy.data(), dy.data() + bytes);
    return both;
  };
}

struct KernelPair {
  std::string name;
  uint32_t sourceBytes;  // per pixel
  Runner run;
};

std::vector<KernelPair> kernelPairs(std::mt19937& rng) {
  const auto pad = [&] { return uint32_t(rng() % 7); };
  return {
      {"central s16", 1,
       interleavedRunner<int16_t>(ovkVectorImageGradientInterleaveds16(), ovkImageGradientInterleaveds16C, pad())},
      {"central f32", 1,
       interleavedRunner<float>(ovkVectorImageGradientInterleavedf32(), ovkImageGradientInterleavedf32C, pad())},
      {"sobel s16", 1,
       interleavedRunner<int16_t>(ovkVectorImageGradientSobelInterleaveds16(), ovkImageGradientSobelInterleaveds16C,
                                  pad())},
      {"sobel s16 v3", 1,
       interleavedRunner<int16_t>(ovkVectorImageGradientSobelInterleaveds16_v3(),
                                  ovkImageGradientSobelInterleaveds16_v3C, pad())},
      {"sobel f32", 1,
       interleavedRunner<float>(ovkVectorImageGradientSobelInterleavedf32(), ovkImageGradientSobelInterleavedf32C,
                                pad())},
      {"scharr", 1,
       interleavedRunner<int16_t>(ovkVectorImageGradientScharrInterleaveds16(), ovkImageGradientScharrInterleaveds16C,
                                  pad())},
      {"central planar s16", 1,
       planarRunner<int16_t, uint8_t>(ovkVectorImageGradientPlanars16(), ovkImageGradientPlanars16C, pad())},
      {"central planar f32", 1,
       planarRunner<float, uint8_t>(ovkVectorImageGradientPlanarf32(), ovkImageGradientPlanarf32C, pad())},
      {"sobel planar s16", 1,
       planarRunner<int16_t, uint8_t>(ovkVectorImageGradientSobelPlanars16(), ovkImageGradientSobelPlanars16C, pad())},
      {"sobel planar s8", 1,
       planarRunner<int8_t, uint8_t>(ovkVectorImageGradientSobelPlanars8(), ovkImageGradientSobelPlanars8C, pad())},
      {"sobel planar f32", 1,
       planarRunner<float, uint8_t>(ovkVectorImageGradientSobelPlanarf32(), ovkImageGradientSobelPlanarf32C, pad())},
      {"sobel planar f32 from f32", 4,
       planarRunner<float, float>(ovkVectorImageGradientSobelPlanarf32f32(), ovkImageGradientSobelPlanarf32f32C,
                                  pad())},
      {"sobel magnitude", 1,
       [](bool vector, const GuardedImage& src) {
         Planar dst(src.width(), src.height(), 1, 3);
         (vector ? ovkVectorFilterSobel3x3u8() : ovkFilterSobel3x3u8C)(src.data(), src.width(), src.height(),
                                                                       src.stride(), dst.data(), dst.stride());
         return std::vector<uint8_t>(dst.data(), dst.data() + size_t(dst.stride()) * (src.height() - 1) + src.width());
       }},
  };
}

// Float sources hold random finite values with fractions, so that the order
// of the additions matters.
void fillSource(GuardedImage& src, uint32_t sourceBytes, std::mt19937& rng) {
  if (sourceBytes == 1) return src.fillRandom(rng);
  std::uniform_real_distribution<float> value(-300.0f, 300.0f);
  for (uint32_t y = 0; y < src.height(); ++y)
    for (uint32_t x = 0; x < src.width(); ++x) {
      const float v = value(rng);
      memcpy(src.row(y) + x * 4, &v, 4);
    }
}

TEST(GradientVectors, MatchPortableOnEveryTarget) {
  std::mt19937 rng(5);
  std::vector<uint32_t> widths;
  for (uint32_t w = 3; w <= 70; ++w) widths.push_back(w);
  for (const uint32_t w : {127u, 128u, 129u, 255u, 513u}) widths.push_back(w);
  std::vector<std::string> targets;
  forEachVectorTarget([&](const std::string& target) {
    targets.push_back(target);
    for (const KernelPair& pair : kernelPairs(rng)) {
      for (const uint32_t width : widths) {
        for (const uint32_t height : {3u, 4u, 7u}) {
          GuardedImage src(width, height, width * pair.sourceBytes + rng() % 13, pair.sourceBytes);
          fillSource(src, pair.sourceBytes, rng);
          ASSERT_EQ(pair.run(true, src), pair.run(false, src))
              << target << " " << pair.name << " " << width << "x" << height;
        }
      }
    }
  });
  EXPECT_FALSE(targets.empty());
#if defined(__ARM_NEON)
  EXPECT_NE(std::find(targets.begin(), targets.end(), "NEON"), targets.end());
#endif
}

}  // namespace
