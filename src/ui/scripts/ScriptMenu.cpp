#include "ui/scripts/ScriptMenu.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>

#include "core/locale/Localize.h"
#include "ui/scripts/ScriptEditor.h"
#include "ui/support/QtText.h"
#include "ui/support/TextCommands.h"

namespace mirvel::ui {

namespace {

bool canPaste() {
  const QMimeData* const content = QGuiApplication::clipboard()->mimeData();
  return content && content->hasText();
}

bool isEnabled(const ScriptEditor& editor, QKeySequence::StandardKey key) {
  switch (key) {
    case QKeySequence::Undo:
      return editor.canUndo();
    case QKeySequence::Redo:
      return editor.canRedo();
    case QKeySequence::Cut:
    case QKeySequence::Copy:
      return editor.hasSelection();
    case QKeySequence::Paste:
      return canPaste();
    default:
      return true;
  }
}

void addDelete(QMenu& menu, ScriptEditor& editor, const Localize& localize) {
  QAction* action = menu.addAction(qt(localize.delete_()));
  action->setEnabled(editor.hasSelection());
  QObject::connect(action, &QAction::triggered, &menu, [&editor] { editor.deleteSelection(); });
  menu.addSeparator();
}

}  // namespace

void popUpScriptMenu(ScriptEditor& editor, const Localize& localize, const QPoint& point) {
  QWidget* const widget = &editor.widget();
  auto* menu = new QMenu(widget);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->setLayoutDirection(QGuiApplication::layoutDirection());  // it would inherit the direction of the text
  for (const TextCommand& command : textCommands(localize)) {
    if (command.key == QKeySequence::SelectAll) addDelete(*menu, editor, localize);
    QAction* action = addTextCommand(*menu, command);
    action->setEnabled(isEnabled(editor, command.key));
    QObject::connect(action, &QAction::triggered, widget,
                     [widget, slot = command.slot] { QMetaObject::invokeMethod(widget, slot); });
  }
  menu->popup(point);
}

}  // namespace mirvel::ui
