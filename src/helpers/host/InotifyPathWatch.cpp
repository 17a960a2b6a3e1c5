#ifdef __linux__

#include <sys/stat.h>

#include <filesystem>
#include <map>

#include "core/files/Inotify.h"
#include "helpers/host/PathWatch.h"

namespace mirvel::host {

namespace {

constexpr std::uint32_t interesting =
    IN_MODIFY | IN_ATTRIB | IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF;

/// Of an entry of a watched folder these say nothing about the folder.
constexpr std::uint32_t ofEntriesOnly = IN_MODIFY | IN_ATTRIB;

/// Each path is watched itself, and so is the nearest folder above that exists, where a missing one will appear and
/// one that is replaced is seen to be.
class InotifyPathWatch final : public PathWatch {
 public:
  int descriptor() const override { return m_inotify.descriptor(); }

  void add(const std::string& path) override {
    Watched& watched = m_paths[path];
    if (watched.users++ == 0) arm(path, watched);
  }

  void remove(const std::string& path) override {
    const auto found = m_paths.find(path);
    if (found == m_paths.end() || --found->second.users > 0) return;
    disarm(path, found->second);
    m_paths.erase(found);
  }

  std::set<std::string> take() override {
    std::set<std::string> touched, changed;
    for (auto events = m_inotify.read(); !events.empty(); events = m_inotify.read()) {
      for (const Inotify::Event& event : events) note(event, touched, changed);
    }
    for (const std::string& path : touched) renew(path, changed);
    return changed;
  }

 private:
  struct Identity {
    dev_t device = 0;
    ino_t node = 0;  ///< 0: there is nothing
    bool operator==(const Identity&) const = default;
  };
  struct Watched {
    int users = 0;
    int own = -1;         ///< number of the watch on the path itself
    int above = -1;       ///< and on the folder
    std::string awaited;  ///< the name in that folder that leads to the path
    Identity identity;
  };

  static Identity identityOf(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return {};
    return {status.st_dev, status.st_ino};
  }

  void arm(const std::string& path, Watched& watched) {
    watched.own = watchOn(path, path);
    for (std::filesystem::path entry = path; watched.above < 0 && entry.has_relative_path();
         entry = entry.parent_path()) {
      watched.awaited = entry.filename();
      watched.above = watchOn(entry.parent_path(), path);
    }
    watched.identity = identityOf(path);
  }

  int watchOn(const std::string& place, const std::string& path) {
    const int number = m_inotify.add(place, interesting);
    if (number >= 0) m_users[number].insert(path);
    return number;
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

  void note(const Inotify::Event& event, std::set<std::string>& touched, std::set<std::string>& changed) {
    if ((event.mask & IN_Q_OVERFLOW) != 0) {
      for (const auto& [path, watched] : m_paths) touched.insert(path), changed.insert(path);
      return;
    }
    const auto found = m_users.find(event.watch);
    if (found == m_users.end()) return;
    const bool isGone = (event.mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_IGNORED)) != 0;
    const bool isOfEntryOnly = !event.name.empty() && (event.mask & ofEntriesOnly) != 0;
    for (const std::string& path : found->second) {
      const Watched& watched = m_paths[path];
      if (event.watch == watched.own && !isOfEntryOnly && (event.mask & IN_IGNORED) == 0) changed.insert(path);
      if (isGone || (event.watch == watched.above && !isOfEntryOnly && event.name == watched.awaited))
        touched.insert(path);
    }
    if ((event.mask & IN_IGNORED) != 0) m_users.erase(found);
  }

  /// What is at the path, or on the way to it, may be something else now.
  void renew(const std::string& path, std::set<std::string>& changed) {
    Watched& watched = m_paths[path];
    const Identity before = watched.identity;
    disarm(path, watched);
    arm(path, watched);
    if (watched.identity != before) changed.insert(path);
  }

  Inotify m_inotify = Inotify::open();
  std::map<std::string, Watched> m_paths;
  std::map<int, std::set<std::string>> m_users;  ///< the paths by the number of a watch that serves them
};

}  // namespace

std::unique_ptr<PathWatch> makePathWatch() {
  return std::make_unique<InotifyPathWatch>();
}

}  // namespace mirvel::host

#endif
