#include "ui/runs/LogTable.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QHeaderView>
#include <QPalette>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <algorithm>

#include "core/runs/LogTexts.h"
#include "core/runs/LogViewController.h"
#include "core/runs/VisibleText.h"
#include "core/text/Strings.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

std::string visibleBeginning(const std::string& message, std::size_t most) {
  const auto beginning = String::firstCharacters(message, most);
  return visibleText(beginning) + (beginning.size() < message.size() ? "…" : "");
}

/// One line, whatever the message contains.
QString lineText(const std::string& message) {
  constexpr std::size_t longest = 1000;
  QString text = qt(visibleBeginning(message, longest));
  text.replace(QLatin1Char('\n'), QStringLiteral(" \u21B5 "));
  return text.replace(QLatin1Char('\t'), QStringLiteral("    "));
}

/// Wrapped, which a tool tip does only between words.
QString toolTipText(const std::string& message) {
  constexpr std::size_t longest = 2000;
  constexpr int longestWord = 60;
  QString text;
  int length = 0;
  for (const QChar character : qt(visibleBeginning(message, longest))) {
    text.append(character);
    length = character.isSpace() ? 0 : length + 1;
    if (length % longestWord == longestWord - 1 && !character.isHighSurrogate()) text.append(QChar(0x200B));
  }
  return helpText(utf8(text));
}

QFont fontOf(LogRow::Kind kind) {
  QFont font =
      kind == LogRow::Kind::Output ? QFontDatabase::systemFont(QFontDatabase::FixedFont) : QGuiApplication::font();
  font.setItalic(kind == LogRow::Kind::Gap);
  return font;
}

/// Output is code: it runs from left to right, also in a window that doesn't.
class MessageDelegate final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  /// All rows get the height of the first one, whatever its kind.
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    const auto heightOf = [](const QFont& font) { return QFontMetrics(font).height(); };
    const int own = heightOf(index.data(Qt::FontRole).value<QFont>());
    const int tallest = std::max({own, heightOf(fontOf(LogRow::Kind::Output)), heightOf(fontOf(LogRow::Kind::Event)),
                                  heightOf(fontOf(LogRow::Kind::Gap))});
    return QStyledItemDelegate::sizeHint(option, index) + QSize(0, tallest - own);
  }

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    option->direction = Qt::LeftToRight;
    option->displayAlignment = Qt::AlignLeft | Qt::AlignVCenter;
  }
};

bool isMessage(const QModelIndex& index) {
  return index.column() == static_cast<int>(LogColumn::Message);
}

}  // namespace

void LogTableModel::rowsDidChange(const LogChange& change) {
  if (change.isReset) {
    beginResetModel();
    m_count = static_cast<int>(m_log.rows().size());
    return endResetModel();
  }
  if (change.count == 0) return;
  const auto first = static_cast<int>(change.first), count = static_cast<int>(change.count);
  beginInsertRows({}, first, first + count - 1);
  m_count += count;
  endInsertRows();
}

QVariant LogTableModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const LogRow& row = m_log.rows().at(static_cast<std::size_t>(index.row()));
  switch (role) {
    case Qt::DisplayRole:
      return isMessage(index) ? lineText(row.message) : qt(m_log.date(row));
    case Qt::ToolTipRole:
      return isMessage(index) ? toolTipText(row.message) : QVariant();
    case Qt::FontRole:
      return isMessage(index) ? fontOf(row.kind) : QVariant();
    case Qt::ForegroundRole:
      if (row.kind == LogRow::Kind::Output) return {};
      return QGuiApplication::palette().brush(QPalette::PlaceholderText);
    case Qt::AccessibleTextRole:
      if (!isMessage(index) || row.kind != LogRow::Kind::Event) return data(index, Qt::DisplayRole);
      return qt(LogTexts(m_localize).event(utf8(lineText(row.message))));
    default:
      return {};
  }
}

QVariant LogTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
    return QAbstractTableModel::headerData(section, orientation, role);
  const LogTexts texts(m_localize);
  return qt(section == static_cast<int>(LogColumn::Date) ? texts.date() : texts.message());
}

LogTable::LogTable(QWidget* parent) : QTreeView(parent) {
  setRootIsDecorated(false);
  setUniformRowHeights(true);
  setAllColumnsShowFocus(true);
  setSelectionMode(ExtendedSelection);
  setTextElideMode(Qt::ElideRight);
  setItemDelegateForColumn(static_cast<int>(LogColumn::Message), new MessageDelegate(this));
  header()->setSectionsMovable(false);
  header()->setSectionsClickable(true);
  header()->setSortIndicatorShown(true);
  header()->setSortIndicatorClearable(true);
  header()->setSortIndicator(-1, Qt::AscendingOrder);
}

std::vector<std::size_t> LogTable::selectedRows() const {
  std::vector<std::size_t> rows;
  for (const QItemSelectionRange& range : selectionModel()->selection()) {
    for (int row = range.top(); row <= range.bottom(); ++row) rows.push_back(static_cast<std::size_t>(row));
  }
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  return rows;
}

void LogTable::select(const std::function<bool(std::size_t row)>& isSelected) {
  QItemSelection selection;
  const int count = model()->rowCount();
  for (int row = 0; row < count; ++row) {
    const int first = row;
    while (row < count && isSelected(static_cast<std::size_t>(row))) ++row;
    if (row > first) selection.select(model()->index(first, 0), model()->index(row - 1, 1));
  }
  selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
  if (selection.isEmpty()) return;
  setAutoScroll(false);
  selectionModel()->setCurrentIndex(selection.first().topLeft(), QItemSelectionModel::NoUpdate);
  setAutoScroll(true);
}

bool LogTable::isAtEnd() const {
  const QScrollBar& bar = *verticalScrollBar();
  return bar.maximum() > 0 && bar.value() == bar.maximum();
}

void LogTable::paintEvent(QPaintEvent* event) {
  const bool hasRows = model() && model()->rowCount() > 0;
  if (alternatingRowColors() != hasRows) setAlternatingRowColors(hasRows);
  QTreeView::paintEvent(event);
  if (!hasRows && emptyLabel) drawEmptyLabel(*viewport(), emptyLabel());
}

void LogTable::focusInEvent(QFocusEvent* event) {
  // QAbstractItemView::focusInEvent would make the first row current, which then looks half selected.
  QAbstractScrollArea::focusInEvent(event);  // NOLINT(bugprone-parent-virtual-call)
  viewport()->update();
}

}  // namespace mirvel::ui
