/*
 * orvik.h - public C API of liborvikopt.
 *
 * Images are caller-owned: a pointer to the top-left pixel, a width and a
 * height in pixels and a stride in bytes between row starts.  Entry points
 * without a stride argument use the packed row size; in `_v2`/`_v3` entries a
 * stride of 0 also means "packed".  Source and destination never overlap.
 *
 * Call ovkSetOperationMode() once before the first operation: it fills the
 * function tables that every entry dispatches through.
 *
 * Every entry checks its arguments before it touches a buffer.  On a failed
 * check, entries without a result log "Assertion failed @<entry>:
 * <condition>" (error priority, tag "orvik_lib_log") and return; entries
 * returning ovkStatusCode return ORVIK_STATUS_BAD_PARAM without a log line.
 * Besides the condition documented with it, every entry refuses that way a
 * call in which a buffer would span 2^31 bytes or more ((rows - 1) x stride
 * + row bytes, counted without overflow) or an output stride is below its
 * row size (its rows would overlap, and the bytes left in them would depend
 * on the order of the writes); the condition logged is then
 * "output rows do not overlap && every buffer spans less than 2^31 bytes".
 */
#ifndef ORVIK_H
#define ORVIK_H

#include <stddef.h>
#include <stdint.h>

#if defined(_WIN32)
#define OVK_API __declspec(dllexport)
#else
#define OVK_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Status codes ------------------------------------------------------ */

typedef uint32_t ovkStatusCode;

#define ORVIK_STATUS_SUCCESS 0u
#define ORVIK_STATUS_FAILURE 1u
#define ORVIK_STATUS_REGION_ERROR 2u
#define ORVIK_STATUS_BAD_PARAM 3u
#define ORVIK_STATUS_NO_RESOURCES 5u
#define ORVIK_STATUS_UNSUPPORTED 6u
/* Internal: a back-end declined the call; the entry retries it on the vector
 * implementation, so callers only see it if that one declines too. */
#define ORVIK_STATUS_FALLBACK 0x8000u

/* ---- Border handling of the `_v3` filters --------------------------------- */

/* A plain integer, so that out-of-range values from callers stay defined. */
typedef uint32_t ovkBorderType;
#define ORVIK_BORDER_UNDEFINED 0u /* border pixels of dst are not written */
#define ORVIK_BORDER_CONSTANT 1u  /* missing taps read borderValue */
#define ORVIK_BORDER_REPLICATE 2u /* missing taps read the nearest edge pixel */

/* ---- Operation modes ------------------------------------------------------ */

#define ORVIK_OP_LOW_POWER 0u
#define ORVIK_OP_PERFORMANCE 1u
#define ORVIK_OP_CPU_OFFLOAD 2u
#define ORVIK_OP_CPU_PERFORMANCE 3u
#define ORVIK_OP_EXT_RDSP 0x80000400u
#define ORVIK_OP_EXT_GPU 0x80000020u

/* Fills the function tables and selects an implementation for every
 * operation.  Returns 0 on success, 999 on an ARM processor without
 * floating-point or vector unit, -1 for an unknown extended mode. */
OVK_API int32_t ovkSetOperationMode(uint32_t mode);
/* 0 selects ORVIK_OP_EXT_RDSP, 1 ORVIK_OP_EXT_GPU; returns 0 or 1 (failure). */
OVK_API int32_t ovkSetOperationModeExt(uint32_t option);
/* For clients that call back-end kernels through the remote pointers. */
OVK_API int32_t ovkSetOperationModeRemoteLib(uint32_t mode);
/* Ends DSP and GPU sessions; a later mode change brings them up again. */
OVK_API void ovkCleanUp(void);

/* ---- Utilities ------------------------------------------------------------ */

/* Copies "1.7.1" and its terminating zero; a length below 6 zero-fills. */
OVK_API void ovkGetVersion(char* buffer, unsigned int length);
/* Formats a message ("%4d| " line prefix when line != 0) and writes it to the
 * platform log under the base name of `file`.  Returns the formatted length. */
OVK_API int ovkLogAssert(const char* file, int line, int priority, const char* format, ...);
/* Wall-clock time in microseconds. */
OVK_API uint64_t ovkGetTime(void);

/* Outside Android, log lines go to this sink (default: stderr as
 * "<D|I|W|E>/<tag>: <message>").  Pass NULL to restore the default. */
typedef void (*ovkLogSink)(int priority, const char* tag, const char* message);
OVK_API void ovkSetLogSink(ovkLogSink sink);

/* ---- Hardware ------------------------------------------------------------- */

/* Hardware report: bit 1 probe done, 2 vector unit, 3 DSP ready, 5 GPU ready,
 * 7 floating-point unit, 8 architecture 7 or later, 11 supported board. */
OVK_API uint64_t ovkAvailableHardware(uint32_t mode);
OVK_API uint32_t ovkAvailableHWComponent(uint32_t mode);
OVK_API uint32_t ovk_check_only_cpu(void);
OVK_API int32_t ovkAvailableProcessors(void);
OVK_API int32_t ovkHasGPU(void);
/* Optional override library "/data/local/libovkopt.so". */
OVK_API int32_t ovkPlatformOptLoad(void);
OVK_API void* ovkPlatformOptGetFunc(const char* name);
OVK_API int32_t ovkPlatformOptClose(void);

/* ---- Memory --------------------------------------------------------------- */

OVK_API void* ovkMemAlloc(uint32_t size, uint32_t alignment);
OVK_API void ovkMemFree(void* ptr);
OVK_API void* ovkMemAlign(uint32_t size, uint32_t alignment);
OVK_API void ovkMemAlignFree(void* ptr);
OVK_API void ovkMemInit(void);
OVK_API int32_t ovkMemInitPreAlloc(uint32_t size);
OVK_API int32_t ovkMemDeInit(void);

/* Scratch buffers borrowed by the implementations; replaceable. */
typedef void* (*ovkGetScratchBufferAlignedFn)(uint32_t size, uint32_t alignment);
typedef void* (*ovkGetScratchBufferUnalignedFn)(uint32_t size);
typedef void (*ovkReleaseScratchBufferFn)(void* ptr);
OVK_API extern ovkGetScratchBufferAlignedFn ovkGetScratchBufferAligned_;
OVK_API extern ovkGetScratchBufferUnalignedFn ovkGetScratchBufferUnaligned_;
OVK_API extern ovkReleaseScratchBufferFn ovkReleaseScratchBuffer_;

/* ---- Block storage and sequences -------------------------------------------- */

typedef struct ovkMemBlock {
  struct ovkMemBlock* prev;
  struct ovkMemBlock* next;
} ovkMemBlock;

typedef struct ovkMemStorage {
  ovkMemBlock* bottom;  /* first block */
  ovkMemBlock* top;     /* last block */
  uint32_t blockSize;   /* bytes per block, links included (default 65408) */
  uint32_t freeSpace;   /* bytes left in the last block */
} ovkMemStorage;

typedef struct ovkSeq {
  uint32_t total;         /* element count */
  uint32_t elemSize;      /* bytes per element */
  uint8_t* blockMax;      /* end of the current block's element area */
  uint8_t* ptr;           /* write position */
  uint32_t elemsPerBlock;
  uint32_t headerSize;    /* offset of the data in a block */
  ovkMemStorage* storage;
} ovkSeq;

typedef struct ovkSeqReader {
  uint8_t* ptr;           /* read position */
  uint8_t* blockMax;      /* end of the current block's element area */
  ovkMemBlock* block;
  ovkSeq* seq;
} ovkSeqReader;

OVK_API void ovkInitMemStorage(ovkMemStorage* storage);
OVK_API int32_t ovkDeInitMemStorage(ovkMemStorage* storage);
OVK_API void* ovkAllocateMemBlock(ovkMemStorage* storage, int32_t size);
OVK_API int32_t ovkInitSeq(ovkSeq* seq, uint32_t elemSize, ovkMemStorage* storage);
OVK_API int32_t ovkClearSeq(ovkSeq* seq);
OVK_API int32_t ovkSeqPush(ovkSeq* seq, const void* element);
OVK_API void ovkSeqPushMulti(ovkSeq* seq, const void* elements, uint32_t count);
OVK_API void* ovkGetSeqElem(ovkSeq* seq, uint32_t index);
OVK_API void ovkSeqPopMulti(ovkSeq* seq, void* elements, uint32_t count);
OVK_API void ovkStartReadSeq(ovkSeq* seq, ovkSeqReader* reader);
OVK_API void ovkNextSeqElem(ovkSeqReader* reader, int32_t step);

/* ---- Smoothing filters ------------------------------------------------------ */

/*
 * 3x3 Gaussian, kernel (1 2 1)^T (1 2 1) / 16, truncating: interior pixels
 * (rows 1..height-2, columns 1..width-2) are (sum of weighted taps) >> 4.
 * blurBorder == 1 also writes the outermost rows and columns, each as the
 * weighted sum of the taps inside the image divided (truncating) by the sum of
 * their weights; any other value leaves them untouched.
 */
OVK_API void ovkFilterGaussian3x3u8(const uint8_t* src, uint32_t width, uint32_t height,
                                    uint8_t* dst, int32_t blurBorder);
OVK_API void ovkFilterGaussian3x3u8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                       uint32_t srcStride, uint8_t* dst, uint32_t dstStride,
                                       int32_t blurBorder);
/*
 * Same interior; the border pixels by borderType: UNDEFINED leaves them
 * untouched, CONSTANT reads borderValue for every tap outside the image,
 * REPLICATE reads the nearest edge pixel; both then shift by 4 like the
 * interior.  Returns ORVIK_STATUS_BAD_PARAM for a null pointer, a zero size
 * or an unknown border type.
 */
OVK_API ovkStatusCode ovkFilterGaussian3x3u8_v3(const uint8_t* src, uint32_t srcWidth,
                                                uint32_t srcHeight, uint32_t srcStride,
                                                uint8_t* dst, uint32_t dstStride,
                                                ovkBorderType borderType, uint8_t borderValue);

/*
 * 5x5 and 11x11 Gaussians, binomial kernels knl5x5 (sum 256, >> 8) and
 * knl11x11 (sum 1048576, >> 20), truncating.  Interior pixels are at least 2
 * (5x5) or 5 (11x11) pixels from every edge.  blurBorder == 1 also writes the
 * band of 2 (5) rows and columns along each edge, each pixel the weighted sum
 * of its in-image taps divided (truncating) by the sum of their weights; any
 * other value leaves the band untouched.
 */
OVK_API extern const int32_t knl5x5[25];
OVK_API extern const int32_t knl11x11[121];

OVK_API void ovkFilterGaussian5x5u8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst,
                                    int32_t blurBorder);
OVK_API void ovkFilterGaussian5x5u8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                       uint32_t srcStride, uint8_t* dst, uint32_t dstStride,
                                       int32_t blurBorder);
OVK_API void ovkFilterGaussian11x11u8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst,
                                      int32_t blurBorder);
OVK_API void ovkFilterGaussian11x11u8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                         uint32_t srcStride, uint8_t* dst, uint32_t dstStride,
                                         int32_t blurBorder);
/* Signed 16- and 32-bit 5x5 Gaussians: same weights, shift and blurBorder
 * rule; strides in bytes.  Negative sums round toward minus infinity (floor),
 * in the interior's shift and in the band's division alike.  An s16 image
 * narrower or lower than 5 pixels has no interior: all of it is band, written
 * only with blurBorder == 1. */
OVK_API void ovkFilterGaussian5x5s16(const int16_t* src, uint32_t width, uint32_t height, int16_t* dst,
                                     int32_t blurBorder);
OVK_API void ovkFilterGaussian5x5s16_v2(const int16_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                        uint32_t srcStride, int16_t* dst, uint32_t dstStride,
                                        int32_t blurBorder);
OVK_API void ovkFilterGaussian5x5s32(const int32_t* src, uint32_t width, uint32_t height, int32_t* dst,
                                     int32_t blurBorder);
OVK_API void ovkFilterGaussian5x5s32_v2(const int32_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                        uint32_t srcStride, int32_t* dst, uint32_t dstStride,
                                        int32_t blurBorder);

/*
 * 3x3 box (mean) filter: (sum of the nine taps * 7282 + 32768) >> 16.  Every
 * pixel is written.  Border taps outside the image read 0 in
 * ovkBoxFilter3x3u8 (so its border darkens), and by borderType in `_v2`:
 * UNDEFINED 0, CONSTANT borderValue, REPLICATE the nearest edge pixel; the
 * divisor stays nine.
 */
OVK_API void ovkBoxFilter3x3u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                               uint8_t* dst, uint32_t dstStride);
OVK_API ovkStatusCode ovkBoxFilter3x3u8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                           uint32_t srcStride, uint8_t* dst, uint32_t dstStride,
                                           ovkBorderType borderType, uint8_t borderValue);
/* 5x5 and 11x11 box filters: (sum * 2621 + 32768) >> 16 and
 * (sum * 542 + 32768) >> 16. */
OVK_API void ovkBoxFilter5x5u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                               uint8_t* dst, uint32_t dstStride);
OVK_API void ovkBoxFilter11x11u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                 uint8_t* dst, uint32_t dstStride);

/*
 * 3x3 median.  The first two generations write the interior only (rows and
 * columns 1 .. size-2; nothing when height < 3).  `_v3` then fills the border
 * by borderType: UNDEFINED leaves it, CONSTANT reads borderValue for missing
 * taps, REPLICATE the nearest edge pixel.
 */
OVK_API void ovkFilterMedian3x3u8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst);
OVK_API void ovkFilterMedian3x3u8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                     uint32_t srcStride, uint8_t* dst, uint32_t dstStride);
OVK_API ovkStatusCode ovkFilterMedian3x3u8_v3(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                              uint32_t srcStride, uint8_t* dst, uint32_t dstStride,
                                              ovkBorderType borderType, uint8_t borderValue);

/* ---- Gradients and edges ---------------------------------------------------- */

/*
 * 3x3 derivatives of 8-bit images.  Only the interior is computed: source
 * rows and columns 1 .. size-2; nothing at all for images narrower or lower
 * than 3, and the outermost rows and columns of planar and magnitude outputs
 * are not written.  With s(x, y) the source pixel:
 *   central differences  dx = s(x+1,y) - s(x-1,y), dy = s(x,y+1) - s(x,y-1);
 *   Sobel                dx = (column x+1) - (column x-1), each column
 *                        s(.,y-1) + 2 s(.,y) + s(.,y+1); dy likewise on rows;
 *   Scharr               the same with weights 3 10 3.
 * Interleaved outputs hold one (dx, dy) pair per interior pixel, dx first:
 * output row r (stride gradStride bytes) belongs to source row r+1 and holds
 * srcWidth-2 pairs, pair c for source column c+1.  Planar outputs are two
 * images of the source's size with the common stride dxyStride.  "Scaled"
 * s16/s8 outputs store the Sobel value >> 3 (floor, so -1 gives -1), f32
 * outputs the value * 0.125; central differences and Scharr are unscaled.
 * First-generation entries take no output stride and use the packed one; in
 * `_v2`/`_v3` entries an output stride of 0 means packed too.
 */
OVK_API void ovkImageGradientInterleaveds16(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                            uint32_t srcStride, int16_t* gradients);
OVK_API void ovkImageGradientInterleaveds16_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                               uint32_t srcStride, int16_t* gradients, uint32_t gradStride);
OVK_API void ovkImageGradientInterleavedf32(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                            uint32_t srcStride, float* gradients);
OVK_API void ovkImageGradientInterleavedf32_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                               uint32_t srcStride, float* gradients, uint32_t gradStride);
OVK_API void ovkImageGradientPlanars16(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                       uint32_t srcStride, int16_t* dx, int16_t* dy);
OVK_API void ovkImageGradientPlanars16_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                          uint32_t srcStride, int16_t* dx, int16_t* dy, uint32_t dxyStride);
OVK_API void ovkImageGradientPlanarf32(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                       uint32_t srcStride, float* dx, float* dy);
OVK_API void ovkImageGradientPlanarf32_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                          uint32_t srcStride, float* dx, float* dy, uint32_t dxyStride);

/* Sobel, scaled; `_v3` of the interleaved s16 form is unscaled (-1020..1020). */
OVK_API void ovkImageGradientSobelInterleaveds16(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                 uint32_t srcStride, int16_t* gradients);
OVK_API void ovkImageGradientSobelInterleaveds16_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                    uint32_t srcStride, int16_t* gradients, uint32_t gradStride);
OVK_API void ovkImageGradientSobelInterleaveds16_v3(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                    uint32_t srcStride, int16_t* gradients, uint32_t gradStride);
OVK_API void ovkImageGradientSobelInterleavedf32(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                 uint32_t srcStride, float* gradients);
OVK_API void ovkImageGradientSobelInterleavedf32_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                    uint32_t srcStride, float* gradients, uint32_t gradStride);
OVK_API void ovkImageGradientSobelPlanars16(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                            uint32_t srcStride, int16_t* dx, int16_t* dy);
OVK_API void ovkImageGradientSobelPlanars16_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                               uint32_t srcStride, int16_t* dx, int16_t* dy, uint32_t dxyStride);
OVK_API void ovkImageGradientSobelPlanars8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                           uint32_t srcStride, int8_t* dx, int8_t* dy);
OVK_API void ovkImageGradientSobelPlanars8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                              uint32_t srcStride, int8_t* dx, int8_t* dy, uint32_t dxyStride);
OVK_API void ovkImageGradientSobelPlanarf32(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                            uint32_t srcStride, float* dx, float* dy);
OVK_API void ovkImageGradientSobelPlanarf32_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                               uint32_t srcStride, float* dx, float* dy, uint32_t dxyStride);
/* Sobel on a float image (srcStride in bytes), scaled by 0.125; each column
 * sum is evaluated as (s(.,y-1) + 2 s(.,y)) + s(.,y+1) in float, subnormals
 * kept.  Every NaN result is stored as the quiet NaN 0x7FC00000, whatever
 * NaNs the source held, so the bytes are the same on every processor. */
OVK_API void ovkImageGradientSobelPlanarf32f32(const float* src, uint32_t srcWidth, uint32_t srcHeight,
                                               uint32_t srcStride, float* dx, float* dy);
OVK_API void ovkImageGradientSobelPlanarf32f32_v2(const float* src, uint32_t srcWidth, uint32_t srcHeight,
                                                  uint32_t srcStride, float* dx, float* dy, uint32_t dxyStride);

/* Scharr, unscaled (-4080..4080), interleaved; gradStride 0 means packed. */
OVK_API void ovkImageGradientScharrInterleaveds16(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                  uint32_t srcStride, int16_t* gradients, uint32_t gradStride);

/* Sobel magnitude: min(|dx| + |dy|, 255) of the unscaled Sobel gradients,
 * interior only. */
OVK_API void ovkFilterSobel3x3u8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst);
OVK_API void ovkFilterSobel3x3u8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                    uint32_t srcStride, uint8_t* dst, uint32_t dstStride);

/*
 * Canny edge detector.  Unscaled 3x3 Sobel gradients (as above, 0 on the
 * outermost rows and columns) and their L1 magnitude m = |dx| + |dy|.  The
 * gradient direction is quantised to horizontal, vertical or one of the two
 * diagonals at 22.5 degrees from the axes; a pixel survives suppression when
 * m > low, m is greater than its neighbour on the left (horizontal), above
 * (vertical) or above on that diagonal, and not less than the opposite
 * neighbour.  Survivors with m > high are edges; survivors with m <= high
 * become edges when 8-connected through survivors to an edge.  Every pixel of
 * dst is written: 255 for edges, 0 elsewhere (the outermost rows and columns
 * are always 0).  Thresholds are compared with m (0 .. 2040).  The working
 * memory, about 7 bytes per pixel (11 without caller gradient buffers), comes
 * from the scratch pool; when it has no room, dst is left untouched.
 * `_v3` also leaves dx and dy in the caller's planes gx and gy (common stride
 * gradStride bytes, 0 meaning 2 * srcWidth); with either of them null they
 * stay internal.  ovkFilterCannyu8 is the same detector.
 */
OVK_API void ovkFilterCanny3x3u8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst, int32_t low,
                                 int32_t high);
OVK_API void ovkFilterCanny3x3u8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                    uint8_t* dst, uint32_t dstStride, int32_t low, int32_t high);
OVK_API void ovkFilterCanny3x3u8_v3(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                    uint8_t* dst, uint32_t dstStride, int16_t* gx, int16_t* gy, uint32_t gradStride,
                                    int32_t low, int32_t high);
OVK_API void ovkFilterCannyu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                              uint8_t* dst, uint32_t dstStride, int32_t low, int32_t high);

/* ---- Colour conversion: YCbCr to RGB ------------------------------------------ */

/* Luma/chroma planes to packed RGB565, RGB888 or RGBA8888. */

/*
 * The planar and pseudo-planar family.  Planar inputs have Y, Cb and Cr
 * planes; pseudo-planar ones a Y plane and one plane of Cb, Cr pairs (Cb
 * first).  444 has a chroma sample per pixel (a pseudo-planar row of
 * 2 x width bytes), 422 one per two columns, 420 one per 2x2 block (planar
 * chroma rows of (width + 1) / 2 bytes, pseudo-planar ones of width bytes).
 * Per pixel, with u = Cb - 128 and v = Cr - 128, each channel clamped to
 * 0..255: R = (256 Y + 128 + 359 v) >> 8, G = (256 Y + 128 - 88 u - 183 v) >> 8,
 * B = (256 Y + 128 + 454 u) >> 8.  RGB565 is a little-endian word of
 * R >> 3 (bits 0-4), G >> 2 (bits 5-10) and B >> 3 (bits 11-15); RGBA8888
 * has alpha 255.  Strides are in bytes; 0 means the minimal stride: width
 * for Y, the chroma row size above, width x 2, 3 or 4 for the output.
 * An odd width converts its last column with the chroma of its own pair; a
 * pseudo-planar row holds only the Cb of that pair, its Cr is read from the
 * byte after the row, except on the last chroma row, where it is taken as
 * 128.  An odd 420 height converts its last row with the last chroma row.
 * The 422 and 420 members end the process on a width of 1 ("length > 1");
 * ovkColorYCbCr422PseudoPlanarToRGB888u8 rejects it at the entry instead.
 */
OVK_API void ovkColorYCbCr444PlanarToRGB565u8(const uint8_t* srcY, const uint8_t* srcCb, const uint8_t* srcCr,
                                              uint32_t srcWidth, uint32_t srcHeight, uint32_t srcYStride,
                                              uint32_t srcCbStride, uint32_t srcCrStride, uint8_t* dst,
                                              uint32_t dstStride);
OVK_API void ovkColorYCbCr444PlanarToRGB888u8(const uint8_t* srcY, const uint8_t* srcCb, const uint8_t* srcCr,
                                              uint32_t srcWidth, uint32_t srcHeight, uint32_t srcYStride,
                                              uint32_t srcCbStride, uint32_t srcCrStride, uint8_t* dst,
                                              uint32_t dstStride);
OVK_API void ovkColorYCbCr444PlanarToRGBA8888u8(const uint8_t* srcY, const uint8_t* srcCb, const uint8_t* srcCr,
                                                uint32_t srcWidth, uint32_t srcHeight, uint32_t srcYStride,
                                                uint32_t srcCbStride, uint32_t srcCrStride, uint8_t* dst,
                                                uint32_t dstStride);
OVK_API void ovkColorYCbCr422PlanarToRGB565u8(const uint8_t* srcY, const uint8_t* srcCb, const uint8_t* srcCr,
                                              uint32_t srcWidth, uint32_t srcHeight, uint32_t srcYStride,
                                              uint32_t srcCbStride, uint32_t srcCrStride, uint8_t* dst,
                                              uint32_t dstStride);
OVK_API void ovkColorYCbCr422PlanarToRGB888u8(const uint8_t* srcY, const uint8_t* srcCb, const uint8_t* srcCr,
                                              uint32_t srcWidth, uint32_t srcHeight, uint32_t srcYStride,
                                              uint32_t srcCbStride, uint32_t srcCrStride, uint8_t* dst,
                                              uint32_t dstStride);
OVK_API void ovkColorYCbCr422PlanarToRGBA8888u8(const uint8_t* srcY, const uint8_t* srcCb, const uint8_t* srcCr,
                                                uint32_t srcWidth, uint32_t srcHeight, uint32_t srcYStride,
                                                uint32_t srcCbStride, uint32_t srcCrStride, uint8_t* dst,
                                                uint32_t dstStride);
OVK_API void ovkColorYCbCr420PlanarToRGB565u8(const uint8_t* srcY, const uint8_t* srcCb, const uint8_t* srcCr,
                                              uint32_t srcWidth, uint32_t srcHeight, uint32_t srcYStride,
                                              uint32_t srcCbStride, uint32_t srcCrStride, uint8_t* dst,
                                              uint32_t dstStride);
OVK_API void ovkColorYCbCr420PlanarToRGB888u8(const uint8_t* srcY, const uint8_t* srcCb, const uint8_t* srcCr,
                                              uint32_t srcWidth, uint32_t srcHeight, uint32_t srcYStride,
                                              uint32_t srcCbStride, uint32_t srcCrStride, uint8_t* dst,
                                              uint32_t dstStride);
OVK_API void ovkColorYCbCr420PlanarToRGBA8888u8(const uint8_t* srcY, const uint8_t* srcCb, const uint8_t* srcCr,
                                                uint32_t srcWidth, uint32_t srcHeight, uint32_t srcYStride,
                                                uint32_t srcCbStride, uint32_t srcCrStride, uint8_t* dst,
                                                uint32_t dstStride);
OVK_API void ovkColorYCbCr444PseudoPlanarToRGB565u8(const uint8_t* srcY, const uint8_t* srcC, uint32_t srcWidth,
                                                    uint32_t srcHeight, uint32_t srcYStride, uint32_t srcCStride,
                                                    uint8_t* dst, uint32_t dstStride);
OVK_API void ovkColorYCbCr444PseudoPlanarToRGB888u8(const uint8_t* srcY, const uint8_t* srcC, uint32_t srcWidth,
                                                    uint32_t srcHeight, uint32_t srcYStride, uint32_t srcCStride,
                                                    uint8_t* dst, uint32_t dstStride);
OVK_API void ovkColorYCbCr444PseudoPlanarToRGBA8888u8(const uint8_t* srcY, const uint8_t* srcC, uint32_t srcWidth,
                                                      uint32_t srcHeight, uint32_t srcYStride, uint32_t srcCStride,
                                                      uint8_t* dst, uint32_t dstStride);
OVK_API void ovkColorYCbCr422PseudoPlanarToRGB565u8(const uint8_t* srcY, const uint8_t* srcC, uint32_t srcWidth,
                                                    uint32_t srcHeight, uint32_t srcYStride, uint32_t srcCStride,
                                                    uint8_t* dst, uint32_t dstStride);
OVK_API void ovkColorYCbCr422PseudoPlanarToRGB888u8(const uint8_t* srcY, const uint8_t* srcC, uint32_t srcWidth,
                                                    uint32_t srcHeight, uint32_t srcYStride, uint32_t srcCStride,
                                                    uint8_t* dst, uint32_t dstStride);
OVK_API void ovkColorYCbCr422PseudoPlanarToRGBA8888u8(const uint8_t* srcY, const uint8_t* srcC, uint32_t srcWidth,
                                                      uint32_t srcHeight, uint32_t srcYStride, uint32_t srcCStride,
                                                      uint8_t* dst, uint32_t dstStride);
OVK_API void ovkColorYCbCr420PseudoPlanarToRGB565u8(const uint8_t* srcY, const uint8_t* srcC, uint32_t srcWidth,
                                                    uint32_t srcHeight, uint32_t srcYStride, uint32_t srcCStride,
                                                    uint8_t* dst, uint32_t dstStride);
OVK_API void ovkColorYCbCr420PseudoPlanarToRGB888u8(const uint8_t* srcY, const uint8_t* srcC, uint32_t srcWidth,
                                                    uint32_t srcHeight, uint32_t srcYStride, uint32_t srcCStride,
                                                    uint8_t* dst, uint32_t dstStride);
OVK_API void ovkColorYCbCr420PseudoPlanarToRGBA8888u8(const uint8_t* srcY, const uint8_t* srcC, uint32_t srcWidth,
                                                      uint32_t srcHeight, uint32_t srcYStride, uint32_t srcCStride,
                                                      uint8_t* dst, uint32_t dstStride);

/*
 * Camera frames to RGBA8888 (alpha 255): a luma plane followed by a plane of
 * Cr, Cb pairs (Cr first) at src + srcYStride x srcHeight, one pair per 2x2
 * block.  Per pixel, with y = max(Y - 16, 0) x 1192, u = Cb - 128 and
 * v = Cr - 128: R = y + 1634 v, G = y - 833 v - 400 u, B = y + 2066 u, each
 * clamped to 0..262143 and shifted right by 10.  ovkColorYUV420toRGB8888u8
 * is the same with both source strides width and an output stride of
 * width x 4.  Odd widths and heights follow the 420 rule above, the byte past
 * the last chroma row (here the Cb) being taken as 128.
 */
OVK_API void ovkColorYCrCb420PseudoPlanarToRGB8888u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                     uint32_t srcYStride, uint32_t srcCStride, uint8_t* dst,
                                                     uint32_t dstStride);
OVK_API void ovkColorYUV420toRGB8888u8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst);

/*
 * Camera frames to RGB565: a packed luma plane followed at src + width x height
 * by a plane of Cb, Cr pairs (stride width), one pair per 2x2 block.  With
 * y = 298 Y - 4768, u = Cb - 128 and v = Cr - 128: R = (y + 409 v) >> 8,
 * G = (y - 100 u - 208 v) >> 8, B = (y + 517 u) >> 8, clamped to 0..255.
 * Output stride width x 2.  Rotate180 writes source pixel (x, y) to
 * (width - 1 - x, height - 1 - y).  The width is expected to be even; an odd
 * one converts its last column alone (Cr past the last chroma row taken as
 * 128); odd heights follow the 420 rule above.
 */
OVK_API void ovkColorYUV420toRGB565u8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst);
OVK_API void ovkColorYUV420toRGB565u8Rotate180(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst);

/*
 * Block-ordered data to packed RGB888 (stride width x 3).  src holds units
 * in raster order, each its 8x8 luma blocks (left to right, then top to
 * bottom), one 8x8 Cb and one 8x8 Cr block: H1V1 units are 8x8 pixels,
 * H2V1 16x8, H1V2 8x16 and H2V2 16x16, chroma subsampled by 2 along each
 * doubled side.  With cb = 2 Cb - 255 and cr = 2 Cr - 255:
 * R = Y + ((22970 cr + 16384) >> 15), G = Y + ((-5638 cb - 11700 cr + 16384) >> 15),
 * B = Y + ((29032 cb + 16384) >> 15), clamped to 0..255.  Units at the
 * right and bottom edges convert only the pixels inside the image.
 */
OVK_API void ovkColorYCrCbH1V1toRGB888u8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst);
OVK_API void ovkColorYCrCbH2V1toRGB888u8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst);
OVK_API void ovkColorYCrCbH1V2toRGB888u8(const uint8_t* ysrc, uint32_t width, uint32_t height, uint8_t* dst);
OVK_API void ovkColorYCrCbH2V2toRGB888u8(const uint8_t* y_src, uint32_t width, uint32_t height, uint8_t* dst);

/* ---- Colour conversion: RGB to YCbCr and gray ---------------------------------- */

/* Packed RGB565, RGB888 or RGBA8888 to luma/chroma planes, or to gray. */

/*
 * Family arithmetic (8 fractional bits), with byte 0 of a pixel read as B,
 * byte 1 as G, byte 2 as R (byte 3 of RGBA8888 ignored):
 *   Y  = (77 R + 150 G + 29 B + 128) >> 8
 *   Cb = min(((128 B - 85 G - 43 R + 128) >> 8) + 128, 255)
 *   Cr = min(((128 R - 107 G - 21 B + 128) >> 8) + 128, 255)
 * with arithmetic (flooring) shifts.  RGB565 pixels are little-endian 16-bit
 * words, B in the low 5 bits, expanded by shifting alone: B = (p & 31) << 3,
 * G = ((p >> 5) & 63) << 2, R = (p >> 11) << 3.
 * Chroma is sampled, never averaged: 4:2:2 and 4:2:0 take it from the pixel at
 * each even column (4:2:0: of each even row).  Pseudo-planar chroma is one
 * plane of Cb, Cr byte pairs.
 * A zero stride means the default: width for Y; width (4:4:4) or width / 2
 * rounded down (4:2:2, 4:2:0) for planar chroma; 2 x width (4:4:4) or width
 * for pseudo-planar chroma; the packed row (2, 3 or 4 bytes a pixel) for src.
 * Odd widths: 4:2:2 writes nothing at all, 4:2:0 writes only the luma of the
 * odd rows.  Odd heights in 4:2:0: the last row is converted as an even row,
 * nothing below the image is touched.
 */
OVK_API void ovkColorRGB565ToYCbCr444Planaru8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                              uint32_t srcStride, uint8_t* dstY, uint8_t* dstCb, uint8_t* dstCr,
                                              uint32_t dstYStride, uint32_t dstCbStride, uint32_t dstCrStride);
OVK_API void ovkColorRGB565ToYCbCr422Planaru8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                              uint32_t srcStride, uint8_t* dstY, uint8_t* dstCb, uint8_t* dstCr,
                                              uint32_t dstYStride, uint32_t dstCbStride, uint32_t dstCrStride);
OVK_API void ovkColorRGB565ToYCbCr420Planaru8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                              uint32_t srcStride, uint8_t* dstY, uint8_t* dstCb, uint8_t* dstCr,
                                              uint32_t dstYStride, uint32_t dstCbStride, uint32_t dstCrStride);
OVK_API void ovkColorRGB888ToYCbCr444Planaru8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                              uint32_t srcStride, uint8_t* dstY, uint8_t* dstCb, uint8_t* dstCr,
                                              uint32_t dstYStride, uint32_t dstCbStride, uint32_t dstCrStride);
OVK_API void ovkColorRGB888ToYCbCr422Planaru8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                              uint32_t srcStride, uint8_t* dstY, uint8_t* dstCb, uint8_t* dstCr,
                                              uint32_t dstYStride, uint32_t dstCbStride, uint32_t dstCrStride);
OVK_API void ovkColorRGB888ToYCbCr420Planaru8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                              uint32_t srcStride, uint8_t* dstY, uint8_t* dstCb, uint8_t* dstCr,
                                              uint32_t dstYStride, uint32_t dstCbStride, uint32_t dstCrStride);
OVK_API void ovkColorRGBA8888ToYCbCr444Planaru8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                uint32_t srcStride, uint8_t* dstY, uint8_t* dstCb, uint8_t* dstCr,
                                                uint32_t dstYStride, uint32_t dstCbStride, uint32_t dstCrStride);
OVK_API void ovkColorRGBA8888ToYCbCr422Planaru8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                uint32_t srcStride, uint8_t* dstY, uint8_t* dstCb, uint8_t* dstCr,
                                                uint32_t dstYStride, uint32_t dstCbStride, uint32_t dstCrStride);
OVK_API void ovkColorRGBA8888ToYCbCr420Planaru8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                uint32_t srcStride, uint8_t* dstY, uint8_t* dstCb, uint8_t* dstCr,
                                                uint32_t dstYStride, uint32_t dstCbStride, uint32_t dstCrStride);
OVK_API void ovkColorRGB565ToYCbCr444PseudoPlanaru8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                    uint32_t srcStride, uint8_t* dstY, uint8_t* dstC,
                                                    uint32_t dstYStride, uint32_t dstCStride);
OVK_API void ovkColorRGB565ToYCbCr422PseudoPlanaru8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                    uint32_t srcStride, uint8_t* dstY, uint8_t* dstC,
                                                    uint32_t dstYStride, uint32_t dstCStride);
OVK_API void ovkColorRGB565ToYCbCr420PseudoPlanaru8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                    uint32_t srcStride, uint8_t* dstY, uint8_t* dstC,
                                                    uint32_t dstYStride, uint32_t dstCStride);
OVK_API void ovkColorRGB888ToYCbCr444PseudoPlanaru8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                    uint32_t srcStride, uint8_t* dstY, uint8_t* dstC,
                                                    uint32_t dstYStride, uint32_t dstCStride);
OVK_API void ovkColorRGB888ToYCbCr422PseudoPlanaru8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                    uint32_t srcStride, uint8_t* dstY, uint8_t* dstC,
                                                    uint32_t dstYStride, uint32_t dstCStride);
OVK_API void ovkColorRGB888ToYCbCr420PseudoPlanaru8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                    uint32_t srcStride, uint8_t* dstY, uint8_t* dstC,
                                                    uint32_t dstYStride, uint32_t dstCStride);
OVK_API void ovkColorRGBA8888ToYCbCr444PseudoPlanaru8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                      uint32_t srcStride, uint8_t* dstY, uint8_t* dstC,
                                                      uint32_t dstYStride, uint32_t dstCStride);
OVK_API void ovkColorRGBA8888ToYCbCr422PseudoPlanaru8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                      uint32_t srcStride, uint8_t* dstY, uint8_t* dstC,
                                                      uint32_t dstYStride, uint32_t dstCStride);
OVK_API void ovkColorRGBA8888ToYCbCr420PseudoPlanaru8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                      uint32_t srcStride, uint8_t* dstY, uint8_t* dstC,
                                                      uint32_t dstYStride, uint32_t dstCStride);

/*
 * Interleaved Y, Cr, Cb bytes (15 fractional bits), byte 0 of a pixel read as
 * R, byte 2 as B:
 *   Y  = (9798 R + 19235 G + 3736 B + 16384) >> 15
 *   Cr = min(128 + ((16384 R - 13720 G - 2664 B + 16384) >> 15), 255)
 *   Cb = min(128 + ((-5529 R - 10855 G + 16384 B + 16384) >> 15), 255)
 * The first generation uses packed rows (3 x width bytes); in `_v2` a zero
 * stride means packed.
 */
OVK_API void ovkColorRGB888toYCrCbu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint8_t* dst);
OVK_API void ovkColorRGB888toYCrCbu8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                        uint32_t srcStride, uint8_t* dst, uint32_t dstStride);

/*
 * Gray = (19595 byte0 + 38469 byte1 + 7471 byte2 + 32768) >> 16, byte 0 read
 * as R.  A zero stride means packed (3 x width for src, width for dst).
 */
OVK_API void ovkColorRGB888ToGrayu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                    uint8_t* dst, uint32_t dstStride);


/* ---- Scaling ------------------------------------------------------------------ */

/*
 * Single-channel 8-bit planes.  Destination sizes are given by the entry
 * (fixed ratios) or by the caller; source and destination must not overlap.
 * Entries returning int32_t return -1, without a log line, when their
 * condition fails; the others log it as described at the top of this file.
 *
 * How these differ from OpenCV's resize (cv::resize):
 *   - the fixed-ratio box reductions truncate ((sum) >> 2, >> 4) where
 *     INTER_AREA rounds;
 *   - ovkScaleDownNNu8 samples column ((x * R) >> S), a reciprocal of
 *     dstWidth / srcWidth rounded in 32 bits, so from the left edge (3 to 2
 *     samples columns 0 and 1), where INTER_NEAREST takes floor(x * scale);
 *   - ovkScaleDownBLu8 is centre-aligned like INTER_LINEAR but with Q11
 *     weights rounded from single precision, rounding half up at the end;
 *   - ovkScaleDownMNu8 averages whole source pixels per destination pixel
 *     (no fractional coverage) and divides through a reciprocal table that
 *     gives S - 1 for a block of one pixel; ovkScaleu8 with
 *     ORVIK_INTERPOLATION_AREA is the exact fractional-area average;
 *   - the Gaussian reductions centre output (x, y) on source (2x, 2y), as
 *     pyrDown does, but renormalise dropped taps instead of reflecting them;
 *     ovkScaleUpBy2Gaussian5x5u8 reflects at the top and left and replicates
 *     at the bottom and right, where pyrUp reflects on every side.
 */

/* mn_div_table[n] = ceil(2^32 / n) for 2 <= n <= 400; entries 0 and 1 are
 * 0xFFFFFFFF, so (S * mn_div_table[1]) >> 32 is S - 1 for S >= 1. */
OVK_API extern const uint32_t mn_div_table[401];

/* Significant bits of a 16-bit value (0 for 0). */
OVK_API uint32_t ovkGetNumBits(uint16_t value);
/* Trailing zero bits of a 16-bit value, at most 15 (15 for 0). */
OVK_API uint32_t ovkGetMaxNumTrail0s(uint16_t value);

/*
 * Halving: dst(x, y) = (s(2x, 2y) + s(2x+1, 2y) + s(2x, 2y+1) + s(2x+1, 2y+1))
 * >> 2 (truncated) on width/2 x height/2.  Width and height must be even and
 * non-zero.  ovkScaleDownBy2u8 is packed (stride width, dst stride width/2);
 * in _v2 a zero stride means packed, srcStride >= srcWidth and dstStride >=
 * srcWidth/2.  Returns 0, or -1 on a refused call.
 */
OVK_API int32_t ovkScaleDownBy2u8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst);
OVK_API int32_t ovkScaleDownBy2u8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                     uint8_t* dst, uint32_t dstStride);

/* Quartering: the truncated mean (sum >> 4) of each 4x4 block; sizes
 * multiples of 4.  Otherwise as the halving entries. */
OVK_API int32_t ovkScaleDownBy4u8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst);
OVK_API int32_t ovkScaleDownBy4u8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                     uint8_t* dst, uint32_t dstStride);

/*
 * 3 to 2: each whole 3x3 block becomes a 2x2 block, corner weights 9 3 3 1
 * around the block's centre pixel, truncated (>> 4).  Partial blocks at the
 * right and bottom are skipped: dst is (srcWidth/3)*2 x (srcHeight/3)*2.
 * Zero strides mean packed.  Returns 0, 1 (nothing written) for an image
 * narrower or lower than 3, -1 on a refused call.
 */
OVK_API int32_t ovkScaleDown3To2u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                   uint8_t* dst, uint32_t dstStride);

/*
 * Nearest neighbour: column min(srcWidth - 1, ((x * R) >> S) & 0xFFFF) of
 * a 32-bit reciprocal R of dstWidth / srcWidth (rows likewise); equal sizes
 * copy.  The reciprocal is built from the low 16 bits of the sizes, so sizes
 * above 65535 sample unevenly (never outside the image).  Any sizes; zero
 * strides mean packed.  Returns 0, 1 (nothing written) when the reciprocal
 * does not fit, -1 on a refused call.
 */
OVK_API int32_t ovkScaleDownNNu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                 uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride);

/*
 * Integer-factor box: fx = width/dstWidth, fy = height/dstHeight must be
 * whole ("Error at <entry>" otherwise, also for a zero destination size);
 * dst = (sum of the fy x fx block) / (fx fy), truncated.  The first
 * generation is packed; in _v2 strides are taken as given.
 */
OVK_API void ovkScaleDownu8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst, uint32_t dstWidth,
                            uint32_t dstHeight);
OVK_API void ovkScaleDownu8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                               uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride);

/*
 * Bilinear, centre-aligned: sx = (x + 0.5) / (dstWidth / srcWidth) - 0.5 in
 * single precision, clamped to [0, srcWidth - 1]; Q11 weights
 * trunc(f * 2048 + 0.5) and trunc((1 - f) * 2048 + 0.5); each source row is
 * first interpolated horizontally, then dst = (w0y h0 + w1y h1 + 2^21) >> 22.
 * Strides as given.  Meant for reduction but accepts any sizes.  Without
 * scratch memory the process ends (logged "...@<line>: buffer Assertion
 * failed").
 */
OVK_API void ovkScaleDownBLu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                              uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride);

/*
 * M-by-N area reduction: every source pixel belongs to one destination
 * pixel; destination column k takes source columns [E(k-1), E(k)) with
 * E(k) = ceil((k + 1) srcWidth / dstWidth), rows likewise, and the block sum
 * S of its r x c pixels becomes (S * mn_div_table[r c]) >> 32.  The ratio
 * on each axis must stay below 20.  A destination larger than the source on
 * an axis takes, for each destination column whose block would be empty, the
 * single source column its block ends at (so enlarging repeats pixels, each
 * one as S - 1).  Zero strides mean packed.  Without scratch memory nothing
 * is written.
 */
OVK_API void ovkScaleDownMNu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                              uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride);
/* The same on two interleaved channels (CbCr pairs): widths count pairs,
 * strides are bytes, each channel reduced on its own. */
OVK_API void ovkScaleDownMNInterleaveu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                        uint32_t srcStride, uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight,
                                        uint32_t dstStride);

/*
 * Gaussian 5x5 reduction by 2: dst(x, y) is centred on source (2x, 2y),
 * kernel (1 4 6 4 1)^T (1 4 6 4 1).  Inside, (sum + 128) >> 8.  Taps outside
 * the image are dropped and the sum W of the kept weights renormalised:
 * floor(0.5 + sum * k(W)) in double precision, k(W) being 1/W rounded to
 * single precision (0.0082644625 for 11 x 11 and so on).  dst is
 * width/2 x height/2.  The first generation needs even sizes ("Error at
 * <entry>" otherwise); _v2 also takes odd sizes, where the last column and
 * row are inner ones (its centre's taps all lie in the image), and a size of
 * 2 keeps the taps 6 4 (W = 10, k(100) = 0.0099999998 for a 2x2 image).
 */
OVK_API void ovkScaleDownBy2Gaussian5x5u8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst);
OVK_API void ovkScaleDownBy2Gaussian5x5u8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                             uint32_t srcStride, uint8_t* dst, uint32_t dstStride);

/*
 * The same kernel on 32-bit floats (even sizes; strides in bytes, zero
 * meaning packed in _v2).  Per output: the kept taps of each of the five
 * columns summed top to bottom (s0 + 4 s1 + 6 s2 + 4 s3 + s4), those column
 * sums left to right the same way, times (float)(1 / W).  Every NaN result
 * is stored as the quiet NaN 0x7FC00000.
 */
OVK_API void ovkScaleDownBy2Gaussian5x5f32(const float* srcImg, uint32_t width, uint32_t height, float* dst);
OVK_API void ovkScaleDownBy2Gaussian5x5f32_v2(const float* src, uint32_t srcWidth, uint32_t srcHeight,
                                              uint32_t srcStride, float* dst, uint32_t dstStride);

/*
 * Gaussian 3x3 reduction by 2: dst(x, y) centred on source (2x, 2y), kernel
 * (1 2 1)^T (1 2 1), (sum + 8) >> 4, the row or column before the first
 * replicated (the one after the last always exists).  dst is srcWidth/2 x
 * srcHeight/2; both sizes at least 2; zero strides mean packed.
 */
OVK_API void ovkScaleDownBy2Gaussian3x3u8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                          uint32_t srcStride, uint8_t* dst, uint32_t dstStride);

/*
 * Gaussian enlargement by 2 to 2 srcWidth x 2 srcHeight, total weight 64,
 * (sum + 32) >> 6.  Even rows use c = s(y-1) + 6 s(y) + s(y+1), odd rows
 * 4 d with d = s(y) + s(y+1); even columns v(x-1) + 6 v(x) + v(x+1), odd
 * columns 4 v(x) + 4 v(x+1).  Row and column -1 reflect (read 1; 0 for a
 * single line), the line after the last repeats the last.  Zero strides in
 * _v2 mean packed (srcWidth and 2 srcWidth).
 */
OVK_API void ovkScaleUpBy2Gaussian5x5u8(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst);
OVK_API void ovkScaleUpBy2Gaussian5x5u8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                           uint32_t srcStride, uint8_t* dst, uint32_t dstStride);

/*
 * Polyphase resize, meant for enlargement (any sizes are accepted):
 * separable 4-tap Catmull-Rom (a = -0.5) in 32 phases with Q7 weights that
 * sum to 128, centre-aligned (source position (x + 0.5) srcWidth / dstWidth
 * - 0.5 rounded to 1/32), edge pixels replicated, (sum + 8192) >> 14 clamped
 * to 0..255.  Zero strides mean packed.  The interleaved form treats two
 * channels (widths in pairs) independently.
 */
OVK_API void ovkScaleUpPolyu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                              uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride);
OVK_API void ovkScaleUpPolyInterleaveu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                        uint32_t srcStride, uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight,
                                        uint32_t dstStride);

/* Interpolation of ovkScaleu8. */
typedef uint32_t ovkInterpolationType;
/* Exact area average: each output pixel is the mean of the source area it
 * covers, fractional pixels weighted by their coverage, rounded half up. */
#define ORVIK_INTERPOLATION_AREA 0u
/* Centre-aligned nearest: column floor((2x + 1) srcWidth / (2 dstWidth)). */
#define ORVIK_INTERPOLATION_NEAREST 1u
/* Centre-aligned bilinear: position ((2x + 1) srcWidth - dstWidth) / (2
 * dstWidth) in 1/256 steps (floored, clamped to the image), Q8 weights,
 * (sum + 32768) >> 16. */
#define ORVIK_INTERPOLATION_BILINEAR 2u

/*
 * General resize to any size in both directions.  Computed in integers, so
 * results are the same on every processor; a constant image stays constant.
 * ovkScaleu8 takes strides as given (at least the row); ovkScaleu8_v2 also
 * reads zero strides as packed.  Returns ORVIK_STATUS_SUCCESS, or
 * ORVIK_STATUS_BAD_PARAM for a null pointer, a zero size, a short stride or
 * an unknown interpolation.
 */
OVK_API ovkStatusCode ovkScaleu8(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                 uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride,
                                 ovkInterpolationType interpolation);
OVK_API ovkStatusCode ovkScaleu8_v2(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                    uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride,
                                    ovkInterpolationType interpolation);

/* ---- Kernel pointers --------------------------------------------------------- */

/* Kernel types of the gradients: the `_v2` argument lists. */
typedef void (*ovkImageGradientInterleaveds16Fn)(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                 uint32_t srcStride, int16_t* gradients, uint32_t gradStride);
typedef void (*ovkImageGradientInterleavedf32Fn)(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                 uint32_t srcStride, float* gradients, uint32_t gradStride);
typedef void (*ovkImageGradientPlanars16Fn)(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                            uint32_t srcStride, int16_t* dx, int16_t* dy, uint32_t dxyStride);
typedef void (*ovkImageGradientPlanarf32Fn)(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                            uint32_t srcStride, float* dx, float* dy, uint32_t dxyStride);
typedef void (*ovkImageGradientSobelPlanars8Fn)(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                uint32_t srcStride, int8_t* dx, int8_t* dy, uint32_t dxyStride);
typedef void (*ovkImageGradientSobelPlanarf32f32Fn)(const float* src, uint32_t srcWidth, uint32_t srcHeight,
                                                    uint32_t srcStride, float* dx, float* dy, uint32_t dxyStride);
typedef ovkImageGradientInterleaveds16Fn ovkImageGradientSobelInterleaveds16Fn;
typedef ovkImageGradientInterleaveds16Fn ovkImageGradientSobelInterleaveds16_v3Fn;
typedef ovkImageGradientInterleaveds16Fn ovkImageGradientScharrInterleaveds16Fn;
typedef ovkImageGradientInterleavedf32Fn ovkImageGradientSobelInterleavedf32Fn;
typedef ovkImageGradientPlanars16Fn ovkImageGradientSobelPlanars16Fn;
typedef ovkImageGradientPlanarf32Fn ovkImageGradientSobelPlanarf32Fn;
typedef void (*ovkFilterCanny3x3u8Fn)(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                      uint8_t* dst, uint32_t dstStride, int32_t low, int32_t high);
typedef ovkFilterCanny3x3u8Fn ovkFilterCannyu8Fn;
typedef void (*ovkFilterCanny3x3u8_v3Fn)(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                         uint32_t srcStride, uint8_t* dst, uint32_t dstStride, int16_t* gx,
                                         int16_t* gy, uint32_t gradStride, int32_t low, int32_t high);
typedef void (*ovkFilterSobel3x3u8Fn)(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                      uint8_t* dst, uint32_t dstStride);

/*
 * For every operation `ovkX`, `ovkX_` holds its portable kernel and `ppovkX`
 * the address of `ovkX_`, for clients that call or replace a kernel directly.
 * Operations with a DSP or GPU form also have `ovkXR_`, filled by
 * ovkSetOperationModeRemoteLib() when such a back-end is ready.
 */
typedef void (*ovkFilterGaussian3x3u8Fn)(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                         uint32_t srcStride, uint8_t* dst, uint32_t dstStride,
                                         int32_t blurBorder);
typedef ovkStatusCode (*ovkFilterGaussian3x3u8_v3Fn)(const uint8_t* src, uint32_t srcWidth,
                                                     uint32_t srcHeight, uint32_t srcStride,
                                                     uint8_t* dst, uint32_t dstStride,
                                                     ovkBorderType borderType,
                                                     uint8_t borderValue);
OVK_API extern ovkFilterGaussian3x3u8Fn ovkFilterGaussian3x3u8_, ovkFilterGaussian3x3u8_v2_,
    ovkFilterGaussian3x3u8R_, ovkFilterGaussian3x3u8_v2R_;
OVK_API extern ovkFilterGaussian3x3u8Fn *ppovkFilterGaussian3x3u8, *ppovkFilterGaussian3x3u8_v2;
OVK_API extern ovkFilterGaussian3x3u8_v3Fn ovkFilterGaussian3x3u8_v3_, ovkFilterGaussian3x3u8_v3R_;
OVK_API extern ovkFilterGaussian3x3u8_v3Fn* ppovkFilterGaussian3x3u8_v3;

/* Kernel types of the other smoothing filters; their ovkX_, ppovkX and ovkXR_
 * objects follow the same pattern. */
typedef ovkFilterGaussian3x3u8Fn ovkFilterGaussian5x5u8Fn;
typedef ovkFilterGaussian3x3u8Fn ovkFilterGaussian11x11u8Fn;
typedef void (*ovkFilterGaussian5x5s16Fn)(const int16_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                          uint32_t srcStride, int16_t* dst, uint32_t dstStride,
                                          int32_t blurBorder);
typedef void (*ovkFilterGaussian5x5s32Fn)(const int32_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                          uint32_t srcStride, int32_t* dst, uint32_t dstStride,
                                          int32_t blurBorder);
typedef void (*ovkBoxFilter3x3u8Fn)(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                    uint32_t srcStride, uint8_t* dst, uint32_t dstStride);
typedef ovkFilterGaussian3x3u8_v3Fn ovkBoxFilter3x3u8_v2Fn;
typedef ovkBoxFilter3x3u8Fn ovkBoxFilter5x5u8Fn;
typedef ovkBoxFilter3x3u8Fn ovkBoxFilter11x11u8Fn;
typedef ovkBoxFilter3x3u8Fn ovkFilterMedian3x3u8Fn;
typedef ovkFilterGaussian3x3u8_v3Fn ovkFilterMedian3x3u8_v3Fn;

/* Kernel types of the YCbCr to RGB conversions. */
typedef void (*ovkColorYCbCr444PlanarToRGB565u8Fn)(const uint8_t* srcY, const uint8_t* srcCb, const uint8_t* srcCr,
                                                   uint32_t srcWidth, uint32_t srcHeight, uint32_t srcYStride,
                                                   uint32_t srcCbStride, uint32_t srcCrStride, uint8_t* dst,
                                                   uint32_t dstStride);
typedef void (*ovkColorYCbCr444PseudoPlanarToRGB565u8Fn)(const uint8_t* srcY, const uint8_t* srcC, uint32_t srcWidth,
                                                         uint32_t srcHeight, uint32_t srcYStride, uint32_t srcCStride,
                                                         uint8_t* dst, uint32_t dstStride);
typedef ovkColorYCbCr444PlanarToRGB565u8Fn ovkColorYCbCr444PlanarToRGB888u8Fn;
typedef ovkColorYCbCr444PlanarToRGB565u8Fn ovkColorYCbCr444PlanarToRGBA8888u8Fn;
typedef ovkColorYCbCr444PlanarToRGB565u8Fn ovkColorYCbCr422PlanarToRGB565u8Fn;
typedef ovkColorYCbCr444PlanarToRGB565u8Fn ovkColorYCbCr422PlanarToRGB888u8Fn;
typedef ovkColorYCbCr444PlanarToRGB565u8Fn ovkColorYCbCr422PlanarToRGBA8888u8Fn;
typedef ovkColorYCbCr444PlanarToRGB565u8Fn ovkColorYCbCr420PlanarToRGB565u8Fn;
typedef ovkColorYCbCr444PlanarToRGB565u8Fn ovkColorYCbCr420PlanarToRGB888u8Fn;
typedef ovkColorYCbCr444PlanarToRGB565u8Fn ovkColorYCbCr420PlanarToRGBA8888u8Fn;
typedef ovkColorYCbCr444PseudoPlanarToRGB565u8Fn ovkColorYCbCr444PseudoPlanarToRGB888u8Fn;
typedef ovkColorYCbCr444PseudoPlanarToRGB565u8Fn ovkColorYCbCr444PseudoPlanarToRGBA8888u8Fn;
typedef ovkColorYCbCr444PseudoPlanarToRGB565u8Fn ovkColorYCbCr422PseudoPlanarToRGB565u8Fn;
typedef ovkColorYCbCr444PseudoPlanarToRGB565u8Fn ovkColorYCbCr422PseudoPlanarToRGB888u8Fn;
typedef ovkColorYCbCr444PseudoPlanarToRGB565u8Fn ovkColorYCbCr422PseudoPlanarToRGBA8888u8Fn;
typedef ovkColorYCbCr444PseudoPlanarToRGB565u8Fn ovkColorYCbCr420PseudoPlanarToRGB565u8Fn;
typedef ovkColorYCbCr444PseudoPlanarToRGB565u8Fn ovkColorYCbCr420PseudoPlanarToRGB888u8Fn;
typedef ovkColorYCbCr444PseudoPlanarToRGB565u8Fn ovkColorYCbCr420PseudoPlanarToRGBA8888u8Fn;
typedef void (*ovkColorYCrCb420PseudoPlanarToRGB8888u8Fn)(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                          uint32_t srcYStride, uint32_t srcCStride, uint8_t* dst,
                                                          uint32_t dstStride);
/* Runs the routine above with packed strides. */
typedef ovkColorYCrCb420PseudoPlanarToRGB8888u8Fn ovkColorYUV420toRGB8888u8Fn;
typedef void (*ovkColorYUV420toRGB565u8Fn)(const uint8_t* src, uint32_t width, uint32_t height, uint8_t* dst);
typedef ovkColorYUV420toRGB565u8Fn ovkColorYUV420toRGB565u8Rotate180Fn;
typedef ovkColorYUV420toRGB565u8Fn ovkColorYCrCbH1V1toRGB888u8Fn;
typedef ovkColorYUV420toRGB565u8Fn ovkColorYCrCbH2V1toRGB888u8Fn;
typedef ovkColorYUV420toRGB565u8Fn ovkColorYCrCbH1V2toRGB888u8Fn;
typedef ovkColorYUV420toRGB565u8Fn ovkColorYCrCbH2V2toRGB888u8Fn;

/* Kernel types of the RGB to YCbCr and gray conversions, and of their row
 * kernels (the inner-kernel slots). */
typedef void (*ovkColorRGB888ToYCbCr444Planaru8Fn)(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                   uint32_t srcStride, uint8_t* dstY, uint8_t* dstCb, uint8_t* dstCr,
                                                   uint32_t dstYStride, uint32_t dstCbStride, uint32_t dstCrStride);
typedef void (*ovkColorRGB888ToYCbCr444PseudoPlanaru8Fn)(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                         uint32_t srcStride, uint8_t* dstY, uint8_t* dstC,
                                                         uint32_t dstYStride, uint32_t dstCStride);
typedef ovkColorRGB888ToYCbCr444Planaru8Fn ovkColorRGB888ToYCbCr422Planaru8Fn;
typedef ovkColorRGB888ToYCbCr444Planaru8Fn ovkColorRGB888ToYCbCr420Planaru8Fn;
typedef ovkColorRGB888ToYCbCr444Planaru8Fn ovkColorRGB565ToYCbCr444Planaru8Fn;
typedef ovkColorRGB888ToYCbCr444Planaru8Fn ovkColorRGB565ToYCbCr422Planaru8Fn;
typedef ovkColorRGB888ToYCbCr444Planaru8Fn ovkColorRGB565ToYCbCr420Planaru8Fn;
typedef ovkColorRGB888ToYCbCr444Planaru8Fn ovkColorRGBA8888ToYCbCr444Planaru8Fn;
typedef ovkColorRGB888ToYCbCr444Planaru8Fn ovkColorRGBA8888ToYCbCr422Planaru8Fn;
typedef ovkColorRGB888ToYCbCr444Planaru8Fn ovkColorRGBA8888ToYCbCr420Planaru8Fn;
typedef ovkColorRGB888ToYCbCr444PseudoPlanaru8Fn ovkColorRGB888ToYCbCr422PseudoPlanaru8Fn;
typedef ovkColorRGB888ToYCbCr444PseudoPlanaru8Fn ovkColorRGB888ToYCbCr420PseudoPlanaru8Fn;
typedef ovkColorRGB888ToYCbCr444PseudoPlanaru8Fn ovkColorRGB565ToYCbCr444PseudoPlanaru8Fn;
typedef ovkColorRGB888ToYCbCr444PseudoPlanaru8Fn ovkColorRGB565ToYCbCr422PseudoPlanaru8Fn;
typedef ovkColorRGB888ToYCbCr444PseudoPlanaru8Fn ovkColorRGB565ToYCbCr420PseudoPlanaru8Fn;
typedef ovkColorRGB888ToYCbCr444PseudoPlanaru8Fn ovkColorRGBA8888ToYCbCr444PseudoPlanaru8Fn;
typedef ovkColorRGB888ToYCbCr444PseudoPlanaru8Fn ovkColorRGBA8888ToYCbCr422PseudoPlanaru8Fn;
typedef ovkColorRGB888ToYCbCr444PseudoPlanaru8Fn ovkColorRGBA8888ToYCbCr420PseudoPlanaru8Fn;
typedef void (*ovkColorRGB888ToGrayu8Fn)(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                         uint32_t srcStride, uint8_t* dst, uint32_t dstStride);
typedef ovkColorRGB888ToGrayu8Fn ovkColorRGB888toYCrCbu8Fn;
/* Row kernels: `width` pixels of one source row.  The 2:1 sub-sampling rows
 * write one chroma sample per pixel pair and nothing at all for an odd width. */
typedef void (*ovkRgbToYCbCrPlanarRowFn)(const uint8_t* src, uint8_t* dstY, uint8_t* dstCb, uint8_t* dstCr,
                                         uint32_t width);
typedef void (*ovkRgbToYCbCrPseudoPlanarRowFn)(const uint8_t* src, uint8_t* dstY, uint8_t* dstC, uint32_t width);
typedef void (*ovkRgbToLumaRowFn)(const uint8_t* src, uint8_t* dstY, uint32_t width);

/* Kernel types of the scaling entries: the strided argument lists. */
typedef int32_t (*ovkScaleDownBy2u8Fn)(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                       uint32_t srcStride, uint8_t* dst, uint32_t dstStride);
typedef ovkScaleDownBy2u8Fn ovkScaleDownBy4u8Fn;
typedef ovkScaleDownBy2u8Fn ovkScaleDown3To2u8Fn;
typedef int32_t (*ovkScaleDownNNu8Fn)(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                      uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride);
typedef void (*ovkScaleDownu8Fn)(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                 uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride);
typedef ovkScaleDownu8Fn ovkScaleDownBLu8Fn;
typedef ovkScaleDownu8Fn ovkScaleDownMNu8Fn;
typedef ovkScaleDownu8Fn ovkScaleDownMNInterleaveu8Fn;
typedef ovkScaleDownu8Fn ovkScaleUpPolyu8Fn;
typedef ovkScaleDownu8Fn ovkScaleUpPolyInterleaveu8Fn;
typedef void (*ovkScaleDownBy2Gaussian5x5u8Fn)(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                               uint32_t srcStride, uint8_t* dst, uint32_t dstStride);
typedef ovkScaleDownBy2Gaussian5x5u8Fn ovkScaleDownBy2Gaussian3x3u8Fn;
/* Returns the number of source rows processed. */
typedef int32_t (*ovkScaleUpBy2Gaussian5x5u8Fn)(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight,
                                                uint32_t srcStride, uint8_t* dst, uint32_t dstStride);
typedef void (*ovkScaleDownBy2Gaussian5x5f32Fn)(const float* src, uint32_t srcWidth, uint32_t srcHeight,
                                                uint32_t srcStride, float* dst, uint32_t dstStride);
typedef ovkScaleDownBy2Gaussian5x5f32Fn ovkScaleDownBy2Gaussian5x5f32_v2Fn;
typedef ovkStatusCode (*ovkScaleu8Fn)(const uint8_t* src, uint32_t srcWidth, uint32_t srcHeight, uint32_t srcStride,
                                      uint8_t* dst, uint32_t dstWidth, uint32_t dstHeight, uint32_t dstStride,
                                      ovkInterpolationType interpolation);
/* Inner kernel of the M-by-N reduction: one destination row from the column
 * sums of its rowCount source rows.  Destination column k adds the next
 * columnCounts[k] sums and divides the total by rowCount x columnCounts[k]
 * through mn_div_table; a count of 0 (enlarging) takes the previous sum
 * again, as a block of one column. */
typedef void (*ovkScaleDownMNRowFn)(const uint16_t* columnSums, const uint8_t* columnCounts, uint32_t rowCount,
                                    uint8_t* dst, uint32_t dstWidth);

#ifdef __cplusplus
}
#endif

#endif /* ORVIK_H */
