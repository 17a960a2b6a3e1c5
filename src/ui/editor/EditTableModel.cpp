#include "ui/editor/EditTableModel.h"

#include <QLineEdit>
#include <QSignalBlocker>
#include <algorithm>
#include <unordered_set>
#include <utility>

#include "ui/support/Controls.h"
#include "ui/support/Palettes.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

std::vector<EditTable::Id> idsOf(const EditTable& table) {
  std::vector<EditTable::Id> ids;
  for (std::size_t i = 0; i < table.order().size(); ++i) ids.push_back(table.id(i));
  return ids;
}

}  // namespace

EditTableModel::EditTableModel(EditTable& table, const Collator& collator, const Localize& localize, QString name,
                               QObject* parent)
    : QAbstractTableModel(parent),
      m_table(table),
      m_collator(collator),
      m_localize(localize),
      m_name(std::move(name)) {}

const TableFormat::Column& EditTableModel::column(int column) const {
  return m_table.format().columns[static_cast<std::size_t>(column)];
}

/// The position of the row in the table, which the views learn of later; null if it is gone.
std::optional<std::size_t> EditTableModel::position(const QModelIndex& index) const {
  if (!index.isValid() || index.row() >= rowCount()) return std::nullopt;
  const auto row = static_cast<std::size_t>(index.row());
  const std::size_t count = m_table.order().size();
  if (row < count && m_table.id(row) == m_shown[row]) return row;
  for (std::size_t i = 0; i < count; ++i) {
    if (m_table.id(i) == m_shown[row]) return i;
  }
  return std::nullopt;
}

void EditTableModel::repaintAll() {
  if (rowCount() > 0) emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

/// Notifies the views of rows that the table has or hasn't any more.
void EditTableModel::follow() {
  const auto now = idsOf(m_table);
  removeVanished(now);
  appendNew(now);
  reorder(now);
  repaintAll();
}

/// Updates open editors, which a view does only if their cell alone has changed.
void EditTableModel::followTexts() {
  follow();
  for (int row = 0; row < rowCount(); ++row) {
    for (int column = 0; column < columnCount(); ++column) emit dataChanged(index(row, column), index(row, column));
  }
}

/// Removes all of them at once, since the time that a view needs for each removal grows with the number of rows.
void EditTableModel::removeVanished(const std::vector<EditTable::Id>& now) {
  const std::unordered_set<EditTable::Id> ids(now.begin(), now.end());
  const auto isLeft = [&ids](EditTable::Id id) { return ids.contains(id); };
  auto sorted = m_shown;
  auto begin = std::find_if_not(sorted.begin(), sorted.end(), isLeft);
  auto end = std::find_if(begin, sorted.end(), isLeft);
  if (!std::all_of(end, sorted.end(), isLeft)) {
    begin = std::stable_partition(begin, sorted.end(), isLeft);
    end = sorted.end();
    reorder(sorted);
  }
  if (begin == end) return;
  const auto first = static_cast<int>(std::distance(sorted.begin(), begin));
  const auto count = static_cast<int>(std::distance(begin, end));
  beginRemoveRows({}, first, first + count - 1);
  m_shown.erase(m_shown.begin() + first, m_shown.begin() + first + count);
  endRemoveRows();
}

void EditTableModel::appendNew(const std::vector<EditTable::Id>& now) {
  const std::unordered_set<EditTable::Id> ids(m_shown.begin(), m_shown.end());
  std::vector<EditTable::Id> added;
  std::copy_if(now.begin(), now.end(), std::back_inserter(added), [&](EditTable::Id id) { return !ids.contains(id); });
  if (added.empty()) return;
  beginInsertRows({}, rowCount(), rowCount() + static_cast<int>(added.size()) - 1);
  m_shown.insert(m_shown.end(), added.begin(), added.end());
  endInsertRows();
}

void EditTableModel::reorder(const std::vector<EditTable::Id>& now) {
  if (m_shown == now) return;
  emit layoutAboutToBeChanged({}, VerticalSortHint);
  const auto before = std::exchange(m_shown, now);
  for (const QModelIndex& old : persistentIndexList()) {
    const auto found = std::find(now.begin(), now.end(), before[static_cast<std::size_t>(old.row())]);
    changePersistentIndex(old, index(static_cast<int>(std::distance(now.begin(), found)), old.column()));
  }
  emit layoutChanged({}, VerticalSortHint);
}

void EditTableModel::fill(const std::vector<TableRow>& rows) {
  if (m_table.fill(rows)) followTexts();
}

int EditTableModel::add(const std::string& text) {
  (void)m_table.add(text);  // appended, so its position is known
  follow();
  return rowCount() - 1;
}

void EditTableModel::removeAt(int row) {
  const auto place = position(index(row, 0));
  if (place && m_table.remove(*place)) follow();
}

Result<void> EditTableModel::paste(const std::string& text) {
  auto result = m_table.paste(text);
  if (result) followTexts();
  return result;
}

void EditTableModel::setShowsSecrets(bool isShown) {
  m_showsSecrets = isShown;
  repaintAll();
}

bool EditTableModel::hasSecrets() const {
  for (std::size_t row = 0; row < m_table.order().size(); ++row) {
    for (std::size_t column = 0; column < m_table.format().columns.size(); ++column) {
      if (m_table.isSecret(row, column)) return true;
    }
  }
  return false;
}

QString EditTableModel::placeholder(const QModelIndex& index) const {
  const auto row = position(index);
  const auto text = column(index.column()).placeholder;
  return row && text && m_table.shownRow(*row).recorded.empty() ? qt(text(m_localize)) : QString();
}

QString EditTableModel::problem(const QModelIndex& index) const {
  const auto row = position(index);
  const auto problem = row ? m_table.problem(*row, static_cast<std::size_t>(index.column())) : std::nullopt;
  if (!problem) return {};
  return qt(text(*problem, column(index.column()), m_table.shownRow(*row).cells.front(), m_localize));
}

int EditTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

int EditTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_table.format().columns.size());
}

Qt::ItemFlags EditTableModel::flags(const QModelIndex& index) const {
  Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
  if (!index.isValid() || !m_isEditable) return flags;
  const auto row = position(index);
  const bool fits = row && fitsIntoLine(m_table.shownRow(*row).cells[static_cast<std::size_t>(index.column())]);
  if (fits && column(index.column()).isEditable) flags |= Qt::ItemIsEditable;
  if (m_table.format().hasBox && index.column() == 0) flags |= Qt::ItemIsUserCheckable;
  return flags;
}

QVariant EditTableModel::data(const QModelIndex& index, int role) const {
  const auto place = position(index);
  if (!place) return {};
  const TableRow& row = m_table.shownRow(*place);
  const std::string& text = row.cells[static_cast<std::size_t>(index.column())];
  const bool isConcealed = !m_showsSecrets && m_table.isSecret(*place, static_cast<std::size_t>(index.column()));
  switch (role) {
    case Qt::DisplayRole:
      return isConcealed ? bullets() : qt(text);
    case Qt::EditRole:
      return qt(text);
    case Qt::ToolTipRole:
      return toolTip(index, isConcealed ? std::string() : text);
    case Qt::AccessibleDescriptionRole:
      return problem(index);
    case Qt::CheckStateRole:
      if (!m_table.format().hasBox || index.column() != 0) return {};
      return row.isOn ? Qt::Checked : Qt::Unchecked;
    case Qt::TextAlignmentRole:
      if (!column(index.column()).isPath) return {};
      return static_cast<int>(Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter);
    default:
      return {};
  }
}

/// The reason why the cell can't be saved or, for an item of a menu, its help.
QVariant EditTableModel::toolTip(const QModelIndex& index, const std::string& text) const {
  const QString reason = problem(index);
  if (!reason.isEmpty()) return reason;
  const auto menu = m_table.format().menu;
  const auto item = std::find_if(menu.begin(), menu.end(), [&](const auto& each) { return each.title == text; });
  return item == menu.end() ? shownToolTip(text) : helpText(item->help);
}

bool EditTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  const auto row = position(index);
  if (!row) return false;
  if (role == Qt::CheckStateRole) {
    m_table.setBox(*row, value.toInt() == Qt::Checked);
  } else if (role == Qt::EditRole) {
    m_table.setCell(*row, static_cast<std::size_t>(index.column()), utf8(value.toString()));
  } else {
    return false;
  }
  repaintAll();  // the change can make other rows valid or invalid
  return true;
}

QVariant EditTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  // The headers of the rows are hidden, but have a place in the accessibility tree.
  if (orientation == Qt::Vertical) return role == Qt::AccessibleTextRole ? QVariant(section + 1) : QVariant();
  const auto text = column(section).title;
  if (role == Qt::DisplayRole) return text ? qt(text(m_localize)) : QString();
  if (role == Qt::AccessibleTextRole) return text ? qt(text(m_localize)) : m_name;
  return {};
}

void EditTableModel::sort(int column, Qt::SortOrder order) {
  if (column < 0) return;
  m_table.sort(static_cast<std::size_t>(column), order == Qt::AscendingOrder, m_collator);
  reorder(idsOf(m_table));
}

EditTableDelegate::EditTableDelegate(EditTableModel& model, QObject* parent)
    : QStyledItemDelegate(parent), m_model(model) {
  connect(this, &QAbstractItemDelegate::closeEditor, this, [this](QWidget*, EndEditHint hint) {
    if (hint == RevertModelCache) m_model.setData(m_edited, m_original, Qt::EditRole);
  });
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
  field->setMaxLength(longestLine);
  // The editor's text is at the position of the displayed one.
  const bool isPath = m_model.column(index.column()).isPath;
  const bool isAtLeft = option.direction == Qt::LeftToRight || isPath;
  field->setAlignment(Qt::AlignAbsolute | Qt::AlignVCenter | (isAtLeft ? Qt::AlignLeft : Qt::AlignRight));
  if (isPath) field->setLayoutDirection(Qt::LeftToRight);
  field->setPlaceholderText(m_model.placeholder(index));
  field->setAccessibleName(m_model.headerData(index.column(), Qt::Horizontal, Qt::AccessibleTextRole).toString());
  connect(field, &QLineEdit::textChanged, this,
          [this](const QString& text) { m_model.setData(m_edited, text, Qt::EditRole); });
  return field;
}

void EditTableDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
  auto* const field = qobject_cast<QLineEdit*>(editor);
  if (!field || field->text() == index.data(Qt::EditRole).toString()) return;
  if (index == m_edited) m_original = index.data(Qt::EditRole).toString();  // Escape mustn't take back a refill
  const QSignalBlocker notTyped(field);
  QStyledItemDelegate::setEditorData(editor, index);
}

void EditTableDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  option->palette = boxPalette(option->palette);
  if (option->text.isEmpty()) {
    option->text = m_model.placeholder(index);
    option->palette.setColor(QPalette::Text, option->palette.color(QPalette::PlaceholderText));
  }
  const bool isPath = m_model.column(index.column()).isPath;
  option->text = isPath ? leftToRight(option->text) : isolated(option->text);
  if (!m_model.problem(index).isEmpty()) {
    option->palette.setColor(QPalette::Text, invalidData(option->palette));
  }
}

}  // namespace mirvel::ui
