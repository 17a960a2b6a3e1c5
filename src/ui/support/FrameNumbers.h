#pragma once

#include <QList>
#include <optional>
#include <string>

namespace mirvel::ui {

/// The numbers of a place or a size, as the settings hold them. Empty if there are none, or anything else stands there.
QList<int> numbersIn(const std::optional<std::string>& text);
std::string textOf(const QList<int>& numbers);

}  // namespace mirvel::ui
