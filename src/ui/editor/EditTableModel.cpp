#include "ui/editor/EditTableModel.h"

#include <QLineEdit>
#include <QSignalBlocker>
#include <algorithm>
#include <utility>

#include "ui/support/Controls.h"
#include "ui/support/Palettes.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

EditTableModel::EditTableModel(EditTable& table, const Collator& collator, QString name, QObject* parent)
    : QAbstractTableModel(parent), m_table(table), m_collator(collator), m_name(std::move(name)) {}

void EditTableModel::repaintAll() {
  if (rowCount() > 0) emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

void EditTableModel::fill(const std::vector<TableRow>& rows) {
  EditTable after = m_table;
  after.fill(rows);
  const auto shown = [](const EditTable& table, std::size_t position) { return table.shownRow(position); };
  const std::size_t before = m_table.rows().size();
  const std::size_t now = after.rows().size();
  const std::size_t shorter = std::min(before, now);
  std::size_t first = 0;
  while (first < shorter && shown(m_table, first) == shown(after, first)) ++first;
  std::size_t tail = 0;
  while (tail < shorter - first && shown(m_table, before - 1 - tail) == shown(after, now - 1 - tail)) ++tail;

  const int end = static_cast<int>(shorter - tail);  // of the rows that change in place
  if (now > before) beginInsertRows({}, end, end + static_cast<int>(now - before) - 1);
  if (now < before) beginRemoveRows({}, end, end + static_cast<int>(before - now) - 1);
  m_table.fill(rows);
  if (now > before) endInsertRows();
  if (now < before) endRemoveRows();
  for (int row = static_cast<int>(first); row < end; ++row) {
    for (int column = 0; column < columnCount(); ++column) emit dataChanged(index(row, column), index(row, column));
  }
  repaintAll();
}

int EditTableModel::add(const std::string& text) {
  const int row = rowCount();
  beginInsertRows({}, row, row);
  (void)m_table.add(text);  // appended, so its position is known
  endInsertRows();
  repaintAll();
  return row;
}

void EditTableModel::removeAt(int row) {
  beginRemoveRows({}, row, row);
  (void)m_table.remove(static_cast<std::size_t>(row));  // true, as the row exists
  endRemoveRows();
  repaintAll();
}

int EditTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_table.order().size());
}

int EditTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_table.format().columns.size());
}

Qt::ItemFlags EditTableModel::flags(const QModelIndex& index) const {
  Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
  if (!index.isValid() || !m_isEditable) return flags;
  const TableFormat& format = m_table.format();
  if (format.columns[static_cast<std::size_t>(index.column())].isEditable) flags |= Qt::ItemIsEditable;
  if (format.hasBox && index.column() == 0) flags |= Qt::ItemIsUserCheckable;
  return flags;
}

QVariant EditTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= rowCount()) return {};
  const TableRow& row = m_table.shownRow(static_cast<std::size_t>(index.row()));
  const auto column = static_cast<std::size_t>(index.column());
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
      return qt(row.cells[column]);
    case Qt::ToolTipRole:
      return shownToolTip(row.cells[column]);
    case Qt::CheckStateRole:
      if (!m_table.format().hasBox || column != 0) return {};
      return row.isOn ? Qt::Checked : Qt::Unchecked;
    case Qt::TextAlignmentRole:
      if (!m_table.format().columns[column].isPath) return {};
      return static_cast<int>(Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter);
    default:
      return {};
  }
}

bool EditTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (!index.isValid() || index.row() >= rowCount()) return false;
  const auto row = static_cast<std::size_t>(index.row());
  if (role == Qt::CheckStateRole) {
    m_table.setBox(row, value.toInt() == Qt::Checked);
  } else if (role == Qt::EditRole) {
    m_table.setCell(row, static_cast<std::size_t>(index.column()), utf8(value.toString()));
  } else {
    return false;
  }
  repaintAll();  // the change can make other rows valid or invalid
  return true;
}

QVariant EditTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  const QString title = qt(m_table.format().columns[static_cast<std::size_t>(section)].title);
  if (role == Qt::DisplayRole) return title;
  if (role == Qt::AccessibleTextRole) return title.isEmpty() ? m_name : title;
  return {};
}

void EditTableModel::sort(int column, Qt::SortOrder order) {
  if (column < 0) return;
  emit layoutAboutToBeChanged({}, VerticalSortHint);
  const auto before = m_table.order();
  m_table.sort(static_cast<std::size_t>(column), order == Qt::AscendingOrder, m_collator);
  const auto& after = m_table.order();
  for (const QModelIndex& old : persistentIndexList()) {
    const auto found = std::find(after.begin(), after.end(), before[static_cast<std::size_t>(old.row())]);
    changePersistentIndex(old, index(static_cast<int>(std::distance(after.begin(), found)), old.column()));
  }
  emit layoutChanged({}, VerticalSortHint);
}

EditTableDelegate::EditTableDelegate(EditTableModel& model, QObject* parent)
    : QStyledItemDelegate(parent), m_model(model) {
  connect(this, &QAbstractItemDelegate::closeEditor, this, [this](QWidget*, EndEditHint hint) {
    if (hint == RevertModelCache) m_model.setData(m_edited, m_original, Qt::EditRole);
  });
}

bool EditTableDelegate::isPath(int column) const {
  return m_model.table().format().columns[static_cast<std::size_t>(column)].isPath;
}

QString EditTableDelegate::displayText(const QVariant& value, const QLocale& /*locale*/) const {
  return shownText(utf8(value.toString()));
}

QWidget* EditTableDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                         const QModelIndex& index) const {
  QWidget* const editor = QStyledItemDelegate::createEditor(parent, option, index);
  auto* const field = qobject_cast<QLineEdit*>(editor);
  if (!field) return editor;
  m_edited = index;
  m_original = index.data(Qt::EditRole).toString();
  // The editor's text is at the position of the displayed one.
  const bool isAtLeft = option.direction == Qt::LeftToRight || isPath(index.column());
  field->setAlignment(Qt::AlignAbsolute | Qt::AlignVCenter | (isAtLeft ? Qt::AlignLeft : Qt::AlignRight));
  if (isPath(index.column())) field->setLayoutDirection(Qt::LeftToRight);
  connect(field, &QLineEdit::textChanged, this,
          [this](const QString& text) { m_model.setData(m_edited, text, Qt::EditRole); });
  return field;
}

void EditTableDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
  auto* const field = qobject_cast<QLineEdit*>(editor);
  if (!field || field->text() == index.data(Qt::EditRole).toString()) return;
  const QSignalBlocker notTyped(field);  // the field could truncate a long text, which must not be written back
  QStyledItemDelegate::setEditorData(editor, index);
}

void EditTableDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  option->palette = boxPalette(option->palette);
  if (isPath(index.column())) option->text = leftToRight(option->text);
  const auto refused = m_model.table().refusedPosition();
  if (refused && *refused == static_cast<std::size_t>(index.row())) {
    option->palette.setColor(QPalette::Text, invalidData(option->palette));
  }
}

}  // namespace mirvel::ui
