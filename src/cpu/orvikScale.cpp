// Exported entries of the scaling family.
#include "orvikConstraints.h"

namespace {

// The fixed-ratio box reductions answer a refused call with -1 and no log line.
#define OVK_REQUIRE_SILENT(condition) \
  do {                                \
    if (!(condition)) return -1;      \
  } while (0)

#define OVK_REQUIRE_SPANS_SILENT(...)              \
  do {                                             \
    if (!ovkSpansFit({__VA_ARGS__})) return -1;    \
  } while (0)

template <class E, class... Args>
int32_t callValue(uint32_t impl, Args... args) {
  const typename E::Fn kernel = ovkKernel<E>(impl);
  if (__builtin_expect(kernel == nullptr, 0)) {
    ovkLogNotConfigured(E::name);
    return -1;
  }
  return kernel(args...);
}

// A DSP call of a box reduction needs a large enough image, whole 8-pixel
// groups and aligned planes.
bool dspTakesReduction(const void* src, uint32_t width, uint32_t height, const void* dst, uintptr_t alignment) {
  return width % 8 == 0 && ovkPassesDspFloor(uint64_t(width) * height, ovkDspFloor::kAbove) &&
         ovkAligned(src, alignment) && ovkAligned(dst, alignment);
}

// By 2 and by 4: sizes multiples of the factor; the DSP wants the planes
// aligned to twice the factor.
template <class E, uint32_t kFactor>
uint32_t selectReduction(const void* src, uint32_t width, uint32_t height, const void* dst) {
  return ovkSelectImpl<E>(ovkNoGpuForm, [&] { return dspTakesReduction(src, width, height, dst, 2 * kFactor); });
}

template <class E, uint32_t kFactor>
int32_t packedReduction(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst) {
  const uint32_t impl = selectReduction<E, kFactor>(src, width, height, dst);
  OVK_REQUIRE_SILENT(src && dst && width && height && width % kFactor == 0 && height % kFactor == 0);
  OVK_REQUIRE_SPANS_SILENT(ovkInput(height, width, width),
                           ovkOutput(height / kFactor, width / kFactor, width / kFactor));
  return callValue<E>(impl, src, width, height, width, dst, width / kFactor);
}

template <class E, uint32_t kFactor>
int32_t stridedReduction(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                         uint8_t* dst, uint32_t dstStride) {
  srcStride = ovkPackedStride(srcStride, srcWidth);
  dstStride = ovkPackedStride(dstStride, srcWidth / kFactor);
  const uint32_t impl = selectReduction<E, kFactor>(src, srcWidth, srcHeight, dst);
  OVK_REQUIRE_SILENT(src && dst && srcWidth && srcHeight && srcWidth % kFactor == 0 && srcHeight % kFactor == 0 &&
                     dstStride >= srcWidth / kFactor && srcStride >= srcWidth);
  OVK_REQUIRE_SPANS_SILENT(ovkInput(srcHeight, srcWidth, srcStride),
                           ovkOutput(srcHeight / kFactor, srcWidth / kFactor, dstStride));
  return callValue<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

// The integer-factor box needs whole factors; a zero destination size is
// refused before it divides.
template <class E>
bool factorsWhole(uint32_t width, uint32_t height, uint32_t dstWidth, uint32_t dstHeight) {
  if (dstWidth && dstHeight && width % dstWidth == 0 && height % dstHeight == 0) return true;
  ovkLog(OVK_LOG_ERROR, OVK_LOG_TAG, "Error at %s\n", E::name);
  return false;
}

template <class E>
bool evenSize(uint32_t width, uint32_t height) {
  if ((width & 1) == 0 && (height & 1) == 0) return true;
  ovkLog(OVK_LOG_ERROR, OVK_LOG_TAG, "Error at %s\n", E::name);
  return false;
}

// After the condition: zero strides mean packed rows of `channels` bytes a
// pixel, then the span check and the call.
template <class E>
void callPackedResize(uint32_t impl, const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                      uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride, uint32_t channels) {
  srcStride = ovkPackedStride(srcStride, srcWidth * channels);
  dstStride = ovkPackedStride(dstStride, dstWidth * channels);
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, uint64_t(srcWidth) * channels, srcStride),
                    ovkOutput(dstHeight, uint64_t(dstWidth) * channels, dstStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride);
}

}  // namespace

extern "C" {

// ---- Fixed ratios ---------------------------------------------------------------------

OVK_API int32_t ovkScaleDownBy2u8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst) {
  return packedReduction<ovkEntry::ScaleDownBy2u8, 2>(src, width, height, dst);
}

OVK_API int32_t ovkScaleDownBy2u8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                     uint8_t* dst, uint32_t dstStride) {
  return stridedReduction<ovkEntry::ScaleDownBy2u8_v2, 2>(src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

OVK_API int32_t ovkScaleDownBy4u8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst) {
  return packedReduction<ovkEntry::ScaleDownBy4u8, 4>(src, width, height, dst);
}

OVK_API int32_t ovkScaleDownBy4u8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                     uint8_t* dst, uint32_t dstStride) {
  return stridedReduction<ovkEntry::ScaleDownBy4u8_v2, 4>(src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

OVK_API int32_t ovkScaleDown3To2u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                   uint8_t* dst, uint32_t dstStride) {
  using E = ovkEntry::ScaleDown3To2u8;
  const uint32_t dstWidth = srcWidth / 3 * 2;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE_SILENT(src && dst && srcWidth && srcHeight && (srcStride == 0 || srcStride >= srcWidth) &&
                     (dstStride == 0 || dstStride >= dstWidth));
  srcStride = ovkPackedStride(srcStride, srcWidth);
  dstStride = ovkPackedStride(dstStride, dstWidth);
  OVK_REQUIRE_SPANS_SILENT(ovkInput(srcHeight, srcWidth, srcStride), ovkOutput(srcHeight / 3 * 2, dstWidth, dstStride));
  return callValue<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

// ---- Nearest neighbour, box, bilinear, M-by-N ---------------------------------------------

OVK_API int32_t ovkScaleDownNNu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                 uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride) {
  using E = ovkEntry::ScaleDownNNu8;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE_SILENT(src && dst && srcWidth && srcHeight && dstWidth && dstHeight &&
                     (srcStride == 0 || srcStride >= srcWidth) && (dstStride == 0 || dstStride >= dstWidth));
  srcStride = ovkPackedStride(srcStride, srcWidth);
  dstStride = ovkPackedStride(dstStride, dstWidth);
  OVK_REQUIRE_SPANS_SILENT(ovkInput(srcHeight, srcWidth, srcStride), ovkOutput(dstHeight, dstWidth, dstStride));
  return callValue<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride);
}

OVK_API void ovkScaleDownu8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst, uint32_t dstWidth,
                            uint32_t dstHeight) {
  using E = ovkEntry::ScaleDownu8;
  if (!factorsWhole<E>(width, height, dstWidth, dstHeight)) return;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && dst && width && height && dstWidth && dstHeight && width >= dstWidth && height >= dstHeight);
  OVK_REQUIRE_SPANS(E, ovkInput(height, width, width), ovkOutput(dstHeight, dstWidth, dstWidth));
  ovkCallVoid<E>(impl, src, width, height, width, dst, dstWidth, dstHeight, dstWidth);
}

OVK_API void ovkScaleDownu8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                               uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride) {
  using E = ovkEntry::ScaleDownu8_v2;
  if (!factorsWhole<E>(srcWidth, srcHeight, dstWidth, dstHeight)) return;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && dst && srcWidth && srcHeight && (srcStride >= srcWidth) && dstWidth && dstHeight && (dstStride >= dstWidth) && srcWidth >= dstWidth && srcHeight >= dstHeight);
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride), ovkOutput(dstHeight, dstWidth, dstStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride);
}

OVK_API void ovkScaleDownBLu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                              uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride) {
  using E = ovkEntry::ScaleDownBLu8;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && srcWidth && srcHeight && (srcStride >= srcWidth) && dst && dstWidth && dstHeight && (dstStride >= dstWidth));
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride), ovkOutput(dstHeight, dstWidth, dstStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride);
}

OVK_API void ovkScaleDownMNu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                              uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride) {
  using E = ovkEntry::ScaleDownMNu8;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && dst && srcWidth && srcHeight && dstWidth && dstHeight && (srcStride==0 || srcStride >=srcWidth) && (dstStride == 0 || dstStride >= dstWidth) && dstWidth * 20 > srcWidth && dstHeight * 20 > srcHeight);
  callPackedResize<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride, 1);
}

OVK_API void ovkScaleDownMNInterleaveu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                        uint32_t srcStride, uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight,
                                        uint32_t dstStride) {
  using E = ovkEntry::ScaleDownMNInterleaveu8;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && dst && srcWidth && srcHeight && dstWidth && dstHeight && (srcStride==0 || srcStride >=srcWidth*2) && (dstStride == 0 || dstStride >= dstWidth*2) && dstWidth * 20 > srcWidth && dstHeight * 20 > srcHeight);
  callPackedResize<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride, 2);
}

// ---- Gaussian pyramids' steps ----------------------------------------------------------

OVK_API void ovkScaleDownBy2Gaussian5x5u8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst) {
  using E = ovkEntry::ScaleDownBy2Gaussian5x5u8;
  if (!evenSize<E>(width, height)) return;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && dst && width && height && ((width & 1) == 0 ) && ((height & 1) == 0));
  OVK_REQUIRE_SPANS(E, ovkInput(height, width, width), ovkOutput(height / 2, width / 2, width / 2));
  ovkCallVoid<E>(impl, src, width, height, width, dst, width / 2);
}

OVK_API void ovkScaleDownBy2Gaussian5x5u8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                             uint32_t srcStride, uint8_t* dst, uint32_t dstStride) {
  using E = ovkEntry::ScaleDownBy2Gaussian5x5u8_v2;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  dstStride = ovkPackedStride(dstStride, srcWidth / 2);
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && dst && srcWidth && srcHeight && (srcStride >= srcWidth) && (dstStride >= srcWidth/2));
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride), ovkOutput(srcHeight / 2, srcWidth / 2, dstStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

OVK_API void ovkScaleDownBy2Gaussian3x3u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                          uint32_t srcStride, uint8_t* dst, uint32_t dstStride) {
  using E = ovkEntry::ScaleDownBy2Gaussian3x3u8;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  dstStride = ovkPackedStride(dstStride, srcWidth / 2);
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && dst && srcWidth > 1 && srcHeight > 1 && (srcStride >= srcWidth) && (dstStride >= srcWidth/2));
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride), ovkOutput(srcHeight / 2, srcWidth / 2, dstStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

OVK_API void ovkScaleUpBy2Gaussian5x5u8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst) {
  using E = ovkEntry::ScaleUpBy2Gaussian5x5u8;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && dst && width && height);
  OVK_REQUIRE_SPANS(E, ovkInput(height, width, width),
                    ovkOutput(uint64_t(height) * 2, uint64_t(width) * 2, uint64_t(width) * 2));
  ovkCallVoid<E>(impl, src, width, height, width, dst, width * 2);
}

OVK_API void ovkScaleUpBy2Gaussian5x5u8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                           uint32_t srcStride, uint8_t* dst, uint32_t dstStride) {
  using E = ovkEntry::ScaleUpBy2Gaussian5x5u8_v2;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  dstStride = ovkPackedStride(dstStride, srcWidth * 2);
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && dst && srcWidth && srcHeight && (srcStride >= srcWidth) && (dstStride >= srcWidth*2));
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, srcWidth, srcStride),
                    ovkOutput(uint64_t(srcHeight) * 2, uint64_t(srcWidth) * 2, dstStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

// The first generation's condition does not name dst; a null one is refused
// on its own line rather than written through.
OVK_API void ovkScaleDownBy2Gaussian5x5f32(const float* srcImg, uint32_t width, uint32_t height, float* dst) {
  using E = ovkEntry::ScaleDownBy2Gaussian5x5f32;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, srcImg && width && height && ((width & 1) == 0 ) && ((height & 1) == 0));
  OVK_REQUIRE(E, dst);
  const uint64_t rowBytes = uint64_t(width) * 4;
  OVK_REQUIRE_SPANS(E, ovkInput(height, rowBytes, rowBytes), ovkOutput(height / 2, rowBytes / 2, rowBytes / 2));
  ovkCallVoid<E>(impl, srcImg, width, height, width * 4, dst, width * 2);
}

OVK_API void ovkScaleDownBy2Gaussian5x5f32_v2(const float* src, uint32_t srcWidth, uint32_t srcHeight,
                                              uint32_t srcStride, float* dst, uint32_t dstStride) {
  using E = ovkEntry::ScaleDownBy2Gaussian5x5f32_v2;
  srcStride = ovkPackedStride(srcStride, srcWidth * 4);
  dstStride = ovkPackedStride(dstStride, srcWidth * 2);
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && dst && srcWidth && srcHeight && ((srcWidth & 1) == 0 ) && ((srcHeight & 1) == 0) && (srcStride >= srcWidth*4) && (dstStride >= srcWidth*2));
  OVK_REQUIRE_SPANS(E, ovkInput(srcHeight, uint64_t(srcWidth) * 4, srcStride),
                    ovkOutput(srcHeight / 2, uint64_t(srcWidth) * 2, dstStride));
  ovkCallVoid<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstStride);
}

// ---- Polyphase and general resize ---------------------------------------------------------

OVK_API void ovkScaleUpPolyu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                              uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride) {
  using E = ovkEntry::ScaleUpPolyu8;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && dst && srcWidth && srcHeight && (srcStride == 0 || srcStride >= srcWidth) && dstWidth && dstHeight && (dstStride == 0 || dstStride >= dstWidth));
  callPackedResize<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride, 1);
}

OVK_API void ovkScaleUpPolyInterleaveu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                        uint32_t srcStride, uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight,
                                        uint32_t dstStride) {
  using E = ovkEntry::ScaleUpPolyInterleaveu8;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE(E, src && dst && srcWidth && srcHeight && dstWidth && dstHeight && (srcStride==0 || srcStride >=srcWidth*2) && (dstStride == 0 || dstStride >= dstWidth*2));
  callPackedResize<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride, 2);
}

OVK_API ovkStatusCode ovkScaleu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                 uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride,
                                 ovkInterpolationType interpolation) {
  using E = ovkEntry::Scaleu8;
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE_STATUS(src && dst && srcWidth && srcHeight && dstWidth && dstHeight && srcStride >= srcWidth &&
                     dstStride >= dstWidth && interpolation <= ORVIK_INTERPOLATION_BILINEAR);
  OVK_REQUIRE_SPANS_STATUS(ovkInput(srcHeight, srcWidth, srcStride), ovkOutput(dstHeight, dstWidth, dstStride));
  return ovkCallStatus<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride,
                          interpolation);
}

OVK_API ovkStatusCode ovkScaleu8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                    uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride,
                                    ovkInterpolationType interpolation) {
  using E = ovkEntry::Scaleu8_v2;
  srcStride = ovkPackedStride(srcStride, srcWidth);
  dstStride = ovkPackedStride(dstStride, dstWidth);
  const uint32_t impl = ovkSelectImpl<E>();
  OVK_REQUIRE_STATUS(src && dst && srcWidth && srcHeight && dstWidth && dstHeight && srcStride >= srcWidth &&
                     dstStride >= dstWidth && interpolation <= ORVIK_INTERPOLATION_BILINEAR);
  OVK_REQUIRE_SPANS_STATUS(ovkInput(srcHeight, srcWidth, srcStride), ovkOutput(dstHeight, dstWidth, dstStride));
  return ovkCallStatus<E>(impl, src, srcWidth, srcHeight, srcStride, dst, dstWidth, dstHeight, dstStride,
                          interpolation);
}

}  // extern "C"
