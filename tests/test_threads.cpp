// Entries called from eight threads at once, each thread on buffers of its
// own, after one mode change on the main thread; before that, the first
// processor probe from all of them together.  Every output must be the
// bytes the same call gave on one thread; the scratch pool must serve Canny
// and sequence callers that contend for its slots, and refuse all of them
// while the threads together hold every slot; and each log line must reach
// exactly one of the sinks another thread keeps swapping meanwhile.  The tsan
// preset runs this under ThreadSanitizer, where any unsynchronised access
// fails it as well.
#include <gtest/gtest.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "orvik.h"
#include "support/entry_harness.h"
#include "support/entry_table.h"

namespace {

constexpr uint32_t kWorkers = 8;
constexpr uint32_t kPasses = 3;
constexpr uint32_t kPoolSlots = 32;
// Between them the workers then hold every slot of the pool.
constexpr uint32_t kSlotsPerWorker = kPoolSlots / kWorkers;
constexpr uint32_t kPreAllocBytes = 64 * 1024;
constexpr int kDebug = 3, kError = 6;
const char kTag[] = "orvik_lib_log";

// Lets its threads go on together once all of them have arrived.
class Barrier {
 public:
  explicit Barrier(uint32_t parties) : parties_(parties) {}

  void wait() {
    std::unique_lock<std::mutex> lock(mutex_);
    const uint64_t generation = generation_;
    if (++arrived_ == parties_) {
      arrived_ = 0;
      ++generation_;
      released_.notify_all();
      return;
    }
    released_.wait(lock, [&] { return generation_ != generation; });
  }

 private:
  const uint32_t parties_;
  std::mutex mutex_;
  std::condition_variable released_;
  uint32_t arrived_ = 0;
  uint64_t generation_ = 0;
};

// Must stay the first test of the file: the processor is probed for the
// first time here, from every worker at once.
TEST(Threads, FirstHardwareProbesAgree) {
  std::vector<uint64_t> reports(kWorkers);
  std::vector<int32_t> processors(kWorkers);
  Barrier barrier(kWorkers);
  std::vector<std::thread> threads;
  for (uint32_t t = 0; t < kWorkers; ++t)
    threads.emplace_back([&, t] {
      barrier.wait();
      reports[t] = ovkAvailableHardware(ORVIK_OP_CPU_PERFORMANCE);
      processors[t] = ovkAvailableProcessors();
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_NE(reports[0] & 0x2, 0u) << "probe done";
  EXPECT_GT(processors[0], 0);
  for (uint32_t t = 1; t < kWorkers; ++t) {
    EXPECT_EQ(reports[t], reports[0]);
    EXPECT_EQ(processors[t], processors[0]);
  }
}

// ---- Log lines -------------------------------------------------------------------

enum LineKind : size_t { kPerCall, kAssertion, kStorage, kLineKinds };

struct KnownLine {
  LineKind kind;
  int priority;
};

// Every line the library may log during a round, made before any thread
// starts: the sinks are plain functions and find it through this global.
std::map<std::string, KnownLine> gKnownLines;
std::atomic<uint64_t> gLinesOfKind[kLineKinds];
std::atomic<uint64_t> gUnexpectedLines{0};
std::atomic<uint64_t> gLinesPerSink[2];

std::map<std::string, KnownLine> knownLines() {
  std::map<std::string, KnownLine> lines;
  for (const EntryInfo& entry : entryTable()) {
    for (const char* impl : {"CPU", "PELAR"}) lines[entry.name + "_" + impl] = {kPerCall, kDebug};
    if (!entry.returnsStatus())
      lines["Assertion failed @" + entry.name + ": " + entry.condition + "\n"] = {kAssertion, kError};
  }
  // A sequence that cannot get a block.
  for (const char* text : {"NULL storage pointer\n", "cannot allocate new block\n"}) lines[text] = {kStorage, kError};
  return lines;
}

template <size_t Sink>
void countingSink(int priority, const char* tag, const char* message) {
  gLinesPerSink[Sink].fetch_add(1);
  const auto known = gKnownLines.find(message);
  if (known == gKnownLines.end() || known->second.priority != priority || strcmp(tag, kTag) != 0) {
    gUnexpectedLines.fetch_add(1);
    return;
  }
  gLinesOfKind[known->second.kind].fetch_add(1);
}

void resetLineCounts() {
  for (std::atomic<uint64_t>& count : gLinesOfKind) count.store(0);
  for (std::atomic<uint64_t>& count : gLinesPerSink) count.store(0);
  gUnexpectedLines.store(0);
}

// Installs each sink of the rotation in turn until told to stop.
void swapSinks(const std::vector<ovkLogSink>& rotation, const std::atomic<bool>& stop) {
  for (size_t i = 0; !stop.load(); ++i) {
    ovkSetLogSink(rotation[i % rotation.size()]);
    std::this_thread::yield();
  }
}

// ---- One worker's calls ------------------------------------------------------------

bool isCanny(const EntryInfo& entry) { return entry.name.rfind("ovkFilterCanny", 0) == 0; }

// An entry on this worker's buffers, with the status and outputs the same
// call gave before the threads started.
struct EntryRun {
  EntryRun(const EntryInfo& info, uint64_t seed)
      : entry(info),
        buffers(info, Shape{info.acceptedWidth(41), info.acceptedHeight(23), 5}, seed),
        options(info.goldenOptions.back()) {
    status = entry.invoke(buffers.call(options));
    for (size_t i = 0; i < buffers.bufferCount(); ++i)
      if (buffers.info(i).output) outputs.push_back(buffers.contents(i));
  }

  bool sameAsBefore(int64_t newStatus) const {
    size_t next = 0;
    for (size_t i = 0; i < buffers.bufferCount(); ++i)
      if (buffers.info(i).output && buffers.contents(i) != outputs[next++]) return false;
    return newStatus == status && buffers.damage().empty();
  }

  const EntryInfo& entry;
  EntryBuffers buffers;
  const std::vector<int64_t> options;
  int64_t status;
  std::vector<std::vector<uint8_t>> outputs;
};

struct Element {
  uint32_t worker, pass, index, check;
  bool operator==(const Element& other) const { return memcmp(this, &other, sizeof *this) == 0; }
};

Element element(uint32_t worker, uint32_t pass, uint32_t index) {
  return {worker, pass, index, ~index * 2654435761u};
}

struct Block {
  uint8_t* data;
  uint32_t size, alignment;
  bool fromMemAlign;
};

// What a worker asked for, to compare with the log lines counted.
struct CallCounts {
  uint64_t entryCalls = 0, refusedCalls = 0, refusedPushes = 0;
};

struct RoundPlan {
  bool refusedCalls;  // also a failing call of every entry without a result
  bool exhaustPool;   // end with the pool's slots all held by the workers
};

class Worker {
 public:
  Worker(uint32_t index, const RoundPlan& plan) : index_(index), plan_(plan) {
    for (const EntryInfo& entry : entryTable()) {
      runs_.push_back(std::make_unique<EntryRun>(entry, fnv1a64(entry.name) + index));
      if (isCanny(entry)) cannyRuns_.push_back(runs_.back().get());
    }
  }

  void run(Barrier& barrier) {
    for (uint32_t pass = 0; pass < kPasses; ++pass) {
      const std::vector<Block> blocks = allocateBlocks(pass);
      callEveryEntry(pass);
      checkAndFree(blocks, pass);
      // Every worker borrows from the pool at the same moment.
      barrier.wait();
      for (EntryRun* canny : cannyRuns_) call(*canny);
      roundTripSequence(pass);
    }
    if (plan_.exhaustPool) callWithThePoolExhausted(barrier);
  }

  const CallCounts& counts() const { return counts_; }

 private:
  uint8_t fill(uint32_t pass) const { return uint8_t(index_ * 37 + pass * 11 + 1); }

  // Workers start at different entries, so that different kernels overlap.
  void callEveryEntry(uint32_t pass) {
    for (size_t k = 0; k < runs_.size(); ++k) {
      EntryRun& run = *runs_[(k + index_ * runs_.size() / kWorkers + pass * 7) % runs_.size()];
      call(run);
      if (plan_.refusedCalls && !run.entry.returnsStatus()) callWithoutSource(run);
    }
  }

  void call(EntryRun& run) {
    run.buffers.resetOutputs();
    const int64_t status = run.entry.invoke(run.buffers.call(run.options));
    ++counts_.entryCalls;
    EXPECT_TRUE(run.sameAsBefore(status)) << run.entry.name << " on worker " << index_;
  }

  // The entry's condition refuses a null first buffer, which logs one line.
  void callWithoutSource(EntryRun& run) {
    run.buffers.resetOutputs();
    EntryCall refused = run.buffers.call(run.options);
    refused.buffers[0] = nullptr;
    run.entry.invoke(refused);
    ++counts_.entryCalls;
    ++counts_.refusedCalls;
    EXPECT_TRUE(run.buffers.outputsUntouched()) << run.entry.name << " on worker " << index_;
  }

  // Held while the entries run, so that a block handed out twice shows.
  std::vector<Block> allocateBlocks(uint32_t pass) const {
    std::vector<Block> blocks;
    for (uint32_t alignment = 1; alignment <= 128; alignment *= 2)
      for (const bool fromMemAlign : {false, true}) {
        const uint32_t size = 200 + 24 * alignment;
        void* data = fromMemAlign ? ovkMemAlign(size, alignment) : ovkMemAlloc(size, alignment);
        EXPECT_NE(data, nullptr) << alignment;
        if (!data) continue;
        EXPECT_EQ(reinterpret_cast<uintptr_t>(data) % alignment, 0u);
        memset(data, fill(pass), size);
        blocks.push_back({static_cast<uint8_t*>(data), size, alignment, fromMemAlign});
      }
    return blocks;
  }

  void checkAndFree(const std::vector<Block>& blocks, uint32_t pass) const {
    for (const Block& block : blocks) {
      const uint8_t expected = fill(pass);
      EXPECT_TRUE(std::all_of(block.data, block.data + block.size, [&](uint8_t b) { return b == expected; }))
          << "block of alignment " << block.alignment << " on worker " << index_;
      if (block.fromMemAlign)
        ovkMemAlignFree(block.data);
      else
        ovkMemFree(block.data);
    }
  }

  // Three blocks of the storage, each one a slot of the pool, read back
  // three ways.  At most three slots per worker leave the pool room for all.
  void roundTripSequence(uint32_t pass) const {
    ovkMemStorage storage;
    ovkInitMemStorage(&storage);
    ovkSeq seq;
    const uint32_t perBlock = uint32_t(ovkInitSeq(&seq, sizeof(Element), &storage));
    const uint32_t count = perBlock * 2 + perBlock / 2;
    uint32_t wrong = 0;
    for (uint32_t i = 0; i < count; ++i) {
      const Element pushed = element(index_, pass, i);
      wrong += ovkSeqPush(&seq, &pushed) != int32_t(i + 1);
    }
    for (uint32_t i = 0; i < count; i += 97) {
      const auto* found = static_cast<const Element*>(ovkGetSeqElem(&seq, i));
      wrong += !found || !(*found == element(index_, pass, i));
    }
    std::vector<Element> popped(count);
    ovkSeqPopMulti(&seq, popped.data(), count);
    for (uint32_t i = 0; i < count; ++i) wrong += !(popped[i] == element(index_, pass, i));
    ovkSeqReader reader;
    ovkStartReadSeq(&seq, &reader);
    for (uint32_t i = 0; i < count; ++i, ovkNextSeqElem(&reader, sizeof(Element)))
      wrong += !(*reinterpret_cast<const Element*>(reader.ptr) == element(index_, pass, i));
    EXPECT_EQ(wrong, 0u) << "sequence of worker " << index_;
    EXPECT_EQ(ovkDeInitMemStorage(&storage), 0);
  }

  // With every slot lent, Canny writes nothing and a sequence gets no block.
  void callWithThePoolExhausted(Barrier& barrier) {
    barrier.wait();  // nobody borrows any more
    std::vector<void*> held;
    for (uint32_t i = 0; i < kSlotsPerWorker; ++i)
      if (void* slot = ovkGetScratchBufferAligned_(64, 16)) held.push_back(slot);
    barrier.wait();  // every slot is lent
    EXPECT_EQ(held.size(), kSlotsPerWorker) << "worker " << index_;
    for (EntryRun* canny : cannyRuns_) {
      canny->buffers.resetOutputs();
      canny->entry.invoke(canny->buffers.call(canny->options));
      ++counts_.entryCalls;
      EXPECT_TRUE(canny->buffers.outputsUntouched()) << canny->entry.name << " on worker " << index_;
    }
    pushWithoutBlocks();
    barrier.wait();  // nothing goes back before every worker has been refused
    for (void* slot : held) ovkReleaseScratchBuffer_(slot);
  }

  void pushWithoutBlocks() {
    ovkMemStorage storage;
    ovkInitMemStorage(&storage);
    ovkSeq seq;
    ovkInitSeq(&seq, sizeof(Element), &storage);
    const Element pushed = element(index_, kPasses, 0);
    EXPECT_EQ(ovkSeqPush(&seq, &pushed), 0) << "worker " << index_;
    ++counts_.refusedPushes;
    EXPECT_EQ(storage.bottom, nullptr);
  }

  const uint32_t index_;
  const RoundPlan plan_;
  std::vector<std::unique_ptr<EntryRun>> runs_;
  std::vector<EntryRun*> cannyRuns_;
  CallCounts counts_;
};

// ---- Rounds ------------------------------------------------------------------------

class ThreadedEntries : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { gKnownLines = knownLines(); }

  void TearDown() override {
    ovkSetLogSink(nullptr);
    unsetenv("RUNTIME_ORVIK_LOG");
    ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE);
    // Once for ovkMemInit, once for the pre-allocation's own.
    ovkMemDeInit();
    ovkMemDeInit();
  }

  // Lines made while the workers take their single-threaded results are
  // counted by the first sink and then forgotten.
  CallCounts runRound(bool perCallLog, const std::vector<ovkLogSink>& sinks, const RoundPlan& plan) {
    if (perCallLog) setenv("RUNTIME_ORVIK_LOG", "1", 1);
    EXPECT_EQ(ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE), 0);
    ovkMemInit();
    EXPECT_EQ(ovkMemInitPreAlloc(kPreAllocBytes), 1);
    ovkSetLogSink(countingSink<0>);
    std::vector<std::unique_ptr<Worker>> workers;
    for (uint32_t i = 0; i < kWorkers; ++i) workers.push_back(std::make_unique<Worker>(i, plan));
    resetLineCounts();

    std::atomic<bool> stop{false};
    std::thread swapper(swapSinks, std::cref(sinks), std::cref(stop));
    Barrier barrier(kWorkers);
    std::vector<std::thread> threads;
    for (const std::unique_ptr<Worker>& worker : workers) threads.emplace_back([&] { worker->run(barrier); });
    for (std::thread& thread : threads) thread.join();
    stop.store(true);
    swapper.join();

    CallCounts total;
    for (const std::unique_ptr<Worker>& worker : workers) {
      total.entryCalls += worker->counts().entryCalls;
      total.refusedCalls += worker->counts().refusedCalls;
      total.refusedPushes += worker->counts().refusedPushes;
    }
    return total;
  }
};

TEST_F(ThreadedEntries, LogEveryLineToExactlyOneOfTwoSwappedSinks) {
  const CallCounts calls =
      runRound(true, {countingSink<0>, countingSink<1>}, RoundPlan{/*refusedCalls=*/true, /*exhaustPool=*/true});
  EXPECT_GT(calls.refusedCalls, 0u);
  EXPECT_EQ(calls.refusedPushes, kWorkers);
  EXPECT_EQ(gUnexpectedLines.load(), 0u);
  EXPECT_EQ(gLinesOfKind[kPerCall].load(), calls.entryCalls);
  EXPECT_EQ(gLinesOfKind[kAssertion].load(), calls.refusedCalls);
  EXPECT_EQ(gLinesOfKind[kStorage].load(), 2 * calls.refusedPushes);
  EXPECT_EQ(gLinesPerSink[0].load() + gLinesPerSink[1].load(), calls.entryCalls + calls.refusedCalls + 2 * calls.refusedPushes);
}

// Valid calls with the per-call log off log nothing, so the default sink
// can take its turn in the rotation without writing to the test's output.
TEST_F(ThreadedEntries, LogNothingWhileTheDefaultSinkTakesItsTurn) {
  runRound(false, {countingSink<0>, nullptr, countingSink<1>}, RoundPlan{/*refusedCalls=*/false, /*exhaustPool=*/false});
  EXPECT_EQ(gLinesPerSink[0].load() + gLinesPerSink[1].load(), 0u);
}

}  // namespace
