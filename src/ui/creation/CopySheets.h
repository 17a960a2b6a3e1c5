#pragma once

#include <string>

#include "core/creation/CopiedJobs.h"
#include "ui/support/SheetViewController.h"

class QDialogButtonBox;
class QFormLayout;
class QLineEdit;
class QPushButton;

namespace mirvel {
class Localize;
}

namespace mirvel::ui {

class ElidedLabel;
class KindButtons;

/// A small sheet on the main window: a heading, a few rows, and buttons. Escape dismisses it, Return presses its
/// default button.
class CopySheet : public SheetViewController {
  Q_OBJECT

 public:
  /// `window` becomes the parent.
  CopySheet(QWidget& window, Defaults& defaults, const char* frameName);

 protected:
  /// Initially empty.
  ElidedLabel& heading() { return *m_heading; }
  QFormLayout& rows() { return *m_rows; }
  QPushButton* addButton(const std::string& title, const char* name);
  /// Adds the button that Return presses.
  QPushButton* addDefaultButton(const std::string& title, const char* name);
  /// Adds the button that dismisses the sheet.
  void addCancelButton(const Localize& localize);

 private:
  ElidedLabel* m_heading;
  QFormLayout* m_rows;
  QDialogButtonBox* m_buttons;
};

/// The sheet that copies the selected job under another name.
class DuplicateViewController final : public CopySheet {
  Q_OBJECT

 public:
  /// The context must outlive the sheet.
  DuplicateViewController(const CreationContext& context, QWidget& window);

 private:
  void save();
  void selectName();

  DuplicateController m_controller;
  QLineEdit* const m_nameValueTextField;
};

/// The sheet that imports job files, one after the other.
class ImportViewController final : public CopySheet {
  Q_OBJECT

 public:
  /// Imports the files that `importFiles` has set. The context must outlive the sheet.
  ImportViewController(const CreationContext& context, QWidget& window);

 private:
  void importFile();
  void skip();
  void updateInterface();

  ImportController m_controller;
  KindButtons* const m_kindButtons;
  QPushButton* const m_skipButton;
  QPushButton* m_importButton;
};

}  // namespace mirvel::ui
