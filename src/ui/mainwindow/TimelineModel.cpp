#include "ui/mainwindow/TimelineModel.h"

#include <algorithm>

#include "ui/mainwindow/JobView.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

std::size_t rowOf(const QModelIndex& index) {
  return static_cast<std::size_t>(index.row());
}

}  // namespace

TimelineModel::TimelineModel(const TimelineMode& mode, const Localize& localize) : m_mode(mode), m_localize(localize) {}

void TimelineModel::reload() {
  beginResetModel();
  m_count = static_cast<int>(m_mode.timelineArray().count());
  endResetModel();
}

void TimelineModel::rowsDidChange(const TimelineArray::Change& change) {
  const auto removed = static_cast<int>(change.removed), inserted = static_cast<int>(change.inserted);
  const int common = std::min(removed, inserted);
  const int first = static_cast<int>(change.first) + common;
  if (removed > common) {
    beginRemoveRows({}, first, first + removed - common - 1);
    m_count -= removed - common;
    endRemoveRows();
  }
  if (inserted > common) {
    beginInsertRows({}, first, first + inserted - common - 1);
    m_count += inserted - common;
    endInsertRows();
  }
  contentsDidChange(first - common, first - 1);
}

void TimelineModel::contentsDidChange(int first, int last) {
  if (first <= last) emit dataChanged(index(first), index(last));
}

int TimelineModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : m_count;
}

QVariant TimelineModel::data(const QModelIndex& index, int role) const {
  const bool isKnown = role == Qt::DisplayRole || role == Qt::ToolTipRole || role == CellRole ||
                       role == Qt::AccessibleTextRole || role == Qt::AccessibleDescriptionRole;
  if (!isKnown || !checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const TimelineCell cell = m_mode.cell(rowOf(index));
  switch (role) {
    case Qt::DisplayRole:
      return qt(cell.name);
    case Qt::ToolTipRole:
      return shownToolTip(cell.detail.empty() ? cell.name : cell.name + '\n' + cell.detail);
    case Qt::AccessibleTextRole:
      return accessibleText(cell);
    case Qt::AccessibleDescriptionRole:
      return accessibleDescription(cell);
    default:
      return QVariant::fromValue(cell);
  }
}

QString TimelineModel::accessibleText(const TimelineCell& cell) const {
  QStringList parts;
  if (!cell.time.empty()) parts.push_back(qt(cell.time));
  parts.push_back(qt(cell.name));
  if (!cell.detail.empty()) parts.push_back(qt(cell.detail));
  if (cell.isSecondary) parts.push_back(qt(m_localize.disabled()));
  return parts.join(QStringLiteral(", "));
}

/// How to fold and unfold, as screen readers don't see the triangle.
QString TimelineModel::accessibleDescription(const TimelineCell& cell) const {
  if (cell.kind != TimelineKind::Fold) return {};
  return qt(cell.isOpen ? m_mode.texts().theLeftArrowKeyFoldsTheRuns() : m_mode.texts().theRightArrowKeyShowsEachRun());
}

Qt::ItemFlags TimelineModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  // A row that is about to be reported as removed may be gone already.
  const TimelineArray& rows = m_mode.timelineArray();
  const bool isHeader = rowOf(index) >= rows.count() || rows.row(rowOf(index)).isHeader();
  const Qt::ItemFlags common = Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
  return isHeader ? common : common | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled;
}

QModelIndexList TimelineModel::match(const QModelIndex& start, int, const QVariant& value, int, Qt::MatchFlags) const {
  const QString text = value.toString();
  const auto hasPrefix = [&](const std::string& name) { return qt(name).startsWith(text, Qt::CaseInsensitive); };
  const auto found = m_mode.firstNamed(hasPrefix, rowOf(start));
  return found ? QModelIndexList{index(static_cast<int>(*found))} : QModelIndexList();
}

QStringList TimelineModel::mimeTypes() const {
  return fileDragTypes();
}

QMimeData* TimelineModel::mimeData(const QModelIndexList& indexes) const {
  std::vector<std::size_t> rows;
  for (const QModelIndex& index : indexes) rows.push_back(rowOf(index));
  return fileDrag(m_mode.dragRows(rows));
}

}  // namespace mirvel::ui
