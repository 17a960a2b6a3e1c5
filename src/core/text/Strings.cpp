#include "core/text/Strings.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "core/text/Ascii.h"
#include "core/text/Bytes.h"

namespace mirvel::String {

namespace {

bool isContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

bool containsAny(std::string_view text, std::string_view characters) {
  return text.find_first_of(characters) != std::string_view::npos;
}

/// With a backslash before each of the special characters.
std::string inDoubleQuotes(std::string_view text, std::string_view special) {
  std::string result = "\"";
  for (const char c : text) {
    if (special.find(c) != std::string_view::npos) result += '\\';
    result += c;
  }
  return result + '"';
}

/// Whether a path component may continue with this character. Other characters, such as quotes, end a path in a
/// command.
bool isNameCharacter(char c) {
  return Ascii::isLetter(c) || Ascii::isDigit(c) || static_cast<unsigned char>(c) >= 0x80U ||
         std::string_view("._-~").find(c) < 4;
}

/// Whether the path found at `at` isn't just a part of another path, such as /Users/x in /Users/xy or /mnt/Users/x.
bool isWholePath(std::string_view text, std::size_t at, std::size_t length) {
  const bool begins = at == 0 || !(isNameCharacter(text[at - 1]) || text[at - 1] == '/');
  const std::size_t end = at + length;
  return begins && (end == text.size() || !isNameCharacter(text[end]));
}

/// Whether the mark is an accent or vowel point. Marks with a combining class below 10 (nukta, voicing mark, virama,
/// overlays) make a different letter, so they aren't ignored when searching.
bool isAccent(UChar32 c) {
  return u_charType(c) == U_NON_SPACING_MARK && u_getCombiningClass(c) >= 10;
}

icu::UnicodeString withoutAccents(const icu::UnicodeString& text) {
  icu::UnicodeString result;
  for (std::int32_t at = 0; at < text.length(); at = text.moveIndex32(at, 1)) {
    const UChar32 c = text.char32At(at);
    if (!isAccent(c)) result.append(c);
  }
  return result;
}

std::string withFirst(std::string_view text, UChar32 (*change)(UChar32)) {
  if (text.empty()) return {};
  const icu::UnicodeString whole = icu::UnicodeString::fromUTF8(text);
  icu::UnicodeString changed(change(whole.char32At(0)));
  changed.append(whole, whole.moveIndex32(0, 1), whole.length());
  std::string result;
  return changed.toUTF8String(result);
}

}  // namespace

std::string quote(std::string_view path) {
  constexpr std::string_view special = "\"$`\\";
  if (containsAny(path, special) && !containsAny(path, "'")) return '\'' + std::string(path) + '\'';
  return inDoubleQuotes(path, special);
}

std::string shellWord(std::string_view text) {
  constexpr std::string_view special = " \t\r\n\"'\\$`*?[]{}()<>|&;!#";
  return text.empty() || containsAny(text, special) ? quote(text) : std::string(text);
}

std::string quoteWithBackslashes(std::string_view text) {
  return inDoubleQuotes(text, "\"\\");
}

std::string_view trim(std::string_view text, bool alsoNewline, Edge edge) {
  const std::string_view cut = alsoNewline ? " \t\r\n" : " \t";
  if (edge != Edge::End) text.remove_prefix(std::min(text.find_first_not_of(cut), text.size()));
  return edge == Edge::Start ? text : text.substr(0, text.find_last_not_of(cut) + 1);
}

std::string_view chop(std::string_view text, std::string_view piece, Edge edge) {
  if (edge != Edge::End && text.starts_with(piece)) text.remove_prefix(piece.size());
  if (edge != Edge::Start && text.ends_with(piece)) text.remove_suffix(piece.size());
  return text;
}

std::vector<std::string_view> split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (auto end = text.find(separator); end != std::string_view::npos; end = text.find(separator)) {
    parts.push_back(text.substr(0, end));
    text.remove_prefix(end + 1);
  }
  parts.push_back(text);
  return parts;
}

std::string_view lastPathComponent(std::string_view path) {
  const auto last = path.find_last_not_of('/');
  if (last == std::string_view::npos) return path.substr(0, 1);
  const auto slash = path.find_last_of('/', last);
  const auto first = slash == std::string_view::npos ? 0 : slash + 1;
  return path.substr(first, last - first + 1);
}

std::string_view withoutExtension(std::string_view name) {
  const auto dot = name.rfind('.');
  const bool isExtension = dot != std::string_view::npos && dot != 0 && dot + 1 != name.size();
  return isExtension ? name.substr(0, dot) : name;
}

std::string shortenHomeFolder(std::string text, std::string_view home) {
  while (!home.empty() && home.back() == '/') home.remove_suffix(1);
  // `memmem`, because `find` stops at each slash, and nearly no text has the home folder.
  if (home.empty() || !::memmem(text.data(), text.size(), home.data(), home.size())) return text;
  auto at = text.find(home);
  std::string result;
  std::size_t done = 0;
  for (; at != std::string::npos; at = text.find(home, at + home.size())) {
    if (!isWholePath(text, at, home.size())) continue;
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

std::string readableText(std::string_view text, std::size_t most) {
  constexpr std::string_view replacement = "\xEF\xBF\xBD";
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t begin = at;
    UChar32 character = 0;
    U8_NEXT(bytes, at, text.size(), character);
    if (character < 0) at = begin + 1;
    const std::string_view next = character < 0 ? replacement : text.substr(begin, at - begin);
    if (next.size() > most - result.size()) break;
    result += next;
  }
  return result;
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

std::string firstUppercased(std::string_view text) {
  // Title case, not upper case: digraphs such as U+01C6 have a separate form for the first letter of a word.
  return withFirst(text, u_totitle);
}

std::string firstLowercased(std::string_view text) {
  return withFirst(text, u_tolower);
}

std::string fold(std::string_view text) {
  if (Ascii::holds(text)) return Ascii::lower(text);
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* decomposing = icu::Normalizer2::getNFDInstance(status);
  const icu::Normalizer2* composing = icu::Normalizer2::getNFCInstance(status);
  if (U_FAILURE(status)) return Ascii::lower(text);
  // Accents first, such as the dot of U+0130: folding the case of the remaining letters produces none.
  icu::UnicodeString plain = withoutAccents(decomposing->normalize(icu::UnicodeString::fromUTF8(text), status));
  std::string result;
  return composing->normalize(plain.foldCase(), status).toUTF8String(result);
}

}  // namespace mirvel::String
