#pragma once

#include <QStyledItemDelegate>

#include "ui/mainwindow/NameLines.h"

namespace mirvel::ui {

/// Draws the items of the grid: an icon with its badge, and the name below.
class GridItemDelegate final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  /// The cell that holds any item.
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  /// Shows a name that is cut in full.
  bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                 const QModelIndex& index) override;
};

}  // namespace mirvel::ui
