#include "ui/mainwindow/CommandActions.h"

#include <QMainWindow>
#include <QMenu>

#include "core/mainwindow/MenuController.h"
#include "ui/support/IconLoader.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

QAction& CommandActions::add(QMenu& menu, Command command, const std::string& title, const char* symbol,
                             const QList<QKeySequence>& shortcuts) {
  auto* action = new QAction(qt(title), &m_window);
  if (symbol) action->setIcon(IconLoader::symbol(symbol));
  action->setShortcuts(shortcuts);
  QObject::connect(action, &QAction::triggered, &m_window, [this, command] {
    m_menus.perform(command);
    validate();
  });
  m_actions[command] = action;
  menu.addAction(action);
  return *action;
}

void CommandActions::validate() {
  const CommandContext context = m_menus.context();
  for (const auto& [command, action] : m_actions) {
    const bool isOffered = m_menus.isOffered(command);
    action->setVisible(isOffered && isShown(command, context));
    action->setEnabled(isOffered && isEnabled(command, context));
    action->setToolTip(qt(whyDisabled(command, context)));
    const auto isTicked = isOn(command, context);
    action->setCheckable(isTicked.has_value());
    action->setChecked(isTicked.value_or(false));
  }
}

}  // namespace mirvel::ui
