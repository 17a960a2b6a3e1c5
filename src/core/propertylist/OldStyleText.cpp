#include "core/propertylist/OldStyleText.h"

#include <span>
#include <string_view>
#include <utility>

#include "core/propertylist/DateText.h"
#include "core/propertylist/Document.h"
#include "core/propertylist/Numbers.h"
#include "core/text/Bytes.h"

namespace mirvel::propertylist {

namespace {

class OldStyleWriter {
 public:
  explicit OldStyleWriter(std::size_t maximumSize) : m_maximumSize(maximumSize) {}

  /// Writes a value and its semicolon. The caller has written the indentation, and the key if there is one.
  void element(const Node& node) {
    if (const auto members = node.dictionary()) {
      dictionary(*members);
    } else if (const auto elements = node.array()) {
      list(*elements);
    } else if (const auto unordered = node.set()) {
      list(*unordered);
    } else {
      leaf(node);
    }
    m_text += ";\n";
  }

  bool exceedsLimit() const { return m_isTooDeep || m_text.size() > m_maximumSize; }
  std::string text() { return std::move(m_text); }

 private:
  void leaf(const Node& node) {
    if (const auto string = node.string()) return quoted(*string);
    if (const auto boolean = node.boolean()) m_text += *boolean ? "true" : "false";
    if (const auto integer = node.integer()) m_text += integer->text();
    if (const auto real = node.real()) m_text += realText(*real);
    if (const auto date = node.date()) m_text += dateText(*date);
    if (const auto data = node.data()) m_text.append("<").append(toHex(*data)).append(">");
    if (const auto uid = node.uid()) m_text += std::to_string(uid->number);
  }

  void dictionary(const Members& members) {
    if (!open("{\n")) return;
    for (const Member& member : members) {
      if (exceedsLimit()) return;  // in the middle: the text is discarded anyway
      m_text.append(m_indent, '\t');
      quoted(member.key());
      m_text += " = ";
      element(member.value);
    }
    close('}');
  }

  void list(std::span<const Node> elements) {
    if (!open("(\n")) return;
    for (const Node& node : elements) {
      if (exceedsLimit()) return;
      m_text.append(m_indent, '\t');
      element(node);
    }
    close(')');
  }

  bool open(std::string_view sign) {
    // Before recursing, so that shared containers can't overflow the stack.
    m_isTooDeep = m_isTooDeep || m_indent == Limits::depth;
    if (m_isTooDeep) return false;
    m_text += sign;
    ++m_indent;
    return true;
  }

  void close(char sign) {
    --m_indent;
    m_text.append(m_indent, '\t') += sign;
  }

  void quoted(std::string_view text) {
    m_text += '"';
    for (const char c : text) {
      if (c == '"' || c == '\\' || c == '\n') m_text += '\\';
      m_text += c == '\n' ? 'n' : c;
    }
    m_text += '"';
  }

  std::string m_text;
  std::size_t m_maximumSize;
  std::size_t m_indent = 0;
  bool m_isTooDeep = false;
};

}  // namespace

Result<std::string> oldStyleText(const Node& node, std::size_t maximumSize) {
  OldStyleWriter writer(maximumSize);
  writer.element(node);
  if (writer.exceedsLimit()) {
    return Error{.code = Error::Code::LimitExceeded,
                 .message = "the text of the list would be too long or nested too deeply"};
  }
  return writer.text();
}

}  // namespace mirvel::propertylist
