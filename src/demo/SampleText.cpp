#include "demo/SampleText.h"

#include <algorithm>
#include <array>

namespace mirvel::demo {

namespace {

std::string_view asXml(char character) {
  switch (character) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    default:
      return {};
  }
}

/// Quoted arguments are unescaped twice, once as a string of the file and once as an argument, hence the double
/// backslashes.
std::string_view asArgument(char character) {
  switch (character) {
    case '"':
      return R"(\\")";
    case '`':
      return R"(\\`)";
    case '$':
      return R"(\\$)";
    case '\\':
      return R"(\\\\)";
    case '%':
      return "%%";
    default:
      return {};
  }
}

std::string_view unchanged(char) {
  return {};
}

/// Returns the replacement for a character, or an empty string for one that needs none.
using Escape = std::string_view (*)(char);

Escape escapeOf(const std::filesystem::path& file) {
  if (file.extension() == ".plist") return asXml;
  return file.extension() == ".desktop" ? asArgument : unchanged;
}

std::string escaped(std::string_view text, Escape escape) {
  std::string result;
  for (const char character : text) {
    const std::string_view replacement = escape(character);
    if (replacement.empty()) {
      result += character;
    } else {
      result += replacement;
    }
  }
  return result;
}

struct SampleMark {
  std::string_view mark;
  std::string text;
};

}  // namespace

std::string filledIn(std::string_view text, const std::filesystem::path& file, const SampleNames& names) {
  const Escape escape = escapeOf(file);
  const std::array<SampleMark, 3> placeholders{{
      {"@HOME@", escaped(names.home, escape)},
      {"@ROOT@", escaped(names.root, escape)},
      {"@USER@", escaped(names.user, escape)},
  }};
  std::string result;
  while (!text.empty()) {
    const auto found = std::find_if(placeholders.begin(), placeholders.end(),
                                    [&](const SampleMark& each) { return text.starts_with(each.mark); });
    if (found == placeholders.end()) {
      result += text.front();
      text.remove_prefix(1);
    } else {
      result += found->text;
      text.remove_prefix(found->mark.size());
    }
  }
  return result;
}

}  // namespace mirvel::demo
