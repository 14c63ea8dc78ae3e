// Before the first mode change the tables are empty: an entry called then
// must say so instead of jumping through a null pointer.
#include <gtest/gtest.h>

#include "orvik.h"
#include "support/log_capture.h"

TEST(Unconfigured, EntriesLogAndReturnBeforeTheFirstModeChange) {
  uint8_t src[16 * 4] = {}, dst[16 * 4] = {};
  LogCapture log;
  ovkFilterGaussian3x3u8_v2(src, 16, 4, 0, dst, 0, 1);
  EXPECT_EQ(ovkFilterGaussian3x3u8_v3(src, 16, 4, 0, dst, 0, ORVIK_BORDER_REPLICATE, 0), ORVIK_STATUS_FAILURE);
  const std::vector<std::string> expected = {
      "ovkFilterGaussian3x3u8_v2 called before ovkSetOperationMode\n",
      "ovkFilterGaussian3x3u8_v3 called before ovkSetOperationMode\n"};
  EXPECT_EQ(log.messages(), expected);

  // One mode change later the same call filters.
  ASSERT_EQ(ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE), 0);
  src[16 + 1] = 160;
  ovkFilterGaussian3x3u8_v2(src, 16, 4, 0, dst, 0, 0);
  EXPECT_EQ(dst[16 + 1], 160 * 4 / 16);
}
