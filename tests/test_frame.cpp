// The wrapper sequence (selection, constraint fallbacks, per-call log,
// validation, dispatch, status retry) and the operation modes, driven through
// fake DSP and GPU back-ends.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <string.h>

#include <string>
#include <vector>

#include "cpu/orvikBackend.h"
#include "cpu/orvikTable.h"
#include "support/fake_backends.h"
#include "support/log_capture.h"

namespace {

constexpr uint32_t kGaussian = ovkGroup::FilterGaussian3x3u8;
constexpr uint32_t kGaussianV3 = ovkGroup::FilterGaussian3x3u8_v3;

// 64-byte aligned; the tests offset them to miss an alignment.
alignas(64) uint8_t gSrc[184 * 144 + 64];
alignas(64) uint8_t gDst[184 * 144 + 64];

std::vector<std::string> messagesAt(const LogCapture& log, int priority) {
  std::vector<std::string> out;
  for (const LogLine& line : log.lines())
    if (line.priority == priority) out.push_back(line.message);
  return out;
}

class Frame : public ::testing::Test {
 protected:
  void TearDown() override {
    unsetenv("RUNTIME_ORVIK_LOG");
    ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE);
  }
};

TEST_F(Frame, DspSizeFloorAndAlignmentFallBackToVector) {
  FakeBackends fakes;
  ASSERT_EQ(ovkSetOperationMode(ORVIK_OP_LOW_POWER), 0);
  ASSERT_EQ(ovkImplTable[kGaussian], OVK_IMPL_RDSP);
  setenv("RUNTIME_ORVIK_LOG", "1", 1);
  ASSERT_EQ(ovkSetOperationMode(ORVIK_OP_LOW_POWER), 0);
  LogCapture log;

  // First generation: width x height must exceed 25344.
  ovkFilterGaussian3x3u8(gSrc, 176, 144, gDst, 1);
  EXPECT_EQ(fakes.state().dspCalls, 0);
  ovkFilterGaussian3x3u8(gSrc, 184, 144, gDst, 1);
  EXPECT_EQ(fakes.state().dspCalls, 1);

  // _v2: stride x height may equal 25344; a pointer off 8 bytes falls back.
  ovkFilterGaussian3x3u8_v2(gSrc, 176, 144, 0, gDst, 0, 1);
  EXPECT_EQ(fakes.state().dspCalls, 2);
  ovkFilterGaussian3x3u8_v2(gSrc + 4, 176, 144, 0, gDst, 0, 1);
  ovkFilterGaussian3x3u8_v2(gSrc, 176, 3, 0, gDst, 0, 1);  // fewer than 4 rows
  EXPECT_EQ(fakes.state().dspCalls, 2);

  const std::vector<std::string> expected = {"ovkFilterGaussian3x3u8_PELAR", "ovkFilterGaussian3x3u8_RDSP",
                                             "ovkFilterGaussian3x3u8_v2_RDSP", "ovkFilterGaussian3x3u8_v2_PELAR",
                                             "ovkFilterGaussian3x3u8_v2_PELAR"};
  EXPECT_EQ(log.messages(), expected);
  for (const LogLine& line : log.lines()) EXPECT_EQ(line.priority, 3);
}

TEST_F(Frame, ExtendedDspModeTurnsConstraintChecksOff) {
  FakeBackends fakes;
  ASSERT_EQ(ovkSetOperationMode(ORVIK_OP_EXT_RDSP), 0);
  EXPECT_EQ(HW_constraint_checks_enable, 0u);
  EXPECT_EQ(fakes.state().constraintFlag, 0u);
  ovkFilterGaussian3x3u8_v2(gSrc + 1, 13, 5, 16, gDst, 16, 1);
  EXPECT_EQ(fakes.state().dspCalls, 1);

  // Any later mode change turns them back on.
  ASSERT_EQ(ovkSetOperationMode(ORVIK_OP_LOW_POWER), 0);
  EXPECT_EQ(HW_constraint_checks_enable, 1u);
  ovkFilterGaussian3x3u8_v2(gSrc + 1, 13, 5, 16, gDst, 16, 1);
  EXPECT_EQ(fakes.state().dspCalls, 1);
}

TEST_F(Frame, GpuAlignmentIsCheckedEvenWithChecksOff) {
  FakeBackends fakes;
  ASSERT_EQ(ovkSetOperationMode(ORVIK_OP_PERFORMANCE), 0);
  ASSERT_EQ(ovkImplTable[kGaussian], OVK_IMPL_GPU);
  HW_constraint_checks_enable = 0;
  ovkFilterGaussian3x3u8_v2(gSrc, 64, 8, 64, gDst, 64, 1);
  EXPECT_EQ(fakes.state().gpuCalls, 1);
  ovkFilterGaussian3x3u8_v2(gSrc + 8, 64, 8, 64, gDst, 64, 1);
  ovkFilterGaussian3x3u8_v2(gSrc, 60, 8, 60, gDst, 64, 1);  // stride not a multiple of 8
  EXPECT_EQ(fakes.state().gpuCalls, 1);
}

TEST_F(Frame, DecliningBackendIsRetriedOnVector) {
  FakeBackends fakes;
  ASSERT_EQ(ovkSetOperationMode(ORVIK_OP_EXT_RDSP), 0);
  ASSERT_EQ(ovkImplTable[kGaussianV3], OVK_IMPL_RDSP);
  for (int i = 0; i < 32 * 8; ++i) gSrc[i] = uint8_t(i * 7);
  const auto filter = [] { return ovkFilterGaussian3x3u8_v3(gSrc, 32, 8, 0, gDst, 0, ORVIK_BORDER_REPLICATE, 0); };
  EXPECT_EQ(filter(), ORVIK_STATUS_SUCCESS);
  EXPECT_EQ(fakes.state().dspCalls, 1);
  // The retry really filtered: a replicated corner of a constant-free image.
  EXPECT_EQ(gDst[0], (9 * gSrc[0] + 3 * gSrc[1] + 3 * gSrc[32] + gSrc[33]) >> 4);
  // Any other status is handed back as it is.
  fakes.state().dspStatus = ORVIK_STATUS_NO_RESOURCES;
  EXPECT_EQ(filter(), ORVIK_STATUS_NO_RESOURCES);
}

TEST_F(Frame, PerCallLogFollowsTheProperty) {
  setenv("RUNTIME_ORVIK_LOG", "1", 1);
  ASSERT_EQ(ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE), 0);
  EXPECT_EQ(libLogPrint, 1);
  {
    LogCapture log;
    ovkFilterGaussian3x3u8_v2(gSrc, 16, 4, 0, gDst, 0, 1);
    ovkFilterGaussian3x3u8_v2(gSrc, 16, 1, 0, gDst, 0, 1);  // fails validation, still logged
    const std::string impl = ovkImplChar[ovkImplTable[kGaussian]];
    ASSERT_EQ(log.lines().size(), 3u);
    EXPECT_EQ(log.lines()[0].message, "ovkFilterGaussian3x3u8_v2_" + impl);
    EXPECT_EQ(log.lines()[1].message, "ovkFilterGaussian3x3u8_v2_" + impl);
    EXPECT_EQ(log.lines()[2].priority, 6);
  }
  setenv("RUNTIME_ORVIK_LOG", "0", 1);
  ASSERT_EQ(ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE), 0);
  LogCapture log;
  ovkFilterGaussian3x3u8_v2(gSrc, 16, 4, 0, gDst, 0, 1);
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(Frame, ModesSetTheSelectors) {
  const uint32_t vector = (ovkAvailableHardware(ORVIK_OP_CPU_PERFORMANCE) & 0x4) ? 1 : 0;
  LogCapture log;
  // No back-end exists here: a back-end mode becomes CPU performance.
  EXPECT_EQ(ovkSetOperationMode(ORVIK_OP_LOW_POWER), 0);
  EXPECT_EQ(log.messages(),
            std::vector<std::string>{"DSP and GPU not present. Setting ORVIK mode to ORVIK_OP_CPU_PERFORMANCE.\n"});
  EXPECT_EQ(mode_globalVar, ORVIK_OP_CPU_PERFORMANCE);
  EXPECT_EQ(ovkImplTable[kGaussian], vector);

  EXPECT_EQ(ovkSetOperationMode(0x80000002u), 0);  // everything portable
  EXPECT_EQ(ovkImplTable[kGaussian], 0u);
  EXPECT_EQ(mode_globalVar, 0x80000002u);
  EXPECT_EQ(ovkSetOperationMode(0x80000001u), 0);
  EXPECT_EQ(ovkImplTable[kGaussian], vector);
  EXPECT_EQ(ovkSetOperationMode(0x80000010u), -1);  // unknown extended mode
  EXPECT_EQ(ovkImplTable[kGaussian], 0u);
  EXPECT_EQ(ovkSetOperationMode(7), 0);  // plain modes above 3 run portable
  EXPECT_EQ(ovkImplTable[kGaussian], 0u);
}

TEST_F(Frame, ExtOptionsOutsideTheTwoAreRefused) {
  ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE);
  LogCapture log;
  EXPECT_EQ(ovkSetOperationModeExt(2), 1);
  EXPECT_EQ(mode_globalVar, ORVIK_OP_CPU_PERFORMANCE);
  const std::vector<std::string> lines = messagesAt(log, 3);
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0],
            "Failed in ovkSetOperationModeExt. Please select appropriate option for mode to "
            "ovkSetOperationModeExt based on the target of interest");
  EXPECT_EQ(lines[1],
            "For mobile targets, ovkSetOperationModeExt supports only ORVIK_OP_EXT_RDSP and "
            "ORVIK_OP_EXT_GPU options");

  FakeBackends fakes;
  EXPECT_EQ(ovkSetOperationModeExt(1), 0);
  EXPECT_EQ(mode_globalVar, ORVIK_OP_EXT_GPU);
  EXPECT_EQ(ovkImplTable[kGaussian], OVK_IMPL_GPU);
  EXPECT_EQ(ovkImplTable[kGaussianV3], (ovkAvailableHardware(3) & 0x4) ? 1u : 0u);  // no GPU form
}

TEST_F(Frame, DspSessionIsReusedAndAFailureIsFinal) {
  FakeBackends fakes;
  LogCapture log;
  ovkSetOperationMode(ORVIK_OP_LOW_POWER);
  ovkSetOperationMode(ORVIK_OP_LOW_POWER);
  EXPECT_EQ(fakes.state().opens, 1);
  EXPECT_EQ(fakes.state().lastSessionMode, 0);
  EXPECT_EQ(messagesAt(log, 4), std::vector<std::string>{"FIT:(FeatureName=>KELVAR6, Initialized=>1)"});

  // Performance mode uses session mode 2: the session is reopened.
  ovkSetOperationMode(ORVIK_OP_PERFORMANCE);
  EXPECT_EQ(fakes.state().closes, 1);
  EXPECT_EQ(fakes.state().opens, 2);
  EXPECT_EQ(fakes.state().lastSessionMode, 2);
  EXPECT_EQ(GPU_initflag, 0x20u);
  EXPECT_EQ(RDSP_initflag, 0x8u);

  ovkCleanUp();
  EXPECT_EQ(fakes.state().closes, 2);
  EXPECT_EQ(fakes.state().gpuCleanUps, 1);
  EXPECT_EQ(GPU_initflag, 0u);
  EXPECT_EQ(ovkSharedMemAlloc_, nullptr);

  fakes.state().openResult = -1;
  log.clear();
  ovkSetOperationMode(ORVIK_OP_CPU_OFFLOAD);
  ovkSetOperationMode(ORVIK_OP_CPU_OFFLOAD);
  EXPECT_EQ(fakes.state().opens, 3);
  EXPECT_EQ(messagesAt(log, 6), std::vector<std::string>{"R6 initialized failed. R6 Orvik functions are disabled."});
  EXPECT_EQ(ovkImplTable[kGaussianV3], (ovkAvailableHardware(3) & 0x4) ? 1u : 0u);
}

TEST_F(Frame, HardwareReportCarriesBackendBits) {
  const uint64_t cpuOnly = ovkAvailableHardware(ORVIK_OP_CPU_PERFORMANCE);
  EXPECT_EQ(cpuOnly & 0x2, 0x2u);
  EXPECT_EQ(cpuOnly >> 32, cpuOnly & 0xFFFFFFFFu);
  EXPECT_EQ(cpuOnly & 0x28, 0u);

  FakeBackends fakes;
  const uint64_t full = ovkAvailableHardware(ORVIK_OP_PERFORMANCE);
  EXPECT_EQ(full & 0x28, 0x28u);
  EXPECT_EQ(full >> 32, (cpuOnly & 0x186) | 1);
  EXPECT_EQ(ovkAvailableHardware(ORVIK_OP_LOW_POWER) & 0x20, 0u);  // low power leaves the GPU alone
  EXPECT_EQ(ovkAvailableHWComponent(ORVIK_OP_PERFORMANCE), 0x28u);
  EXPECT_EQ(ovkAvailableHWComponent(ORVIK_OP_CPU_PERFORMANCE), 0u);
  EXPECT_EQ(ovkHasGPU(), 1);
  fakes.state().gpuPresent = false;
  EXPECT_EQ(ovkHasGPU(), 0);
}

TEST_F(Frame, RemoteLibraryModeFillsRemotePointers) {
  FakeBackends fakes;
  ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE);
  EXPECT_EQ(ovkSetOperationModeRemoteLib(ORVIK_OP_EXT_RDSP), 0);
  EXPECT_NE(ovkFilterGaussian3x3u8_v2R_, nullptr);
  EXPECT_NE(ovkFilterGaussian3x3u8_v3R_, nullptr);
  ovkFilterGaussian3x3u8_v2R_(nullptr, 0, 0, 0, nullptr, 0, 0);
  EXPECT_EQ(fakes.state().dspCalls, 1);
  EXPECT_EQ(ovkSetOperationModeRemoteLib(ORVIK_OP_EXT_GPU), 0);
  EXPECT_EQ(ovkFilterGaussian3x3u8_v3R_, nullptr);  // nulled, and the GPU has no such kernel
  ovkFilterGaussian3x3u8R_(nullptr, 0, 0, 0, nullptr, 0, 0);
  EXPECT_EQ(fakes.state().gpuCalls, 1);
}

TEST_F(Frame, FillersAndKeptSelectors) {
  ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE);
  const std::vector<ovkFuncPtr> before(ovkFuncTable, ovkFuncTable + OVK_NUM_GROUPS * OVK_NUM_IMPLS);
  EXPECT_EQ(uCTable(ovkFuncTable, ovkInternalFuncTable, 7), 1);
  EXPECT_EQ(uVTable(ovkFuncTable, ovkInternalFuncTable, 7), 1);
  EXPECT_TRUE(std::equal(before.begin(), before.end(), ovkFuncTable));

  // Shared-memory groups and buffer registration keep their selectors.
  uint32_t* const kept[] = {&ovkImplTable[362], &ovkImplTable[363], &ovkInternalImplTable[11]};
  for (uint32_t* selector : kept) *selector = 2;
  ovkImplTable[100] = 2;
  ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE);
  for (uint32_t* selector : kept) {
    EXPECT_EQ(*selector, 2u);
    *selector = 0;
  }
  EXPECT_EQ(ovkImplTable[100], 0u);

  // Kernel pointers: ovkX_ is the portable kernel, ppovkX points at it.
  EXPECT_EQ(ovkFilterGaussian3x3u8_v2_, &ovkFilterGaussian3x3u8C);
  EXPECT_EQ(ppovkFilterGaussian3x3u8_v2, &ovkFilterGaussian3x3u8_v2_);
  EXPECT_EQ(*ppovkFilterGaussian3x3u8_v3, &ovkFilterGaussian3x3u8_v3C);
}

TEST(Utilities, Version) {
  char buffer[8];
  memset(buffer, 'x', sizeof buffer);
  ovkGetVersion(buffer, 5);
  EXPECT_EQ(std::string(buffer, 6), std::string("\0\0\0\0\0x", 6));
  ovkGetVersion(buffer, 8);
  EXPECT_STREQ(buffer, "1.7.1");
  EXPECT_EQ(buffer[6], 'x');
  ovkGetVersion(nullptr, 8);
}

TEST(Utilities, LogAssertFormatsUnderTheFilesBaseName) {
  LogCapture log;
  EXPECT_EQ(ovkLogAssert("src/cpu/orvikBlurC.cpp", 42, 5, "value %d", 7), 7);
  EXPECT_EQ(ovkLogAssert("plain", 0, 6, "%s!", "no line"), 8);
  std::vector<std::string> lines;
  for (const LogLine& line : log.lines())
    lines.push_back(std::to_string(line.priority) + " " + line.tag + ":" + line.message);
  EXPECT_EQ(lines, (std::vector<std::string>{"5 orvikBlurC.cpp:  42| value 7", "6 plain:no line!"}));

  // Long messages are cut to the 512-byte buffer but report their full length.
  const std::string longText(1000, 'a');
  EXPECT_EQ(ovkLogAssert("t", 1, 3, "%s", longText.c_str()), 1000);
  EXPECT_EQ(log.lines()[2].message.size(), 511u);
}

TEST(Utilities, TimeIsMicroseconds) {
  const uint64_t before = ovkGetTime();
  timespec pause{0, 20 * 1000 * 1000};
  nanosleep(&pause, nullptr);
  const uint64_t elapsed = ovkGetTime() - before;
  EXPECT_GE(elapsed, 19000u);
  EXPECT_LT(elapsed, 10u * 1000 * 1000);
}

}  // namespace
