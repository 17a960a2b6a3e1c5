#include "ui/mainwindow/JobView.h"

#include "ui/mainwindow/GuardedSelection.h"

namespace mirvel::ui {

void prepareJobView(QAbstractItemView& view) {
  view.setSelectionMode(QAbstractItemView::SingleSelection);
  view.setEditTriggers(QAbstractItemView::NoEditTriggers);
  view.setDragEnabled(true);
  view.setDragDropMode(QAbstractItemView::DragOnly);
  view.setContextMenuPolicy(Qt::CustomContextMenu);
}

void guardSelection(QAbstractItemView& view, std::function<bool()> mayChange, std::function<void(int)> didChange) {
  auto* selection = new GuardedSelection(view.model(), std::move(mayChange), &view);
  view.setSelectionModel(selection);
  QObject::connect(selection, &QItemSelectionModel::selectionChanged, &view,
                   [selection, didChange = std::move(didChange)] {
                     const QModelIndexList rows = selection->selectedRows();
                     if (!rows.isEmpty()) didChange(rows.front().row());
                   });
}

}  // namespace mirvel::ui
