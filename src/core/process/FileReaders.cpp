#include "core/process/FileReaders.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

#include "core/process/ProcessStatus.h"

#ifdef __APPLE__
#include <libproc.h>
#endif

namespace mirvel {

namespace fs = std::filesystem;

#ifdef __APPLE__

std::vector<pid_t> processesWith(const fs::path& file) {
  const int size = ::proc_listpidspath(PROC_ALL_PIDS, 0, file.c_str(), 0, nullptr, 0);
  std::vector<pid_t> found(size > 0 ? static_cast<std::size_t>(size) / sizeof(pid_t) + 1 : 0);
  const int filled = found.empty() ? 0
                                   : ::proc_listpidspath(PROC_ALL_PIDS, 0, file.c_str(), 0, found.data(),
                                                         static_cast<int>(found.size() * sizeof(pid_t)));
  found.resize(filled > 0 ? static_cast<std::size_t>(filled) / sizeof(pid_t) : 0);
  std::erase_if(found, [](pid_t process) { return process == 0 || process == ::getpid(); });
  return found;
}

#else

namespace {

bool hasOpen(const fs::path& process, const struct stat& file) {
  std::error_code failure;
  for (const auto& entry : fs::directory_iterator(process / "fd", failure)) {
    struct stat status {};
    const bool isFile = ::stat(entry.path().c_str(), &status) == 0;
    if (isFile && status.st_dev == file.st_dev && status.st_ino == file.st_ino) return true;
  }
  return false;
}

/// Whether an argument of the process is this path. Arguments end with null characters.
bool names(const fs::path& process, const std::string& file) {
  std::ifstream stream(process / "cmdline", std::ios::binary);
  const std::string line(std::istreambuf_iterator<char>(stream), {});
  for (std::size_t at = 0; at < line.size(); at = std::min(line.find('\0', at), line.size()) + 1) {
    if (file == line.c_str() + at) return true;
  }
  return false;
}

}  // namespace

std::vector<pid_t> processesWith(const fs::path& file) {
  struct stat status {};
  if (::stat(file.c_str(), &status) != 0) return {};
  std::vector<pid_t> found;
  for (const ProcessStatus& process : ProcessStatus::all()) {
    const fs::path folder = fs::path("/proc") / std::to_string(process.id);
    const bool isOther = process.id != ::getpid() && !process.hasEnded;
    if (isOther && (hasOpen(folder, status) || names(folder, file.native()))) found.push_back(process.id);
  }
  return found;
}

#endif

}  // namespace mirvel
