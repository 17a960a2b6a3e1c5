#pragma once

#include <QString>
#include <string_view>

class QWidget;

namespace mirvel::ui {

/// A text to be shown, cut with an ellipsis where it is longer than anyone reads: to lay it out would take seconds.
QString shownText(std::string_view text);
/// Likewise, for a tool tip: a text that looks like markup is shown as it stands.
QString shownToolTip(std::string_view text);

/// A help text as a tool tip: literal, and wrapped at a readable width, which Qt does for rich text only.
QString helpText(std::string_view help);
/// Gives a control its help text, on hover and for assistive technology.
void setHelp(QWidget& control, std::string_view help);

/// A path to be shown: it runs from left to right in any text (Unicode Standard Annex 9, isolates).
QString leftToRight(const QString& path);

}  // namespace mirvel::ui
