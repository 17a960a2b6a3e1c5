#pragma once

#include <QIcon>
#include <QStringList>
#include <functional>
#include <optional>

#include "core/base/Image.h"
#include "core/files/URL.h"

namespace mirvel {
class JobMenu;
}

class QAbstractItemView;
class QAbstractScrollArea;
class QMimeData;
class QPoint;

namespace mirvel::ui {

class IconLoader;

/// Sets up what all views of jobs have in common: single selection, no editing, a context menu, and dragging of job
/// files.
void prepareJobView(QAbstractItemView& view);

/// Installs a selection model that selects another row only if `mayChange` returns true. `didChange` receives the newly
/// selected row.
void guardSelection(QAbstractItemView& view, std::function<bool()> mayChange, std::function<void(int row)> didChange);

/// The icon of a job; the generic program icon if it has none or it can't be loaded.
QIcon jobIcon(IconLoader& icons, const std::optional<Image>& image);

/// The MIME types of a dragged job.
QStringList fileDragTypes();

/// The drag data for a job's file. Null, so that no drag starts, without a URL or if Qt can't represent the path. The
/// caller owns the result.
QMimeData* fileDrag(const std::optional<URL>& url);

/// Shows the menu of a job at a position in the viewport of `view`. Does nothing if the menu is empty.
void popUp(const JobMenu& items, QAbstractScrollArea& view, const QPoint& position);

}  // namespace mirvel::ui
