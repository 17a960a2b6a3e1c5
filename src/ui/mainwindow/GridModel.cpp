#include "ui/mainwindow/GridModel.h"

#include "ui/mainwindow/JobView.h"
#include "ui/support/IconLoader.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

GridModel::GridModel(const Localize& localize, const GridMode& mode, IconLoader& icons)
    : m_localize(localize), m_mode(mode), m_icons(icons) {}

void GridModel::reload() {
  beginResetModel();
  endResetModel();
}

void GridModel::reloadRow(int row) {
  emit dataChanged(index(row), index(row));
}

IndexPath GridModel::path(int row) const {
  auto item = static_cast<std::size_t>(row);
  const Sections& sections = m_mode.sections();
  for (std::size_t section = 0; section < sections.size(); ++section) {
    if (item < sections[section].jobs.size()) return {section, item};
    item -= sections[section].jobs.size();
  }
  return {sections.size(), 0};
}

int GridModel::row(IndexPath path) const {
  std::size_t row = path.item;
  for (std::size_t section = 0; section < path.section; ++section) row += m_mode.sections()[section].jobs.size();
  return static_cast<int>(row);
}

int GridModel::rowCount(const QModelIndex& parent) const {
  if (parent.isValid()) return 0;
  std::size_t count = 0;
  for (const Kind::Section& section : m_mode.sections()) count += section.jobs.size();
  return static_cast<int>(count);
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const IndexPath at = path(index.row());
  // A keyboard search asks for the names of all items, so the other item data isn't computed for it.
  if (role == Qt::DisplayRole || role == Qt::AccessibleTextRole) return qt(m_mode.name(at));
  const GridItem item = m_mode.item(at);
  switch (role) {
    case Qt::DecorationRole:
      return m_icons.programIcon(item.icon);
    case Qt::AccessibleDescriptionRole:
      return description(at, item);
    case BadgeRole:
      return item.noWriteBadge ? QVariant(m_icons.icon(*item.noWriteBadge)) : QVariant();
    case FailedRole:
      return item.failedBadge ? QVariant(m_icons.icon(*item.failedBadge)) : QVariant();
    case Qt::ToolTipRole:
      return shownToolTip(item.toolTip);
    case SecondaryRole:
      return item.isSecondary;
    default:
      return {};
  }
}

/// The description for assistive programs: the group, and the meaning of the marks on the icon.
QString GridModel::description(IndexPath path, const GridItem& item) const {
  QStringList parts{qt(m_mode.header(path.section))};
  if (item.isSecondary) parts << qt(m_localize.disabled());
  if (item.noWriteBadge) parts << qt(item.noWriteBadge->accessibilityDescription);
  if (item.failedBadge) parts << qt(item.failedBadge->accessibilityDescription);
  return parts.join(QStringLiteral(", "));
}

Qt::ItemFlags GridModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren;
}

QStringList GridModel::mimeTypes() const {
  return fileDragTypes();
}

QMimeData* GridModel::mimeData(const QModelIndexList& indexes) const {
  std::vector<IndexPath> paths;
  for (const QModelIndex& index : indexes) paths.push_back(path(index.row()));
  return fileDrag(m_mode.dragItems(paths));
}

}  // namespace mirvel::ui
