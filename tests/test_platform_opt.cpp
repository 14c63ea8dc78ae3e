#include <dlfcn.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "cpu/orvikPlatformOpt.h"
#include "support/log_capture.h"
#include "orvik.h"

namespace {

constexpr char kDefaultPath[] = "/data/local/libovkopt.so";
constexpr char kFixturePath[] = ORVIK_OVERRIDE_FIXTURE;
constexpr char kMissingPath[] = "/nonexistent/orvik/libmissing.so";
constexpr char kFixtureSymbol[] = "ovkOverrideFixtureAnswer";

using Line = std::tuple<int, std::string, std::string>;

std::vector<Line> logged(const LogCapture& log) {
  std::vector<Line> lines;
  for (const LogLine& line : log.lines()) lines.emplace_back(line.priority, line.tag, line.message);
  return lines;
}

// What the loader itself says about opening `path`.
std::string openError(const char* path) {
  void* handle = dlopen(path, RTLD_LAZY);
  if (handle != nullptr) dlclose(handle);
  return handle ? "" : dlerror();
}

std::string lookupError(const char* path, const char* symbol) {
  void* handle = dlopen(path, RTLD_LAZY);
  dlerror();
  const bool found = dlsym(handle, symbol) != nullptr;
  const std::string error = found ? "" : dlerror();
  dlclose(handle);
  return error;
}

class PlatformOpt : public ::testing::Test {
 protected:
  // Each test starts with nothing loaded and the default path.
  void TearDown() override {
    ovkPlatformOptClose();
    ovkPlatformOptSetPath(kDefaultPath);
  }
  LogCapture log;
};

TEST_F(PlatformOpt, GetFuncBeforeLoadFails) {
  EXPECT_EQ(ovkPlatformOptGetFunc(kFixtureSymbol), nullptr);
  EXPECT_EQ(logged(log), (std::vector<Line>{
                             {6, "orvik_PLATFORM", "dlsym for ovkOverrideFixtureAnswer failed! \n Error:library not loaded\n"}}));
}

TEST_F(PlatformOpt, LoadOfMissingDefaultLibraryFails) {
  if (access(kDefaultPath, F_OK) == 0) GTEST_SKIP() << "this device has an override library";
  EXPECT_EQ(ovkPlatformOptLoad(), -1);
  EXPECT_EQ(logged(log),
            (std::vector<Line>{{3, "ovk", "Loading from: /data/local/libovkopt.so\n"},
                               {6, "orvik_PLATFORM", "dlopen for /data/local/libovkopt.so failed!\n Error:" +
                                                         openError(kDefaultPath) + "\n"}}));
  EXPECT_EQ(ovkPlatformOptGetFunc(kFixtureSymbol), nullptr);
}

TEST_F(PlatformOpt, LoadedLibraryResolvesItsSymbols) {
  ovkPlatformOptSetPath(kFixturePath);
  EXPECT_EQ(ovkPlatformOptLoad(), 0);
  const std::string path = kFixturePath;
  EXPECT_EQ(logged(log), (std::vector<Line>{{3, "ovk", "Loading from: " + path + "\n"},
                                            {3, "orvik_PLATFORM", "dlopen for " + path + " is successfull.\n"}}));

  void* answer = ovkPlatformOptGetFunc(kFixtureSymbol);
  ASSERT_NE(answer, nullptr);
  EXPECT_EQ(reinterpret_cast<int (*)()>(answer)(), 42);

  log.clear();
  EXPECT_EQ(ovkPlatformOptGetFunc("ovkNoSuchSymbol"), nullptr);
  EXPECT_EQ(logged(log), (std::vector<Line>{{6, "orvik_PLATFORM",
                                             "dlsym for ovkNoSuchSymbol failed! \n Error:" +
                                                 lookupError(kFixturePath, "ovkNoSuchSymbol") + "\n"}}));
}

TEST_F(PlatformOpt, HandleLivesUntilClose) {
  ovkPlatformOptSetPath(kFixturePath);
  ASSERT_EQ(ovkPlatformOptLoad(), 0);
  // A held library is not opened again, so a bad path does not matter yet.
  ovkPlatformOptSetPath(kMissingPath);
  EXPECT_EQ(ovkPlatformOptLoad(), 0);
  EXPECT_NE(ovkPlatformOptGetFunc(kFixtureSymbol), nullptr);

  EXPECT_EQ(ovkPlatformOptClose(), 0);
  EXPECT_EQ(ovkPlatformOptGetFunc(kFixtureSymbol), nullptr);
  EXPECT_EQ(ovkPlatformOptLoad(), -1);
  EXPECT_EQ(ovkPlatformOptClose(), 0);
}

TEST(AvailableProcessors, CountsOnlineProcessors) {
  LogCapture log;
  EXPECT_EQ(ovkAvailableProcessors(), static_cast<int32_t>(std::thread::hardware_concurrency()));
  EXPECT_TRUE(log.lines().empty());
}

}  // namespace
