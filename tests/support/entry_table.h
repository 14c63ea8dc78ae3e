// Every exported operation described once for the checks that all of them
// get (golden outputs, differential fuzzing, the bad-argument sweep): its
// buffers as functions of the image size, its stride and option arguments,
// the smallest size it accepts, how it answers a rejected call, and a call
// through it.  A new entry needs one line here and nothing else.
#ifndef ORVIK_TEST_ENTRY_TABLE_H
#define ORVIK_TEST_ENTRY_TABLE_H

#include <stdint.h>

#include <functional>
#include <string>
#include <vector>

enum class Family { kFilter, kGradient, kYccToRgb, kRgbToYcc, kScale };
constexpr Family kFamilies[] = {Family::kFilter, Family::kGradient, Family::kYccToRgb, Family::kRgbToYcc,
                                Family::kScale};
// Also the name of the family's golden file and fuzz target.
const char* familyName(Family family);

// `rows` rows of `rowBytes` bytes.  The stride between them is stride
// argument `strideArg`, or the row size itself when the entry takes no
// stride for them (-1).
struct Region {
  uint32_t rows;
  uint64_t rowBytes;
  int strideArg;
};

enum class Content { kBytes, kFloats };

// A caller buffer: its regions lie one after another, each starting
// rows x stride after the start of the one before (the chroma plane of a
// camera frame follows its luma plane that way).
struct BufferInfo {
  std::string name;
  bool output;
  std::vector<Region> regions;
  Content content = Content::kBytes;
  bool nullable = false;  // a null pointer is accepted (the buffer is optional)
};

struct StrideInfo {
  std::string name;
  // The entry's own condition rejects a stride below the row size (a zero
  // stride, meaning packed, aside).
  bool checked;
};

// An option argument and the values the fuzzer draws it from.
struct OptionInfo {
  std::string name;
  int64_t lowest, highest;
};

// The arguments of one call: buffers in table order, strides as passed.
struct EntryCall {
  uint32_t width = 0, height = 0;
  std::vector<uint8_t*> buffers;
  std::vector<uint32_t> strides;
  std::vector<int64_t> options;

  template <class T>
  T* out(size_t i) const {
    return reinterpret_cast<T*>(buffers[i]);
  }
  template <class T>
  const T* in(size_t i) const {
    return reinterpret_cast<const T*>(buffers[i]);
  }
  uint32_t stride(size_t i) const { return strides[i]; }
  int32_t option(size_t i) const { return int32_t(options[i]); }
};

// Returns the entry's status, or 0 for entries without a result.
using EntryInvoke = int64_t (*)(const EntryCall& call);
using BufferLayout = std::function<std::vector<BufferInfo>(uint32_t width, uint32_t height)>;

struct EntryInfo {
  std::string name;
  Family family;
  // The condition text a rejected call logs; empty for entries that answer
  // with `refusal` instead.
  std::string condition;
  uint32_t minWidth, minHeight;   // the smallest size the condition accepts
  bool zeroStrideIsPacked;        // a stride of 0 stands for the packed one
  std::vector<StrideInfo> strides;
  BufferLayout buffers;
  std::vector<OptionInfo> options;
  std::vector<std::vector<int64_t>> goldenOptions;    // option sets of the golden outputs
  std::vector<std::vector<int64_t>> rejectedOptions;  // option sets the entry must refuse
  EntryInvoke invoke;
  // A width beyond INT_MAX is refused before anything else with "Error at <entry>".
  bool widthPrecheck = false;
  // Sizes the entry cannot divide (odd ones, or not a whole factor of the
  // destination) are refused before the condition with "Error at <entry>".
  bool sizePrecheck = false;
  // A second check after the condition, for an output the condition does not name.
  std::string extraCondition;
  // What a status entry returns for a refused call.
  int64_t refusal = 3;
  // The text of the deliberate fatal check a width one below minWidth runs
  // into, when the condition does not refuse it.
  std::string fatalBelowMinWidth;

  // Sizes must be multiples of this (2 for the even-only entries, 4 for the
  // quartering ones).
  uint32_t sizeStep = 1;

  bool returnsStatus() const { return condition.empty(); }
  // The nearest size at or above `size` that the entry accepts.
  uint32_t acceptedWidth(uint32_t size) const { return accepted(size, minWidth); }
  uint32_t acceptedHeight(uint32_t size) const { return accepted(size, minHeight); }

 private:
  uint32_t accepted(uint32_t size, uint32_t smallest) const {
    const uint32_t atLeast = size > smallest ? size : smallest;
    return (atLeast + sizeStep - 1) / sizeStep * sizeStep;
  }
};

const std::vector<EntryInfo>& entryTable();

#endif
