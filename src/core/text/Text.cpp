#include "core/text/Text.h"

#include <algorithm>

namespace mirvel::Text {

namespace {

/// Whether a backslash escapes the character within double quotes. Before other characters it is preserved.
bool isEscapedInQuotes(char c) {
  return std::string_view("$`\"\\\n").find(c) != std::string_view::npos;
}

class Splitter {
 public:
  explicit Splitter(std::string_view text) : m_text(text) {}

  std::vector<std::string> split() {
    while (m_at < m_text.size()) step();
    endArgument();
    if (m_arguments.empty()) m_arguments.emplace_back();
    return std::move(m_arguments);
  }

  std::string unquotedPart() {
    while (m_at < m_text.size()) step();
    return std::move(m_unquoted);
  }

 private:
  void step() {
    const char c = m_text[m_at++];
    switch (c) {
      case ' ':
      case '\t':
      case '\n':
      case '\r':
        m_unquoted += ' ';
        return endArgument();
      case '\'':
        return singleQuoted();
      case '"':
        return doubleQuoted();
      case '\\':
        return escaped();
      default:
        m_unquoted += c;
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
      if (c == '\\' && m_at < m_text.size() && isEscapedInQuotes(m_text[m_at])) {
        escaped();
      } else {
        append(c);
      }
    }
  }

  /// After a backslash.
  void escaped() {
    if (m_at == m_text.size()) return append('\\');
    const char c = m_text[m_at++];
    if (c != '\n') append(c);
  }

  std::string_view m_text;
  std::size_t m_at = 0;
  std::vector<std::string> m_arguments;
  std::string m_argument;
  bool m_begun = false;  // distinguishes an empty argument in quotes from none
  std::string m_unquoted;
};

/// Whether an argument with this character needs quotes. As a switch rather than a search in a set of characters,
/// because a scan asks this about every command.
bool isSpecial(char c) {
  switch (c) {
    case ' ':
    case '\t':
    case '\r':
    case '\n':
    case '\'':
    case '"':
    case '\\':
      return true;
    default:
      return false;
  }
}

/// Whether a backslash before the character at `next` would be an escape within double quotes. At the end of the
/// argument it would escape the closing quote.
bool escapesNext(std::string_view argument, std::size_t next) {
  return next == argument.size() || isEscapedInQuotes(argument[next]);
}

bool hasEscapes(std::string_view argument) {
  for (std::size_t i = 0; i < argument.size(); ++i) {
    if (argument[i] == '\\' && escapesNext(argument, i + 1)) return true;
  }
  return false;
}

void appendEscaped(std::string& command, std::string_view argument) {
  command += '"';
  for (std::size_t i = 0; i < argument.size(); ++i) {
    if (argument[i] == '"' || (argument[i] == '\\' && escapesNext(argument, i + 1))) command += '\\';
    command += argument[i];
  }
  command += '"';
}

}  // namespace

std::vector<std::string> separateCommand(std::string_view text) {
  return Splitter(text).split();
}

bool needsQuotes(std::string_view argument) {
  return argument.empty() || std::any_of(argument.begin(), argument.end(), isSpecial);
}

void appendArgument(std::string& command, std::string_view argument) {
  const auto contains = [argument](char c) { return argument.find(c) != std::string_view::npos; };
  if (!command.empty()) command += ' ';
  if (!needsQuotes(argument)) {
    command += argument;
  } else if (!contains('"') && !hasEscapes(argument)) {
    command.append(1, '"').append(argument).append(1, '"');
  } else if (!contains('\'')) {
    command.append(1, '\'').append(argument).append(1, '\'');
  } else {
    appendEscaped(command, argument);
  }
}

std::string unquotedPart(std::string_view text) {
  return Splitter(text).unquotedPart();
}

}  // namespace mirvel::Text
