#pragma once

#include <QFontMetricsF>
#include <QPainter>
#include <QString>

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

}  // namespace mirvel::ui
