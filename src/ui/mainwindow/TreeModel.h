#pragma once

#include <QAbstractItemModel>

#include "core/mainwindow/TreeMode.h"

namespace mirvel::ui {

class IconLoader;

/// Presents the rows of tree mode to a view: groups, with their jobs as children. The contents come from `TreeMode`.
class TreeModel final : public QAbstractItemModel {
 public:
  /// In addition to the standard roles: the text on a group's button, and whether a text is drawn in the secondary
  /// colour.
  enum Role { CountRole = Qt::UserRole, MarkRole, SecondaryRole };

  /// Both arguments must outlive the model.
  TreeModel(const TreeMode& mode, IconLoader& icons);

  /// Resets the model after the rows have changed.
  void reload();
  /// Notifies the view of changed data in one row.
  void reloadRow(const QModelIndex& index);

  static bool isGroup(const QModelIndex& index) { return index.isValid() && !index.parent().isValid(); }
  static IndexPath path(const QModelIndex& index);
  QModelIndex indexOf(IndexPath path) const;

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  bool hasChildren(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QStringList mimeTypes() const override;
  QMimeData* mimeData(const QModelIndexList& indexes) const override;
  Qt::DropActions supportedDragActions() const override { return Qt::CopyAction; }

 private:
  const TreeMode& m_mode;
  IconLoader& m_icons;
};

}  // namespace mirvel::ui
