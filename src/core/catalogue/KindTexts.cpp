#include "core/catalogue/KindTexts.h"

#include "core/support/Bidirectional.h"
#include "core/support/Const.h"

namespace mirvel {

std::string KindTexts::title(Kind kind) {
  std::string& title = m_titles[kind];
  if (title.empty()) title = makeTitle(kind);
  return title;
}

const Image& KindTexts::icon(Kind kind) {
  const auto found = m_icons.find(kind);
  if (found != m_icons.end()) return found->second;
  return m_icons.emplace(kind, makeIcon(kind)).first->second;
}

std::string KindTexts::makeTitle(Kind kind) {
  const auto joined = [this](std::string_view title, const std::string& detail) {
    return bidirectionalString({std::string(title), detail}, Const::separator, m_localize.isRightToLeft());
  };
  switch (kind) {
    case Kind::userAgent:
      return m_workspace.fullUserName();
    case Kind::localAgent:
      return m_localize.everyone();
    case Kind::localDaemon:
      return "root";
    case Kind::loginItemSystemPreferences:
      return joined(m_localize.loginItems(), preferencesName());
    case Kind::loginItemApplication:
      return joined(m_localize.loginItems(), m_localize.application());
    case Kind::localStartupItem:
      return std::string(Const::PathComponent::startupItems);
    case Kind::systemAgent:
      return joined("Agents", m_localize.system());
    case Kind::systemDaemon:
      return joined("Daemons", m_localize.system());
    case Kind::systemStartupItem:
      return joined(Const::PathComponent::startupItems, m_localize.system());
    case Kind::privilegedHelperTool:
      return "PrivilegedHelperTools";
  }
  return {};
}

Image KindTexts::makeIcon(Kind kind) {
  switch (kind) {
    case Kind::userAgent:
      return Image::named("user-identity");
    case Kind::localAgent:
      return Image::named("system-users");
    case Kind::localDaemon:
    case Kind::privilegedHelperTool:
      return Image::named("computer");
    case Kind::loginItemSystemPreferences: {
      const auto path = m_workspace.fullPathForApplication(std::string(Const::AppName::systemPreferences));
      return path ? Image::iconOfPath(*path) : Image::named("preferences-system");
    }
    case Kind::loginItemApplication:
      return Image::named("application-x-executable");
    case Kind::localStartupItem:
    case Kind::systemStartupItem:
      return Image::named("dialog-warning");
    case Kind::systemAgent:
    case Kind::systemDaemon:
      return Image::named(m_defaults.editSystemJobs() ? "changes-allow" : "changes-prevent");
  }
  return Image::named("mirvel-job");
}

std::string KindTexts::preferencesName() {
  const std::string application(Const::AppName::systemPreferences);
  const auto path = m_workspace.fullPathForApplication(application);
  if (!path) return application;
  std::string name = m_workspace.displayName(*path);
  if (name.ends_with(".app")) name.resize(name.size() - 4);
  return name;
}

}  // namespace mirvel
