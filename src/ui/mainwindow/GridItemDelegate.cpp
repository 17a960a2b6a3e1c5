#include "ui/mainwindow/GridItemDelegate.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QHelpEvent>
#include <QIcon>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>
#include <QTextBoundaryFinder>
#include <QToolTip>
#include <algorithm>

#include "ui/mainwindow/GridModel.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

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

namespace {

constexpr int charactersInLine = 18;
constexpr int mostLines = 2;

QStyle& styleOf(const QStyleOptionViewItem& option) {
  return option.widget ? *option.widget->style() : *QApplication::style();
}

/// The geometry of an item's parts within its cell. All distances are multiples of `unit`, a fifth of the line height.
struct Places {
  Places(const QStyleOptionViewItem& option) : unit(std::max(2, option.fontMetrics.height() / 5)) {
    const int side = 3 * styleOf(option).pixelMetric(QStyle::PM_SmallIconSize, &option, option.widget);
    tile = QRect(0, 0, side + 4 * unit, side + 3 * unit);
    tile.moveTop(option.rect.top() + unit);
    tile.moveLeft(option.rect.left() + (option.rect.width() - tile.width()) / 2);
    icon = QRect(0, 0, side, side);
    icon.moveCenter(tile.center());
    name = option.rect.adjusted(3 * unit, 0, -3 * unit, -unit);
    name.setTop(tile.bottom() + 1 + unit);
  }
  QRect badge(Qt::LayoutDirection direction) const {
    const int side = icon.width() * 3 / 8;
    QRect rect(0, 0, side, side);
    rect.moveBottom(icon.bottom());
    rect.moveRight(icon.right() + unit);
    if (direction == Qt::RightToLeft) rect.moveLeft(icon.left() - unit);
    return rect;
  }

  /// In the upper corner, so that both badges can be seen.
  QRect failedBadge(Qt::LayoutDirection direction) const {
    QRect rect = badge(direction);
    rect.moveTop(icon.top());
    return rect;
  }

  int unit;
  QRect tile;  ///< background of a selected item's icon
  QRect icon;
  QRect name;
};

QPalette::ColorGroup groupOf(const QStyleOptionViewItem& option) {
  if (!option.state.testFlag(QStyle::State_Enabled)) return QPalette::Disabled;
  return option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
}

void drawTile(QPainter& painter, const QStyleOptionViewItem& option, const Places& places) {
  const bool isSelected = option.state.testFlag(QStyle::State_Selected);
  const bool hasFocus = option.state.testFlag(QStyle::State_HasFocus);
  const double radius = 2 * places.unit;
  if (isSelected) {
    QColor ground = option.palette.color(groupOf(option), QPalette::Text);
    ground.setAlphaF(0.12F);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(places.tile, radius, radius);
  }
  if (hasFocus) {
    painter.setPen(QPen(option.palette.color(groupOf(option), QPalette::Highlight), 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(places.tile).adjusted(1, 1, -1, -1), radius, radius);
  }
}

QColor nameColor(const QStyleOptionViewItem& option, bool isSecondary) {
  const auto role = option.state.testFlag(QStyle::State_Selected) ? QPalette::HighlightedText
                    : isSecondary                                 ? QPalette::PlaceholderText
                                                                  : QPalette::Text;
  return option.palette.color(groupOf(option), role);
}

/// The background of a selected item's name: a rounded rectangle around each line.
QPainterPath pill(const QList<QRectF>& lines, double unit) {
  QPainterPath path;
  for (const QRectF& line : lines) {
    QPainterPath part;
    part.addRoundedRect(line.adjusted(-1.5 * unit, -0.25 * unit, 1.5 * unit, 0.25 * unit), 1.5 * unit, 1.5 * unit);
    path = path.united(part);
  }
  return path;
}

void drawName(QPainter& painter, const QStyleOptionViewItem& option, const Places& places, const QModelIndex& index) {
  const QStringList lines = nameLines(index.data().toString(), option.fontMetrics, places.name.width()).lines;
  QList<QRectF> rects;
  for (const QString& line : lines) {
    const int width = option.fontMetrics.horizontalAdvance(line);
    rects.append(QRectF(places.name.left() + (places.name.width() - width) / 2.0,
                        places.name.top() + option.fontMetrics.lineSpacing() * static_cast<double>(rects.size()), width,
                        option.fontMetrics.height()));
  }
  if (option.state.testFlag(QStyle::State_Selected)) {
    painter.fillPath(pill(rects, places.unit), option.palette.color(groupOf(option), QPalette::Highlight));
  }
  // The base direction of each line is that of the name, not of the window; otherwise a trailing dot would jump to the
  // other side.
  const bool isRightToLeft = index.data().toString().isRightToLeft();
  painter.setLayoutDirection(isRightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
  painter.setFont(option.font);
  painter.setPen(nameColor(option, index.data(GridModel::SecondaryRole).toBool()));
  for (qsizetype i = 0; i < lines.size(); ++i) {
    painter.drawText(rects[i].adjusted(-places.unit, 0, places.unit, 0), Qt::AlignCenter | Qt::TextSingleLine,
                     lines[i]);
  }
}

}  // namespace

void GridItemDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const Places places(option);
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  drawTile(*painter, option, places);
  index.data(Qt::DecorationRole).value<QIcon>().paint(painter, places.icon);
  const auto badge = index.data(GridModel::BadgeRole).value<QIcon>();
  badge.paint(painter, places.badge(option.direction));
  index.data(GridModel::FailedRole).value<QIcon>().paint(painter, places.failedBadge(option.direction));
  drawName(*painter, option, places, index);
  painter->restore();
}

QSize GridItemDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& /*index*/) const {
  const Places places(option);
  const int width = charactersInLine * option.fontMetrics.averageCharWidth() + 6 * places.unit;
  const int height = 2 * places.unit + places.tile.height() + mostLines * option.fontMetrics.lineSpacing();
  return {std::max(width, places.tile.width() + 2 * places.unit), height + 2 * places.unit};
}

bool GridItemDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                                 const QModelIndex& index) {
  if (event->type() != QEvent::ToolTip) return QStyledItemDelegate::helpEvent(event, view, option, index);
  const QString name = index.data().toString();
  const bool isCut = index.isValid() && nameLines(name, option.fontMetrics, Places(option).name.width()).isElided;
  const QString details = index.data(Qt::ToolTipRole).toString();
  if (isCut || !details.isEmpty()) {
    QToolTip::showText(event->globalPos(), (isCut ? shownToolTip(utf8(name)) : QString()) + details, view);
  } else {
    QToolTip::hideText();
  }
  return true;
}

}  // namespace mirvel::ui
