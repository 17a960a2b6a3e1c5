#pragma once

#include <memory>
#include <set>
#include <string>

#include "core/process/FileDescriptor.h"

namespace mirvel {
class Console;
}

namespace mirvel::host {

/// Reports changes at paths, as `WatchPaths` of launchd.plist(5) means them: for a file its content, attributes and
/// existence, for a folder also its list of entries, but not, unless asked for, the content of those. A path need not
/// exist; one that appears, disappears or is replaced has changed. Symbolic links are followed. For one thread.
class PathWatch {
 public:
  /// The interval of calls of `take` while `isPolling`.
  static constexpr int pollingSeconds = 2;

  virtual ~PathWatch() = default;

  /// Readable when `take` may return something; -1: there is none. Doesn't change.
  virtual int descriptor() const = 0;
  /// Whether `take` has to be called every `pollingSeconds`, besides: the system offers nothing else, or has no room
  /// for more watches. May become true with each call.
  virtual bool isPolling() const = 0;
  /// What is reported of a folder.
  enum class Scope {
    Entries,   ///< its list of entries
    Contents,  ///< also when the content or attributes of an entry change; not of the entries of subfolders
  };

  /// Starts to watch a path. Calls are counted: the path is watched until `remove` was called as often, with the scope
  /// of the first call.
  virtual void add(const std::string& path, Scope scope = Scope::Entries) = 0;
  /// A path that isn't watched is ignored.
  virtual void remove(const std::string& path) = 0;
  /// Returns the paths that changed since the last call, in the form in which they were added. After an overflow of the
  /// system's queue these are all paths.
  virtual std::set<std::string> take() = 0;
};

/// The implementation for this system: inotify(7) on Linux, as far as the limits of the user allow it, and else
/// stat(2). The console, if there is one, gets a line when a limit is reached, and must outlive the result.
std::unique_ptr<PathWatch> makePathWatch(Console* console = nullptr);

/// Reports new mounts, for `StartOnMount`. For one thread.
class MountWatch {
 public:
  /// Starts to watch; without effect if it was called before. False where the system offers no way (all but Linux).
  bool begin();
  /// Polled for POLLPRI; -1 before `begin`.
  int descriptor() const { return m_file.number(); }
  /// Whether something was mounted since the last call. An unmount isn't reported.
  bool take();

 private:
  std::set<std::string> current() const;

  FileDescriptor m_file;
  std::set<std::string> m_mounts;  ///< identifiers
};

}  // namespace mirvel::host
