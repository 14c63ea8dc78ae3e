// Throughput of the 3x3 median: portable and vector kernels called directly,
// and OpenCV's cv::medianBlur.
#include "cpu/orvikTable.h"
#include "support/plane_bench.h"

namespace {

void registerMedian() {
  const ovkFilterMedian3x3u8Fn vectorKernel = ovkVectorFilterMedian3x3u8();
  std::vector<Variant> variants = {
      {"portable",
       [](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
         ovkFilterMedian3x3u8C(src, width, height, width, dst, width);
       }},
      {"vector",
       [vectorKernel](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
         vectorKernel(src, width, height, width, dst, width);
       }},
  };
#ifdef ORVIK_BENCH_OPENCV
  // OpenCV also fills the border by replication, which ours leaves alone.
  variants.push_back(opencvVariant([](const cv::Mat& src, cv::Mat& dst) { cv::medianBlur(src, dst, 3); }));
#endif
  registerFilter("median3x3", variants);
}

}  // namespace

int main(int argc, char** argv) { return runBenchmarks(argc, argv, registerMedian); }
