// What the orvik subcommands share: exit statuses, errors, the operation
// mode they run in and the report of which implementation ran.
#ifndef ORVIK_TOOLS_COMMAND_H
#define ORVIK_TOOLS_COMMAND_H

#include <stdint.h>

#include <map>
#include <string>
#include <vector>

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

// A subcommand's arguments: its paths in order and its options, given as
// --name VALUE or --name=VALUE.  An option not in `known` is a usage error
// naming `command`.
struct Arguments {
  std::vector<std::string> paths;
  std::map<std::string, std::string> options;  // "--name" -> value

  // The value given for `name`, else `fallback`.
  std::string option(const std::string& name, const std::string& fallback) const;
};
Arguments splitArguments(const std::string& command, const std::vector<std::string>& args,
                         const std::vector<std::string>& known);

// Reads "WIDTHxHEIGHT", both in 1..maxSide and in plain digits; false
// otherwise.
bool parseSize(const std::string& text, uint32_t maxSide, uint32_t& width, uint32_t& height);

// The bundled sample in the source tree, else its installed copy.
std::string samplePath();

#endif
