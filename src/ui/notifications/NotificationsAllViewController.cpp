#include "ui/notifications/NotificationsAllViewController.h"

#include <QHeaderView>
#include <QScrollBar>

#include "core/session/Foundation.h"
#include "core/session/Notifications.h"
#include "ui/support/Labels.h"
#include "ui/support/QtText.h"
#include "ui/support/ShownText.h"

namespace mirvel::ui {

void NotificationsAllModel::reload() {
  beginResetModel();
  m_all.reload();
  endResetModel();
}

int NotificationsAllModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(m_all.rows().size());
}

int NotificationsAllModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : Failures + 1;
}

const NotificationsAll::Row& NotificationsAllModel::rowOf(const QModelIndex& index) const {
  return m_all.rows().at(static_cast<std::size_t>(index.row()));
}

std::optional<bool> NotificationsAllModel::stateOf(const NotificationsAll::Row& row, int column) {
  if (column == Changes) return row.tellsChanges;
  return column == Failures ? row.tellsFailures : std::nullopt;
}

QVariant NotificationsAllModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const auto& row = rowOf(index);
  const auto state = stateOf(row, index.column());
  switch (role) {
    case Qt::DisplayRole:
      return index.column() == Name ? QVariant(shownText(row.name)) : QVariant();
    case Qt::ToolTipRole:
      return shownToolTip(row.toolTip);
    case Qt::CheckStateRole:
      return state ? QVariant(*state ? Qt::Checked : Qt::Unchecked) : QVariant();
    case Qt::AccessibleTextRole:
      if (index.column() == Name) return qt(row.name);
      return state ? QVariant(qt(*state ? m_localize.on() : m_localize.off())) : QVariant();
    default:
      return {};
  }
}

bool NotificationsAllModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::CheckStateRole || !checkIndex(index, CheckIndexOption::IndexIsValid)) return false;
  const std::string name = rowOf(index).name;
  const bool isOn = value.toInt() == Qt::Checked;
  if (index.column() == Changes) m_all.setTellsChanges(name, isOn);
  if (index.column() == Failures) m_all.setTellsFailures(name, isOn);
  emit dataChanged(this->index(0, 0), this->index(rowCount() - 1, Failures));  // other rows may have the same name
  return true;
}

QVariant NotificationsAllModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || (role != Qt::DisplayRole && role != Qt::AccessibleTextRole)) return {};
  const NotificationTexts texts(m_localize);
  switch (section) {
    case Name:
      return qt(m_localize.name());
    case Changes:
      return qt(texts.changes());
    case Failures:
      return qt(texts.failures());
    default:
      return {};
  }
}

Qt::ItemFlags NotificationsAllModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  const auto& row = rowOf(index);
  const bool isEnabled = index.column() == Failures ? row.areFailuresEnabled : row.isEnabled;
  Qt::ItemFlags result = Qt::ItemNeverHasChildren;
  if (isEnabled) result |= Qt::ItemIsEnabled;
  if (stateOf(row, index.column())) result |= Qt::ItemIsUserCheckable;
  return result;
}

NotificationsAllViewController::NotificationsAllViewController(const SessionContext& session, Exceptions& exceptions)
    : m_texts(session.foundation.localize),
      m_all(session, exceptions),
      m_model(session.foundation.localize, m_all),
      m_subscriptions{session.notifications.jobsUpdated.subscribe([this] { reload(); }),
                      session.notifications.updateNotifications.subscribe([this] { reload(); })} {
  setObjectName(QStringLiteral("allJobs"));
  setAccessibleName(qt(m_texts.all()));
  setModel(&m_model);
  setItemDelegate(new NotificationRows(this));
  setRootIsDecorated(false);
  setUniformRowHeights(true);
  setAllColumnsShowFocus(false);
  setSelectionMode(NoSelection);
  setTextElideMode(Qt::ElideMiddle);
  header()->setStretchLastSection(false);
  header()->setSectionsMovable(false);
  header()->setSectionResizeMode(NotificationsAllModel::Name, QHeaderView::Stretch);
  for (const int column : {NotificationsAllModel::Changes, NotificationsAllModel::Failures}) {
    header()->setSectionResizeMode(column, QHeaderView::ResizeToContents);
  }
}

void NotificationsAllViewController::reload() {
  const QModelIndex current = currentIndex();
  const int row = current.row(), column = current.column(), position = verticalScrollBar()->value();
  m_model.reload();
  if (row >= 0) setCurrentIndex(m_model.index(row, column));
  verticalScrollBar()->setValue(position);
}

void NotificationsAllViewController::paintEvent(QPaintEvent* event) {
  QTreeView::paintEvent(event);
  if (m_model.rowCount() == 0) drawEmptyLabel(*viewport(), qt(m_texts.noJobs()));
}

}  // namespace mirvel::ui
