// What the orvik subcommands share: exit statuses, errors, the operation
// mode they run in and the report of which implementation ran.
#ifndef ORVIK_TOOLS_COMMAND_H
#define ORVIK_TOOLS_COMMAND_H

#include <stdint.h>

#include <string>

constexpr int kExitFailure = 1;
constexpr int kExitUsage = 2;
constexpr uint32_t kCommandMode = 3;  // ORVIK_OP_CPU_PERFORMANCE

// Ends the command with a message and an exit status.
struct CommandError {
  int exitCode;
  std::string message;
};

// Sets kCommandMode; returns what ovkSetOperationMode returned, after
// reporting a failure on stderr.
int32_t setMode();

// "PELAR (AVX2)", "CPU", ...: what the named exported operation runs now.
std::string implementationOf(const char* entryName);

// The bundled sample in the source tree, else its installed copy.
std::string samplePath();

#endif
