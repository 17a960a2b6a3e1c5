#include "core/process/FileReaders.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
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

bool isFile(const fs::path& path, const struct stat& file) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && status.st_dev == file.st_dev && status.st_ino == file.st_ino;
}

bool hasOpen(const fs::path& process, const struct stat& file) {
  std::error_code failure;
  fs::directory_iterator entry(process / "fd", failure);
  for (; !failure && entry != fs::directory_iterator(); entry.increment(failure)) {
    if (isFile(entry->path(), file)) return true;
  }
  return false;
}

/// The arguments of a process, which end with null characters.
std::vector<std::string> argumentsOf(const fs::path& process) {
  std::ifstream stream(process / "cmdline", std::ios::binary);
  std::vector<std::string> arguments;
  for (std::string argument; std::getline(stream, argument, '\0');) arguments.push_back(argument);
  return arguments;
}

/// Whether an argument of the process is a path of this file, be it a link or relative. The folder of processes of
/// other users is unknown: then it could be that of the file, or any in which a file has the same name.
bool names(const fs::path& process, const fs::path& path, const struct stat& file) {
  std::error_code failure;
  (void)fs::read_symlink(process / "cwd", failure);
  const bool isKnown = !failure;
  const fs::path folder = isKnown ? process / "cwd" : path.parent_path();
  const auto arguments = argumentsOf(process);
  return std::any_of(arguments.begin(), arguments.end(), [&](const fs::path& argument) {
    const bool mayBe = !isKnown && argument.is_relative() && argument.filename() == path.filename();
    return mayBe || isFile(folder / argument, file);
  });
}

}  // namespace

std::vector<pid_t> processesWith(const fs::path& file) {
  struct stat status {};
  if (::stat(file.c_str(), &status) != 0) return {};
  std::vector<pid_t> found;
  for (const ProcessStatus& process : ProcessStatus::all()) {
    const fs::path folder = fs::path("/proc") / std::to_string(process.id);
    const bool isOther = process.id != ::getpid() && !process.hasEnded;
    if (isOther && (hasOpen(folder, status) || names(folder, file, status))) found.push_back(process.id);
  }
  return found;
}

#endif

}  // namespace mirvel
