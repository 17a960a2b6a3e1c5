#pragma once

#include <array>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "core/files/URL.h"
#include "core/session/DetailType.h"
#include "core/session/Mode.h"

namespace mirvel::messages {
struct LogLine;
}

/// The names under which sheets are asked for.
namespace mirvel::String {

inline constexpr std::string_view new_ = "New";
inline constexpr std::string_view duplicate = "Duplicate";
inline constexpr std::string_view importSegue = "Import";
inline constexpr std::string_view restoreDeleted = "Restore Deleted";
inline constexpr std::string_view test = "Test";
inline constexpr std::string_view log = "Log";
inline constexpr std::string_view info = "Info";

}  // namespace mirvel::String

namespace mirvel {

/// The main window, as far as the logic touches it.
class MainWindowType {
 public:
  MainWindowType() = default;
  virtual ~MainWindowType() = default;
  MainWindowType(const MainWindowType&) = delete;
  MainWindowType& operator=(const MainWindowType&) = delete;

  virtual void setTitle(const std::string& title) = 0;
  /// Whether the title bar shows the title.
  virtual void setTitleVisible(bool isVisible) = 0;
  /// The mark of unsaved work.
  virtual void setEdited(bool isEdited) = 0;
  /// Enables each item of the toolbar by its rule.
  virtual void validateVisibleItems() = 0;
  /// Brings the tab of a mode to the front, and marks it in the toolbar.
  virtual void showMode(Mode mode) = 0;
  /// Empties the search field, and nothing else.
  virtual void clearFilter() = 0;
  virtual void focusOnFilter() = 0;
  /// Whether there is a search field that can be seen.
  virtual bool hasFilterField() const = 0;
  /// Whether a sheet is up.
  virtual bool hasSheet() const = 0;
  virtual bool isFullScreen() const = 0;
  virtual void toggleFullScreen() = 0;
  virtual void showAbout() = 0;
};

/// What shows the output of a test run.
class TestType {
 public:
  TestType() = default;
  virtual ~TestType() = default;
  TestType(const TestType&) = delete;
  TestType& operator=(const TestType&) = delete;

  virtual void testFinished(const std::string& output) = 0;
};

/// What shows the log of a job.
class LogType {
 public:
  LogType() = default;
  virtual ~LogType() = default;
  LogType(const LogType&) = delete;
  LogType& operator=(const LogType&) = delete;

  /// The oldest line first.
  virtual void logReplyReceived(const std::vector<messages::LogLine>& lines) = 0;
  /// The query has ended without an answer.
  virtual void clear() = 0;
};

/// The parts of the program that are there only at times: whoever is one puts itself in, and takes itself out when it
/// goes. Null or empty: nobody to tell. For the main thread.
struct Shell {
  std::array<ModeType*, 4> modes{};  ///< by the number of `Mode`
  DetailType* detail = nullptr;
  EditType* edit = nullptr;
  MainWindowType* mainWindow = nullptr;
  TestType* test = nullptr;
  LogType* log = nullptr;
  std::map<std::string_view, std::function<void()>> segues;  ///< the sheets that can be shown, by name (`Segue.h`)
  std::function<void()> importJob;                           ///< asks which file
  std::function<void()> exportJob;                           ///< asks where to
  std::function<void(const URL& script)> editScript;         ///< opens it in the script editor
  std::function<void()> saveScript;                          ///< set while the front window edits a script: saves it
  std::function<void()> emptyIconCache;
  std::function<void(bool isManual)> checkForUpdate;
  std::function<void()> endPrivilegedConnection;  ///< set while such a connection is open
  std::function<void()> terminate;                ///< asks the application to quit
};

}  // namespace mirvel
