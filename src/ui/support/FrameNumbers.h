#pragma once

#include <QList>
#include <optional>
#include <string>

namespace mirvel::ui {

/// Parses the numbers of a stored position or size. Returns an empty list if there is none or it is malformed.
QList<int> numbersIn(const std::optional<std::string>& text);
std::string textOf(const QList<int>& numbers);

}  // namespace mirvel::ui
