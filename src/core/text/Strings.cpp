#include "core/text/Strings.h"

#include <algorithm>
#include <cstring>

#include "core/text/Ascii.h"
#include "core/text/Bytes.h"

namespace mirvel::String {

namespace {

bool isContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

bool holdsAny(std::string_view text, std::string_view characters) {
  return text.find_first_of(characters) != std::string_view::npos;
}

/// A character that could be part of the same path name as its neighbour.
bool isNameCharacter(char c) {
  return Ascii::isLetter(c) || Ascii::isDigit(c) || static_cast<unsigned char>(c) >= 0x80U ||
         std::string_view("._-~").find(c) < 4;
}

bool standsAlone(std::string_view text, std::size_t at, std::size_t length) {
  const bool begins = at == 0 || !(isNameCharacter(text[at - 1]) || text[at - 1] == '/');
  const std::size_t end = at + length;
  return begins && (end == text.size() || !isNameCharacter(text[end]));
}

}  // namespace

std::string quote(std::string_view path) {
  if (!holdsAny(path, "\"$`\\")) return '"' + std::string(path) + '"';
  if (!holdsAny(path, "'")) return '\'' + std::string(path) + '\'';
  std::string result = "\"";
  for (const char c : path) {
    if (holdsAny(std::string_view(&c, 1), "\"$`\\")) result += '\\';
    result += c;
  }
  return result + '"';
}

std::string shellWord(std::string_view text) {
  constexpr std::string_view special = " \t\r\n\"'\\$`*?[]{}()<>|&;!#";
  return text.empty() || holdsAny(text, special) ? quote(text) : std::string(text);
}

std::string quoteWithBackslashes(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') result += '\\';
    result += c;
  }
  return result + '"';
}

std::string_view trim(std::string_view text, bool alsoNewline) {
  const std::string_view cut = alsoNewline ? " \t\r\n" : " \t";
  const auto first = text.find_first_not_of(cut);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(cut) - first + 1);
}

std::string_view lastPathComponent(std::string_view path) {
  const auto last = path.find_last_not_of('/');
  if (last == std::string_view::npos) return path.substr(0, 1);
  const auto slash = path.find_last_of('/', last);
  const auto first = slash == std::string_view::npos ? 0 : slash + 1;
  return path.substr(first, last - first + 1);
}

std::string shortenHomeFolder(std::string text, std::string_view home) {
  while (!home.empty() && home.back() == '/') home.remove_suffix(1);
  // `memmem`, because `find` stops at each slash, and nearly no text has the home folder.
  if (home.empty() || !::memmem(text.data(), text.size(), home.data(), home.size())) return text;
  auto at = text.find(home);
  std::string result;
  std::size_t done = 0;
  for (; at != std::string::npos; at = text.find(home, at + home.size())) {
    if (!standsAlone(text, at, home.size())) continue;
    result.append(text, done, at - done).append("~");
    done = at + home.size();
  }
  return result.append(text, done);
}

std::size_t characterCount(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) { return !isContinuation(c); }));
}

std::string_view firstCharacters(std::string_view text, std::size_t count) {
  std::size_t end = 0;
  for (; end < text.size(); ++end) {
    if (isContinuation(text[end])) continue;
    if (count == 0) break;
    --count;
  }
  return text.substr(0, end);
}

std::string_view firstBytes(std::string_view text, std::size_t most) {
  if (text.size() <= most) return text;
  while (most > 0 && isContinuation(text[most])) --most;
  return text.substr(0, most);
}

std::string_view lastBytes(std::string_view text, std::size_t most) {
  if (text.size() <= most) return text;
  std::string_view end = text.substr(text.size() - most);
  while (!end.empty() && isContinuation(end.front())) end.remove_prefix(1);
  return end;
}

std::string percentEncoded(std::string_view text, std::string_view plain) {
  std::string result;
  for (const char c : text) {
    const bool isPlain = Ascii::isLetter(c) || Ascii::isDigit(c) || plain.find(c) != std::string_view::npos;
    result += isPlain ? std::string(1, c) : '%' + toHex({&c, 1});
  }
  return result;
}

}  // namespace mirvel::String
