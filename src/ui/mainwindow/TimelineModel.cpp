#include "ui/mainwindow/TimelineModel.h"

#include <unordered_map>

#include "ui/mainwindow/JobView.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

namespace {

std::size_t rowOf(const QModelIndex& index) {
  return static_cast<std::size_t>(index.row());
}

/// Matches a prefix against names, once for each source, because a source can occur in thousands of rows.
class NameSearch {
 public:
  explicit NameSearch(QString text) : m_text(std::move(text)) {}

  bool finds(const TimelineSource& source) {
    const auto [found, isNew] = m_known.try_emplace(&source, false);
    if (isNew) {
      const bool isGroup = source.kind == TimelineKind::Group;
      found->second = !isGroup && qt(source.name).startsWith(m_text, Qt::CaseInsensitive);
    }
    return found->second;
  }

 private:
  QString m_text;
  std::unordered_map<const TimelineSource*, bool> m_known;
};

}  // namespace

TimelineModel::TimelineModel(const TimelineMode& mode, const Localize& localize) : m_mode(mode), m_localize(localize) {}

void TimelineModel::reload() {
  beginResetModel();
  endResetModel();
}

int TimelineModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_mode.timelineArray().rows().size());
}

QVariant TimelineModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const TimelineCell cell = m_mode.cell(rowOf(index));
  switch (role) {
    case Qt::DisplayRole:
      return qt(cell.name);
    case Qt::ToolTipRole:
      return shownToolTip(cell.name);
    case TimeRole:
      return qt(cell.time);
    case IsGroupRole:
      return cell.kind == TimelineKind::Group;
    case IsSecondaryRole:
      return cell.isSecondary;
    case Qt::AccessibleTextRole:
      return accessibleText(cell);
    default:
      return {};
  }
}

QString TimelineModel::accessibleText(const TimelineCell& cell) const {
  QStringList parts;
  if (!cell.time.empty()) parts.push_back(qt(cell.time));
  parts.push_back(qt(cell.name));
  if (cell.isSecondary) parts.push_back(qt(m_localize.disabled()));
  return parts.join(QStringLiteral(", "));
}

Qt::ItemFlags TimelineModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  const bool isGroup = m_mode.timelineArray().rows().at(rowOf(index)).kind() == TimelineKind::Group;
  const Qt::ItemFlags common = Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
  return isGroup ? common : common | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled;
}

QModelIndexList TimelineModel::match(const QModelIndex& start, int, const QVariant& value, int, Qt::MatchFlags) const {
  const auto& rows = m_mode.timelineArray().rows();
  NameSearch search(value.toString());
  for (std::size_t step = 0; step < rows.size(); ++step) {
    const std::size_t row = (rowOf(start) + step) % rows.size();
    if (search.finds(rows[row].source())) return {index(static_cast<int>(row))};
  }
  return {};
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
