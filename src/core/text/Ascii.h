#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

/// Classification and case of ASCII characters, independent of the locale, unlike <cctype>. Bytes above 0x7F, which
/// occur in UTF-8, belong to no class and are never changed.
namespace mirvel::Ascii {

/// Whether the character is ASCII at all.
constexpr bool holds(char c) {
  return (static_cast<unsigned char>(c) & 0x80U) == 0;
}
/// Whether all characters are.
inline bool holds(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return holds(c); });
}

constexpr char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
constexpr char upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
// 0 to 9, and A to Z in either case.
constexpr bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
constexpr bool isLetter(char c) {
  return lower(c) >= 'a' && lower(c) <= 'z';
}
/// The value of a hexadecimal digit in either case; nullopt for any other character.
constexpr std::optional<unsigned> hexValue(char c) {
  if (isDigit(c)) return static_cast<unsigned>(c - '0');
  const char letter = lower(c);
  if (letter >= 'a' && letter <= 'f') return static_cast<unsigned>(letter - 'a') + 10U;
  return std::nullopt;
}
/// The text with its ASCII letters in lower case.
inline std::string lower(std::string_view text) {
  std::string result(text);
  for (char& c : result) c = lower(c);
  return result;
}

}  // namespace mirvel::Ascii
