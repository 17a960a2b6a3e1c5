#include "ui/scripts/PlainCharacters.h"

#include <QByteArrayView>
#include <algorithm>

namespace mirvel::ui {

namespace {

constexpr char16_t escapes = 0xDC00;

std::size_t sizeByFirstByte(char first) {
  const auto byte = static_cast<unsigned char>(first);
  return byte < 0xC0 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
}

/// The bytes of the character at the beginning of a text, or a single byte if that isn't valid UTF-8.
std::string_view firstCharacter(std::string_view text) {
  const std::string_view character = text.substr(0, sizeByFirstByte(text.front()));
  const QByteArrayView bytes(character.data(), static_cast<qsizetype>(character.size()));
  return bytes.isValidUtf8() ? character : text.substr(0, 1);
}

/// The code point of one UTF-8 character; 0 if the bytes aren't one.
char32_t codePoint(std::string_view character) {
  const auto first = static_cast<unsigned char>(character.front());
  if (character.size() == 1) return first < 0x80 ? first : 0;
  char32_t code = first & (0x7Fu >> character.size());
  for (const char byte : character.substr(1)) code = code << 6 | (static_cast<unsigned char>(byte) & 0x3Fu);
  return code;
}

/// Whether a document keeps the character as it is. QTextDocument uses the others to end blocks and lines.
bool isPlain(char32_t code) {
  constexpr char32_t special[] = {0, '\n', '\r', 0x2028, 0x2029, 0xFDD0, 0xFDD1};
  return std::find(std::begin(special), std::end(special), code) == std::end(special);
}

void append(QString& characters, std::string_view character) {
  const char32_t code = codePoint(character);
  if (isPlain(code)) {
    for (const char16_t unit : QChar::fromUcs4(code)) characters += QChar(unit);
    return;
  }
  for (const char byte : character) {
    characters += QChar(static_cast<char16_t>(escapes + static_cast<unsigned char>(byte)));
  }
}

bool endsLine(QChar unit) {
  return unit == QLatin1Char('\n') || unit == QChar::ParagraphSeparator || unit == QChar::LineSeparator;
}

/// Whether a unit outside of surrogate pairs represents an escaped byte.
bool isEscape(QChar unit) {
  return unit.unicode() >= escapes && unit.unicode() <= escapes + 0xFF;
}

}  // namespace

QString plainCharacters(std::string_view bytes, std::string_view lineEnd) {
  QString characters;
  characters.reserve(static_cast<qsizetype>(bytes.size()));
  while (!bytes.empty()) {
    if (bytes.starts_with(lineEnd)) {
      characters += QLatin1Char('\n');
      bytes.remove_prefix(lineEnd.size());
    } else {
      const std::string_view character = firstCharacter(bytes);
      append(characters, character);
      bytes.remove_prefix(character.size());
    }
  }
  return characters;
}

std::string bytesOf(QStringView characters, std::string_view lineEnd) {
  std::string bytes;
  qsizetype done = 0;
  const auto appendUntil = [&](qsizetype place) {
    bytes += characters.mid(done, place - done).toUtf8().toStdString();
    done = place + 1;
  };
  for (qsizetype i = 0; i < characters.size(); ++i) {
    const QChar unit = characters[i];
    if (unit.isHighSurrogate()) {
      ++i;
    } else if (endsLine(unit)) {
      appendUntil(i);
      bytes += lineEnd;
    } else if (isEscape(unit)) {
      appendUntil(i);
      bytes += static_cast<char>(unit.unicode() - escapes);
    }
  }
  appendUntil(characters.size());
  return bytes;
}

bool isWithinCharacter(std::string_view bytes, std::size_t place) {
  for (std::size_t back = 1; back <= std::min<std::size_t>(3, place); ++back) {
    if (firstCharacter(bytes.substr(place - back)).size() > back) return true;
  }
  return false;
}

}  // namespace mirvel::ui
