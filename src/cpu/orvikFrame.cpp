// The wrappers' shared slow paths and the small exported utilities.
#include <stdarg.h>
#include <stdio.h>
#include <string.h>
#include <sys/time.h>

#include "orvikInternal.h"

extern "C" {
OVK_API uint8_t libLogPrint;
OVK_API uint32_t HW_constraint_checks_enable = 1;
}

void ovkLogCall(const char* name, uint32_t impl) {
  ovkLog(OVK_LOG_DEBUG, OVK_LOG_TAG, "%s_%s", name, impl < OVK_NUM_IMPLS ? ovkImplChar[impl] : "?");
}

void ovkLogAssertFailed(const char* name, const char* condition) {
  ovkLog(OVK_LOG_ERROR, OVK_LOG_TAG, "Assertion failed @%s: %s\n", name, condition);
}

const char kOvkSpanCondition[] = "output rows do not overlap && every buffer spans less than 2^31 bytes";

bool ovkSpansFit(std::initializer_list<ovkSpan> spans) {
  constexpr uint64_t kLimit = uint64_t(1) << 31;
  for (const ovkSpan& span : spans) {
    if (span.rows == 0) continue;
    if (span.output && span.rows > 1 && span.stride < span.rowBytes) return false;
    uint64_t end;
    if (__builtin_mul_overflow(span.rows - 1, span.stride, &end) || __builtin_add_overflow(end, span.rowBytes, &end) ||
        __builtin_add_overflow(end, span.offset, &end) || end >= kLimit)
      return false;
  }
  return true;
}

void ovkLogNotConfigured(const char* name) {
  ovkLog(OVK_LOG_ERROR, OVK_LOG_TAG, "%s called before ovkSetOperationMode\n", name);
}

extern "C" OVK_API void ovkGetVersion(char* buffer, unsigned int length) {
  static const char kVersion[] = "1.7.1";
  if (!buffer) return;
  if (length < sizeof kVersion) {
    memset(buffer, 0, length);
    return;
  }
  memcpy(buffer, kVersion, sizeof kVersion);
}

extern "C" OVK_API int ovkLogAssert(const char* file, int line, int priority, const char* format, ...) {
  if (!format) format = "";
  char tag[128];
  const char* slash = file ? strrchr(file, '/') : nullptr;
  snprintf(tag, sizeof tag, "%s", slash ? slash + 1 : (file ? file : ""));

  char message[512];
  const int prefix = line ? snprintf(message, sizeof message, "%4d| ", line) : 0;
  va_list args;
  va_start(args, format);
  const int length = vsnprintf(message + prefix, sizeof message - prefix, format, args);
  va_end(args);
  ovkPlatformLog(priority, tag, message);
  return length;
}

extern "C" OVK_API uint64_t ovkGetTime(void) {
  struct timeval now;
  gettimeofday(&now, nullptr);
  return uint64_t(now.tv_sec) * 1000000u + uint64_t(now.tv_usec);
}
