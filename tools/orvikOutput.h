// The orvik command's files: outputs appear whole or not at all.
#ifndef ORVIK_TOOLS_OUTPUT_H
#define ORVIK_TOOLS_OUTPUT_H

#include <stdint.h>
#include <stdio.h>

#include <memory>
#include <string>
#include <vector>

struct FileCloser {
  void operator()(FILE* file) const { fclose(file); }
};
using FileHandle = std::unique_ptr<FILE, FileCloser>;

// Writes a regular file through a temporary file beside it, renamed into
// place once complete, so a failure leaves no partial file (and an existing
// one untouched).  Devices and pipes such as /dev/null are written directly.
// On failure `error` says why.
bool writeOutputFile(const std::string& path, const std::vector<uint8_t>& bytes, std::string& error);

#endif
