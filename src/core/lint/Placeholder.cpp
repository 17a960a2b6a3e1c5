#include "core/lint/Placeholder.h"

#include <algorithm>
#include <cstddef>

namespace mirvel::lint {

namespace {

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

/// Replaces the home folder at the beginning, unless something else in the text would still have to be expanded.
std::optional<Fix> fixOf(const Placeholder& placeholder, const std::string& text, const std::string& homeFolder,
                         const jobfile::OpaqueValue::Path& path) {
  const std::string& name = placeholder.text;
  const bool isHome = name == "~" || name == "$HOME" || name == "${HOME}";
  if (!isHome || homeFolder.empty() || path.empty() || !text.starts_with(name)) return std::nullopt;
  const std::string rest = text.substr(name.size());
  if ((!rest.empty() && rest[0] != '/') || findPlaceholder(rest)) return std::nullopt;
  return Fix::replace(path, text, homeFolder + rest, homeFolder + rest);
}

}  // namespace

std::optional<Placeholder> leadingExpansion(std::string_view text) {
  if (text == "~" || text.starts_with("~/")) return Placeholder{Placeholder::Kind::Tilde, "~"};
  const std::string_view name = variable(text);
  if (!name.empty()) return Placeholder{Placeholder::Kind::Variable, std::string(name)};
  return std::nullopt;
}

std::optional<Placeholder> findPlaceholder(std::string_view text) {
  constexpr std::size_t longestPath = 4096;  // bounds the quadratic search for closing marks
  text = text.substr(0, longestPath);
  if (auto first = leadingExpansion(text)) return first;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::string_view rest = text.substr(i);
    const std::string_view name = variable(rest);
    if (!name.empty()) return Placeholder{Placeholder::Kind::Variable, std::string(name)};
    const std::string_view mark = templateMark(rest);
    if (!mark.empty()) return Placeholder{Placeholder::Kind::Template, std::string(mark)};
  }
  return std::nullopt;
}

void warnOfPlaceholder(const Placeholder& placeholder, const std::string& text, const std::string& homeFolder,
                       const std::string& keyPath, const jobfile::OpaqueValue::Path& path, Findings& findings) {
  const auto fix = fixOf(placeholder, text, homeFolder, path);
  if (placeholder.kind == Placeholder::Kind::Template) {
    findings.warning(keyPath, clause("the placeholder %@ hasn’t been replaced", {placeholder.text}));
  } else if (placeholder.kind == Placeholder::Kind::Variable || homeFolder.empty()) {
    findings.warning(keyPath, clause("launchd doesn’t expand %@", {placeholder.text}), fix);
  } else {
    findings.warning(keyPath, clause("launchd doesn’t expand %@; write %@ instead", {placeholder.text, homeFolder}),
                     fix);
  }
}

}  // namespace mirvel::lint
