#pragma once

#include <string>

#include "ui/support/SheetViewController.h"

class QDialogButtonBox;
class QFormLayout;
class QPushButton;

namespace mirvel {
class Localize;
}

namespace mirvel::ui {

class ElidedLabel;

/// A small sheet on the main window: a heading, a few rows, and buttons. Escape dismisses it, Return presses its
/// default button. It goes when it is dismissed.
class CopySheet : public SheetViewController {
  Q_OBJECT

 public:
  /// The window owns it.
  CopySheet(QWidget& window, Defaults& defaults, const char* frameName);

 protected:
  /// Made with the sheet, but for its text.
  ElidedLabel& heading() { return *m_heading; }
  QFormLayout& rows() { return *m_rows; }
  QPushButton* addButton(const std::string& title, const char* name);
  /// The button that Return presses.
  QPushButton* addDefaultButton(const std::string& title, const char* name);
  /// The button that Escape presses.
  QPushButton* addCancelButton(const Localize& localize);

 private:
  ElidedLabel* m_heading;
  QFormLayout* m_rows;
  QDialogButtonBox* m_buttons;
};

}  // namespace mirvel::ui
