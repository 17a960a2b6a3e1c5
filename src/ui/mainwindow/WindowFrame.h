#pragma once

#include <QMainWindow>
#include <QSplitter>

#include "core/settings/Defaults.h"

namespace mirvel::ui {

/// The frame, moved and made smaller as far as it must be to lie within the place.
QRect fitted(const QRect& frame, const QRect& place);

/// A size for a window without a stored frame: as wished, as far as the screen has room for it.
void resizeToFit(QMainWindow& window, QSize wished);
/// Gives the window the place and the split that it had when it was last closed, on a smaller screen as far as there is
/// room. False if nothing is known of it, or the screen isn't there any more.
bool restoreFrame(QMainWindow& window, QSplitter& splitter, const Defaults& defaults);
/// Keeps them. Settings that can't be written cost just that.
void saveFrame(const QMainWindow& window, const QSplitter& splitter, Defaults& defaults);

}  // namespace mirvel::ui
