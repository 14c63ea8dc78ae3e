// The shared library exports exactly the registry's operations, kernel
// pointers and inner-kernel slots plus the frame's API and documented data, nothing else.
#include <elf.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "cpu/orvikTable.h"

namespace {

template <class Ehdr, class Shdr, class Sym>
std::set<std::string> definedDynamicSymbols(const std::vector<char>& image) {
  const auto& header = *reinterpret_cast<const Ehdr*>(image.data());
  const auto* sections = reinterpret_cast<const Shdr*>(image.data() + header.e_shoff);
  std::set<std::string> names;
  for (unsigned i = 0; i < header.e_shnum; ++i) {
    if (sections[i].sh_type != SHT_DYNSYM) continue;
    const char* strings = image.data() + sections[sections[i].sh_link].sh_offset;
    const auto* symbols = reinterpret_cast<const Sym*>(image.data() + sections[i].sh_offset);
    const size_t count = sections[i].sh_size / sizeof(Sym);
    for (size_t s = 0; s < count; ++s) {
      const unsigned type = symbols[s].st_info & 0xF;
      const unsigned binding = symbols[s].st_info >> 4;
      if (symbols[s].st_shndx == SHN_UNDEF || (type != STT_FUNC && type != STT_OBJECT)) continue;
      if (binding != STB_GLOBAL && binding != STB_WEAK) continue;
      // Names starting with "__" belong to the toolchain (sanitizer ODR markers).
      const std::string name = strings + symbols[s].st_name;
      if (name.compare(0, 2, "__") != 0) names.insert(name);
    }
  }
  return names;
}

std::set<std::string> exportedSymbols(const char* path) {
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> image{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (image.size() < EI_NIDENT) return {};
  if (image[EI_CLASS] == ELFCLASS64) return definedDynamicSymbols<Elf64_Ehdr, Elf64_Shdr, Elf64_Sym>(image);
  return definedDynamicSymbols<Elf32_Ehdr, Elf32_Shdr, Elf32_Sym>(image);
}

// The frame's own API and data; the operations come from the registry.
const char* const kFrameSymbols[] = {
    "GPU_initflag", "HW_constraint_checks_enable", "RDSP_initflag", "libLogPrint", "mode_globalVar",
    "ovkAvailableHWComponent", "ovkAvailableHardware", "ovkAvailableProcessors", "ovkCleanUp",
    "ovkFuncTable", "ovkGetTime", "ovkGetVersion", "ovkHasGPU", "ovkImplChar", "ovkImplTable",
    "ovkInternalFuncTable", "ovkInternalImplTable", "ovkLogAssert", "ovkPlatformOptClose",
    "ovkPlatformOptGetFunc", "ovkPlatformOptLoad", "ovkSetLogSink", "ovkSetOperationMode",
    "ovkSetOperationModeExt", "ovkSetOperationModeRemoteLib", "ovkSharedMemAllocR_", "ovkSharedMemAlloc_",
    "ovkSharedMemFreeR_", "ovkSharedMemFree_", "ovk_check_only_cpu", "ppovkSharedMemAlloc",
    "ppovkSharedMemFree",
    // memory and scratch buffers
    "ovkMemAlloc", "ovkMemFree", "ovkMemAlign", "ovkMemAlignFree", "ovkMemInit", "ovkMemInitPreAlloc",
    "ovkMemDeInit", "ovkGetScratchBufferAligned_", "ovkGetScratchBufferUnaligned_",
    "ovkReleaseScratchBuffer_",
    // block storage and sequences
    "ovkInitMemStorage", "ovkDeInitMemStorage", "ovkAllocateMemBlock", "ovkInitSeq", "ovkClearSeq",
    "ovkSeqPush", "ovkSeqPushMulti", "ovkGetSeqElem", "ovkSeqPopMulti", "ovkStartReadSeq",
    "ovkNextSeqElem",
    // constant tables of the filters
    "knl5x5", "knl11x11",
    // scaling helpers and the reciprocal table
    "mn_div_table", "ovkGetNumBits", "ovkGetMaxNumTrail0s"};

TEST(Symbols, SharedLibraryExportsExactlyTheApi) {
  std::set<std::string> expected(std::begin(kFrameSymbols), std::end(kFrameSymbols));
  for (uint32_t i = 0; i < ovkEntryCount; ++i) {
    const std::string name = ovkEntryList[i].name;
    const std::string suffix = name.substr(3);
    expected.insert(name);
    expected.insert(name + "_");
    expected.insert("ppovk" + suffix);
    if (ovkEntryList[i].hasRemote) expected.insert(name + "R_");
  }
#define OVK_X(stem, Fn, vector) expected.insert(#stem "_");
  OVK_INNER_KERNELS(OVK_X)
#undef OVK_X
  const std::set<std::string> exported = exportedSymbols(ORVIK_SHARED_LIBRARY);
  ASSERT_FALSE(exported.empty()) << "cannot read " << ORVIK_SHARED_LIBRARY;

  std::vector<std::string> missing, extra;
  std::set_difference(expected.begin(), expected.end(), exported.begin(), exported.end(),
                      std::back_inserter(missing));
  std::set_difference(exported.begin(), exported.end(), expected.begin(), expected.end(),
                      std::back_inserter(extra));
  EXPECT_TRUE(missing.empty()) << "not exported: " << ::testing::PrintToString(missing);
  EXPECT_TRUE(extra.empty()) << "exported but not part of the API: " << ::testing::PrintToString(extra);
}

}  // namespace
