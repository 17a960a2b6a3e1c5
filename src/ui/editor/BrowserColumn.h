#pragma once

#include <QListView>
#include <cstddef>
#include <functional>
#include <optional>

#include "ui/editor/BrowserModel.h"

class QToolButton;

namespace mirvel {
class Localize;
}

namespace mirvel::ui {

class ElidedLabel;

/// The list of a column.
class BrowserList final : public QListView {
 public:
  /// Called when the editor of a name has been closed.
  std::function<void(QAbstractItemDelegate::EndEditHint hint)> named;
  /// Called for a contextual menu, with a global position.
  std::function<void(const QPoint& position)> menuWanted;

  /// Sets a text that is shown while there are no items.
  void setHint(const QString& hint);
  /// The position of a contextual menu that is opened by key: below the current row, in global coordinates.
  QPoint menuPosition() const;

 protected:
  void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QString m_hint;
};

/// One column of a browser: the list of its items, below a header with the name of what contains them and, if the
/// browser is editable, buttons to add and delete items.
class BrowserColumn final : public QWidget {
 public:
  /// The references outlive the column.
  BrowserColumn(Browser& browser, std::size_t column, BrowserModel::Access access, const Localize& localize);
  /// Closes an open editor before its callers are gone.
  ~BrowserColumn() override;

  std::function<void()> addWanted;
  std::function<void()> deleteWanted;
  /// Called when the user selects a row.
  std::function<void(std::size_t row)> picked;

  BrowserList& list() const { return *m_list; }
  BrowserModel& model() const { return *m_model; }
  /// The position for the menu of what can be added, in global coordinates.
  QPoint menuPosition() const;
  /// The focusable parts in reading order.
  QWidgetList tabStops() const;
  /// Shows the present items and the selection.
  void follow();
  int headerHeight() const;
  /// The height of a list with so many rows.
  int listHeight(int rows) const;
  QSize minimumSizeHint() const override;

 private:
  int widthOfNames() const;
  void makeHeader(const Localize& localize);
  void prepareList();
  void select(std::optional<std::size_t> row);

  Browser& m_browser;
  const std::size_t m_column;
  BrowserModel* m_model;
  BrowserList* m_list;
  QWidget* m_header = nullptr;  ///< null if the browser is read-only, as are the following
  ElidedLabel* m_title = nullptr;
  QToolButton* m_addButton = nullptr;
  QToolButton* m_deleteButton = nullptr;
  bool m_isFollowing = false;
};

}  // namespace mirvel::ui
