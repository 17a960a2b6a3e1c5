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
  std::string user;         ///< the user's name as people write it
  std::string preferences;  ///< the application in which the user's login items are set
};

/// The title of a group of jobs of that kind.
std::string kindTitle(Kind kind, const KindNames& names, const Localize& localize);

/// The titles and pictures of the kinds. For the main thread.
class KindTexts {
 public:
  /// All outlive it. The desktop is asked when a text is first needed.
  KindTexts(const Localize& localize, const Defaults& defaults, Workspace& workspace)
      : m_localize(localize), m_defaults(defaults), m_workspace(workspace) {}

  /// The title of a group of jobs of that kind.
  std::string title(Kind kind);
  /// Made on first use and then kept: a lock that shows whether system jobs may be edited changes with the next start.
  const Image& icon(Kind kind);

 private:
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
