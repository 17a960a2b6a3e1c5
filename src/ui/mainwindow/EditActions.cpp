#include "ui/mainwindow/EditActions.h"

#include <QApplication>
#include <QMetaObject>

#include "ui/editor/DetailViewController.h"
#include "ui/editor/LaunchdEditViewController.h"
#include "ui/support/TextCommands.h"

namespace mirvel::ui {

namespace {

/// The method of `Editing` for a text command; null if the command doesn't concern undo.
using EditingCommand = void (Editing::*)();

EditingCommand editingCommand(QKeySequence::StandardKey key) {
  if (key == QKeySequence::Undo) return &Editing::undo;
  return key == QKeySequence::Redo ? &Editing::redo : nullptr;
}

bool takes(const QWidget* widget, const char* slot) {
  return widget && widget->metaObject()->indexOfMethod((QByteArray(slot) + "()").constData()) >= 0;
}

/// Whether undo in the focused widget is handled by the editor rather than by the widget itself.
bool editorUndoes(const DetailViewController& details) {
  const QWidget* const focus = QApplication::focusWidget();
  return focus && details.editor().undoesFor(*focus);
}

bool isEnabled(const TextCommand& command, Program& program, const DetailViewController& details) {
  if (!editingCommand(command.key) || !editorUndoes(details)) return takes(QApplication::focusWidget(), command.slot);
  return command.key == QKeySequence::Undo ? program.editing.canUndo() : program.editing.canRedo();
}

void perform(const TextCommand& command, Program& program, const DetailViewController& details) {
  const EditingCommand editing = editingCommand(command.key);
  if (editing && editorUndoes(details)) return (program.editing.*editing)();
  QWidget* const widget = QApplication::focusWidget();
  if (takes(widget, command.slot)) QMetaObject::invokeMethod(widget, command.slot);
}

}  // namespace

void addEditActions(QMenu& menu, Program& program, const DetailViewController& details) {
  for (const TextCommand& command : textCommands(program.foundation.localize)) {
    QAction* action = addTextCommand(menu, command);
    QObject::connect(action, &QAction::triggered, &menu, [&, command] { perform(command, program, details); });
    QObject::connect(&menu, &QMenu::aboutToShow, action,
                     [&, command, action] { action->setEnabled(isEnabled(command, program, details)); });
  }
}

}  // namespace mirvel::ui
