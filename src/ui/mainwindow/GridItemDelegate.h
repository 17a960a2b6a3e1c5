#pragma once

#include <QFontMetrics>
#include <QStringList>
#include <QStyledItemDelegate>

namespace mirvel::ui {

/// A name as shown below an icon.
struct NameLines {
  QStringList lines;      ///< one or two
  bool isElided = false;  ///< part of the name isn't shown
};

/// Breaks a name into at most two lines of `width` pixels: after a space or one of `.-_/:@`, or where the first line is
/// full. The second line is elided in the middle, because names differ at their beginning and end.
NameLines nameLines(const QString& name, const QFontMetrics& metrics, int width);

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
