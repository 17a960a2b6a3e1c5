#pragma once

#include <string>

namespace mirvel {

/// The main window, as far as the logic touches it.
class MainWindowType {
 public:
  MainWindowType() = default;
  virtual ~MainWindowType() = default;
  MainWindowType(const MainWindowType&) = delete;
  MainWindowType& operator=(const MainWindowType&) = delete;

  virtual void setTitle(const std::string& title) = 0;
  /// The mark of unsaved work.
  virtual void setEdited(bool isEdited) = 0;
  /// Enables each item of the toolbar by its rule.
  virtual void validateVisibleItems() = 0;
};

}  // namespace mirvel
