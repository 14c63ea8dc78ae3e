// Throughput of the 3x3 Gaussian: the portable and the vector kernel called
// directly, the public entry, and OpenCV.
#include <benchmark/benchmark.h>

#include "cpu/orvikTable.h"
#include "support/plane_bench.h"

namespace {

void registerGaussian3x3() {
  const ovkFilterGaussian3x3u8Fn vectorKernel = ovkVectorFilterGaussian3x3u8();
  std::vector<Variant> variants = {
      {"portable",
       [](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
         ovkFilterGaussian3x3u8C(src, width, height, width, dst, width, 1);
       }},
      {"vector",
       [vectorKernel](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
         vectorKernel(src, width, height, width, dst, width, 1);
       }},
      {"api",
       [](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
         ovkFilterGaussian3x3u8_v2(src, width, height, 0, dst, 0, 1);
       }},
  };
#ifdef ORVIK_BENCH_OPENCV
  // OpenCV reflects at the border instead of renormalising; the cost is alike.
  variants.push_back(opencvVariant([](const cv::Mat& src, cv::Mat& dst) {
    cv::GaussianBlur(src, dst, cv::Size(3, 3), 0, 0, cv::BORDER_DEFAULT);
  }));
#endif
  registerFilter("gaussian3x3", variants);
  benchmark::AddCustomContext("api_implementation",
                              ovkImplChar[ovkImplTable[ovkEntry::FilterGaussian3x3u8_v2::selector]]);
}

}  // namespace

int main(int argc, char** argv) { return runBenchmarks(argc, argv, registerGaussian3x3); }
