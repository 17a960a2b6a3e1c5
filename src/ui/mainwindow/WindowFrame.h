#pragma once

#include <QMainWindow>
#include <QSplitter>

#include "core/support/Defaults.h"

namespace mirvel::ui {

/// Gives the window the place and the split that it had when it was last closed. False if nothing is known of it, or
/// the screen isn't there any more.
bool restoreFrame(QMainWindow& window, QSplitter& splitter, const Defaults& defaults);
/// Keeps them. Settings that can't be written cost just that.
void saveFrame(const QMainWindow& window, const QSplitter& splitter, Defaults& defaults);

}  // namespace mirvel::ui
