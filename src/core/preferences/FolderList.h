#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "core/base/Result.h"
#include "core/base/Signal.h"
#include "core/ports/MainQueue.h"

namespace mirvel {

class Defaults;
class Localize;
class WorkQueue;

/// An extra folder, as the list shows it.
struct Folder {
  std::string path;          ///< as it is in the settings
  std::string title;         ///< the last component, or the path for display if several folders end alike
  std::string problem = {};  ///< why its jobs can't be listed; empty if they can, or as long as that isn't known
  std::string toolTip = {};  ///< the path for display, and the problem
};

/// The extra folders of the user, in the order in which they were added: an editor of `Defaults::folders`, which owns
/// them. A folder that is missing stays in the list. Only `add` and `remove` write. For the main thread.
class FolderList {
 public:
  /// Folders are looked at on `fileQueue`, since that may wait for a disk. All must outlive this object; the home
  /// folder is that of the user.
  FolderList(Defaults& defaults, WorkQueue& fileQueue, MainQueue& mainQueue, const Localize& localize,
             std::filesystem::path home);

  std::vector<Folder> folders() const;
  /// Looks at all folders again, and posts `changed` for each answer that differs from the previous one.
  void check();
  /// Posted when the list or a problem has changed.
  Signal<>& changed() { return m_changed; }

  /// Appends the folders that aren't in the list yet, also not in another spelling (`URL::equalTo`). A path that the
  /// settings can't contain is left out; the result is then an error with that path, which users can read.
  Result<void> add(const std::vector<std::filesystem::path>& folders);
  /// Removes the folder with this path, as it is in the settings. Elements of the settings that aren't texts are
  /// dropped then.
  void remove(const std::string& path);

 private:
  void checked(const std::string& path, const std::string& problem);

  Defaults& m_defaults;
  WorkQueue& m_fileQueue;
  MainQueue& m_mainQueue;
  const Localize& m_localize;
  const std::filesystem::path m_home;
  std::map<std::string, std::string> m_problems;  ///< by path, as far as they are known
  Signal<> m_changed;
  Delay m_delay;
  Subscription m_settingChanged;
};

/// Why no jobs can be listed in a folder, in the user's language; empty if they can. May block. Thread-safe.
std::string folderProblem(const std::filesystem::path& folder, const Localize& localize);

}  // namespace mirvel
