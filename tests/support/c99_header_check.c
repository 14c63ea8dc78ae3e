/* The public header must compile as strict C99. */
#include "orvik.h"

int orvikC99HeaderCheck(void) {
  ovkStatusCode status = ORVIK_STATUS_SUCCESS;
  ovkBorderType border = ORVIK_BORDER_REPLICATE;
  ovkMemStorage storage;
  ovkSeq seq;
  (void)storage;
  (void)seq;
  return (int)(status + border);
}
