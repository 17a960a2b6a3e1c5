#include "Leniency.h"

#include <algorithm>
#include <string>

namespace {

bool isControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x20 && c != '\t' && c != '\n' && c != '\r';
}

/// Whether the text contains U+FFFE or U+FFFF in UTF-8, which aren't XML characters.
bool hasNoCharacter(std::string_view text) {
  return text.find("\xEF\xBF\xBE") != std::string_view::npos || text.find("\xEF\xBF\xBF") != std::string_view::npos;
}

bool isLenientText(std::string_view text) {
  return std::any_of(text.begin(), text.end(), isControl) || text.find("]]>") != std::string_view::npos ||
         text.find("&#") != std::string_view::npos || hasNoCharacter(text);
}

/// Whether a tag contains more than its name, white space and slashes.
bool isLenientTag(std::string_view tag) {
  tag = tag.substr(1, tag.find('>') - 1);
  const std::size_t nameEnd = tag.find_first_of(" \t\r\n/", tag.front() == '/' ? 1 : 0);
  if (nameEnd == std::string_view::npos) return false;
  const std::string_view rest = tag.substr(nameEnd);
  return rest.find_first_not_of(" \t\r\n") != std::string_view::npos && rest != "/";
}

std::size_t endOf(std::string_view text, std::size_t at) {
  const auto closed = [&](std::string_view end, std::size_t from) {
    const std::size_t found = text.find(end, at + from);
    return found == std::string_view::npos ? text.size() : found + end.size();
  };
  const std::string_view rest = text.substr(at);
  if (rest.starts_with("<!--")) return closed("-->", 4);
  if (rest.starts_with("<![CDATA[")) return closed("]]>", 9);
  if (rest.starts_with("<?")) return closed("?>", 2);
  if (rest.starts_with("<")) return closed(">", 1);
  return std::min(text.find('<', at), text.size());
}

bool isMarkup(std::string_view construct) {
  return construct.starts_with("<!") || construct.starts_with("<?");
}

bool isLenient(std::string_view construct) {
  if (isMarkup(construct)) return true;
  return construct.starts_with("<") ? isLenientTag(construct) : isLenientText(construct);
}

/// Whether a quote may still be open after the construct, so that the parser reports an error only later.
bool mayLeaveQuoteOpen(std::string_view construct) {
  if (!construct.starts_with("<") || construct.starts_with("<!--") || construct.starts_with("<![")) return false;
  return isLenient(construct) && construct.find_first_of("\"'") != std::string_view::npos;
}

}  // namespace

bool isKnownLeniency(std::string_view text, std::size_t offset) {
  // The parser may stop at the first offending byte, inside the construct, or at the first byte after it.
  bool isData = false;
  for (std::size_t at = 0; at <= offset && at < text.size();) {
    const std::size_t end = endOf(text, at);
    const std::string_view construct = text.substr(at, end - at);
    if (mayLeaveQuoteOpen(construct) || (offset <= end && (isLenient(construct) || isData))) return true;
    isData = construct.starts_with("<data");
    at = end;
  }
  return false;
}
