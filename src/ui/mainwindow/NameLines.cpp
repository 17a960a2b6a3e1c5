#include "ui/mainwindow/NameLines.h"

#include <QTextBoundaryFinder>

namespace mirvel::ui {

namespace {

/// The longest beginning that fits and ends at a whole character; at least one character.
qsizetype fullLine(const QString& name, const QFontMetrics& metrics, int width) {
  QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, name);
  qsizetype end = characters.toNextBoundary();
  for (qsizetype next = characters.toNextBoundary(); next > 0; next = characters.toNextBoundary()) {
    if (metrics.horizontalAdvance(name.left(next)) > width) break;
    end = next;
  }
  return end;
}

/// Behind the last mark within the first characters at which a name may be broken; 0: there is none.
qsizetype lastBreak(const QString& name, qsizetype length) {
  static const QString marks = QStringLiteral(" .-_/:@");
  for (qsizetype i = length; i > 0; --i) {
    if (marks.contains(name[i - 1])) return i;
  }
  return 0;
}

/// Whether two lines, the first of this length, show all of the name.
bool fits(const QString& name, qsizetype first, const QFontMetrics& metrics, int width) {
  return metrics.horizontalAdvance(name.mid(first).trimmed()) <= width;
}

}  // namespace

NameLines nameLines(const QString& name, const QFontMetrics& metrics, int width) {
  if (metrics.horizontalAdvance(name) <= width) return {{name}, false};
  const qsizetype full = fullLine(name, metrics, width);
  const qsizetype atMark = lastBreak(name, full);
  // A mark near the start would leave the first line all but empty and the second one cut.
  const bool isMarkGood =
      atMark > 0 && (fits(name, atMark, metrics, width) || (atMark > full / 2 && !fits(name, full, metrics, width)));
  const qsizetype first = isMarkGood ? atMark : full;
  const QString rest = name.mid(first).trimmed();
  const QString second = metrics.elidedText(rest, Qt::ElideMiddle, width);
  return {{name.left(first).trimmed(), second}, second != rest};
}

}  // namespace mirvel::ui
