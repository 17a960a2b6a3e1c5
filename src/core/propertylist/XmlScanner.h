#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/propertylist/Words.h"

namespace mirvel::propertylist {

/// The elements of the grammar, in alphabetical order.
enum class Element : std::uint8_t { Array, Data, Date, Dict, False, Integer, Key, Plist, Real, String, True };

/// The name without brackets: "dict".
std::string_view elementName(Element element);

/// The tokens of an XML property list: tags and the text between them. Goes through UTF-8 text once, from front to
/// back, with one token of lookahead. Throws `ReadFailure` for anything outside the grammar.
///
/// Tags as nearly all files write them are recognized by comparing eight bytes at once; these fast paths are in the
/// header so that they are inlined. Everything else (attributes, white space in tags, references, CDATA, characters
/// beyond ASCII) takes the slow paths in the source file.
class XmlScanner {
 public:
  /// Must follow the text in memory: words can then be loaded beyond its end, and the `<` ends every search in it.
  static constexpr std::array<char, 32> padding{'<'};

  /// An opening or empty tag.
  struct Tag {
    Element element;
    bool isEmpty;  ///< `<array/>`: there is no closing tag
  };
  /// Text between two tags.
  struct Text {
    std::string_view text;
    bool isStable;  ///< part of the scanned text; otherwise in a buffer that the next call overwrites
  };

  /// `utf8` must outlive the scanner and be followed by `padding`. It needn't be valid UTF-8: text is checked as it is
  /// returned.
  explicit XmlScanner(std::string_view utf8)
      : m_begin(utf8.data()), m_at(utf8.data()), m_end(utf8.data() + utf8.size()) {}

  /// Of the next token, in bytes.
  std::size_t offset() const { return static_cast<std::size_t>(m_at - m_begin); }
  /// Of an address for which `contains` is true.
  std::size_t offsetOf(const char* place) const { return static_cast<std::size_t>(place - m_begin); }
  bool contains(const char* place) const { return place >= m_begin && place <= m_end; }

  /// Skips white space, comments, processing instructions and DOCTYPEs before the first element.
  void skipProlog();
  /// Skips white space, comments and processing instructions, up to the `<` of a tag.
  void skipToTag() {
    skipWhite();
    if (*m_at != '<' || m_at[1] == '!' || m_at[1] == '?' || m_at == m_end) skipToTagSlowly();
  }
  /// Whether nothing but white space, comments and processing instructions follows. Doesn't throw.
  bool onlyBlankLeft();

  /// Whether the tag at the current position is a closing tag.
  bool atCloseTag() const { return m_at[1] == '/'; }

  /// Reads an opening or empty tag. Attributes are skipped without being checked.
  Tag openTag() {
    const std::uint64_t next = words::load(m_at);
    switch (m_at[1]) {
      case 'k':
        if (startsWith(next, "<key>")) return plainTag(Element::Key, 5);
        break;
      case 's':
        if (startsWith(next, "<string>")) return plainTag(Element::String, 8);
        break;
      case 'd':
        if (startsWith(next, "<dict>")) return plainTag(Element::Dict, 6);
        if (startsWith(next, "<data>")) return plainTag(Element::Data, 6);
        break;
      case 't':
        if (startsWith(next, "<true/>")) return plainTag(Element::True, 7, true);
        break;
      case 'f':
        if (startsWith(next, "<false/>")) return plainTag(Element::False, 8, true);
        break;
      case 'i':
        if (startsWith(next, "<integer") && m_at[8] == '>') return plainTag(Element::Integer, 9);
        break;
      case 'a':
        if (startsWith(next, "<array>")) return plainTag(Element::Array, 7);
        break;
      case 'p':
        if (startsWith(next, "<plist v") && isVersionOne()) return plainTag(Element::Plist, 21);
        break;
      default:
        break;
    }
    return unusualOpenTag();
  }

  /// Reads the closing tag of `element`, which must follow immediately.
  void closeTag(Element element) {
    const CloseTag& tag = closeTags[static_cast<std::size_t>(element)];
    if ((words::load(m_at) & tag.mask) == tag.first &&
        (words::load(m_at + tag.size - tag.lastSize) & tag.mask) == tag.last) {
      m_at += tag.size;
    } else {
      unusualCloseTag(element);
    }
  }

  /// Reads text up to the next tag, with references and CDATA sections resolved. Rejects invalid UTF-8 and comments.
  Text text() {
    const char* const start = m_at;
    const char* const end = findSpecial(m_at);
    if (*end != '<' || end[1] == '!') return complexText();
    m_at = end;
    return {{start, static_cast<std::size_t>(end - start)}, true};
  }
  /// Reads everything up to the next `<`, with references unresolved and UTF-8 unchecked.
  std::string_view rawText();

 private:
  /// Compares the first bytes of a word with a literal of at most eight.
  template <std::size_t N>
  static bool startsWith(std::uint64_t next, const char (&text)[N]) {
    return (next & words::mask(N - 1)) == words::of({text, N - 1});
  }

  /// A closing tag as its first and last eight bytes, which overlap if it is shorter than 16. If it is shorter than 8,
  /// both are the whole tag and `mask` hides the bytes after it.
  struct CloseTag {
    std::uint64_t mask;
    std::uint64_t first;
    std::uint64_t last;
    std::size_t lastSize;
    std::size_t size;
  };
  static constexpr CloseTag closeTagOf(std::string_view text) {
    const std::size_t lastSize = text.size() < 8 ? text.size() : 8;
    return {words::mask(lastSize), words::of(text.substr(0, lastSize)), words::of(text.substr(text.size() - lastSize)),
            lastSize, text.size()};
  }
  static const std::array<CloseTag, 11> closeTags;

  /// The rest of `<plist version="1.0">`.
  bool isVersionOne() const {
    return startsWith(words::load(m_at + 8), "ersion=\"") && startsWith(words::load(m_at + 16), "1.0\">");
  }
  /// Advances beyond a tag of this size.
  Tag plainTag(Element element, std::size_t size, bool isEmpty = false) {
    m_at += size;
    return {element, isEmpty};
  }
  /// The four characters that XML allows between tags. Stops at the padding.
  void skipWhite() {
    while (*m_at == '\n' || *m_at == '\t' || *m_at == ' ' || *m_at == '\r') ++m_at;
  }
  static const char* findSpecial(const char* at);

  bool startsWith(std::string_view prefix) const;
  void skipToTagSlowly();
  bool skipMarkup();
  void skipDoctype();
  void skipUntil(std::string_view end, std::string_view what);
  Tag unusualOpenTag();
  Element elementOf(std::string_view name) const;
  void unusualCloseTag(Element element);
  Text complexText();
  void appendCData();
  void appendReference();
  void appendCharacterReference();
  [[noreturn]] void fail(std::string_view message, const char* place) const;
  [[noreturn]] void failAtEnd(std::string_view expected) const;

  const char* m_begin;
  const char* m_at;
  const char* m_end;
  std::string m_buffer;  // of `complexText`
};

/// Finds the first `<`, `&` or byte above 0x7F. There always is one: the `<` of the padding.
inline const char* XmlScanner::findSpecial(const char* at) {
  if constexpr (std::endian::native == std::endian::little) {
    for (;; at += words::size) {
      const std::uint64_t word = words::load(at);
      const std::uint64_t found = (words::find(word, '<') | words::find(word, '&') | word) & words::highBits;
      if (found != 0) return at + std::countr_zero(found) / 8;
    }
  } else {
    while (*at != '<' && *at != '&' && (*at & 0x80) == 0) ++at;
    return at;
  }
}

}  // namespace mirvel::propertylist
