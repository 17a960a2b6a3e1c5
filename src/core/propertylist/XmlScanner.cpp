#include "core/propertylist/XmlScanner.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "core/propertylist/Encoding.h"
#include "core/propertylist/ReadFailure.h"

namespace mirvel::plist {

namespace {

constexpr std::array<std::string_view, 11> names = {"array", "data",  "date", "dict",   "false", "integer",
                                                    "key",   "plist", "real", "string", "true"};

constexpr bool isWhite(char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; }
constexpr bool endsName(char c) { return c == '>' || c == '/' || isWhite(c); }

/// A character as a message shows it: `x`, or its number where it can't be shown.
std::string shown(char c) {
  if (c > ' ' && c < 0x7F) return std::string("`") + c + '`';
  constexpr std::string_view digits = "0123456789ABCDEF";
  const auto byte = static_cast<unsigned char>(c);
  return std::string("the byte 0x") + digits[byte >> 4U] + digits[byte & 15U];
}

/// The first byte from `at` on that is `<`, `&` or beyond ASCII.
const char* findSpecial(const char* at, const char* end) {
  constexpr std::uint64_t ones = 0x0101010101010101U;
  constexpr std::uint64_t tops = 0x8080808080808080U;
  if constexpr (std::endian::native == std::endian::little) {
    while (end - at >= 8) {
      std::uint64_t word = 0;
      std::memcpy(&word, at, 8);
      // A byte that equals the wanted one is zero after the xor, and only a zero byte borrows its top bit here.
      const std::uint64_t less = word ^ (ones * '<');
      const std::uint64_t ampersand = word ^ (ones * '&');
      const std::uint64_t found = (((less - ones) & ~less) | ((ampersand - ones) & ~ampersand) | word) & tops;
      if (found != 0) return at + std::countr_zero(found) / 8;
      at += 8;
    }
  }
  while (at < end && *at != '<' && *at != '&' && (*at & 0x80) == 0) ++at;
  return at;
}

}  // namespace

std::string_view elementName(Element element) { return names[static_cast<std::size_t>(element)]; }

void XmlScanner::fail(std::string message, const char* place) const {
  throw ReadFailure{.message = std::move(message), .offset = offsetOf(place)};
}

void XmlScanner::failAtEnd(std::string_view expected) const {
  fail("the text ends where " + std::string(expected) + " was expected", m_end);
}

bool XmlScanner::startsWith(std::string_view prefix) const {
  return static_cast<std::size_t>(m_end - m_at) >= prefix.size() &&
         std::memcmp(m_at, prefix.data(), prefix.size()) == 0;
}

void XmlScanner::skipWhite() {
  while (m_at < m_end && isWhite(*m_at)) ++m_at;
}

void XmlScanner::skipUntil(std::string_view end, std::string_view what) {
  const char* const start = m_at;
  const char* const found = std::search(m_at, m_end, end.begin(), end.end());
  if (found == m_end) fail(std::string(what) + " isn't closed by `" + std::string(end) + '`', start);
  m_at = found + end.size();
}

void XmlScanner::skipComment() {
  m_at += 4;
  skipUntil("-->", "the comment");
}

void XmlScanner::skipInstruction() {
  m_at += 2;
  skipUntil("?>", "the processing instruction");
}

/// Passes over one comment or processing instruction, if one is here.
bool XmlScanner::skipMarkup() {
  if (startsWith("<!--")) {
    skipComment();
  } else if (startsWith("<?")) {
    skipInstruction();
  } else {
    return false;
  }
  return true;
}

void XmlScanner::skipDoctype() {
  const char* const start = m_at;
  if (!startsWith("<!DOCTYPE")) fail("`<!` opens neither a comment nor a DOCTYPE", start);
  while (m_at < m_end && *m_at != '>' && *m_at != '[') ++m_at;
  if (m_at == m_end) fail("the DOCTYPE isn't closed by `>`", start);
  if (*m_at == '[') fail("the DOCTYPE has declarations of its own, which property lists can't have", m_at);
  ++m_at;
}

void XmlScanner::skipProlog() {
  for (;;) {
    skipWhite();
    if (m_at == m_end) failAtEnd("<plist>");
    if (*m_at != '<') fail("an XML property list can't start with " + shown(*m_at), m_at);
    if (skipMarkup()) continue;
    if (!startsWith("<!")) return;
    skipDoctype();
  }
}

void XmlScanner::skipToTag() {
  for (;;) {
    skipWhite();
    if (m_at == m_end) failAtEnd("a tag");
    if (*m_at != '<') fail(shown(*m_at) + " stands where a tag was expected", m_at);
    if (m_end - m_at < 2 || (m_at[1] != '!' && m_at[1] != '?')) return;
    if (!skipMarkup()) fail("`<!` opens no comment", m_at);
  }
}

bool XmlScanner::onlyBlankLeft() {
  try {
    do {
      skipWhite();
    } while (skipMarkup());
  } catch (const ReadFailure&) {
    return false;  // an unclosed comment is something left, and nothing worse behind the list
  }
  return m_at == m_end;
}

Element XmlScanner::elementOf(const char* name, std::size_t length) const {
  const std::string_view text(name, length);
  const auto is = [&](Element element) { return text == elementName(element); };
  if (length == 3 && is(Element::Key)) return Element::Key;
  if (length == 6 && is(Element::String)) return Element::String;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (is(static_cast<Element>(i))) return static_cast<Element>(i);
  }
  constexpr std::size_t longest = 40;
  if (isUtf8(text.substr(0, longest))) fail("<" + std::string(text.substr(0, longest)) + "> is no element of a property list", name - 1);
  fail("there is no element of a property list in this tag", name - 1);
}

XmlScanner::Tag XmlScanner::openTag() {
  const char* const name = m_at + 1;
  const char* end = name;
  while (end < m_end && !endsName(*end)) ++end;
  if (end == m_end) fail("the tag isn't closed by `>`", m_at);
  const Element element = elementOf(name, static_cast<std::size_t>(end - name));
  while (end < m_end && *end != '>') ++end;
  if (end == m_end) fail("the tag isn't closed by `>`", m_at);
  m_at = end + 1;
  return {.element = element, .isEmpty = end[-1] == '/'};
}

void XmlScanner::closeTag(Element element) {
  const std::string_view name = elementName(element);
  const std::size_t length = name.size() + 3;
  if (static_cast<std::size_t>(m_end - m_at) >= length && m_at[0] == '<' && m_at[1] == '/' &&
      std::memcmp(m_at + 2, name.data(), name.size()) == 0 && m_at[length - 1] == '>') {
    m_at += length;
  } else {
    unusualCloseTag(name);
  }
}

/// A closing tag with white space before its end, or none.
void XmlScanner::unusualCloseTag(std::string_view name) {
  const std::string expected = "</" + std::string(name) + '>';
  if (m_at == m_end) failAtEnd(expected);
  const char* const start = m_at;
  if (!startsWith("</")) fail("something else stands where " + expected + " was expected", start);
  m_at += 2;
  const bool isName = startsWith(name);
  if (isName) {
    m_at += name.size();
    skipWhite();
  }
  if (!isName || m_at == m_end || *m_at != '>') {
    fail("this tag doesn't close <" + std::string(name) + ">: " + expected + " was expected", start);
  }
  ++m_at;
}

std::string_view XmlScanner::rawText() {
  const char* const start = m_at;
  const void* const found = std::memchr(m_at, '<', static_cast<std::size_t>(m_end - m_at));
  if (!found) failAtEnd("a closing tag");
  m_at = static_cast<const char*>(found);
  return {start, static_cast<std::size_t>(m_at - start)};
}

std::string_view XmlScanner::text(bool& isPlain) {
  const char* const start = m_at;
  const char* at = findSpecial(m_at, m_end);
  isPlain = at < m_end && *at == '<' && (m_end - at < 2 || at[1] != '!');
  if (!isPlain) return complexText(start);
  m_at = at;
  return {start, static_cast<std::size_t>(at - start)};
}

/// Text that isn't plain ASCII up to its closing tag.
std::string_view XmlScanner::complexText(const char* start) {
  m_buffer.clear();
  const char* pending = start;  // from here on nothing is in the buffer yet
  for (;;) {
    m_at = std::find_if(m_at, m_end, [](char c) { return c == '<' || c == '&'; });
    if (m_at == m_end) failAtEnd("a closing tag");
    if (*m_at == '<' && (m_end - m_at < 2 || m_at[1] != '!')) break;
    m_buffer.append(pending, m_at);
    if (*m_at == '&') {
      appendReference();
    } else {
      appendCData();
    }
    pending = m_at;
  }
  m_buffer.append(pending, m_at);
  if (!isUtf8(m_buffer)) fail("the text here isn't valid in its encoding", start);
  return m_buffer;
}

void XmlScanner::appendCData() {
  const char* const start = m_at;
  constexpr std::string_view opening = "<![CDATA[";
  if (!startsWith(opening)) fail("only text and CDATA sections can stand here", start);
  m_at += opening.size();
  const char* const content = m_at;
  skipUntil("]]>", "the CDATA section");
  m_buffer.append(content, m_at - 3);
}

void XmlScanner::appendReference() {
  struct Entity {
    std::string_view text;
    char character;
  };
  static constexpr std::array<Entity, 5> entities = {
      {{"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}}};
  for (const auto& [reference, character] : entities) {
    if (!startsWith(reference)) continue;
    m_buffer += character;
    m_at += reference.size();
    return;
  }
  if (!startsWith("&#")) fail("`&` opens no reference that property lists know; a plain one is written `&amp;`", m_at);
  appendCharacterReference();
}

void XmlScanner::appendCharacterReference() {
  const char* const start = m_at;
  m_at += 2;
  const std::uint32_t base = m_at < m_end && *m_at == 'x' ? 16 : 10;
  if (base == 16) ++m_at;
  std::uint32_t character = 0;
  const char* const digits = m_at;
  for (; m_at < m_end && *m_at != ';'; ++m_at) {
    const char c = *m_at;
    std::uint32_t digit = 99;
    if (c >= '0' && c <= '9') digit = static_cast<std::uint32_t>(c - '0');
    if (c >= 'a' && c <= 'f') digit = static_cast<std::uint32_t>(c - 'a') + 10;
    if (c >= 'A' && c <= 'F') digit = static_cast<std::uint32_t>(c - 'A') + 10;
    if (digit >= base) fail("the character reference has " + shown(c) + " where a digit or `;` was expected", start);
    character = character * base + digit;
    if (character > 0x10FFFF) fail("the character reference is beyond U+10FFFF", start);
  }
  if (m_at == m_end) failAtEnd("`;`");
  if (m_at == digits) fail("the character reference has no number", start);
  if (!appendCharacter(m_buffer, character)) fail("the character reference names half of a surrogate pair", start);
  ++m_at;
}

}  // namespace mirvel::plist
