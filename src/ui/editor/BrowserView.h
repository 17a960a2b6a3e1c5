#pragma once

#include <QWidget>
#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "core/editor/Browser.h"
#include "ui/editor/BrowserMenus.h"
#include "ui/editor/BrowserModel.h"
#include "ui/editor/EditorContext.h"

class QHBoxLayout;
class QKeyEvent;
class QScrollArea;

namespace mirvel::ui {

class BrowserColumn;
class BrowserList;
class BrowserPreviewView;

/// Shows a browser as columns side by side, which scroll horizontally, with the value of the selected item at the end.
/// By keyboard: the arrows walk through the tree, Return and F2 rename, Insert adds, Delete deletes; copy, paste and
/// duplicate have their usual keys.
class BrowserView final : public QWidget {
  Q_OBJECT

 public:
  /// The browser outlives the view.
  BrowserView(Browser& browser, const EditorContext& context, BrowserModel::Access access);
  ~BrowserView() override;

  /// Shows the present state of the browser. Columns, items and controls that still exist keep focus and scroll
  /// position.
  void follow();
  /// Selects the first item that can't be saved and gives it the focus.
  void showRefused();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  bool isEditable() const { return m_access == BrowserModel::Access::Editable; }
  std::optional<BrowserAction> actionOf(const QKeyEvent& press) const;
  bool isAllowed(BrowserAction action) const;
  void perform(BrowserAction action, std::size_t column);
  void makeColumn();
  void followOnce();
  void followColumns();
  void orderTabs();
  void fitHeight();
  void reveal();
  void revealNow();
  void scrollTo(const QWidget& part);

  BrowserList& list(std::size_t column) const;
  void select(std::size_t column, std::size_t row);
  void enterColumn(std::size_t column);
  void enterValue();
  void goForward(std::size_t column);
  void goBack(std::size_t column);
  void open(std::size_t column, std::size_t row);
  void editName(std::size_t column, std::size_t row);
  void endNaming(std::size_t column, QAbstractItemDelegate::EndEditHint hint);
  void add(std::size_t column);
  void addOffer(std::size_t column, std::size_t offer);
  void dropUnnamed(std::size_t column);
  void remove(std::size_t column, std::size_t row);
  void copy(std::size_t column, std::size_t row);
  void paste(std::size_t column);
  void duplicate(std::size_t column, std::size_t row);
  void setType(std::size_t column, std::size_t row, BrowserItem::Type type);
  void showMenu(std::size_t column, const QPoint& position);

  Browser& m_browser;
  const EditorContext m_context;
  const BrowserModel::Access m_access;
  QScrollArea* m_area;
  QHBoxLayout* m_row;
  BrowserPreviewView* m_preview;
  BrowserMenus m_menus;
  std::vector<BrowserColumn*> m_columns;
  bool m_isRevealing = false;
  bool m_isFollowing = false;
  bool m_hasChanged = false;  ///< since the last call of `followOnce`
};

}  // namespace mirvel::ui
