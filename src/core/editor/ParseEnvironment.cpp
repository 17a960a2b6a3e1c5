#include "core/editor/ParseEnvironment.h"

#include <algorithm>
#include <cstddef>
#include <optional>

#include "core/text/Ascii.h"

namespace mirvel {

namespace {

bool isBlank(char character) {
  return character == ' ' || character == '\t' || character == '\r';
}

bool isNameCharacter(char character) {
  return Ascii::isLetter(character) || Ascii::isDigit(character) || character == '_' || character == '.' ||
         character == '-';
}

class AssignmentReader {
 public:
  explicit AssignmentReader(std::string_view text) : m_left(text) {}

  Result<Variables> read() {
    while (!m_left.empty()) {
      const std::size_t line = m_line;
      if (!readLine()) {
        return Error{.code = Error::Code::Malformed, .message = "it isn't of the form NAME=value", .line = line};
      }
    }
    return std::move(m_variables);
  }

 private:
  bool readLine() {
    skipBlanks();
    if (isAtEnd()) return endLine();
    constexpr std::string_view prefix = "export";
    if (m_left.starts_with(prefix) && m_left.size() > prefix.size() && isBlank(m_left[prefix.size()])) {
      m_left.remove_prefix(prefix.size());
      skipBlanks();
    }
    std::string name = readName();
    if (name.empty() || !take('=')) return false;
    auto value = readValue();
    if (!value) return false;
    skipBlanks();
    if (!isAtEnd()) return false;
    set(std::move(name), std::move(*value));
    return endLine();
  }

  std::string readName() {
    std::size_t length = 0;
    while (length < m_left.size() && isNameCharacter(m_left[length])) ++length;
    if (length > 0 && Ascii::isDigit(m_left.front())) return {};
    std::string name(m_left.substr(0, length));
    m_left.remove_prefix(length);
    return name;
  }

  /// Null if a quote isn't closed.
  std::optional<std::string> readValue() {
    std::string value;
    while (!m_left.empty() && m_left.front() != '\n' && !isBlank(m_left.front())) {
      const char character = next();
      if (character == '"' || character == '\'') {
        if (!readQuoted(character, value)) return std::nullopt;
      } else if (character != '\\') {
        value += character;
      } else if (!m_left.empty() && !take('\n')) {
        value += next();
      }
    }
    return value;
  }

  bool readQuoted(char quote, std::string& value) {
    while (!m_left.empty()) {
      const char character = next();
      if (character == quote) return true;
      const bool isEscape = quote == '"' && character == '\\' && !m_left.empty() &&
                            std::string_view("\"\\$`\n").find(m_left.front()) != std::string_view::npos;
      if (!isEscape) {
        value += character;
      } else if (!take('\n')) {
        value += next();
      }
    }
    return false;
  }

  void set(std::string name, std::string value) {
    const auto found = std::find_if(m_variables.begin(), m_variables.end(),
                                    [&](const auto& variable) { return variable.first == name; });
    if (found == m_variables.end()) {
      m_variables.emplace_back(std::move(name), std::move(value));
    } else {
      found->second = std::move(value);
    }
  }

  char next() {
    const char character = m_left.front();
    m_left.remove_prefix(1);
    if (character == '\n') ++m_line;
    return character;
  }
  bool take(char character) {
    if (!m_left.starts_with(character)) return false;
    next();
    return true;
  }
  void skipBlanks() {
    while (!m_left.empty() && isBlank(m_left.front())) next();
  }
  /// Whether nothing follows in the line but a comment.
  bool isAtEnd() const { return m_left.empty() || m_left.front() == '\n' || m_left.front() == '#'; }
  bool endLine() {
    while (!m_left.empty() && next() != '\n') {
    }
    return true;
  }

  std::string_view m_left;
  std::size_t m_line = 1;
  Variables m_variables;
};

}  // namespace

Result<Variables> parseEnvironment(std::string_view text) {
  return AssignmentReader(text).read();
}

}  // namespace mirvel
