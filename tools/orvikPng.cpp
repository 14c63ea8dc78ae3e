#include "orvikPng.h"

#include <errno.h>
#include <png.h>
#include <stdio.h>
#include <string.h>

#include <memory>

#include "orvikOutput.h"

namespace {

constexpr size_t kSignatureBytes = 8;

struct PngReadStructs {
  png_structp png = nullptr;
  png_infop info = nullptr;
  ~PngReadStructs() { png_destroy_read_struct(&png, &info, nullptr); }
};

// libpng reports errors by longjmp; the message goes to the caller's string.
void keepErrorMessage(png_structp png, png_const_charp message) {
  *static_cast<std::string*>(png_get_error_ptr(png)) = message;
  png_longjmp(png, 1);
}

void ignoreWarning(png_structp, png_const_charp) {}

// Why the file does not start with a PNG signature; empty when it does.
std::string signatureProblem(FILE* file) {
  png_byte signature[kSignatureBytes];
  const size_t bytesRead = fread(signature, 1, sizeof signature, file);
  if (ferror(file)) return strerror(errno);
  if (bytesRead == 0) return "empty file";
  if (bytesRead < sizeof signature || png_sig_cmp(signature, 0, sizeof signature) != 0) return "not a PNG file";
  return "";
}

// libpng's own reader says only "Read Error" when the file ends early.
void readOrFail(png_structp png, png_bytep data, size_t length) {
  FILE* file = static_cast<FILE*>(png_get_io_ptr(png));
  if (fread(data, 1, length, file) == length) return;
  png_error(png, ferror(file) ? strerror(errno) : "truncated: the file ends inside the image");
}

void requestEightBitChannels(png_structp png, png_infop info) {
  const png_byte colorType = png_get_color_type(png, info);
  if (colorType == PNG_COLOR_TYPE_PALETTE) png_set_palette_to_rgb(png);
  if (colorType == PNG_COLOR_TYPE_GRAY) png_set_expand_gray_1_2_4_to_8(png);
  if (png_get_valid(png, info, PNG_INFO_tRNS)) png_set_tRNS_to_alpha(png);
  png_set_strip_16(png);
  png_set_interlace_handling(png);
  png_read_update_info(png, info);
}

// Objects that must be destroyed after a longjmp are constructed before the
// setjmp; nothing read after the jump is changed after it.
bool decodePng(FILE* file, InterleavedImage& image, std::string& error) {
  PngReadStructs structs;
  std::vector<png_bytep> rows;
  structs.png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &error, keepErrorMessage, ignoreWarning);
  if (structs.png) structs.info = png_create_info_struct(structs.png);
  if (!structs.info) {
    error = "out of memory";
    return false;
  }
  if (setjmp(png_jmpbuf(structs.png))) return false;
  png_set_read_fn(structs.png, file, readOrFail);
  png_set_sig_bytes(structs.png, kSignatureBytes);
  png_read_info(structs.png, structs.info);
  requestEightBitChannels(structs.png, structs.info);
  image.width = png_get_image_width(structs.png, structs.info);
  image.height = png_get_image_height(structs.png, structs.info);
  image.channels = png_get_channels(structs.png, structs.info);
  const size_t rowBytes = size_t(image.width) * image.channels;
  image.pixels.resize(rowBytes * image.height);
  for (uint32_t y = 0; y < image.height; ++y) rows.push_back(image.pixels.data() + y * rowBytes);
  png_read_image(structs.png, rows.data());
  png_read_end(structs.png, nullptr);
  return true;
}

png_uint_32 pngFormatOf(uint32_t channels) {
  switch (channels) {
    case 1:
      return PNG_FORMAT_GRAY;
    case 2:
      return PNG_FORMAT_GA;
    case 3:
      return PNG_FORMAT_RGB;
    default:
      return PNG_FORMAT_RGBA;
  }
}

}  // namespace

bool readPng(const std::string& path, InterleavedImage& image, std::string& error) {
  const FileHandle file(fopen(path.c_str(), "rb"));
  if (!file) {
    error = strerror(errno);
    return false;
  }
  error = signatureProblem(file.get());
  if (!error.empty()) return false;
  return decodePng(file.get(), image, error);
}

bool writePng(const std::string& path, const InterleavedImage& image, std::string& error) {
  png_image png{};
  png.version = PNG_IMAGE_VERSION;
  png.width = image.width;
  png.height = image.height;
  png.format = pngFormatOf(image.channels);
  // Encoded in memory, at most the bound libpng gives, so that the file is
  // written in one go.
  std::vector<uint8_t> encoded(PNG_IMAGE_PNG_SIZE_MAX(png));
  png_alloc_size_t bytes = encoded.size();
  if (!png_image_write_to_memory(&png, encoded.data(), &bytes, 0, image.pixels.data(), 0, nullptr)) {
    error = png.message;
    return false;
  }
  encoded.resize(bytes);
  return writeOutputFile(path, encoded, error);
}

void extractPlane(const InterleavedImage& image, uint32_t channel, std::vector<uint8_t>& plane) {
  for (size_t i = 0; i < plane.size(); ++i) plane[i] = image.pixels[i * image.channels + channel];
}

void insertPlane(const std::vector<uint8_t>& plane, uint32_t channel, InterleavedImage& image) {
  for (size_t i = 0; i < plane.size(); ++i) image.pixels[i * image.channels + channel] = plane[i];
}

const char* layoutName(uint32_t channels) {
  static const char* const kLayouts[] = {"", "gray", "gray+alpha", "RGB", "RGBA"};
  return kLayouts[channels];
}
