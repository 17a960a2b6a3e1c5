#pragma once

#include <QAbstractListModel>

#include "core/mainwindow/GridMode.h"

namespace mirvel::ui {

class IconLoader;

/// Presents the rows of grid mode to a view: the items of all groups in one list. The contents come from `GridMode`.
class GridModel final : public QAbstractListModel {
 public:
  /// In addition to the standard roles: the icon of the badge, and whether the name is drawn in the secondary colour.
  enum Role { BadgeRole = Qt::UserRole, FailedRole, SecondaryRole };

  /// All arguments must outlive the model.
  GridModel(const Localize& localize, const GridMode& mode, IconLoader& icons);

  /// Resets the model after the rows have changed.
  void reload();
  /// Notifies the view of changed data in one row.
  void reloadRow(int row);

  IndexPath path(int row) const;
  int row(IndexPath path) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QStringList mimeTypes() const override;
  QMimeData* mimeData(const QModelIndexList& indexes) const override;
  Qt::DropActions supportedDragActions() const override { return Qt::CopyAction; }

 private:
  QString description(IndexPath path, const GridItem& item) const;

  const Localize& m_localize;
  const GridMode& m_mode;
  IconLoader& m_icons;
};

}  // namespace mirvel::ui
