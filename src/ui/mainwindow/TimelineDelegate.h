#pragma once

#include <QFontMetricsF>
#include <QPainter>
#include <QString>
#include <QStyledItemDelegate>
#include <functional>

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

/// Paints the rows of timeline mode: a column of times, followed by the names.
class TimelineDelegate final : public QStyledItemDelegate {
 public:
  /// `sampleTimes` returns texts at least as wide as any time that is shown.
  TimelineDelegate(std::function<QStringList()> sampleTimes, QObject* parent);

  /// Updates the width of the time column. Must be called after a change of the font or of the texts.
  void measure(const QFont& font);

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 private:
  void paintGroup(QPainter& painter, const QStyleOptionViewItem& option) const;
  void paintRun(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;

  std::function<QStringList()> m_sampleTimes;
  TabularText m_times;
  int m_timeWidth = 0;
};

}  // namespace mirvel::ui
