#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <string>

#include "core/base/Signal.h"
#include "ui/documents/ScriptContext.h"

class QLabel;
class QPushButton;

namespace mirvel {
class Job;
class ScriptDocument;
}  // namespace mirvel

namespace mirvel::ui {

class FindBar;
class ScriptBar;
class ScriptStatusLine;
class ScriptText;

/// The content of a script's window: what runs the script, notices, the text, the bar for finding, and a status line.
class EditScriptViewController final : public QWidget {
  Q_OBJECT
 public:
  /// `context` and `document` must outlive the widget.
  EditScriptViewController(const ScriptContext& context, ScriptDocument& document, QWidget* parent);

  ScriptText& text() { return *m_text; }
  const ScriptText& text() const { return *m_text; }
  FindBar& findBar() { return *m_findBar; }

  /// Fills the text; see `ScriptView::setText`.
  void setText(std::shared_ptr<const std::string> text, std::function<void()> done);
  /// Shows the present state of the document.
  void refresh();
  void checkSyntax();
  /// Runs a job, after a question if the script isn't saved.
  void run(const std::shared_ptr<Job>& job);

 private:
  void makeNotice();
  void refreshNotice();
  void applyWrap();

  const ScriptContext& m_context;
  ScriptDocument& m_document;
  ScriptBar* m_bar = nullptr;
  QWidget* m_notice = nullptr;
  QLabel* m_noticeText = nullptr;
  QPushButton* m_noticeButton = nullptr;
  ScriptText* m_text = nullptr;
  FindBar* m_findBar = nullptr;
  ScriptStatusLine* m_status = nullptr;
  Subscription m_settingsChanged;
};

}  // namespace mirvel::ui
