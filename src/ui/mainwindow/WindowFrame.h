#pragma once

#include <QMainWindow>
#include <QSplitter>

#include "core/settings/Defaults.h"

namespace mirvel::ui {

/// The frame, moved and shrunk as far as necessary to fit into `place`.
QRect fitted(const QRect& frame, const QRect& place);

/// Resizes a window without a stored frame to the wished size, as far as the screen has room for it.
void resizeToFit(QMainWindow& window, QSize wished);
/// Restores the position, size and split from when the window was last closed, reduced to fit a smaller screen. Returns
/// false if nothing is stored or the screen no longer exists.
bool restoreFrame(QMainWindow& window, QSplitter& splitter, const Defaults& defaults);
/// Stores position, size and split. Failures to write the settings are ignored, since nothing else depends on them.
void saveFrame(const QMainWindow& window, const QSplitter& splitter, Defaults& defaults);

}  // namespace mirvel::ui
