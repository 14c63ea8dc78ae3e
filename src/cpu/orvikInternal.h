// Frame internals: the function tables, implementation indexes, logging and
// the building blocks every exported wrapper is made of.
#ifndef ORVIK_INTERNAL_H
#define ORVIK_INTERNAL_H

#include <stdint.h>

#include <initializer_list>
#include <type_traits>

#include "orvik.h"
#include "orvikRegistry.h"
#include "../platform/orvikPlatform.h"

typedef void (*ovkFuncPtr)(void);

enum : uint32_t { OVK_NUM_GROUPS = 506, OVK_NUM_INTERNAL_GROUPS = 16, OVK_NUM_IMPLS = 7 };

// Implementation index inside a group.
enum OVK_IMPL : uint32_t {
  OVK_IMPL_CPU = 0,
  OVK_IMPL_PELAR = 1,
  OVK_IMPL_RDSP = 2,
  OVK_IMPL_GPU = 3,
  OVK_IMPL_ADSP = 4,
  OVK_IMPL_CDSP = 5,
  OVK_IMPL_MDSP = 6,
};

#define OVK_LOG_TAG "orvik_lib_log"

extern "C" {
OVK_API extern ovkFuncPtr ovkFuncTable[OVK_NUM_GROUPS * OVK_NUM_IMPLS];
OVK_API extern ovkFuncPtr ovkInternalFuncTable[OVK_NUM_INTERNAL_GROUPS * OVK_NUM_IMPLS];
OVK_API extern uint32_t ovkImplTable[OVK_NUM_GROUPS];
OVK_API extern uint32_t ovkInternalImplTable[OVK_NUM_INTERNAL_GROUPS];
OVK_API extern const char* const ovkImplChar[OVK_NUM_IMPLS];
OVK_API extern uint8_t libLogPrint;
OVK_API extern uint32_t HW_constraint_checks_enable;
OVK_API extern uint32_t mode_globalVar;
}

// ---- Registry-derived declarations ------------------------------------------

namespace ovkGroup {
#define OVK_X(number, Group, vector, backends) constexpr uint32_t Group = number;
OVK_GROUPS(OVK_X)
#undef OVK_X
}  // namespace ovkGroup

namespace ovkGroupBackends {
#define OVK_X(number, Group, vector, backends) constexpr uint32_t Group = backends;
OVK_GROUPS(OVK_X)
#undef OVK_X
}  // namespace ovkGroupBackends

namespace ovkGroupVector {
#define OVK_X(number, Group, vector, backends) constexpr bool Group = #vector[0] == 'V';
OVK_GROUPS(OVK_X)
#undef OVK_X
}  // namespace ovkGroupVector

#define OVK_DECLARE_VECTOR_V(Group) ovk##Group##Fn ovkVector##Group();
#define OVK_DECLARE_VECTOR_N(Group)
#define OVK_X(number, Group, vector, backends)        \
  std::remove_pointer_t<ovk##Group##Fn> ovk##Group##C; \
  OVK_DECLARE_VECTOR_##vector(Group)
OVK_GROUPS(OVK_X)
OVK_INTERNAL_GROUPS(OVK_X)
#undef OVK_X

// Inner-kernel slots: the pointer the portable outer loops call (exported),
// its portable routine and, for the vector filler, its vector routine.
extern "C" {
#define OVK_X(stem, Fn, vector) OVK_API extern Fn stem##_;
OVK_INNER_KERNELS(OVK_X)
#undef OVK_X
}
#define OVK_DECLARE_VECTOR_SLOT_V(stem, Fn) Fn ovkVector##stem##_();
#define OVK_DECLARE_VECTOR_SLOT_N(stem, Fn)
#define OVK_X(stem, Fn, vector)      \
  std::remove_pointer_t<Fn> stem##C; \
  OVK_DECLARE_VECTOR_SLOT_##vector(stem, Fn)
OVK_INNER_KERNELS(OVK_X)
#undef OVK_X

// Compile-time facts about one exported entry, used by its wrapper.
namespace ovkEntry {
#define OVK_X(Name, SelectorGroup, Group, remote)                                      \
  struct Name {                                                                        \
    static constexpr uint32_t selector = ovkGroup::SelectorGroup;                      \
    static constexpr uint32_t group = ovkGroup::Group;                                 \
    static constexpr uint32_t backends = ovkGroupBackends::Group;                      \
    static constexpr const char* name = "ovk" #Name;                                   \
    using Fn = ovk##Group##Fn;                                                         \
  };                                                                                   \
  static_assert((#remote[0] == 'R') == ((ovkGroupBackends::Group &                     \
                                         (OVK_DSP_FORM | OVK_GPU_FORM)) != 0),         \
                "ovk" #Name ": remote column disagrees with the group's back-ends");
OVK_ENTRIES(OVK_X)
#undef OVK_X
}  // namespace ovkEntry

// ---- Logging ----------------------------------------------------------------

enum : int { OVK_LOG_DEBUG = 3, OVK_LOG_INFO = 4, OVK_LOG_WARN = 5, OVK_LOG_ERROR = 6 };

void ovkLog(int priority, const char* tag, const char* format, ...)
    __attribute__((format(printf, 3, 4)));

// Internal consistency check that ends the process, as the portable kernels'
// own checks do: logs "<file>@<line>: <text> Assertion failed".
[[noreturn]] void ovkFatal(const char* file, int line, const char* text);

// ---- Wrapper building blocks -------------------------------------------------

void ovkLogCall(const char* name, uint32_t impl);
void ovkLogAssertFailed(const char* name, const char* condition);
void ovkLogNotConfigured(const char* name);

inline uint32_t ovkPackedStride(uint32_t stride, uint32_t rowBytes) {
  return stride ? stride : rowBytes;
}

// Elements of rows at any byte address: copied, so that misaligned strides
// stay defined behaviour.
template <class T>
inline T ovkLoadElement(const uint8_t* row, size_t x) {
  T value;
  __builtin_memcpy(&value, row + x * sizeof(T), sizeof value);
  return value;
}

template <class T>
inline void ovkStoreElement(uint8_t* row, size_t x, T value) {
  __builtin_memcpy(row + x * sizeof(T), &value, sizeof value);
}

inline bool ovkAligned(const void* p, uintptr_t alignment) {
  return (reinterpret_cast<uintptr_t>(p) & (alignment - 1)) == 0;
}

inline bool ovkIsDspImpl(uint32_t impl) {
  return impl == OVK_IMPL_RDSP || impl >= OVK_IMPL_ADSP;
}

// Steps 1-3 of every wrapper: read the selector, fall back to the vector
// implementation when the buffers break the back-end's constraints, log the
// choice.  Constraint checks exist only for groups with such a back-end.
template <class E, class GpuOk, class DspOk>
inline uint32_t ovkSelectImpl(GpuOk gpuOk, DspOk dspOk) {
  uint32_t impl = ovkImplTable[E::selector];
  if constexpr ((E::backends & OVK_GPU_FORM) != 0) {
    if (impl == OVK_IMPL_GPU && !gpuOk()) impl = OVK_IMPL_PELAR;
  }
  if constexpr ((E::backends & OVK_DSP_FORM) != 0) {
    if (ovkIsDspImpl(impl) && HW_constraint_checks_enable && !dspOk()) impl = OVK_IMPL_PELAR;
  }
  if (__builtin_expect(libLogPrint != 0, 0)) ovkLogCall(E::name, impl);
  return impl;
}

template <class E>
inline uint32_t ovkSelectImpl() {
  static_assert((E::backends & (OVK_GPU_FORM | OVK_DSP_FORM)) == 0,
                "entries with a back-end form must state its constraints");
  return ovkSelectImpl<E>([] { return true; }, [] { return true; });
}

template <class E>
inline typename E::Fn ovkKernel(uint32_t impl) {
  return reinterpret_cast<typename E::Fn>(ovkFuncTable[E::group * OVK_NUM_IMPLS + impl]);
}

// Step 5 for entries without a result.
template <class E, class... Args>
inline void ovkCallVoid(uint32_t impl, Args... args) {
  const typename E::Fn kernel = ovkKernel<E>(impl);
  if (__builtin_expect(kernel == nullptr, 0)) return ovkLogNotConfigured(E::name);
  kernel(args...);
}

// Step 5 for status entries: a back-end that declines with
// ORVIK_STATUS_FALLBACK is retried on the vector implementation.
template <class E, class... Args>
inline ovkStatusCode ovkCallStatus(uint32_t impl, Args... args) {
  const typename E::Fn kernel = ovkKernel<E>(impl);
  if (__builtin_expect(kernel == nullptr, 0)) {
    ovkLogNotConfigured(E::name);
    return ORVIK_STATUS_FAILURE;
  }
  const ovkStatusCode status = kernel(args...);
  if (status != ORVIK_STATUS_FALLBACK) return status;
  return ovkKernel<E>(OVK_IMPL_PELAR)(args...);
}

// Step 4: the condition's own source text is what gets logged, so text and
// check cannot drift apart.
#define OVK_REQUIRE(Entry, condition)                          \
  do {                                                         \
    if (!(condition)) {                                        \
      ovkLogAssertFailed(Entry::name, #condition);             \
      return;                                                  \
    }                                                          \
  } while (0)

#define OVK_REQUIRE_STATUS(condition)                   \
  do {                                                  \
    if (!(condition)) return ORVIK_STATUS_BAD_PARAM;    \
  } while (0)

// ---- Buffer spans --------------------------------------------------------------

// Part of a caller buffer as a kernel addresses it: `rows` rows of
// `rowBytes` bytes, `stride` apart, the first `offset` bytes into the buffer.
// Sizes are 64-bit so that products of 32-bit arguments cannot wrap.
struct ovkSpan {
  uint64_t rows, rowBytes, stride, offset;
  bool output;
};

inline ovkSpan ovkInput(uint64_t rows, uint64_t rowBytes, uint64_t stride, uint64_t offset = 0) {
  return {rows, rowBytes, stride, offset, false};
}

inline ovkSpan ovkOutput(uint64_t rows, uint64_t rowBytes, uint64_t stride) {
  return {rows, rowBytes, stride, 0, true};
}

// Checked after an entry's own condition, which lets both through: a buffer
// of 2^31 bytes or more (32-bit offsets, and int indexes in the kernels,
// would wrap), and output rows that overlap (their bytes would depend on the
// order in which an implementation writes them).
bool ovkSpansFit(std::initializer_list<ovkSpan> spans);
extern const char kOvkSpanCondition[];

#define OVK_REQUIRE_SPANS(Entry, ...)                          \
  do {                                                         \
    if (!ovkSpansFit({__VA_ARGS__})) {                         \
      ovkLogAssertFailed(Entry::name, kOvkSpanCondition);      \
      return;                                                  \
    }                                                          \
  } while (0)

#define OVK_REQUIRE_SPANS_STATUS(...)                                  \
  do {                                                                 \
    if (!ovkSpansFit({__VA_ARGS__})) return ORVIK_STATUS_BAD_PARAM;    \
  } while (0)

#endif
