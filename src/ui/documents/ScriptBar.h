#pragma once

#include <QWidget>
#include <memory>

#include "core/catalogue/Job.h"
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

  void refresh();

 signals:
  void runs(const std::shared_ptr<Job>& job);
  void checks();

 private:
  void fillMenu();
  Jobs jobs() const;

  const ScriptContext& m_context;
  ScriptDocument& m_document;
  QLabel* m_jobs = nullptr;
  QToolButton* m_run = nullptr;
  QToolButton* m_check = nullptr;
  QCheckBox* m_executable = nullptr;
  QMenu* m_menu = nullptr;
};

}  // namespace mirvel::ui
