// Throughput of the 5x5 and 11x11 Gaussians (8-bit, and 5x5 16/32-bit) in
// Mpixel/s: the portable and the vector kernel called directly, and OpenCV on
// one thread when it is available.  Names read filter/variant/WIDTHxHEIGHT.
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

// Filters a packed 8-bit plane from src into dst.
using PlaneKernel = std::function<void(const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height)>;

struct Variant {
  const char* name;
  PlaneKernel kernel;
};

// Random contents keep data-dependent shortcuts from flattering a kernel.
std::vector<uint8_t> randomPlane(size_t pixels) {
  std::mt19937 generator(2024);
  std::uniform_int_distribution<int> value(0, 255);
  std::vector<uint8_t> plane(pixels);
  for (uint8_t& pixel : plane) pixel = uint8_t(value(generator));
  return plane;
}

void runPlaneKernel(benchmark::State& state, const PlaneKernel& kernel, FrameSize size, size_t bytesPerPixel) {
  const std::vector<uint8_t> src = randomPlane(size_t(size.width) * size.height * bytesPerPixel);
  std::vector<uint8_t> dst(src.size());
  for (auto _ : state) {
    kernel(src.data(), dst.data(), size.width, size.height);
    benchmark::DoNotOptimize(dst.data());
    benchmark::ClobberMemory();
  }
  const double megapixels = double(size.width) * size.height / 1e6;
  state.counters["Mpix/s"] = benchmark::Counter(megapixels, benchmark::Counter::kIsIterationInvariantRate);
}

// Random bytes make random signed pixels too.
void registerFilter(const std::string& filter, const std::vector<Variant>& variants, size_t bytesPerPixel = 1) {
  for (const FrameSize& size : kFrameSizes) {
    const std::string sizeName = std::to_string(size.width) + "x" + std::to_string(size.height);
    for (const Variant& variant : variants)
      benchmark::RegisterBenchmark((filter + "/" + variant.name + "/" + sizeName).c_str(), runPlaneKernel,
                                   variant.kernel, size, bytesPerPixel);
  }
}

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

#ifdef ORVIK_BENCH_OPENCV
// OpenCV reflects at the border instead of renormalising; the cost is alike.
Variant opencvVariant(int kernelSize, int type = CV_8UC1) {
  return {"opencv", [kernelSize, type](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
            const cv::Mat in(int(height), int(width), type, const_cast<uint8_t*>(src));
            cv::Mat out(int(height), int(width), type, dst);
            cv::GaussianBlur(in, out, cv::Size(kernelSize, kernelSize), 0, 0, cv::BORDER_DEFAULT);
          }};
}
#endif

void registerGaussians() {
  std::vector<Variant> gaussian5x5 = orvikVariants(ovkFilterGaussian5x5u8C, ovkVectorFilterGaussian5x5u8());
  std::vector<Variant> gaussian11x11 = orvikVariants(ovkFilterGaussian11x11u8C, ovkVectorFilterGaussian11x11u8());
#ifdef ORVIK_BENCH_OPENCV
  gaussian5x5.push_back(opencvVariant(5));
  gaussian11x11.push_back(opencvVariant(11));
#endif
  registerFilter("gaussian5x5", gaussian5x5);
  registerFilter("gaussian11x11", gaussian11x11);

  std::vector<Variant> gaussian5x5s16 =
      signedVariants<int16_t>(ovkFilterGaussian5x5s16C, ovkVectorFilterGaussian5x5s16());
#ifdef ORVIK_BENCH_OPENCV
  gaussian5x5s16.push_back(opencvVariant(5, CV_16SC1));
#endif
  registerFilter("gaussian5x5s16", gaussian5x5s16, sizeof(int16_t));
  registerFilter("gaussian5x5s32", signedVariants<int32_t>(ovkFilterGaussian5x5s32C, ovkVectorFilterGaussian5x5s32()),
                 sizeof(int32_t));
}

}  // namespace

int main(int argc, char** argv) {
  ovkPelarSelectTarget();
  benchmark::AddCustomContext("highway_target", ovkPelarTargetName());
#ifdef ORVIK_BENCH_OPENCV
  cv::setNumThreads(1);
  benchmark::AddCustomContext("opencv", cv::getVersionString());
#endif
  registerGaussians();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
