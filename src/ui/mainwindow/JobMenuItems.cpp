#include "ui/mainwindow/JobMenuItems.h"

#include <QAbstractScrollArea>
#include <QMenu>

#include "ui/support/Controls.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

/// Escapes ampersands, which would otherwise mark a shortcut key.
QString itemTitle(const std::string& text) {
  return literalTitle(qt(text));
}

void addTitle(QMenu& menu, const std::string& text) {
  QAction* title = menu.addAction(itemTitle(text));
  title->setEnabled(false);
  QFont font = menu.font();
  font.setBold(true);
  title->setFont(font);
}

}  // namespace

void addItems(QMenu& menu, const JobMenu& items) {
  for (const JobMenu::Item& item : items.items()) {
    switch (item.type) {
      case JobMenu::Item::Type::Title:
        addTitle(menu, item.title);
        break;
      case JobMenu::Item::Type::Separator:
        menu.addSeparator();
        break;
      case JobMenu::Item::Type::Action:
        QObject::connect(menu.addAction(itemTitle(item.title)), &QAction::triggered, &menu, item.action);
        break;
    }
  }
}

void popUp(const JobMenu& items, QAbstractScrollArea& view, const QPoint& position) {
  if (items.items().empty()) return;
  auto* menu = new QMenu(&view);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  addItems(*menu, items);
  menu->popup(view.viewport()->mapToGlobal(position));
}

}  // namespace mirvel::ui
