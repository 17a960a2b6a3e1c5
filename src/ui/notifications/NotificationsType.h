#pragma once

#include <QStyledItemDelegate>

namespace mirvel::ui {

/// Draws the rows of the tabs: high enough for an editor, with boxes that are visible in any palette.
class NotificationRows final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  /// The editor is named after the column.
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

/// A tab of the notification preferences.
class NotificationsType {
 public:
  NotificationsType() = default;
  virtual ~NotificationsType() = default;
  NotificationsType(const NotificationsType&) = delete;
  NotificationsType& operator=(const NotificationsType&) = delete;

  /// Shows what the exceptions, the settings and the catalogue have now.
  virtual void reload() = 0;
};

}  // namespace mirvel::ui
