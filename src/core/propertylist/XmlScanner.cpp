#include "core/propertylist/XmlScanner.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "core/propertylist/Encoding.h"
#include "core/propertylist/ReadFailure.h"
#include "core/text/Ascii.h"

namespace mirvel::propertylist {

namespace {

constexpr std::array<std::string_view, 11> names = {"array", "data",  "date", "dict",   "false", "integer",
                                                    "key",   "plist", "real", "string", "true"};

constexpr bool isWhite(char c) {
  return c == ' ' || c == '\n' || c == '\t' || c == '\r';
}
constexpr bool endsName(char c) {
  return c == '>' || isWhite(c);
}

/// A character for a message: itself, or its number if it isn't visible ASCII.
std::string shown(char c) {
  if (c > ' ' && c < 0x7F) return std::string("`") + c + '`';
  return "the byte " + hexByte(static_cast<unsigned char>(c));
}

}  // namespace

// In the order of `Element`, like `names`.
const std::array<XmlScanner::CloseTag, 11> XmlScanner::closeTags = {
    closeTagOf("</array>"), closeTagOf("</data>"),    closeTagOf("</date>"), closeTagOf("</dict>"),
    closeTagOf("</false>"), closeTagOf("</integer>"), closeTagOf("</key>"),  closeTagOf("</plist>"),
    closeTagOf("</real>"),  closeTagOf("</string>"),  closeTagOf("</true>")};

std::string_view elementName(Element element) {
  return names[static_cast<std::size_t>(element)];
}

void XmlScanner::fail(std::string_view message, const char* place) const {
  propertylist::fail(message, offsetOf(place));
}

void XmlScanner::failAtEnd(std::string_view expected) const {
  fail("the text ends where " + std::string(expected) + " was expected", m_end);
}

bool XmlScanner::startsWith(std::string_view prefix) const {
  return static_cast<std::size_t>(m_end - m_at) >= prefix.size() &&
         std::memcmp(m_at, prefix.data(), prefix.size()) == 0;
}

void XmlScanner::skipUntil(std::string_view end, std::string_view what) {
  const char* const start = m_at;
  const char* const found = std::search(m_at, m_end, end.begin(), end.end());
  if (found == m_end) fail(std::string(what) + " isn't closed by `" + std::string(end) + '`', start);
  m_at = found + end.size();
}

/// Skips a comment or processing instruction. Returns false if the next token is neither.
bool XmlScanner::skipMarkup() {
  if (startsWith("<!--")) {
    m_at += 4;
    skipUntil("-->", "the comment");
  } else if (startsWith("<?")) {
    m_at += 2;
    skipUntil("?>", "the processing instruction");
  } else {
    return false;
  }
  return true;
}

void XmlScanner::skipDoctype() {
  const char* const start = m_at;
  if (!startsWith("<!DOCTYPE")) fail("`<!` starts neither a comment nor a DOCTYPE", start);
  const auto* const end = static_cast<const char*>(std::memchr(start, '>', static_cast<std::size_t>(m_end - start)));
  const char* const stop = end ? end : m_end;
  // An internal subset could define entities, which expand exponentially. macOS rejects it, too.
  const void* const bracket = std::memchr(start, '[', static_cast<std::size_t>(stop - start));
  if (bracket) {
    fail("the DOCTYPE contains declarations, which property lists can't have", static_cast<const char*>(bracket));
  }
  if (!end) fail("the DOCTYPE isn't closed by `>`", start);
  m_at = end + 1;
}

void XmlScanner::skipProlog() {
  if (startsWith(xmlDeclaration)) m_at += xmlDeclaration.size();
  for (;;) {
    skipWhite();
    if (m_at == m_end) failAtEnd("<plist>");
    if (*m_at != '<') fail("an XML property list can't start with " + shown(*m_at), m_at);
    if (skipMarkup()) continue;
    if (!startsWith("<!")) return;
    skipDoctype();
  }
}

void XmlScanner::skipToTagSlowly() {
  for (;; skipWhite()) {
    if (m_at == m_end) failAtEnd("a tag");
    if (*m_at != '<') fail("expected a tag, found " + shown(*m_at), m_at);
    if (m_at[1] != '!' && m_at[1] != '?') return;
    if (!skipMarkup()) fail("`<!` doesn't start a comment", m_at);
  }
}

bool XmlScanner::onlyBlankLeft() {
  try {
    do {
      skipWhite();
    } while (skipMarkup());
  } catch (const ReadFailure&) {
    return false;  // after the end of the list, even an unclosed comment is no error
  }
  return m_at == m_end;
}

Element XmlScanner::elementOf(std::string_view name) const {
  const auto* const found = std::find(names.begin(), names.end(), name);
  if (found != names.end()) return static_cast<Element>(found - names.begin());
  constexpr std::size_t longest = 40;
  const bool canBeShown = name.size() <= longest && isUtf8(name);
  fail('<' + std::string(canBeShown ? name : "...") + "> isn't an element of a property list", name.data() - 1);
}

XmlScanner::Tag XmlScanner::unusualOpenTag() {
  const char* const name = m_at + 1;
  const char* nameEnd = std::find_if(name, m_end, endsName);
  const char* const end = std::find(nameEnd, m_end, '>');
  if (end == m_end) fail("the tag isn't closed by `>`", m_at);
  const bool isEmpty = end[-1] == '/';
  if (isEmpty && nameEnd == end) --nameEnd;  // `<array/>`: the slash isn't part of the name
  const Element element = elementOf({name, static_cast<std::size_t>(nameEnd - name)});
  m_at = end + 1;
  return {.element = element, .isEmpty = isEmpty};
}

/// Accepts white space before the `>`, or fails.
void XmlScanner::unusualCloseTag(Element element) {
  const std::string_view name = elementName(element);
  const std::string expected = "</" + std::string(name) + '>';
  if (m_at == m_end) failAtEnd(expected);
  const char* const start = m_at;
  if (!startsWith("</")) fail("expected " + expected, start);
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

/// Text with references, CDATA sections or characters beyond ASCII. It is copied to the buffer only if it must be
/// changed; otherwise it is only checked.
XmlScanner::Text XmlScanner::complexText() {
  m_buffer.clear();
  const char* const start = m_at;
  const char* pending = start;  // the first byte that isn't in the buffer
  for (;;) {
    m_at = std::find_if(m_at, m_end, [](char c) { return c == '<' || c == '&'; });
    if (m_at == m_end) failAtEnd("a closing tag");
    if (*m_at == '<' && m_at[1] != '!') break;
    m_buffer.append(pending, m_at);
    if (*m_at == '&') {
      appendReference();
    } else {
      appendCData();
    }
    pending = m_at;
  }
  const bool isStable = pending == start;
  if (!isStable) m_buffer.append(pending, m_at);
  const std::string_view text = isStable ? std::string_view(start, static_cast<std::size_t>(m_at - start)) : m_buffer;
  if (!isUtf8(text)) fail("the text here isn't valid in its encoding", start);
  return {text, isStable};
}

void XmlScanner::appendCData() {
  const char* const start = m_at;
  constexpr std::string_view opening = "<![CDATA[";
  if (!startsWith(opening)) fail("only text and CDATA sections are allowed here", start);
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
  if (!startsWith("&#")) fail("`&` doesn't start a known reference; a plain ampersand is written `&amp;`", m_at);
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
    const auto digit = Ascii::hexValue(*m_at);
    if (!digit || *digit >= base)
      fail("expected a digit or `;` in the character reference, found " + shown(*m_at), start);
    character = character * base + *digit;
    // Checked for each digit, so that the number can't overflow.
    if (character > 0x10FFFF) fail("the character reference is beyond U+10FFFF", start);
  }
  if (m_at == m_end) failAtEnd("`;`");
  if (m_at == digits) fail("the character reference has no number", start);
  if (!appendCharacter(m_buffer, character)) fail("the character reference is half of a surrogate pair", start);
  ++m_at;
}

}  // namespace mirvel::propertylist
