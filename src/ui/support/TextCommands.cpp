#include "ui/support/TextCommands.h"

#include <QMenu>

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

}  // namespace mirvel::ui
