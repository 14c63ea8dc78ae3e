// Differential runs of one entry: the input bytes choose an entry of a
// family, its size, strides, start offsets and options, a vector target and
// the pixels; the entry then runs on the portable kernels and on that target,
// each on its own guard-page buffers.  Used by the fuzz targets and by the
// test that replays their corpus, so it depends on no test framework.
#ifndef ORVIK_TEST_DIFFERENTIAL_H
#define ORVIK_TEST_DIFFERENTIAL_H

#include <stddef.h>
#include <stdint.h>

#include <string>

#include "support/entry_table.h"

// Empty when both runs returned the same status, logged the same lines,
// wrote the same bytes and nothing outside their outputs; else what differed.
std::string runDifferential(Family family, const uint8_t* data, size_t size);

#endif
