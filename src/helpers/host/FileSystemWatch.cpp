#include "helpers/host/FileSystemWatch.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <map>
#include <optional>
#include <sstream>
#include <tuple>
#include <vector>

#include "core/files/Inotify.h"
#include "core/files/ReadFile.h"
#include "core/files/RegularFile.h"
#include "core/ports/Console.h"

namespace mirvel::host {

namespace {

/// Compares the attributes of each path with those at the previous call.
class PollingPathWatch final : public PathWatch {
 public:
  int descriptor() const override { return -1; }
  bool isPolling() const override { return true; }

  void add(const std::string& path, Scope scope) override {
    Watched& watched = m_paths[path];
    if (watched.users++ > 0) return;
    watched.scope = scope;
    watched.state = stateOf(path, scope);
  }

  void remove(const std::string& path) override {
    const auto found = m_paths.find(path);
    if (found != m_paths.end() && --found->second.users == 0) m_paths.erase(found);
  }

  std::set<std::string> take() override {
    std::set<std::string> changed;
    for (auto& [path, watched] : m_paths) {
      const State now = stateOf(path, watched.scope);
      if (now != watched.state) changed.insert(path);
      watched.state = now;
    }
    return changed;
  }

 private:
  using State = std::vector<std::tuple<dev_t, ino_t, off_t, long long, long long>>;
  struct Watched {
    int users = 0;
    Scope scope = Scope::Entries;
    State state;
  };

  /// Of the path, and of the entries of a folder if they count.
  static State stateOf(const std::string& path, Scope scope) {
    State state{stateOf(path)};
    std::error_code failure;
    std::filesystem::directory_iterator entry(path, failure), end;
    for (; scope == Scope::Contents && !failure && entry != end; entry.increment(failure)) {
      state.push_back(stateOf(entry->path()));
    }
    return state;
  }

  static State::value_type stateOf(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return {};
    const timespec& changed = changeTime(status);
    return {status.st_dev, status.st_ino, status.st_size, changed.tv_sec, changed.tv_nsec};
  }

  std::map<std::string, Watched> m_paths;
};

}  // namespace

#ifdef __linux__

namespace {

constexpr std::uint32_t interesting =
    IN_MODIFY | IN_ATTRIB | IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF;

// Reported for an entry of a watched folder, these don't change the list of entries.
constexpr std::uint32_t ofEntriesOnly = IN_MODIFY | IN_ATTRIB;

/// Each path has two watches: one on itself, and one on the nearest existing folder above it. An inotify watch follows
/// the inode, so only the folder reports that a missing path appears or that a file is replaced by rename. Once the
/// user's instances or watches are used up, all paths are polled too.
class InotifyPathWatch final : public PathWatch {
 public:
  explicit InotifyPathWatch(Console* console) : m_console(console) {
    if (!m_inotify) beginToPoll(errno);
  }

  int descriptor() const override { return m_inotify.descriptor(); }
  bool isPolling() const override { return m_polling.has_value(); }

  void add(const std::string& path, Scope scope) override {
    Watched& watched = m_paths[path];
    if (watched.users++ > 0) return;
    watched.scope = scope;
    if (m_polling) m_polling->add(path, scope);
    if (m_inotify) arm(path, watched);
  }

  void remove(const std::string& path) override {
    const auto found = m_paths.find(path);
    if (found == m_paths.end() || --found->second.users > 0) return;
    disarm(path, found->second);
    if (m_polling) m_polling->remove(path);
    m_paths.erase(found);
  }

  std::set<std::string> take() override {
    std::set<std::string> touched, changed;
    for (auto events = m_inotify.read(); !events.empty(); events = m_inotify.read()) {
      for (const Inotify::Event& event : events) note(event, touched, changed);
    }
    for (const std::string& path : touched) renew(path, changed);
    if (m_polling) changed.merge(m_polling->take());
    return changed;
  }

 private:
  struct Identity {
    dev_t device = 0;
    ino_t node = 0;  ///< 0: nothing exists at the path
    bool operator==(const Identity&) const = default;
  };
  struct Watched {
    int users = 0;  ///< calls of `add` without `remove`
    Scope scope = Scope::Entries;
    int own = -1;         ///< the watch on the path itself; -1: nothing exists there
    int above = -1;       ///< the watch on the folder
    std::string awaited;  ///< the entry of that folder on the way to the path
    Identity identity;
  };

  static Identity identityOf(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return {};
    return {status.st_dev, status.st_ino};
  }

  /// An entry that appears before its folder is watched causes no event: then this begins again, further down.
  void arm(const std::string& path, Watched& watched) {
    constexpr int mostAttempts = 10;  // an entry that exists may also be one that can't be watched
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
      const std::string awaited = watchAbove(path, watched);
      watched.own = watchOn(path, path);
      if (watched.own >= 0 || awaited.empty() || identityOf(awaited) == Identity()) break;
      disarm(path, watched);
    }
    watched.identity = identityOf(path);
  }

  /// Watches the nearest existing folder above the path. Returns the path of the entry that is awaited there.
  std::string watchAbove(const std::string& path, Watched& watched) {
    for (std::filesystem::path entry = path; entry.has_relative_path(); entry = entry.parent_path()) {
      watched.awaited = entry.filename();
      watched.above = watchOn(entry.parent_path(), path);
      if (watched.above >= 0) return entry;
    }
    return {};
  }

  int watchOn(const std::string& place, const std::string& path) {
    const int number = m_inotify.add(place, interesting);
    if (number >= 0) {
      m_users[number].insert(path);
    } else if (!isOfThePath(errno)) {
      beginToPoll(errno);
    }
    return number;
  }

  /// Whether the place is the reason why it can't be watched: it doesn't exist, or may not be looked at.
  static bool isOfThePath(int failure) {
    constexpr std::array reasons{ENOENT, ENOTDIR, EACCES, ELOOP, ENAMETOOLONG};
    return std::find(reasons.begin(), reasons.end(), failure) != reasons.end();
  }

  void beginToPoll(int failure) {
    if (m_polling) return;
    if (m_console)
      m_console->log(systemError(failure, "wait for changes of files, so looks at them regularly", "").text());
    m_polling.emplace();
    for (const auto& [path, watched] : m_paths) m_polling->add(path, watched.scope);
  }

  void disarm(const std::string& path, Watched& watched) {
    for (int* const number : {&watched.own, &watched.above}) {
      const auto found = m_users.find(*number);
      *number = -1;
      if (found == m_users.end()) continue;
      found->second.erase(path);
      if (!found->second.empty()) continue;
      m_inotify.remove(found->first);
      m_users.erase(found);
    }
  }

  /// `touched` are the paths whose watches may be on the wrong inodes now, `changed` those to report.
  void note(const Inotify::Event& event, std::set<std::string>& touched, std::set<std::string>& changed) {
    if ((event.mask & IN_Q_OVERFLOW) != 0) {  // events were lost: anything may have changed
      for (const auto& [path, watched] : m_paths) touched.insert(path), changed.insert(path);
      return;
    }
    const auto found = m_users.find(event.watch);
    if (found == m_users.end()) return;
    const bool isGone = (event.mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_IGNORED)) != 0;
    const bool isOfEntryOnly = !event.name.empty() && (event.mask & ofEntriesOnly) != 0;
    for (const std::string& path : found->second) {
      const Watched& watched = m_paths[path];
      const bool counts = !isOfEntryOnly || watched.scope == Scope::Contents;
      if (event.watch == watched.own && counts && (event.mask & IN_IGNORED) == 0) changed.insert(path);
      if (isGone || (event.watch == watched.above && !isOfEntryOnly && event.name == watched.awaited))
        touched.insert(path);
    }
    if ((event.mask & IN_IGNORED) != 0) m_users.erase(found);
  }

  /// Watches again what is at the path now, and reports a change if that is another file than before.
  void renew(const std::string& path, std::set<std::string>& changed) {
    Watched& watched = m_paths[path];
    const Identity before = watched.identity;
    disarm(path, watched);
    arm(path, watched);
    if (watched.identity != before) changed.insert(path);
  }

  Console* const m_console;
  Inotify m_inotify = Inotify::open();
  std::optional<PollingPathWatch> m_polling;
  std::map<std::string, Watched> m_paths;
  std::map<int, std::set<std::string>> m_users;  ///< the paths that share a watch, by its number
};

}  // namespace

std::unique_ptr<PathWatch> makePathWatch(Console* console) {
  return std::make_unique<InotifyPathWatch>(console);
}

#else

std::unique_ptr<PathWatch> makePathWatch(Console*) {
  return std::make_unique<PollingPathWatch>();
}

#endif

namespace {

// proc(5) documents its format, and that poll(2) reports POLLPRI after each change.
constexpr const char* mountTable = "/proc/self/mountinfo";

}  // namespace

bool MountWatch::begin() {
  if (m_file) return true;
  m_file = FileDescriptor(::open(mountTable, O_RDONLY | O_CLOEXEC));
  m_mounts = current();
  return static_cast<bool>(m_file);
}

bool MountWatch::take() {
  std::set<std::string> mounts = current();
  const bool isNew = !std::includes(m_mounts.begin(), m_mounts.end(), mounts.begin(), mounts.end());
  m_mounts = std::move(mounts);
  return isNew;
}

std::set<std::string> MountWatch::current() const {
  std::set<std::string> result;
  const auto table = readFile(mountTable, std::size_t{16} << 20U);
  if (!table) return result;
  std::istringstream lines(*table);
  // The first field is the identifier of the mount, unique while the mount exists.
  for (std::string line; std::getline(lines, line);) result.insert(line.substr(0, line.find(' ')));
  return result;
}

}  // namespace mirvel::host
