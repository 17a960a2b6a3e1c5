#include "ui/editor/BrowserModel.h"

#include <QLineEdit>
#include <QPainter>
#include <algorithm>
#include <iterator>
#include <limits>
#include <unordered_set>

#include "core/editor/Browser.h"
#include "ui/support/Palettes.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

/// The selection of a column without the focus, so that it is visible which column has it.
void setQuietSelection(QPalette& palette) {
  constexpr double strength = 0.3;
  const QColor base = palette.color(QPalette::Base);
  const QColor highlight = palette.color(QPalette::Highlight);
  const auto mixed = [](int of, int with) { return static_cast<int>(of + (with - of) * strength); };
  palette.setColor(QPalette::Highlight,
                   QColor(mixed(base.red(), highlight.red()), mixed(base.green(), highlight.green()),
                          mixed(base.blue(), highlight.blue())));
  palette.setColor(QPalette::HighlightedText, palette.color(QPalette::Text));
}

}  // namespace

BrowserModel::BrowserModel(Browser& browser, std::size_t column, Access access, QObject* parent)
    : QAbstractListModel(parent), m_browser(browser), m_column(column), m_access(access), m_ids(presentIds()) {}

std::vector<std::uint64_t> BrowserModel::presentIds() const {
  const auto& items = m_browser.items(m_column);
  std::vector<std::uint64_t> ids;
  std::transform(items.begin(), items.end(), std::back_inserter(ids), [](const BrowserItem& item) { return item.id; });
  return ids;
}

void BrowserModel::follow() {
  const auto now = presentIds();
  removeAllBut(now);
  const std::unordered_set<std::uint64_t> before(m_ids.begin(), m_ids.end());
  const auto isOld = [&before](std::uint64_t id) { return before.contains(id); };
  for (auto next = now.begin(); next != now.end();) {
    const auto position = m_ids.begin() + (next - now.begin());
    const auto added = std::find_if(next, now.end(), isOld);
    if (added != next) {
      const int row = static_cast<int>(next - now.begin());
      beginInsertRows({}, row, row + static_cast<int>(added - next) - 1);
      m_ids.insert(position, next, added);
      endInsertRows();
      next = added;
      continue;
    }
    if (*position != *next) moveHere(position, *next);
    ++next;
  }
  if (!m_ids.empty()) emit dataChanged(index(0), index(rowCount() - 1));
}

/// In runs, as a list can have a hundred thousand rows.
void BrowserModel::removeAllBut(const std::vector<std::uint64_t>& ids) {
  const std::unordered_set<std::uint64_t> kept(ids.begin(), ids.end());
  const auto isKept = [&kept](std::uint64_t id) { return kept.contains(id); };
  for (std::size_t end = m_ids.size(); end > 0;) {
    std::size_t start = end;
    while (start > 0 && !isKept(m_ids[start - 1])) --start;
    if (start < end) {
      beginRemoveRows({}, static_cast<int>(start), static_cast<int>(end) - 1);
      m_ids.erase(m_ids.begin() + static_cast<std::ptrdiff_t>(start), m_ids.begin() + static_cast<std::ptrdiff_t>(end));
      endRemoveRows();
    }
    end = start > 0 ? start - 1 : 0;
  }
}

void BrowserModel::moveHere(std::vector<std::uint64_t>::iterator position, std::uint64_t id) {
  const auto old = std::find(position, m_ids.end(), id);
  const int from = static_cast<int>(old - m_ids.begin());
  beginMoveRows({}, from, from, {}, static_cast<int>(position - m_ids.begin()));
  std::rotate(position, old, old + 1);
  endMoveRows();
}

int BrowserModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_ids.size());
}

/// Whether the browser still has the item in that row: it may have changed before the model follows.
bool BrowserModel::isShown(const QModelIndex& index) const {
  if (!index.isValid() || index.row() >= rowCount()) return false;
  const auto row = static_cast<std::size_t>(index.row());
  const auto& items = m_browser.items(m_column);
  return row < items.size() && items[row].id == m_ids[row];
}

Qt::ItemFlags BrowserModel::flags(const QModelIndex& index) const {
  Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
  if (m_access == Access::ReadOnly || !isShown(index)) return flags;
  if (m_browser.isNameEditable(m_column, static_cast<std::size_t>(index.row()))) flags |= Qt::ItemIsEditable;
  return flags;
}

QVariant BrowserModel::data(const QModelIndex& index, int role) const {
  if (!isShown(index)) return {};
  const auto row = static_cast<std::size_t>(index.row());
  switch (role) {
    case Qt::DisplayRole:
      return shownText(m_browser.title(m_column, row));
    case Qt::EditRole:
      return qt(m_browser.items(m_column)[row].name);
    case Qt::ToolTipRole: {
      const auto problem = m_browser.problem(m_column, row);
      return shownToolTip(problem ? *problem : m_browser.title(m_column, row));
    }
    case Qt::AccessibleDescriptionRole: {
      const auto problem = m_browser.problem(m_column, row);
      return problem ? QVariant(qt(*problem)) : QVariant();
    }
    case isContainerRole:
      return m_browser.items(m_column)[row].isContainer();
    default:
      return {};
  }
}

bool BrowserModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::EditRole || m_access == Access::ReadOnly || !isShown(index)) return false;
  m_browser.rename(m_column, static_cast<std::size_t>(index.row()), utf8(value.toString()));
  if (renamed) renamed();
  return true;
}

void BrowserDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  option->text = isolated(option->text);
  if (!index.data(Qt::AccessibleDescriptionRole).isNull()) {
    option->palette.setColor(QPalette::Text, invalidData(option->palette));
  }
  if (option->widget && !option->widget->hasFocus()) setQuietSelection(option->palette);
  if (!index.data(BrowserModel::isContainerRole).toBool()) return;
  // Reserves the place of the arrow.
  option->features |= QStyleOptionViewItem::HasDecoration;
  option->decorationPosition = QStyleOptionViewItem::Right;
  option->decorationAlignment = Qt::AlignCenter;
  option->decorationSize = QSize(option->fontMetrics.height(), option->fontMetrics.height()) / 2;
}

QSize BrowserDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const int distance = option.widget ? 2 * option.widget->style()->pixelMetric(QStyle::PM_DefaultFrameWidth) : 0;
  return {QStyledItemDelegate::sizeHint(option, index).width(), option.fontMetrics.height() + distance};
}

void BrowserDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
  QStyledItemDelegate::paint(painter, option, index);
  if (!index.data(BrowserModel::isContainerRole).toBool()) return;
  QStyleOptionViewItem item = option;
  initStyleOption(&item, index);
  const QStyle& style = *item.widget->style();
  const QRect row = option.rect;
  const int side = item.decorationSize.width();
  const int margin = style.pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, item.widget) + 1;
  QStyleOption arrow;
  arrow.state = item.state;
  arrow.palette = item.palette;
  if (item.state.testFlag(QStyle::State_Selected)) {
    arrow.palette.setColor(QPalette::WindowText, item.palette.color(QPalette::HighlightedText));
  }
  const QRect trailing(row.right() - margin - side, row.center().y() - side / 2, side, side);
  arrow.rect = QStyle::visualRect(option.direction, row, trailing);
  const bool isMirrored = option.direction == Qt::RightToLeft;
  style.drawPrimitive(isMirrored ? QStyle::PE_IndicatorArrowLeft : QStyle::PE_IndicatorArrowRight, &arrow, painter,
                      item.widget);
}

QWidget* BrowserDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                       const QModelIndex& index) const {
  QWidget* const editor = QStyledItemDelegate::createEditor(parent, option, index);
  if (auto* const field = qobject_cast<QLineEdit*>(editor)) field->setMaxLength(std::numeric_limits<int>::max());
  return editor;
}

/// A change elsewhere in the tree must not replace what is being typed.
void BrowserDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
  const auto* const field = qobject_cast<const QLineEdit*>(editor);
  if (!field || !field->isModified()) QStyledItemDelegate::setEditorData(editor, index);
}

}  // namespace mirvel::ui
