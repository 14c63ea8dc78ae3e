// Runs `orvik convert` on the bundled sample and checks the frames and images
// it writes against the conversion formulas, pixel by pixel.
#include <gtest/gtest.h>
#include <stdint.h>
#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "orvikPng.h"

namespace {

namespace fs = std::filesystem;

int runOrvik(const std::string& args) {
  const std::string command = std::string(ORVIK_COMMAND) + " convert " + args + " > /dev/null 2>&1";
  const int status = std::system(command.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::vector<uint8_t> readBytes(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

uint8_t clamp255(int value) { return uint8_t(std::min(255, std::max(0, value))); }

// The encoder's formulas, on R, G, B.
uint8_t lumaOf(int r, int g, int b) { return uint8_t((77 * r + 150 * g + 29 * b + 128) >> 8); }
uint8_t cbOf(int r, int g, int b) { return clamp255(((128 * b - 85 * g - 43 * r + 128) >> 8) + 128); }
uint8_t crOf(int r, int g, int b) { return clamp255(((128 * r - 107 * g - 21 * b + 128) >> 8) + 128); }

// The decoder's formula for one channel: Q8 with rounding, no luma offset.
uint8_t channelOf(int y, int weightedChroma) { return clamp255(((y << 8) + 128 + weightedChroma) >> 8); }

class ConvertCommand : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = fs::path(ORVIK_CHECK_DIR);
    fs::create_directories(dir_);
    std::string error;
    ASSERT_TRUE(readPng(ORVIK_SAMPLE, sample_, error)) << error;
    ASSERT_GE(sample_.colorChannels(), 3u);
    width_ = sample_.width & ~1u;
    height_ = sample_.height & ~1u;
    ASSERT_EQ(width_, sample_.width) << "the sample is expected to have an even size";
    ASSERT_EQ(height_, sample_.height);
  }

  std::string path(const std::string& name) const { return (dir_ / name).string(); }
  int channel(uint32_t x, uint32_t y, int c) const {
    return sample_.pixels[(size_t(y) * sample_.width + x) * sample_.channels + c];
  }
  std::string size() const { return std::to_string(width_) + "x" + std::to_string(height_); }

  fs::path dir_;
  InterleavedImage sample_;
  uint32_t width_ = 0, height_ = 0;
};

TEST_F(ConvertCommand, PngToEveryFormatLaysOutTheSameSamples) {
  for (const char* format : {"i420", "yv12", "nv12", "nv21"})
    ASSERT_EQ(runOrvik(std::string(ORVIK_SAMPLE) + " " + path(std::string("sample.") + format)), 0) << format;
  const std::vector<uint8_t> i420 = readBytes(path("sample.i420")), yv12 = readBytes(path("sample.yv12"));
  const std::vector<uint8_t> nv12 = readBytes(path("sample.nv12")), nv21 = readBytes(path("sample.nv21"));
  const size_t luma = size_t(width_) * height_, quarter = luma / 4;
  for (const auto* frame : {&i420, &yv12, &nv12, &nv21}) ASSERT_EQ(frame->size(), luma * 3 / 2);

  for (uint32_t y = 0; y < height_; ++y) {
    for (uint32_t x = 0; x < width_; ++x) {
      const size_t i = size_t(y) * width_ + x;
      const uint8_t expected = lumaOf(channel(x, y, 0), channel(x, y, 1), channel(x, y, 2));
      ASSERT_EQ(i420[i], expected) << x << "," << y;
      ASSERT_EQ(yv12[i], expected);
      ASSERT_EQ(nv12[i], expected);
      ASSERT_EQ(nv21[i], expected);
    }
  }
  // Chroma of each 2x2 block comes from its top-left pixel.
  for (uint32_t cy = 0; cy < height_ / 2; ++cy) {
    for (uint32_t cx = 0; cx < width_ / 2; ++cx) {
      const int r = channel(2 * cx, 2 * cy, 0), g = channel(2 * cx, 2 * cy, 1), b = channel(2 * cx, 2 * cy, 2);
      const size_t k = size_t(cy) * (width_ / 2) + cx;
      ASSERT_EQ(i420[luma + k], cbOf(r, g, b)) << cx << "," << cy;
      ASSERT_EQ(i420[luma + quarter + k], crOf(r, g, b));
      ASSERT_EQ(yv12[luma + k], crOf(r, g, b));
      ASSERT_EQ(yv12[luma + quarter + k], cbOf(r, g, b));
      ASSERT_EQ(nv12[luma + 2 * k], cbOf(r, g, b));
      ASSERT_EQ(nv12[luma + 2 * k + 1], crOf(r, g, b));
      ASSERT_EQ(nv21[luma + 2 * k], crOf(r, g, b));
      ASSERT_EQ(nv21[luma + 2 * k + 1], cbOf(r, g, b));
    }
  }
}

TEST_F(ConvertCommand, EveryFormatReadsBackToTheFormulaImage) {
  ASSERT_EQ(runOrvik(std::string(ORVIK_SAMPLE) + " " + path("frame.i420")), 0);
  const std::vector<uint8_t> i420 = readBytes(path("frame.i420"));
  const size_t luma = size_t(width_) * height_, quarter = luma / 4;
  for (const char* format : {"i420", "yv12", "nv12", "nv21"}) {
    const std::string frame = path(std::string("frame.") + format),
                      image = path(std::string("back-") + format + ".png");
    if (std::string(format) != "i420") ASSERT_EQ(runOrvik(std::string(ORVIK_SAMPLE) + " " + frame), 0) << format;
    ASSERT_EQ(runOrvik(frame + " " + image + " --size " + size()), 0) << format;
    InterleavedImage back;
    std::string error;
    ASSERT_TRUE(readPng(image, back, error)) << error;
    ASSERT_EQ(back.channels, 3u);
    for (uint32_t y = 0; y < height_; ++y) {
      for (uint32_t x = 0; x < width_; ++x) {
        const size_t k = size_t(y / 2) * (width_ / 2) + x / 2;
        const int luma8 = i420[size_t(y) * width_ + x], u = i420[luma + k] - 128, v = i420[luma + quarter + k] - 128;
        const uint8_t* rgb = &back.pixels[(size_t(y) * width_ + x) * 3];
        ASSERT_EQ(rgb[0], channelOf(luma8, 359 * v)) << format << " " << x << "," << y;
        ASSERT_EQ(rgb[1], channelOf(luma8, -88 * u - 183 * v)) << format << " " << x << "," << y;
        ASSERT_EQ(rgb[2], channelOf(luma8, 454 * u)) << format << " " << x << "," << y;
      }
    }
  }
}

TEST_F(ConvertCommand, VideoRangeNv21UsesTheCameraConversion) {
  ASSERT_EQ(runOrvik(std::string(ORVIK_SAMPLE) + " " + path("camera.nv21")), 0);
  ASSERT_EQ(runOrvik(path("camera.nv21") + " " + path("camera.png") + " --range video --size " + size()), 0);
  const std::vector<uint8_t> nv21 = readBytes(path("camera.nv21"));
  InterleavedImage back;
  std::string error;
  ASSERT_TRUE(readPng(path("camera.png"), back, error)) << error;
  const size_t luma = size_t(width_) * height_;
  const auto channel10 = [](int value) { return uint8_t(std::min(262143, std::max(0, value)) >> 10); };
  for (uint32_t y = 0; y < height_; ++y) {
    for (uint32_t x = 0; x < width_; ++x) {
      const size_t pair = luma + size_t(y / 2) * width_ + (x & ~1u);
      const int v = nv21[pair] - 128, u = nv21[pair + 1] - 128;
      const int scaled = std::max(nv21[size_t(y) * width_ + x] - 16, 0) * 1192;
      const uint8_t* rgb = &back.pixels[(size_t(y) * width_ + x) * 3];
      ASSERT_EQ(rgb[0], channel10(scaled + 1634 * v)) << x << "," << y;
      ASSERT_EQ(rgb[1], channel10(scaled - 833 * v - 400 * u)) << x << "," << y;
      ASSERT_EQ(rgb[2], channel10(scaled + 2066 * u)) << x << "," << y;
    }
  }
}

TEST_F(ConvertCommand, BadRequestsAreUsageErrors) {
  ASSERT_EQ(runOrvik(std::string(ORVIK_SAMPLE) + " " + path("good.nv12")), 0);
  EXPECT_EQ(runOrvik(path("good.nv12") + " " + path("x.png")), 2) << "no size";
  EXPECT_EQ(runOrvik(path("good.nv12") + " " + path("x.png") + " --size 10x10"), 2) << "wrong file size";
  EXPECT_EQ(runOrvik(path("good.nv12") + " " + path("x.png") + " --size 511x512"), 2) << "odd width";
  EXPECT_EQ(runOrvik(path("good.nv12") + " " + path("x.png") + " --size " + size() + " --range video"), 2);
  EXPECT_EQ(runOrvik(std::string(ORVIK_SAMPLE) + " " + path("x.raw")), 2) << "format unknown";
  EXPECT_EQ(runOrvik(std::string(ORVIK_SAMPLE) + " " + path("x.png")), 2) << "two PNGs";
  EXPECT_FALSE(fs::exists(path("x.png")));
}

}  // namespace
