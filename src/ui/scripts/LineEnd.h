#pragma once

#include <string_view>

namespace mirvel::ui {

/// What the first line of a text ends with: a newline, a return or both. A newline where there is one line only.
inline std::string_view lineEndOf(std::string_view text) {
  const auto end = text.find_first_of("\r\n");
  if (end == std::string_view::npos || text[end] == '\n') return "\n";
  return text.substr(end).starts_with("\r\n") ? "\r\n" : "\r";
}

}  // namespace mirvel::ui
