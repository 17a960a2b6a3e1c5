#pragma once

#include <QItemSelectionModel>
#include <QRect>
#include <QStringList>
#include <functional>
#include <optional>

#include "core/files/URL.h"

namespace mirvel {
class JobMenu;
}

class QAbstractItemView;
class QAbstractScrollArea;
class QMimeData;
class QPoint;

namespace mirvel::ui {

/// Sets up what all views of jobs have in common: single selection, no editing, a context menu, and dragging of job
/// files.
void prepareJobView(QAbstractItemView& view);

/// Installs a selection model that selects another row only if `mayChange` returns true. `didChange` receives the newly
/// selected row.
void guardSelection(QAbstractItemView& view, std::function<bool()> mayChange, std::function<void(int row)> didChange);

/// The command for input at an index, or none if the view's own `command` would leave nothing selected: a click beside
/// the jobs, or a Control-click, would otherwise deselect the job that is shown.
QItemSelectionModel::SelectionFlags keepingSelection(const QModelIndex& index,
                                                     QItemSelectionModel::SelectionFlags command);

/// The rectangle of a mark in the lower trailing corner of an icon.
QRect cornerMark(const QRect& icon, Qt::LayoutDirection direction);

/// The MIME types of a dragged job.
QStringList fileDragTypes();

/// The drag data for a job's file. Null, so that no drag starts, without a URL or if Qt can't represent the path. The
/// caller owns the result.
QMimeData* fileDrag(const std::optional<URL>& url);

/// Shows the menu of a job at a position in the viewport of `view`. Does nothing if the menu is empty.
void popUp(const JobMenu& items, QAbstractScrollArea& view, const QPoint& position);

}  // namespace mirvel::ui
