#include "core/lint/TargetMachine.h"

#include <sys/stat.h>

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <system_error>
#include <utility>

#include "core/process/UserEntry.h"

namespace mirvel::lint {

namespace {

using FileType = TargetMachine::FileType;

/// Counts the lookups that are running, by what they may have to wait for. Thread-safe.
class RunningLookups {
 public:
  /// Returns `lookup()`, or `unknown` without calling it if an earlier one of the same place seems to be stuck.
  template <typename Answer, typename Lookup>
  Answer run(const std::string& place, Answer unknown, Lookup lookup) {
    if (!begin(place)) return unknown;
    Answer answer = lookup();
    end(place);
    return answer;
  }

 private:
  using Clock = std::chrono::steady_clock;
  struct Running {
    std::size_t count = 0;
    Clock::time_point since = Clock::now();
  };

  bool begin(const std::string& place) {
    const std::lock_guard lock(m_mutex);
    Running& running = m_running[place];
    if (running.count != 0 && Clock::now() - running.since > std::chrono::seconds(1)) return false;
    ++running.count;
    return true;
  }
  void end(const std::string& place) {
    const std::lock_guard lock(m_mutex);
    const auto running = m_running.find(place);
    if (--running->second.count == 0) m_running.erase(running);
  }

  std::mutex m_mutex;
  std::map<std::string, Running> m_running;
};

/// The first two components of a path: "/mnt/backup".
std::string topFolder(const std::string& path) {
  const std::size_t second = path.find('/', 1);
  return second == std::string::npos ? path : path.substr(0, path.find('/', second + 1));
}

FileType typeOnDisk(const std::string& path) {
  std::error_code failure;
  switch (std::filesystem::status(path, failure).type()) {
    case std::filesystem::file_type::not_found:
      return FileType::Missing;
    case std::filesystem::file_type::none:
    case std::filesystem::file_type::unknown:
      return FileType::Unknown;
    case std::filesystem::file_type::directory:
      return FileType::Folder;
    default:
      return FileType::Other;
  }
}

bool isWritableByAll(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0 || (status.st_mode & S_IWOTH) == 0) return false;
  // In a folder with the sticky bit nobody can replace the files of others.
  return !S_ISDIR(status.st_mode) || (status.st_mode & S_ISVTX) == 0;
}

bool isOpenOnDisk(const std::string& path) {
  return isWritableByAll(path) || isWritableByAll(std::filesystem::path(path).parent_path());
}

}  // namespace

TargetMachine TargetMachine::thisMachine(std::string homeFolder) {
  const auto running = std::make_shared<RunningLookups>();
  const char* const database = "user database";
  return {.fileType =
              [running](const auto& path) {
                return running->run(topFolder(path), FileType::Unknown, [&] { return typeOnDisk(path); });
              },
          .isOpenToAll =
              [running](const auto& path) {
                return running->run(topFolder(path), false, [&] { return isOpenOnDisk(path); });
              },
          .hasUser =
              [running, database](const auto& name) {
                return running->run(database, std::optional<bool>(), [&] { return isUser(name); });
              },
          .hasGroup =
              [running, database](const auto& name) {
                return running->run(database, std::optional<bool>(), [&] { return isGroup(name); });
              },
          .homeFolder = std::move(homeFolder)};
}

}  // namespace mirvel::lint
