#pragma once

#include <QWidget>
#include <memory>

#include "core/base/Signal.h"
#include "core/catalogue/Job.h"
#include "core/documents/ScriptJobs.h"
#include "ui/documents/ScriptContext.h"

class QCheckBox;
class QLabel;
class QMenu;
class QToolButton;

namespace mirvel {
class ScriptDocument;
}

namespace mirvel::ui {

/// Names the jobs that run a script and as whom, and has buttons to run them, to check the syntax, and to make the file
/// executable.
class ScriptBar final : public QWidget {
  Q_OBJECT
 public:
  /// `context` and `document` must outlive the widget.
  ScriptBar(const ScriptContext& context, ScriptDocument& document, QWidget* parent);

  /// Shows the present state of the document.
  void refresh();

 signals:
  void runs(const std::shared_ptr<Job>& job);
  void checks();

 private:
  void updateJobs();
  void refreshJobs();
  void fillMenu();

  const ScriptContext& m_context;
  ScriptDocument& m_document;
  JobsOfScript m_jobs;
  QLabel* m_names = nullptr;
  QToolButton* m_run = nullptr;
  QToolButton* m_check = nullptr;
  QCheckBox* m_executable = nullptr;
  QMenu* m_menu = nullptr;
  Subscription m_linksRead, m_jobsUpdated, m_runsChanged;
};

}  // namespace mirvel::ui
