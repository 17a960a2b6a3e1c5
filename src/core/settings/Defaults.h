#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/base/Result.h"
#include "core/base/Signal.h"
#include "core/settings/Store.h"

namespace mirvel {

/// The settings of the program, in one property list. Every read sees the current content of the file, and every write
/// changes one key in the file immediately; see `Store` for changes by other programs. A setting that can't be written
/// is in effect until the program ends; the store reports the problem, so callers may ignore the result.
///
/// A key that is absent or has a value of the wrong type has its registered default. Such a value stays in the file
/// until the key is written. For the main thread.
///
/// To add a setting: a name in `Key`, a row in the table of Defaults.cpp, and accessors here.
class Defaults {
 public:
  /// The type of a registered default.
  using Value = std::variant<bool, std::int64_t, std::string_view>;

  /// Keys in the file, named like the accessors below.
  struct Key {
    static constexpr std::string_view showSystemJobs = "ShowSystemJobs";
    static constexpr std::string_view showInternalHelpers = "ListMirvelHelper";
    static constexpr std::string_view automaticHelp = "AutomaticHelp";
    static constexpr std::string_view automaticPATH = "AutomaticEnvPath";
    static constexpr std::string_view runAgent = "RunAgent";
    static constexpr std::string_view numberOfSavedRevisions = "NumberOfSavedRevisions";
    static constexpr std::string_view selectedMode = "ViewMode";
    static constexpr std::string_view preferFullScreen = "PreferFullScreen";
    static constexpr std::string_view preferencesTab = "PreferencesTab";
    static constexpr std::string_view currentTheme = "CurrentTheme";
    static constexpr std::string_view hasManuallyChangedTheme = "HasManuallyChangedTheme";
    static constexpr std::string_view showLineNumbers = "ShowLineNumbers";
    static constexpr std::string_view folders = "Folders";
    static constexpr std::string_view recentScripts = "RecentScripts";
    static constexpr std::string_view wrapScripts = "WrapScripts";
    static constexpr std::string_view scriptWindowFrame = "NSWindow Frame Script Window";
    static constexpr std::string_view showTitleBar = "ShowTitleBar";
    static constexpr std::string_view notificationTab = "NotificationTab";
    static constexpr std::string_view logLength = "LogLength";
    static constexpr std::string_view logPeriod = "LogPeriod";
    static constexpr std::string_view followLog = "FollowLog";
    static constexpr std::string_view firstMirvelLaunch = "FirstMirvelLaunch";
    static constexpr std::string_view editSystemJobs =
        "IWantToEditSystemJobsAndIUnderstandTheRisksAndITakeFullResponsibility";
    static constexpr std::string_view automaticallyCheckForUpdate = "AutomaticallyCheckForUpdate";
    static constexpr std::string_view showInvalidData = "ShowInvalidData";
    static constexpr std::string_view checkJobs = "CheckJobs";
    static constexpr std::string_view suppressAlertComplexRun = "AlertComplexWhat";
    static constexpr std::string_view windowFrame = "NSWindow Frame Main App Window";
    static constexpr std::string_view splitFrames = "NSSplitView Subview Frames Main App Window";
    static constexpr std::string_view expandedGroups = "Tree";
    static constexpr std::string_view listColumns = "NSTableView Columns List";
    static constexpr std::string_view listSort = "NSTableView Sort Ordering List";
  };

  /// The keys for "don't ask again".
  static constexpr std::array suppressions{Key::suppressAlertComplexRun};

  using Damaged = Store::Damaged;

  /// Without `troubles`, which must outlive this object, problems with the file aren't reported.
  explicit Defaults(std::filesystem::path file, Damaged damaged = Damaged::SetAside, StoreTroubles* troubles = nullptr)
      : m_file(std::move(file), troubles, damaged) {}

  /// The registered default of a key; nullopt if the key isn't registered.
  static std::optional<Value> registered(std::string_view key);

  /// Show the jobs of the operating system, too.
  bool showSystemJobs() const { return boolean(Key::showSystemJobs); }
  Result<void> setShowSystemJobs(bool value) { return set(Key::showSystemJobs, value); }
  /// Show the program's own helpers in lists.
  bool showInternalHelpers() const { return boolean(Key::showInternalHelpers); }
  /// Repair commands while they are typed.
  bool automaticHelp() const { return boolean(Key::automaticHelp); }
  Result<void> setAutomaticHelp(bool value) { return set(Key::automaticHelp, value); }
  /// Write the `PATH` variable into new jobs.
  bool automaticPATH() const { return boolean(Key::automaticPATH); }
  Result<void> setAutomaticPATH(bool value) { return set(Key::automaticPATH, value); }
  /// Start the background agent at login.
  bool runAgent() const { return boolean(Key::runAgent); }
  Result<void> setRunAgent(bool value) { return set(Key::runAgent, value); }
  /// The number of revisions to keep per job.
  std::int64_t numberOfSavedRevisions() const { return integer(Key::numberOfSavedRevisions); }
  Result<void> setNumberOfSavedRevisions(std::int64_t value) { return set(Key::numberOfSavedRevisions, value); }
  /// The mode of the main window, as an index.
  std::int64_t selectedMode() const { return integer(Key::selectedMode); }
  Result<void> setSelectedMode(std::int64_t value) { return set(Key::selectedMode, value); }
  /// Show the main window in full screen.
  bool preferFullScreen() const { return boolean(Key::preferFullScreen); }
  Result<void> setPreferFullScreen(bool value) { return set(Key::preferFullScreen, value); }
  /// The selected pane of the preferences, as an index.
  std::int64_t preferencesTab() const { return integer(Key::preferencesTab); }
  Result<void> setPreferencesTab(std::int64_t value) { return set(Key::preferencesTab, value); }
  /// The name of the theme; empty for the default one.
  std::string currentTheme() const { return text(Key::currentTheme).value_or(std::string()); }
  Result<void> setCurrentTheme(std::string name) { return setText(Key::currentTheme, std::move(name)); }
  /// Whether the user has chosen a theme.
  bool hasManuallyChangedTheme() const { return boolean(Key::hasManuallyChangedTheme); }
  Result<void> setHasManuallyChangedTheme(bool value) { return set(Key::hasManuallyChangedTheme, value); }
  /// Show line numbers beside scripts.
  bool showLineNumbers() const { return boolean(Key::showLineNumbers); }
  /// The folders with jobs in addition to those of launchd, as absolute paths.
  std::vector<std::string> folders() const { return texts(Key::folders); }
  Result<void> setFolders(const std::vector<std::string>& paths) { return setTexts(Key::folders, paths); }
  /// Show the title bar of the window.
  bool showTitleBar() const { return boolean(Key::showTitleBar); }
  /// The selected tab of the notifications, as an index.
  std::int64_t notificationTab() const { return integer(Key::notificationTab); }
  Result<void> setNotificationTab(std::int64_t value) { return set(Key::notificationTab, value); }
  /// The time span of the log viewer, as an index.
  std::int64_t logLength() const { return integer(Key::logLength); }
  Result<void> setLogLength(std::int64_t value) { return set(Key::logLength, value); }
  /// The unit of `logLength`, as an index.
  std::int64_t logPeriod() const { return integer(Key::logPeriod); }
  Result<void> setLogPeriod(std::int64_t value) { return set(Key::logPeriod, value); }
  /// Show new lines in the log viewer.
  bool followLog() const { return boolean(Key::followLog); }
  Result<void> setFollowLog(bool value) { return set(Key::followLog, value); }
  /// Whether the agent's registration still has to be renewed.
  bool firstMirvelLaunch() const { return boolean(Key::firstMirvelLaunch); }
  Result<void> setFirstMirvelLaunch(bool value) { return set(Key::firstMirvelLaunch, value); }
  /// Allow editing jobs of the operating system.
  bool editSystemJobs() const { return boolean(Key::editSystemJobs); }
  /// Check for a new version when the program starts.
  bool automaticallyCheckForUpdate() const { return boolean(Key::automaticallyCheckForUpdate); }
  Result<void> setAutomaticallyCheckForUpdate(bool value) { return set(Key::automaticallyCheckForUpdate, value); }
  /// Mark invalid values.
  bool showInvalidData() const { return boolean(Key::showInvalidData); }
  Result<void> setShowInvalidData(bool value) { return set(Key::showInvalidData, value); }
  /// Look for problems in jobs, also while they are edited.
  bool checkJobs() const { return boolean(Key::checkJobs); }
  Result<void> setCheckJobs(bool value) { return set(Key::checkJobs, value); }
  /// Don't ask any more about commands that are too complex for launchd.
  bool suppressAlertComplexRun() const { return boolean(Key::suppressAlertComplexRun); }

  /// The expanded groups of the tree, by the numbers of their kinds; nullopt if never set. Elements that aren't
  /// integers are skipped.
  std::optional<std::vector<std::int64_t>> expandedGroups() const;
  Result<void> setExpandedGroups(const std::vector<std::int64_t>& kinds);

  // By key.

  /// False or 0 if the key is neither in the file nor registered with this type.
  bool boolean(std::string_view key) const;
  std::int64_t integer(std::string_view key) const;
  /// nullopt if the file has no string for the key. Registered defaults aren't used.
  std::optional<std::string> text(std::string_view key) const;
  /// Empty if the file has no array for the key. Elements that aren't strings are skipped.
  std::vector<std::string> texts(std::string_view key) const;
  Result<void> set(std::string_view key, bool value);
  Result<void> set(std::string_view key, std::int64_t value);
  Result<void> setText(std::string_view key, std::string value);
  Result<void> setTexts(std::string_view key, const std::vector<std::string>& values);
  /// Sets the key to a value computed from the present one, which may have any type; see `Store::update`.
  Result<void> update(std::string_view key, Store::Edit edit);
  /// Removes the key from the file, so that its default is in effect again.
  Result<void> remove(std::string_view key);
  /// Removes all keys but these, also those that the program doesn't know. `changed` is posted for each.
  Result<void> removeAll(const std::set<std::string_view>& kept);
  /// Inverts a boolean setting; for menu items.
  Result<void> negate(std::string_view key) { return set(key, !boolean(key)); }

  /// Posted with the key after each call that sets or removes it, even if it couldn't be written or had that value
  /// before. Changes of the file by other programs aren't reported.
  Signal<std::string>& changed() { return m_changed; }

 private:
  Result<void> write(std::string_view key, std::optional<propertylist::Value> value);

  mutable Store m_file;  // reading a setting may have to read the file
  Signal<std::string> m_changed;
};

}  // namespace mirvel
