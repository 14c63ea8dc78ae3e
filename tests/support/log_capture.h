// Collects the library's log lines while in scope.
#ifndef ORVIK_TEST_LOG_CAPTURE_H
#define ORVIK_TEST_LOG_CAPTURE_H

#include <string>
#include <vector>

struct LogLine {
  int priority;
  std::string tag;
  std::string message;
};

class LogCapture {
 public:
  LogCapture();
  ~LogCapture();
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  std::vector<LogLine> lines() const;
  // Messages only, in order.
  std::vector<std::string> messages() const;
  void clear();
};

#endif
