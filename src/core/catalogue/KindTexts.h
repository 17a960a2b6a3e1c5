#pragma once

#include <map>
#include <optional>
#include <string>

#include "core/base/Image.h"
#include "core/catalogue/Kind.h"
#include "core/locale/Localize.h"
#include "core/ports/Workspace.h"
#include "core/settings/Defaults.h"

namespace mirvel {

/// The parts of titles that depend on the machine.
struct KindNames {
  std::string user;         ///< the user's full name
  std::string preferences;  ///< the name of the application that manages the user's login items
};

/// The title of a group of jobs of the kind.
std::string kindTitle(Kind kind, const KindNames& names, const Localize& localize);

/// The titles and icons of the kinds. Main thread only.
class KindTexts {
 public:
  /// All arguments must outlive it. Queries the workspace on first use, not here.
  KindTexts(const Localize& localize, const Defaults& defaults, Workspace& workspace)
      : m_localize(localize), m_defaults(defaults), m_workspace(workspace) {}

  /// The title of a group of jobs of the kind, cached.
  std::string title(Kind kind);
  /// The icon of a group, valid until the next call. The lock of system jobs follows the setting for editing them.
  const Image& icon(Kind kind);

 private:
  /// Queries the workspace once.
  const KindNames& names();
  Image makeIcon(Kind kind);
  std::string preferencesName();

  const Localize& m_localize;
  const Defaults& m_defaults;
  Workspace& m_workspace;
  std::optional<KindNames> m_names;
  std::map<Kind::Case, std::string> m_titles;
  std::map<Kind::Case, Image> m_icons;
};

}  // namespace mirvel
