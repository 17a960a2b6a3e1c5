#pragma once

#include <string>

#include "core/editor/GeneralRules.h"
#include "core/editor/RunField.h"
#include "ui/editor/FieldForm.h"

class QCheckBox;
class QComboBox;
class QLabel;

namespace mirvel::ui {

class IconButton;
class RunTextField;
class SectionGrid;
class ValueText;

/// The read-only view of what a job is, what it runs and for whom, for jobs of any kind.
class GeneralDisplaySection final : public Section {
 public:
  explicit GeneralDisplaySection(const EditorContext& context);

  /// Shows a job of any kind. For launchd jobs, use `configure`.
  void show(const GeneralRules::Display& display);
  void updateIcon(const Launchd& launchd) override { fill(launchd); }

 private:
  void fill(const Launchd& launchd) override;
  ValueText* makeName() const;

  QLabel* m_icon;
  ValueText* m_nameValueTextField;
  ValueText* m_forValueTextField;
  ValueText* m_runValueTextField;
  QLabel* m_runLabel;
  QCheckBox* m_enabledButton;
};

/// The editor of these properties, for a launchd job.
class GeneralEditSection final : public Section {
 public:
  explicit GeneralEditSection(const EditorContext& context);
  ~GeneralEditSection() override;

  void updateIcon(const Launchd& launchd) override;

 private:
  void fill(const Launchd& launchd) override;
  void makeForPopUp(SectionGrid& grid);
  void makeRunRow(SectionGrid& grid);
  void forChanged();
  void runChanged();
  void enableForItems();
  void checkRun();

  FieldForm m_form;
  FileCheck m_fileCheck;
  Subscription m_settingChanged;
  IconButton* m_iconButton;
  QComboBox* m_forPopUpButton;
  RunTextField* m_runValueTextField;
  std::string m_command;  ///< the repaired form of the text in the field
};

}  // namespace mirvel::ui
