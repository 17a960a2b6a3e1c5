#pragma once

#include <QPoint>
#include <cstddef>
#include <functional>
#include <string>

#include "core/editor/Browser.h"
#include "ui/editor/BrowserModel.h"
#include "ui/editor/EditorContext.h"

class QMenu;
class QWidget;

namespace mirvel::ui {

/// What can be done in a column of a browser by key or menu, mostly with its selected item.
enum class BrowserAction { Add, Remove, Rename, Open, EditValue, Copy, Paste, Duplicate, ShowMenu, Forward, Back };

/// The menus of a browser. They delete themselves when they are closed.
class BrowserMenus {
 public:
  /// The browser and the owner, which becomes the parent of the menus, outlive this object.
  BrowserMenus(const Browser& browser, const EditorContext& context, BrowserModel::Access access, QWidget& owner)
      : m_browser(browser), m_context(context), m_access(access), m_owner(owner) {}

  std::function<void(BrowserAction action, std::size_t column)> chosen;
  std::function<void(std::size_t column, std::size_t offer)> offerChosen;
  /// Not called if the item for which the menu was opened has moved or gone since.
  std::function<void(std::size_t column, std::size_t row, BrowserItem::Type type)> typeChosen;

  /// Shows what can be added, at a global position.
  void showOffers(std::size_t column, const QPoint& position) const;
  /// Shows the menu for the selected item, or for the column if there is none.
  void showForSelection(std::size_t column, const QPoint& position, bool hasValue) const;

 private:
  QMenu* makeMenu() const;
  void fillOffers(QMenu& menu, std::size_t column) const;
  void addAction(QMenu& menu, const std::string& title, BrowserAction action, std::size_t column, bool isEnabled) const;
  void addTypes(QMenu& menu, std::size_t column, std::size_t row) const;

  const Browser& m_browser;
  const EditorContext m_context;
  const BrowserModel::Access m_access;
  QWidget& m_owner;
};

}  // namespace mirvel::ui
