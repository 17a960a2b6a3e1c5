#pragma once

#include "core/editor/FileCheck.h"
#include "ui/editor/GeneralSection.h"

class QComboBox;
class QLineEdit;

namespace mirvel::ui {

class IconButton;
class RunTextField;

/// Who a job is, what it runs, for whom, and whether it is switched on: to be edited.
class GeneralEditSection final : public GeneralSection {
 public:
  GeneralEditSection(Program& program, IconLoader& icons);

  void updateIcon(const Launchd& launchd) override;

 private:
  void fill(const Launchd& launchd) override;
  void nameControls();
  void makeRunRow();
  void fillForPopUp();
  void enabled();
  void forChanged();
  void nameChanged();
  void runChanged();
  void checkRun();

  FileCheck m_fileCheck;
  IconButton* m_iconButton;
  QLineEdit* m_nameValueTextField;
  QComboBox* m_forPopUpButton;
  RunTextField* m_runValueTextField;
};

}  // namespace mirvel::ui
