#pragma once

#include <memory>
#include <string>

#include "core/base/Signal.h"
#include "core/runs/TestRun.h"
#include "ui/editor/EditorContext.h"
#include "ui/support/SheetViewController.h"

class QLabel;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;
class QVBoxLayout;

namespace mirvel {
class Launchd;
}

namespace mirvel::ui {

class SecondaryLabel;

/// A sheet that tests a job while it is open: shows the output as it comes, and how the test ended.
class TestSheet final : public SheetViewController {
 public:
  /// Starts the test, unless some input of the editor can't be saved; then the sheet names the field.
  TestSheet(const EditorContext& context, const std::shared_ptr<Launchd>& job, QWidget& window);

 protected:
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void makeContent();
  void makeVerdict(QVBoxLayout& layout);
  void makeButtons(QVBoxLayout& layout);
  void start();
  void stopOrRunAgain();
  void showState();
  void showGrade();
  void makeRoom();
  void showOutput();

  const EditorContext m_context;
  std::shared_ptr<Launchd> m_job;
  TestRun m_test;
  Subscription m_changed;
  Subscription m_outputChanged;
  std::string m_shown;    ///< the beginning of the output that is displayed
  int m_shownLength = 0;  ///< in characters of the document
  QPlainTextEdit* m_text = nullptr;
  QLabel* m_icon = nullptr;
  QLabel* m_verdict = nullptr;
  SecondaryLabel* m_details = nullptr;
  QProgressBar* m_progress = nullptr;
  QPushButton* m_runButton = nullptr;
};

}  // namespace mirvel::ui
