#include "support/plane_bench.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <random>

#include "cpu/orvikTable.h"

namespace {

struct FrameSize {
  uint32_t width;
  uint32_t height;
};

const FrameSize kFrameSizes[] = {{640, 480}, {1920, 1080}};

// Frames start on a cache line, as those of camera and image allocators do;
// otherwise every wide vector store would straddle two lines.
using Frame = std::unique_ptr<uint8_t[], decltype(&std::free)>;

Frame allocateFrame(size_t count) {
  constexpr size_t kLine = 64;
  return Frame(static_cast<uint8_t*>(std::aligned_alloc(kLine, (count + kLine - 1) / kLine * kLine)), &std::free);
}

// Random contents keep data-dependent shortcuts from flattering a kernel;
// random bytes make random signed pixels too.
Frame randomFrame(size_t count) {
  std::mt19937 generator(2024);
  std::uniform_int_distribution<int> value(0, 255);
  Frame frame = allocateFrame(count);
  for (size_t i = 0; i < count; ++i) frame[i] = uint8_t(value(generator));
  return frame;
}

// Bytes of a frame at `bytesPerPixel`, rounded up.
size_t frameBytes(FrameSize size, double bytesPerPixel) {
  return size_t(double(size.width) * size.height * bytesPerPixel + 0.999);
}

void runPlaneKernel(benchmark::State& state, const PlaneKernel& kernel, FrameSize size, double srcBytesPerPixel,
                    double dstBytesPerPixel) {
  const Frame src = randomFrame(frameBytes(size, srcBytesPerPixel));
  const Frame dst = allocateFrame(frameBytes(size, dstBytesPerPixel));
  for (auto _ : state) {
    kernel(src.get(), dst.get(), size.width, size.height);
    benchmark::DoNotOptimize(dst.get());
    benchmark::ClobberMemory();
  }
  const double megapixels = double(size.width) * size.height / 1e6;
  state.counters["Mpix/s"] = benchmark::Counter(megapixels, benchmark::Counter::kIsIterationInvariantRate);
  // Source and destination bytes, so kernels whose outputs differ in size
  // (and a copy of as many bytes) compare on one scale.
  const size_t bytes = frameBytes(size, srcBytesPerPixel) + frameBytes(size, dstBytesPerPixel);
  state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(bytes));
}

}  // namespace

void registerConversion(const std::string& conversion, const std::vector<Variant>& variants, double srcBytesPerPixel,
                        double dstBytesPerPixel) {
  for (const FrameSize& size : kFrameSizes) {
    const std::string sizeName = std::to_string(size.width) + "x" + std::to_string(size.height);
    for (const Variant& variant : variants)
      benchmark::RegisterBenchmark((conversion + "/" + variant.name + "/" + sizeName).c_str(), runPlaneKernel,
                                   variant.kernel, size, srcBytesPerPixel, dstBytesPerPixel);
  }
}

void registerFilter(const std::string& filter, const std::vector<Variant>& variants, size_t bytesPerPixel) {
  registerConversion(filter, variants, double(bytesPerPixel), double(bytesPerPixel));
}

#ifdef ORVIK_BENCH_OPENCV
Variant opencvVariant(std::function<void(const cv::Mat& src, cv::Mat& dst)> filter, int type) {
  return {"opencv", [filter, type](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
            const cv::Mat in(int(height), int(width), type, const_cast<uint8_t*>(src));
            cv::Mat out(int(height), int(width), type, dst);
            filter(in, out);
          }};
}
#endif

int runBenchmarks(int argc, char** argv, void (*registerAll)()) {
  ovkPelarSelectTarget();
  ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE);
  benchmark::AddCustomContext("highway_target", ovkPelarTargetName());
#ifdef ORVIK_BENCH_OPENCV
  cv::setNumThreads(1);
  benchmark::AddCustomContext("opencv", cv::getVersionString());
#endif
  registerAll();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
