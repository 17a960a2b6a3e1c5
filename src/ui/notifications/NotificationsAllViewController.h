#pragma once

#include <QAbstractTableModel>
#include <QTreeView>
#include <array>

#include "core/notifications/NotificationTexts.h"
#include "core/notifications/NotificationsAll.h"
#include "ui/notifications/NotificationsType.h"

namespace mirvel::ui {

/// The rows of all jobs, with a box for each kind of notification.
class NotificationsAllModel final : public QAbstractTableModel {
 public:
  enum Column { Name, Changes, Failures };

  /// Both must outlive the model.
  NotificationsAllModel(const Localize& localize, NotificationsAll& all) : m_localize(localize), m_all(all) {}

  void reload();

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  const NotificationsAll::Row& rowOf(const QModelIndex& index) const;
  static std::optional<bool> stateOf(const NotificationsAll::Row& row, int column);

  const Localize& m_localize;
  NotificationsAll& m_all;
};

/// The tab of the notification preferences that lists all jobs.
class NotificationsAllViewController final : public QTreeView, public NotificationsType {
  Q_OBJECT

 public:
  /// Everything that the arguments refer to must outlive the tab.
  NotificationsAllViewController(const SessionContext& session, Exceptions& exceptions);

  /// Keeps the row that has the focus, and the scroll position.
  void reload() override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const NotificationTexts m_texts;
  NotificationsAll m_all;
  NotificationsAllModel m_model;
  std::array<Subscription, 2> m_subscriptions;
};

}  // namespace mirvel::ui
