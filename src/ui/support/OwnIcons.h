#pragma once

#include <QIcon>
#include <QString>

namespace mirvel::ui {

/// The program's own pictures, in its resources.
namespace OwnIcons {

/// One with colours of its own; a null icon if there is none of that name.
QIcon color(const QString& name);
/// One in the colour of the text around it; likewise.
QIcon symbolic(const QString& name);

/// The program's.
QIcon application();

/// Whether a name means a picture of ours in any theme.
bool isOurs(const QString& name);

/// Whether the desktop's icon theme has every picture of a kind that the program has. Pictures of two families don't
/// go together, so either all are the theme's or none.
bool themeHasAllColor();
bool themeHasAllSymbolic();

}  // namespace OwnIcons

}  // namespace mirvel::ui
