#pragma once

#include <QString>
#include <string_view>

namespace mirvel::ui {

/// A text for display, truncated with an ellipsis if it is longer than anyone would read, because laying it out would
/// take seconds.
QString shownText(std::string_view text);
/// The same for a tool tip, with markup escaped.
QString shownToolTip(std::string_view text);

/// Makes a path run from left to right within any text (Unicode Standard Annex 9, isolates).
QString leftToRight(const QString& path);

}  // namespace mirvel::ui
