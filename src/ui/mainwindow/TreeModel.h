#pragma once

#include <QAbstractItemModel>

#include "core/app/Program.h"
#include "core/mainwindow/TreeMode.h"
#include "ui/support/IconLoader.h"

namespace mirvel::ui {

/// The rows of tree mode, for a view: groups, and under each its jobs. It computes nothing: every row is asked of the
/// core.
class TreeModel final : public QAbstractItemModel {
 public:
  /// Besides the usual roles: the text on the button of a group, and whether a text is in the quieter colour.
  enum Role { CountRole = Qt::UserRole, SecondaryRole };

  TreeModel(const TreeMode& mode, IconLoader& icons);

  /// The rows are others now.
  void reload();
  /// One row looks different.
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
