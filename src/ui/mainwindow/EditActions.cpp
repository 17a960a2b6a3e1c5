#include "ui/mainwindow/EditActions.h"

#include <QApplication>
#include <QMetaObject>

#include "ui/support/IconLoader.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

struct EditAction {
  std::string title;
  const char* slot;  ///< that a text widget has
  QKeySequence::StandardKey key;
  const char* symbol;
};

bool takes(const QWidget* widget, const char* slot) {
  return widget && widget->metaObject()->indexOfMethod((QByteArray(slot) + "()").constData()) >= 0;
}

}  // namespace

void addEditActions(QMenu& menu, const Localize& localize) {
  const auto texts = localize.mainMenu();
  const EditAction table[] = {
      {texts.undo(), "undo", QKeySequence::Undo, "edit-undo"},
      {texts.redo(), "redo", QKeySequence::Redo, "edit-redo"},
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
    QObject::connect(action, &QAction::triggered, &menu, [slot = row.slot] {
      QWidget* const widget = QApplication::focusWidget();
      if (takes(widget, slot)) QMetaObject::invokeMethod(widget, slot);
    });
    QObject::connect(&menu, &QMenu::aboutToShow, action,
                     [action, slot = row.slot] { action->setEnabled(takes(QApplication::focusWidget(), slot)); });
    if (row.key == QKeySequence::Redo) menu.addSeparator();
  }
}

}  // namespace mirvel::ui
