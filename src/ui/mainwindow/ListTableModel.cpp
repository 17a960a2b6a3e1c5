#include "ui/mainwindow/ListTableModel.h"

#include <QGuiApplication>
#include <QPalette>

#include "ui/mainwindow/JobView.h"
#include "ui/support/IconLoader.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

ListColumn columnOf(const QModelIndex& index) {
  return allListColumns.at(static_cast<std::size_t>(index.column()));
}

std::size_t rowOf(const QModelIndex& index) {
  return static_cast<std::size_t>(index.row());
}

}  // namespace

ListTableModel::ListTableModel(const Localize& localize, const ListMode& mode, IconLoader& icons)
    : m_localize(localize), m_mode(mode), m_icons(icons) {}

void ListTableModel::reload() {
  beginResetModel();
  endResetModel();
}

void ListTableModel::reloadRow(int row) {
  emit dataChanged(index(row, 0), index(row, columnCount() - 1));
}

void ListTableModel::reloadHeaders() {
  emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
}

int ListTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_mode.content().size());
}

int ListTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(allListColumns.size());
}

QVariant ListTableModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const ListCell cell = m_mode.cell(columnOf(index), rowOf(index));
  switch (role) {
    case Qt::DisplayRole:
      return shownText(cell.text);
    case Qt::ToolTipRole:
      return shownToolTip(cell.toolTip);
    case Qt::DecorationRole:
      return cell.image ? QVariant(m_icons.icon(*cell.image)) : QVariant();
    case Qt::CheckStateRole:
      return cell.isChecked ? QVariant(*cell.isChecked ? Qt::Checked : Qt::Unchecked) : QVariant();
    case Qt::ForegroundRole:
      return cell.isSecondary ? QVariant(QGuiApplication::palette().brush(QPalette::PlaceholderText)) : QVariant();
    case Qt::AccessibleTextRole:
      return accessibleText(cell);
    case markRole:
      return cell.mark ? QVariant(m_icons.icon(*cell.mark)) : QVariant();
    default:
      return {};
  }
}

QString ListTableModel::accessibleText(const ListCell& cell) const {
  if (cell.image && cell.mark) {
    return qt(cell.image->accessibilityDescription) + QStringLiteral(", ") + qt(cell.mark->accessibilityDescription);
  }
  if (cell.image) return qt(cell.image->accessibilityDescription);
  if (cell.isChecked) return qt(*cell.isChecked ? m_localize.on() : m_localize.off());
  return qt(cell.text);
}

QVariant ListTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
  if (role != Qt::DisplayRole && role != Qt::AccessibleTextRole) return {};
  return qt(title(allListColumns.at(static_cast<std::size_t>(section)), m_localize));
}

Qt::ItemFlags ListTableModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren;
}

QStringList ListTableModel::mimeTypes() const {
  return fileDragTypes();
}

QMimeData* ListTableModel::mimeData(const QModelIndexList& indexes) const {
  std::vector<std::size_t> rows;
  for (const QModelIndex& index : indexes) rows.push_back(rowOf(index));
  return fileDrag(m_mode.dragRows(rows));
}

}  // namespace mirvel::ui
