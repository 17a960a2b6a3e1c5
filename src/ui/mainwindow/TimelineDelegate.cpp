#include "ui/mainwindow/TimelineDelegate.h"

#include <QApplication>
#include <QStyle>
#include <algorithm>
#include <cmath>
#include <vector>

#include "ui/mainwindow/TimelineModel.h"
#include "ui/support/OwnIcons.h"
#include "ui/support/QtText.h"

namespace mirvel::ui {

namespace {

bool isDigit(QChar character) {
  return character >= u'0' && character <= u'9';
}

/// Splits a text into single digits and the stretches between them.
std::vector<QStringView> partsOf(const QString& text) {
  std::vector<QStringView> parts;
  for (qsizetype begin = 0, end = 0; begin < text.size(); begin = end) {
    end = begin + 1;
    while (!isDigit(text[begin]) && end < text.size() && !isDigit(text[end])) ++end;
    parts.push_back(QStringView(text).mid(begin, end - begin));
  }
  return parts;
}

}  // namespace

TabularText::TabularText(const QFont& font) : m_font(font), m_metrics(font) {
  const qreal first = m_metrics.horizontalAdvance(u'0');
  for (char16_t digit = u'0'; digit <= u'9'; ++digit) {
    const qreal width = m_metrics.horizontalAdvance(QChar(digit));
    m_areDigitsAlike = m_areDigitsAlike && qFuzzyCompare(width, first);
    m_digitWidth = std::max(m_digitWidth, width);
  }
}

/// Whether the text can be drawn in one piece: the digits have equal widths already, or it contains right-to-left
/// characters, whose order drawing in pieces would break.
bool TabularText::isPlain(const QString& text) const {
  const auto isOfTheRight = [](QChar character) {
    return character.direction() == QChar::DirR || character.direction() == QChar::DirAL;
  };
  return m_areDigitsAlike || std::any_of(text.begin(), text.end(), isOfTheRight);
}

qreal TabularText::width(QStringView part) const {
  return isDigit(part.front()) ? m_digitWidth : m_metrics.horizontalAdvance(part.toString());
}

qreal TabularText::width(const QString& text) const {
  if (isPlain(text)) return m_metrics.horizontalAdvance(text);
  qreal sum = 0;
  for (const QStringView part : partsOf(text)) sum += width(part);
  return sum;
}

void TabularText::draw(QPainter& painter, const QRectF& rect, Qt::AlignmentFlag side, const QString& text) const {
  painter.setFont(m_font);
  if (isPlain(text)) {
    painter.drawText(rect, static_cast<int>(Qt::AlignVCenter | Qt::AlignAbsolute | side), text);
    return;
  }
  qreal left = side == Qt::AlignLeft ? rect.left() : rect.right() - width(text);
  for (const QStringView part : partsOf(text)) {
    const QRectF cell(left, rect.top(), width(part), rect.height());
    const auto place = isDigit(part.front()) ? Qt::AlignHCenter : Qt::AlignLeft;
    painter.drawText(cell, static_cast<int>(Qt::AlignVCenter | Qt::TextDontClip | place), part.toString());
    left = cell.right();
  }
}

namespace {

QStyle& styleOf(const QStyleOptionViewItem& option) {
  return option.widget ? *option.widget->style() : *QApplication::style();
}

QPalette::ColorGroup groupOf(const QStyleOptionViewItem& option) {
  return option.state.testFlag(QStyle::State_Active) ? QPalette::Normal : QPalette::Inactive;
}

/// A part of the row, `from` pixels from its leading edge.
QRect leading(const QStyleOptionViewItem& option, int from, int width) {
  const QRect rect(option.rect.left() + from, option.rect.top(), width, option.rect.height());
  return QStyle::visualRect(option.direction, option.rect, rect);
}

/// Draws one line, aligned to the leading edge and elided at the end of the text.
void drawLine(QPainter& painter, const QStyleOptionViewItem& option, const QRect& rect, const QString& text) {
  const auto side = option.direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft;
  painter.setLayoutDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
  const QString shown = painter.fontMetrics().elidedText(text, Qt::ElideRight, rect.width());
  painter.drawText(rect, static_cast<int>(side | Qt::AlignAbsolute | Qt::AlignVCenter | Qt::TextSingleLine), shown);
}

QIcon iconOf(RunMark mark) {
  switch (mark) {
    case RunMark::None:
      break;
    case RunMark::Running:
      return OwnIcons::color(QStringLiteral("mirvel-running"));
    case RunMark::Succeeded:
      return OwnIcons::symbolic(QStringLiteral("mirvel-run-succeeded"));
    case RunMark::Failed:
      return OwnIcons::color(QStringLiteral("mirvel-failed"));
    case RunMark::Stopped:
      return OwnIcons::symbolic(QStringLiteral("mirvel-run-stopped"));
    case RunMark::Unknown:
      return OwnIcons::symbolic(QStringLiteral("mirvel-run-unknown"));
    case RunMark::Missed:
      return OwnIcons::symbolic(QStringLiteral("mirvel-run-missed"));
  }
  return {};
}

/// Both texts share the row: the detail gets what the name doesn't need, but at least half of the row if it needs it.
int widthOfDetail(const QFontMetrics& metrics, int available, const QString& name, const QString& detail) {
  if (detail.isEmpty() || available <= 0) return 0;
  const int wanted = metrics.horizontalAdvance(detail) + 1;
  return std::min(wanted, std::max(available / 2, available - metrics.horizontalAdvance(name) - 1));
}

/// The detail that is drawn beside a name. Where a name doesn't fit otherwise, nothing is said of a success but its
/// mark.
QString detailFor(const QFontMetrics& metrics, int available, const QString& name, const TimelineCell& cell) {
  const int room = available - metrics.horizontalAdvance(name);
  const auto fits = [&](const std::string& text) { return metrics.horizontalAdvance(qt(text)) < room; };
  if (cell.shortDetail.empty() || fits(cell.detail)) return qt(cell.detail);
  return cell.mark != RunMark::Succeeded || fits(cell.shortDetail) ? qt(cell.shortDetail) : QString();
}

}  // namespace

TimelineDelegate::TimelineDelegate(std::function<QStringList()> sampleTimes, QObject* parent)
    : QStyledItemDelegate(parent), m_sampleTimes(std::move(sampleTimes)), m_times(QFont()) {
  for (std::size_t mark = 0; mark < m_icons.size(); ++mark) m_icons.at(mark) = iconOf(static_cast<RunMark>(mark));
}

void TimelineDelegate::measure(const QFont& font) {
  m_times = TabularText(font);
  qreal widest = 0;
  for (const QString& time : m_sampleTimes()) widest = std::max(widest, m_times.width(time));
  m_timeWidth = static_cast<int>(std::ceil(widest));
  const QFontMetrics metrics(font);
  m_margin = metrics.averageCharWidth() * 3 / 2;
  m_square = metrics.height();
}

QRect TimelineDelegate::foldingRect(const QRect& row, Qt::LayoutDirection direction) const {
  const QRect rect(row.left() + m_margin, row.center().y() - m_square / 2, m_square, m_square);
  return QStyle::visualRect(direction, row, rect);
}

void TimelineDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  QStyleOptionViewItem filled = option;
  initStyleOption(&filled, index);
  const auto cell = index.data(TimelineModel::CellRole).value<TimelineCell>();
  painter->save();
  painter->setClipRect(option.rect, Qt::IntersectClip);
  if (cell.isHeader()) {
    paintGroup(*painter, filled, cell.kind == TimelineKind::Now);
  } else {
    paintRun(*painter, filled, cell);
  }
  painter->restore();
}

void TimelineDelegate::paintGroup(QPainter& painter, const QStyleOptionViewItem& option, bool isNow) const {
  const QPalette::ColorGroup group = groupOf(option);
  painter.fillRect(option.rect, option.palette.color(group, QPalette::Window));
  QColor line = option.palette.color(group, QPalette::Text);
  line.setAlphaF(0.15F);
  painter.fillRect(QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1), line);
  if (isNow) {
    const QColor accent = option.palette.color(QPalette::Active, QPalette::Highlight);
    painter.fillRect(QRect(option.rect.left(), option.rect.top(), option.rect.width(), 2), accent);
  }

  QFont font = option.font;
  font.setWeight(QFont::DemiBold);
  painter.setFont(font);
  painter.setPen(option.palette.color(group, QPalette::WindowText));
  drawLine(painter, option, leading(option, m_margin, option.rect.width() - 2 * m_margin), option.text);
}

void TimelineDelegate::paintTriangle(QPainter& painter, const QStyleOptionViewItem& option, bool isOpen) const {
  QStyleOption arrow;
  arrow.rect = foldingRect(option.rect, option.direction);
  arrow.palette = option.palette;
  arrow.direction = option.direction;
  arrow.state = option.state | QStyle::State_Enabled;
  const auto closed =
      option.direction == Qt::RightToLeft ? QStyle::PE_IndicatorArrowLeft : QStyle::PE_IndicatorArrowRight;
  styleOf(option).drawPrimitive(isOpen ? QStyle::PE_IndicatorArrowDown : closed, &arrow, &painter, option.widget);
}

void TimelineDelegate::paintMark(QPainter& painter, const QStyleOptionViewItem& option, RunMark mark) const {
  if (mark == RunMark::None) return;
  const bool isSelected = option.state.testFlag(QStyle::State_Selected);
  QRect rect = leading(option, markStart(), m_square);
  rect.moveTop(option.rect.center().y() - m_square / 2);
  rect.setHeight(m_square);
  m_icons.at(static_cast<std::size_t>(mark))
      .paint(&painter, rect, Qt::AlignCenter, isSelected ? QIcon::Selected : QIcon::Normal);
}

void TimelineDelegate::paintRun(QPainter& painter, const QStyleOptionViewItem& option, const TimelineCell& cell) const {
  QStyleOptionViewItem background = option;
  background.text.clear();
  styleOf(option).drawControl(QStyle::CE_ItemViewItem, &background, &painter, option.widget);

  const QPalette::ColorGroup group = groupOf(option);
  const bool isSelected = option.state.testFlag(QStyle::State_Selected);
  const auto color = [&](QPalette::ColorRole role) {
    return option.palette.color(group, isSelected ? QPalette::HighlightedText : role);
  };
  const bool isMirrored = option.direction == Qt::RightToLeft;
  if (cell.kind == TimelineKind::Fold) paintTriangle(painter, option, cell.isOpen);
  paintMark(painter, option, cell.mark);
  painter.setPen(color(QPalette::Text));
  m_times.draw(painter, leading(option, timeStart(), m_timeWidth), isMirrored ? Qt::AlignLeft : Qt::AlignRight,
               qt(cell.time));

  painter.setFont(option.font);
  const int start = nameStart() + (cell.isNested ? m_square : 0);
  const int width = option.rect.width() - start - m_margin;
  const QString detail = detailFor(painter.fontMetrics(), width - 2 * m_margin, option.text, cell);
  const int detailWidth = widthOfDetail(painter.fontMetrics(), width - 2 * m_margin, option.text, detail);
  const int nameWidth = detail.isEmpty() ? width : width - 2 * m_margin - detailWidth;
  painter.setPen(color(cell.isSecondary ? QPalette::PlaceholderText : QPalette::Text));
  drawLine(painter, option, leading(option, start, nameWidth), option.text);
  if (detail.isEmpty()) return;
  painter.setPen(color(cell.mark == RunMark::Failed ? QPalette::Text : QPalette::PlaceholderText));
  drawLine(painter, option, leading(option, start + width - detailWidth, detailWidth), detail);
}

}  // namespace mirvel::ui
