#include "ui/editor/BrowserMenus.h"

#include <QActionGroup>
#include <QMenu>

#include "core/editor/BrowserTexts.h"
#include "core/editor/EditorTexts.h"
#include "core/session/Foundation.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

QMenu* BrowserMenus::makeMenu() const {
  auto* const menu = new QMenu(&m_owner);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->setToolTipsVisible(true);
  return menu;
}

void BrowserMenus::showOffers(std::size_t column, const QPoint& position) const {
  QMenu* const menu = makeMenu();
  fillOffers(*menu, column);
  menu->popup(position);
}

void BrowserMenus::fillOffers(QMenu& menu, std::size_t column) const {
  const auto offers = m_browser.offers(column);
  for (std::size_t i = 0; i < offers.size(); ++i) {
    QAction* const action = menu.addAction(qt(offers[i].title));
    action->setToolTip(helpText(offers[i].help));
    action->setEnabled(offers[i].isEnabled);
    QObject::connect(action, &QAction::triggered, &m_owner, [this, column, i] { offerChosen(column, i); });
  }
}

void BrowserMenus::addAction(QMenu& menu, const std::string& title, BrowserAction action, std::size_t column,
                             bool isEnabled) const {
  QAction* const item = menu.addAction(qt(title));
  item->setEnabled(isEnabled);
  QObject::connect(item, &QAction::triggered, &m_owner, [this, action, column] { chosen(action, column); });
}

void BrowserMenus::addTypes(QMenu& menu, std::size_t column, std::size_t row) const {
  const auto types = m_browser.types(column, row);
  const std::uint64_t id = m_browser.items(column)[row].id;
  auto* const group = new QActionGroup(&menu);
  for (const Browser::TypeChoice& choice : types) {
    QAction* const action = menu.addAction(qt(choice.title));
    action->setCheckable(true);
    action->setChecked(choice.isCurrent);
    action->setEnabled(choice.isEnabled);
    group->addAction(action);
    QObject::connect(action, &QAction::triggered, &m_owner, [this, column, row, id, type = choice.type] {
      const auto& items = m_browser.items(column);
      if (row < items.size() && items[row].id == id) typeChosen(column, row, type);
    });
  }
  menu.menuAction()->setEnabled(types.size() > 1);
}

void BrowserMenus::showForSelection(std::size_t column, const QPoint& position, bool hasValue) const {
  const auto row = m_browser.selected(column);
  const bool isEditable = m_access == BrowserModel::Access::Editable;
  if (!isEditable && !row) return;
  const BrowserTexts texts(m_context.foundation.localize);
  QMenu* const menu = makeMenu();
  if (isEditable) {
    fillOffers(*menu->addMenu(qt(EditorTexts(m_context.foundation.localize).add())), column);
    addAction(*menu, texts.rename(), BrowserAction::Rename, column, row && m_browser.isNameEditable(column, *row));
    addAction(*menu, texts.editValue(), BrowserAction::EditValue, column, row && hasValue);
    QMenu* const types = menu->addMenu(qt(texts.typeMenu()));
    row ? addTypes(*types, column, *row) : types->menuAction()->setEnabled(false);
    menu->addSeparator();
  }
  addAction(*menu, texts.copy(), BrowserAction::Copy, column, row && m_browser.copy(column, *row));
  if (isEditable) {
    addAction(*menu, texts.paste(), BrowserAction::Paste, column, true);
    addAction(*menu, texts.duplicate(), BrowserAction::Duplicate, column, row && m_browser.canDuplicate(column, *row));
    menu->addSeparator();
    addAction(*menu, m_context.foundation.localize.delete_(), BrowserAction::Remove, column, row.has_value());
  }
  menu->popup(position);
}

}  // namespace mirvel::ui
