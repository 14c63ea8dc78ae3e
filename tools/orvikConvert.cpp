#include "orvikConvert.h"

#include <errno.h>
#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>

#include "orvik.h"
#include "orvikCommand.h"
#include "orvikOutput.h"
#include "orvikPng.h"

namespace {

// A raw 4:2:0 frame of even width and height: the luma plane, then the
// chroma, a quarter of the luma size per channel.
struct Frame {
  uint32_t width;
  uint32_t height;
  uint8_t* data;

  uint8_t* luma() const { return data; }
  uint8_t* chroma() const { return data + lumaBytes(); }
  uint8_t* secondChromaPlane() const { return chroma() + lumaBytes() / 4; }
  size_t lumaBytes() const { return size_t(width) * height; }
  size_t bytes() const { return lumaBytes() * 3 / 2; }
};

// NV21 has Cr before Cb in each pair, NV12 the other way round.
void swapChromaPairs(const Frame& frame) {
  uint8_t* pairs = frame.chroma();
  for (size_t i = 0; i + 1 < frame.lumaBytes() / 2; i += 2) std::swap(pairs[i], pairs[i + 1]);
}

// ---- Reading a frame into RGB888 (R first) -----------------------------------------

void nv12ToRgb(const Frame& frame, uint8_t* rgb) {
  ovkColorYCbCr420PseudoPlanarToRGB888u8(frame.luma(), frame.chroma(), frame.width, frame.height, 0, 0, rgb, 0);
}

void nv21ToRgb(const Frame& frame, uint8_t* rgb) {
  swapChromaPairs(frame);
  nv12ToRgb(frame, rgb);
  swapChromaPairs(frame);
}

// The camera conversion: video-range luma, RGBA out.
void nv21VideoToRgb(const Frame& frame, uint8_t* rgb) {
  std::vector<uint8_t> rgba(frame.lumaBytes() * 4);
  ovkColorYCrCb420PseudoPlanarToRGB8888u8(frame.data, frame.width, frame.height, frame.width, frame.width, rgba.data(),
                                          frame.width * 4);
  for (size_t i = 0; i < frame.lumaBytes(); ++i) std::copy_n(&rgba[i * 4], 3, &rgb[i * 3]);
}

void i420ToRgb(const Frame& frame, uint8_t* rgb) {
  ovkColorYCbCr420PlanarToRGB888u8(frame.luma(), frame.chroma(), frame.secondChromaPlane(), frame.width, frame.height,
                                   0, 0, 0, rgb, 0);
}

void yv12ToRgb(const Frame& frame, uint8_t* rgb) {
  ovkColorYCbCr420PlanarToRGB888u8(frame.luma(), frame.secondChromaPlane(), frame.chroma(), frame.width, frame.height,
                                   0, 0, 0, rgb, 0);
}

// ---- Writing a frame from BGR888 (the byte order the encoders read) --------------------

void bgrToNv12(const uint8_t* bgr, const Frame& frame) {
  ovkColorRGB888ToYCbCr420PseudoPlanaru8(bgr, frame.width, frame.height, 0, frame.luma(), frame.chroma(), 0, 0);
}

void bgrToNv21(const uint8_t* bgr, const Frame& frame) {
  bgrToNv12(bgr, frame);
  swapChromaPairs(frame);
}

void bgrToI420(const uint8_t* bgr, const Frame& frame) {
  ovkColorRGB888ToYCbCr420Planaru8(bgr, frame.width, frame.height, 0, frame.luma(), frame.chroma(),
                                   frame.secondChromaPlane(), 0, 0, 0);
}

void bgrToYv12(const uint8_t* bgr, const Frame& frame) {
  ovkColorRGB888ToYCbCr420Planaru8(bgr, frame.width, frame.height, 0, frame.luma(), frame.secondChromaPlane(),
                                   frame.chroma(), 0, 0, 0);
}

using FrameReader = void (*)(const Frame& frame, uint8_t* rgb);
using FrameWriter = void (*)(const uint8_t* bgr, const Frame& frame);

struct RawFormat {
  const char* name;
  const char* layout;
  const char* readEntry;  // full range
  FrameReader read;
  const char* readVideoEntry;  // video range, where the library has it
  FrameReader readVideo;
  const char* writeEntry;
  FrameWriter write;
};

const RawFormat kFormats[] = {
    {"nv21", "Y plane, then interleaved Cr,Cb pairs (Android camera)", "ovkColorYCbCr420PseudoPlanarToRGB888u8",
     nv21ToRgb, "ovkColorYCrCb420PseudoPlanarToRGB8888u8", nv21VideoToRgb, "ovkColorRGB888ToYCbCr420PseudoPlanaru8",
     bgrToNv21},
    {"nv12", "Y plane, then interleaved Cb,Cr pairs", "ovkColorYCbCr420PseudoPlanarToRGB888u8", nv12ToRgb, nullptr,
     nullptr, "ovkColorRGB888ToYCbCr420PseudoPlanaru8", bgrToNv12},
    {"i420", "Y plane, Cb plane, Cr plane", "ovkColorYCbCr420PlanarToRGB888u8", i420ToRgb, nullptr, nullptr,
     "ovkColorRGB888ToYCbCr420Planaru8", bgrToI420},
    {"yv12", "Y plane, Cr plane, Cb plane", "ovkColorYCbCr420PlanarToRGB888u8", yv12ToRgb, nullptr, nullptr,
     "ovkColorRGB888ToYCbCr420Planaru8", bgrToYv12},
};

const RawFormat* findFormat(const std::string& name) {
  for (const RawFormat& format : kFormats)
    if (name == format.name) return &format;
  return nullptr;
}

std::string formatNames() {
  std::string names;
  for (const RawFormat& format : kFormats) names += (names.empty() ? "" : "|") + std::string(format.name);
  return names;
}

// ---- Arguments ---------------------------------------------------------------------------

struct ConvertRequest {
  std::string input;
  std::string output;
  bool toRaw = false;  // PNG in, raw frame out
  const RawFormat* format = nullptr;
  uint32_t width = 0;
  uint32_t height = 0;
  bool videoRange = false;
};

std::string extensionOf(const std::string& path) {
  const size_t dot = path.find_last_of('.');
  if (dot == std::string::npos || path.find('/', dot) != std::string::npos) return "";
  std::string extension = path.substr(dot + 1);
  std::transform(extension.begin(), extension.end(), extension.begin(), ::tolower);
  return extension;
}

const RawFormat& rawFormatOf(const std::string& option, const std::string& rawPath) {
  const std::string name = option.empty() ? extensionOf(rawPath) : option;
  if (const RawFormat* format = findFormat(name)) return *format;
  if (option.empty())
    throw CommandError{kExitUsage, "say the format of " + rawPath + " with --from or --to " + formatNames()};
  throw CommandError{kExitUsage, "unknown format '" + name + "' (" + formatNames() + ")"};
}

// Frames of up to 65536 pixels a side.
constexpr uint32_t kMaxFrameSide = 65536;

ConvertRequest parseConvert(const std::vector<std::string>& args) {
  const Arguments split = splitArguments("convert", args, {"--from", "--to", "--size", "--range"});
  const std::vector<std::string>& paths = split.paths;
  const std::string from = split.option("--from", ""), to = split.option("--to", ""),
                    size = split.option("--size", ""), range = split.option("--range", "full");
  if (paths.size() != 2) throw CommandError{kExitUsage, "convert takes IN and OUT"};
  ConvertRequest request;
  request.input = paths[0];
  request.output = paths[1];
  const bool pngIn = extensionOf(request.input) == "png", pngOut = extensionOf(request.output) == "png";
  if (pngIn == pngOut) throw CommandError{kExitUsage, "convert needs one .png file and one raw frame"};
  request.toRaw = pngIn;
  request.format = &rawFormatOf(pngIn ? to : from, pngIn ? request.output : request.input);
  if (range != "full" && range != "video") throw CommandError{kExitUsage, "--range takes video|full"};
  request.videoRange = range == "video";
  if (request.videoRange && (request.toRaw || !request.format->readVideo))
    throw CommandError{kExitUsage, "--range video applies to reading nv21 only"};
  if (!request.toRaw) {
    if (size.empty()) throw CommandError{kExitUsage, "reading a raw frame needs --size WIDTHxHEIGHT"};
    if (!parseSize(size, kMaxFrameSide, request.width, request.height))
      throw CommandError{kExitUsage, "--size takes WIDTHxHEIGHT, not '" + size + "'"};
  }
  return request;
}

void requireEvenSize(uint32_t width, uint32_t height) {
  if (width % 2 || height % 2)
    throw CommandError{kExitUsage, "4:2:0 frames need an even width and height, not " + std::to_string(width) + "x" +
                                       std::to_string(height)};
}

// ---- Conversions ---------------------------------------------------------------------------

// Packed B,G,R from any PNG layout; alpha is dropped, gray is replicated.
std::vector<uint8_t> bgrOf(const InterleavedImage& image) {
  const size_t pixels = size_t(image.width) * image.height;
  std::vector<uint8_t> bgr(pixels * 3);
  for (size_t i = 0; i < pixels; ++i) {
    const uint8_t* pixel = &image.pixels[i * image.channels];
    const bool color = image.colorChannels() == 3;
    bgr[i * 3] = pixel[color ? 2 : 0];
    bgr[i * 3 + 1] = pixel[color ? 1 : 0];
    bgr[i * 3 + 2] = pixel[0];
  }
  return bgr;
}

void writeFile(const std::string& path, const std::vector<uint8_t>& bytes) {
  std::string error;
  if (!writeOutputFile(path, bytes, error)) throw CommandError{kExitFailure, path + ": " + error};
}

std::vector<uint8_t> readFile(const std::string& path) {
  const FileHandle file(fopen(path.c_str(), "rb"));
  if (!file) throw CommandError{kExitUsage, path + ": " + strerror(errno)};
  std::vector<uint8_t> bytes;
  uint8_t block[65536];
  while (const size_t bytesRead = fread(block, 1, sizeof block, file.get()))
    bytes.insert(bytes.end(), block, block + bytesRead);
  if (ferror(file.get())) throw CommandError{kExitUsage, path + ": " + strerror(errno)};
  return bytes;
}

struct Conversion {
  const char* entry;
  uint32_t width;
  uint32_t height;
  uint64_t micros;
};

Conversion pngToRaw(const ConvertRequest& request) {
  InterleavedImage image;
  std::string error;
  if (!readPng(request.input, image, error)) throw CommandError{kExitUsage, request.input + ": " + error};
  requireEvenSize(image.width, image.height);
  const std::vector<uint8_t> bgr = bgrOf(image);
  std::vector<uint8_t> raw(size_t(image.width) * image.height * 3 / 2);
  const uint64_t start = ovkGetTime();
  request.format->write(bgr.data(), Frame{image.width, image.height, raw.data()});
  const uint64_t micros = ovkGetTime() - start;
  writeFile(request.output, raw);
  return {request.format->writeEntry, image.width, image.height, micros};
}

Conversion rawToPng(const ConvertRequest& request) {
  requireEvenSize(request.width, request.height);
  std::vector<uint8_t> raw = readFile(request.input);
  const Frame frame{request.width, request.height, raw.data()};
  if (raw.size() != frame.bytes())
    throw CommandError{kExitUsage, request.input + ": " + std::to_string(raw.size()) + " bytes, but a " +
                                       std::to_string(frame.width) + "x" + std::to_string(frame.height) + " " +
                                       request.format->name + " frame has " + std::to_string(frame.bytes())};
  InterleavedImage image;
  image.width = frame.width;
  image.height = frame.height;
  image.channels = 3;
  image.pixels.resize(frame.lumaBytes() * 3);
  const FrameReader read = request.videoRange ? request.format->readVideo : request.format->read;
  const uint64_t start = ovkGetTime();
  read(frame, image.pixels.data());
  const uint64_t micros = ovkGetTime() - start;
  std::string error;
  if (!writePng(request.output, image, error)) throw CommandError{kExitFailure, request.output + ": " + error};
  return {request.videoRange ? request.format->readVideoEntry : request.format->readEntry, frame.width, frame.height,
          micros};
}

}  // namespace

int runConvert(const std::vector<std::string>& args) {
  const ConvertRequest request = parseConvert(args);
  if (setMode() != 0) return kExitFailure;
  const Conversion done = request.toRaw ? pngToRaw(request) : rawToPng(request);
  printf("input:          %s\n", request.input.c_str());
  printf("conversion:     %s %s (%ux%u)\n", request.toRaw ? "PNG to" : "PNG from", request.format->name, done.width,
         done.height);
  printf("time:           %" PRIu64 " us\n", done.micros);
  printf("implementation: %s %s\n", done.entry, implementationOf(done.entry).c_str());
  printf("output:         %s\n", request.output.c_str());
  return 0;
}

void printConvertHelp(FILE* out) {
  fprintf(out,
          "convert IN.png OUT.FMT [--to FMT]                     writes a raw 4:2:0 frame\n"
          "convert IN.FMT OUT.png [--from FMT] --size WxH [--range video|full]\n"
          "  FMT is taken from the raw file's extension unless given.  Frames are\n"
          "  full-range YCbCr; --range video reads nv21 as camera (video-range) data.\n"
          "  Width and height must be even.  Formats:\n");
  for (const RawFormat& format : kFormats) fprintf(out, "    %s  %s\n", format.name, format.layout);
}

void printConversions(FILE* out) {
  fprintf(out, "conversions (orvik convert):\n");
  for (const RawFormat& format : kFormats) {
    fprintf(out, "  %s  %s\n", format.name, format.layout);
    fprintf(out, "        read:  %s  %s\n", format.readEntry, implementationOf(format.readEntry).c_str());
    if (format.readVideoEntry)
      fprintf(out, "        read --range video:  %s  %s\n", format.readVideoEntry,
              implementationOf(format.readVideoEntry).c_str());
    fprintf(out, "        write: %s  %s\n", format.writeEntry, implementationOf(format.writeEntry).c_str());
  }
}
