// The one list of function groups and exported operations.  Table fillers,
// kernel declarations, exported kernel pointers, the symbol test and
// `orvik info` are all generated from these lists.
#ifndef ORVIK_REGISTRY_H
#define ORVIK_REGISTRY_H

// OVK_GROUPS(X): X(number, Group, vector, backends)
//   number   slot in ovkFuncTable (7 entries each).  Groups of the first
//            release are numbered in the alphabetical order of their exported
//            names (43-45 box filters, 211-216 Gaussians and the median);
//            later additions take numbers from 445 on (445 box 3x3 _v2,
//            446 Gaussian 3x3 _v3, 447 median _v3).  Lines are grouped by
//            family, not by number.
//   Group    the portable kernel is ovk<Group>C, its type ovk<Group>Fn
//            (include/orvik.h).
//   vector   V: src/pelar provides ovkVector<Group>(); N: portable only.
//   backends OVK_BACKENDS_* below: DSP/GPU forms and the mode tables that
//            send the group to them.
#define OVK_GROUPS(X)                                                                                 \
  OVK_FILTER_GROUPS(X) OVK_GRADIENT_GROUPS(X) OVK_YCBCR_TO_RGB_GROUPS(X) OVK_RGB_TO_YCBCR_GROUPS(X) \
  OVK_SCALE_GROUPS(X)

// Scaling.  The by-2 and by-4 box reductions have DSP forms.
#define OVK_SCALE_GROUPS(X)                                                                         \
  X(343, ScaleDown3To2u8, V, OVK_BACKENDS_NONE)                                                      \
  X(344, ScaleDownBLu8, V, OVK_BACKENDS_NONE)                                                        \
  X(345, ScaleDownBy2Gaussian3x3u8, V, OVK_BACKENDS_NONE)                                            \
  X(346, ScaleDownBy2Gaussian5x5f32, V, OVK_BACKENDS_NONE)                                           \
  X(347, ScaleDownBy2Gaussian5x5f32_v2, V, OVK_BACKENDS_NONE)                                        \
  X(348, ScaleDownBy2Gaussian5x5u8, V, OVK_BACKENDS_NONE)                                            \
  X(349, ScaleDownBy2u8, V, OVK_DSP_FORM | OVK_DSP_LOW_POWER | OVK_DSP_OFFLOAD)                      \
  X(350, ScaleDownBy4u8, V, OVK_DSP_FORM | OVK_DSP_LOW_POWER | OVK_DSP_OFFLOAD)                      \
  X(351, ScaleDownMNInterleaveu8, V, OVK_BACKENDS_NONE)                                              \
  X(352, ScaleDownMNu8, V, OVK_BACKENDS_NONE)                                                        \
  X(353, ScaleDownNNu8, V, OVK_BACKENDS_NONE)                                                        \
  X(354, ScaleDownu8, V, OVK_BACKENDS_NONE)                                                          \
  X(355, ScaleUpBy2Gaussian5x5u8, V, OVK_BACKENDS_NONE)                                              \
  X(356, ScaleUpPolyInterleaveu8, V, OVK_BACKENDS_NONE)                                              \
  X(357, ScaleUpPolyu8, V, OVK_BACKENDS_NONE)                                                        \
  X(358, Scaleu8, V, OVK_BACKENDS_NONE)

// Gradients and edges (448 and 449, the unscaled Sobel and the Canny `_v3`,
// are later additions).
#define OVK_GRADIENT_GROUPS(X)                                                \
  X(196, FilterCanny3x3u8, V, OVK_BACKENDS_NONE)                               \
  X(449, FilterCanny3x3u8_v3, V, OVK_BACKENDS_NONE)                            \
  X(197, FilterCannyu8, V, OVK_BACKENDS_NONE)                                  \
  X(218, FilterSobel3x3u8, V, OVK_BACKENDS_NONE)                               \
  X(270, ImageGradientInterleavedf32, V, OVK_DSP_ANY_MODE)                     \
  X(271, ImageGradientInterleaveds16, V, OVK_BACKENDS_NONE)                    \
  X(272, ImageGradientPlanarf32, V, OVK_BACKENDS_NONE)                         \
  X(273, ImageGradientPlanars16, V, OVK_BACKENDS_NONE)                         \
  X(274, ImageGradientScharrInterleaveds16, V, OVK_BACKENDS_NONE)              \
  X(275, ImageGradientSobelInterleavedf32, V, OVK_BACKENDS_NONE)               \
  X(276, ImageGradientSobelInterleaveds16, V, OVK_BACKENDS_NONE)               \
  X(448, ImageGradientSobelInterleaveds16_v3, V, OVK_BACKENDS_NONE)            \
  X(277, ImageGradientSobelPlanarf32, V, OVK_BACKENDS_NONE)                    \
  X(278, ImageGradientSobelPlanarf32f32, V, OVK_BACKENDS_NONE)                 \
  X(279, ImageGradientSobelPlanars16, V, OVK_BACKENDS_NONE)                    \
  X(280, ImageGradientSobelPlanars8, V, OVK_BACKENDS_NONE)

#define OVK_GRADIENT_ENTRIES(X)                                                                                 \
  X(FilterCanny3x3u8, FilterCanny3x3u8, FilterCanny3x3u8, N)                                                    \
  X(FilterCanny3x3u8_v2, FilterCanny3x3u8, FilterCanny3x3u8, N)                                                 \
  X(FilterCanny3x3u8_v3, FilterCanny3x3u8_v3, FilterCanny3x3u8_v3, N)                                           \
  X(FilterCannyu8, FilterCannyu8, FilterCannyu8, N)                                                             \
  X(FilterSobel3x3u8, FilterSobel3x3u8, FilterSobel3x3u8, N)                                                    \
  X(FilterSobel3x3u8_v2, FilterSobel3x3u8, FilterSobel3x3u8, N)                                                 \
  X(ImageGradientInterleavedf32, ImageGradientInterleavedf32, ImageGradientInterleavedf32, R)                   \
  X(ImageGradientInterleavedf32_v2, ImageGradientInterleavedf32, ImageGradientInterleavedf32, R)                \
  X(ImageGradientInterleaveds16, ImageGradientInterleaveds16, ImageGradientInterleaveds16, N)                   \
  X(ImageGradientInterleaveds16_v2, ImageGradientInterleaveds16, ImageGradientInterleaveds16, N)                \
  X(ImageGradientPlanarf32, ImageGradientPlanarf32, ImageGradientPlanarf32, N)                                  \
  X(ImageGradientPlanarf32_v2, ImageGradientPlanarf32, ImageGradientPlanarf32, N)                               \
  X(ImageGradientPlanars16, ImageGradientPlanars16, ImageGradientPlanars16, N)                                  \
  X(ImageGradientPlanars16_v2, ImageGradientPlanars16, ImageGradientPlanars16, N)                               \
  X(ImageGradientScharrInterleaveds16, ImageGradientScharrInterleaveds16, ImageGradientScharrInterleaveds16, N) \
  X(ImageGradientSobelInterleavedf32, ImageGradientSobelInterleavedf32, ImageGradientSobelInterleavedf32, N)    \
  X(ImageGradientSobelInterleavedf32_v2, ImageGradientSobelInterleavedf32, ImageGradientSobelInterleavedf32, N) \
  X(ImageGradientSobelInterleaveds16, ImageGradientSobelInterleaveds16, ImageGradientSobelInterleaveds16, N)    \
  X(ImageGradientSobelInterleaveds16_v2, ImageGradientSobelInterleaveds16, ImageGradientSobelInterleaveds16, N) \
  X(ImageGradientSobelInterleaveds16_v3, ImageGradientSobelInterleaveds16_v3, ImageGradientSobelInterleaveds16_v3, \
    N)                                                                                                          \
  X(ImageGradientSobelPlanarf32, ImageGradientSobelPlanarf32, ImageGradientSobelPlanarf32, N)                   \
  X(ImageGradientSobelPlanarf32_v2, ImageGradientSobelPlanarf32, ImageGradientSobelPlanarf32, N)                \
  X(ImageGradientSobelPlanarf32f32, ImageGradientSobelPlanarf32f32, ImageGradientSobelPlanarf32f32, N)          \
  X(ImageGradientSobelPlanarf32f32_v2, ImageGradientSobelPlanarf32f32, ImageGradientSobelPlanarf32f32, N)       \
  X(ImageGradientSobelPlanars16, ImageGradientSobelPlanars16, ImageGradientSobelPlanars16, N)                   \
  X(ImageGradientSobelPlanars16_v2, ImageGradientSobelPlanars16, ImageGradientSobelPlanars16, N)                \
  X(ImageGradientSobelPlanars8, ImageGradientSobelPlanars8, ImageGradientSobelPlanars8, N)                      \
  X(ImageGradientSobelPlanars8_v2, ImageGradientSobelPlanars8, ImageGradientSobelPlanars8, N)

#define OVK_FILTER_GROUPS(X)                                   \
  X(212, FilterGaussian3x3u8, V,                                 \
    OVK_DSP_FORM | OVK_DSP_LOW_POWER | OVK_DSP_OFFLOAD | OVK_GPU_FORM | OVK_GPU_PERFORMANCE) \
  X(446, FilterGaussian3x3u8_v3, V, OVK_DSP_ANY_MODE) \
  X(211, FilterGaussian11x11u8, V, OVK_DSP_FORM | OVK_DSP_LOW_POWER | OVK_DSP_OFFLOAD) \
  X(213, FilterGaussian5x5s16, V, OVK_BACKENDS_NONE) \
  X(214, FilterGaussian5x5s32, V, OVK_BACKENDS_NONE) \
  X(215, FilterGaussian5x5u8, V, OVK_BACKENDS_NONE) \
  X(43, BoxFilter11x11u8, V, OVK_BACKENDS_NONE)                  \
  X(44, BoxFilter3x3u8, V, OVK_BACKENDS_NONE)                    \
  X(45, BoxFilter5x5u8, V, OVK_BACKENDS_NONE)                    \
  X(445, BoxFilter3x3u8_v2, V, OVK_BACKENDS_NONE)                \
  X(216, FilterMedian3x3u8, V,                                   \
    OVK_DSP_FORM | OVK_DSP_LOW_POWER | OVK_DSP_PERFORMANCE | OVK_DSP_OFFLOAD | OVK_GPU_FORM) \
  X(447, FilterMedian3x3u8_v3, V, OVK_DSP_FORM | OVK_DSP_LOW_POWER | OVK_DSP_OFFLOAD)

// Colour conversion, YCbCr to RGB.
#define OVK_YCBCR_TO_RGB_GROUPS(X) \
  X(111, ColorYCbCr420PlanarToRGB565u8, V, OVK_BACKENDS_NONE) \
  X(112, ColorYCbCr420PlanarToRGB888u8, V, OVK_BACKENDS_NONE) \
  X(113, ColorYCbCr420PlanarToRGBA8888u8, V, OVK_BACKENDS_NONE) \
  X(114, ColorYCbCr420PseudoPlanarToRGB565u8, V, OVK_BACKENDS_NONE) \
  X(115, ColorYCbCr420PseudoPlanarToRGB888u8, V, OVK_BACKENDS_NONE) \
  X(116, ColorYCbCr420PseudoPlanarToRGBA8888u8, V, OVK_BACKENDS_NONE) \
  X(117, ColorYCbCr422PlanarToRGB565u8, V, OVK_BACKENDS_NONE) \
  X(118, ColorYCbCr422PlanarToRGB888u8, V, OVK_BACKENDS_NONE) \
  X(119, ColorYCbCr422PlanarToRGBA8888u8, V, OVK_BACKENDS_NONE) \
  X(120, ColorYCbCr422PseudoPlanarToRGB565u8, V, OVK_BACKENDS_NONE) \
  X(121, ColorYCbCr422PseudoPlanarToRGB888u8, V, OVK_BACKENDS_NONE) \
  X(122, ColorYCbCr422PseudoPlanarToRGBA8888u8, V, OVK_BACKENDS_NONE) \
  X(123, ColorYCbCr444PlanarToRGB565u8, V, OVK_BACKENDS_NONE) \
  X(124, ColorYCbCr444PlanarToRGB888u8, V, OVK_BACKENDS_NONE) \
  X(125, ColorYCbCr444PlanarToRGBA8888u8, V, OVK_BACKENDS_NONE) \
  X(126, ColorYCbCr444PseudoPlanarToRGB565u8, V, OVK_BACKENDS_NONE) \
  X(127, ColorYCbCr444PseudoPlanarToRGB888u8, V, OVK_BACKENDS_NONE) \
  X(128, ColorYCbCr444PseudoPlanarToRGBA8888u8, V, OVK_BACKENDS_NONE) \
  X(129, ColorYCrCb420PseudoPlanarToRGB8888u8, V, OVK_BACKENDS_NONE) \
  X(130, ColorYCrCbH1V1toRGB888u8, V, OVK_BACKENDS_NONE) \
  X(131, ColorYCrCbH1V2toRGB888u8, V, OVK_BACKENDS_NONE) \
  X(132, ColorYCrCbH2V1toRGB888u8, V, OVK_BACKENDS_NONE) \
  X(133, ColorYCrCbH2V2toRGB888u8, V, OVK_BACKENDS_NONE) \
  X(134, ColorYUV420toRGB565u8, V, OVK_BACKENDS_NONE) \
  X(135, ColorYUV420toRGB565u8Rotate180, V, OVK_BACKENDS_NONE) \
  X(136, ColorYUV420toRGB8888u8, V, OVK_DSP_ANY_MODE)

// Colour conversion, RGB to YCbCr and gray.
#define OVK_RGB_TO_YCBCR_GROUPS(X) \
  X(57, ColorRGB565ToYCbCr420Planaru8, N, OVK_BACKENDS_NONE) \
  X(58, ColorRGB565ToYCbCr420PseudoPlanaru8, N, OVK_BACKENDS_NONE) \
  X(59, ColorRGB565ToYCbCr422Planaru8, N, OVK_BACKENDS_NONE) \
  X(60, ColorRGB565ToYCbCr422PseudoPlanaru8, N, OVK_BACKENDS_NONE) \
  X(61, ColorRGB565ToYCbCr444Planaru8, N, OVK_BACKENDS_NONE) \
  X(62, ColorRGB565ToYCbCr444PseudoPlanaru8, N, OVK_BACKENDS_NONE) \
  X(63, ColorRGB888ToGrayu8, V, OVK_BACKENDS_NONE) \
  X(69, ColorRGB888ToYCbCr420Planaru8, N, OVK_BACKENDS_NONE) \
  X(70, ColorRGB888ToYCbCr420PseudoPlanaru8, N, OVK_BACKENDS_NONE) \
  X(71, ColorRGB888ToYCbCr422Planaru8, N, OVK_BACKENDS_NONE) \
  X(72, ColorRGB888ToYCbCr422PseudoPlanaru8, N, OVK_BACKENDS_NONE) \
  X(73, ColorRGB888ToYCbCr444Planaru8, N, OVK_BACKENDS_NONE) \
  X(74, ColorRGB888ToYCbCr444PseudoPlanaru8, N, OVK_BACKENDS_NONE) \
  X(75, ColorRGB888toYCrCbu8, V, OVK_DSP_ANY_MODE) \
  X(82, ColorRGBA8888ToYCbCr420Planaru8, N, OVK_BACKENDS_NONE) \
  X(83, ColorRGBA8888ToYCbCr420PseudoPlanaru8, N, OVK_BACKENDS_NONE) \
  X(84, ColorRGBA8888ToYCbCr422Planaru8, N, OVK_BACKENDS_NONE) \
  X(85, ColorRGBA8888ToYCbCr422PseudoPlanaru8, N, OVK_BACKENDS_NONE) \
  X(86, ColorRGBA8888ToYCbCr444Planaru8, N, OVK_BACKENDS_NONE) \
  X(87, ColorRGBA8888ToYCbCr444PseudoPlanaru8, N, OVK_BACKENDS_NONE)

// OVK_INTERNAL_GROUPS(X): same columns, for ovkInternalFuncTable; a group
// may also be an exported one, with the same kernels.
#define OVK_INTERNAL_GROUPS(X)                                  \
  X(3, ImageGradientScharrInterleaveds16, V, OVK_BACKENDS_NONE) \
  X(5, ScaleDownBy2Gaussian5x5f32, V, OVK_BACKENDS_NONE)        \
  X(6, ScaleDownBy2Gaussian5x5f32_v2, V, OVK_BACKENDS_NONE)

// OVK_ENTRIES(X): X(Name, SelectorGroup, Group, remote)
//   Name           exported as ovk<Name>, with the pointers ovk<Name>_ and
//                  ppovk<Name>.
//   SelectorGroup  whose ovkImplTable selector the entry reads (normally Group).
//   remote         R: the group has a DSP or GPU form, so ovk<Name>R_ exists.
#define OVK_ENTRIES(X)                                                                                   \
  OVK_FILTER_ENTRIES(X) OVK_GRADIENT_ENTRIES(X) OVK_YCBCR_TO_RGB_ENTRIES(X) OVK_RGB_TO_YCBCR_ENTRIES(X) \
  OVK_SCALE_ENTRIES(X)

#define OVK_SCALE_ENTRIES(X)                                                                             \
  X(ScaleDownBy2u8, ScaleDownBy2u8, ScaleDownBy2u8, R)                                                    \
  X(ScaleDownBy2u8_v2, ScaleDownBy2u8, ScaleDownBy2u8, R)                                                 \
  X(ScaleDownBy4u8, ScaleDownBy4u8, ScaleDownBy4u8, R)                                                    \
  X(ScaleDownBy4u8_v2, ScaleDownBy4u8, ScaleDownBy4u8, R)                                                 \
  X(ScaleDown3To2u8, ScaleDown3To2u8, ScaleDown3To2u8, N)                                                 \
  X(ScaleDownNNu8, ScaleDownNNu8, ScaleDownNNu8, N)                                                       \
  X(ScaleDownu8, ScaleDownu8, ScaleDownu8, N)                                                             \
  X(ScaleDownu8_v2, ScaleDownu8, ScaleDownu8, N)                                                          \
  X(ScaleDownBLu8, ScaleDownBLu8, ScaleDownBLu8, N)                                                       \
  X(ScaleDownMNu8, ScaleDownMNu8, ScaleDownMNu8, N)                                                       \
  X(ScaleDownMNInterleaveu8, ScaleDownMNInterleaveu8, ScaleDownMNInterleaveu8, N)                         \
  X(ScaleDownBy2Gaussian5x5u8, ScaleDownBy2Gaussian5x5u8, ScaleDownBy2Gaussian5x5u8, N)                   \
  X(ScaleDownBy2Gaussian5x5u8_v2, ScaleDownBy2Gaussian5x5u8, ScaleDownBy2Gaussian5x5u8, N)                \
  X(ScaleDownBy2Gaussian3x3u8, ScaleDownBy2Gaussian3x3u8, ScaleDownBy2Gaussian3x3u8, N)                   \
  X(ScaleUpBy2Gaussian5x5u8, ScaleUpBy2Gaussian5x5u8, ScaleUpBy2Gaussian5x5u8, N)                         \
  X(ScaleUpBy2Gaussian5x5u8_v2, ScaleUpBy2Gaussian5x5u8, ScaleUpBy2Gaussian5x5u8, N)                      \
  X(ScaleDownBy2Gaussian5x5f32, ScaleDownBy2Gaussian5x5f32, ScaleDownBy2Gaussian5x5f32, N)                \
  X(ScaleDownBy2Gaussian5x5f32_v2, ScaleDownBy2Gaussian5x5f32_v2, ScaleDownBy2Gaussian5x5f32_v2, N)       \
  X(ScaleUpPolyu8, ScaleUpPolyu8, ScaleUpPolyu8, N)                                                       \
  X(ScaleUpPolyInterleaveu8, ScaleUpPolyInterleaveu8, ScaleUpPolyInterleaveu8, N)                         \
  X(Scaleu8, Scaleu8, Scaleu8, N)                                                                         \
  X(Scaleu8_v2, Scaleu8, Scaleu8, N)

#define OVK_FILTER_ENTRIES(X)                                            \
  X(FilterGaussian3x3u8, FilterGaussian3x3u8, FilterGaussian3x3u8, R)    \
  X(FilterGaussian3x3u8_v2, FilterGaussian3x3u8, FilterGaussian3x3u8, R) \
  X(FilterGaussian3x3u8_v3, FilterGaussian3x3u8_v3, FilterGaussian3x3u8_v3, R) \
  X(FilterGaussian5x5u8, FilterGaussian5x5u8, FilterGaussian5x5u8, N) \
  X(FilterGaussian5x5u8_v2, FilterGaussian5x5u8, FilterGaussian5x5u8, N) \
  X(FilterGaussian11x11u8, FilterGaussian11x11u8, FilterGaussian11x11u8, R) \
  X(FilterGaussian11x11u8_v2, FilterGaussian11x11u8, FilterGaussian11x11u8, R) \
  X(FilterGaussian5x5s16, FilterGaussian5x5s16, FilterGaussian5x5s16, N) \
  X(FilterGaussian5x5s16_v2, FilterGaussian5x5s16, FilterGaussian5x5s16, N) \
  X(FilterGaussian5x5s32, FilterGaussian5x5s32, FilterGaussian5x5s32, N) \
  X(FilterGaussian5x5s32_v2, FilterGaussian5x5s32, FilterGaussian5x5s32, N) \
  X(BoxFilter3x3u8, BoxFilter3x3u8, BoxFilter3x3u8, N)                   \
  X(BoxFilter3x3u8_v2, BoxFilter3x3u8_v2, BoxFilter3x3u8_v2, N)          \
  X(BoxFilter5x5u8, BoxFilter5x5u8, BoxFilter5x5u8, N)                   \
  X(BoxFilter11x11u8, BoxFilter11x11u8, BoxFilter11x11u8, N)             \
  X(FilterMedian3x3u8, FilterMedian3x3u8, FilterMedian3x3u8, R)          \
  X(FilterMedian3x3u8_v2, FilterMedian3x3u8, FilterMedian3x3u8, R)       \
  X(FilterMedian3x3u8_v3, FilterMedian3x3u8_v3, FilterMedian3x3u8_v3, R)

#define OVK_YCBCR_TO_RGB_ENTRIES(X) \
  X(ColorYCbCr420PlanarToRGB565u8, ColorYCbCr420PlanarToRGB565u8, ColorYCbCr420PlanarToRGB565u8, N) \
  X(ColorYCbCr420PlanarToRGB888u8, ColorYCbCr420PlanarToRGB888u8, ColorYCbCr420PlanarToRGB888u8, N) \
  X(ColorYCbCr420PlanarToRGBA8888u8, ColorYCbCr420PlanarToRGBA8888u8, ColorYCbCr420PlanarToRGBA8888u8, N) \
  X(ColorYCbCr420PseudoPlanarToRGB565u8, ColorYCbCr420PseudoPlanarToRGB565u8, \
    ColorYCbCr420PseudoPlanarToRGB565u8, N) \
  X(ColorYCbCr420PseudoPlanarToRGB888u8, ColorYCbCr420PseudoPlanarToRGB888u8, \
    ColorYCbCr420PseudoPlanarToRGB888u8, N) \
  X(ColorYCbCr420PseudoPlanarToRGBA8888u8, ColorYCbCr420PseudoPlanarToRGBA8888u8, \
    ColorYCbCr420PseudoPlanarToRGBA8888u8, N) \
  X(ColorYCbCr422PlanarToRGB565u8, ColorYCbCr422PlanarToRGB565u8, ColorYCbCr422PlanarToRGB565u8, N) \
  X(ColorYCbCr422PlanarToRGB888u8, ColorYCbCr422PlanarToRGB888u8, ColorYCbCr422PlanarToRGB888u8, N) \
  X(ColorYCbCr422PlanarToRGBA8888u8, ColorYCbCr422PlanarToRGBA8888u8, ColorYCbCr422PlanarToRGBA8888u8, N) \
  X(ColorYCbCr422PseudoPlanarToRGB565u8, ColorYCbCr422PseudoPlanarToRGB565u8, \
    ColorYCbCr422PseudoPlanarToRGB565u8, N) \
  X(ColorYCbCr422PseudoPlanarToRGB888u8, ColorYCbCr422PseudoPlanarToRGB888u8, \
    ColorYCbCr422PseudoPlanarToRGB888u8, N) \
  X(ColorYCbCr422PseudoPlanarToRGBA8888u8, ColorYCbCr422PseudoPlanarToRGBA8888u8, \
    ColorYCbCr422PseudoPlanarToRGBA8888u8, N) \
  X(ColorYCbCr444PlanarToRGB565u8, ColorYCbCr444PlanarToRGB565u8, ColorYCbCr444PlanarToRGB565u8, N) \
  X(ColorYCbCr444PlanarToRGB888u8, ColorYCbCr444PlanarToRGB888u8, ColorYCbCr444PlanarToRGB888u8, N) \
  X(ColorYCbCr444PlanarToRGBA8888u8, ColorYCbCr444PlanarToRGBA8888u8, ColorYCbCr444PlanarToRGBA8888u8, N) \
  X(ColorYCbCr444PseudoPlanarToRGB565u8, ColorYCbCr444PseudoPlanarToRGB565u8, \
    ColorYCbCr444PseudoPlanarToRGB565u8, N) \
  X(ColorYCbCr444PseudoPlanarToRGB888u8, ColorYCbCr444PseudoPlanarToRGB888u8, \
    ColorYCbCr444PseudoPlanarToRGB888u8, N) \
  X(ColorYCbCr444PseudoPlanarToRGBA8888u8, ColorYCbCr444PseudoPlanarToRGBA8888u8, \
    ColorYCbCr444PseudoPlanarToRGBA8888u8, N) \
  X(ColorYCrCb420PseudoPlanarToRGB8888u8, ColorYCrCb420PseudoPlanarToRGB8888u8, \
    ColorYCrCb420PseudoPlanarToRGB8888u8, N) \
  X(ColorYCrCbH1V1toRGB888u8, ColorYCrCbH1V1toRGB888u8, ColorYCrCbH1V1toRGB888u8, N) \
  X(ColorYCrCbH1V2toRGB888u8, ColorYCrCbH1V2toRGB888u8, ColorYCrCbH1V2toRGB888u8, N) \
  X(ColorYCrCbH2V1toRGB888u8, ColorYCrCbH2V1toRGB888u8, ColorYCrCbH2V1toRGB888u8, N) \
  X(ColorYCrCbH2V2toRGB888u8, ColorYCrCbH2V2toRGB888u8, ColorYCrCbH2V2toRGB888u8, N) \
  X(ColorYUV420toRGB565u8, ColorYUV420toRGB565u8, ColorYUV420toRGB565u8, N) \
  X(ColorYUV420toRGB565u8Rotate180, ColorYUV420toRGB565u8Rotate180, ColorYUV420toRGB565u8Rotate180, N) \
  X(ColorYUV420toRGB8888u8, ColorYUV420toRGB8888u8, ColorYUV420toRGB8888u8, R)

#define OVK_RGB_TO_YCBCR_ENTRIES(X) \
  X(ColorRGB565ToYCbCr420Planaru8, ColorRGB565ToYCbCr420Planaru8, ColorRGB565ToYCbCr420Planaru8, N) \
  X(ColorRGB565ToYCbCr420PseudoPlanaru8, ColorRGB565ToYCbCr420PseudoPlanaru8, ColorRGB565ToYCbCr420PseudoPlanaru8, N) \
  X(ColorRGB565ToYCbCr422Planaru8, ColorRGB565ToYCbCr422Planaru8, ColorRGB565ToYCbCr422Planaru8, N) \
  X(ColorRGB565ToYCbCr422PseudoPlanaru8, ColorRGB565ToYCbCr422PseudoPlanaru8, ColorRGB565ToYCbCr422PseudoPlanaru8, N) \
  X(ColorRGB565ToYCbCr444Planaru8, ColorRGB565ToYCbCr444Planaru8, ColorRGB565ToYCbCr444Planaru8, N) \
  X(ColorRGB565ToYCbCr444PseudoPlanaru8, ColorRGB565ToYCbCr444PseudoPlanaru8, ColorRGB565ToYCbCr444PseudoPlanaru8, N) \
  X(ColorRGB888ToYCbCr420Planaru8, ColorRGB888ToYCbCr420Planaru8, ColorRGB888ToYCbCr420Planaru8, N) \
  X(ColorRGB888ToYCbCr420PseudoPlanaru8, ColorRGB888ToYCbCr420PseudoPlanaru8, ColorRGB888ToYCbCr420PseudoPlanaru8, N) \
  X(ColorRGB888ToYCbCr422Planaru8, ColorRGB888ToYCbCr422Planaru8, ColorRGB888ToYCbCr422Planaru8, N) \
  X(ColorRGB888ToYCbCr422PseudoPlanaru8, ColorRGB888ToYCbCr422PseudoPlanaru8, ColorRGB888ToYCbCr422PseudoPlanaru8, N) \
  X(ColorRGB888ToYCbCr444Planaru8, ColorRGB888ToYCbCr444Planaru8, ColorRGB888ToYCbCr444Planaru8, N) \
  X(ColorRGB888ToYCbCr444PseudoPlanaru8, ColorRGB888ToYCbCr444PseudoPlanaru8, ColorRGB888ToYCbCr444PseudoPlanaru8, N) \
  X(ColorRGBA8888ToYCbCr420Planaru8, ColorRGBA8888ToYCbCr420Planaru8, ColorRGBA8888ToYCbCr420Planaru8, N) \
  X(ColorRGBA8888ToYCbCr420PseudoPlanaru8, ColorRGBA8888ToYCbCr420PseudoPlanaru8, ColorRGBA8888ToYCbCr420PseudoPlanaru8, N) \
  X(ColorRGBA8888ToYCbCr422Planaru8, ColorRGBA8888ToYCbCr422Planaru8, ColorRGBA8888ToYCbCr422Planaru8, N) \
  X(ColorRGBA8888ToYCbCr422PseudoPlanaru8, ColorRGBA8888ToYCbCr422PseudoPlanaru8, ColorRGBA8888ToYCbCr422PseudoPlanaru8, N) \
  X(ColorRGBA8888ToYCbCr444Planaru8, ColorRGBA8888ToYCbCr444Planaru8, ColorRGBA8888ToYCbCr444Planaru8, N) \
  X(ColorRGBA8888ToYCbCr444PseudoPlanaru8, ColorRGBA8888ToYCbCr444PseudoPlanaru8, ColorRGBA8888ToYCbCr444PseudoPlanaru8, N) \
  X(ColorRGB888toYCrCbu8, ColorRGB888toYCrCbu8, ColorRGB888toYCrCbu8, R) \
  X(ColorRGB888toYCrCbu8_v2, ColorRGB888toYCrCbu8, ColorRGB888toYCrCbu8, R) \
  X(ColorRGB888ToGrayu8, ColorRGB888ToGrayu8, ColorRGB888ToGrayu8, N)

// Inner-kernel slots: X(stem, Fn, vector).  The slot, an exported pointer of
// type Fn, is stem_; its portable routine is stemC and, with vector V, its
// vector routine ovkVector<stem_>() (a name cannot lose its trailing
// underscore by pasting, so the stem is what is listed).
#define OVK_INNER_KERNELS(X) OVK_RGB_TO_YCBCR_ROW_KERNELS(X) X(ScaleDownMNu8Core, ovkScaleDownMNRowFn, V)

#define OVK_RGB_TO_YCBCR_ROW_KERNELS(X) \
  X(rgb5652yuvp, ovkRgbToYCbCrPlanarRowFn, V) \
  X(rgb8882yuvp, ovkRgbToYCbCrPlanarRowFn, V) \
  X(rgba88882yuvp, ovkRgbToYCbCrPlanarRowFn, V) \
  X(rgb5652yyuvp, ovkRgbToYCbCrPlanarRowFn, V) \
  X(rgb8882yyuvp, ovkRgbToYCbCrPlanarRowFn, V) \
  X(rgba88882yyuvp, ovkRgbToYCbCrPlanarRowFn, V) \
  X(rgb5652y, ovkRgbToLumaRowFn, V) \
  X(rgb8882y, ovkRgbToLumaRowFn, V) \
  X(rgba88882y, ovkRgbToLumaRowFn, V) \
  X(rgb5652yuv, ovkRgbToYCbCrPseudoPlanarRowFn, V) \
  X(rgb8882yuv, ovkRgbToYCbCrPseudoPlanarRowFn, V) \
  X(rgba88882yuv, ovkRgbToYCbCrPseudoPlanarRowFn, V) \
  X(rgb5652yyuv, ovkRgbToYCbCrPseudoPlanarRowFn, V) \
  X(rgb8882yyuv, ovkRgbToYCbCrPseudoPlanarRowFn, V) \
  X(rgba88882yyuv, ovkRgbToYCbCrPseudoPlanarRowFn, V)

// Back-end forms of a group.
#define OVK_BACKENDS_NONE 0u
#define OVK_DSP_FORM 0x1u          // has a remote-DSP implementation
#define OVK_GPU_FORM 0x2u          // has a GPU implementation
#define OVK_DSP_LOW_POWER 0x4u     // low-power mode sends it to the DSP
#define OVK_DSP_PERFORMANCE 0x8u   // performance mode sends it to the DSP
#define OVK_DSP_OFFLOAD 0x10u      // CPU-offload mode sends it to the DSP
#define OVK_GPU_PERFORMANCE 0x20u  // performance mode sends it to the GPU
#define OVK_DSP_ANY_MODE (OVK_DSP_FORM | OVK_DSP_LOW_POWER | OVK_DSP_PERFORMANCE | OVK_DSP_OFFLOAD)

#endif
