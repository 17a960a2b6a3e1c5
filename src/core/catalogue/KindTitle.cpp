#include "core/catalogue/KindTitle.h"

#include "core/base/Const.h"
#include "core/text/Bidirectional.h"

namespace mirvel {

std::string kindTitle(Kind kind, const KindNames& names, const Localize& localize) {
  const auto joined = [&localize](std::string_view title, const std::string& detail) {
    return bidirectionalString({std::string(title), detail}, Const::separator, localize.isRightToLeft());
  };
  switch (kind) {
    case Kind::userAgent:
      return names.user;
    case Kind::localAgent:
      return localize.everyone();
    case Kind::localDaemon:
      // The names of the user and of the folders aren't translated.
      return "root";
    case Kind::loginItemSystemPreferences:
      return joined(localize.loginItems(), names.preferences);
    case Kind::loginItemApplication:
      return joined(localize.loginItems(), localize.application());
    case Kind::localStartupItem:
      return std::string(Const::PathComponent::startupItems);
    case Kind::systemAgent:
      return joined("Agents", localize.system());
    case Kind::systemDaemon:
      return joined("Daemons", localize.system());
    case Kind::systemStartupItem:
      return joined(Const::PathComponent::startupItems, localize.system());
    case Kind::privilegedHelperTool:
      return "PrivilegedHelperTools";
  }
  return {};
}

}  // namespace mirvel
