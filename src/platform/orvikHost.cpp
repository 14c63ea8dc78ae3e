// Log sink and system properties outside Android.
#include <ctype.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "orvikPlatform.h"

#ifndef ORVIK_ANDROID_LOG
void ovkDefaultLogSink(int priority, const char* tag, const char* message) {
  static const char kLetters[] = "??VDIWEF";
  const char letter = priority >= 0 && priority < 8 ? kLetters[priority] : '?';
  const size_t length = strlen(message);
  const char* newline = length && message[length - 1] == '\n' ? "" : "\n";
  fprintf(stderr, "%c/%s: %s%s", letter, tag, message, newline);
}
#endif

#ifndef __ANDROID__
size_t ovkPropertyGet(const char* name, char* value, size_t size) {
  char variable[128];
  size_t i = 0;
  for (; name[i] && i + 1 < sizeof variable; ++i)
    variable[i] = name[i] == '.' ? '_' : static_cast<char>(toupper(static_cast<unsigned char>(name[i])));
  variable[i] = '\0';
  const char* text = getenv(variable);
  if (size == 0) return 0;
  snprintf(value, size, "%s", text ? text : "");
  return strlen(value);
}
#endif
