#include "core/loginitems/SystemEventsItems.h"

#include <optional>
#include <string_view>
#include <utility>

#include "core/catalogue/LoginItem.h"
#include "core/loginitems/BundledItems.h"

namespace mirvel {

namespace {

// The ASCII separators for this purpose, which occur in no name or path that users enter.
constexpr char fieldEnd = '\x1F';
constexpr char recordEnd = '\x1E';

/// Prints a record of name, path and kind for each item. Items that disappear meanwhile or have no path are skipped.
constexpr const char* script =
    "set fieldEnd to character id 31\n"
    "set recordEnd to character id 30\n"
    "set report to \"\"\n"
    "tell application \"System Events\"\n"
    "\trepeat with anItem in (get login items)\n"
    "\t\ttry\n"
    "\t\t\tset itemName to name of anItem\n"
    "\t\t\tset itemPath to path of anItem\n"
    "\t\t\tset itemKind to \"\"\n"
    "\t\t\ttry\n"
    "\t\t\t\tif kind of anItem is not missing value then set itemKind to (kind of anItem) as text\n"
    "\t\t\tend try\n"
    "\t\t\tif itemName is not missing value and itemPath is not missing value then\n"
    "\t\t\t\tset report to report & itemName & fieldEnd & itemPath & fieldEnd & itemKind & fieldEnd & recordEnd\n"
    "\t\t\tend if\n"
    "\t\tend try\n"
    "\tend repeat\n"
    "end tell\n"
    "return report\n";

/// Deletes the first item whose name and path equal the arguments of the script.
constexpr const char* removalScript =
    "on run arguments\n"
    "\ttell application \"System Events\"\n"
    "\t\trepeat with anItem in (get login items)\n"
    "\t\t\tif name of anItem is item 1 of arguments and path of anItem is item 2 of arguments then\n"
    "\t\t\t\tdelete anItem\n"
    "\t\t\t\treturn\n"
    "\t\t\tend if\n"
    "\t\tend repeat\n"
    "\tend tell\n"
    "end run\n";

/// Removes and returns the text up to the next separator, which is removed too; null if there is none.
std::optional<std::string_view> takeUntil(char end, std::string_view& text) {
  const auto at = text.find(end);
  if (at == std::string_view::npos) return std::nullopt;
  const std::string_view piece = text.substr(0, at);
  text.remove_prefix(at + 1);
  return piece;
}

std::optional<LoginItems::Listed> itemIn(std::string_view record) {
  const auto name = takeUntil(fieldEnd, record);
  const auto path = takeUntil(fieldEnd, record);
  const auto kind = takeUntil(fieldEnd, record);
  if (!kind || !record.empty()) return std::nullopt;
  return LoginItems::Listed{.name = std::string(*name), .path = std::string(*path), .kind = std::string(*kind)};
}

}  // namespace

SystemEventsItems::SystemEventsItems(ProcessRunner& runner, std::string osascript, std::filesystem::path applications)
    : m_runner(runner), m_osascript(std::move(osascript)), m_applications(std::move(applications)) {}

std::vector<LoginItems::Listed> SystemEventsItems::listed() {
  const auto result = m_runner.run(m_osascript, {"-e", script});
  if (!result || result->exitStatus != 0) return {};
  std::vector<Listed> items;
  std::string_view rest = result->output;
  while (const auto record = takeUntil(recordEnd, rest)) {
    if (auto item = itemIn(*record)) items.push_back(*std::move(item));
  }
  return items;
}

Result<void> SystemEventsItems::remove(const LoginItem& item) {
  const auto result = m_runner.run(m_osascript, {"-e", removalScript, item.name, item.path});
  if (!result) return result.error();
  if (result->exitStatus == 0) return {};
  return Error{.code = Error::Code::Io, .message = "System Events: " + result->complaints, .file = item.path};
}

std::vector<LoginItems::Bundled> SystemEventsItems::bundled() {
  return bundledItems(m_applications);
}

}  // namespace mirvel
