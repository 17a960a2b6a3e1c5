#pragma once

#include <QMimeData>
#include <QStringList>
#include <optional>

#include "core/files/URL.h"

namespace mirvel::ui {

/// The one form in which a job's file is dragged.
QStringList fileDragTypes();

/// What a drag carries for a job's file. Null for none, and for a path that Qt can't hold: nothing is dragged then. The
/// caller owns it.
QMimeData* fileDrag(const std::optional<URL>& url);

}  // namespace mirvel::ui
