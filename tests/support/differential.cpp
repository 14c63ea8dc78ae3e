#include "differential.h"

#include <algorithm>
#include <vector>

#include "support/entry_harness.h"
#include "support/log_capture.h"
#include "support/vector_targets.h"

namespace {

// Reads the fields of a call from the front of the input; past its end
// every field reads as zero.
class FieldReader {
 public:
  FieldReader(const uint8_t* data, size_t size) : data_(data), size_(size) {}

  uint8_t byte() { return next_ < size_ ? data_[next_++] : 0; }
  uint32_t word() {
    uint32_t value = 0;
    for (int i = 0; i < 4; ++i) value = value << 8 | byte();
    return value;
  }
  const uint8_t* rest() const { return data_ + std::min(next_, size_); }
  size_t restSize() const { return size_ - std::min(next_, size_); }

 private:
  const uint8_t* data_;
  size_t size_, next_ = 0;
};

// Mostly small odd sizes, sometimes the smallest the entry accepts or one
// below it, sometimes wide.
uint32_t readSize(FieldReader& in, uint32_t smallest, uint32_t usual, uint32_t wide) {
  const uint8_t mode = in.byte();
  const uint32_t value = in.byte() | uint32_t(in.byte()) << 8;
  switch (mode % 8) {
    case 0:
      return smallest;
    case 1:
      return smallest - 1;
    case 7:
      return 1 + value % wide;
    default:
      return 1 + value % usual;
  }
}

// Stride adjustments: usually none, sometimes a stride a few bytes below
// its row (overlapping rows, or a stride the entry must refuse).
std::vector<int32_t> readStrideAdjust(FieldReader& in, size_t count) {
  std::vector<int32_t> adjust(count);
  for (int32_t& a : adjust) {
    const uint8_t b = in.byte();
    a = b < 24 ? -int32_t(1 + b % 9) : 0;
  }
  return adjust;
}

// Option values from the option's range, one in eight raw 32-bit values.
std::vector<int64_t> readOptions(FieldReader& in, const EntryInfo& entry) {
  std::vector<int64_t> options;
  for (const OptionInfo& option : entry.options) {
    const bool raw = in.byte() % 8 == 0;
    const uint32_t value = in.word();
    options.push_back(raw ? int64_t(int32_t(value))
                          : option.lowest + int64_t(value % uint64_t(option.highest - option.lowest + 1)));
  }
  return options;
}

struct Run {
  int64_t status;
  std::vector<std::string> log;
};

Run runOn(const EntryInfo& entry, EntryBuffers& buffers, const std::vector<int64_t>& options) {
  LogCapture log;
  const int64_t status = entry.invoke(buffers.call(options));
  return {status, log.messages()};
}

}  // namespace

std::string runDifferential(Family family, const uint8_t* data, size_t size) {
  std::vector<const EntryInfo*> entries;
  for (const EntryInfo& entry : entryTable())
    if (entry.family == family) entries.push_back(&entry);
  FieldReader in(data, size);
  const EntryInfo& entry = *entries[in.byte() % entries.size()];
  Shape shape{readSize(in, entry.minWidth, 70, 700), readSize(in, entry.minHeight, 24, 64)};
  // The deliberate fatal check ends the process; test_bad_arguments covers it.
  if (!entry.fatalBelowMinWidth.empty() && shape.width == entry.minWidth - 1) shape.width = entry.minWidth;
  // Entries that take only multiples of 2 or 4 get one: refused sizes stay
  // for the sizes that leave 1 modulo 8.
  if (entry.sizeStep > 1 && shape.width % 8 != 1) shape.width = entry.acceptedWidth(shape.width);
  if (entry.sizeStep > 1 && shape.height % 8 != 1) shape.height = entry.acceptedHeight(shape.height);
  shape.padding = in.byte() % 72;
  shape.zeroStrides = in.byte() % 4 == 0;
  const uint8_t start = in.byte();
  shape.startOffset = start < 64 ? start : -1;
  shape.strideAdjust = readStrideAdjust(in, entry.strides.size());
  const std::vector<int64_t> options = readOptions(in, entry);
  const std::vector<int64_t> targets = vectorTargets();
  const int64_t target = targets[in.byte() % targets.size()];

  EntryBuffers portable(entry, shape, in.rest(), in.restSize());
  EntryBuffers vector(entry, shape, in.rest(), in.restSize());
  entriesRunPortable();
  const Run expected = runOn(entry, portable, options);
  entriesRunVectorTarget(target);
  const Run got = runOn(entry, vector, options);

  std::string call = entry.name + " " + shape.label();
  for (size_t i = 0; i < options.size(); ++i) call += " " + entry.options[i].name + "=" + std::to_string(options[i]);
  call += " on " + targetName(target) + ": ";
  if (got.status != expected.status)
    return call + "status " + std::to_string(got.status) + ", portable " + std::to_string(expected.status);
  if (got.log != expected.log) return call + "log lines differ from the portable run's";
  for (const EntryBuffers* buffers : {&portable, &vector}) {
    const std::string damage = buffers->damage();
    if (!damage.empty()) return call + (buffers == &portable ? "portable " : "vector ") + damage;
  }
  for (size_t i = 0; i < portable.bufferCount(); ++i)
    if (portable.info(i).output && portable.contents(i) != vector.contents(i))
      return call + portable.info(i).name + " differs from the portable run's";
  return "";
}
