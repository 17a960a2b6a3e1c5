#pragma once

#include <array>
#include <functional>
#include <map>
#include <string>

#include "core/files/URL.h"
#include "core/session/DetailType.h"
#include "core/session/Mode.h"

namespace mirvel {

/// The sheets of the main window.
enum class Sheet { New, Duplicate, Import, RestoreDeleted, Test, Log, Info };

/// The main window, as seen by the core. Implemented by the shell; for the main thread.
class MainWindowType {
 public:
  MainWindowType() = default;
  virtual ~MainWindowType() = default;
  MainWindowType(const MainWindowType&) = delete;
  MainWindowType& operator=(const MainWindowType&) = delete;

  /// Sets the title, which also names the window in the window list.
  virtual void setTitle(const std::string& title) = 0;
  /// Shows or hides the title in the title bar.
  virtual void setTitleVisible(bool isVisible) = 0;
  /// Shows or hides the mark of unsaved changes.
  virtual void setEdited(bool isEdited) = 0;
  /// Enables or disables the items of the toolbar.
  virtual void validateVisibleItems() = 0;
  /// Shows the tab of a mode, and checks its button in the toolbar.
  virtual void showMode(Mode mode) = 0;
  /// Empties the search field, without changing the filter.
  virtual void clearFilter() = 0;
  /// Gives the search field the focus.
  virtual void focusOnFilter() = 0;
  /// Whether the search field is visible.
  virtual bool hasFilterField() const = 0;
  /// Whether a sheet is open.
  virtual bool hasSheet() const = 0;
  virtual bool isFullScreen() const = 0;
  virtual void toggleFullScreen() = 0;
  virtual void showAbout() = 0;
};

/// The parts of the shell that the core can reach. Components register themselves here and unregister in their
/// destructor; members are null or empty while there is no such component, and notifications to it are dropped. For the
/// main thread.
struct Shell {
  std::array<ModeType*, 4> modes{};  ///< by the value of `Mode`
  DetailType* detail = nullptr;
  EditType* edit = nullptr;
  MainWindowType* mainWindow = nullptr;
  std::map<Sheet, std::function<void()>> sheets;              ///< open a sheet; only for the sheets that can be opened
  std::function<void()> importJob;                            ///< asks for the file to import
  std::function<void()> exportJob;                            ///< asks for the file to write
  std::function<void()> chooseScript;                         ///< asks for a script, and opens it
  std::function<void(const URL& script)> editScript;          ///< opens it in the script editor
  std::function<void()> saveScript;                           ///< only while the active window is a script editor
  std::function<void(const std::string& fragment)> showHelp;  ///< the help pages, at this section
  std::function<void()> showPreferences;                      ///< the window of the preferences
  std::function<void()> emptyIconCache;
  std::function<void(bool isManual)> checkForUpdate;  ///< `isManual`: also report that there is no update
  std::function<void()> endPrivilegedConnection;      ///< only while such a connection is open
  std::function<void()> terminate;                    ///< asks the application to quit, which the user can refuse
};

}  // namespace mirvel
