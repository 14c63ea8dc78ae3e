// Runs the orvik command as a user would, on PNG files written here, and
// checks its answers: exit status, one-line errors, the pixels it writes and
// that a failure leaves no file behind.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <png.h>
#include <signal.h>
#include <stdint.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "orvik.h"
#include "orvikPng.h"

namespace {

namespace fs = std::filesystem;

// ---- Running the command ---------------------------------------------------------

struct CommandResult {
  int exitStatus = -1;
  std::string out;
  std::string err;
};

std::string readText(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// The child's stdout and stderr go to files; fileSizeLimit (bytes, 0 for
// none) makes writes past it fail with EFBIG.
void execOrvik(const std::vector<std::string>& args, const fs::path& out, const fs::path& err,
               rlim_t fileSizeLimit) {
  dup2(open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644), STDOUT_FILENO);
  dup2(open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644), STDERR_FILENO);
  if (fileSizeLimit) {
    const rlimit limit{fileSizeLimit, fileSizeLimit};
    setrlimit(RLIMIT_FSIZE, &limit);
    signal(SIGXFSZ, SIG_IGN);
  }
  std::vector<char*> argv{const_cast<char*>(ORVIK_COMMAND)};
  for (const std::string& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
  argv.push_back(nullptr);
  execv(ORVIK_COMMAND, argv.data());
  _exit(127);
}

CommandResult runOrvik(const std::vector<std::string>& args, rlim_t fileSizeLimit = 0) {
  const fs::path captures = fs::path(ORVIK_CHECK_DIR) / "captures";
  fs::create_directories(captures);
  const pid_t child = fork();
  if (child == 0) execOrvik(args, captures / "out", captures / "err", fileSizeLimit);
  int status = 0;
  CommandResult result;
  if (child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status)) result.exitStatus = WEXITSTATUS(status);
  result.out = readText(captures / "out");
  result.err = readText(captures / "err");
  return result;
}

// A fresh, empty directory for one case.
fs::path caseDirectory(const std::string& name) {
  const fs::path dir = fs::path(ORVIK_CHECK_DIR) / name;
  fs::remove_all(dir);
  fs::create_directories(dir);
  return dir;
}

// Every entry under `dir` with its size (-1 for directories).
std::map<std::string, intmax_t> listing(const fs::path& dir) {
  std::map<std::string, intmax_t> entries;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(dir))
    entries[entry.path().string()] = entry.is_directory() ? -1 : intmax_t(entry.file_size());
  return entries;
}

// ---- Test images -----------------------------------------------------------------

// A PNG as stored: rows of samples at the file's bit depth (16-bit samples
// big-endian), palette indices for palette images.
struct PngFile {
  uint32_t width = 0;
  uint32_t height = 0;
  int colorType = PNG_COLOR_TYPE_RGB;
  int bitDepth = 8;
  std::vector<uint8_t> samples;
  std::vector<png_color> palette;
};

// A file to write and the 8-bit image reading it must give.
struct TestImage {
  PngFile file;
  InterleavedImage eightBit;
};

bool writePngFile(const fs::path& path, const PngFile& png) {
  FILE* file = fopen(path.c_str(), "wb");
  if (!file) return false;
  png_structp writer = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(writer);
  const size_t rowBytes = png.samples.size() / png.height;
  std::vector<png_bytep> rows;
  for (uint32_t y = 0; y < png.height; ++y) rows.push_back(const_cast<png_bytep>(&png.samples[y * rowBytes]));
  if (setjmp(png_jmpbuf(writer))) {
    png_destroy_write_struct(&writer, &info);
    fclose(file);
    return false;
  }
  png_init_io(writer, file);
  png_set_IHDR(writer, info, png.width, png.height, png.bitDepth, png.colorType, PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  if (!png.palette.empty()) png_set_PLTE(writer, info, png.palette.data(), int(png.palette.size()));
  png_write_info(writer, info);
  png_write_image(writer, rows.data());
  png_write_end(writer, nullptr);
  png_destroy_write_struct(&writer, &info);
  return fclose(file) == 0;
}

// Values with no pattern a filter could hide a fault behind.
uint8_t patternSample(uint32_t x, uint32_t y, uint32_t channel) {
  return uint8_t(x * 37 + y * 11 + channel * 71 + (x * y) % 13 * 9);
}

InterleavedImage blankImage(uint32_t width, uint32_t height, uint32_t channels) {
  return {width, height, channels, std::vector<uint8_t>(size_t(width) * height * channels)};
}

uint8_t& pixel(InterleavedImage& image, uint32_t x, uint32_t y, uint32_t channel) {
  return image.pixels[(size_t(y) * image.width + x) * image.channels + channel];
}

uint8_t pixel(const InterleavedImage& image, uint32_t x, uint32_t y, uint32_t channel) {
  return image.pixels[(size_t(y) * image.width + x) * image.channels + channel];
}

// An 8-bit file holding the image as it is.
TestImage eightBitImage(const InterleavedImage& image) {
  static const int kColorTypes[] = {0, PNG_COLOR_TYPE_GRAY, PNG_COLOR_TYPE_GRAY_ALPHA, PNG_COLOR_TYPE_RGB,
                                    PNG_COLOR_TYPE_RGB_ALPHA};
  return {{image.width, image.height, kColorTypes[image.channels], 8, image.pixels, {}}, image};
}

TestImage patternImage(uint32_t width, uint32_t height, uint32_t channels) {
  InterleavedImage image = blankImage(width, height, channels);
  for (uint32_t y = 0; y < height; ++y)
    for (uint32_t x = 0; x < width; ++x)
      for (uint32_t c = 0; c < channels; ++c) pixel(image, x, y, c) = patternSample(x, y, c);
  return eightBitImage(image);
}

TestImage grayAlphaImage() { return patternImage(13, 9, 2); }

// Each low byte differs from its high byte, so that keeping the wrong byte or
// rounding shows.
TestImage sixteenBitRgbImage() {
  TestImage image{{13, 9, PNG_COLOR_TYPE_RGB, 16, {}, {}}, blankImage(13, 9, 3)};
  for (uint32_t y = 0; y < 9; ++y)
    for (uint32_t x = 0; x < 13; ++x)
      for (uint32_t c = 0; c < 3; ++c) {
        const uint8_t high = patternSample(x, y, c);
        image.file.samples.push_back(high);
        image.file.samples.push_back(uint8_t(255 - high));
        pixel(image.eightBit, x, y, c) = high;
      }
  return image;
}

TestImage paletteImage() {
  const std::vector<png_color> palette = {{250, 10, 20}, {0, 128, 255}, {77, 200, 33}, {5, 5, 5}, {190, 170, 150}};
  TestImage image{{13, 9, PNG_COLOR_TYPE_PALETTE, 8, {}, palette}, blankImage(13, 9, 3)};
  for (uint32_t y = 0; y < 9; ++y)
    for (uint32_t x = 0; x < 13; ++x) {
      const uint8_t index = uint8_t(patternSample(x, y, 0) % palette.size());
      const png_color color = palette[index];
      image.file.samples.push_back(index);
      pixel(image.eightBit, x, y, 0) = color.red;
      pixel(image.eightBit, x, y, 1) = color.green;
      pixel(image.eightBit, x, y, 2) = color.blue;
    }
  return image;
}

// A gentle ramp with a coloured rectangle in it: smooth gradients and real
// edges for the edge detectors.
TestImage sceneImage(uint32_t channels) {
  static const uint8_t kRectangle[] = {200, 40, 90, 255};
  InterleavedImage image = blankImage(24, 18, channels);
  for (uint32_t y = 0; y < 18; ++y)
    for (uint32_t x = 0; x < 24; ++x)
      for (uint32_t c = 0; c < channels; ++c) {
        const bool inRectangle = x >= 6 && x < 15 && y >= 4 && y < 11;
        pixel(image, x, y, c) = inRectangle ? kRectangle[c] : uint8_t(x * 5 + y * 3 + c * 40);
      }
  return eightBitImage(image);
}

void writeImage(const fs::path& path, const TestImage& image) { ASSERT_TRUE(writePngFile(path, image.file)) << path; }

// ---- Expected results ------------------------------------------------------------

// Gaussian 3x3 with --border none: interior (1 2 1)x(1 2 1) >> 4 per color
// channel; border pixels and alpha unchanged.
InterleavedImage gaussianWithoutBorder(const InterleavedImage& image) {
  static const int kWeights[] = {1, 2, 1};
  InterleavedImage result = image;
  const uint32_t colorChannels = image.colorChannels();
  for (uint32_t y = 1; y + 1 < image.height; ++y)
    for (uint32_t x = 1; x + 1 < image.width; ++x)
      for (uint32_t c = 0; c < colorChannels; ++c) {
        int sum = 0;
        for (int dy = -1; dy <= 1; ++dy)
          for (int dx = -1; dx <= 1; ++dx) sum += kWeights[dy + 1] * kWeights[dx + 1] * pixel(image, x + dx, y + dy, c);
        pixel(result, x, y, c) = uint8_t(sum >> 4);
      }
  return result;
}

// The gray formula of ovkColorRGB888ToGrayu8; gray input stays, alpha goes.
InterleavedImage grayOf(const InterleavedImage& image) {
  InterleavedImage gray = blankImage(image.width, image.height, 1);
  for (uint32_t y = 0; y < image.height; ++y)
    for (uint32_t x = 0; x < image.width; ++x)
      pixel(gray, x, y, 0) = image.colorChannels() == 1
                                 ? pixel(image, x, y, 0)
                                 : uint8_t((19595 * pixel(image, x, y, 0) + 38469 * pixel(image, x, y, 1) +
                                            7471 * pixel(image, x, y, 2) + 32768) >> 16);
  return gray;
}

// |dx| + |dy| of a 3x3 gradient with column weights (side, centre, side),
// scaled down by `shift` and saturated; the outermost pixels are 0.
InterleavedImage gradientMagnitude(const InterleavedImage& gray, int side, int centre, int shift) {
  InterleavedImage result = blankImage(gray.width, gray.height, 1);
  const int weights[] = {side, centre, side};
  for (uint32_t y = 1; y + 1 < gray.height; ++y)
    for (uint32_t x = 1; x + 1 < gray.width; ++x) {
      int dx = 0, dy = 0;
      for (int k = -1; k <= 1; ++k) {
        dx += weights[k + 1] * (pixel(gray, x + 1, y + k, 0) - pixel(gray, x - 1, y + k, 0));
        dy += weights[k + 1] * (pixel(gray, x + k, y + 1, 0) - pixel(gray, x + k, y - 1, 0));
      }
      pixel(result, x, y, 0) = uint8_t(std::min((abs(dx) + abs(dy)) >> shift, 255));
    }
  return result;
}

InterleavedImage sobelOf(const InterleavedImage& gray) { return gradientMagnitude(gray, 1, 2, 0); }
InterleavedImage scharrOf(const InterleavedImage& gray) { return gradientMagnitude(gray, 3, 10, 4); }

// The command's default thresholds, in the command's operation mode.
InterleavedImage cannyOf(const InterleavedImage& gray) {
  EXPECT_EQ(ovkSetOperationMode(3), 0);
  InterleavedImage edges = blankImage(gray.width, gray.height, 1);
  ovkFilterCanny3x3u8_v2(gray.pixels.data(), gray.width, gray.height, 0, edges.pixels.data(), 0, 100, 250);
  return edges;
}

void expectSameImage(const InterleavedImage& actual, const InterleavedImage& expected, const std::string& what) {
  ASSERT_EQ(actual.width, expected.width) << what;
  ASSERT_EQ(actual.height, expected.height) << what;
  ASSERT_EQ(actual.channels, expected.channels) << what;
  for (uint32_t y = 0; y < actual.height; ++y)
    for (uint32_t x = 0; x < actual.width; ++x)
      for (uint32_t c = 0; c < actual.channels; ++c)
        ASSERT_EQ(int(pixel(actual, x, y, c)), int(pixel(expected, x, y, c)))
            << what << ": pixel " << x << "," << y << " channel " << c;
}

InterleavedImage readOutput(const fs::path& path) {
  InterleavedImage image;
  std::string error;
  EXPECT_TRUE(readPng(path.string(), image, error)) << path << ": " << error;
  return image;
}

// ---- Accepted input --------------------------------------------------------------

struct AcceptedCase {
  const char* name;
  TestImage (*make)();
};

const AcceptedCase kAcceptedCases[] = {
    {"16-bit RGB keeps the high byte", sixteenBitRgbImage},
    {"palette becomes RGB", paletteImage},
    {"gray+alpha stays gray+alpha", grayAlphaImage},
};

TEST(OrvikCommand, ReadsEveryPngLayoutAsEightBits) {
  for (const AcceptedCase& testCase : kAcceptedCases) {
    const fs::path dir = caseDirectory("accepted");
    const TestImage image = testCase.make();
    writeImage(dir / "in.png", image);
    const CommandResult result =
        runOrvik({"run", "gaussian3x3", (dir / "in.png").string(), (dir / "out.png").string(), "--border", "none"});
    ASSERT_EQ(result.exitStatus, 0) << testCase.name << ": " << result.err;
    EXPECT_EQ(result.err, "") << testCase.name;
    expectSameImage(readOutput(dir / "out.png"), gaussianWithoutBorder(image.eightBit), testCase.name);
  }
}

// ---- Edge detectors on the gray image ----------------------------------------------

struct EdgeCase {
  const char* filter;
  InterleavedImage (*expected)(const InterleavedImage& gray);
};

const EdgeCase kEdgeCases[] = {{"sobel", sobelOf}, {"scharr", scharrOf}, {"canny", cannyOf}};

TEST(OrvikCommand, EdgeDetectorsWriteOneGrayPlane) {
  static const char* const kLayouts[] = {"", "gray", "gray+alpha", "RGB", "RGBA"};
  for (const EdgeCase& testCase : kEdgeCases) {
    for (uint32_t channels = 1; channels <= 4; ++channels) {
      const std::string what = std::string(testCase.filter) + " on " + kLayouts[channels];
      const fs::path dir = caseDirectory("edges");
      const TestImage image = sceneImage(channels);
      writeImage(dir / "in.png", image);
      const CommandResult result =
          runOrvik({"run", testCase.filter, (dir / "in.png").string(), (dir / "out.png").string()});
      ASSERT_EQ(result.exitStatus, 0) << what << ": " << result.err;
      EXPECT_EQ(result.out.find("converted:      to gray") != std::string::npos, channels > 1) << what;
      expectSameImage(readOutput(dir / "out.png"), testCase.expected(grayOf(image.eightBit)), what);
    }
  }
}

TEST(OrvikCommand, TheSceneHasEdgesForCanny) {
  const InterleavedImage edges = cannyOf(grayOf(sceneImage(3).eightBit));
  EXPECT_NE(std::count(edges.pixels.begin(), edges.pixels.end(), 255), 0);
}

// ---- Scaling ---------------------------------------------------------------------

// An image from its samples, interleaved, top row first.
InterleavedImage imageOf(uint32_t width, uint32_t height, uint32_t channels, const std::vector<uint8_t>& samples) {
  EXPECT_EQ(samples.size(), size_t(width) * height * channels);
  return {width, height, channels, samples};
}

// Every pixel the same, one value per channel.
InterleavedImage constantImage(uint32_t width, uint32_t height, const std::vector<uint8_t>& pixelValue) {
  const uint32_t channels = uint32_t(pixelValue.size());
  InterleavedImage image = blankImage(width, height, channels);
  for (size_t i = 0; i < image.pixels.size(); ++i) image.pixels[i] = pixelValue[i % channels];
  return image;
}

// Its 2x2 blocks sum to 140, 220, 460 and 543: means 35, 55, 115 and 135.75.
const std::vector<uint8_t> kGrid = {10, 20, 30, 40, 50, 60, 70, 80, 90, 100, 110, 120, 130, 140, 150, 163};

// x * 10 + y * 60: the sampled column and row show in every value.
InterleavedImage rampImage(uint32_t width, uint32_t height) {
  InterleavedImage image = blankImage(width, height, 1);
  for (uint32_t y = 0; y < height; ++y)
    for (uint32_t x = 0; x < width; ++x) pixel(image, x, y, 0) = uint8_t(x * 10 + y * 60);
  return image;
}

// Gray grid as red, its complement as green, 7 as blue.
InterleavedImage gridRgb() {
  std::vector<uint8_t> samples;
  for (uint8_t value : kGrid) samples.insert(samples.end(), {value, uint8_t(255 - value), 7});
  return imageOf(4, 4, 3, samples);
}

struct ScaleCase {
  std::string name;
  InterleavedImage input;
  std::string method;
  std::string entry;  // the operation the command reports
  InterleavedImage expected;
};

std::string sizeArgument(const InterleavedImage& image) {
  return std::to_string(image.width) + "x" + std::to_string(image.height);
}

std::vector<ScaleCase> scaleCases() {
  const InterleavedImage grid = imageOf(4, 4, 1, kGrid);
  // 9 3 3 1 around the centre, over 16: (0 + 90 + 270 + 120) / 16 = 30,
  // (540 + 90 + 450 + 120) / 16 = 75, (1620 + 630 + 270 + 120) / 16 = 165,
  // (2295 + 630 + 450 + 120) / 16 = 218.4.
  const InterleavedImage threeByThree = imageOf(3, 3, 1, {0, 30, 60, 90, 120, 150, 180, 210, 255});
  return {
      {"box by 2 truncates the 2x2 means", grid, "box", "ovkScaleDownBy2u8_v2", imageOf(2, 2, 1, {35, 55, 115, 135})},
      {"box by 4: 1363 / 16", grid, "box", "ovkScaleDownBy4u8_v2", imageOf(1, 1, 1, {85})},
      // Left half 600 / 8, right half 763 / 8 = 95.4.
      {"box by 2 across and 4 down", grid, "box", "ovkScaleDownu8_v2", imageOf(2, 1, 1, {75, 95})},
      {"box 3 to 2", threeByThree, "box", "ovkScaleDown3To2u8", imageOf(2, 2, 1, {30, 75, 165, 218})},
      {"box by 2 keeps the RGB planes apart", gridRgb(), "box", "ovkScaleDownBy2u8_v2",
       imageOf(2, 2, 3, {35, 220, 7, 55, 200, 7, 115, 140, 7, 135, 119, 7})},
      {"area rounds the 2x2 means", grid, "area", "ovkScaleu8", imageOf(2, 2, 1, {35, 55, 115, 136})},
      // Halving puts every output between two columns and two rows, weights
      // one half each: the 2x2 mean, rounded.
      {"bilinear halving is the rounded 2x2 mean", grid, "bilinear", "ovkScaleDownBLu8",
       imageOf(2, 2, 1, {35, 55, 115, 136})},
      {"mn over 2x2 blocks truncates", grid, "mn", "ovkScaleDownMNu8", imageOf(2, 2, 1, {35, 55, 115, 135})},
      {"nn halving samples the even columns and rows", rampImage(8, 4), "nn", "ovkScaleDownNNu8",
       imageOf(4, 2, 1, {0, 20, 40, 60, 120, 140, 160, 180})},
      {"nn 3 to 2 samples columns 0 1 3 4 and rows 0 1", rampImage(6, 3), "nn", "ovkScaleDownNNu8",
       imageOf(4, 2, 1, {0, 10, 30, 40, 60, 70, 90, 100})},
      {"gauss-up keeps a constant", constantImage(3, 2, {77}), "gauss-up", "ovkScaleUpBy2Gaussian5x5u8_v2",
       constantImage(6, 4, {77})},
      {"gauss-up keeps gray+alpha", constantImage(3, 2, {5, 200}), "gauss-up", "ovkScaleUpBy2Gaussian5x5u8_v2",
       constantImage(6, 4, {5, 200})},
      {"gauss-down keeps a constant at odd sizes", constantImage(5, 3, {90}), "gauss-down",
       "ovkScaleDownBy2Gaussian5x5u8_v2", constantImage(2, 1, {90})},
      {"area keeps a constant, reducing", constantImage(5, 3, {200}), "area", "ovkScaleu8",
       constantImage(3, 2, {200})},
      {"area keeps an RGBA constant, enlarging", constantImage(4, 4, {10, 128, 250, 64}), "area", "ovkScaleu8",
       constantImage(7, 5, {10, 128, 250, 64})},
      {"poly keeps a constant", constantImage(3, 2, {123}), "poly", "ovkScaleUpPolyu8", constantImage(5, 5, {123})},
  };
}

TEST(OrvikCommand, ScaleMethodsGiveHandComputedPixels) {
  for (const ScaleCase& testCase : scaleCases()) {
    const fs::path dir = caseDirectory("scale");
    writeImage(dir / "in.png", eightBitImage(testCase.input));
    const CommandResult result = runOrvik({"scale", (dir / "in.png").string(), (dir / "out.png").string(), "--size",
                                           sizeArgument(testCase.expected), "--method", testCase.method});
    ASSERT_EQ(result.exitStatus, 0) << testCase.name << ": " << result.err;
    EXPECT_EQ(result.err, "") << testCase.name;
    EXPECT_NE(result.out.find("implementation: " + testCase.entry + " "), std::string::npos)
        << testCase.name << ": " << result.out;
    expectSameImage(readOutput(dir / "out.png"), testCase.expected, testCase.name);
  }
}

TEST(OrvikCommand, ScaleDefaultsToArea) {
  const fs::path dir = caseDirectory("scale-default");
  writeImage(dir / "in.png", eightBitImage(imageOf(4, 4, 1, kGrid)));
  const CommandResult result =
      runOrvik({"scale", (dir / "in.png").string(), (dir / "out.png").string(), "--size=2x2"});
  ASSERT_EQ(result.exitStatus, 0) << result.err;
  EXPECT_NE(result.out.find("implementation: ovkScaleu8 "), std::string::npos) << result.out;
  expectSameImage(readOutput(dir / "out.png"), imageOf(2, 2, 1, {35, 55, 115, 136}), "default method");
}

// ---- Failures --------------------------------------------------------------------

void writeBytes(const fs::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary).write(bytes.data(), std::streamsize(bytes.size()));
}

uint32_t bigEndian32(const std::string& bytes, size_t at) {
  return uint32_t(uint8_t(bytes[at])) << 24 | uint32_t(uint8_t(bytes[at + 1])) << 16 |
         uint32_t(uint8_t(bytes[at + 2])) << 8 | uint8_t(bytes[at + 3]);
}

// Offset of the length field of the first IDAT chunk (after the signature,
// chunks are length, type, data, CRC).
size_t idatOffset(const std::string& png) {
  size_t at = 8;
  while (png.compare(at + 4, 4, "IDAT") != 0) at += 12 + bigEndian32(png, at);
  return at;
}

void writeGoodPng(const fs::path& path) { writeImage(path, patternImage(16, 12, 3)); }

void prepareGoodPng(const fs::path& dir) { writeGoodPng(dir / "in.png"); }

// Intact data under a changed CRC.
void prepareBadCrc(const fs::path& dir) {
  writeGoodPng(dir / "in.png");
  std::string png = readText(dir / "in.png");
  const size_t idat = idatOffset(png);
  png[idat + 8 + bigEndian32(png, idat)] ^= 0x5A;
  writeBytes(dir / "in.png", png);
}

// A broken zlib header under a CRC that matches it.
void prepareBadChunkData(const fs::path& dir) {
  writeGoodPng(dir / "in.png");
  std::string png = readText(dir / "in.png");
  const size_t idat = idatOffset(png), length = bigEndian32(png, idat);
  png[idat + 8] = 0x7F;
  const uint32_t crc = crc32(0, reinterpret_cast<const Bytef*>(&png[idat + 4]), uInt(length + 4));
  for (int i = 0; i < 4; ++i) png[idat + 8 + length + i] = char(crc >> (24 - 8 * i));
  writeBytes(dir / "in.png", png);
}

void prepareTruncated(const fs::path& dir) {
  writeGoodPng(dir / "in.png");
  const std::string png = readText(dir / "in.png");
  writeBytes(dir / "in.png", png.substr(0, png.size() / 2));
}

void prepareEmpty(const fs::path& dir) { writeBytes(dir / "in.png", ""); }
void prepareText(const fs::path& dir) { writeBytes(dir / "in.png", "width,height\n16,12\n"); }
void prepareNothing(const fs::path&) {}

void prepareTinyPng(const fs::path& dir) { writeImage(dir / "in.png", patternImage(2, 2, 1)); }
void prepareOneColumnPng(const fs::path& dir) { writeImage(dir / "in.png", patternImage(1, 5, 1)); }
void prepareTooWidePng(const fs::path& dir) { writeImage(dir / "in.png", patternImage(16385, 1, 1)); }

// 8x8 nv12 frames have 96 bytes.
void prepareLongFrame(const fs::path& dir) { writeBytes(dir / "in.nv12", std::string(100, '\x80')); }
void prepareShortFrame(const fs::path& dir) { writeBytes(dir / "in.nv12", std::string(95, '\x80')); }
void prepareFrame(const fs::path& dir) { writeBytes(dir / "in.nv12", std::string(96, '\x80')); }

void prepareOutputDirectory(const fs::path& dir) {
  writeGoodPng(dir / "in.png");
  fs::create_directory(dir / "out.png");
}

void prepareFrameAndOutputDirectory(const fs::path& dir) {
  prepareFrame(dir);
  fs::create_directory(dir / "out.png");
}

// Incompressible, so that its PNG is well over the file size limit below.
void prepareLargePng(const fs::path& dir) {
  InterleavedImage noise = blankImage(64, 64, 3);
  uint32_t state = 12345;
  for (uint8_t& sample : noise.pixels) sample = uint8_t((state = state * 1103515245 + 12345) >> 16);
  writeImage(dir / "in.png", eightBitImage(noise));
}

constexpr rlim_t kFileSizeLimit = 1000;

struct FailureCase {
  const char* name;
  void (*prepare)(const fs::path& dir);
  std::vector<std::string> args;  // "@" stands for the case's directory
  int exitStatus;
  std::string namedFile;  // relative to the case's directory; empty when no file is involved
  std::string reason;     // part of the message
  rlim_t fileSizeLimit = 0;
};

const FailureCase kFailureCases[] = {
    {"CRC damaged", prepareBadCrc, {"run", "gaussian3x3", "@/in.png", "@/out.png"}, 2, "in.png", "CRC error"},
    {"chunk data damaged", prepareBadChunkData, {"run", "sobel", "@/in.png", "@/out.png"}, 2, "in.png", "IDAT"},
    {"truncated", prepareTruncated, {"run", "canny", "@/in.png", "@/out.png"}, 2, "in.png", "truncated"},
    {"zero bytes", prepareEmpty, {"run", "box3x3", "@/in.png", "@/out.png"}, 2, "in.png", "empty file"},
    {"not a PNG", prepareText, {"run", "median3x3", "@/in.png", "@/out.png"}, 2, "in.png", "not a PNG file"},
    {"missing", prepareNothing, {"run", "gaussian3x3", "@/in.png", "@/out.png"}, 2, "in.png",
     "No such file or directory"},
    {"convert: truncated", prepareTruncated, {"convert", "@/in.png", "@/out.nv12"}, 2, "in.png", "truncated"},
    {"convert: missing", prepareNothing, {"convert", "@/in.nv12", "@/out.png", "--size", "8x8"}, 2, "in.nv12",
     "No such file or directory"},
    {"frame too long", prepareLongFrame, {"convert", "@/in.nv12", "@/out.png", "--size", "8x8"}, 2, "in.nv12",
     "100 bytes, but a 8x8 nv12 frame has 96"},
    {"frame too short", prepareShortFrame, {"convert", "@/in.nv12", "@/out.png", "--size", "8x8"}, 2, "in.nv12",
     "95 bytes, but a 8x8 nv12 frame has 96"},
    {"unknown run option", prepareGoodPng, {"run", "sobel", "@/in.png", "@/out.png", "--border", "none"}, 2, "",
     "sobel has no option --border"},
    {"unknown convert option", prepareGoodPng, {"convert", "@/in.png", "@/out.nv12", "--quality=9"}, 2, "",
     "convert has no option --quality"},
    {"unknown filter", prepareGoodPng, {"run", "blur", "@/in.png", "@/out.png"}, 2, "", "unknown filter 'blur'"},
    {"canny low above high", prepareGoodPng, {"run", "canny", "@/in.png", "@/out.png", "--low", "300", "--high", "100"},
     2, "", "canny: --low (300) must not be above --high (100)"},
    {"canny high above the magnitude range", prepareGoodPng,
     {"run", "canny", "@/in.png", "@/out.png", "--high=2041"}, 2, "", "--high takes an integer in 0..2040"},
    {"canny low negative", prepareGoodPng, {"run", "canny", "@/in.png", "@/out.png", "--low", "-1"}, 2, "",
     "--low takes an integer in 0..2040"},
    {"canny on 2x2", prepareTinyPng, {"run", "canny", "@/in.png", "@/out.png"}, 2, "in.png", "at least 3x3"},
    {"output directory missing", prepareGoodPng, {"run", "gaussian3x3", "@/in.png", "@/missing/out.png"}, 1,
     "missing/out.png", "No such file or directory"},
    {"output is a directory", prepareOutputDirectory, {"run", "gaussian3x3", "@/in.png", "@/out.png"}, 1, "out.png",
     "Is a directory"},
    {"convert: frame into a missing directory", prepareGoodPng, {"convert", "@/in.png", "@/missing/out.nv12"}, 1,
     "missing/out.nv12", "No such file or directory"},
    {"convert: PNG onto a directory", prepareFrameAndOutputDirectory,
     {"convert", "@/in.nv12", "@/out.png", "--size", "8x8"}, 1, "out.png", "Is a directory"},
    {"PNG larger than the file size limit", prepareLargePng, {"run", "median3x3", "@/in.png", "@/out.png"}, 1,
     "out.png", "File too large", kFileSizeLimit},
    {"frame larger than the file size limit", prepareLargePng, {"convert", "@/in.png", "@/out.i420"}, 1, "out.i420",
     "File too large", kFileSizeLimit},
    {"scale: size not WxH", prepareGoodPng, {"scale", "@/in.png", "@/out.png", "--size", "12by3"}, 2, "",
     "--size takes WIDTHxHEIGHT, each 1..16384, not '12by3'"},
    {"scale: zero width", prepareGoodPng, {"scale", "@/in.png", "@/out.png", "--size", "0x6"}, 2, "",
     "not '0x6'"},
    {"scale: signed height", prepareGoodPng, {"scale", "@/in.png", "@/out.png", "--size", "8x+6"}, 2, "",
     "not '8x+6'"},
    {"scale: above 16384", prepareGoodPng, {"scale", "@/in.png", "@/out.png", "--size=16385x1"}, 2, "",
     "not '16385x1'"},
    {"scale: no size", prepareGoodPng, {"scale", "@/in.png", "@/out.png", "--method", "nn"}, 2, "",
     "scale needs --size WIDTHxHEIGHT"},
    {"scale: one path", prepareGoodPng, {"scale", "@/in.png", "--size", "8x6"}, 2, "", "scale takes IN.png and OUT.png"},
    {"scale: unknown method", prepareGoodPng, {"scale", "@/in.png", "@/out.png", "--size", "8x6", "--method", "lanczos"},
     2, "", "unknown method 'lanczos'"},
    {"scale: unknown option", prepareGoodPng, {"scale", "@/in.png", "@/out.png", "--size", "8x6", "--border", "none"},
     2, "", "scale has no option --border"},
    {"scale: box by no whole factor", prepareGoodPng,
     {"scale", "@/in.png", "@/out.png", "--size", "5x5", "--method", "box"}, 2, "",
     "box divides each side of 16x12 by a whole factor (e.g. 8x6, 4x3, 1x1), not 5x5"},
    {"scale: box enlarging", prepareGoodPng, {"scale", "@/in.png", "@/out.png", "--size", "32x24", "--method", "box"},
     2, "", "not 32x24"},
    {"scale: gauss-down to another size", prepareGoodPng,
     {"scale", "@/in.png", "@/out.png", "--size", "4x3", "--method", "gauss-down"}, 2, "",
     "gauss-down halves 16x12 to 8x6 only, not 4x3"},
    {"scale: gauss-down on one column", prepareOneColumnPng,
     {"scale", "@/in.png", "@/out.png", "--size", "1x2", "--method", "gauss-down"}, 2, "", "at least 2x2 pixels"},
    {"scale: gauss-up to another size", prepareGoodPng,
     {"scale", "@/in.png", "@/out.png", "--size", "24x18", "--method", "gauss-up"}, 2, "",
     "gauss-up doubles 16x12 to 32x24 only, not 24x18"},
    {"scale: mn by 20", prepareLargePng, {"scale", "@/in.png", "@/out.png", "--size", "3x4", "--method", "mn"}, 2, "",
     "mn reduces each side by less than 20: 64x64 to at least 4x4, not 3x4"},
    {"scale: not a PNG", prepareText, {"scale", "@/in.png", "@/out.png", "--size", "8x6"}, 2, "in.png",
     "not a PNG file"},
    {"scale: input wider than 16384", prepareTooWidePng, {"scale", "@/in.png", "@/out.png", "--size", "8x1"}, 2,
     "in.png", "up to 16384x16384 pixels, not 16385x1"},
    {"scale: into a missing directory", prepareGoodPng, {"scale", "@/in.png", "@/missing/out.png", "--size", "8x6"}, 1,
     "missing/out.png", "No such file or directory"},
    {"scale: PNG larger than the file size limit", prepareLargePng,
     {"scale", "@/in.png", "@/out.png", "--size", "64x64", "--method", "nn"}, 1, "out.png", "File too large",
     kFileSizeLimit},
};

std::vector<std::string> withDirectory(const std::vector<std::string>& args, const fs::path& dir) {
  std::vector<std::string> result;
  for (std::string arg : args) {
    if (arg[0] == '@') arg = dir.string() + arg.substr(1);
    result.push_back(arg);
  }
  return result;
}

TEST(OrvikCommand, FailuresSayWhyOnOneLineAndLeaveNoFile) {
  for (const FailureCase& testCase : kFailureCases) {
    const fs::path dir = caseDirectory("failure");
    testCase.prepare(dir);
    const std::map<std::string, intmax_t> before = listing(dir);
    const CommandResult result = runOrvik(withDirectory(testCase.args, dir), testCase.fileSizeLimit);
    EXPECT_EQ(result.exitStatus, testCase.exitStatus) << testCase.name;
    EXPECT_EQ(result.out, "") << testCase.name;
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << testCase.name << ": " << result.err;
    EXPECT_EQ(result.err.rfind("orvik: ", 0), 0u) << testCase.name << ": " << result.err;
    if (!testCase.namedFile.empty()) {
      EXPECT_NE(result.err.find((dir / testCase.namedFile).string() + ": "), std::string::npos)
          << testCase.name << ": " << result.err;
    }
    EXPECT_NE(result.err.find(testCase.reason), std::string::npos) << testCase.name << ": " << result.err;
    EXPECT_EQ(listing(dir), before) << testCase.name << ": files were left behind";
  }
}

}  // namespace
