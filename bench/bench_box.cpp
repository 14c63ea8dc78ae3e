// Throughput of the box filters: portable and vector kernels called
// directly, and OpenCV's cv::blur.
#include "cpu/orvikTable.h"
#include "support/plane_bench.h"

namespace {

// A strided box kernel on a packed plane.
PlaneKernel packed(ovkBoxFilter3x3u8Fn kernel) {
  return [kernel](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
    kernel(src, width, height, width, dst, width);
  };
}

void registerBox(const std::string& filter, ovkBoxFilter3x3u8Fn portable, ovkBoxFilter3x3u8Fn vector, int size) {
  std::vector<Variant> variants = {{"portable", packed(portable)}, {"vector", packed(vector)}};
#ifdef ORVIK_BENCH_OPENCV
  // OpenCV reflects at the border instead of filling zeros; the cost is alike.
  variants.push_back(
      opencvVariant([size](const cv::Mat& src, cv::Mat& dst) { cv::blur(src, dst, cv::Size(size, size)); }));
#else
  (void)size;
#endif
  registerFilter(filter, variants);
}

void registerBoxes() {
  registerBox("box3x3", ovkBoxFilter3x3u8C, ovkVectorBoxFilter3x3u8(), 3);
  registerBox("box5x5", ovkBoxFilter5x5u8C, ovkVectorBoxFilter5x5u8(), 5);
  registerBox("box11x11", ovkBoxFilter11x11u8C, ovkVectorBoxFilter11x11u8(), 11);
}

}  // namespace

int main(int argc, char** argv) { return runBenchmarks(argc, argv, registerBoxes); }
