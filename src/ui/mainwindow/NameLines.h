#pragma once

#include <QFontMetrics>
#include <QStringList>

namespace mirvel::ui {

/// A name as it stands below an icon.
struct NameLines {
  QStringList lines;      ///< one or two
  bool isElided = false;  ///< something of the name doesn't show
};

/// Breaks a name into at most two lines of a width in pixels: after a space, dot, dash or underscore, else where the
/// first line is full. What doesn't fit into the second is left out of its middle, since names begin and end with what
/// tells them apart.
NameLines nameLines(const QString& name, const QFontMetrics& metrics, int width);

}  // namespace mirvel::ui
