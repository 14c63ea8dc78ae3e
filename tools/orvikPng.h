// PNG files as 8-bit interleaved images, for the orvik command.
#ifndef ORVIK_TOOLS_PNG_H
#define ORVIK_TOOLS_PNG_H

#include <stdint.h>

#include <string>
#include <vector>

struct InterleavedImage {
  uint32_t width = 0;
  uint32_t height = 0;
  uint32_t channels = 0;        // 1 gray, 2 gray+alpha, 3 RGB, 4 RGBA
  std::vector<uint8_t> pixels;  // packed rows, channels interleaved

  bool hasAlpha() const { return channels == 2 || channels == 4; }
  uint32_t colorChannels() const { return hasAlpha() ? channels - 1 : channels; }
};

// One channel of the image as a packed plane of width x height bytes, and
// back.
void extractPlane(const InterleavedImage& image, uint32_t channel, std::vector<uint8_t>& plane);
void insertPlane(const std::vector<uint8_t>& plane, uint32_t channel, InterleavedImage& image);

// "gray", "gray+alpha", "RGB" or "RGBA".
const char* layoutName(uint32_t channels);

// Any PNG is read as 8 bits per channel: palettes and transparency become
// RGB(A), low bit depths are widened and 16-bit samples keep their high byte.
// On failure `error` says why.
bool readPng(const std::string& path, InterleavedImage& image, std::string& error);
// A failed write leaves no file behind (see writeOutputFile).
bool writePng(const std::string& path, const InterleavedImage& image, std::string& error);

#endif
