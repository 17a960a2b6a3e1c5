#include "core/loginitems/DesktopEntry.h"

#include <algorithm>
#include <map>

#include "core/loginitems/DesktopLocale.h"
#include "core/process/Commands.h"
#include "core/text/Strings.h"
#include "core/text/Text.h"

namespace mirvel {

namespace {

using Values = std::map<std::string_view, std::string_view>;

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view groupHeader = "[Desktop Entry]";

/// The unescaped values of the group "Desktop Entry"; null if it is missing.
std::optional<Values> valuesIn(std::string_view bytes) {
  bytes = String::chop(bytes, byteOrderMark, String::Edge::Start);
  Values values;
  bool isThere = false;
  bool isInGroup = false;
  while (!bytes.empty()) {
    std::string_view line = bytes.substr(0, bytes.find('\n'));
    bytes.remove_prefix(std::min(line.size() + 1, bytes.size()));
    line = String::chop(line, "\r", String::Edge::End);
    const std::string_view trimmed = String::trim(line);
    if (trimmed.starts_with('[')) {
      isInGroup = trimmed == groupHeader;
      isThere = isThere || isInGroup;
    }
    const auto equals = line.find('=');
    if (!isInGroup || equals == std::string_view::npos || trimmed.starts_with('#')) continue;
    values.insert_or_assign(String::trim(line.substr(0, equals)),
                            String::trim(line.substr(equals + 1), false, String::Edge::Start));
  }
  return isThere ? std::optional(std::move(values)) : std::nullopt;
}

/// The character that an escape sequence represents; null for an unknown one, which is kept literally.
std::optional<char> escaped(char c) {
  switch (c) {
    case 's':
      return ' ';
    case 'n':
      return '\n';
    case 't':
      return '\t';
    case 'r':
      return '\r';
    case '\\':
    case ';':
      return c;
    default:
      return std::nullopt;
  }
}

std::string unescape(std::string_view raw) {
  std::string result;
  for (std::size_t at = 0; at < raw.size(); ++at) {
    const auto meant = raw[at] == '\\' && at + 1 < raw.size() ? escaped(raw[at + 1]) : std::nullopt;
    result += meant.value_or(raw[at]);
    if (meant) ++at;
  }
  return result;
}

std::string textOf(const Values& values, std::string_view key) {
  const auto found = values.find(key);
  return found == values.end() ? std::string() : unescape(found->second);
}

std::string localizedTextOf(const Values& values, std::string_view key, const std::vector<std::string>& locales) {
  for (const auto& locale : locales) {
    const std::string localizedKey = std::string(key).append("[").append(locale).append("]");
    if (auto text = textOf(values, localizedKey); !text.empty()) return text;
  }
  return textOf(values, key);
}

/// Splits a list at unescaped semicolons; the last one is optional.
std::optional<std::vector<std::string>> listOf(const Values& values, std::string_view key) {
  const auto found = values.find(key);
  if (found == values.end()) return std::nullopt;
  const std::string_view raw = found->second;
  std::vector<std::string> elements;
  std::size_t begin = 0;
  for (std::size_t at = 0; at <= raw.size(); ++at) {
    if (at < raw.size() && raw[at] == '\\') {
      ++at;
    } else if (at == raw.size() || raw[at] == ';') {
      if (at > begin) elements.push_back(unescape(raw.substr(begin, at - begin)));
      begin = at + 1;
    }
  }
  return elements;
}

/// Removes field codes such as `%f`, for which the desktop would insert files; `%%` becomes `%`.
std::string withoutFieldCodes(std::string_view argument) {
  std::string result;
  for (std::size_t at = 0; at < argument.size(); ++at) {
    if (argument[at] != '%') {
      result += argument[at];
    } else if (++at == argument.size() || argument[at] == '%') {
      result += '%';
    }
  }
  return result;
}

/// Parses quoting like a shell. That is a superset of the standard, and accepts the single quotes of many real entries.
std::vector<std::string> commandIn(std::string_view exec) {
  if (String::trim(exec, true).empty()) return {};
  std::vector<std::string> command;
  for (const auto& argument : Text::separateCommand(exec)) {
    std::string plain = withoutFieldCodes(argument);
    if (!plain.empty() || argument.empty()) command.push_back(std::move(plain));
  }
  return command;
}

bool holds(const std::vector<std::string>& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace

std::optional<DesktopEntry> DesktopEntry::read(std::string_view bytes, const std::string& locale) {
  if (bytes.size() > largestFile) return std::nullopt;
  const auto values = valuesIn(bytes);
  if (!values) return std::nullopt;
  const auto locales = desktopLocales(locale);
  return DesktopEntry{.type = textOf(*values, "Type"),
                      .name = localizedTextOf(*values, "Name", locales),
                      .icon = localizedTextOf(*values, "Icon", locales),
                      .tryExec = textOf(*values, "TryExec"),
                      .command = commandIn(textOf(*values, "Exec")),
                      .onlyShowIn = listOf(*values, "OnlyShowIn"),
                      .notShowIn = listOf(*values, "NotShowIn").value_or(std::vector<std::string>()),
                      .isHidden = textOf(*values, "Hidden") == "true",
                      .isNoDisplay = textOf(*values, "NoDisplay") == "true"};
}

bool DesktopEntry::isShownIn(std::string_view desktops) const {
  for (const std::string_view desktop : String::split(desktops, ':')) {
    if (onlyShowIn && holds(*onlyShowIn, desktop)) return true;
    if (holds(notShowIn, desktop)) return false;
  }
  return !onlyShowIn;
}

bool DesktopEntry::canBeStarted(const Environment& environment) const {
  const auto desktops = environment.find("XDG_CURRENT_DESKTOP");
  const bool hasProgram = !command.empty() && !command.front().empty();
  return type == "Application" && !isHidden && hasProgram &&
         isShownIn(desktops == environment.end() ? "" : desktops->second) &&
         (tryExec.empty() || findProgram(tryExec, environment));
}

std::optional<Image> DesktopEntry::image() const {
  if (icon.empty()) return std::nullopt;
  return icon.starts_with('/') ? Image::file(icon) : Image::named(icon);
}

std::string escapedForExec(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (c == '"' || c == '`' || c == '$') result += R"(\\)";
    if (c == '\\') result += R"(\\\)";
    if (c == '%') result += '%';
    result += c;
  }
  return result;
}

}  // namespace mirvel
