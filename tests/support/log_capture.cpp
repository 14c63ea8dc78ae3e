#include "log_capture.h"

#include <mutex>

#include "orvik.h"

namespace {
std::mutex gMutex;
std::vector<LogLine> gLines;

void captureSink(int priority, const char* tag, const char* message) {
  std::lock_guard<std::mutex> lock(gMutex);
  gLines.push_back({priority, tag, message});
}
}  // namespace

LogCapture::LogCapture() {
  clear();
  ovkSetLogSink(captureSink);
}

LogCapture::~LogCapture() { ovkSetLogSink(nullptr); }

std::vector<LogLine> LogCapture::lines() const {
  std::lock_guard<std::mutex> lock(gMutex);
  return gLines;
}

std::vector<std::string> LogCapture::messages() const {
  std::vector<std::string> out;
  for (const LogLine& line : lines()) out.push_back(line.message);
  return out;
}

void LogCapture::clear() {
  std::lock_guard<std::mutex> lock(gMutex);
  gLines.clear();
}
