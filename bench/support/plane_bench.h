// The harness every filter benchmark shares: random planes at 640x480 and
// 1920x1080, Mpixel/s (of the source frame) and bytes read and written,
// names filter/variant/WIDTHxHEIGHT, and OpenCV on one thread beside our
// kernels when it is available.
#ifndef ORVIK_BENCH_PLANE_BENCH_H
#define ORVIK_BENCH_PLANE_BENCH_H

#include <stddef.h>
#include <stdint.h>

#include <functional>
#include <string>
#include <vector>

#ifdef ORVIK_BENCH_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

// Filters a packed plane (pixels of any size) from src into dst.
using PlaneKernel = std::function<void(const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height)>;

struct Variant {
  std::string name;
  PlaneKernel kernel;
};

// Registers every variant at both frame sizes.
void registerFilter(const std::string& filter, const std::vector<Variant>& variants, size_t bytesPerPixel = 1);

// The same for kernels whose source and destination differ in layout, such
// as colour conversions: a frame of width x height pixels takes
// srcBytesPerPixel bytes per pixel in the source (1.5 for 4:2:0 YCbCr) and
// dstBytesPerPixel in the destination.  Kernels get packed buffers and
// derive the plane pointers themselves.
void registerConversion(const std::string& conversion, const std::vector<Variant>& variants,
                        double srcBytesPerPixel, double dstBytesPerPixel);

#ifdef ORVIK_BENCH_OPENCV
// Wraps the planes in cv::Mat headers of `type`, without copying.
Variant opencvVariant(std::function<void(const cv::Mat& src, cv::Mat& dst)> filter, int type = CV_8UC1);
#endif

// Chooses the vector target, sets the CPU-performance mode, lets
// `registerAll` add the file's benchmarks and runs them.
int runBenchmarks(int argc, char** argv, void (*registerAll)());

#endif
