#pragma once

#include <QAbstractListModel>
#include <QTreeView>
#include <QWidget>
#include <functional>

#include "core/notifications/NotificationTexts.h"
#include "core/notifications/NotificationsExclude.h"
#include "core/session/SessionContext.h"
#include "ui/notifications/NotificationsType.h"

class QPushButton;

namespace mirvel::ui {

/// The excluded prefixes, which can be edited.
class NotificationsExcludeModel final : public QAbstractListModel {
 public:
  /// Both must outlive the model.
  NotificationsExcludeModel(const Localize& localize, NotificationsExclude& exclude)
      : m_localize(localize), m_exclude(exclude) {}

  std::function<void()> prefixesChanged;  ///< called after an edit
  std::function<bool()> isEditable;

  void reload();
  /// Adds a row and returns its index.
  QModelIndex add();
  void remove(const QModelIndex& index);

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  std::int64_t idOf(const QModelIndex& index) const;

  const Localize& m_localize;
  NotificationsExclude& m_exclude;
};

/// A table that says when a row is being edited.
class PrefixTable final : public QTreeView {
  Q_OBJECT

 public:
  explicit PrefixTable(QWidget* parent = nullptr);

  bool isEditing() const { return state() == EditingState; }

 Q_SIGNALS:
  void addWanted();
  void removeWanted();
  void editingEnded();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;
};

/// The tab of the notification preferences with the excluded prefixes.
class NotificationsExcludeViewController final : public QWidget, public NotificationsType {
  Q_OBJECT

 public:
  /// Everything that the arguments refer to must outlive the tab.
  NotificationsExcludeViewController(const SessionContext& session, Exceptions& exceptions);

  /// While a row is being edited, the list is reloaded afterwards.
  void reload() override;

 private:
  void makeButtons();
  void add();
  void remove();
  void updateButtons();

  const SessionContext m_session;
  NotificationsExclude m_exclude;
  NotificationsExcludeModel m_model;
  PrefixTable* const m_table;
  QPushButton* const m_addButton;
  QPushButton* const m_deleteButton;
  bool m_isOutdated = false;
};

}  // namespace mirvel::ui
