#pragma once

#include <QPersistentModelIndex>
#include <QStyledItemDelegate>

namespace mirvel::ui {

/// Paints the rows of tree mode, with the count of a group on a button at the trailing edge.
class TreeRowDelegate final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  /// The rectangle of the group's button in a row at `option.rect`; empty for a job.
  static QRect button(const QStyleOptionViewItem& option, const QModelIndex& index);
  /// Sets the group whose button is drawn pressed.
  void setPressed(const QModelIndex& group) { m_pressed = group; }

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

 private:
  QPersistentModelIndex m_pressed;
};

}  // namespace mirvel::ui
