// Throughput of the box filters in Mpixel/s: portable and vector kernels
// called directly, and OpenCV's cv::blur on one thread when it is available.
// Names read filter/variant/WIDTHxHEIGHT.
#include <benchmark/benchmark.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "cpu/orvikTable.h"

#ifdef ORVIK_BENCH_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace {

struct FrameSize {
  uint32_t width;
  uint32_t height;
};

const FrameSize kFrameSizes[] = {{640, 480}, {1920, 1080}};

using PlaneKernel = std::function<void(const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height)>;

struct Variant {
  const char* name;
  PlaneKernel kernel;
};

std::vector<uint8_t> randomPlane(size_t pixels) {
  std::mt19937 generator(2024);
  std::uniform_int_distribution<int> value(0, 255);
  std::vector<uint8_t> plane(pixels);
  for (uint8_t& pixel : plane) pixel = uint8_t(value(generator));
  return plane;
}

void runPlaneKernel(benchmark::State& state, const PlaneKernel& kernel, FrameSize size) {
  const std::vector<uint8_t> src = randomPlane(size_t(size.width) * size.height);
  std::vector<uint8_t> dst(src.size());
  for (auto _ : state) {
    kernel(src.data(), dst.data(), size.width, size.height);
    benchmark::DoNotOptimize(dst.data());
    benchmark::ClobberMemory();
  }
  const double megapixels = double(size.width) * size.height / 1e6;
  state.counters["Mpix/s"] = benchmark::Counter(megapixels, benchmark::Counter::kIsIterationInvariantRate);
}

void registerFilter(const std::string& filter, const std::vector<Variant>& variants) {
  for (const FrameSize& size : kFrameSizes) {
    const std::string sizeName = std::to_string(size.width) + "x" + std::to_string(size.height);
    for (const Variant& variant : variants)
      benchmark::RegisterBenchmark((filter + "/" + variant.name + "/" + sizeName).c_str(), runPlaneKernel,
                                   variant.kernel, size);
  }
}

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
  variants.push_back({"opencv", [size](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
                        const cv::Mat in(int(height), int(width), CV_8UC1, const_cast<uint8_t*>(src));
                        cv::Mat out(int(height), int(width), CV_8UC1, dst);
                        cv::blur(in, out, cv::Size(size, size));
                      }});
#else
  (void)size;
#endif
  registerFilter(filter, variants);
}

}  // namespace

int main(int argc, char** argv) {
  ovkPelarSelectTarget();
  ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE);
  benchmark::AddCustomContext("highway_target", ovkPelarTargetName());
#ifdef ORVIK_BENCH_OPENCV
  cv::setNumThreads(1);
  benchmark::AddCustomContext("opencv", cv::getVersionString());
#endif
  registerBox("box3x3", ovkBoxFilter3x3u8C, ovkVectorBoxFilter3x3u8(), 3);
  registerBox("box5x5", ovkBoxFilter5x5u8C, ovkVectorBoxFilter5x5u8(), 5);
  registerBox("box11x11", ovkBoxFilter11x11u8C, ovkVectorBoxFilter11x11u8(), 11);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
