#include "core/catalogue/KindTexts.h"

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
    case Kind::extraFolder:
      return localize.folders();
  }
  return {};
}

std::string KindTexts::title(Kind kind) {
  std::string& title = m_titles[kind];
  if (title.empty()) title = kindTitle(kind, names(), m_localize);
  return title;
}

const Image& KindTexts::icon(Kind kind) {
  if (kind.isSystem()) return m_icons.insert_or_assign(kind, makeIcon(kind)).first->second;
  const auto found = m_icons.find(kind);
  if (found != m_icons.end()) return found->second;
  return m_icons.emplace(kind, makeIcon(kind)).first->second;
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
    case Kind::extraFolder:
      return Image::named("folder");
  }
  return Image::named("mirvel-job");
}

const KindNames& KindTexts::names() {
  if (!m_names) m_names = {.user = m_workspace.fullUserName(), .preferences = preferencesName()};
  return *m_names;
}

std::string KindTexts::preferencesName() {
  std::string application(Const::AppName::systemPreferences);
  const auto path = m_workspace.fullPathForApplication(application);
  if (!path) return application;
  std::string name = m_workspace.displayName(*path);
  // Depending on its settings, the Finder displays extensions.
  if (name.ends_with(".app")) name.resize(name.size() - 4);
  return name;
}

}  // namespace mirvel
