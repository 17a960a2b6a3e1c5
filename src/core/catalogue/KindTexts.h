#pragma once

#include <map>
#include <optional>
#include <string>

#include "core/base/Image.h"
#include "core/catalogue/Kind.h"
#include "core/catalogue/KindTitle.h"
#include "core/locale/Localize.h"
#include "core/ports/Workspace.h"
#include "core/settings/Defaults.h"

namespace mirvel {

/// The titles and pictures of the kinds. For the main thread.
class KindTexts {
 public:
  /// All outlive it. The desktop is asked when a text is first needed.
  KindTexts(const Localize& localize, const Defaults& defaults, Workspace& workspace)
      : m_localize(localize), m_defaults(defaults), m_workspace(workspace) {}

  /// Under which a group of jobs of the kind is shown.
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
