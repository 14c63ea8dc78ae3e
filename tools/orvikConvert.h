// `orvik convert`: PNG images to raw 4:2:0 YCbCr frames (NV21, NV12, I420,
// YV12) and back, through the library's colour conversions.
#ifndef ORVIK_TOOLS_CONVERT_H
#define ORVIK_TOOLS_CONVERT_H

#include <stdio.h>

#include <string>
#include <vector>

// args: IN OUT [--from FORMAT] [--to FORMAT] [--size WxH] [--range video|full]
int runConvert(const std::vector<std::string>& args);

void printConvertHelp(FILE* out);

// The raw formats and the operations that read and write them (`orvik info`).
void printConversions(FILE* out);

#endif
