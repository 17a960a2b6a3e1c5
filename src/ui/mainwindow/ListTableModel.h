#pragma once

#include <QAbstractTableModel>

#include "core/mainwindow/ListMode.h"

namespace mirvel::ui {

class IconLoader;

/// Presents the rows of list mode to a view. The contents come from `ListMode`.
class ListTableModel final : public QAbstractTableModel {
 public:
  /// All arguments must outlive the model.
  ListTableModel(const Localize& localize, const ListMode& mode, IconLoader& icons);

  /// The icon of a mark on the decoration.
  static constexpr int markRole = Qt::UserRole;

  /// Resets the model after the rows have changed.
  void reload();
  void reloadRow(int row);
  void reloadHeaders();

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QStringList mimeTypes() const override;
  QMimeData* mimeData(const QModelIndexList& indexes) const override;
  Qt::DropActions supportedDragActions() const override { return Qt::CopyAction; }

 private:
  QString accessibleText(const ListCell& cell) const;

  const Localize& m_localize;
  const ListMode& m_mode;
  IconLoader& m_icons;
};

}  // namespace mirvel::ui
