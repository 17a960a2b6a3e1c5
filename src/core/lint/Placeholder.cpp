#include "core/lint/Placeholder.h"

#include <algorithm>
#include <cstddef>

namespace mirvel::lint {

namespace {

using Kind = Placeholder::Kind;

bool isNameLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

/// The longest prefix that is an identifier.
std::string_view leadingName(std::string_view text) {
  const auto end = std::find_if_not(text.begin(), text.end(), isNameLetter);
  return text.substr(0, static_cast<std::size_t>(end - text.begin()));
}

/// `$HOME` or `${HOME}` at the beginning of the text, else empty. `$1` is no variable.
std::string_view variable(std::string_view text) {
  if (!text.starts_with('$')) return {};
  if (text.substr(1).starts_with('{')) {
    const std::string_view name = leadingName(text.substr(2));
    const bool isClosed = text.substr(2 + name.size()).starts_with('}');
    return isClosed && !name.empty() ? text.substr(0, name.size() + 3) : std::string_view{};
  }
  const std::string_view name = leadingName(text.substr(1));
  const bool startsLikeName = !name.empty() && (name[0] < '0' || name[0] > '9');
  return startsLikeName ? text.substr(0, name.size() + 1) : std::string_view{};
}

/// The text from the opening mark at its beginning through the closing mark, else empty.
std::string_view between(std::string_view text, std::string_view begin, std::string_view end) {
  if (!text.starts_with(begin)) return {};
  const std::size_t close = text.find(end, begin.size());
  return close == std::string_view::npos ? std::string_view{} : text.substr(0, close + end.size());
}

bool isName(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), isNameLetter);
}

/// `@NAME@` at the beginning of the text, else empty.
std::string_view betweenAts(std::string_view text) {
  const std::string_view found = between(text, "@", "@");
  return !found.empty() && isName(found.substr(1, found.size() - 2)) ? found : std::string_view{};
}

/// `__NAME__` at the beginning of the text, else empty. Capitals only, since `__init__` is an ordinary name.
std::string_view betweenUnderscores(std::string_view text) {
  const std::string_view found = between(text, "__", "__");
  const bool hasSmall = std::any_of(found.begin(), found.end(), [](char c) { return c >= 'a' && c <= 'z'; });
  return found.size() > 4 && isName(found) && !hasSmall ? found : std::string_view{};
}

std::string_view templateMark(std::string_view text) {
  for (const std::string_view found :
       {betweenAts(text), betweenUnderscores(text), between(text, "{{", "}}"), between(text, "<%", "%>")}) {
    if (!found.empty()) return found;
  }
  return {};
}

}  // namespace

std::optional<Placeholder> leadingExpansion(std::string_view text) {
  if (text == "~" || text.starts_with("~/")) return Placeholder{Kind::Tilde, "~"};
  const std::string_view name = variable(text);
  if (!name.empty()) return Placeholder{Kind::Variable, std::string(name)};
  return std::nullopt;
}

std::optional<Placeholder> findPlaceholder(std::string_view text) {
  constexpr std::size_t longestPath = 4096;  // bounds the quadratic search for closing marks
  text = text.substr(0, longestPath);
  if (auto first = leadingExpansion(text)) return first;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::string_view rest = text.substr(i);
    const std::string_view name = variable(rest);
    if (!name.empty()) return Placeholder{Kind::Variable, std::string(name)};
    const std::string_view mark = templateMark(rest);
    if (!mark.empty()) return Placeholder{Kind::Template, std::string(mark)};
  }
  return std::nullopt;
}

std::string placeholderMessage(const Placeholder& placeholder, std::string_view homeFolder) {
  if (placeholder.kind == Kind::Template) return "the placeholder " + placeholder.text + " hasn't been replaced";
  std::string message = "launchd doesn't expand " + placeholder.text;
  if (placeholder.kind == Kind::Variable || homeFolder.empty()) return message;
  return message + "; write " + std::string(homeFolder) + " instead";
}

}  // namespace mirvel::lint
