#include "ui/mainwindow/TreeModel.h"

#include "ui/mainwindow/JobView.h"
#include "ui/support/IconLoader.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

// The internal id of an index: 0 for a group, and for a job the row of its group plus 1.
constexpr quintptr ofGroup = 0;

}  // namespace

TreeModel::TreeModel(const TreeMode& mode, IconLoader& icons) : m_mode(mode), m_icons(icons) {}

void TreeModel::reload() {
  beginResetModel();
  endResetModel();
}

void TreeModel::reloadRow(const QModelIndex& index) {
  emit dataChanged(index, index);
}

IndexPath TreeModel::path(const QModelIndex& index) {
  const auto row = static_cast<std::size_t>(index.row());
  if (index.internalId() == ofGroup) return {row, IndexPath::group};
  return {static_cast<std::size_t>(index.internalId() - 1), row};
}

QModelIndex TreeModel::indexOf(IndexPath path) const {
  const QModelIndex group = index(static_cast<int>(path.section), 0);
  return path.item == IndexPath::group ? group : index(static_cast<int>(path.item), 0, group);
}

QModelIndex TreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (!hasIndex(row, column, parent)) return {};
  return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : ofGroup);
}

QModelIndex TreeModel::parent(const QModelIndex& child) const {
  if (!child.isValid() || child.internalId() == ofGroup) return {};
  return createIndex(static_cast<int>(child.internalId() - 1), 0, ofGroup);
}

int TreeModel::rowCount(const QModelIndex& parent) const {
  const Sections& sections = m_mode.sections();
  if (!parent.isValid()) return static_cast<int>(sections.size());
  const auto section = static_cast<std::size_t>(parent.row());
  const bool isLeaf = parent.internalId() != ofGroup || section >= sections.size();
  return isLeaf ? 0 : static_cast<int>(sections[section].jobs.size());
}

int TreeModel::columnCount(const QModelIndex& /*parent*/) const {
  return 1;
}

bool TreeModel::hasChildren(const QModelIndex& parent) const {
  return rowCount(parent) > 0;
}

QVariant TreeModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const TreeCell cell = m_mode.cell(path(index));
  switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
      return qt(cell.text);
    case Qt::ToolTipRole:
      return shownToolTip(cell.toolTip);
    case Qt::DecorationRole:
      return m_icons.programIcon(cell.image);
    case Qt::AccessibleDescriptionRole:
      return qt(isGroup(index) ? cell.count : cell.toolTip);
    case MarkRole:
      return cell.mark ? QVariant(m_icons.icon(*cell.mark)) : QVariant();
    case CountRole:
      return qt(cell.count);
    case SecondaryRole:
      return cell.isSecondary;
    default:
      return {};
  }
}

Qt::ItemFlags TreeModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  if (isGroup(index)) return Qt::ItemIsEnabled;
  return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren;
}

QStringList TreeModel::mimeTypes() const {
  return fileDragTypes();
}

QMimeData* TreeModel::mimeData(const QModelIndexList& indexes) const {
  std::vector<IndexPath> paths;
  for (const QModelIndex& index : indexes) paths.push_back(path(index));
  return fileDrag(m_mode.dragRows(paths));
}

}  // namespace mirvel::ui
