#pragma once

#include <QPersistentModelIndex>
#include <QStyledItemDelegate>

namespace mirvel::ui {

/// Draws the rows of the tree: groups with their count on a button at the end.
class TreeRowDelegate final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  /// Where the button of a group is, for a row in this place; empty for a job.
  static QRect button(const QStyleOptionViewItem& option, const QModelIndex& index);
  /// Which group's button looks pressed.
  void setPressed(const QModelIndex& group) { m_pressed = group; }

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

 private:
  QPersistentModelIndex m_pressed;
};

}  // namespace mirvel::ui
