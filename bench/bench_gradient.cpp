// Throughput of the 3x3 gradients: Sobel s16 interleaved and planar, the
// Sobel magnitude and Scharr, portable and vector kernels called directly,
// with OpenCV's spatialGradient, Sobel and Scharr beside them.
#include "cpu/orvikTable.h"
#include "support/plane_bench.h"

namespace {

// Kernels writing two 16-bit values per pixel into the packed destination.
template <class Fn>
std::vector<Variant> interleavedVariants(Fn portable, Fn vector) {
  const auto variant = [](const char* name, Fn kernel) {
    return Variant{name, [kernel](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
                     kernel(src, width, height, width, reinterpret_cast<int16_t*>(dst), (width - 2) * 4);
                   }};
  };
  return {variant("portable", portable), variant("vector", vector)};
}

template <class Fn>
std::vector<Variant> planarVariants(Fn portable, Fn vector) {
  const auto variant = [](const char* name, Fn kernel) {
    return Variant{name, [kernel](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
                     auto* dx = reinterpret_cast<int16_t*>(dst);
                     kernel(src, width, height, width, dx, dx + size_t(width) * height, width * 2);
                   }};
  };
  return {variant("portable", portable), variant("vector", vector)};
}

#ifdef ORVIK_BENCH_OPENCV
// Two 16-bit planes in the destination, as OpenCV writes them.
Variant opencvGradients(const char* name, std::function<void(const cv::Mat&, cv::Mat&, cv::Mat&)> gradients) {
  return {name, [gradients](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
            const cv::Mat in(int(height), int(width), CV_8UC1, const_cast<uint8_t*>(src));
            cv::Mat dx(int(height), int(width), CV_16SC1, dst);
            cv::Mat dy(int(height), int(width), CV_16SC1, dst + size_t(width) * height * 2);
            gradients(in, dx, dy);
          }};
}
#endif

void registerGradients() {
  auto sobel =
      interleavedVariants(ovkImageGradientSobelInterleaveds16_v3C, ovkVectorImageGradientSobelInterleaveds16_v3());
  auto sobelPlanar = planarVariants(ovkImageGradientSobelPlanars16C, ovkVectorImageGradientSobelPlanars16());
  auto scharr =
      interleavedVariants(ovkImageGradientScharrInterleaveds16C, ovkVectorImageGradientScharrInterleaveds16());
  const ovkFilterSobel3x3u8Fn magnitudeVector = ovkVectorFilterSobel3x3u8();
  std::vector<Variant> magnitude = {
      {"portable", [](const uint8_t* src, uint8_t* dst, uint32_t width,
                      uint32_t height) { ovkFilterSobel3x3u8C(src, width, height, width, dst, width); }},
      {"vector", [magnitudeVector](const uint8_t* src, uint8_t* dst, uint32_t width,
                                   uint32_t height) { magnitudeVector(src, width, height, width, dst, width); }},
  };
#ifdef ORVIK_BENCH_OPENCV
  const Variant spatialGradient =
      opencvGradients("opencv", [](const cv::Mat& src, cv::Mat& dx, cv::Mat& dy) { cv::spatialGradient(src, dx, dy); });
  sobel.push_back(spatialGradient);
  sobelPlanar.push_back(spatialGradient);
  sobelPlanar.push_back(opencvGradients("opencv_sobel", [](const cv::Mat& src, cv::Mat& dx, cv::Mat& dy) {
    cv::Sobel(src, dx, CV_16S, 1, 0);
    cv::Sobel(src, dy, CV_16S, 0, 1);
  }));
  scharr.push_back(opencvGradients("opencv", [](const cv::Mat& src, cv::Mat& dx, cv::Mat& dy) {
    cv::Scharr(src, dx, CV_16S, 1, 0);
    cv::Scharr(src, dy, CV_16S, 0, 1);
  }));
  // |dx| + |dy| saturated, from OpenCV's own pieces.
  magnitude.push_back(opencvVariant([](const cv::Mat& src, cv::Mat& dst) {
    cv::Mat dx, dy;
    cv::spatialGradient(src, dx, dy);
    cv::Mat sum = cv::abs(dx) + cv::abs(dy);
    sum.convertTo(dst, CV_8U);
  }));
#endif
  // Thresholds on the L1 magnitude of the unscaled Sobel gradients, as
  // OpenCV's Canny uses them with L2gradient off.
  constexpr int kLow = 100, kHigh = 250;
  const ovkFilterCanny3x3u8Fn cannyVector = ovkVectorFilterCanny3x3u8();
  std::vector<Variant> canny = {
      {"portable", [](const uint8_t* src, uint8_t* dst, uint32_t width,
                      uint32_t height) { ovkFilterCanny3x3u8C(src, width, height, width, dst, width, kLow, kHigh); }},
      {"vector", [cannyVector](const uint8_t* src, uint8_t* dst, uint32_t width,
                               uint32_t height) { cannyVector(src, width, height, width, dst, width, kLow, kHigh); }},
  };
#ifdef ORVIK_BENCH_OPENCV
  canny.push_back(opencvVariant([](const cv::Mat& src, cv::Mat& dst) { cv::Canny(src, dst, kLow, kHigh, 3, false); }));
#endif
  registerFilter("canny", canny);
  registerConversion("sobel_s16_interleaved", sobel, 1, 4);
  registerConversion("sobel_s16_planar", sobelPlanar, 1, 4);
  registerConversion("scharr", scharr, 1, 4);
  registerFilter("sobel_magnitude", magnitude);
}

}  // namespace

int main(int argc, char** argv) { return runBenchmarks(argc, argv, registerGradients); }
