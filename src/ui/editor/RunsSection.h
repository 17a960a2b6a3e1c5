#pragma once

#include "core/base/Signal.h"
#include "core/mainwindow/Command.h"
#include "core/runs/RunDetails.h"
#include "ui/editor/Section.h"

class QLabel;
class QPushButton;

namespace mirvel::ui {

class ElidedLabel;
class ValueText;

/// What is known of the runs of a job: whether it runs, how its last run ended and what a failed one has printed last.
/// Buttons start and stop the job, and show its log.
class RunsSection final : public Section {
 public:
  explicit RunsSection(const EditorContext& context);

 private:
  void fill(const Launchd& launchd) override;
  void makeButtons(QWidget& place);
  void showButtons();
  void showOutput();

  QLabel* m_icon;
  ValueText* m_lines;
  ValueText* m_output;
  QPushButton* m_run;
  QPushButton* m_disable;
  QPushButton* m_log;
  Subscription m_outputChanged;
};

/// One line about the runs of the selected job, for the editor. Hidden while nothing is known.
class RunsLine final : public QWidget {
 public:
  explicit RunsLine(QWidget* parent = nullptr);

  void update(const EditorContext& context);

 private:
  QLabel* m_icon;
  ElidedLabel* m_text;
};

}  // namespace mirvel::ui
