// Golden outputs: every exported entry on deterministic inputs at several
// shapes, every byte of every output hashed (bytes it must leave alone
// included) and compared with tests/golden/<family>.txt.  The same files must
// hold for the portable kernels, for every vector target and on every
// architecture, so outputs can be compared across devices.
//
// ORVIK_GOLDEN_UPDATE=1 rewrites the files (scripts/golden.sh), and refuses
// to when the portable kernels and a vector target disagree.
#include <gtest/gtest.h>
#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "cpu/orvikTable.h"
#include "support/entry_harness.h"
#include "support/entry_table.h"
#include "support/vector_targets.h"

namespace {

using Lines = std::map<Family, std::vector<std::string>>;

// The smallest size the entry accepts, then odd sizes, padded rows, odd and
// aligned starts, and rows beyond two of the widest vectors.
std::vector<Shape> goldenShapes(const EntryInfo& entry) {
  std::vector<Shape> shapes = {{entry.minWidth, entry.minHeight},
                               {17, 9, 0, true},
                               {67, 13, 3, false, 1},
                               {130, 21, 5, false, 0},
                               {255, 6, 1, false, 63}};
  for (Shape& shape : shapes) {
    shape.width = entry.acceptedWidth(shape.width);
    shape.height = entry.acceptedHeight(shape.height);
  }
  return shapes;
}

std::string hex64(uint64_t value) {
  char text[17];
  snprintf(text, sizeof text, "%016" PRIx64, value);
  return text;
}

// "<entry> <shape> <options> : <output>=<hash> ..."; problems other than
// the bytes (a damaged input or padding) go to `damage`.
std::string goldenLine(const EntryInfo& entry, const Shape& shape, const std::vector<int64_t>& options,
                       std::vector<std::string>& damage) {
  std::string key = entry.name + " " + shape.label();
  for (size_t i = 0; i < options.size(); ++i) key += " " + entry.options[i].name + "=" + std::to_string(options[i]);
  EntryBuffers buffers(entry, shape, fnv1a64(key));
  const int64_t status = entry.invoke(buffers.call(options));
  std::string line = key + " :";
  if (entry.returnsStatus()) line += " status=" + std::to_string(status);
  for (size_t i = 0; i < buffers.bufferCount(); ++i)
    if (buffers.info(i).output) line += " " + buffers.info(i).name + "=" + hex64(buffers.hash(i));
  const std::string problem = buffers.damage();
  if (!problem.empty()) damage.push_back(key + ": " + problem);
  return line;
}

Lines computeLines(std::vector<std::string>& damage) {
  Lines lines;
  for (const EntryInfo& entry : entryTable())
    for (const Shape& shape : goldenShapes(entry))
      for (const std::vector<int64_t>& options : entry.goldenOptions)
        lines[entry.family].push_back(goldenLine(entry, shape, options, damage));
  return lines;
}

std::string goldenPath(Family family) {
  return std::string(ORVIK_SOURCE_DIR) + "/tests/golden/" + familyName(family) + ".txt";
}

std::vector<std::string> readLines(const std::string& path) {
  std::vector<std::string> lines;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);)
    if (!line.empty() && line[0] != '#') lines.push_back(line);
  return lines;
}

const char kFileHeader[] =
    "# Golden outputs: entry, shape (width x height, row padding, start offset), options, then the\n"
    "# FNV-1a hash of every output byte.  Regenerate with scripts/golden.sh.\n";

// Up to ten differing lines, as "expected / got".
std::vector<std::string> differences(const std::vector<std::string>& expected, const std::vector<std::string>& got) {
  std::vector<std::string> out;
  if (expected.size() != got.size())
    out.push_back(std::to_string(expected.size()) + " lines expected, " + std::to_string(got.size()) + " computed");
  for (size_t i = 0; i < std::min(expected.size(), got.size()) && out.size() < 10; ++i)
    if (expected[i] != got[i]) out.push_back("expected " + expected[i] + "\n     got " + got[i]);
  return out;
}

// The lines of the portable kernels, then of each vector target by name.
std::vector<std::pair<std::string, Lines>> everyVariant(std::vector<std::string>& damage) {
  std::vector<std::pair<std::string, Lines>> variants;
  entriesRunPortable();
  variants.emplace_back("portable", computeLines(damage));
  for (const int64_t target : vectorTargets()) {
    entriesRunVectorTarget(target);
    variants.emplace_back(targetName(target), computeLines(damage));
  }
  entriesRunDefault();
  return variants;
}

size_t lineCount(const Lines& lines) {
  size_t count = 0;
  for (const auto& [family, list] : lines) count += list.size();
  return count;
}

TEST(Golden, EveryRegistryEntryHasExactlyOneTableLine) {
  std::multiset<std::string> tableNames;
  for (const EntryInfo& entry : entryTable()) tableNames.insert(entry.name);
  std::set<std::string> registryNames;
  for (uint32_t i = 0; i < ovkEntryCount; ++i) {
    registryNames.insert(ovkEntryList[i].name);
    EXPECT_EQ(tableNames.count(ovkEntryList[i].name), 1u) << ovkEntryList[i].name << " needs one entry table line";
  }
  for (const std::string& name : tableNames) EXPECT_TRUE(registryNames.count(name)) << name << " is not exported";
}

TEST(Golden, PortableAndEveryVectorTargetGiveTheCheckedInBytes) {
  ASSERT_EQ(ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE), 0);
  std::vector<std::string> damage;
  const auto variants = everyVariant(damage);
  for (const std::string& problem : damage) ADD_FAILURE() << problem;
  ASSERT_GE(variants.size(), 2u) << "no vector target ran";

  if (getenv("ORVIK_GOLDEN_UPDATE")) {
    for (size_t v = 1; v < variants.size(); ++v)
      for (const auto& [family, lines] : variants[0].second)
        for (const std::string& difference : differences(lines, variants[v].second.at(family)))
          ADD_FAILURE() << variants[v].first << " differs from portable:\n  " << difference;
    if (HasFailure()) GTEST_FAIL() << "golden files left as they were";
    for (const auto& [family, lines] : variants[0].second) {
      std::ofstream file(goldenPath(family));
      file << kFileHeader;
      for (const std::string& line : lines) file << line << "\n";
      ASSERT_TRUE(file.good()) << goldenPath(family);
    }
    printf("golden: wrote %zu lines\n", lineCount(variants[0].second));
    return;
  }

  for (const auto& [name, lines] : variants) {
    size_t mismatches = 0;
    for (const auto& [family, list] : lines)
      for (const std::string& difference : differences(readLines(goldenPath(family)), list)) {
        ADD_FAILURE() << name << ", " << goldenPath(family) << ":\n  " << difference;
        ++mismatches;
      }
    printf("golden: %-8s %zu lines, %s\n", name.c_str(), lineCount(lines),
           mismatches ? "DIFFERENT from the golden files" : "identical to the golden files");
  }
}

}  // namespace
