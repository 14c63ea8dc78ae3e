// Android log and system properties.  The log half also builds against a
// host liblog port, so it is compiled and linked in CI.
#include <android/log.h>
#include <stdio.h>
#include <string.h>

#include "orvikPlatform.h"

void ovkDefaultLogSink(int priority, const char* tag, const char* message) {
  __android_log_print(priority, tag, "%s", message);
}

#ifdef __ANDROID__
#include <sys/system_properties.h>

size_t ovkPropertyGet(const char* name, char* value, size_t size) {
  char text[PROP_VALUE_MAX] = "";
  __system_property_get(name, text);
  if (size == 0) return 0;
  snprintf(value, size, "%s", text);
  return strlen(value);
}
#endif
