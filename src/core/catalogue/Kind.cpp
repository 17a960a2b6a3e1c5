#include "core/catalogue/Kind.h"

#include "core/base/Const.h"

namespace mirvel {

std::optional<Kind> Kind::fromRawValue(int value) {
  if (value < userAgent || value > extraFolder) return std::nullopt;
  return Kind(static_cast<Case>(value));
}

std::string_view Kind::name() const {
  constexpr std::array<std::string_view, 11> names{
      "userAgent",        "localAgent",  "localDaemon",  "loginItemSystemPreferences", "loginItemApplication",
      "localStartupItem", "systemAgent", "systemDaemon", "systemStartupItem",          "privilegedHelperTool",
      "extraFolder"};
  return names.at(static_cast<std::size_t>(m_case));
}

std::optional<std::filesystem::path> Kind::folderURL(const Roots& roots) const {
  switch (m_case) {
    case userAgent:
      return roots.userLibrary / Const::PathComponent::launchAgents;
    case localAgent:
      return roots.localLibrary / Const::PathComponent::launchAgents;
    case localDaemon:
      return roots.localLibrary / Const::PathComponent::launchDaemons;
    case localStartupItem:
      return roots.localLibrary / Const::PathComponent::startupItems;
    case systemAgent:
      return roots.systemLibrary / Const::PathComponent::launchAgents;
    case systemDaemon:
      return roots.systemLibrary / Const::PathComponent::launchDaemons;
    case systemStartupItem:
      return roots.systemLibrary / Const::PathComponent::startupItems;
    case privilegedHelperTool:
      return roots.localLibrary / Const::PathComponent::privilegedHelperTool;
    case loginItemSystemPreferences:
    case loginItemApplication:
    case extraFolder:
      return std::nullopt;
  }
  return std::nullopt;
}

}  // namespace mirvel
