#include "entry_table.h"

#include <algorithm>

#include "cpu/orvikColorToRgb.h"
#include "orvik.h"

const char* familyName(Family family) {
  switch (family) {
    case Family::kFilter:
      return "filters";
    case Family::kGradient:
      return "gradients";
    case Family::kYccToRgb:
      return "ycbcr_to_rgb";
    case Family::kRgbToYcc:
      return "rgb_to_ycbcr";
    case Family::kScale:
      return "scaling";
  }
  return "?";
}

namespace {

// ---- Buffers ---------------------------------------------------------------------

BufferInfo input(std::string name, uint32_t rows, uint64_t rowBytes, int strideArg) {
  return {std::move(name), false, {{rows, rowBytes, strideArg}}};
}

BufferInfo output(std::string name, uint32_t rows, uint64_t rowBytes, int strideArg) {
  return {std::move(name), true, {{rows, rowBytes, strideArg}}};
}

// src and dst of the same size; strides 0 and 1, or none.
BufferLayout sameSize(uint32_t pixelBytes, bool strided) {
  return [=](uint32_t w, uint32_t h) {
    return std::vector<BufferInfo>{input("src", h, uint64_t(w) * pixelBytes, strided ? 0 : -1),
                                   output("dst", h, uint64_t(w) * pixelBytes, strided ? 1 : -1)};
  };
}

// Interleaved (dx, dy) pairs: srcWidth - 2 of them on each of srcHeight - 2
// rows, nothing for images narrower or lower than 3.
BufferLayout interleavedGradients(uint32_t elementBytes, bool stridedOutput) {
  return [=](uint32_t w, uint32_t h) {
    const bool interior = w > 2 && h > 2;
    return std::vector<BufferInfo>{
        input("src", h, w, 0),
        output("gradients", interior ? h - 2 : 0, interior ? uint64_t(w - 2) * 2 * elementBytes : 0,
               stridedOutput ? 1 : -1)};
  };
}

// Two planes of the source's size sharing one stride.
BufferLayout planarGradients(uint32_t elementBytes, bool stridedOutput, Content source = Content::kBytes) {
  return [=](uint32_t w, uint32_t h) {
    const uint32_t sourceBytes = source == Content::kFloats ? 4 : 1;
    BufferInfo src = input("src", h, uint64_t(w) * sourceBytes, 0);
    src.content = source;
    const int dxy = stridedOutput ? 1 : -1;
    return std::vector<BufferInfo>{src, output("dx", h, uint64_t(w) * elementBytes, dxy),
                                   output("dy", h, uint64_t(w) * elementBytes, dxy)};
  };
}

std::vector<BufferInfo> cannyWithGradients(uint32_t w, uint32_t h) {
  std::vector<BufferInfo> buffers = sameSize(1, true)(w, h);
  for (const char* name : {"gx", "gy"}) {
    buffers.push_back(output(name, h, uint64_t(w) * 2, 2));
    buffers.back().nullable = true;
  }
  return buffers;
}

uint32_t halfUp(uint32_t n) { return n / 2 + n % 2; }

// YCbCr planes (planar: Y, Cb, Cr; pseudo-planar: Y and Cb/Cr pairs) and an
// RGB output of `outBytes` a pixel; one stride each, in that order.
BufferLayout yccToRgbBuffers(bool planar, uint32_t shiftX, uint32_t shiftY, uint32_t outBytes) {
  return [=](uint32_t w, uint32_t h) {
    const uint32_t chromaRows = shiftY ? halfUp(h) : h;
    std::vector<BufferInfo> buffers = {input("y", h, w, 0)};
    if (planar) {
      const uint32_t chromaWidth = shiftX ? halfUp(w) : w;
      buffers.push_back(input("cb", chromaRows, chromaWidth, 1));
      buffers.push_back(input("cr", chromaRows, chromaWidth, 2));
    } else {
      buffers.push_back(input("c", chromaRows, shiftX ? w : uint64_t(w) * 2, 1));
    }
    buffers.push_back(output("dst", h, uint64_t(w) * outBytes, int(buffers.size())));
    return buffers;
  };
}

// A camera frame: the luma plane, then rows of chroma pairs (one per 2x2
// block) directly after it.
BufferLayout cameraFrame(uint32_t outBytes, bool strided) {
  return [=](uint32_t w, uint32_t h) {
    BufferInfo src = {"src", false, {{h, w, strided ? 0 : -1}, {halfUp(h), w, strided ? 1 : -1}}};
    return std::vector<BufferInfo>{src, output("dst", h, uint64_t(w) * outBytes, strided ? 2 : -1)};
  };
}

// Block-ordered units of unitWidth x unitHeight pixels, `unitBytes` each.
BufferLayout blockOrdered(uint32_t unitWidth, uint32_t unitHeight, uint32_t unitBytes) {
  return [=](uint32_t w, uint32_t h) {
    const uint64_t units = uint64_t((w + unitWidth - 1) / unitWidth) * ((h + unitHeight - 1) / unitHeight);
    return std::vector<BufferInfo>{input("src", 1, units * unitBytes, -1), output("dst", h, uint64_t(w) * 3, -1)};
  };
}

// Packed RGB in, Y and chroma out.  Planar chroma rows are given the width
// the stride check asks for, (width + 1) / 2 when subsampled.
BufferLayout rgbToYccBuffers(uint32_t inBytes, bool planar, uint32_t shiftX, uint32_t shiftY) {
  return [=](uint32_t w, uint32_t h) {
    const uint32_t chromaRows = shiftY ? halfUp(h) : h;
    std::vector<BufferInfo> buffers = {input("src", h, uint64_t(w) * inBytes, 0), output("y", h, w, 1)};
    if (planar) {
      const uint32_t chromaWidth = shiftX ? halfUp(w) : w;
      buffers.push_back(output("cb", chromaRows, chromaWidth, 2));
      buffers.push_back(output("cr", chromaRows, chromaWidth, 3));
    } else {
      buffers.push_back(output("c", chromaRows, shiftX ? w : uint64_t(w) * 2, 2));
    }
    return buffers;
  };
}

// ---- Strides and options ---------------------------------------------------------

std::vector<StrideInfo> strides(std::initializer_list<std::pair<const char*, bool>> list) {
  std::vector<StrideInfo> out;
  for (const auto& [name, checked] : list) out.push_back({name, checked});
  return out;
}

const std::vector<OptionInfo> kBlurBorder = {{"blurBorder", -2, 3}};
const std::vector<std::vector<int64_t>> kBlurBorderSets = {{0}, {1}};
const std::vector<OptionInfo> kBorder = {{"borderType", 0, 3}, {"borderValue", 0, 255}};
const std::vector<std::vector<int64_t>> kBorderSets = {{0, 0}, {1, 77}, {2, 0}};
const std::vector<std::vector<int64_t>> kBadBorders = {{3, 0}, {0xFFFFFFFF, 0}};
const std::vector<OptionInfo> kThresholds = {{"low", -40, 2100}, {"high", -40, 2100}};
const std::vector<std::vector<int64_t>> kThresholdSets = {{40, 120}, {300, 600}};
const std::vector<std::vector<int64_t>> kBadThresholds = {{121, 120}};

#define OVK_VOID(call) [](const EntryCall& c) -> int64_t { return (call), 0; }
#define OVK_STATUS(call) [](const EntryCall& c) -> int64_t { return (call); }

const uint8_t* u8(const EntryCall& c, size_t i) { return c.in<uint8_t>(i); }
uint8_t* out8(const EntryCall& c, size_t i) { return c.out<uint8_t>(i); }
uint32_t borderType(const EntryCall& c) { return uint32_t(c.options[0]); }
uint8_t borderValue(const EntryCall& c) { return uint8_t(c.options[1]); }

// ---- Smoothing filters -----------------------------------------------------------

std::vector<EntryInfo> filterEntries() {
  const auto packedBlur = [](std::string name, std::string condition, uint32_t min, uint32_t bytes,
                             EntryInvoke invoke) {
    return EntryInfo{name, Family::kFilter, condition, min, min, false, {}, sameSize(bytes, false),
                     kBlurBorder, kBlurBorderSets, {}, invoke};
  };
  const auto stridedBlur = [](std::string name, std::string condition, uint32_t minWidth, uint32_t minHeight,
                              bool dstChecked, uint32_t bytes, EntryInvoke invoke) {
    return EntryInfo{name, Family::kFilter, condition, minWidth, minHeight, true,
                     strides({{"srcStride", true}, {"dstStride", dstChecked}}), sameSize(bytes, true),
                     kBlurBorder, kBlurBorderSets, {}, invoke};
  };
  const auto bordered = [](std::string name, EntryInvoke invoke) {
    return EntryInfo{name, Family::kFilter, "", 1, 1, true, strides({{"srcStride", true}, {"dstStride", true}}),
                     sameSize(1, true), kBorder, kBorderSets, kBadBorders, invoke};
  };
  // Box filters without a border type take their strides as given: zero is rejected.
  const auto box = [](std::string name, std::string condition, uint32_t min, EntryInvoke invoke) {
    return EntryInfo{name, Family::kFilter, condition, min, min, false,
                     strides({{"srcStride", true}, {"dstStride", false}}), sameSize(1, true), {}, {{}}, {}, invoke};
  };
  std::vector<EntryInfo> entries = {
      packedBlur("ovkFilterGaussian3x3u8", "src && dst && width && height", 1, 1,
                 OVK_VOID(ovkFilterGaussian3x3u8(u8(c, 0), c.width, c.height, out8(c, 1), c.option(0)))),
      stridedBlur("ovkFilterGaussian3x3u8_v2",
                  "src && dst && (srcWidth > 1) && (srcHeight > 1) && (srcStride >= srcWidth) && (dstStride >= "
                  "srcWidth)",
                  2, 2, true, 1,
                  OVK_VOID(ovkFilterGaussian3x3u8_v2(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1),
                                                     c.stride(1), c.option(0)))),
      bordered("ovkFilterGaussian3x3u8_v3",
               OVK_STATUS(ovkFilterGaussian3x3u8_v3(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1), c.stride(1),
                                                    borderType(c), borderValue(c)))),
      packedBlur("ovkFilterGaussian5x5u8", "src && dst && width && height && height > 4 && width > 4", 5, 1,
                 OVK_VOID(ovkFilterGaussian5x5u8(u8(c, 0), c.width, c.height, out8(c, 1), c.option(0)))),
      stridedBlur("ovkFilterGaussian5x5u8_v2",
                  "src && dst && srcWidth && srcHeight && (srcStride >= srcWidth) && dstStride && srcHeight > 4 && "
                  "srcWidth > 4",
                  5, 5, false, 1,
                  OVK_VOID(ovkFilterGaussian5x5u8_v2(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1),
                                                     c.stride(1), c.option(0)))),
      packedBlur("ovkFilterGaussian11x11u8", "src && dst && width && height && height > 10 && width > 10", 11, 1,
                 OVK_VOID(ovkFilterGaussian11x11u8(u8(c, 0), c.width, c.height, out8(c, 1), c.option(0)))),
      stridedBlur("ovkFilterGaussian11x11u8_v2",
                  "src && dst && srcWidth && srcHeight && (srcStride >= srcWidth) && dstStride && srcHeight > 10 && "
                  "srcWidth > 10",
                  11, 11, false, 1,
                  OVK_VOID(ovkFilterGaussian11x11u8_v2(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1),
                                                       c.stride(1), c.option(0)))),
      EntryInfo{"ovkFilterGaussian5x5s16", Family::kFilter, "src && dst && width && height && height > 1", 1, 2,
                false, {}, sameSize(2, false), kBlurBorder, kBlurBorderSets, {},
                OVK_VOID(ovkFilterGaussian5x5s16(c.in<int16_t>(0), c.width, c.height, c.out<int16_t>(1),
                                                 c.option(0)))},
      stridedBlur("ovkFilterGaussian5x5s16_v2",
                  "src && dst && srcWidth && srcHeight && (srcStride >= srcWidth*sizeof(int16_t)) && (dstStride >= "
                  "srcWidth*sizeof(int16_t)) && srcHeight > 1",
                  1, 2, true, 2,
                  OVK_VOID(ovkFilterGaussian5x5s16_v2(c.in<int16_t>(0), c.width, c.height, c.stride(0),
                                                      c.out<int16_t>(1), c.stride(1), c.option(0)))),
      packedBlur("ovkFilterGaussian5x5s32", "src && dst && width && height && width > 4 && height > 4", 5, 4,
                 OVK_VOID(ovkFilterGaussian5x5s32(c.in<int32_t>(0), c.width, c.height, c.out<int32_t>(1),
                                                  c.option(0)))),
      stridedBlur("ovkFilterGaussian5x5s32_v2",
                  "src && dst && srcWidth && srcHeight && (srcStride >= srcWidth*sizeof(int32_t)) && (dstStride >= "
                  "srcWidth*sizeof(int32_t)) && srcWidth > 4 && srcHeight > 4",
                  5, 5, true, 4,
                  OVK_VOID(ovkFilterGaussian5x5s32_v2(c.in<int32_t>(0), c.width, c.height, c.stride(0),
                                                      c.out<int32_t>(1), c.stride(1), c.option(0)))),
      box("ovkBoxFilter3x3u8",
          "src && dst && srcWidth && srcHeight && srcStride && dstStride && ( srcStride >=srcWidth ) && srcWidth > 2 "
          "&& srcHeight > 2",
          3, OVK_VOID(ovkBoxFilter3x3u8(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1), c.stride(1)))),
      bordered("ovkBoxFilter3x3u8_v2",
               OVK_STATUS(ovkBoxFilter3x3u8_v2(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1), c.stride(1),
                                               borderType(c), borderValue(c)))),
      box("ovkBoxFilter5x5u8",
          "src && dst && srcWidth && srcHeight && srcStride && dstStride && (srcStride >=srcWidth) && srcWidth > 4 && "
          "srcHeight > 4",
          5, OVK_VOID(ovkBoxFilter5x5u8(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1), c.stride(1)))),
      box("ovkBoxFilter11x11u8",
          "src && dst && srcWidth && srcHeight && srcStride && dstStride && ( srcStride >=srcWidth) && srcWidth > 10 "
          "&& srcHeight > 10",
          11, OVK_VOID(ovkBoxFilter11x11u8(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1), c.stride(1)))),
      EntryInfo{"ovkFilterMedian3x3u8", Family::kFilter, "src && dst && width && height", 1, 1, false, {},
                sameSize(1, false), {}, {{}}, {},
                OVK_VOID(ovkFilterMedian3x3u8(u8(c, 0), c.width, c.height, out8(c, 1)))},
      EntryInfo{"ovkFilterMedian3x3u8_v2", Family::kFilter,
                "src && dst && srcWidth && srcHeight && (srcStride >= srcWidth) && dstStride", 1, 1, true,
                strides({{"srcStride", true}, {"dstStride", false}}), sameSize(1, true), {}, {{}}, {},
                OVK_VOID(ovkFilterMedian3x3u8_v2(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1),
                                                 c.stride(1)))},
      bordered("ovkFilterMedian3x3u8_v3",
               OVK_STATUS(ovkFilterMedian3x3u8_v3(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1), c.stride(1),
                                                  borderType(c), borderValue(c)))),
  };
  // The first two generations of the 3x3 Gaussian check the width first.
  entries[0].widthPrecheck = entries[1].widthPrecheck = true;
  return entries;
}

// ---- Gradients and edges ---------------------------------------------------------

// The condition texts of the gradients share their start.
const std::string kGradientSource = "src && srcWidth && srcHeight && (srcStride >= srcWidth) && ";

std::vector<EntryInfo> gradientEntries() {
  // First-generation gradients take a source stride as given and pack their output.
  const auto first = [](std::string name, std::string outputs, BufferLayout layout, EntryInvoke invoke) {
    return EntryInfo{name, Family::kGradient, kGradientSource + outputs, 1, 1, false,
                     strides({{"srcStride", true}}), layout, {}, {{}}, {}, invoke};
  };
  // `_v2` interleaved: (srcWidth-2) underflows for a width of 1, so its
  // stride check refuses that width.
  const auto interleaved = [](std::string name, std::string type, uint32_t bytes, EntryInvoke invoke) {
    return EntryInfo{name, Family::kGradient,
                     kGradientSource + "gradients && (gradStride >= ((srcWidth-2)*2*sizeof(" + type + ")))", 2, 1,
                     true, strides({{"srcStride", true}, {"gradStride", true}}), interleavedGradients(bytes, true), {},
                     {{}}, {}, invoke};
  };
  const auto planar = [](std::string name, std::string strideClause, uint32_t bytes, EntryInvoke invoke) {
    return EntryInfo{name, Family::kGradient, kGradientSource + "dx && dy && " + strideClause, 1, 1, true,
                     strides({{"srcStride", true}, {"dxyStride", true}}), planarGradients(bytes, true), {}, {{}}, {},
                     invoke};
  };
  const auto canny = [](std::string name, std::string condition, bool strided, EntryInvoke invoke) {
    return EntryInfo{name,
                     Family::kGradient,
                     condition,
                     3,
                     3,
                     strided,
                     strided ? strides({{"srcStride", true}, {"dstStride", true}}) : std::vector<StrideInfo>{},
                     sameSize(1, strided),
                     kThresholds,
                     kThresholdSets,
                     kBadThresholds,
                     invoke};
  };
  const std::string cannyStrided =
      "src && srcWidth && srcHeight && (srcStride >= srcWidth) && dst && (dstStride >= srcWidth) && (low <= high) && "
      "srcWidth > 2 && srcHeight > 2";
  return {
      EntryInfo{"ovkFilterSobel3x3u8", Family::kGradient, "src && width && height && dst", 1, 1, false, {},
                sameSize(1, false), {}, {{}}, {}, OVK_VOID(ovkFilterSobel3x3u8(u8(c, 0), c.width, c.height, out8(c, 1)))},
      EntryInfo{"ovkFilterSobel3x3u8_v2", Family::kGradient,
                "src && srcWidth && srcHeight && (srcStride >= srcWidth) && dst && (dstStride >= srcWidth)", 1, 1, true,
                strides({{"srcStride", true}, {"dstStride", true}}), sameSize(1, true), {}, {{}}, {},
                OVK_VOID(ovkFilterSobel3x3u8_v2(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1), c.stride(1)))},
      first("ovkImageGradientInterleaveds16", "gradients", interleavedGradients(2, false),
            OVK_VOID(ovkImageGradientInterleaveds16(u8(c, 0), c.width, c.height, c.stride(0), c.out<int16_t>(1)))),
      interleaved("ovkImageGradientInterleaveds16_v2", "int16_t", 2,
                  OVK_VOID(ovkImageGradientInterleaveds16_v2(u8(c, 0), c.width, c.height, c.stride(0),
                                                             c.out<int16_t>(1), c.stride(1)))),
      first("ovkImageGradientInterleavedf32", "gradients", interleavedGradients(4, false),
            OVK_VOID(ovkImageGradientInterleavedf32(u8(c, 0), c.width, c.height, c.stride(0), c.out<float>(1)))),
      interleaved("ovkImageGradientInterleavedf32_v2", "float", 4,
                  OVK_VOID(ovkImageGradientInterleavedf32_v2(u8(c, 0), c.width, c.height, c.stride(0),
                                                             c.out<float>(1), c.stride(1)))),
      first("ovkImageGradientPlanars16", "dx && dy", planarGradients(2, false),
            OVK_VOID(ovkImageGradientPlanars16(u8(c, 0), c.width, c.height, c.stride(0), c.out<int16_t>(1),
                                               c.out<int16_t>(2)))),
      planar("ovkImageGradientPlanars16_v2", "(dxyStride >= (srcWidth*sizeof(int16_t)))", 2,
             OVK_VOID(ovkImageGradientPlanars16_v2(u8(c, 0), c.width, c.height, c.stride(0), c.out<int16_t>(1),
                                                   c.out<int16_t>(2), c.stride(1)))),
      first("ovkImageGradientPlanarf32", "dx && dy", planarGradients(4, false),
            OVK_VOID(ovkImageGradientPlanarf32(u8(c, 0), c.width, c.height, c.stride(0), c.out<float>(1),
                                               c.out<float>(2)))),
      planar("ovkImageGradientPlanarf32_v2", "(dxyStride >= (srcWidth*sizeof(float)))", 4,
             OVK_VOID(ovkImageGradientPlanarf32_v2(u8(c, 0), c.width, c.height, c.stride(0), c.out<float>(1),
                                                   c.out<float>(2), c.stride(1)))),
      first("ovkImageGradientSobelInterleaveds16", "gradients", interleavedGradients(2, false),
            OVK_VOID(ovkImageGradientSobelInterleaveds16(u8(c, 0), c.width, c.height, c.stride(0),
                                                         c.out<int16_t>(1)))),
      interleaved("ovkImageGradientSobelInterleaveds16_v2", "int16_t", 2,
                  OVK_VOID(ovkImageGradientSobelInterleaveds16_v2(u8(c, 0), c.width, c.height, c.stride(0),
                                                                  c.out<int16_t>(1), c.stride(1)))),
      interleaved("ovkImageGradientSobelInterleaveds16_v3", "int16_t", 2,
                  OVK_VOID(ovkImageGradientSobelInterleaveds16_v3(u8(c, 0), c.width, c.height, c.stride(0),
                                                                  c.out<int16_t>(1), c.stride(1)))),
      first("ovkImageGradientSobelInterleavedf32", "gradients", interleavedGradients(4, false),
            OVK_VOID(ovkImageGradientSobelInterleavedf32(u8(c, 0), c.width, c.height, c.stride(0),
                                                         c.out<float>(1)))),
      interleaved("ovkImageGradientSobelInterleavedf32_v2", "float", 4,
                  OVK_VOID(ovkImageGradientSobelInterleavedf32_v2(u8(c, 0), c.width, c.height, c.stride(0),
                                                                  c.out<float>(1), c.stride(1)))),
      first("ovkImageGradientSobelPlanars16", "dx && dy", planarGradients(2, false),
            OVK_VOID(ovkImageGradientSobelPlanars16(u8(c, 0), c.width, c.height, c.stride(0), c.out<int16_t>(1),
                                                    c.out<int16_t>(2)))),
      planar("ovkImageGradientSobelPlanars16_v2", "(dxyStride >= (srcWidth*sizeof(int16_t)))", 2,
             OVK_VOID(ovkImageGradientSobelPlanars16_v2(u8(c, 0), c.width, c.height, c.stride(0), c.out<int16_t>(1),
                                                        c.out<int16_t>(2), c.stride(1)))),
      first("ovkImageGradientSobelPlanars8", "dx && dy", planarGradients(1, false),
            OVK_VOID(ovkImageGradientSobelPlanars8(u8(c, 0), c.width, c.height, c.stride(0), c.out<int8_t>(1),
                                                   c.out<int8_t>(2)))),
      planar("ovkImageGradientSobelPlanars8_v2", "(dxyStride >= srcWidth)", 1,
             OVK_VOID(ovkImageGradientSobelPlanars8_v2(u8(c, 0), c.width, c.height, c.stride(0), c.out<int8_t>(1),
                                                       c.out<int8_t>(2), c.stride(1)))),
      first("ovkImageGradientSobelPlanarf32", "dx && dy", planarGradients(4, false),
            OVK_VOID(ovkImageGradientSobelPlanarf32(u8(c, 0), c.width, c.height, c.stride(0), c.out<float>(1),
                                                    c.out<float>(2)))),
      planar("ovkImageGradientSobelPlanarf32_v2", "(dxyStride >= (srcWidth*sizeof(float)))", 4,
             OVK_VOID(ovkImageGradientSobelPlanarf32_v2(u8(c, 0), c.width, c.height, c.stride(0), c.out<float>(1),
                                                        c.out<float>(2), c.stride(1)))),
      // The first generation compares the byte stride with the width in
      // pixels, so it does not catch a stride below the row.
      EntryInfo{"ovkImageGradientSobelPlanarf32f32", Family::kGradient,
                "src && srcWidth && srcHeight && srcStride >= srcWidth && dx && dy", 1, 1, false,
                strides({{"srcStride", false}}), planarGradients(4, false, Content::kFloats), {}, {{}}, {},
                OVK_VOID(ovkImageGradientSobelPlanarf32f32(c.in<float>(0), c.width, c.height, c.stride(0),
                                                           c.out<float>(1), c.out<float>(2)))},
      EntryInfo{"ovkImageGradientSobelPlanarf32f32_v2", Family::kGradient,
                "src && srcWidth && srcHeight && (srcStride >= (srcWidth*sizeof(float))) && dx && dy && (dxyStride "
                ">= (srcWidth*sizeof(float)))",
                1, 1, true, strides({{"srcStride", true}, {"dxyStride", true}}),
                planarGradients(4, true, Content::kFloats), {}, {{}}, {},
                OVK_VOID(ovkImageGradientSobelPlanarf32f32_v2(c.in<float>(0), c.width, c.height, c.stride(0),
                                                              c.out<float>(1), c.out<float>(2), c.stride(1)))},
      EntryInfo{"ovkImageGradientScharrInterleaveds16", Family::kGradient,
                "src && srcWidth && srcHeight && (srcStride >= srcWidth)&& gradients && (gradStride >= "
                "((srcWidth-2)*2*sizeof(int16_t)))",
                2, 1, true, strides({{"srcStride", true}, {"gradStride", true}}), interleavedGradients(2, true), {},
                {{}}, {},
                OVK_VOID(ovkImageGradientScharrInterleaveds16(u8(c, 0), c.width, c.height, c.stride(0),
                                                              c.out<int16_t>(1), c.stride(1)))},
      canny("ovkFilterCanny3x3u8",
            "src && width && height && dst && (low <= high) && width > 2 && height > 2", false,
            OVK_VOID(ovkFilterCanny3x3u8(u8(c, 0), c.width, c.height, out8(c, 1), c.option(0), c.option(1)))),
      canny("ovkFilterCanny3x3u8_v2", cannyStrided, true,
            OVK_VOID(ovkFilterCanny3x3u8_v2(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1), c.stride(1),
                                            c.option(0), c.option(1)))),
      EntryInfo{"ovkFilterCanny3x3u8_v3", Family::kGradient,
                "src && srcWidth && srcHeight && (srcStride >= srcWidth) && dst && (dstStride >= srcWidth) && "
                "(gradStride >= 2*srcWidth) && low <= high && srcWidth > 2 && srcHeight > 2",
                3, 3, true, strides({{"srcStride", true}, {"dstStride", true}, {"gradStride", true}}),
                cannyWithGradients, kThresholds, kThresholdSets, kBadThresholds,
                OVK_VOID(ovkFilterCanny3x3u8_v3(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1), c.stride(1),
                                                c.out<int16_t>(2), c.out<int16_t>(3), c.stride(2), c.option(0),
                                                c.option(1)))},
      canny("ovkFilterCannyu8", cannyStrided, true,
            OVK_VOID(ovkFilterCannyu8(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1), c.stride(1), c.option(0),
                                      c.option(1)))),
  };
}

// ---- YCbCr to RGB ----------------------------------------------------------------

std::string strideClause(const std::string& stride, const std::string& minimum) {
  return "( " + stride + " == 0 || " + stride + " >= (" + minimum + "*sizeof(uint8_t)) )";
}

// The family's condition texts: planar or pseudo-planar, subsampled across
// or not, `outBytes` a pixel.
std::string yccToRgbCondition(bool planar, bool subsampled, uint32_t outBytes) {
  const std::string factor = std::to_string(outBytes);
  std::string text = planar ? "srcY && srcCb && srcCr && dst && srcWidth && srcHeight && "
                            : "srcY && srcC && dst && srcWidth && srcHeight && ";
  text += strideClause("srcYStride", "srcWidth") + " && ";
  if (planar) {
    const std::string chroma = subsampled ? "(srcWidth+1)/2" : "srcWidth";
    text += strideClause("srcCbStride", chroma) + " && " + strideClause("srcCrStride", chroma) + " && ";
  } else {
    text += strideClause("srcCStride", subsampled ? "srcWidth" : "srcWidth*2") + " && ";
  }
  return text + "( dstStride == 0 || dstStride >= (srcWidth*" + factor + "*sizeof(uint8_t)))";
}

constexpr uint32_t kOutBytes565 = 2, kOutBytes888 = 3, kOutBytesA8888 = 4;

#define OVK_YCC_CALL_Planar(Name)                                                                              \
  OVK_VOID(Name(u8(c, 0), u8(c, 1), u8(c, 2), c.width, c.height, c.stride(0), c.stride(1), c.stride(2), out8(c, 3), \
                c.stride(3)))
#define OVK_YCC_CALL_PseudoPlanar(Name) \
  OVK_VOID(Name(u8(c, 0), u8(c, 1), c.width, c.height, c.stride(0), c.stride(1), out8(c, 2), c.stride(2)))

EntryInfo yccMember(std::string name, bool planar, uint32_t shiftX, uint32_t shiftY, uint32_t outBytes,
                    EntryInvoke invoke) {
  // The subsampled members end the process on a single column (the 4:2:2
  // pseudo-planar RGB888 one refuses it at the entry), so they start at 2.
  EntryInfo info{name,
                   Family::kYccToRgb,
                   yccToRgbCondition(planar, shiftX, outBytes),
                   shiftX ? 2u : 1u,
                   1,
                   true,
                   planar ? strides({{"srcYStride", true}, {"srcCbStride", true}, {"srcCrStride", true},
                                     {"dstStride", true}})
                          : strides({{"srcYStride", true}, {"srcCStride", true}, {"dstStride", true}}),
                   yccToRgbBuffers(planar, shiftX, shiftY, outBytes),
                   {},
                   {{}},
                   {},
                   invoke};
  if (shiftX) info.fatalBelowMinWidth = "length > 1";
  return info;
}

#define OVK_YCC_MEMBER(Sampling, Layout, Output, ShiftX, ShiftY)                                               \
  yccMember("ovkColorYCbCr" #Sampling #Layout "ToRGB" #Output "u8", #Layout[1] == 'l', ShiftX, ShiftY,         \
            kOutBytes##Output, OVK_YCC_CALL_##Layout(ovkColorYCbCr##Sampling##Layout##ToRGB##Output##u8)),

std::vector<EntryInfo> yccToRgbEntries() {
  std::vector<EntryInfo> entries = {OVK_YCC_FAMILY(OVK_YCC_MEMBER)};
  for (EntryInfo& entry : entries)  // only this member refuses a single column at the entry
    if (entry.name == "ovkColorYCbCr422PseudoPlanarToRGB888u8") {
      entry.condition += " && srcWidth > 1";
      entry.fatalBelowMinWidth.clear();
    }
  const auto packed = [](std::string name, std::string source, BufferLayout layout, EntryInvoke invoke) {
    return EntryInfo{name, Family::kYccToRgb, source + " && dst && width && height", 1, 1, false, {}, layout, {},
                     {{}}, {}, invoke};
  };
  const std::vector<EntryInfo> others = {
      EntryInfo{"ovkColorYCrCb420PseudoPlanarToRGB8888u8", Family::kYccToRgb,
                "src && dst && srcWidth && srcHeight && srcYStride && srcCStride && dstStride", 1, 1, false,
                strides({{"srcYStride", false}, {"srcCStride", false}, {"dstStride", false}}), cameraFrame(4, true),
                {}, {{}}, {},
                OVK_VOID(ovkColorYCrCb420PseudoPlanarToRGB8888u8(u8(c, 0), c.width, c.height, c.stride(0),
                                                                  c.stride(1), out8(c, 1), c.stride(2)))},
      packed("ovkColorYUV420toRGB8888u8", "src", cameraFrame(4, false),
             OVK_VOID(ovkColorYUV420toRGB8888u8(u8(c, 0), c.width, c.height, out8(c, 1)))),
      packed("ovkColorYUV420toRGB565u8", "src", cameraFrame(2, false),
             OVK_VOID(ovkColorYUV420toRGB565u8(u8(c, 0), c.width, c.height, out8(c, 1)))),
      packed("ovkColorYUV420toRGB565u8Rotate180", "src", cameraFrame(2, false),
             OVK_VOID(ovkColorYUV420toRGB565u8Rotate180(u8(c, 0), c.width, c.height, out8(c, 1)))),
      packed("ovkColorYCrCbH1V1toRGB888u8", "src", blockOrdered(8, 8, 192),
             OVK_VOID(ovkColorYCrCbH1V1toRGB888u8(u8(c, 0), c.width, c.height, out8(c, 1)))),
      packed("ovkColorYCrCbH2V1toRGB888u8", "src", blockOrdered(16, 8, 256),
             OVK_VOID(ovkColorYCrCbH2V1toRGB888u8(u8(c, 0), c.width, c.height, out8(c, 1)))),
      packed("ovkColorYCrCbH1V2toRGB888u8", "ysrc", blockOrdered(8, 16, 256),
             OVK_VOID(ovkColorYCrCbH1V2toRGB888u8(u8(c, 0), c.width, c.height, out8(c, 1)))),
      packed("ovkColorYCrCbH2V2toRGB888u8", "y_src", blockOrdered(16, 16, 384),
             OVK_VOID(ovkColorYCrCbH2V2toRGB888u8(u8(c, 0), c.width, c.height, out8(c, 1)))),
  };
  entries.insert(entries.end(), others.begin(), others.end());
  return entries;
}

// ---- RGB to YCbCr and gray -------------------------------------------------------

std::string zeroOr(const std::string& stride, const std::string& minimum, const char* close = " )") {
  return "( " + stride + " == 0 || " + stride + " >= " + minimum + close;
}

std::string rgbToYccCondition(uint32_t inBytes, bool planar, bool subsampled) {
  const std::string source = "(srcWidth*" + std::to_string(inBytes) + ")";
  // The subsampled pseudo-planar texts close the source clause without a blank.
  std::string text = "src && dstY && " + std::string(planar ? "dstCb && dstCr" : "dstC") +
                     " && srcWidth && srcHeight && " +
                     zeroOr("srcStride", source, !planar && subsampled ? ")" : " )") + " && " +
                     zeroOr("dstYStride", "srcWidth") + " && ";
  if (planar) {
    const std::string chroma = subsampled ? "((srcWidth+1)/2)" : "srcWidth";
    return text + zeroOr("dstCbStride", chroma) + " && " + zeroOr("dstCrStride", chroma);
  }
  return text + zeroOr("dstCStride", subsampled ? "srcWidth" : "(srcWidth*2)");
}

#define OVK_RGB_CALL_Planar(Name)                                                                             \
  OVK_VOID(Name(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1), out8(c, 2), out8(c, 3), c.stride(1), \
                c.stride(2), c.stride(3)))
#define OVK_RGB_CALL_PseudoPlanar(Name) \
  OVK_VOID(Name(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1), out8(c, 2), c.stride(1), c.stride(2)))
#define OVK_RGB_STRIDES_Planar {{"srcStride", true}, {"dstYStride", true}, {"dstCbStride", true}, {"dstCrStride", true}}
#define OVK_RGB_STRIDES_PseudoPlanar {{"srcStride", true}, {"dstYStride", true}, {"dstCStride", true}}

#define OVK_RGB_MEMBER(Upper, InBytes, Sampling, Layout, ShiftX, ShiftY)                                       \
  EntryInfo{"ovkColor" #Upper "ToYCbCr" #Sampling #Layout "u8",                                              \
            Family::kRgbToYcc,                                                                               \
            rgbToYccCondition(InBytes, #Layout[1] == 'l', ShiftX),                                           \
            1,                                                                                               \
            1,                                                                                               \
            true,                                                                                            \
            strides(OVK_RGB_STRIDES_##Layout),                                                               \
            rgbToYccBuffers(InBytes, #Layout[1] == 'l', ShiftX, ShiftY),                                            \
            {},                                                                                              \
            {{}},                                                                                            \
            {},                                                                                              \
            OVK_RGB_CALL_##Layout(ovkColor##Upper##ToYCbCr##Sampling##Layout##u8)},
#define OVK_RGB_SOURCE(X, Upper, InBytes)                                                                      \
  X(Upper, InBytes, 444, Planar, 0, 0) X(Upper, InBytes, 422, Planar, 1, 0) X(Upper, InBytes, 420, Planar, 1, 1) \
  X(Upper, InBytes, 444, PseudoPlanar, 0, 0) X(Upper, InBytes, 422, PseudoPlanar, 1, 0)                         \
  X(Upper, InBytes, 420, PseudoPlanar, 1, 1)

std::vector<EntryInfo> rgbToYccEntries() {
  return {
      OVK_RGB_SOURCE(OVK_RGB_MEMBER, RGB565, 2) OVK_RGB_SOURCE(OVK_RGB_MEMBER, RGB888, 3)
          OVK_RGB_SOURCE(OVK_RGB_MEMBER, RGBA8888, 4)
      EntryInfo{"ovkColorRGB888toYCrCbu8", Family::kRgbToYcc, "src && dst && srcWidth && srcHeight", 1, 1, false,
                {}, sameSize(3, false), {}, {{}}, {},
                OVK_VOID(ovkColorRGB888toYCrCbu8(u8(c, 0), c.width, c.height, out8(c, 1)))},
      EntryInfo{"ovkColorRGB888toYCrCbu8_v2", Family::kRgbToYcc,
                "src && dst && srcWidth && srcHeight && (srcStride >= srcWidth * 3) && (dstStride >= srcWidth * 3)",
                1, 1, true, strides({{"srcStride", true}, {"dstStride", true}}), sameSize(3, true), {}, {{}}, {},
                OVK_VOID(ovkColorRGB888toYCrCbu8_v2(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1),
                                                    c.stride(1)))},
      EntryInfo{"ovkColorRGB888ToGrayu8", Family::kRgbToYcc,
                "src && srcWidth && srcHeight && (srcStride ==0 || srcStride >= srcWidth*3) && dst && (dstStride ==0 "
                "|| dstStride >= srcWidth)",
                1, 1, true, strides({{"srcStride", true}, {"dstStride", true}}),
                [](uint32_t w, uint32_t h) {
                  return std::vector<BufferInfo>{input("src", h, uint64_t(w) * 3, 0), output("dst", h, w, 1)};
                },
                {}, {{}}, {},
                OVK_VOID(ovkColorRGB888ToGrayu8(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1), c.stride(1)))},
  };
}

}  // namespace

// ---- Scaling ------------------------------------------------------------------------

// Destination sizes as functions of the source size, so that every shape of
// the harness has a destination: shrinking, growing and whole factors.
struct Ratio {
  uint32_t num, den, plus;  // size * num / den + plus, at least 1
  uint32_t operator()(uint32_t size) const { return std::max<uint32_t>(1, uint32_t(uint64_t(size) * num / den) + plus); }
};

// A whole factor of the size (3, 2 or 1), and 0 stays 1 so that a zero
// source size reaches the condition.
uint32_t wholeFactorOf(uint32_t size) {
  if (size == 0) return 1;
  return size / (size % 3 == 0 ? 3 : size % 2 == 0 ? 2 : 1);
}

BufferLayout resized(uint32_t (*dstWidth)(uint32_t), uint32_t (*dstHeight)(uint32_t), uint32_t pixelBytes,
                     int srcStride, int dstStride) {
  return [=](uint32_t w, uint32_t h) {
    return std::vector<BufferInfo>{input("src", h, uint64_t(w) * pixelBytes, srcStride),
                                   output("dst", dstHeight(h), uint64_t(dstWidth(w)) * pixelBytes, dstStride)};
  };
}

BufferLayout floatsHalved(bool strided) {
  return [=](uint32_t w, uint32_t h) {
    BufferInfo src = input("src", h, uint64_t(w) * 4, strided ? 0 : -1);
    src.content = Content::kFloats;
    BufferInfo dst = output("dst", h / 2, uint64_t(w / 2) * 4, strided ? 1 : -1);
    dst.content = Content::kFloats;
    return std::vector<BufferInfo>{src, dst};
  };
}

uint32_t half(uint32_t n) { return n / 2; }
uint32_t quarter(uint32_t n) { return n / 4; }
uint32_t twoThirdsOfBlocks(uint32_t n) { return n / 3 * 2; }
uint32_t twice(uint32_t n) { return uint32_t(uint64_t(n) * 2); }
uint32_t nnWidth(uint32_t n) { return Ratio{2, 3, 0}(n); }
uint32_t nnHeight(uint32_t n) { return Ratio{1, 2, 1}(n); }
uint32_t blWidth(uint32_t n) { return Ratio{3, 4, 0}(n); }
uint32_t blHeight(uint32_t n) { return Ratio{2, 3, 0}(n); }
uint32_t mnWidth(uint32_t n) { return Ratio{2, 5, 0}(n); }
uint32_t mnHeight(uint32_t n) { return Ratio{3, 4, 0}(n); }
uint32_t polyWidth(uint32_t n) { return Ratio{3, 2, 1}(n); }
uint32_t polyHeight(uint32_t n) { return Ratio{7, 4, 0}(n); }
uint32_t resizeWidth(uint32_t n) { return Ratio{3, 5, 1}(n); }

#define OVK_RESIZE_CALL(entry, dw, dh) \
  entry(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1), dw(c.width), dh(c.height), c.stride(1))

const std::vector<OptionInfo> kInterpolation = {{"interpolation", 0, 3}};

std::vector<EntryInfo> scaleEntries() {
  const auto silent = [](std::string name, uint32_t min, bool strided, BufferLayout layout, EntryInvoke invoke) {
    EntryInfo entry{name, Family::kScale, "", min, min, strided,
                    strided ? strides({{"srcStride", true}, {"dstStride", true}}) : std::vector<StrideInfo>{},
                    layout, {}, {{}}, {}, invoke};
    entry.refusal = -1;
    return entry;
  };
  const auto logged = [](std::string name, std::string condition, uint32_t minWidth, uint32_t minHeight,
                         bool strided, bool zeroIsPacked, BufferLayout layout, EntryInvoke invoke) {
    return EntryInfo{name, Family::kScale, condition, minWidth, minHeight, zeroIsPacked,
                     strided ? strides({{"srcStride", true}, {"dstStride", true}}) : std::vector<StrideInfo>{},
                     layout, {}, {{}}, {}, invoke};
  };
  const auto resize = [](std::string name, bool zeroIsPacked, EntryInvoke invoke) {
    EntryInfo entry{name, Family::kScale, "", 1, 1, zeroIsPacked,
                    strides({{"srcStride", true}, {"dstStride", true}}),
                    resized(resizeWidth, polyHeight, 1, 0, 1), kInterpolation, {{0}, {1}, {2}}, {{3}}, invoke};
    return entry;
  };
  // Sizes that are not multiples of `n` are refused.
  const auto multiplesOf = [](uint32_t n, EntryInfo entry) {
    entry.sizeStep = n;
    return entry;
  };
  // A null dst, which the condition does not name, is refused on its own line.
  const auto dstCheckedApart = [](EntryInfo entry) {
    entry.extraCondition = "dst";
    return entry;
  };
  // Sizes the entry cannot divide are refused with "Error at" first.
  const auto divisionChecked = [](EntryInfo entry) {
    entry.sizePrecheck = true;
    return entry;
  };
  const std::string mn =
      "src && dst && srcWidth && srcHeight && dstWidth && dstHeight && (srcStride==0 || srcStride >=srcWidth) && "
      "(dstStride == 0 || dstStride >= dstWidth) && dstWidth * 20 > srcWidth && dstHeight * 20 > srcHeight";
  std::vector<EntryInfo> entries = {
      multiplesOf(2, silent("ovkScaleDownBy2u8", 2, false, resized(half, half, 1, -1, -1),
             OVK_STATUS(ovkScaleDownBy2u8(u8(c, 0), c.width, c.height, out8(c, 1))))),
      multiplesOf(2, silent("ovkScaleDownBy2u8_v2", 2, true, resized(half, half, 1, 0, 1),
             OVK_STATUS(ovkScaleDownBy2u8_v2(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1), c.stride(1))))),
      multiplesOf(4, silent("ovkScaleDownBy4u8", 4, false, resized(quarter, quarter, 1, -1, -1),
             OVK_STATUS(ovkScaleDownBy4u8(u8(c, 0), c.width, c.height, out8(c, 1))))),
      multiplesOf(4, silent("ovkScaleDownBy4u8_v2", 4, true, resized(quarter, quarter, 1, 0, 1),
             OVK_STATUS(ovkScaleDownBy4u8_v2(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1), c.stride(1))))),
      silent("ovkScaleDown3To2u8", 1, true, resized(twoThirdsOfBlocks, twoThirdsOfBlocks, 1, 0, 1),
             OVK_STATUS(ovkScaleDown3To2u8(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1), c.stride(1)))),
      silent("ovkScaleDownNNu8", 1, true, resized(nnWidth, nnHeight, 1, 0, 1),
             OVK_STATUS(OVK_RESIZE_CALL(ovkScaleDownNNu8, nnWidth, nnHeight))),
      divisionChecked(logged("ovkScaleDownu8",
             "src && dst && width && height && dstWidth && dstHeight && width >= dstWidth && height >= dstHeight", 1, 1,
             false, false, resized(wholeFactorOf, wholeFactorOf, 1, -1, -1),
             OVK_VOID(ovkScaleDownu8(u8(c, 0), c.width, c.height, out8(c, 1), wholeFactorOf(c.width),
                                     wholeFactorOf(c.height))))),
      divisionChecked(logged("ovkScaleDownu8_v2",
             "src && dst && srcWidth && srcHeight && (srcStride >= srcWidth) && dstWidth && dstHeight && (dstStride >= "
             "dstWidth) && srcWidth >= dstWidth && srcHeight >= dstHeight",
             1, 1, true, false, resized(wholeFactorOf, wholeFactorOf, 1, 0, 1),
             OVK_VOID(OVK_RESIZE_CALL(ovkScaleDownu8_v2, wholeFactorOf, wholeFactorOf)))),
      logged("ovkScaleDownBLu8",
             "src && srcWidth && srcHeight && (srcStride >= srcWidth) && dst && dstWidth && dstHeight && (dstStride >= "
             "dstWidth)",
             1, 1, true, false, resized(blWidth, blHeight, 1, 0, 1),
             OVK_VOID(OVK_RESIZE_CALL(ovkScaleDownBLu8, blWidth, blHeight))),
      logged("ovkScaleDownMNu8", mn, 1, 1, true, true, resized(mnWidth, mnHeight, 1, 0, 1),
             OVK_VOID(OVK_RESIZE_CALL(ovkScaleDownMNu8, mnWidth, mnHeight))),
      logged("ovkScaleDownMNInterleaveu8",
             "src && dst && srcWidth && srcHeight && dstWidth && dstHeight && (srcStride==0 || srcStride >=srcWidth*2) "
             "&& (dstStride == 0 || dstStride >= dstWidth*2) && dstWidth * 20 > srcWidth && dstHeight * 20 > srcHeight",
             1, 1, true, true, resized(mnWidth, mnHeight, 2, 0, 1),
             OVK_VOID(OVK_RESIZE_CALL(ovkScaleDownMNInterleaveu8, mnWidth, mnHeight))),
      divisionChecked(multiplesOf(2, logged("ovkScaleDownBy2Gaussian5x5u8",
             "src && dst && width && height && ((width & 1) == 0 ) && ((height & 1) == 0)", 2, 2, false, false,
             resized(half, half, 1, -1, -1),
             OVK_VOID(ovkScaleDownBy2Gaussian5x5u8(u8(c, 0), c.width, c.height, out8(c, 1)))))),
      logged("ovkScaleDownBy2Gaussian5x5u8_v2",
             "src && dst && srcWidth && srcHeight && (srcStride >= srcWidth) && (dstStride >= srcWidth/2)", 1, 1, true,
             true, resized(half, half, 1, 0, 1),
             OVK_VOID(ovkScaleDownBy2Gaussian5x5u8_v2(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1),
                                                      c.stride(1)))),
      logged("ovkScaleDownBy2Gaussian3x3u8",
             "src && dst && srcWidth > 1 && srcHeight > 1 && (srcStride >= srcWidth) && (dstStride >= srcWidth/2)", 2,
             2, true, true, resized(half, half, 1, 0, 1),
             OVK_VOID(ovkScaleDownBy2Gaussian3x3u8(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1),
                                                   c.stride(1)))),
      logged("ovkScaleUpBy2Gaussian5x5u8", "src && dst && width && height", 1, 1, false, false,
             resized(twice, twice, 1, -1, -1),
             OVK_VOID(ovkScaleUpBy2Gaussian5x5u8(u8(c, 0), c.width, c.height, out8(c, 1)))),
      logged("ovkScaleUpBy2Gaussian5x5u8_v2",
             "src && dst && srcWidth && srcHeight && (srcStride >= srcWidth) && (dstStride >= srcWidth*2)", 1, 1, true,
             true, resized(twice, twice, 1, 0, 1),
             OVK_VOID(ovkScaleUpBy2Gaussian5x5u8_v2(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1),
                                                    c.stride(1)))),
      dstCheckedApart(multiplesOf(2, logged("ovkScaleDownBy2Gaussian5x5f32",
             "srcImg && width && height && ((width & 1) == 0 ) && ((height & 1) == 0)", 2, 2, false, false,
             floatsHalved(false),
             OVK_VOID(ovkScaleDownBy2Gaussian5x5f32(c.in<float>(0), c.width, c.height, c.out<float>(1)))))),
      multiplesOf(2, logged("ovkScaleDownBy2Gaussian5x5f32_v2",
             "src && dst && srcWidth && srcHeight && ((srcWidth & 1) == 0 ) && ((srcHeight & 1) == 0) && (srcStride "
             ">= srcWidth*4) && (dstStride >= srcWidth*2)",
             2, 2, true, true, floatsHalved(true),
             OVK_VOID(ovkScaleDownBy2Gaussian5x5f32_v2(c.in<float>(0), c.width, c.height, c.stride(0),
                                                       c.out<float>(1), c.stride(1))))),
      logged("ovkScaleUpPolyu8",
             "src && dst && srcWidth && srcHeight && (srcStride == 0 || srcStride >= srcWidth) && dstWidth && "
             "dstHeight && (dstStride == 0 || dstStride >= dstWidth)",
             1, 1, true, true, resized(polyWidth, polyHeight, 1, 0, 1),
             OVK_VOID(OVK_RESIZE_CALL(ovkScaleUpPolyu8, polyWidth, polyHeight))),
      logged("ovkScaleUpPolyInterleaveu8",
             "src && dst && srcWidth && srcHeight && dstWidth && dstHeight && (srcStride==0 || srcStride >=srcWidth*2) "
             "&& (dstStride == 0 || dstStride >= dstWidth*2)",
             1, 1, true, true, resized(polyWidth, polyHeight, 2, 0, 1),
             OVK_VOID(OVK_RESIZE_CALL(ovkScaleUpPolyInterleaveu8, polyWidth, polyHeight))),
      resize("ovkScaleu8", false,
             OVK_STATUS(ovkScaleu8(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1), resizeWidth(c.width),
                                   polyHeight(c.height), c.stride(1), uint32_t(c.options[0])))),
      resize("ovkScaleu8_v2", true,
             OVK_STATUS(ovkScaleu8_v2(u8(c, 0), c.width, c.height, c.stride(0), out8(c, 1), resizeWidth(c.width),
                                      polyHeight(c.height), c.stride(1), uint32_t(c.options[0])))),
  };
  return entries;
}

const std::vector<EntryInfo>& entryTable() {
  static const std::vector<EntryInfo> table = [] {
    std::vector<EntryInfo> all;
    for (auto family : {filterEntries(), gradientEntries(), yccToRgbEntries(), rgbToYccEntries(), scaleEntries()})
      all.insert(all.end(), family.begin(), family.end());
    return all;
  }();
  return table;
}
