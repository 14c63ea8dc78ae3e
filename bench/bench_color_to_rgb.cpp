// Throughput of the YCbCr to RGB conversions on 4:2:0 frames: portable and
// vector kernels called directly, beside OpenCV's cv::cvtColor and libyuv.
// The peers' channel orders differ from ours in places; the work is the same.
#include "cpu/orvikTable.h"
#include "support/plane_bench.h"

#ifdef ORVIK_BENCH_LIBYUV
#include <libyuv.h>
#endif

namespace {

// Plane pointers of a packed 4:2:0 frame: luma, then chroma.
struct Planes420 {
  const uint8_t* y;
  const uint8_t* chroma;
  const uint8_t* cb;  // planar: Cb plane of (width / 2) x (height / 2), then Cr
  const uint8_t* cr;

  Planes420(const uint8_t* src, uint32_t width, uint32_t height)
      : y(src), chroma(src + size_t(width) * height), cb(chroma), cr(chroma + size_t(width / 2) * (height / 2)) {}
};

#ifdef ORVIK_BENCH_OPENCV
// The frame as OpenCV's single-channel (height * 3 / 2) x width image.
Variant opencvYuv420(int code, int dstType) {
  return {"opencv", [code, dstType](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
            const cv::Mat in(int(height * 3 / 2), int(width), CV_8UC1, const_cast<uint8_t*>(src));
            cv::Mat out(int(height), int(width), dstType, dst);
            cv::cvtColor(in, out, code);
          }};
}
#endif

void registerNv21ToRgba() {
  const ovkColorYCrCb420PseudoPlanarToRGB8888u8Fn vectorKernel = ovkVectorColorYCrCb420PseudoPlanarToRGB8888u8();
  std::vector<Variant> variants = {
      {"portable",
       [](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
         ovkColorYCrCb420PseudoPlanarToRGB8888u8C(src, width, height, width, width, dst, width * 4);
       }},
      {"vector", [vectorKernel](const uint8_t* src, uint8_t* dst, uint32_t width,
                                uint32_t height) { vectorKernel(src, width, height, width, width, dst, width * 4); }},
  };
#ifdef ORVIK_BENCH_OPENCV
  variants.push_back(opencvYuv420(cv::COLOR_YUV2RGBA_NV21, CV_8UC4));
#endif
#ifdef ORVIK_BENCH_LIBYUV
  variants.push_back({"libyuv", [](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
                        const Planes420 p(src, width, height);
                        libyuv::NV21ToARGB(p.y, int(width), p.chroma, int(width), dst, int(width * 4), int(width),
                                           int(height));
                      }});
#endif
  registerConversion("nv21_to_rgba", variants, 1.5, 4);
}

void registerI420ToRgb888() {
  const ovkColorYCbCr420PlanarToRGB888u8Fn vectorKernel = ovkVectorColorYCbCr420PlanarToRGB888u8();
  const auto run = [](ovkColorYCbCr420PlanarToRGB888u8Fn kernel) {
    return [kernel](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
      const Planes420 p(src, width, height);
      kernel(p.y, p.cb, p.cr, width, height, width, width / 2, width / 2, dst, width * 3);
    };
  };
  std::vector<Variant> variants = {{"portable", run(ovkColorYCbCr420PlanarToRGB888u8C)}, {"vector", run(vectorKernel)}};
#ifdef ORVIK_BENCH_OPENCV
  variants.push_back(opencvYuv420(cv::COLOR_YUV2RGB_I420, CV_8UC3));
#endif
#ifdef ORVIK_BENCH_LIBYUV
  variants.push_back({"libyuv", [](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
                        const Planes420 p(src, width, height);
                        libyuv::I420ToRGB24(p.y, int(width), p.cb, int(width / 2), p.cr, int(width / 2), dst,
                                            int(width * 3), int(width), int(height));
                      }});
#endif
  registerConversion("i420_to_rgb888", variants, 1.5, 3);
}

void registerNv12ToRgb888() {
  const ovkColorYCbCr420PseudoPlanarToRGB888u8Fn vectorKernel = ovkVectorColorYCbCr420PseudoPlanarToRGB888u8();
  const auto run = [](ovkColorYCbCr420PseudoPlanarToRGB888u8Fn kernel) {
    return [kernel](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
      const Planes420 p(src, width, height);
      kernel(p.y, p.chroma, width, height, width, width, dst, width * 3);
    };
  };
  std::vector<Variant> variants = {{"portable", run(ovkColorYCbCr420PseudoPlanarToRGB888u8C)},
                                   {"vector", run(vectorKernel)}};
#ifdef ORVIK_BENCH_OPENCV
  variants.push_back(opencvYuv420(cv::COLOR_YUV2RGB_NV12, CV_8UC3));
#endif
#ifdef ORVIK_BENCH_LIBYUV
  variants.push_back({"libyuv", [](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
                        const Planes420 p(src, width, height);
                        libyuv::NV12ToRGB24(p.y, int(width), p.chroma, int(width), dst, int(width * 3), int(width),
                                            int(height));
                      }});
#endif
  registerConversion("nv12_to_rgb888", variants, 1.5, 3);
}

// OpenCV has no direct 4:2:0 to RGB565 conversion.
void registerYuv420ToRgb565() {
  const ovkColorYUV420toRGB565u8Fn vectorKernel = ovkVectorColorYUV420toRGB565u8();
  const auto run = [](ovkColorYUV420toRGB565u8Fn kernel) {
    return [kernel](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
      kernel(src, width, height, dst);
    };
  };
  std::vector<Variant> variants = {{"portable", run(ovkColorYUV420toRGB565u8C)}, {"vector", run(vectorKernel)}};
#ifdef ORVIK_BENCH_LIBYUV
  variants.push_back({"libyuv", [](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
                        const Planes420 p(src, width, height);
                        libyuv::NV12ToRGB565(p.y, int(width), p.chroma, int(width), dst, int(width * 2), int(width),
                                             int(height));
                      }});
#endif
  registerConversion("yuv420_to_rgb565", variants, 1.5, 2);
}

void registerAll() {
  registerNv21ToRgba();
  registerI420ToRgb888();
  registerNv12ToRgb888();
  registerYuv420ToRgb565();
}

}  // namespace

int main(int argc, char** argv) { return runBenchmarks(argc, argv, registerAll); }
