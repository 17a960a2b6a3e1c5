#include <array>
#include <charconv>

#include "core/propertylist/ByteBuffer.h"
#include "core/propertylist/DataText.h"
#include "core/propertylist/DateText.h"
#include "core/propertylist/RealText.h"
#include "core/propertylist/Writer.h"

namespace mirvel::plist {

namespace {

constexpr std::string_view header =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";
constexpr std::string_view footer = "</plist>\n";

constexpr bool needsEscape(char c) { return c == '<' || c == '>' || c == '&'; }
constexpr std::size_t longestEscape = 5;  // `&amp;`

char* putEscaped(char* to, std::string_view text) {
  for (const char c : text) {
    if (!needsEscape(c)) {
      *to++ = c;
    } else {
      to = ByteBuffer::put(to, c == '<' ? "&lt;" : c == '>' ? "&gt;" : "&amp;");
    }
  }
  return to;
}

/// Recursion is as deep as the value, which the reader bounds.
class XmlWriter {
 public:
  void write(const Value& value) {
    m_out.append(header);
    element(value);
    m_out.append(footer);
  }

  bool hasSet() const { return m_hasSet; }
  std::string text() const { return m_out.text(); }

 private:
  void element(const Value& value) {
    switch (value.type()) {
      case Type::Boolean: return line(*value.as<bool>() ? "<true/>\n" : "<false/>\n");
      case Type::Integer: return integer(*value.as<Integer>());
      case Type::Real: return leaf("<real>", realText(*value.as<double>()), "</real>\n");
      case Type::String: return leaf("<string>", *value.as<std::string>(), "</string>\n");
      case Type::Data: return data(value.as<Data>()->bytes);
      case Type::Date: return leaf("<date>", dateText(*value.as<Date>()), "</date>\n");
      case Type::Array: return array(*value.as<Array>());
      case Type::Dictionary: return dictionary(*value.as<Dictionary>());
      case Type::Uid: return dictionary({{"CF$UID", std::int64_t{value.as<Uid>()->number}}});
      case Type::Set: m_hasSet = true;
    }
  }

  char* putIndent(char* to) const {
    for (std::size_t i = 0; i < m_indent; ++i) *to++ = '\t';
    return to;
  }

  void line(std::string_view text) {
    m_out.advanceTo(ByteBuffer::put(putIndent(m_out.claim(m_indent + text.size())), text));
  }

  void leaf(std::string_view open, std::string_view text, std::string_view close) {
    char* to = m_out.claim(m_indent + open.size() + text.size() * longestEscape + close.size());
    to = ByteBuffer::put(putIndent(to), open);
    to = putEscaped(to, text);
    m_out.advanceTo(ByteBuffer::put(to, close));
  }

  void integer(Integer number) {
    std::array<char, 24> digits{};
    const auto [end, error] =
        number.isNegative()
            ? std::to_chars(digits.begin(), digits.end(), static_cast<std::int64_t>(number.bits()))
            : std::to_chars(digits.begin(), digits.end(), number.bits());
    leaf("<integer>", {digits.data(), static_cast<std::size_t>(end - digits.data())}, "</integer>\n");
  }

  void data(std::string_view bytes) {
    line("<data>\n");
    std::string lines;
    appendDataLines(lines, bytes, m_indent);
    m_out.append(lines);
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

  ByteBuffer m_out;
  std::size_t m_indent = 0;
  bool m_hasSet = false;
};

}  // namespace

Result<std::string> writeXml(const Value& value) {
  XmlWriter writer;
  writer.write(value);
  if (writer.hasSet()) {
    return Error{.code = Error::Code::WrongType, .message = "the list holds a set, which only a binary list can"};
  }
  return writer.text();
}

}  // namespace mirvel::plist
