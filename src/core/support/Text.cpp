#include "core/support/Text.h"

namespace mirvel::Text {

namespace {

class Splitter {
 public:
  explicit Splitter(std::string_view text) : m_text(text) {}

  std::vector<std::string> split() {
    while (m_at < m_text.size()) step();
    endArgument();
    if (m_arguments.empty()) m_arguments.emplace_back();
    return std::move(m_arguments);
  }

 private:
  void step() {
    const char c = m_text[m_at++];
    switch (c) {
      case ' ':
      case '\t':
      case '\n':
      case '\r':
        return endArgument();
      case '\'':
        return singleQuoted();
      case '"':
        return doubleQuoted();
      case '\\':
        return escaped();
      default:
        append(c);
    }
  }

  void append(char c) {
    m_argument += c;
    m_begun = true;
  }

  void endArgument() {
    if (!m_begun) return;
    m_arguments.push_back(std::move(m_argument));
    m_argument.clear();
    m_begun = false;
  }

  void singleQuoted() {
    m_begun = true;
    const auto end = m_text.find('\'', m_at);
    m_argument += m_text.substr(m_at, end == std::string_view::npos ? end : end - m_at);
    m_at = end == std::string_view::npos ? m_text.size() : end + 1;
  }

  void doubleQuoted() {
    m_begun = true;
    while (m_at < m_text.size()) {
      const char c = m_text[m_at++];
      if (c == '"') return;
      const bool escapes = c == '\\' && m_at < m_text.size() &&
                           std::string_view("$`\"\\\n").find(m_text[m_at]) != std::string_view::npos;
      if (escapes) {
        escaped();
      } else {
        append(c);
      }
    }
  }

  /// Behind a backslash.
  void escaped() {
    if (m_at == m_text.size()) return append('\\');
    const char c = m_text[m_at++];
    if (c != '\n') append(c);
  }

  std::string_view m_text;
  std::size_t m_at = 0;
  std::vector<std::string> m_arguments;
  std::string m_argument;
  bool m_begun = false;  // an argument that is empty as yet may have begun with a quote
};

}  // namespace

std::vector<std::string> separateCommand(std::string_view text) {
  return Splitter(text).split();
}

}  // namespace mirvel::Text
