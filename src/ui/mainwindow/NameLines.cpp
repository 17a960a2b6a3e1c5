#include "ui/mainwindow/NameLines.h"

#include <QTextBoundaryFinder>

namespace mirvel::ui {

namespace {

/// The length of the longest prefix that fits and ends at a grapheme boundary; at least one grapheme.
qsizetype fullLine(const QString& name, const QFontMetrics& metrics, int width) {
  QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, name);
  qsizetype end = characters.toNextBoundary();
  for (qsizetype next = characters.toNextBoundary(); next > 0; next = characters.toNextBoundary()) {
    if (metrics.horizontalAdvance(name.left(next)) > width) break;
    end = next;
  }
  return end;
}

/// The index after the last break character within the first `length` characters, or 0 if there is none.
qsizetype lastBreak(const QString& name, qsizetype length) {
  static const QString marks = QStringLiteral(" .-_/:@");
  for (qsizetype i = length; i > 0; --i) {
    if (marks.contains(name[i - 1])) return i;
  }
  return 0;
}

/// Whether the rest after the first line fits into the second without elision.
bool fits(const QString& name, qsizetype first, const QFontMetrics& metrics, int width) {
  return metrics.horizontalAdvance(name.mid(first).trimmed()) <= width;
}

}  // namespace

NameLines nameLines(const QString& name, const QFontMetrics& metrics, int width) {
  if (metrics.horizontalAdvance(name) <= width) return {{name}, false};
  const qsizetype full = fullLine(name, metrics, width);
  const qsizetype atMark = lastBreak(name, full);
  // A break near the start would leave the first line almost empty and elide the second.
  const bool isMarkGood =
      atMark > 0 && (fits(name, atMark, metrics, width) || (atMark > full / 2 && !fits(name, full, metrics, width)));
  const qsizetype first = isMarkGood ? atMark : full;
  const QString rest = name.mid(first).trimmed();
  const QString second = metrics.elidedText(rest, Qt::ElideMiddle, width);
  return {{name.left(first).trimmed(), second}, second != rest};
}

}  // namespace mirvel::ui
