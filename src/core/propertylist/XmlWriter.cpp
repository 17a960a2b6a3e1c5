#include <array>
#include <charconv>
#include <cstring>

#include "core/propertylist/DataText.h"
#include "core/propertylist/DateText.h"
#include "core/propertylist/Encoding.h"
#include "core/propertylist/Numbers.h"
#include "core/propertylist/SmallVector.h"
#include "core/propertylist/Words.h"
#include "core/propertylist/Writer.h"

namespace mirvel::propertylist {

namespace {

constexpr std::string_view plistOpen = "<plist version=\"1.0\">\n";
constexpr std::string_view plistClose = "</plist>\n";

/// Copies bytes to reserved memory and returns its end.
char* put(char* to, std::string_view bytes) {
  std::memcpy(to, bytes.data(), bytes.size());
  return to + bytes.size();
}

constexpr bool needsEscape(char c) {
  return c == '<' || c == '>' || c == '&';
}
constexpr std::size_t longestEscape = 5;  // `&amp;`

char* putEscapedByte(char* to, char c) {
  if (needsEscape(c)) return put(to, c == '<' ? "&lt;" : c == '>' ? "&gt;" : "&amp;");
  *to = c;
  return to + 1;
}

/// Copies text with `<`, `>` and `&` escaped, eight bytes at a time as long as there is nothing to escape.
char* putEscaped(char* to, std::string_view text) {
  const char* at = text.data();
  const char* const end = at + text.size();
  for (; end - at >= static_cast<std::ptrdiff_t>(words::size); at += words::size) {
    const std::uint64_t word = words::load(at);
    if ((words::find(word, '<') | words::find(word, '>') | words::find(word, '&')) == 0) {
      std::memcpy(to, &word, words::size);
      to += words::size;
    } else {
      for (std::size_t i = 0; i < words::size; ++i) to = putEscapedByte(to, at[i]);
    }
  }
  while (at < end) to = putEscapedByte(to, *at++);
  return to;
}

/// Recurses as deep as the value is nested; `Limits::depth` bounds that for everything that was read.
class XmlWriter {
 public:
  void write(const Value& value) {
    append(xmlDeclaration);
    append(xmlDoctype);
    append(plistOpen);
    element(value);
    append(plistClose);
  }

  bool hasSet() const { return m_hasSet; }
  std::string text() const { return {m_out.begin(), m_out.end()}; }

 private:
  void element(const Value& value) {
    switch (value.type()) {
      case Type::Boolean:
        return line(*value.as<bool>() ? "<true/>\n" : "<false/>\n");
      case Type::Integer:
        return integer(*value.as<Integer>());
      case Type::Real:
        return leaf("<real>", realText(*value.as<double>()), "</real>\n");
      case Type::String:
        return leaf("<string>", *value.as<std::string>(), "</string>\n");
      case Type::Data:
        return data(value.as<Data>()->bytes);
      case Type::Date:
        return leaf("<date>", dateText(*value.as<Date>()), "</date>\n");
      case Type::Array:
        return array(*value.as<Array>());
      case Type::Dictionary:
        return dictionary(*value.as<Dictionary>());
      case Type::Uid:
        return dictionary({{"CF$UID", std::int64_t{value.as<Uid>()->number}}});
      case Type::Set:
        m_hasSet = true;
    }
  }

  char* putIndent(char* to) const {
    for (std::size_t i = 0; i < m_indent; ++i) *to++ = '\t';
    return to;
  }

  void append(std::string_view bytes) { m_out.extendTo(put(m_out.reserve(bytes.size()), bytes)); }

  void line(std::string_view text) { m_out.extendTo(put(putIndent(m_out.reserve(m_indent + text.size())), text)); }

  /// The tags are literals, so that the compiler knows their lengths and copies them with a few instructions.
  template <std::size_t N, std::size_t M>
  void leaf(const char (&open)[N], std::string_view text, const char (&close)[M]) {
    char* to = m_out.reserve(m_indent + N + text.size() * longestEscape + M);
    to = put(putIndent(to), {open, N - 1});
    to = putEscaped(to, text);
    m_out.extendTo(put(to, {close, M - 1}));
  }

  void integer(Integer number) {
    std::array<char, 24> digits{};
    const auto [end, error] =
        number.isNegative() ? std::to_chars(digits.begin(), digits.end(), static_cast<std::int64_t>(number.bits()))
                            : std::to_chars(digits.begin(), digits.end(), number.bits());
    leaf("<integer>", {digits.data(), static_cast<std::size_t>(end - digits.data())}, "</integer>\n");
  }

  void data(std::string_view bytes) {
    line("<data>\n");
    std::string lines;
    appendDataLines(lines, bytes, m_indent);
    append(lines);
    line("</data>\n");
  }

  void array(const Array& elements) {
    if (elements.empty()) return line("<array/>\n");
    line("<array>\n");
    ++m_indent;
    for (const Value& value : elements) element(value);
    --m_indent;
    line("</array>\n");
  }

  void dictionary(const Dictionary& entries) {
    if (entries.empty()) return line("<dict/>\n");
    line("<dict>\n");
    ++m_indent;
    for (const auto& [key, value] : entries) {
      leaf("<key>", key, "</key>\n");
      element(value);
    }
    --m_indent;
    line("</dict>\n");
  }

  SmallVector<char, 4096> m_out;  // enough for most job files
  std::size_t m_indent = 0;
  bool m_hasSet = false;
};

}  // namespace

Result<std::string> writeXml(const Value& value) {
  XmlWriter writer;
  writer.write(value);
  if (writer.hasSet()) {
    return Error{.code = Error::Code::WrongType, .message = "the list contains a set, which has no XML form"};
  }
  return writer.text();
}

}  // namespace mirvel::propertylist
