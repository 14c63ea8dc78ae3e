#include <gtest/gtest.h>
#include <string.h>

#include <string>

#include "support/guarded_image.h"
#include "platform/orvikPlatform.h"

namespace {

constexpr uint32_t kArchFpuVector = OVK_CPU_ARCH_V7 | OVK_CPU_FPU | OVK_CPU_VECTOR;

// Parses text that ends right at an inaccessible page, so any read past the
// given length faults.
ovkCpuInfo parseGuarded(const std::string& text) {
  GuardedBuffer buffer(text.size());
  memcpy(buffer.data(), text.data(), text.size());
  return ovkParseCpuInfo(reinterpret_cast<const char*>(buffer.data()), buffer.size());
}

void expectInfo(const std::string& text, uint32_t features, uint32_t implementer, uint32_t vendorKnown) {
  const ovkCpuInfo info = parseGuarded(text);
  EXPECT_EQ(info.features, features) << text;
  EXPECT_EQ(info.implementer, implementer) << text;
  EXPECT_EQ(info.vendorKnown, vendorKnown) << text;
  EXPECT_EQ(info.cpuOnly, 0u) << text;  // no chip model is listed as CPU-only
}

TEST(CpuInfoParse, ArmDevices) {
  const std::string armv7 =
      "Processor\t: ARMv7 Processor rev 1 (v7l)\n"
      "processor\t: 0\n"
      "Features\t: half thumb fastmult vfp edsp neon vfpv3 tls vfpv4 idiva idivt\n"
      "CPU implementer\t: 0x51\n"
      "CPU architecture: 7\n"
      "CPU variant\t: 0x1\n"
      "\n"
      "Hardware\t: Generic DT based system\n"
      "Revision\t: 0000\n";
  expectInfo(armv7, kArchFpuVector, 0x51, 0);

  const std::string aarch64 =
      "processor\t: 0\n"
      "BogoMIPS\t: 38.40\n"
      "Features\t: fp asimd evtstrm aes pmull sha1 sha2 crc32\n"
      "CPU implementer\t: 0x41\n"
      "CPU architecture: 8\n"
      "CPU part\t: 0xd03\n"
      "\n";
  expectInfo(aarch64, kArchFpuVector, 0x41, 0);

  // Older 64-bit kernels print the architecture by name: no number, no bit.
  const std::string namedArch =
      "Processor\t: AArch64 Processor rev 4 (aarch64)\n"
      "Features\t: fp asimd evtstrm\n"
      "CPU implementer\t: 0x41\n"
      "CPU architecture: AArch64\n";
  expectInfo(namedArch, OVK_CPU_FPU | OVK_CPU_VECTOR, 0x41, 0);

  const std::string armv6 =
      "Features\t: swp half thumb fastmult vfp edsp java tls\n"
      "CPU implementer\t: 65\n"
      "CPU architecture: 6TEJ\n";
  expectInfo(armv6, OVK_CPU_FPU, 65, 0);
}

TEST(CpuInfoParse, X86Machines) {
  const std::string header =
      "processor\t: 0\n"
      "vendor_id\t: GenuineIntel\n"
      "cpu family\t: 6\n"
      "model name\t: Some CPU @ 1.60GHz\n"
      "fpu\t\t: yes\n"
      "fpu_exception\t: yes\n";
  expectInfo(header +
                 "flags\t\t: fpu vme de pse tsc msr pae mce cx8 apic sep mtrr sse sse2 ht syscall nx lm "
                 "constant_tsc pni pclmulqdq monitor ssse3 fma cx16 sse4_1 sse4_2 popcnt aes avx\n"
                 "bugs\t\t: spectre_v1\n\n",
             kArchFpuVector, 0, 1);
  // pni is the kernel's name for SSE3; only SSSE3 counts as the vector unit.
  expectInfo(header + "flags\t\t: fpu vme de pse tsc msr sse sse2 pni\n\n", OVK_CPU_ARCH_V7 | OVK_CPU_FPU, 0,
             1);
}

TEST(CpuInfoParse, OnlyWholeKeysAndTokensAtLineStartCount) {
  const std::string keysInsideLines =
      "Processor\t: Features: vfp neon CPU architecture: 8\n"
      "xFeatures\t: vfp neon\n"
      " CPU implementer\t: 0x41\n"
      "model name\t: flags fpu ssse3 vendor_id\n";
  expectInfo(keysInsideLines, 0, 0, 0);

  // Tokens that merely begin with a known name are other features.
  expectInfo("Features\t: vfpv3 vfpd32 fphp asimdhp asimddp\nCPU architecture: 7\n", OVK_CPU_ARCH_V7, 0, 0);
}

TEST(CpuInfoParse, TextEndsWithoutNewline) {
  expectInfo("Features\t: vfp neon\nCPU architecture: 7", kArchFpuVector, 0, 0);
  expectInfo("CPU architecture: 8\nCPU implementer\t: 0x51", OVK_CPU_ARCH_V7, 0x51, 0);
  expectInfo("", 0, 0, 0);

  // Digits beyond the given length are not part of the value.
  const std::string longer = "CPU implementer\t: 0x4199";
  EXPECT_EQ(ovkParseCpuInfo(longer.data(), longer.size() - 2).implementer, 0x41u);
}

// Every supported host has an FPU and meets the architecture baseline.
TEST(CpuProbe, ReportsTheHostProcessor) {
  const ovkCpuInfo& info = ovkCpuProbe();
  EXPECT_EQ(info.features & (OVK_CPU_ARCH_V7 | OVK_CPU_FPU), OVK_CPU_ARCH_V7 | OVK_CPU_FPU);
#if defined(__x86_64__)
  EXPECT_EQ(info.vendorKnown, 1u);
  EXPECT_EQ((info.features & OVK_CPU_VECTOR) != 0, __builtin_cpu_supports("ssse3") != 0);
#elif defined(__ARM_NEON)
  // ARM text, not the x86 host's seen through an emulator.
  EXPECT_EQ(info.vendorKnown, 0u);
  EXPECT_NE(info.implementer, 0u);
  EXPECT_NE(info.features & OVK_CPU_VECTOR, 0u);
#endif
}

}  // namespace
