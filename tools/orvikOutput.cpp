#include "orvikOutput.h"

#include <errno.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

// mkstemp creates the file for its owner only; an output file gets the
// permissions any new file of the user gets.
mode_t newFileMode() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

// A symlink keeps pointing at the file it named: its target is replaced.
fs::path replacedFile(const std::string& path) {
  std::error_code error;
  if (!fs::is_symlink(path, error)) return path;
  const fs::path target = fs::canonical(path, error);
  return error ? fs::path(path) : target;
}

// Writes and closes `file`; false with `error` set when either failed.
bool writeAndClose(FILE* file, const std::vector<uint8_t>& bytes, std::string& error) {
  const bool written = fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  if (!written) error = strerror(errno);
  if (fclose(file) == 0 || !written) return written;
  error = strerror(errno);
  return false;
}

bool writeDirectly(const std::string& path, const std::vector<uint8_t>& bytes, std::string& error) {
  FILE* file = fopen(path.c_str(), "wb");
  if (!file) {
    error = strerror(errno);
    return false;
  }
  return writeAndClose(file, bytes, error);
}

// Hidden, beside the target, so that the rename stays within one file system.
std::string temporaryTemplate(const fs::path& target) {
  return (target.parent_path() / ("." + target.filename().string() + ".XXXXXX")).string();
}

// Creates the temporary file for `target` and puts its name in `temporary`.
FILE* createTemporary(const fs::path& target, std::string& temporary, std::string& error) {
  temporary = temporaryTemplate(target);
  const int descriptor = mkstemp(temporary.data());
  if (descriptor < 0) {
    error = strerror(errno);
    return nullptr;
  }
  FILE* file = fchmod(descriptor, newFileMode()) == 0 ? fdopen(descriptor, "wb") : nullptr;
  if (!file) {
    error = strerror(errno);
    close(descriptor);
    unlink(temporary.c_str());
  }
  return file;
}

bool renamed(const std::string& from, const fs::path& to, std::string& error) {
  if (rename(from.c_str(), to.c_str()) == 0) return true;
  error = strerror(errno);
  return false;
}

bool writeThroughTemporary(const fs::path& target, const std::vector<uint8_t>& bytes, std::string& error) {
  std::string temporary;
  FILE* file = createTemporary(target, temporary, error);
  if (!file) return false;
  const bool written = writeAndClose(file, bytes, error) && renamed(temporary, target, error);
  if (!written) unlink(temporary.c_str());
  return written;
}

}  // namespace

bool writeOutputFile(const std::string& path, const std::vector<uint8_t>& bytes, std::string& error) {
  const fs::path target = replacedFile(path);
  std::error_code statusError;
  const fs::file_status status = fs::status(target, statusError);
  if (fs::is_directory(status)) {
    error = strerror(EISDIR);
    return false;
  }
  if (fs::exists(status) && !fs::is_regular_file(status)) return writeDirectly(path, bytes, error);
  return writeThroughTemporary(target, bytes, error);
}
