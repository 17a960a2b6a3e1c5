#pragma once

#include <QFontMetrics>
#include <QStringList>

namespace mirvel::ui {

/// A name as shown below an icon.
struct NameLines {
  QStringList lines;      ///< one or two
  bool isElided = false;  ///< part of the name isn't shown
};

/// Breaks a name into at most two lines of `width` pixels: after a space or one of `.-_/:@`, or where the first line is
/// full. The second line is elided in the middle, because names differ at their beginning and end.
NameLines nameLines(const QString& name, const QFontMetrics& metrics, int width);

}  // namespace mirvel::ui
