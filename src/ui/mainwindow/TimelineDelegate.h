#pragma once

#include <QFontMetricsF>
#include <QIcon>
#include <QPainter>
#include <QString>
#include <QStyledItemDelegate>
#include <array>
#include <cstddef>
#include <functional>

#include "core/mainwindow/TimelineCell.h"

namespace mirvel::ui {

/// Draws short texts with tabular digits: all digits take the same width, even in a font with proportional ones, so
/// that numbers line up in columns.
class TabularText {
 public:
  explicit TabularText(const QFont& font);

  qreal width(const QString& text) const;
  /// Draws one line, vertically centred, aligned to the left or right edge.
  void draw(QPainter& painter, const QRectF& rect, Qt::AlignmentFlag side, const QString& text) const;

 private:
  bool isPlain(const QString& text) const;
  qreal width(QStringView part) const;

  QFont m_font;
  QFontMetricsF m_metrics;
  qreal m_digitWidth = 0;
  bool m_areDigitsAlike = true;
};

/// Paints the rows of timeline mode: a column of times, the marks of past runs, the names, and at the end of the row
/// what else is known of a run.
class TimelineDelegate final : public QStyledItemDelegate {
 public:
  /// `sampleTimes` returns texts at least as wide as any time that is shown.
  TimelineDelegate(std::function<QStringList()> sampleTimes, QObject* parent);

  /// Updates the width of the time column. Must be called after a change of the font or of the texts.
  void measure(const QFont& font);

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  /// The place of the triangle that folds and unfolds a row, in a row of this rectangle and direction.
  QRect foldingRect(const QRect& row, Qt::LayoutDirection direction) const;

 private:
  void paintGroup(QPainter& painter, const QStyleOptionViewItem& option, bool isNow) const;
  void paintRun(QPainter& painter, const QStyleOptionViewItem& option, const TimelineCell& cell) const;
  void paintTriangle(QPainter& painter, const QStyleOptionViewItem& option, bool isOpen) const;
  void paintMark(QPainter& painter, const QStyleOptionViewItem& option, RunMark mark) const;
  int timeStart() const { return 2 * m_margin + m_square; }
  int markStart() const { return timeStart() + m_timeWidth + m_margin; }
  int nameStart() const { return markStart() + m_square + m_margin / 2; }

  std::function<QStringList()> m_sampleTimes;
  std::array<QIcon, static_cast<std::size_t>(RunMark::Missed) + 1> m_icons;  // by mark
  TabularText m_times;
  int m_timeWidth = 0;
  int m_margin = 0;
  int m_square = 0;  // the side of marks and triangles
};

}  // namespace mirvel::ui
