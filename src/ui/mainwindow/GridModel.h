#pragma once

#include <QAbstractListModel>

#include "core/app/Program.h"
#include "core/mainwindow/GridMode.h"
#include "ui/support/IconLoader.h"

namespace mirvel::ui {

/// The items of grid mode, for a view: those of all groups, one after the other. It computes nothing.
class GridModel final : public QAbstractListModel {
 public:
  /// Besides the usual roles: the badge on an icon, and whether the name is in the quieter colour.
  enum Role { BadgeRole = Qt::UserRole, SecondaryRole };

  GridModel(const Program& program, const GridMode& mode, IconLoader& icons);

  /// The items are others now.
  void reload();
  /// One item looks different.
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

  const Program& m_program;
  const GridMode& m_mode;
  IconLoader& m_icons;
};

}  // namespace mirvel::ui
