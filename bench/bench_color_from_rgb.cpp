// Throughput of the RGB to 4:2:0 and gray conversions: the portable outer
// loops over portable or vector rows, the vector gray kernel, OpenCV's
// cv::cvtColor and libyuv.
#include "cpu/orvikTable.h"
#include "support/plane_bench.h"

#ifdef ORVIK_BENCH_LIBYUV
#include <libyuv.h>
#endif

namespace {

// The rows a 4:2:0 conversion runs on, stored into its slots before each
// frame: the library's mode decides them otherwise.
struct Rows420 {
  ovkRgbToYCbCrPlanarRowFn* planarSlot;
  ovkRgbToYCbCrPseudoPlanarRowFn* pseudoPlanarSlot;
  ovkRgbToLumaRowFn* lumaSlot;
  ovkRgbToYCbCrPlanarRowFn planar;
  ovkRgbToYCbCrPseudoPlanarRowFn pseudoPlanar;
  ovkRgbToLumaRowFn luma;
  void install() const {
    *planarSlot = planar;
    *pseudoPlanarSlot = pseudoPlanar;
    *lumaSlot = luma;
  }
};

// Portable and vector variants of one source format's planar and
// pseudo-planar 4:2:0 conversions.
void add420Variants(std::vector<Variant>& planar, std::vector<Variant>& pseudoPlanar, uint32_t bytesPerPixel,
                    ovkColorRGB888ToYCbCr420Planaru8Fn planarKernel,
                    ovkColorRGB888ToYCbCr420PseudoPlanaru8Fn pseudoPlanarKernel, const Rows420& portable,
                    const Rows420& vector) {
  for (const auto& variant : {std::make_pair("portable", portable), std::make_pair("vector", vector)}) {
    const char* name = variant.first;
    const Rows420 rows = variant.second;
    planar.push_back({name, [=](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
                        rows.install();
                        uint8_t* cb = dst + size_t(width) * height;
                        planarKernel(src, width, height, width * bytesPerPixel, dst, cb,
                                     cb + size_t(width / 2) * (height / 2), width, width / 2, width / 2);
                      }});
    pseudoPlanar.push_back({name, [=](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
                              rows.install();
                              pseudoPlanarKernel(src, width, height, width * bytesPerPixel, dst,
                                                 dst + size_t(width) * height, width, width);
                            }});
  }
}

#ifdef ORVIK_BENCH_OPENCV
// cv::cvtColor between packed pixels of `srcType` and a destination of
// `dstRows` x width bytes.
Variant opencvConversion(int code, int srcType, double dstRowsPerRow) {
  return {"opencv", [=](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
            const cv::Mat in(int(height), int(width), srcType, const_cast<uint8_t*>(src));
            cv::Mat out(int(height * dstRowsPerRow), int(width), CV_8UC1, dst);
            cv::cvtColor(in, out, code);
          }};
}
#endif

void registerColorFromRgb() {
  const Rows420 rgb888Portable{&rgb8882yyuvp_, &rgb8882yyuv_, &rgb8882y_, rgb8882yyuvpC, rgb8882yyuvC, rgb8882yC};
  const Rows420 rgb888Vector{&rgb8882yyuvp_,           &rgb8882yyuv_,           &rgb8882y_,
                             ovkVectorrgb8882yyuvp_(), ovkVectorrgb8882yyuv_(), ovkVectorrgb8882y_()};
  const Rows420 rgbaPortable{&rgba88882yyuvp_, &rgba88882yyuv_, &rgba88882y_,
                             rgba88882yyuvpC,  rgba88882yyuvC,  rgba88882yC};
  const Rows420 rgbaVector{&rgba88882yyuvp_,           &rgba88882yyuv_,           &rgba88882y_,
                           ovkVectorrgba88882yyuvp_(), ovkVectorrgba88882yyuv_(), ovkVectorrgba88882y_()};

  std::vector<Variant> rgb888Planar, rgb888PseudoPlanar, rgbaPlanar, rgbaPseudoPlanar;
  add420Variants(rgb888Planar, rgb888PseudoPlanar, 3, ovkColorRGB888ToYCbCr420Planaru8C,
                 ovkColorRGB888ToYCbCr420PseudoPlanaru8C, rgb888Portable, rgb888Vector);
  add420Variants(rgbaPlanar, rgbaPseudoPlanar, 4, ovkColorRGBA8888ToYCbCr420Planaru8C,
                 ovkColorRGBA8888ToYCbCr420PseudoPlanaru8C, rgbaPortable, rgbaVector);

  const ovkColorRGB888ToGrayu8Fn grayVector = ovkVectorColorRGB888ToGrayu8();
  std::vector<Variant> gray = {
      {"portable", [](const uint8_t* src, uint8_t* dst, uint32_t width,
                      uint32_t height) { ovkColorRGB888ToGrayu8C(src, width, height, width * 3, dst, width); }},
      {"vector", [grayVector](const uint8_t* src, uint8_t* dst, uint32_t width,
                              uint32_t height) { grayVector(src, width, height, width * 3, dst, width); }},
  };

  // The family reads byte 0 as blue, so the peers convert from BGR(A);
  // gray reads it as red.
#ifdef ORVIK_BENCH_OPENCV
  rgb888Planar.push_back(opencvConversion(cv::COLOR_BGR2YUV_I420, CV_8UC3, 1.5));
  rgbaPlanar.push_back(opencvConversion(cv::COLOR_BGRA2YUV_I420, CV_8UC4, 1.5));
  gray.push_back(opencvConversion(cv::COLOR_RGB2GRAY, CV_8UC3, 1));
#endif
#ifdef ORVIK_BENCH_LIBYUV
  rgb888Planar.push_back({"libyuv", [](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
                            uint8_t* cb = dst + size_t(width) * height;
                            uint8_t* cr = cb + size_t(width / 2) * (height / 2);
                            libyuv::RGB24ToI420(src, int(width * 3), dst, int(width), cb, int(width / 2), cr,
                                                int(width / 2), int(width), int(height));
                          }});
  rgbaPlanar.push_back({"libyuv", [](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
                          uint8_t* cb = dst + size_t(width) * height;
                          uint8_t* cr = cb + size_t(width / 2) * (height / 2);
                          libyuv::ARGBToI420(src, int(width * 4), dst, int(width), cb, int(width / 2), cr,
                                             int(width / 2), int(width), int(height));
                        }});
  rgbaPseudoPlanar.push_back({"libyuv", [](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
                                libyuv::ARGBToNV12(src, int(width * 4), dst, int(width), dst + size_t(width) * height,
                                                   int(width), int(width), int(height));
                              }});
  gray.push_back({"libyuv", [](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
                    libyuv::RAWToJ400(src, int(width * 3), dst, int(width), int(width), int(height));
                  }});
#endif
  registerConversion("rgb888_to_ycbcr420_planar", rgb888Planar, 3, 1.5);
  registerConversion("rgb888_to_ycbcr420_pseudoplanar", rgb888PseudoPlanar, 3, 1.5);
  registerConversion("rgba8888_to_ycbcr420_planar", rgbaPlanar, 4, 1.5);
  registerConversion("rgba8888_to_ycbcr420_pseudoplanar", rgbaPseudoPlanar, 4, 1.5);
  registerConversion("rgb888_to_gray", gray, 3, 1);
}

}  // namespace

int main(int argc, char** argv) { return runBenchmarks(argc, argv, registerColorFromRgb); }
