#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "core/files/Roots.h"
#include "core/loginitems/DesktopEntry.h"
#include "core/ports/LoginItems.h"
#include "core/process/Environment.h"

namespace mirvel {

/// The applications that a Linux desktop starts at login (freedesktop.org, autostart-spec 0.5). The user's own entries
/// are the list, those of the system are the bundled items. An entry overrides entries of the same file name in folders
/// of lower priority, even if it disables them. Entries that this desktop doesn't start aren't listed.
class AutostartItems final : public LoginItems {
 public:
  /// Uses `PATH` and `XDG_CURRENT_DESKTOP` of the environment. `locale` is the user's.
  AutostartItems(Roots roots, Environment environment, std::string locale);

  /// Both lists are sorted by file name. May block on the file system.
  std::vector<Listed> listed() override;
  std::vector<Bundled> bundled() override;
  /// Deletes the entry's file. `BadArgument` unless it is directly in the user's own folder.
  Result<void> remove(const LoginItem& item) override;

 private:
  struct Entry {
    std::string path;
    std::optional<DesktopEntry> content;  ///< null if it isn't started, but still overrides others
  };
  using Entries = std::map<std::string, Entry>;  // by file name

  Entries entriesIn(const std::vector<std::filesystem::path>& folders) const;
  std::string programOf(const DesktopEntry& entry) const;

  Roots m_roots;
  Environment m_environment;
  std::string m_locale;
};

}  // namespace mirvel
