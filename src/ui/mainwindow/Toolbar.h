#pragma once

#include <QToolBar>
#include <QToolButton>
#include <functional>
#include <map>

#include "core/app/Program.h"
#include "core/ports/MainQueue.h"

class QLineEdit;

namespace mirvel::ui {

/// The toolbar of the window: a new job, the modes, the filter, and what can be done with the selected job.
class Toolbar final : public QToolBar {
 public:
  Toolbar(Program& program, QWidget* parent);

  std::function<void()> filterLeft;  ///< the keys are to go elsewhere

  QLineEdit& filter() { return *m_filter; }
  /// Enables each control by its rule.
  void validate();
  void mark(Mode mode);
  /// Empties the search field without searching.
  void clearFilter();

 private:
  void addCommand(ToolbarItem item, Command command, const char* symbol, const std::string& title);
  void addModes();
  void addFilter();
  void addShare();
  void endFilter();

  Program& m_program;
  QLineEdit* m_filter = nullptr;
  std::map<ToolbarItem, QToolButton*> m_buttons;
  std::map<ToolbarItem, QAction*> m_places;  // in the toolbar, by which a control is shown or hidden
  std::map<Mode, QToolButton*> m_modes;
  bool m_isMarking = false;   ///< shows a mode, and chooses none
  bool m_isClearing = false;  ///< the filter, which doesn't search
  Delay m_delay;
  Subscription m_loadingChanged;
};

}  // namespace mirvel::ui
