#include "core/catalogue/HelperToolLines.h"

#include <cstddef>
#include <optional>
#include <utility>

#include "core/text/Strings.h"

namespace mirvel {

namespace {

std::string_view withoutEnd(std::string_view text) {
  return String::chop(text, "\";", String::Edge::End);
}

struct Entry {
  std::string_view key;    ///< with the opening quote
  std::string_view value;  ///< with the closing quote and the semicolon
};

/// Parses a line such as `"key" = "value";`. A further separator ends the value.
std::optional<Entry> entryOf(std::string_view line) {
  constexpr std::string_view sign = "\" = \"";
  const std::size_t at = line.find(sign);
  if (at == std::string_view::npos) return std::nullopt;
  const std::string_view rest = line.substr(at + sign.size());
  return Entry{.key = line.substr(0, at), .value = rest.substr(0, rest.find(sign))};
}

class LineReader {
 public:
  /// Processes the next line that isn't empty, trimmed.
  void take(std::string_view line) {
    const std::size_t index = m_count++;
    if (const auto entry = entryOf(line)) {
      if (entry->key == "\"CFBundleIdentifier") m_lines.identifier = withoutEnd(entry->value);
      if (entry->key == "\"CFBundleName") m_lines.name = withoutEnd(entry->value);
    } else if (line.starts_with("\"SMAuthorizedClients\" = (")) {
      m_clientsIndex = index + 1;
    } else if (index == m_clientsIndex) {
      if (line.starts_with('"')) line.remove_prefix(1);
      m_lines.clients = withoutEnd(line);
    }
  }

  HelperToolLines lines() { return std::move(m_lines); }

 private:
  HelperToolLines m_lines;
  std::size_t m_count = 0;
  std::size_t m_clientsIndex = 0;  // index of the line with the first client; 0 until the entry is found
};

}  // namespace

HelperToolLines HelperToolLines::read(std::string_view text) {
  LineReader reader;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(line.size() < text.size() ? line.size() + 1 : line.size());
    if (!line.empty()) reader.take(String::trim(line, true));
  }
  return reader.lines();
}

}  // namespace mirvel
