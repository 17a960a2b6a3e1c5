#pragma once

#include <string>

#include "core/mainwindow/Mode.h"

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

}  // namespace mirvel
