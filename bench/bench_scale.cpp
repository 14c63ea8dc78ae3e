// Throughput of the scaling operations on 640x480 and 1920x1080 sources: each
// exported entry as users call it (CPU-performance mode, so a vector kernel
// wherever the group has one) and its portable kernel, beside libyuv's box
// ScalePlane, OpenCV's resize and pyramid steps, and a copy of as many bytes
// as the box reductions read and write.  Names are OPERATION_RATIO/variant/
// source size; bytes_per_second counts source and destination bytes.
#include <benchmark/benchmark.h>
#include <string.h>

#include <memory>
#include <vector>

#include "cpu/orvikTable.h"
#include "support/plane_bench.h"

#ifdef ORVIK_BENCH_LIBYUV
#include <libyuv.h>
#endif

namespace {

// Destination sides are the source sides times num / den, rounded down.
struct Ratio {
  uint32_t num;
  uint32_t den;

  uint32_t of(uint32_t side) const { return side * num / den; }
  double area() const { return double(num) * num / (double(den) * den); }
};

constexpr Ratio kHalf{1, 2}, kQuarter{1, 4}, kTwoThirds{2, 3}, kThreeSevenths{3, 7}, kDouble{2, 1},
    kThreeHalves{3, 2};

// A scaler between packed planes of the given sizes.
using ScaleKernel =
    std::function<void(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst, uint32_t dstWidth,
                       uint32_t dstHeight)>;

Variant scaled(const std::string& name, Ratio ratio, ScaleKernel kernel) {
  return {name, [ratio, kernel](const uint8_t* src, uint8_t* dst, uint32_t width, uint32_t height) {
            kernel(src, width, height, dst, ratio.of(width), ratio.of(height));
          }};
}

// Entries whose ratio is fixed: (src, width, height, srcStride, dst, dstStride).
template <class Fn>
ScaleKernel fixedRatio(Fn fn) {
  return [fn](const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst, uint32_t dstWidth, uint32_t) {
    fn(src, width, height, width, dst, dstWidth);
  };
}

// Entries given both sizes: (src, width, height, srcStride, dst, dstWidth,
// dstHeight, dstStride).
template <class Fn>
ScaleKernel sized(Fn fn) {
  return [fn](const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst, uint32_t dstWidth,
              uint32_t dstHeight) { fn(src, width, height, width, dst, dstWidth, dstHeight, dstWidth); };
}

ScaleKernel generalArea(ovkScaleu8Fn fn) {
  return [fn](const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst, uint32_t dstWidth,
              uint32_t dstHeight) {
    fn(src, width, height, width, dst, dstWidth, dstHeight, dstWidth, ORVIK_INTERPOLATION_AREA);
  };
}

// The entry users call and the portable kernel behind it; `prefix` tells
// entries apart where one benchmark has several.
template <class Fn>
void addOurs(std::vector<Variant>& variants, Ratio ratio, ScaleKernel (*adapt)(Fn), Fn exported, Fn portable,
             const std::string& prefix = "") {
  variants.push_back(scaled(prefix + "exported", ratio, adapt(exported)));
  variants.push_back(scaled(prefix + "portable", ratio, adapt(portable)));
}

void registerScale(const std::string& name, Ratio ratio, const std::vector<Variant>& variants) {
  registerConversion(name, variants, 1.0, ratio.area());
}

// As many bytes read and written as the scaler reads and writes: half of
// them copied from the source into a buffer kept across calls.
Variant copyOfSameBytes(Ratio ratio) {
  auto buffer = std::make_shared<std::vector<uint8_t>>();
  return {"memcpy", [ratio, buffer](const uint8_t* src, uint8_t*, uint32_t width, uint32_t height) {
            const size_t bytes = (size_t(width) * height + size_t(ratio.of(width)) * ratio.of(height)) / 2;
            if (buffer->size() < bytes) buffer->resize(bytes);
            memcpy(buffer->data(), src, bytes);
            benchmark::DoNotOptimize(buffer->data());
          }};
}

#ifdef ORVIK_BENCH_OPENCV
Variant opencvScaled(Ratio ratio, std::function<void(const cv::Mat& src, cv::Mat& dst)> op) {
  return scaled("opencv", ratio,
                [op](const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst, uint32_t dstWidth,
                     uint32_t dstHeight) {
                  const cv::Mat in(int(height), int(width), CV_8UC1, const_cast<uint8_t*>(src));
                  cv::Mat out(int(dstHeight), int(dstWidth), CV_8UC1, dst);
                  op(in, out);
                });
}

Variant opencvResize(Ratio ratio, int interpolation) {
  return opencvScaled(ratio, [interpolation](const cv::Mat& src, cv::Mat& dst) {
    cv::resize(src, dst, dst.size(), 0, 0, interpolation);
  });
}
#endif

void registerBox(const std::string& name, Ratio ratio, ovkScaleDownBy2u8Fn exported, ovkScaleDownBy2u8Fn portable) {
  std::vector<Variant> variants;
  addOurs(variants, ratio, fixedRatio<ovkScaleDownBy2u8Fn>, exported, portable);
#ifdef ORVIK_BENCH_LIBYUV
  variants.push_back(scaled("libyuv", ratio,
                            [](const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst, uint32_t dstWidth,
                               uint32_t dstHeight) {
                              libyuv::ScalePlane(src, int(width), int(width), int(height), dst, int(dstWidth),
                                                 int(dstWidth), int(dstHeight), libyuv::kFilterBox);
                            }));
#endif
  variants.push_back(copyOfSameBytes(ratio));
  registerScale(name, ratio, variants);
}

void registerGaussians() {
  std::vector<Variant> down, up;
  addOurs(down, kHalf, fixedRatio<ovkScaleDownBy2Gaussian5x5u8Fn>, ovkScaleDownBy2Gaussian5x5u8_v2,
          ovkScaleDownBy2Gaussian5x5u8C);
  // The exported enlargement returns nothing; its kernel returns the rows done.
  up.push_back(scaled("exported", kDouble, fixedRatio(ovkScaleUpBy2Gaussian5x5u8_v2)));
  up.push_back(scaled("portable", kDouble, fixedRatio(ovkScaleUpBy2Gaussian5x5u8C)));
#ifdef ORVIK_BENCH_OPENCV
  down.push_back(opencvScaled(kHalf, [](const cv::Mat& src, cv::Mat& dst) { cv::pyrDown(src, dst, dst.size()); }));
  up.push_back(opencvScaled(kDouble, [](const cv::Mat& src, cv::Mat& dst) { cv::pyrUp(src, dst, dst.size()); }));
#endif
  registerScale("gaussian_down_half", kHalf, down);
  registerScale("gaussian_up_double", kDouble, up);
}

// Bilinear and nearest at 2/3 and 1/2.
void registerInterpolating() {
  const struct {
    const char* suffix;
    Ratio ratio;
  } kRatios[] = {{"_2of3", kTwoThirds}, {"_half", kHalf}};
  for (const auto& size : kRatios) {
    std::vector<Variant> bilinear, nearest;
    addOurs(bilinear, size.ratio, sized<ovkScaleDownBLu8Fn>, ovkScaleDownBLu8, ovkScaleDownBLu8C);
    addOurs(nearest, size.ratio, sized<ovkScaleDownNNu8Fn>, ovkScaleDownNNu8, ovkScaleDownNNu8C);
#ifdef ORVIK_BENCH_OPENCV
    bilinear.push_back(opencvResize(size.ratio, cv::INTER_LINEAR));
    nearest.push_back(opencvResize(size.ratio, cv::INTER_NEAREST));
#endif
    registerScale(std::string("bilinear") + size.suffix, size.ratio, bilinear);
    registerScale(std::string("nearest") + size.suffix, size.ratio, nearest);
  }
}

// Area reductions: 3 to 2, M-by-N and the general resize side by side.
void registerAreas() {
  std::vector<Variant> twoThirds, threeSevenths;
  addOurs(twoThirds, kTwoThirds, fixedRatio<ovkScaleDown3To2u8Fn>, ovkScaleDown3To2u8, ovkScaleDown3To2u8C,
          "3to2_");
  addOurs(twoThirds, kTwoThirds, sized<ovkScaleDownMNu8Fn>, ovkScaleDownMNu8, ovkScaleDownMNu8C, "mn_");
  addOurs(twoThirds, kTwoThirds, generalArea, ovkScaleu8, ovkScaleu8C, "scaleu8_");
  addOurs(threeSevenths, kThreeSevenths, sized<ovkScaleDownMNu8Fn>, ovkScaleDownMNu8, ovkScaleDownMNu8C, "mn_");
  addOurs(threeSevenths, kThreeSevenths, generalArea, ovkScaleu8, ovkScaleu8C, "scaleu8_");
#ifdef ORVIK_BENCH_OPENCV
  twoThirds.push_back(opencvResize(kTwoThirds, cv::INTER_AREA));
  threeSevenths.push_back(opencvResize(kThreeSevenths, cv::INTER_AREA));
#endif
  registerScale("area_2of3", kTwoThirds, twoThirds);
  registerScale("area_3of7", kThreeSevenths, threeSevenths);
}

void registerPolyphase() {
  const struct {
    const char* name;
    Ratio ratio;
  } kRatios[] = {{"poly_up_double", kDouble}, {"poly_up_3of2", kThreeHalves}};
  for (const auto& size : kRatios) {
    std::vector<Variant> variants;
    addOurs(variants, size.ratio, sized<ovkScaleUpPolyu8Fn>, ovkScaleUpPolyu8, ovkScaleUpPolyu8C);
#ifdef ORVIK_BENCH_OPENCV
    variants.push_back(opencvResize(size.ratio, cv::INTER_CUBIC));
#endif
    registerScale(size.name, size.ratio, variants);
  }
}

void registerAll() {
  registerBox("box_down_half", kHalf, ovkScaleDownBy2u8_v2, ovkScaleDownBy2u8C);
  registerBox("box_down_quarter", kQuarter, ovkScaleDownBy4u8_v2, ovkScaleDownBy4u8C);
  registerGaussians();
  registerInterpolating();
  registerAreas();
  registerPolyphase();
}

}  // namespace

int main(int argc, char** argv) { return runBenchmarks(argc, argv, registerAll); }
