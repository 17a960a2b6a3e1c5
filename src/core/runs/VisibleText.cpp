#include "core/runs/VisibleText.h"

#include <algorithm>

#include "core/text/Ascii.h"
#include "core/text/Bytes.h"

namespace mirvel {

namespace {

bool isControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (byte < 0x20 && c != '\n' && c != '\t') || byte == 0x7F;
}

/// As terminals and editors show them. Not every font has the pictures of control characters.
void appendCaret(std::string& text, char control) {
  text += '^';
  text += static_cast<char>(static_cast<unsigned char>(control) ^ 0x40U);
}

/// In the notation of Unicode.
void appendNumber(std::string& text, unsigned character) {
  std::string digits = toHex(character, 4);
  std::transform(digits.begin(), digits.end(), digits.begin(), Ascii::upper);
  text += "‹U+" + digits + "›";
}

/// The code point of the character at the beginning if it has two or three bytes; 0 otherwise.
unsigned shortCharacter(std::string_view text) {
  const auto at = [&](std::size_t index) -> unsigned {
    return index < text.size() ? static_cast<unsigned char>(text[index]) : 0;
  };
  const auto continues = [&](std::size_t index) { return (at(index) & 0xC0U) == 0x80U; };
  if ((at(0) & 0xE0U) == 0xC0U && continues(1)) return (at(0) & 0x1FU) << 6U | (at(1) & 0x3FU);
  if ((at(0) & 0xF0U) != 0xE0U || !continues(1) || !continues(2)) return 0;
  return (at(0) & 0x0FU) << 12U | (at(1) & 0x3FU) << 6U | (at(2) & 0x3FU);
}

/// Controls of the second set, marks and embeddings of directions, and separators of lines and paragraphs.
bool isFormat(unsigned character) {
  return (character >= 0x80 && character < 0xA0) || character == 0x61C ||
         (character >= 0x200E && character <= 0x200F) || (character >= 0x2028 && character <= 0x202E) ||
         (character >= 0x2066 && character <= 0x2069);
}

}  // namespace

std::string visibleText(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '\r' && text.substr(i + 1, 1) == "\n") continue;
    if (isControl(c)) {
      appendCaret(result, c);
      continue;
    }
    const unsigned character = static_cast<unsigned char>(c) < 0xC2 ? 0 : shortCharacter(text.substr(i, 3));
    if (!isFormat(character)) {
      result += c;
      continue;
    }
    appendNumber(result, character);
    i += character < 0x800 ? 1 : 2;
  }
  return result;
}

}  // namespace mirvel
