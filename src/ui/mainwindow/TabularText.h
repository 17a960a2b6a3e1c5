#pragma once

#include <QFontMetricsF>
#include <QPainter>
#include <QString>

namespace mirvel::ui {

/// Short texts with digits that are all of one width, so that those below each other stand in columns, whatever the
/// font's own digits are.
class TabularText {
 public:
  explicit TabularText(const QFont& font);

  qreal width(const QString& text) const;
  /// In one line in the middle of the height, at the left or right end.
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
