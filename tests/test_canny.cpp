// Canny: synthetic shapes, a reference detector written out from the
// documented rules, the gradient planes of `_v3` and the behaviour without
// scratch memory.
#include <gtest/gtest.h>
#include <string.h>

#include <algorithm>
#include <cmath>
#include <deque>
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

// The detector as its documentation states it, with a queue for hysteresis.
std::vector<uint8_t> referenceCanny(const GuardedImage& s, int low, int high) {
  const int w = int(s.width()), h = int(s.height());
  std::vector<Gradient> g;
  std::vector<int> m;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      g.push_back(sobelAt(s, uint32_t(x), uint32_t(y)));
      m.push_back(std::abs(g.back().dx) + std::abs(g.back().dy));
    }
  const double tan22 = std::tan(M_PI / 8), tan67 = std::tan(3 * M_PI / 8);
  std::vector<int> kind(m.size(), 0);  // 0 none, 1 weak, 2 edge
  std::deque<int> edges;
  for (int y = 1; y + 1 < h; ++y)
    for (int x = 1; x + 1 < w; ++x) {
      const int i = y * w + x;
      const double ax = std::abs(g[i].dx), ay = std::abs(g[i].dy);
      // The neighbour before the pixel (left or above) along the direction.
      const int before = ay <= ax * tan22 ? -1 : ay >= ax * tan67 ? -w : -w + ((g[i].dx > 0) == (g[i].dy > 0) ? -1 : 1);
      if (m[i] <= low || m[i] <= m[i + before] || m[i] < m[i - before]) continue;
      kind[i] = m[i] > high ? 2 : 1;
      if (kind[i] == 2) edges.push_back(i);
    }
  for (; !edges.empty(); edges.pop_front())
    for (int dy = -1; dy <= 1; ++dy)
      for (int dx = -1; dx <= 1; ++dx) {
        const int n = edges.front() + dy * w + dx;
        if (kind[n] == 1) kind[n] = 2, edges.push_back(n);
      }
  std::vector<uint8_t> out(m.size());
  for (size_t i = 0; i < out.size(); ++i) out[i] = kind[i] == 2 ? 255 : 0;
  return out;
}

std::vector<uint8_t> pixelsOf(const GuardedImage& image) {
  std::vector<uint8_t> pixels;
  for (uint32_t y = 0; y < image.height(); ++y) pixels.insert(pixels.end(), image.row(y), image.row(y) + image.width());
  return pixels;
}

class Canny : public EntryTest {
 protected:
  // Runs every entry, into padded destinations where they take a stride (the
  // first generation only on packed sources); all must give the same map.
  std::vector<uint8_t> detect(const GuardedImage& src, int low, int high) {
    const uint32_t w = src.width(), h = src.height(), s = src.stride();
    std::vector<uint8_t> first;
    for (int entry = 0; entry < 4; ++entry) {
      if (entry == 3 && s != w) break;
      GuardedImage dst(w, h, entry == 3 ? w : w + 3);
      dst.fill(kUntouched);
      if (entry == 0) ovkFilterCanny3x3u8_v2(src.data(), w, h, s, dst.data(), dst.stride(), low, high);
      if (entry == 1) ovkFilterCannyu8(src.data(), w, h, s, dst.data(), dst.stride(), low, high);
      if (entry == 2)
        ovkFilterCanny3x3u8_v3(src.data(), w, h, s, dst.data(), dst.stride(), nullptr, nullptr, 0, low, high);
      if (entry == 3) ovkFilterCanny3x3u8(src.data(), w, h, dst.data(), low, high);
      EXPECT_TRUE(dst.paddingIntact()) << "entry " << entry;
      if (entry == 0) first = pixelsOf(dst);
      EXPECT_EQ(pixelsOf(dst), first) << "entry " << entry;
    }
    return first;
  }
  std::mt19937 rng{8};
};

// Smooth random blobs give edges of every direction and strength.
void fillBlobs(GuardedImage& image, std::mt19937& rng) {
  std::uniform_real_distribution<double> phase(0, 6.3), frequency(0.05, 0.4);
  const double fx = frequency(rng), fy = frequency(rng), p = phase(rng);
  for (uint32_t y = 0; y < image.height(); ++y)
    for (uint32_t x = 0; x < image.width(); ++x) {
      const double v = 128 + 60 * std::sin(fx * x + p) + 60 * std::cos(fy * y * 1.3 + 0.7 * std::sin(0.1 * x));
      image.at(x, y) = uint8_t(std::lround(std::fmin(255, std::fmax(0, v + int(rng() % 9) - 4))));
    }
}

TEST_F(Canny, MatchesTheDocumentedDetector) {
  for (const auto& [width, height] : std::vector<std::pair<uint32_t, uint32_t>>{{3, 3}, {17, 9}, {64, 48}, {131, 77}})
    for (const auto& [low, high] : std::vector<std::pair<int, int>>{{40, 120}, {100, 100}, {0, 400}, {-1, 2040}}) {
      GuardedImage src(width, height, width + width % 2 * 7);  // odd widths padded
      fillBlobs(src, rng);
      ASSERT_EQ(detect(src, low, high), referenceCanny(src, low, high))
          << width << "x" << height << " low " << low << " high " << high;
    }
}

// A filled square gives one closed outline hugging its sides.
TEST_F(Canny, FilledSquareGivesItsClosedOutline) {
  GuardedImage src(40, 40, 40);
  src.fill(20);
  for (uint32_t y = 10; y < 30; ++y)
    for (uint32_t x = 10; x < 30; ++x) src.at(x, y) = 220;
  const std::vector<uint8_t> edges = detect(src, 100, 300);
  for (int y = 0; y < 40; ++y)
    for (int x = 0; x < 40; ++x) {
      const bool nearSide = (x >= 9 && x <= 30 && y >= 9 && y <= 30) && !(x >= 11 && x <= 28 && y >= 11 && y <= 28);
      if (!nearSide) ASSERT_EQ(edges[y * 40 + x], 0) << x << "," << y;
    }
  // Closed: flooding the background from a corner never reaches the inside.
  std::vector<bool> reached(40 * 40, false);
  std::vector<int> todo{0};
  for (reached[0] = true; !todo.empty();) {
    const int i = todo.back();
    todo.pop_back();
    for (const int n : {i - 40, i + 40, i % 40 ? i - 1 : -1, i % 40 < 39 ? i + 1 : -1})
      if (n >= 0 && n < 40 * 40 && !reached[n] && edges[n] == 0) reached[n] = true, todo.push_back(n);
  }
  EXPECT_FALSE(reached[20 * 40 + 20]);
}

TEST_F(Canny, NoiseBelowLowGivesNothing) {
  GuardedImage src(80, 60, 80);
  for (uint32_t y = 0; y < 60; ++y)
    for (uint32_t x = 0; x < 80; ++x) src.at(x, y) = uint8_t(100 + rng() % 7);  // |dx| + |dy| <= 48
  EXPECT_EQ(detect(src, 48, 200), std::vector<uint8_t>(80 * 60, 0));
}

// Vertical steps in column 20: strong in rows 5..14, weak but touching in
// rows 15..34; a separate weak step in column 50 touches nothing strong.
TEST_F(Canny, WeakEdgesSurviveOnlyWhenJoinedToAStrongOne) {
  GuardedImage src(70, 40, 70);
  src.fill(0);
  for (uint32_t y = 0; y < 40; ++y) {
    for (uint32_t x = 20; x < 40; ++x) src.at(x, y) = y < 15 ? 200 : 40;
    for (uint32_t x = 50; x < 70; ++x) src.at(x, y) = 40;
  }
  const std::vector<uint8_t> edges = detect(src, 100, 500);
  const auto edgesInColumns = [&](uint32_t y, uint32_t from, uint32_t to) {
    int count = 0;
    for (uint32_t x = from; x <= to; ++x) count += edges[y * 70 + x] == 255;
    return count;
  };
  for (uint32_t y = 2; y < 38; ++y) {
    // Where the contrast changes the gradient turns, and the line may widen.
    if (y < 13 || y > 16) EXPECT_EQ(edgesInColumns(y, 18, 21), 1) << "row " << y;
    EXPECT_GE(edgesInColumns(y, 18, 21), 1) << "row " << y;
    EXPECT_EQ(edgesInColumns(y, 45, 69), 0) << "row " << y;
  }
}

TEST_F(Canny, V3LeavesTheSobelGradients) {
  const uint32_t width = 33, height = 12, gradStride = 2 * width + 6;
  GuardedImage src(width, height, width);
  fillBlobs(src, rng);
  GuardedImage gx(width, height, gradStride, 2), gy(width, height, gradStride, 2), dst(width, height, width);
  ovkFilterCanny3x3u8_v3(src.data(), width, height, 0, dst.data(), 0, reinterpret_cast<int16_t*>(gx.data()),
                         reinterpret_cast<int16_t*>(gy.data()), gradStride, 30, 90);
  for (uint32_t y = 0; y < height; ++y)
    for (uint32_t x = 0; x < width; ++x) {
      int16_t got[2];
      memcpy(&got[0], gx.row(y) + 2 * x, 2);
      memcpy(&got[1], gy.row(y) + 2 * x, 2);
      ASSERT_EQ(got[0], sobelAt(src, x, y).dx) << x << "," << y;
      ASSERT_EQ(got[1], sobelAt(src, x, y).dy) << x << "," << y;
    }
  EXPECT_TRUE(gx.paddingIntact() && gy.paddingIntact());
  EXPECT_EQ(pixelsOf(dst), referenceCanny(src, 30, 90));
}

// A frame full of edges: every pixel may end on the stack at once.
TEST_F(Canny, FrameFullOfEdgesCompletes) {
  GuardedImage src(2048, 1024, 2048);
  src.fillRandom(rng);
  GuardedImage dst(2048, 1024, 2048);
  ovkFilterCanny3x3u8(src.data(), 2048, 1024, dst.data(), -1, -1);
  const std::vector<uint8_t> pixels = pixelsOf(dst);
  const auto edges = std::count(pixels.begin(), pixels.end(), 255);
  EXPECT_EQ(edges + std::count(pixels.begin(), pixels.end(), 0), 2048 * 1024);
  EXPECT_GT(edges, 2048 * 1024 / 4);
}

// The vector gradient pass gives the portable edge maps and gradient planes,
// for widths around the vector sizes and gradient rows at odd addresses.
TEST(CannyVectors, MatchPortableOnEveryTarget) {
  std::mt19937 rng(12);
  std::vector<uint32_t> widths;
  for (uint32_t w = 3; w <= 70; w += 1) widths.push_back(w);
  for (const uint32_t w : {129u, 255u, 300u}) widths.push_back(w);
  forEachVectorTarget([&](const std::string& target) {
    for (const uint32_t width : widths) {
      const uint32_t height = 3 + rng() % 9, gradStride = 2 * width + rng() % 5;
      GuardedImage src(width, height, width + rng() % 4);
      fillBlobs(src, rng);
      GuardedImage edges[2] = {{width, height, width}, {width, height, width}};
      GuardedImage gx[2] = {{width, height, gradStride, 2}, {width, height, gradStride, 2}};
      GuardedImage gy[2] = {{width, height, gradStride, 2}, {width, height, gradStride, 2}};
      const ovkFilterCanny3x3u8_v3Fn kernels[2] = {ovkVectorFilterCanny3x3u8_v3(), ovkFilterCanny3x3u8_v3C};
      for (int k = 0; k < 2; ++k)
        kernels[k](src.data(), width, height, src.stride(), edges[k].data(), width,
                   reinterpret_cast<int16_t*>(gx[k].data()), reinterpret_cast<int16_t*>(gy[k].data()), gradStride, 40,
                   120);
      const std::string what = target + " " + std::to_string(width) + "x" + std::to_string(height);
      ASSERT_EQ(pixelsOf(edges[0]), pixelsOf(edges[1])) << what;
      for (uint32_t y = 0; y < height; ++y) {
        ASSERT_EQ(memcmp(gx[0].row(y), gx[1].row(y), 2 * width), 0) << what;
        ASSERT_EQ(memcmp(gy[0].row(y), gy[1].row(y), 2 * width), 0) << what;
      }
    }
  });
}

void* noScratch(uint32_t, uint32_t) { return nullptr; }

TEST_F(Canny, WithoutScratchMemoryNothingIsWritten) {
  GuardedImage src(16, 16, 16), dst(16, 16, 16);
  fillBlobs(src, rng);
  dst.fill(kUntouched);
  const ovkGetScratchBufferAlignedFn saved = ovkGetScratchBufferAligned_;
  ovkGetScratchBufferAligned_ = noScratch;
  ovkFilterCanny3x3u8(src.data(), 16, 16, dst.data(), 10, 20);
  ovkGetScratchBufferAligned_ = saved;
  EXPECT_EQ(pixelsOf(dst), std::vector<uint8_t>(16 * 16, kUntouched));
}

}  // namespace
