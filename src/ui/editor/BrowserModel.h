#pragma once

#include <QAbstractListModel>
#include <QStyledItemDelegate>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace mirvel {
class Browser;
}

namespace mirvel::ui {

/// Presents the items of one column of a browser as an item model.
class BrowserModel final : public QAbstractListModel {
 public:
  /// Whether the browser changes the job or only shows it.
  enum class Access { ReadOnly, Editable };
  static constexpr int isContainerRole = Qt::UserRole;  ///< whether the item has a column of its own

  /// The browser outlives the model.
  BrowserModel(Browser& browser, std::size_t column, Access access, QObject* parent);

  /// Called after an item has been renamed.
  std::function<void()> renamed;

  /// Shows the present items of the column. The selection and an open editor stay with their items.
  void follow();

  int rowCount(const QModelIndex& parent = {}) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  /// The accessible description is the reason why the item can't be saved; null if it can.
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

 private:
  std::vector<std::uint64_t> presentIds() const;
  void removeAllBut(const std::vector<std::uint64_t>& ids);
  void moveHere(std::vector<std::uint64_t>::iterator position, std::uint64_t id);
  bool isShown(const QModelIndex& index) const;

  Browser& m_browser;
  const std::size_t m_column;
  const Access m_access;
  std::vector<std::uint64_t> m_ids;  ///< the items as the views know them
};

/// Draws items, with an arrow if they have a column of their own, and edits their names.
class BrowserDelegate final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

}  // namespace mirvel::ui
