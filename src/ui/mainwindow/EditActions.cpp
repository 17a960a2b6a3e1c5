#include "ui/mainwindow/EditActions.h"

#include <QApplication>
#include <QMetaObject>

#include "ui/editor/DetailViewController.h"
#include "ui/editor/LaunchdEditViewController.h"
#include "ui/support/IconLoader.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

struct EditAction {
  std::string title;
  const char* slot;  ///< that a text widget has
  QKeySequence::StandardKey key;
  const char* symbol;
  void (Editing::*editing)() = nullptr;  ///< what the editor does for its fields
};

bool takes(const QWidget* widget, const char* slot) {
  return widget && widget->metaObject()->indexOfMethod((QByteArray(slot) + "()").constData()) >= 0;
}

/// The editor, if it undoes what is done in the widget with the focus.
bool editorUndoes(const DetailViewController& details) {
  const QWidget* const focus = QApplication::focusWidget();
  return focus && details.editor().undoesFor(*focus);
}

bool isEnabled(const EditAction& row, Program& program, const DetailViewController& details) {
  if (!row.editing || !editorUndoes(details)) return takes(QApplication::focusWidget(), row.slot);
  return row.key == QKeySequence::Undo ? program.editing.canUndo() : program.editing.canRedo();
}

void perform(const EditAction& row, Program& program, const DetailViewController& details) {
  if (row.editing && editorUndoes(details)) return (program.editing.*row.editing)();
  QWidget* const widget = QApplication::focusWidget();
  if (takes(widget, row.slot)) QMetaObject::invokeMethod(widget, row.slot);
}

}  // namespace

void addEditActions(QMenu& menu, Program& program, const DetailViewController& details) {
  const auto texts = program.foundation.localize.mainMenu();
  const EditAction table[] = {
      {texts.undo(), "undo", QKeySequence::Undo, "edit-undo", &Editing::undo},
      {texts.redo(), "redo", QKeySequence::Redo, "edit-redo", &Editing::redo},
      {texts.cut(), "cut", QKeySequence::Cut, nullptr},
      {texts.copy(), "copy", QKeySequence::Copy, "edit-copy"},
      {texts.paste(), "paste", QKeySequence::Paste, nullptr},
      {texts.selectAll(), "selectAll", QKeySequence::SelectAll, nullptr},
  };
  for (const EditAction& row : table) {
    QAction* action = menu.addAction(qt(row.title));
    if (row.symbol) action->setIcon(IconLoader::symbol(row.symbol));
    // Text widgets take these keys by themselves: here they are only shown.
    action->setShortcut(row.key);
    action->setShortcutContext(Qt::WidgetShortcut);
    QObject::connect(action, &QAction::triggered, &menu, [&, row] { perform(row, program, details); });
    QObject::connect(&menu, &QMenu::aboutToShow, action,
                     [&, row, action] { action->setEnabled(isEnabled(row, program, details)); });
    if (row.key == QKeySequence::Redo) menu.addSeparator();
  }
}

}  // namespace mirvel::ui
