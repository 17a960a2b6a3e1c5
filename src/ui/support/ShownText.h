#pragma once

#include <QString>
#include <string>

namespace mirvel::ui {

/// A value as it is shown where it can only be read: of a text that nobody would read to its end, the beginning.
QString shownText(const std::string& text);

}  // namespace mirvel::ui
