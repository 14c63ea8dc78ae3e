// Per-pixel references for the colour conversions, written out plainly from
// their fixed-point formulas, and the loops that run a check on the portable
// kernels, the vector kernels of every target and the entries.
#ifndef ORVIK_TEST_COLOR_REFERENCE_H
#define ORVIK_TEST_COLOR_REFERENCE_H

#include <gtest/gtest.h>
#include <stdint.h>

#include <algorithm>
#include <array>
#include <functional>
#include <string>
#include <vector>

#include "cpu/orvikInternal.h"
#include "support/vector_targets.h"

template <class Fn>
ovkFuncPtr asPointer(Fn fn) {
  return reinterpret_cast<ovkFuncPtr>(fn);
}

// Fills outputs before a call, so bytes left alone are visible.
constexpr uint8_t kUntouched = 0x5C;

inline int clampByte(int v) { return std::min(std::max(v, 0), 255); }

// floor(v / 2^bits) without relying on how >> treats negative values.
inline int floorShift(int v, int bits) { return v >= 0 ? v >> bits : -((-v + (1 << bits) - 1) >> bits); }

struct Ycc {
  int y, cb, cr;
};

struct Rgb {
  int r, g, b;
};

inline std::array<int, 3> channels(const Ycc& p) { return {p.y, p.cb, p.cr}; }
inline std::array<int, 3> channels(const Rgb& p) { return {p.r, p.g, p.b}; }

// ---- RGB to YCbCr and gray ----

inline Ycc yccQ8(int r, int g, int b) {
  return {(77 * r + 150 * g + 29 * b + 128) >> 8, std::min(floorShift(128 * b - 85 * g - 43 * r + 128, 8) + 128, 255),
          std::min(floorShift(128 * r - 107 * g - 21 * b + 128, 8) + 128, 255)};
}

inline Ycc yccQ15(int r, int g, int b) {
  return {(9798 * r + 19235 * g + 3736 * b + 16384) >> 15,
          std::min(128 + floorShift(-5529 * r - 10855 * g + 16384 * b + 16384, 15), 255),
          std::min(128 + floorShift(16384 * r - 13720 * g - 2664 * b + 16384, 15), 255)};
}

inline int grayQ16(int r, int g, int b) { return (19595 * r + 38469 * g + 7471 * b + 32768) >> 16; }

// ---- YCbCr to RGB ----

inline Rgb fullRangeQ8(int Y, int Cb, int Cr) {
  const int y = 256 * Y + 128, u = Cb - 128, v = Cr - 128;
  return {clampByte(floorShift(y + 359 * v, 8)), clampByte(floorShift(y - 88 * u - 183 * v, 8)),
          clampByte(floorShift(y + 454 * u, 8))};
}

inline Rgb videoRangeQ10(int Y, int Cb, int Cr) {
  const int y = std::max(Y - 16, 0) * 1192, u = Cb - 128, v = Cr - 128;
  const auto channel = [](int value) { return std::min(std::max(value, 0), 262143) / 1024; };
  return {channel(y + 1634 * v), channel(y - 833 * v - 400 * u), channel(y + 2066 * u)};
}

inline Rgb videoRangeQ8(int Y, int Cb, int Cr) {
  const int y = 298 * Y - 4768, u = Cb - 128, v = Cr - 128;
  return {clampByte(floorShift(y + 409 * v, 8)), clampByte(floorShift(y - 100 * u - 208 * v, 8)),
          clampByte(floorShift(y + 517 * u, 8))};
}

inline Rgb blockQ15(int Y, int Cb, int Cr) {
  const int cb = 2 * Cb - 255, cr = 2 * Cr - 255;
  return {clampByte(Y + floorShift(22970 * cr + 16384, 15)),
          clampByte(Y + floorShift(-5638 * cb - 11700 * cr + 16384, 15)),
          clampByte(Y + floorShift(29032 * cb + 16384, 15))};
}

// Little-endian word: R in bits 0-4, G in 5-10, B in 11-15.
inline int rgb565Word(const Rgb& p) { return (p.r >> 3) | (p.g >> 2) << 5 | (p.b >> 3) << 11; }

// Every width up to beyond two vectors, and a few wide ones.
inline std::vector<uint32_t> testWidths() {
  std::vector<uint32_t> widths;
  for (uint32_t w = 1; w <= 80; ++w) widths.push_back(w);
  for (const uint32_t w : {127u, 128u, 129u, 255u, 256u, 641u, 1920u}) widths.push_back(w);
  return widths;
}

// Runs `check` on the portable kernels, then once per vector target (on ARM,
// NEON must be among them).
inline void forPortableAndEveryVectorTarget(const std::function<void(const std::string& variant, bool vector)>& check) {
  std::vector<std::string> targets;
  check("portable", false);
  forEachVectorTarget([&](const std::string& target) {
    targets.push_back(target);
    check(target, true);
  });
#if defined(__ARM_NEON)
  EXPECT_NE(std::find(targets.begin(), targets.end(), "NEON"), targets.end()) << ::testing::PrintToString(targets);
#endif
  EXPECT_FALSE(targets.empty());
}

enum class Variant { kPortable, kVector, kEntry };

// The same, then once more for the entries (their vector code in the
// performance mode).
inline void forEveryVariant(const std::function<void(const std::string& variant, Variant)>& check) {
  forPortableAndEveryVectorTarget(
      [&](const std::string& name, bool vector) { check(name, vector ? Variant::kVector : Variant::kPortable); });
  ASSERT_EQ(ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE), 0);
  check("entry", Variant::kEntry);
}

template <class Fn>
Fn pick(Variant variant, Fn portable, Fn (*vector)(), Fn entry) {
  return variant == Variant::kPortable ? portable : variant == Variant::kVector ? vector() : entry;
}

#endif
