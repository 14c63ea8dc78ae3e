#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>

#include <atomic>

#include "../cpu/orvikInternal.h"
#include "orvikPlatform.h"

namespace {
std::atomic<ovkLogSink> gLogSink{nullptr};
}

void ovkPlatformLog(int priority, const char* tag, const char* message) {
  const ovkLogSink sink = gLogSink.load(std::memory_order_acquire);
  (sink ? sink : ovkDefaultLogSink)(priority, tag, message);
}

extern "C" OVK_API void ovkSetLogSink(ovkLogSink sink) {
  gLogSink.store(sink, std::memory_order_release);
}

void ovkLog(int priority, const char* tag, const char* format, ...) {
  char message[512];
  va_list args;
  va_start(args, format);
  vsnprintf(message, sizeof message, format, args);
  va_end(args);
  ovkPlatformLog(priority, tag, message);
}

void ovkFatal(const char* file, int line, const char* text) {
  ovkLog(OVK_LOG_ERROR, OVK_LOG_TAG, "%s@%d: %s Assertion failed\n", file, line, text);
  exit(1);
}
