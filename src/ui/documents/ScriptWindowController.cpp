#include "ui/documents/ScriptWindowController.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <algorithm>

#include "core/base/Const.h"
#include "core/documents/ScriptDocuments.h"
#include "core/session/Foundation.h"
#include "core/session/Shell.h"
#include "core/text/Bidirectional.h"
#include "ui/documents/EditScriptViewController.h"
#include "ui/documents/ScriptMenus.h"
#include "ui/scripts/ScriptText.h"
#include "ui/support/QtText.h"
#include "ui/support/SheetViewController.h"

namespace mirvel::ui {

ScriptWindowController::ScriptWindowController(const ScriptContext& context, ScriptDocument& document)
    : m_context(context), m_document(document) {
  m_content = new EditScriptViewController(context, document, this);
  setCentralWidget(m_content);
  m_menus = new ScriptMenus(context, document, *m_content, *this);
  connect(&m_content->text(), &ScriptText::textChanged, this, [this] { m_document.textChanged(); });
  const QList<int> size = numbersIn(m_context.foundation.defaults.text(Defaults::Key::scriptWindowFrame));
  const int character = fontMetrics().averageCharWidth();
  const QSize usual(110 * character, 40 * fontMetrics().lineSpacing());
  resize(size.size() == 2 ? QSize(std::max(size[0], 1), std::max(size[1], 1)) : usual);
}

ScriptWindowController::~ScriptWindowController() {
  leaveShell();
  saveSize();
}

void ScriptWindowController::saveSize() {
  if (isMaximized() || isFullScreen()) return;
  const std::string size = textOf({width(), height()});
  Defaults& defaults = m_context.foundation.defaults;
  if (defaults.text(Defaults::Key::scriptWindowFrame) == size) return;
  (void)defaults.setText(Defaults::Key::scriptWindowFrame, size);  // failures have been reported
}

std::string ScriptWindowController::text() const {
  return m_content->text().text();
}

void ScriptWindowController::setText(std::shared_ptr<const std::string> text, std::function<void()> done) {
  m_content->setText(std::move(text), std::move(done));
}

void ScriptWindowController::replaceText(const std::string& text) {
  m_content->text().replaceText(text);
}

bool ScriptWindowController::isModified() const {
  return m_content->text().isModified();
}

void ScriptWindowController::setModified(bool isModified) {
  m_content->text().setModified(isModified);
}

void ScriptWindowController::refresh() {
  // Qt replaces this placeholder by the mark of unsaved changes. In a title it is escaped by doubling.
  const QString mark = QStringLiteral("[*]");
  const Localize& localize = m_context.foundation.localize;
  const std::string title = bidirectionalString({m_document.name(), std::string(Const::AppName::mirvel)},
                                                Const::separator, localize.isRightToLeft());
  setWindowTitle(qt(title).replace(mark, mark + mark) + mark);
  setWindowModified(m_document.isEdited());
  setWindowFilePath(displayText(m_document.openedPath()));
  m_content->refresh();
  m_menus->validate();
}

void ScriptWindowController::bringToFront() {
  setWindowState(windowState() & ~Qt::WindowMinimized);
  show();
  raise();
  activateWindow();
  m_content->text().setFocus();
}

/// The documents decide, and destroy the window later.
void ScriptWindowController::closeEvent(QCloseEvent* event) {
  event->ignore();
  m_context.documents.close(m_document);
}

void ScriptWindowController::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() != QEvent::ActivationChange) return;
  if (isActiveWindow()) return enterShell();
  leaveShell();
  // The window that is active now may have been told so before.
  if (auto* const other = qobject_cast<ScriptWindowController*>(QApplication::activeWindow())) other->enterShell();
}

void ScriptWindowController::enterShell() {
  m_isActive = true;
  m_context.shell.saveScript = [this] { m_document.save(); };
}

void ScriptWindowController::leaveShell() {
  if (!m_isActive) return;
  m_isActive = false;
  m_context.shell.saveScript = nullptr;
}

}  // namespace mirvel::ui
