#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace mirvel::plist {

enum class Element : std::uint8_t { Array, Data, Date, Dict, False, Integer, Key, Plist, Real, String, True };

std::string_view elementName(Element element);

/// The tokens of an XML property list: tags, and the text between them. Moves through UTF-8 text once, from front to
/// back; whatever it can't take is thrown as a `ReadFailure`.
class XmlScanner {
 public:
  struct Tag {
    Element element;
    bool isEmpty;  ///< `<array/>`
  };

  /// `utf8` must outlive the scanner.
  explicit XmlScanner(std::string_view utf8)
      : m_begin(utf8.data()), m_at(utf8.data()), m_end(utf8.data() + utf8.size()) {}

  std::size_t offset() const { return static_cast<std::size_t>(m_at - m_begin); }
  std::size_t offsetOf(const char* place) const { return static_cast<std::size_t>(place - m_begin); }

  /// Passes over white space, comments, processing instructions and a DOCTYPE in front of the first element.
  void skipProlog();
  /// Passes over white space, comments and processing instructions, up to the `<` of a tag.
  void skipToTag();
  /// Whether there is nothing but white space, comments and processing instructions up to the end.
  bool onlyBlankLeft();

  /// At the `<` of a tag: is it a closing one?
  bool atCloseTag() const { return m_end - m_at >= 2 && m_at[1] == '/'; }
  /// Takes an opening tag. Attributes are passed over.
  Tag openTag();
  /// Takes the closing tag of `element`, which must be here.
  void closeTag(Element element);

  /// Takes the text up to the next tag with its references and CDATA sections resolved. The view lasts until the next
  /// call; `isPlain` tells whether it is the very text of the list, which lasts as long as that.
  std::string_view text(bool& isPlain);
  /// Takes everything up to the next `<`, as it stands.
  std::string_view rawText();

 private:
  void skipWhite();
  bool skipMarkup();
  void skipComment();
  void skipInstruction();
  void skipDoctype();
  void skipUntil(std::string_view end, std::string_view what);
  bool startsWith(std::string_view prefix) const;
  Element elementOf(const char* name, std::size_t length) const;
  void unusualCloseTag(std::string_view name);
  std::string_view complexText(const char* start);
  void appendCData();
  void appendReference();
  void appendCharacterReference();
  [[noreturn]] void fail(std::string message, const char* place) const;
  [[noreturn]] void failAtEnd(std::string_view expected) const;

  const char* m_begin;
  const char* m_at;
  const char* m_end;
  std::string m_buffer;
};

}  // namespace mirvel::plist
