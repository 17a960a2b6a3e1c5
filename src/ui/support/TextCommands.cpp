#include "ui/support/TextCommands.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTextEdit>

#include "core/mainwindow/MainMenuTexts.h"
#include "ui/support/IconLoader.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

std::vector<TextCommand> textCommands(const Localize& localize) {
  const auto texts = MainMenuTexts(localize);
  return {
      {texts.undo(), "undo", QKeySequence::Undo, "edit-undo"},
      {texts.redo(), "redo", QKeySequence::Redo, "edit-redo"},
      {texts.cut(), "cut", QKeySequence::Cut},
      {texts.copy(), "copy", QKeySequence::Copy, "edit-copy"},
      {texts.paste(), "paste", QKeySequence::Paste},
      {texts.selectAll(), "selectAll", QKeySequence::SelectAll},
  };
}

QAction* addTextCommand(QMenu& menu, const TextCommand& command) {
  QAction* action = menu.addAction(qt(command.title));
  if (command.symbol) action->setIcon(IconLoader::symbol(command.symbol));
  action->setShortcut(command.key);
  action->setShortcutContext(Qt::WidgetShortcut);
  if (command.key == QKeySequence::Redo) menu.addSeparator();
  return action;
}

namespace {

bool takesText(const QWidget& widget) {
  if (const auto* line = qobject_cast<const QLineEdit*>(&widget)) return !line->isReadOnly();
  if (const auto* text = qobject_cast<const QPlainTextEdit*>(&widget)) return !text->isReadOnly();
  if (const auto* text = qobject_cast<const QTextEdit*>(&widget)) return !text->isReadOnly();
  if (const auto* box = qobject_cast<const QAbstractSpinBox*>(&widget)) return !box->isReadOnly();
  const auto* choice = qobject_cast<const QComboBox*>(&widget);
  return choice && choice->isEditable();
}

bool isDeleting(const QKeyEvent& key) {
  if (key.key() == Qt::Key_Backspace || key.key() == Qt::Key_Delete) return true;
  return key.matches(QKeySequence::DeleteStartOfWord) || key.matches(QKeySequence::DeleteEndOfWord) ||
         key.matches(QKeySequence::DeleteEndOfLine) || key.matches(QKeySequence::DeleteCompleteLine);
}

}  // namespace

TextKeys::TextKeys(QObject* parent) : QObject(parent) {
  qApp->installEventFilter(this);
}

bool TextKeys::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::ShortcutOverride) return false;
  const auto* const widget = qobject_cast<const QWidget*>(watched);
  if (!widget || !takesText(*widget) || !isDeleting(static_cast<const QKeyEvent&>(*event))) return false;
  event->accept();  // is then delivered as a key press
  return true;
}

}  // namespace mirvel::ui
