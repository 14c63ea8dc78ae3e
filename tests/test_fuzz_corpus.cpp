// The fuzz targets' seed inputs and every input that once found a fault
// (fuzz/regressions) replayed through the same differential run, so each
// stays fixed in every build, the ARM ones under qemu included.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "support/differential.h"
#include "support/entry_test.h"

namespace {

namespace fs = std::filesystem;

std::vector<uint8_t> readBytes(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return std::vector<uint8_t>(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

using FuzzCorpus = EntryTest;

TEST_F(FuzzCorpus, EveryInputRunsAlikeOnPortableAndVectorCode) {
  for (const Family family : kFamilies) {
    int inputs = 0;
    for (const char* folder : {"corpus", "regressions"}) {
      const fs::path dir = fs::path(ORVIK_SOURCE_DIR) / "fuzz" / folder / familyName(family);
      if (!fs::is_directory(dir)) continue;
      for (const fs::directory_entry& file : fs::directory_iterator(dir)) {
        const std::vector<uint8_t> bytes = readBytes(file.path());
        EXPECT_EQ(runDifferential(family, bytes.data(), bytes.size()), "") << file.path();
        ++inputs;
      }
    }
    EXPECT_GT(inputs, 0) << familyName(family);
  }
}

}  // namespace
