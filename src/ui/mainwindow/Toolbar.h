#pragma once

#include <QToolBar>
#include <QToolButton>
#include <functional>
#include <map>

#include "core/base/Signal.h"
#include "core/mainwindow/Command.h"
#include "core/ports/MainQueue.h"

class QLineEdit;

namespace mirvel {
class MenuController;
struct WindowContext;
}  // namespace mirvel

namespace mirvel::ui {

/// The toolbar of the window: new job, modes, filter, and the commands on the selected job.
class Toolbar final : public QToolBar {
 public:
  /// `context` and `menus` must outlive the toolbar.
  Toolbar(const WindowContext& context, MenuController& menus, QWidget* parent);

  /// Called when the user leaves the empty filter field with Escape; moves the focus elsewhere.
  std::function<void()> filterLeft;

  QLineEdit& filter() { return *m_filter; }
  /// Updates the enabled state of every control.
  void validate();
  void mark(Mode mode);
  /// Clears the filter field without triggering a search.
  void clearFilter();

 private:
  void addCommand(ToolbarItem item, Command command, const char* symbol, const std::string& title);
  void addRun();
  void showRunCommand(const CommandContext& context);
  void addModes();
  void addFilter();
  void addShare();
  void endFilter();

  const WindowContext& m_context;
  MenuController& m_menus;
  QLineEdit* m_filter = nullptr;
  QToolButton* m_run = nullptr;
  std::map<ToolbarItem, QToolButton*> m_buttons;
  std::map<Command, QAction*> m_places;  ///< the actions that show and hide the buttons of commands
  std::map<Mode, QToolButton*> m_modes;
  bool m_isMarking = false;   ///< while a mode is shown that the user didn't choose
  bool m_isClearing = false;  ///< while the filter is cleared without a search
  Delay m_delay;
  Subscription m_loadingChanged;
};

}  // namespace mirvel::ui
