// Throughput of the 5x5 and 11x11 Gaussians (8-bit, and 5x5 16/32-bit): the
// portable and the vector kernel called directly, and OpenCV.
#include "cpu/orvikTable.h"
#include "support/plane_bench.h"

namespace {

#ifdef ORVIK_BENCH_OPENCV
// OpenCV reflects at the border instead of renormalising; the cost is alike.
Variant opencvGaussian(int kernelSize, int type = CV_8UC1) {
  return opencvVariant(
      [kernelSize](const cv::Mat& src, cv::Mat& dst) {
        cv::GaussianBlur(src, dst, cv::Size(kernelSize, kernelSize), 0, 0, cv::BORDER_DEFAULT);
      },
      type);
}
#endif

// Portable and vector kernel of one group, with the edge band.
std::vector<Variant> orvikVariants(ovkFilterGaussian5x5u8Fn portable, ovkFilterGaussian5x5u8Fn vector) {
  return {
      {"portable",
       [portable](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
         portable(src, width, height, width, dst, width, 1);
       }},
      {"vector",
       [vector](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
         vector(src, width, height, width, dst, width, 1);
       }},
  };
}

// The signed kernels, on planes of T with strides in bytes.
template <class T, class Fn>
std::vector<Variant> signedVariants(Fn portable, Fn vector) {
  const auto variant = [](const char* name, Fn kernel) {
    return Variant{name, [kernel](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
                     kernel(reinterpret_cast<const T*>(src), width, height, width * sizeof(T),
                            reinterpret_cast<T*>(dst), width * sizeof(T), 1);
                   }};
  };
  return {variant("portable", portable), variant("vector", vector)};
}

void registerGaussians() {
  std::vector<Variant> gaussian5x5 = orvikVariants(ovkFilterGaussian5x5u8C, ovkVectorFilterGaussian5x5u8());
  std::vector<Variant> gaussian11x11 = orvikVariants(ovkFilterGaussian11x11u8C, ovkVectorFilterGaussian11x11u8());
#ifdef ORVIK_BENCH_OPENCV
  gaussian5x5.push_back(opencvGaussian(5));
  gaussian11x11.push_back(opencvGaussian(11));
#endif
  registerFilter("gaussian5x5", gaussian5x5);
  registerFilter("gaussian11x11", gaussian11x11);

  std::vector<Variant> gaussian5x5s16 =
      signedVariants<int16_t>(ovkFilterGaussian5x5s16C, ovkVectorFilterGaussian5x5s16());
#ifdef ORVIK_BENCH_OPENCV
  gaussian5x5s16.push_back(opencvGaussian(5, CV_16SC1));
#endif
  registerFilter("gaussian5x5s16", gaussian5x5s16, sizeof(int16_t));
  registerFilter("gaussian5x5s32", signedVariants<int32_t>(ovkFilterGaussian5x5s32C, ovkVectorFilterGaussian5x5s32()),
                 sizeof(int32_t));
}

}  // namespace

int main(int argc, char** argv) { return runBenchmarks(argc, argv, registerGaussians); }
