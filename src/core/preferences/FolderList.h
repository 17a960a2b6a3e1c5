#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/base/Result.h"
#include "core/session/ExtraFolders.h"

namespace mirvel {

class Defaults;
class Localize;

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
  /// The references must outlive this object; the home folder is that of the user.
  FolderList(Defaults& defaults, ExtraFolders& extraFolders, const Localize& localize, std::filesystem::path home);

  std::vector<Folder> folders() const;
  /// Looks at all folders again.
  void check() { m_extraFolders.check(); }
  /// Posted when the list or a problem has changed.
  Signal<>& changed() { return m_extraFolders.changed(); }

  /// Appends the folders that aren't in the list yet, also not in another spelling (`URL::equalTo`). A path that the
  /// settings can't contain is left out; the result is then an error with that path, which users can read.
  Result<void> add(const std::vector<std::filesystem::path>& folders);
  /// Removes the folder with this path, in whatever spelling. All other elements of the setting stay as they are, also
  /// those that aren't texts.
  void remove(const std::string& path);

 private:
  std::string problemOf(const std::string& path) const;

  Defaults& m_defaults;
  ExtraFolders& m_extraFolders;
  const Localize& m_localize;
  const std::filesystem::path m_home;
};

}  // namespace mirvel
