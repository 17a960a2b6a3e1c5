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

/// What a Linux desktop starts at login (freedesktop.org, autostart-spec 0.5): the user's
/// own entries are the list, those that applications installed are the bundled ones. An entry hides all of its file
/// name in folders that count less. Entries that this desktop doesn't start aren't listed.
class AutostartItems final : public LoginItems {
 public:
  /// The environment's `PATH` and `XDG_CURRENT_DESKTOP` count. `locale` is the user's.
  AutostartItems(Roots roots, Environment environment, std::string locale);

  /// Both are sorted by file name.
  std::vector<Listed> listed() override;
  std::vector<Bundled> bundled() override;
  Result<void> remove(const LoginItem& item) override;

 private:
  struct Entry {
    std::string path;
    std::optional<DesktopEntry> content;  ///< none: it isn't started, but hides others
  };
  using Entries = std::map<std::string, Entry>;  // by file name

  Entries entriesIn(const std::vector<std::filesystem::path>& folders) const;
  std::string programOf(const DesktopEntry& entry) const;

  Roots m_roots;
  Environment m_environment;
  std::string m_locale;
};

}  // namespace mirvel
