// Bad arguments for every entry of the entry table: null pointers, zero
// sizes, sizes below the entry's smallest, strides below their rows, sizes
// whose byte counts pass 31 bits, refused options.  Each gets the entry's
// documented answer (its condition text logged once, or status 3) and leaves
// every output untouched.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/entry_harness.h"
#include "support/entry_table.h"
#include "support/entry_test.h"
#include "support/log_capture.h"

namespace {

// What entries without a result log when a buffer is too large to address
// or output rows would overlap.
const char kSpanCondition[] = "output rows do not overlap && every buffer spans less than 2^31 bytes";

using BadArguments = EntryTest;

std::string assertionLine(const EntryInfo& entry, const std::string& condition) {
  return "Assertion failed @" + entry.name + ": " + condition + "\n";
}

// A valid call that the cases spoil one argument of.
struct Case {
  explicit Case(const EntryInfo& entry, Shape shape = {})
      : entry(entry),
        shape(shape.width ? shape : Shape{entry.acceptedWidth(9), entry.acceptedHeight(7)}),
        buffers(entry, this->shape, fnv1a64(entry.name)),
        call(buffers.call(entry.goldenOptions[0])) {}

  // The bytes a row of stride argument i holds at this shape.
  uint64_t rowBytes(size_t strideArg) const {
    uint64_t bytes = 0;
    for (const BufferInfo& buffer : entry.buffers(shape.width, shape.height))
      for (const Region& region : buffer.regions)
        if (region.strideArg == int(strideArg)) bytes = std::max(bytes, region.rowBytes);
    return bytes;
  }
  bool strideOfOutput(size_t strideArg) const {
    for (const BufferInfo& buffer : entry.buffers(shape.width, shape.height))
      for (const Region& region : buffer.regions)
        if (region.strideArg == int(strideArg)) return buffer.output;
    return false;
  }
  // Strides for a call at another size: 0 where that means packed, else the row.
  void packedStridesFor(uint32_t width, uint32_t height) {
    call.width = width;
    call.height = height;
    for (size_t i = 0; i < call.strides.size(); ++i) {
      uint64_t bytes = 0;
      for (const BufferInfo& buffer : entry.buffers(width, height))
        for (const Region& region : buffer.regions)
          if (region.strideArg == int(i)) bytes = std::max(bytes, region.rowBytes);
      call.strides[i] = entry.zeroStrideIsPacked ? 0 : uint32_t(bytes);
    }
  }

  // The call must be refused with one of `lines` (status 3 for status
  // entries), touching no output.
  void expectRefused(const std::string& what, const std::vector<std::string>& lines) {
    buffers.resetOutputs();
    LogCapture log;
    const int64_t status = entry.invoke(call);
    const std::vector<LogLine> logged = log.lines();
    const std::string where = entry.name + ", " + what;
    if (entry.returnsStatus()) {
      EXPECT_EQ(status, entry.refusal) << where;
      EXPECT_TRUE(logged.empty()) << where << ": " << logged[0].message;
    } else if (logged.size() != 1) {
      ADD_FAILURE() << where << ": " << logged.size() << " log lines";
    } else {
      EXPECT_EQ(logged[0].priority, 6) << where;
      EXPECT_EQ(logged[0].tag, "orvik_lib_log") << where;
      EXPECT_NE(std::find(lines.begin(), lines.end(), logged[0].message), lines.end())
          << where << ": logged " << logged[0].message << "expected " << lines[0];
    }
    EXPECT_TRUE(buffers.outputsUntouched()) << where;
  }
  void expectCondition(const std::string& what) { expectRefused(what, refusedWith(entry.condition)); }
  void expectSpanCheck(const std::string& what) { expectRefused(what, refusedWith(kSpanCondition)); }
  // The condition's line, or the size check some entries make before it.
  std::vector<std::string> refusedWith(const std::string& condition) const {
    std::vector<std::string> lines = {assertionLine(entry, condition)};
    if (entry.sizePrecheck) lines.push_back("Error at " + entry.name + "\n");
    if (!entry.extraCondition.empty()) lines.push_back(assertionLine(entry, entry.extraCondition));
    return lines;
  }

  // The call must run without a log line and write nothing outside the outputs.
  void expectAccepted(const std::string& what) {
    LogCapture log;
    entry.invoke(call);
    EXPECT_TRUE(log.lines().empty()) << entry.name << ", " << what << ": " << log.messages()[0];
    EXPECT_EQ(buffers.damage(), "") << entry.name << ", " << what;
  }

  const EntryInfo& entry;
  Shape shape;
  EntryBuffers buffers;
  EntryCall call;
};

TEST_F(BadArguments, NullPointersAndZeroSizes) {
  for (const EntryInfo& entry : entryTable()) {
    for (size_t i = 0; i < Case(entry).buffers.bufferCount(); ++i) {
      Case c(entry);
      if (c.buffers.info(i).nullable) continue;
      c.call.buffers[i] = nullptr;
      c.expectCondition("null " + c.buffers.info(i).name);
    }
    Case zeroWidth(entry), zeroHeight(entry);
    zeroWidth.call.width = 0;
    zeroWidth.expectCondition("zero width");
    zeroHeight.call.height = 0;
    zeroHeight.expectCondition("zero height");
  }
}

// Canny's gradient planes are optional: without one of them the edge map is
// the same and nothing else is written.
TEST_F(BadArguments, OptionalBuffersMayBeNull) {
  int optional = 0;
  for (const EntryInfo& entry : entryTable()) {
    Case full(entry);
    entry.invoke(full.call);
    for (size_t i = 0; i < full.buffers.bufferCount(); ++i) {
      if (!full.buffers.info(i).nullable) continue;
      ++optional;
      Case c(entry);
      c.call.buffers[i] = nullptr;
      c.expectAccepted("null " + c.buffers.info(i).name);
      for (size_t j = 0; j < c.buffers.bufferCount(); ++j)
        if (c.buffers.info(j).output && !c.buffers.info(j).nullable)
          EXPECT_EQ(c.buffers.contents(j), full.buffers.contents(j)) << entry.name << ", " << c.buffers.info(j).name;
    }
  }
  EXPECT_EQ(optional, 2);
}

TEST_F(BadArguments, SizesBelowTheSmallest) {
  for (const EntryInfo& entry : entryTable()) {
    if (entry.minWidth > 1 && entry.fatalBelowMinWidth.empty()) {
      Case c(entry);
      c.call.width = entry.minWidth - 1;
      c.expectCondition("width " + std::to_string(c.call.width));
    }
    if (entry.minHeight > 1) {
      Case c(entry);
      c.call.height = entry.minHeight - 1;
      c.expectCondition("height " + std::to_string(c.call.height));
    }
  }
}

// The deliberate internal check of the subsampled colour rows ends the process.
TEST(BadArgumentsDeathTest, SingleColumnsEndTheSubsampledColourConversions) {
  int fatal = 0;
  for (const EntryInfo& entry : entryTable()) {
    if (entry.fatalBelowMinWidth.empty()) continue;
    ++fatal;
    Case c(entry);
    c.call.width = entry.minWidth - 1;
    EXPECT_EXIT(
        {
          ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE);
          entry.invoke(c.call);
        },
        ::testing::ExitedWithCode(1), entry.fatalBelowMinWidth + " Assertion failed")
        << entry.name;
  }
  EXPECT_EQ(fatal, 11);
}

// A stride below its row is refused by the entry's own condition where it
// checks that stride, by the span check for outputs (their rows would
// overlap), and read as given for inputs.
TEST_F(BadArguments, StridesBelowTheirRows) {
  for (const EntryInfo& entry : entryTable())
    for (size_t i = 0; i < entry.strides.size(); ++i) {
      Case c(entry);
      if (c.rowBytes(i) < 2) continue;
      c.call.strides[i] = uint32_t(c.rowBytes(i) - 1);
      const std::string what = entry.strides[i].name + " one below its row";
      if (entry.strides[i].checked)
        c.expectCondition(what);
      else if (c.strideOfOutput(i))
        c.expectSpanCheck(what);
      else
        c.expectAccepted(what);
    }
}

TEST_F(BadArguments, SizesBeyond31Bits) {
  for (const EntryInfo& entry : entryTable()) {
    // Every row fits 32 bits, the image does not.
    Case image(entry);
    image.packedStridesFor(65536, 65540);
    image.expectSpanCheck("65536x65540");

    for (size_t i = 0; i < entry.strides.size(); ++i) {
      Case c(entry);
      c.call.strides[i] = 0x80000000u;
      c.expectSpanCheck(entry.strides[i].name + " 2^31");
    }

    // A row of more than 2^31 bytes: where the condition multiplies the
    // width in 32 bits it wraps, so either it or the span check refuses.
    Case row(entry);
    row.packedStridesFor(0x80000001u, entry.minHeight);
    if (entry.widthPrecheck) {
      row.expectRefused("width 2^31 + 1", {"Error at " + entry.name + "\n"});
    } else {
      std::vector<std::string> lines = row.refusedWith(entry.condition);
      lines.push_back(assertionLine(entry, kSpanCondition));
      row.expectRefused("width 2^31 + 1", lines);
    }
  }
}

TEST_F(BadArguments, RefusedOptions) {
  int refused = 0;
  for (const EntryInfo& entry : entryTable())
    for (const std::vector<int64_t>& options : entry.rejectedOptions) {
      Case c(entry);
      c.call.options = options;
      c.expectCondition(entry.options[0].name + " " + std::to_string(options[0]));
      ++refused;
    }
  EXPECT_GT(refused, 0);
}

}  // namespace
