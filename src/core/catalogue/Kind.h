#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <string_view>

#include "core/files/Roots.h"

namespace mirvel {

/// The kind of a job: where its file is and who it runs for.
class Kind {
 public:
  /// In the order of the catalogue and of all views that group by kind.
  enum Case : int {
    userAgent = 0,
    localAgent = 1,
    localDaemon = 2,
    loginItemSystemPreferences = 3,
    loginItemApplication = 4,
    localStartupItem = 5,
    systemAgent = 6,
    systemDaemon = 7,
    systemStartupItem = 8,
    privilegedHelperTool = 9,
    extraFolder = 10,  ///< a job file in one of the user's extra folders, from which nothing is loaded
  };
  struct Section;  // in KindSection.h

  static const std::array<Kind, 11> allCases;
  /// The kinds that are shown even if system jobs are hidden.
  static const std::array<Kind, 8> visibleKinds;
  /// The kinds that have a folder of their own, in the order in which folder monitors are created.
  static const std::array<Kind, 8> monitoredKinds;

  // Implicit, so that a case can be used as a kind.
  constexpr Kind(Case value) : m_case(value) {}
  /// Null unless `value` is 0 to 10.
  static std::optional<Kind> fromRawValue(int value);

  constexpr operator Case() const { return m_case; }
  constexpr int rawValue() const { return m_case; }
  /// The name of the case, such as "userAgent".
  std::string_view name() const;

  /// Whether jobs are launchd job files.
  constexpr bool isLaunchd() const { return canBeLoaded() || m_case == extraFolder; }
  /// Whether jobs are launchd job files in a folder from which they are loaded.
  constexpr bool canBeLoaded() const {
    return m_case <= localDaemon || m_case == systemAgent || m_case == systemDaemon;
  }
  constexpr bool isStartupItem() const { return m_case == localStartupItem || m_case == systemStartupItem; }
  constexpr bool isLoginItem() const { return m_case == loginItemSystemPreferences || m_case == loginItemApplication; }
  /// Whether launchd runs the jobs as root, or as the user that the job names.
  constexpr bool isDaemon() const { return m_case == localDaemon || m_case == systemDaemon; }
  /// Whether launchd runs the jobs in a user's session.
  constexpr bool isAgent() const { return canBeLoaded() && !isDaemon(); }
  /// Whether the jobs are agents whose files belong to root, loaded in the session of each user.
  constexpr bool isAgentOfEveryone() const { return isAgent() && m_case != userAgent; }
  /// Whether the jobs are hidden unless system jobs are shown.
  constexpr bool isSystem() const { return m_case >= systemAgent && m_case <= systemStartupItem; }
  /// Whether jobs of the kind can be edited. `editSystemJobs` is the user's setting for system jobs.
  constexpr bool isEditable(bool editSystemJobs) const {
    return m_case <= localDaemon || (editSystemJobs && (m_case == systemAgent || m_case == systemDaemon));
  }

  /// The folder of the jobs; null for login items, and for the extra folders, of which there can be several.
  std::optional<std::filesystem::path> folderURL(const Roots& roots) const;

 private:
  Case m_case;
};

inline constexpr std::array<Kind, 11> Kind::allCases{
    userAgent,   localAgent,   localDaemon,       loginItemSystemPreferences, loginItemApplication, localStartupItem,
    systemAgent, systemDaemon, systemStartupItem, privilegedHelperTool,       extraFolder};
inline constexpr std::array<Kind, 8> Kind::visibleKinds{
    userAgent,        localAgent,           localDaemon, loginItemSystemPreferences, loginItemApplication,
    localStartupItem, privilegedHelperTool, extraFolder};
inline constexpr std::array<Kind, 8> Kind::monitoredKinds{userAgent,        localAgent,          localDaemon,
                                                          localStartupItem, systemStartupItem,   systemAgent,
                                                          systemDaemon,     privilegedHelperTool};

}  // namespace mirvel
