// The processor probe: what /proc/cpuinfo says about the architecture, the
// floating-point and vector units and the chip.  One parser serves ARM and
// x86-64 text; which lines are present tells the two apart.
#include <errno.h>
#include <fcntl.h>
#include <pthread.h>
#include <stdlib.h>
#include <unistd.h>

#include <array>
#include <string_view>

#include "orvikPlatform.h"

namespace {

// Chip models (as named on the "Hardware" line) on which the library runs
// without DSP and GPU.  None so far.
constexpr std::array<std::string_view, 0> kCpuOnlyChipModels{};

struct FeatureToken {
  std::string_view token;
  uint32_t bit;
};

// 32-bit kernels say "vfp"/"neon", 64-bit kernels "fp"/"asimd".
constexpr FeatureToken kArmFeatureTokens[] = {
    {"vfp", OVK_CPU_FPU}, {"fp", OVK_CPU_FPU}, {"neon", OVK_CPU_VECTOR}, {"asimd", OVK_CPU_VECTOR}};
constexpr FeatureToken kX86FlagTokens[] = {{"fpu", OVK_CPU_FPU}, {"ssse3", OVK_CPU_VECTOR}};

constexpr uint32_t kMinArchitecture = 7;

bool isBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view skipBlanks(std::string_view text) {
  size_t start = 0;
  while (start < text.size() && isBlank(text[start])) ++start;
  return text.substr(start);
}

// Value of the first line that starts with `key` followed by blanks and a
// colon; the key must start the line so that "xFeatures" or a value that
// merely mentions the key does not count.
bool findValue(std::string_view text, std::string_view key, std::string_view* value) {
  for (size_t lineStart = 0; lineStart < text.size();) {
    const size_t newline = text.find('\n', lineStart);
    const size_t lineEnd = newline == std::string_view::npos ? text.size() : newline;
    const std::string_view line = text.substr(lineStart, lineEnd - lineStart);
    if (line.substr(0, key.size()) == key) {
      const std::string_view rest = skipBlanks(line.substr(key.size()));
      if (!rest.empty() && rest[0] == ':') {
        *value = skipBlanks(rest.substr(1));
        return true;
      }
    }
    lineStart = lineEnd + 1;
  }
  return false;
}

// The value is not zero-terminated (it may end the buffer), so strtoul works
// on a bounded copy.  False when no digits were read.
bool parseUnsigned(std::string_view value, int base, unsigned long* number) {
  char digits[32];
  const size_t count = value.copy(digits, sizeof digits - 1);
  digits[count] = '\0';
  char* end = nullptr;
  *number = strtoul(digits, &end, base);
  return end != digits;
}

template <size_t N>
uint32_t featureBits(std::string_view list, const FeatureToken (&known)[N]) {
  uint32_t bits = 0;
  for (std::string_view rest = skipBlanks(list); !rest.empty(); rest = skipBlanks(rest)) {
    size_t tokenEnd = 0;
    while (tokenEnd < rest.size() && !isBlank(rest[tokenEnd])) ++tokenEnd;
    for (const FeatureToken& entry : known)
      if (rest.substr(0, tokenEnd) == entry.token) bits |= entry.bit;
    rest = rest.substr(tokenEnd);
  }
  return bits;
}

bool namesCpuOnlyChip(std::string_view hardware) {
  for (std::string_view model : kCpuOnlyChipModels)
    if (hardware.find(model) != std::string_view::npos) return true;
  return false;
}

void parseArmLines(std::string_view text, ovkCpuInfo* info) {
  std::string_view value;
  unsigned long number = 0;
  if (findValue(text, "CPU architecture", &value) && parseUnsigned(value, 10, &number) &&
      number >= kMinArchitecture)
    info->features |= OVK_CPU_ARCH_V7;
  if (findValue(text, "CPU implementer", &value) && parseUnsigned(value, 0, &number))
    info->implementer = static_cast<uint32_t>(number);
  if (findValue(text, "Features", &value)) info->features |= featureBits(value, kArmFeatureTokens);
  if (findValue(text, "Hardware", &value)) info->cpuOnly = namesCpuOnlyChip(value);
}

// Every x86-64 processor meets the ARMv7 baseline the architecture bit stands
// for, and any vendor_id counts as a recognised board.
void parseX86Lines(std::string_view text, ovkCpuInfo* info) {
  std::string_view value;
  if (findValue(text, "vendor_id", &value)) {
    info->vendorKnown = 1;
    info->features |= OVK_CPU_ARCH_V7;
  }
  if (findValue(text, "flags", &value))
    info->features |= OVK_CPU_ARCH_V7 | featureBits(value, kX86FlagTokens);
}

// Everything the ARM lines need lies in the first 4096 bytes.  On x86-64 the
// first processor's block alone can be longer, and a flags line cut short
// would lose its later tokens, so reading goes on to that block's closing
// blank line, within kMaxReadBytes.
constexpr size_t kBaseReadBytes = 4096;
constexpr size_t kMaxReadBytes = 16384;

bool firstBlockComplete(const char* text, size_t length) {
  return std::string_view(text, length).find("\n\n") != std::string_view::npos;
}

// Bytes read, or -1 on a read error other than an interruption.
ssize_t readHead(int fd, char* buffer) {
  size_t filled = 0;
  while (filled < kMaxReadBytes) {
    const size_t wanted = (filled < kBaseReadBytes ? kBaseReadBytes : kMaxReadBytes) - filled;
    const ssize_t got = read(fd, buffer + filled, wanted);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return -1;
    if (got == 0) break;
    filled += static_cast<size_t>(got);
    if (filled >= kBaseReadBytes && firstBlockComplete(buffer, filled)) break;
  }
  return static_cast<ssize_t>(filled);
}

pthread_once_t gProbeOnce = PTHREAD_ONCE_INIT;
ovkCpuInfo gCpuInfo;

// An unreadable /proc/cpuinfo leaves every result at 0.
void probeCpuInfo() {
  const int fd = open("/proc/cpuinfo", O_RDONLY | O_CLOEXEC);
  if (fd < 0) return;
  char buffer[kMaxReadBytes];
  const ssize_t length = readHead(fd, buffer);
  close(fd);
  if (length > 0) gCpuInfo = ovkParseCpuInfo(buffer, static_cast<size_t>(length));
}

}  // namespace

ovkCpuInfo ovkParseCpuInfo(const char* text, size_t length) {
  const std::string_view cpuinfo(text, length);
  ovkCpuInfo info = {};
  parseArmLines(cpuinfo, &info);
  parseX86Lines(cpuinfo, &info);
  return info;
}

const ovkCpuInfo& ovkCpuProbe() {
  pthread_once(&gProbeOnce, probeCpuInfo);
  return gCpuInfo;
}
