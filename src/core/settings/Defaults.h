#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/base/Result.h"
#include "core/settings/Store.h"

namespace mirvel {

/// The program's whole configuration, kept in one property list. Every read sees the file as it is now, every write
/// goes to the file at once and touches one key; see `Store` for what others may do to the file meanwhile. A setting
/// that can't be written holds until the program ends, which the store reports: callers needn't tell the user.
///
/// A key that is absent, or holds a value of another type, has its registered default; what it holds stays in the file
/// until the key is written. For the main thread.
class Defaults {
 public:
  /// A default: what its key holds when the file doesn't tell.
  using Value = std::variant<bool, std::int64_t, std::string_view>;

  /// Keys in the file, by the names of the members below.
  struct Key {
    static constexpr std::string_view showSystemJobs = "ShowSystemJobs";
    static constexpr std::string_view showInternalHelpers = "ListMirvelHelper";
    static constexpr std::string_view automaticHelp = "AutomaticHelp";
    static constexpr std::string_view automaticPATH = "AutomaticEnvPath";
    static constexpr std::string_view runAgent = "RunAgent";
    static constexpr std::string_view numberOfSavedRevisions = "NumberOfSavedRevisions";
    static constexpr std::string_view selectedMode = "ViewMode";
    static constexpr std::string_view preferFullScreen = "PreferFullScreen";
    static constexpr std::string_view hasManuallyChangedTheme = "HasManuallyChangedTheme";
    static constexpr std::string_view showTitleBar = "ShowTitleBar";
    static constexpr std::string_view notificationTab = "NotificationTab";
    static constexpr std::string_view logLength = "LogLength";
    static constexpr std::string_view logPeriod = "LogPeriod";
    static constexpr std::string_view firstMirvelLaunch = "FirstMirvelLaunch";
    static constexpr std::string_view editSystemJobs =
        "IWantToEditSystemJobsAndIUnderstandTheRisksAndITakeFullResponsibility";
    static constexpr std::string_view automaticallyCheckForUpdate = "AutomaticallyCheckForUpdate";
    static constexpr std::string_view showInvalidData = "ShowInvalidData";
    static constexpr std::string_view suppressAlertComplexRun = "AlertComplexWhat";
    static constexpr std::string_view windowFrame = "NSWindow Frame Main App Window";
    static constexpr std::string_view splitFrames = "NSSplitView Subview Frames Main App Window";
    static constexpr std::string_view expandedGroups = "Tree";
    static constexpr std::string_view listColumns = "NSTableView Columns List";
    static constexpr std::string_view listSort = "NSTableView Sort Ordering List";
  };

  using Damaged = Store::Damaged;

  /// Without `troubles`, which outlives it, nobody is told of a file that can't be read or written.
  explicit Defaults(std::filesystem::path file, Damaged damaged = Damaged::SetAside, StoreTroubles* troubles = nullptr)
      : m_file(std::move(file), troubles, damaged) {}

  /// The registered default of a key, used by a member or not.
  static std::optional<Value> registered(std::string_view key);

  /// List the system kinds too.
  bool showSystemJobs() const { return boolean(Key::showSystemJobs); }
  Result<void> setShowSystemJobs(bool value) { return set(Key::showSystemJobs, value); }
  /// List the program's own helpers.
  bool showInternalHelpers() const { return boolean(Key::showInternalHelpers); }
  Result<void> setShowInternalHelpers(bool value) { return set(Key::showInternalHelpers, value); }
  /// Repair commands as they are typed.
  bool automaticHelp() const { return boolean(Key::automaticHelp); }
  Result<void> setAutomaticHelp(bool value) { return set(Key::automaticHelp, value); }
  /// Write the `PATH` variable into new jobs.
  bool automaticPATH() const { return boolean(Key::automaticPATH); }
  Result<void> setAutomaticPATH(bool value) { return set(Key::automaticPATH, value); }
  /// Run the agent at login.
  bool runAgent() const { return boolean(Key::runAgent); }
  Result<void> setRunAgent(bool value) { return set(Key::runAgent, value); }
  /// Revisions kept per job.
  std::int64_t numberOfSavedRevisions() const { return integer(Key::numberOfSavedRevisions); }
  Result<void> setNumberOfSavedRevisions(std::int64_t value) { return set(Key::numberOfSavedRevisions, value); }
  /// The mode of the main window.
  std::int64_t selectedMode() const { return integer(Key::selectedMode); }
  Result<void> setSelectedMode(std::int64_t value) { return set(Key::selectedMode, value); }
  /// Main window in full screen.
  bool preferFullScreen() const { return boolean(Key::preferFullScreen); }
  Result<void> setPreferFullScreen(bool value) { return set(Key::preferFullScreen, value); }
  /// The user picked a theme.
  bool hasManuallyChangedTheme() const { return boolean(Key::hasManuallyChangedTheme); }
  Result<void> setHasManuallyChangedTheme(bool value) { return set(Key::hasManuallyChangedTheme, value); }
  /// Window title visible.
  bool showTitleBar() const { return boolean(Key::showTitleBar); }
  Result<void> setShowTitleBar(bool value) { return set(Key::showTitleBar, value); }
  /// Selected tab of the notifications.
  std::int64_t notificationTab() const { return integer(Key::notificationTab); }
  Result<void> setNotificationTab(std::int64_t value) { return set(Key::notificationTab, value); }
  /// How far the log viewer looks back, as an index.
  std::int64_t logLength() const { return integer(Key::logLength); }
  Result<void> setLogLength(std::int64_t value) { return set(Key::logLength, value); }
  /// The unit of that, as an index.
  std::int64_t logPeriod() const { return integer(Key::logPeriod); }
  Result<void> setLogPeriod(std::int64_t value) { return set(Key::logPeriod, value); }
  /// The agent's registration isn't renewed yet.
  bool firstMirvelLaunch() const { return boolean(Key::firstMirvelLaunch); }
  Result<void> setFirstMirvelLaunch(bool value) { return set(Key::firstMirvelLaunch, value); }
  /// System jobs may be changed; no control sets it.
  bool editSystemJobs() const { return boolean(Key::editSystemJobs); }
  /// Look for a new version at the start.
  bool automaticallyCheckForUpdate() const { return boolean(Key::automaticallyCheckForUpdate); }
  Result<void> setAutomaticallyCheckForUpdate(bool value) { return set(Key::automaticallyCheckForUpdate, value); }
  /// Mark values that don't hold.
  bool showInvalidData() const { return boolean(Key::showInvalidData); }
  Result<void> setShowInvalidData(bool value) { return set(Key::showInvalidData, value); }
  /// The question about commands too complex for launchd isn't asked any more.
  bool suppressAlertComplexRun() const { return boolean(Key::suppressAlertComplexRun); }

  /// The groups that stand open in the tree, by the numbers of their kinds; none: never set. What is no number is left
  /// out.
  std::optional<std::vector<std::int64_t>> expandedGroups() const;
  Result<void> setExpandedGroups(const std::vector<std::int64_t>& kinds);

  /// A key by its name; one that is neither in the file nor registered is false or 0.
  bool boolean(std::string_view key) const;
  std::int64_t integer(std::string_view key) const;
  /// None if the file holds no text.
  std::optional<std::string> text(std::string_view key) const;
  Result<void> set(std::string_view key, bool value);
  Result<void> set(std::string_view key, std::int64_t value);
  Result<void> setText(std::string_view key, std::string value);
  /// Inverts a boolean key; check boxes write by this.
  Result<void> negate(std::string_view key) { return set(key, !boolean(key)); }

 private:
  mutable Store m_file;  // reading may have to read the file again
};

}  // namespace mirvel
