#pragma once

#include <string>
#include <string_view>

namespace mirvel::ctl {

enum class Colour { Red = 31, Green = 32, Yellow = 33 };

/// Wraps the text in the escape sequence of the colour, or returns it as it is without `hasColour`.
inline std::string coloured(std::string_view text, Colour colour, bool hasColour) {
  if (!hasColour) return std::string(text);
  return "\x1b[" + std::to_string(static_cast<int>(colour)) + 'm' + std::string(text) + "\x1b[0m";
}

inline std::string bold(std::string_view text, bool hasColour) {
  return hasColour ? "\x1b[1m" + std::string(text) + "\x1b[0m" : std::string(text);
}

}  // namespace mirvel::ctl
