// `orvik scale`: a PNG resized plane by plane through the library's scaling
// operations.
#ifndef ORVIK_TOOLS_SCALE_H
#define ORVIK_TOOLS_SCALE_H

#include <stdio.h>

#include <string>
#include <vector>

// args: IN.png OUT.png --size WxH [--method METHOD]
int runScale(const std::vector<std::string>& args);

void printScaleHelp(FILE* out);

#endif
