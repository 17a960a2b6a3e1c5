#pragma once

#include <QIcon>
#include <QString>

namespace mirvel::ui {

/// The icons in the program's resources.
namespace OwnIcons {

/// An icon with its own colours; null if there is none of this name.
QIcon color(const QString& name);
/// An icon drawn in the text colour; null if there is none of this name.
QIcon symbolic(const QString& name);

/// The icon of the application.
QIcon application();

/// Whether the name is that of an icon of ours, which no theme replaces.
bool isOurs(const QString& name);

/// Whether the desktop's icon theme has all coloured icons (or all symbolic ones, respectively) that the program uses.
/// Icons of two designs don't mix well, so either all come from the theme or none.
bool themeHasAllColor();
bool themeHasAllSymbolic();

}  // namespace OwnIcons

}  // namespace mirvel::ui
