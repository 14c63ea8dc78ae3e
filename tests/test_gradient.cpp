// 3x3 gradients and the Sobel magnitude: every entry against formulas written
// out here, the layouts, the edge cases, NaNs of the float source, and the
// vector kernels against the portable ones on every target.
#include <gtest/gtest.h>
#include <string.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "cpu/orvikInternal.h"
#include "support/entry_test.h"
#include "support/gradient_reference.h"
#include "support/guarded_image.h"
#include "support/vector_targets.h"

namespace {

constexpr uint8_t kUntouched = 0x5C;

enum class Layout { interleaved, planar };
enum class Scale { none, floorEighth, eighth, magnitude };  // magnitude: one planar output

template <class T>
T* as(const GuardedImage& image) {
  return reinterpret_cast<T*>(image.data());
}

// The outputs an entry writes, all kUntouched before the call: interleaved
// outputs have srcWidth-2 pairs by srcHeight-2 rows, planar ones the source's
// size; `b` is the dy plane.
struct Outputs {
  Outputs(Layout layout, uint32_t elementBytes, const GuardedImage& src, uint32_t padding)
      : columns(layout == Layout::interleaved ? 2 * (src.width() - 2) : src.width()),
        rows(layout == Layout::interleaved ? src.height() - 2 : src.height()),
        rowBytes(columns * elementBytes),
        a(columns, rows, rowBytes + padding, elementBytes),
        b(columns, rows, rowBytes + padding, elementBytes) {
    a.fill(kUntouched);
    b.fill(kUntouched);
  }
  std::vector<uint8_t> bytes() const {
    const size_t size = size_t(a.stride()) * (rows - 1) + rowBytes;
    std::vector<uint8_t> both(a.data(), a.data() + size);
    both.insert(both.end(), b.data(), b.data() + size);
    return both;
  }
  uint32_t columns, rows, rowBytes;
  GuardedImage a, b;
};

// One entry or kernel called on a source (stride in bytes) with an output stride.
using Call = std::function<void(const GuardedImage& src, const Outputs& out, uint32_t stride)>;

template <class Src, class T>
Call call(void (*f)(const Src*, uint32_t, uint32_t, uint32_t, T*, uint32_t)) {
  return [f](const GuardedImage& s, const Outputs& o, uint32_t stride) {
    f(as<const Src>(s), s.width(), s.height(), s.stride(), as<T>(o.a), stride);
  };
}
template <class Src, class T>
Call call(void (*f)(const Src*, uint32_t, uint32_t, uint32_t, T*)) {
  return [f](const GuardedImage& s, const Outputs& o, uint32_t) {
    f(as<const Src>(s), s.width(), s.height(), s.stride(), as<T>(o.a));
  };
}
template <class Src, class T>
Call call(void (*f)(const Src*, uint32_t, uint32_t, uint32_t, T*, T*, uint32_t)) {
  return [f](const GuardedImage& s, const Outputs& o, uint32_t stride) {
    f(as<const Src>(s), s.width(), s.height(), s.stride(), as<T>(o.a), as<T>(o.b), stride);
  };
}
template <class Src, class T>
Call call(void (*f)(const Src*, uint32_t, uint32_t, uint32_t, T*, T*)) {
  return [f](const GuardedImage& s, const Outputs& o, uint32_t) {
    f(as<const Src>(s), s.width(), s.height(), s.stride(), as<T>(o.a), as<T>(o.b));
  };
}

double elementAt(const GuardedImage& image, uint32_t index, uint32_t y, char type) {
  const uint8_t* p = image.row(y);
  int16_t s16;
  float f32;
  if (type == 's') return memcpy(&s16, p + 2 * index, 2), s16;
  if (type == 'f') return memcpy(&f32, p + 4 * index, 4), f32;
  return type == 'b' ? int8_t(p[index]) : p[index];
}
uint32_t bytesOf(char type) { return type == 's' ? 2 : type == 'f' ? 4 : 1; }

double expected(Gradient g, int component, Scale scale) {
  const int value = component ? g.dy : g.dx;
  if (scale == Scale::magnitude) return std::min(std::abs(g.dx) + std::abs(g.dy), 255);
  return scale == Scale::floorEighth ? std::floor(value / 8.0) : scale == Scale::eighth ? value / 8.0 : value;
}

// A float image (stride in bytes, padded) holding the 8-bit source minus 100:
// integer values keep every sum exact, and the offset leaves the differences alone.
void toFloat(const GuardedImage& src, GuardedImage& out) {
  for (uint32_t y = 0; y < src.height(); ++y)
    for (uint32_t x = 0; x < src.width(); ++x) {
      const float value = float(src.at(x, y)) - 100.0f;
      memcpy(out.row(y) + 4 * x, &value, 4);
    }
}

struct Entry {
  const char* name;
  Layout layout;
  char type;  // b s8, B u8, s s16, f f32
  int edge, centre;
  Scale scale;
  bool stridedOutput, floatSource;
  Call run;
};

std::vector<Entry> entries() {
  const Layout I = Layout::interleaved, P = Layout::planar;
  const Scale none = Scale::none, floor8 = Scale::floorEighth, eighth = Scale::eighth;
  return {
      {"central s16", I, 's', 0, 1, none, false, false, call(ovkImageGradientInterleaveds16)},
      {"central s16 v2", I, 's', 0, 1, none, true, false, call(ovkImageGradientInterleaveds16_v2)},
      {"central f32", I, 'f', 0, 1, none, false, false, call(ovkImageGradientInterleavedf32)},
      {"central f32 v2", I, 'f', 0, 1, none, true, false, call(ovkImageGradientInterleavedf32_v2)},
      {"central planar s16", P, 's', 0, 1, none, false, false, call(ovkImageGradientPlanars16)},
      {"central planar s16 v2", P, 's', 0, 1, none, true, false, call(ovkImageGradientPlanars16_v2)},
      {"central planar f32", P, 'f', 0, 1, none, false, false, call(ovkImageGradientPlanarf32)},
      {"central planar f32 v2", P, 'f', 0, 1, none, true, false, call(ovkImageGradientPlanarf32_v2)},
      {"sobel s16", I, 's', 1, 2, floor8, false, false, call(ovkImageGradientSobelInterleaveds16)},
      {"sobel s16 v2", I, 's', 1, 2, floor8, true, false, call(ovkImageGradientSobelInterleaveds16_v2)},
      {"sobel s16 v3", I, 's', 1, 2, none, true, false, call(ovkImageGradientSobelInterleaveds16_v3)},
      {"sobel f32", I, 'f', 1, 2, eighth, false, false, call(ovkImageGradientSobelInterleavedf32)},
      {"sobel f32 v2", I, 'f', 1, 2, eighth, true, false, call(ovkImageGradientSobelInterleavedf32_v2)},
      {"sobel planar s16", P, 's', 1, 2, floor8, false, false, call(ovkImageGradientSobelPlanars16)},
      {"sobel planar s16 v2", P, 's', 1, 2, floor8, true, false, call(ovkImageGradientSobelPlanars16_v2)},
      {"sobel planar s8", P, 'b', 1, 2, floor8, false, false, call(ovkImageGradientSobelPlanars8)},
      {"sobel planar s8 v2", P, 'b', 1, 2, floor8, true, false, call(ovkImageGradientSobelPlanars8_v2)},
      {"sobel planar f32", P, 'f', 1, 2, eighth, false, false, call(ovkImageGradientSobelPlanarf32)},
      {"sobel planar f32 v2", P, 'f', 1, 2, eighth, true, false, call(ovkImageGradientSobelPlanarf32_v2)},
      {"sobel f32 from f32", P, 'f', 1, 2, eighth, false, true, call(ovkImageGradientSobelPlanarf32f32)},
      {"sobel f32 from f32 v2", P, 'f', 1, 2, eighth, true, true, call(ovkImageGradientSobelPlanarf32f32_v2)},
      {"scharr", I, 's', 3, 10, none, true, false, call(ovkImageGradientScharrInterleaveds16)},
      {"magnitude v2", P, 'B', 1, 2, Scale::magnitude, true, false, call(ovkFilterSobel3x3u8_v2)},
      {"magnitude", P, 'B', 1, 2, Scale::magnitude, false, false,
       [](const GuardedImage& s, const Outputs& o, uint32_t) {  // packed source only
         GuardedImage packed(s.width(), s.height(), s.width());
         for (uint32_t y = 0; y < s.height(); ++y) memcpy(packed.row(y), s.row(y), s.width());
         ovkFilterSobel3x3u8(packed.data(), s.width(), s.height(), o.a.data());
       }},
  };
}

// Interleaved outputs hold the formula for every interior pixel; planar
// outputs hold it in the interior and untouched bytes on the outermost rows
// and columns.
void expectFormula(const Entry& e, const GuardedImage& src, const Outputs& out) {
  ASSERT_TRUE(out.a.paddingIntact() && out.b.paddingIntact());
  const bool interleaved = e.layout == Layout::interleaved;
  const int planes = interleaved || e.scale == Scale::magnitude ? 1 : 2;
  for (int plane = 0; plane < planes; ++plane)
    for (uint32_t y = 0; y < out.rows; ++y)
      for (uint32_t i = 0; i < out.columns; ++i) {
        const uint32_t x = interleaved ? i / 2 + 1 : i, sourceY = interleaved ? y + 1 : y;
        const bool border = x == 0 || sourceY == 0 || x + 1 == src.width() || sourceY + 1 == src.height();
        const GuardedImage& image = plane ? out.b : out.a;
        if (border) {
          const uint8_t* element = image.row(y) + i * bytesOf(e.type);
          ASSERT_EQ(size_t(std::count(element, element + bytesOf(e.type), kUntouched)), size_t(bytesOf(e.type)))
              << "border written at " << x << "," << y;
        } else {
          const Gradient g = gradientAt(src, x, sourceY, e.edge, e.centre);
          ASSERT_EQ(elementAt(image, i, y, e.type), expected(g, interleaved ? i % 2 : plane, e.scale))
              << "at " << x << "," << sourceY << " plane " << plane;
        }
      }
}

class Gradients : public EntryTest {
 protected:
  std::mt19937 rng{31};
};

// Random images, 0/255 blocks for the extreme values, and a ramp rising by 3 a
// column (constant dx, no dy); strided outputs alternate padded and packed (0).
TEST_F(Gradients, EveryEntryMatchesItsFormula) {
  const std::vector<std::pair<uint32_t, uint32_t>> sizes = {{3, 3}, {7, 4}, {45, 9}, {130, 6}};
  for (size_t sizeIndex = 0; sizeIndex < sizes.size(); ++sizeIndex)
    for (const char pattern : {'r', 'b', 'l'}) {
      const auto [width, height] = sizes[sizeIndex];
      GuardedImage src(width, height, width + 5);
      src.fillRandom(rng);
      for (uint32_t y = 0; y < height && pattern != 'r'; ++y)
        for (uint32_t x = 0; x < width; ++x)
          src.at(x, y) = pattern == 'b' ? ((x / 3 + y / 2) % 2) * 255 : uint8_t(3 * x + 10);
      GuardedImage floatSrc(width, height, 4 * width + 8, 4);
      toFloat(src, floatSrc);
      for (const Entry& e : entries()) {
        SCOPED_TRACE(std::string(e.name) + " " + std::to_string(width) + "x" + std::to_string(height) + pattern);
        const uint32_t padding = e.stridedOutput && sizeIndex % 2 == 0 ? 1 + sizeIndex + width % 5 : 0;
        Outputs out(e.layout, bytesOf(e.type), src, padding);
        e.run(e.floatSource ? floatSrc : src, out, padding ? out.a.stride() : 0);
        expectFormula(e, src, out);
      }
    }
}

TEST_F(Gradients, ImagesBelowThreeWriteNothing) {
  for (const auto& [width, height] : std::vector<std::pair<uint32_t, uint32_t>>{{2, 9}, {9, 2}, {1, 1}})
    for (const Entry& e : entries()) {
      GuardedImage src(width, height, 4 * width, 4);  // room for a float source
      src.fill(200);
      Outputs out(Layout::planar, 4, src, 0);
      e.run(src, out, out.a.stride());
      EXPECT_EQ(out.bytes(), Outputs(Layout::planar, 4, src, 0).bytes()) << e.name << " " << width << "x" << height;
    }
}

// Other kernels call Scharr through the internal table as group 3.
TEST_F(Gradients, ScharrIsInternalGroupThree) {
  const ovkFuncPtr* group = &ovkInternalFuncTable[3 * OVK_NUM_IMPLS];
  EXPECT_EQ(group[OVK_IMPL_CPU], reinterpret_cast<ovkFuncPtr>(ovkImageGradientScharrInterleaveds16C));
  EXPECT_EQ(group[OVK_IMPL_PELAR], reinterpret_cast<ovkFuncPtr>(ovkVectorImageGradientScharrInterleaveds16()));
  EXPECT_EQ(ovkInternalImplTable[3], uint32_t(OVK_IMPL_PELAR));
}

// Whatever NaN goes in, the one quiet NaN comes out; infinities keep their
// IEEE results.  40 columns give every target at least one full vector.
TEST_F(Gradients, FloatSourceStoresOneQuietNaN) {
  constexpr uint32_t kWidth = 40;
  std::vector<float> src(kWidth * 3, 1.0f);
  const uint32_t signallingNaN = 0xFF800123u, infinity = 0x7F800000u;
  memcpy(&src[kWidth + 20], &signallingNaN, 4);
  memcpy(&src[kWidth + 30], &infinity, 4);
  const auto check = [&](const std::string& variant) {
    std::vector<float> dx(kWidth * 3), dy(kWidth * 3);
    ovkImageGradientSobelPlanarf32f32_v2(src.data(), kWidth, 3, 0, dx.data(), dy.data(), 0);
    for (uint32_t x = 1; x + 1 < kWidth; ++x) {
      // Columns 20 and 30 enter dx at 19, 21 and 29, 31; every other sum is 4 - 4.
      const uint32_t want = x == 19 || x == 21 ? 0x7FC00000u : x == 29 ? 0x7F800000u : x == 31 ? 0xFF800000u : 0;
      uint32_t gotX, gotY;
      memcpy(&gotX, &dx[kWidth + x], 4);
      memcpy(&gotY, &dy[kWidth + x], 4);
      EXPECT_EQ(gotX, want) << variant << " dx at " << x;
      EXPECT_EQ(gotY, 0u) << variant << " dy at " << x;
    }
  };
  entriesRunPortable();
  check("portable");
  for (const int64_t target : vectorTargets()) {
    entriesRunVectorTarget(target);
    check(targetName(target));
  }
  entriesRunDefault();
}

// ---- Vector kernels --------------------------------------------------------------------------

struct KernelPair {
  const char* name;
  Layout layout;
  uint32_t elementBytes;
  bool floatSource;
  Call vector, portable;
};

#define OVK_PAIR(group, layout, bytes, floatSource) \
  { #group, Layout::layout, bytes, floatSource, call(ovkVector##group()), call(ovk##group##C) }

// The vector kernel is looked up under the target chosen at the time of the call.
std::vector<KernelPair> kernelPairs() {
  return {
      OVK_PAIR(ImageGradientInterleaveds16, interleaved, 2, false),
      OVK_PAIR(ImageGradientInterleavedf32, interleaved, 4, false),
      OVK_PAIR(ImageGradientSobelInterleaveds16, interleaved, 2, false),
      OVK_PAIR(ImageGradientSobelInterleaveds16_v3, interleaved, 2, false),
      OVK_PAIR(ImageGradientSobelInterleavedf32, interleaved, 4, false),
      OVK_PAIR(ImageGradientScharrInterleaveds16, interleaved, 2, false),
      OVK_PAIR(ImageGradientPlanars16, planar, 2, false),
      OVK_PAIR(ImageGradientPlanarf32, planar, 4, false),
      OVK_PAIR(ImageGradientSobelPlanars16, planar, 2, false),
      OVK_PAIR(ImageGradientSobelPlanars8, planar, 1, false),
      OVK_PAIR(ImageGradientSobelPlanarf32, planar, 4, false),
      OVK_PAIR(ImageGradientSobelPlanarf32f32, planar, 4, true),
      OVK_PAIR(FilterSobel3x3u8, planar, 1, false),
  };
}

// Float sources hold random values with fractions, so that the order of the
// additions matters.
void fillSource(GuardedImage& src, bool floatSource, std::mt19937& rng) {
  if (!floatSource) return src.fillRandom(rng);
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
    for (const KernelPair& pair : kernelPairs()) {
      const uint32_t padding = rng() % 7, sourceBytes = pair.floatSource ? 4 : 1;
      for (const uint32_t width : widths) {
        for (const uint32_t height : {3u, 4u, 7u}) {
          GuardedImage src(width, height, width * sourceBytes + rng() % 13, sourceBytes);
          fillSource(src, pair.floatSource, rng);
          Outputs vector(pair.layout, pair.elementBytes, src, padding),
              portable(pair.layout, pair.elementBytes, src, padding);
          pair.vector(src, vector, vector.a.stride());
          pair.portable(src, portable, portable.a.stride());
          ASSERT_TRUE(vector.a.paddingIntact() && vector.b.paddingIntact());
          ASSERT_EQ(vector.bytes(), portable.bytes()) << target << " " << pair.name << " " << width << "x" << height;
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
