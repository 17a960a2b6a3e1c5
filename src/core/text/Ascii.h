#pragma once

#include <algorithm>
#include <string>
#include <string_view>

/// Texts of which only the letters, digits and signs of ASCII count; other bytes stay as they are.
namespace mirvel::Ascii {

constexpr bool holds(char c) {
  return (static_cast<unsigned char>(c) & 0x80U) == 0;
}
inline bool holds(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return holds(c); });
}

constexpr char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
constexpr bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
constexpr bool isLetter(char c) {
  return lower(c) >= 'a' && lower(c) <= 'z';
}
inline std::string lower(std::string_view text) {
  std::string result(text);
  for (char& c : result) c = lower(c);
  return result;
}

}  // namespace mirvel::Ascii
