/* Filters a one-pixel spike through the installed library. */
#include <orvik.h>
#include <stdio.h>
#include <string.h>

int main(void) {
  uint8_t src[8 * 8] = {0}, dst[8 * 8] = {0};
  char version[8];
  src[3 * 8 + 3] = 64;
  ovkGetVersion(version, sizeof version);
  if (strcmp(version, "1.7.1") != 0 || ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE) != 0) return 1;
  ovkFilterGaussian3x3u8_v2(src, 8, 8, 0, dst, 0, 1);
  /* 64 x 4 / 16 at the spike, 64 x 2 / 16 beside it. */
  if (dst[3 * 8 + 3] != 16 || dst[3 * 8 + 4] != 8) return 1;
  puts("consumer ok");
  return 0;
}
