#pragma once

#include <QPixmap>
#include <optional>

#include "core/editor/FileCheck.h"
#include "core/editor/GeneralRules.h"
#include "ui/editor/FieldForm.h"

class QComboBox;

namespace mirvel::ui {

class IconButton;
class RunTextField;
class SectionGrid;

/// What a job is, what it runs and for whom, for jobs of any kind.
class GeneralDisplaySection final : public Section {
 public:
  explicit GeneralDisplaySection(const EditorContext& context);

  void show(const GeneralRules::Display& display);
  /// Even if the new icon has the name of the old one.
  void updateIcon(const Launchd& launchd) override;

 private:
  void fill(const Launchd& launchd) override;

  SectionGrid* m_grid;
  std::optional<GeneralRules::Display> m_shown;
};

/// The same to be edited, for a launchd job.
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
  void checkRun();

  FieldForm m_form;
  FileCheck m_fileCheck;
  IconButton* m_iconButton;
  QComboBox* m_forPopUpButton;
  RunTextField* m_runValueTextField;
  std::string m_command;  ///< what the shown text is in the record, repaired
};

}  // namespace mirvel::ui
