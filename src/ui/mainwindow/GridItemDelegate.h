#pragma once

#include <QStyledItemDelegate>

#include "ui/mainwindow/NameLines.h"

namespace mirvel::ui {

/// Paints an item of the grid: an icon with its badge above the name.
class GridItemDelegate final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  /// The cell size, which is the same for all items.
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  /// Shows the full name as a tool tip if it is elided in the view.
  bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                 const QModelIndex& index) override;
};

}  // namespace mirvel::ui
