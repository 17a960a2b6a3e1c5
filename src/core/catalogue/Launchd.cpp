#include "core/catalogue/Launchd.h"

#include "core/base/Const.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Writer.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace {

/// The subtitle of a job: its command without the folder of the tool, with the home folder as "~".
std::string summaryOf(const jobfile::Plist& plist, const std::filesystem::path& home) {
  std::string text(plist.program ? String::lastPathComponent(*plist.program) : std::string_view());
  if (!plist.programArguments) return String::shortenHomeFolder(text, home.native());
  const std::vector<std::string>& arguments = *plist.programArguments;
  text.reserve(plist.run.size());
  const bool repeatsTool = !arguments.empty() && arguments.front() == text;
  for (std::size_t i = repeatsTool ? 1 : 0; i < arguments.size(); ++i) {
    if (text.empty()) {
      text = String::lastPathComponent(arguments[i]);
    } else {
      text.append(" ").append(arguments[i]);
    }
  }
  return String::shortenHomeFolder(text, home.native());
}

bool hasExtension(std::string_view name) {
  return String::withoutExtension(name) != name;
}

/// The path whose icon a job with this tool displays. If the path contains no dot, the tool itself, or the script
/// editor for osascript; else the innermost component with an extension, such as the bundle around the tool. Null if
/// there is none, and for a path that isn't absolute.
std::optional<std::string> iconPathOf(const std::optional<std::string>& tool, const ScanSettings& settings) {
  if (!tool || !tool->starts_with('/')) return std::nullopt;
  if (tool->find('.') == std::string::npos) return *tool == settings.osascript ? settings.scriptEditor : tool;
  // Ascends from the tool to the first component with an extension.
  for (std::string_view path = *tool; !path.empty(); path = path.substr(0, path.rfind('/'))) {
    while (path.ends_with('/')) path.remove_suffix(1);
    if (hasExtension(String::lastPathComponent(path))) return std::string(path);
  }
  return std::nullopt;
}

}  // namespace

Launchd::Launchd(Pass, Kind theKind, std::string theSummary, Checksum theChecksum, URL theURL,
                 std::unique_ptr<Plist> record)
    : Job(theKind, record->name, std::move(theSummary), std::move(theChecksum), std::move(theURL)),
      m_plist(std::move(record)) {}

std::shared_ptr<Launchd> Launchd::read(std::string_view data, URL url, Kind kind, const ScanSettings& settings,
                                       Console& console) {
  auto file = JobFile::read(data, url, console);
  return file ? read(*std::move(file), std::move(url), kind, settings, console) : nullptr;
}

std::shared_ptr<Launchd> Launchd::read(JobFile file, URL url, Kind kind, const ScanSettings& settings,
                                       Console& console) {
  // Unlike make_unique, doesn't zero the memory first.
  auto record = std::make_unique_for_overwrite<Plist>();
  if (const auto result = Plist::decodeTolerantly(file.list->root(), *record); !result) {
    logInvalidFile(result.error(), url, console);
    return nullptr;
  }
  const bool isInternal = record->name.starts_with(Const::excludePrefix);
  if (isInternal && !settings.showInternalHelpers) return nullptr;
  record->dictionary.emplace(std::move(file.list));

  std::string summary = summaryOf(*record, settings.roots.home);
  std::optional<std::string> iconPath = iconPathOf(record->iconPath, settings);
  Image icon = Image::iconOfPath(iconPath.value_or(url.text()));
  auto job = std::make_shared<Launchd>(Pass(), kind, std::move(summary), std::move(file.checksum), std::move(url),
                                       std::move(record));
  job->textContent = std::move(file.text);
  job->iconPath = std::move(iconPath);
  job->icon = std::move(icon);
  job->isEditable = !isInternal && kind.isEditable(settings.editSystemJobs);
  return job;
}

std::optional<std::string> Launchd::plistData() const {
  auto text = propertylist::writeXml(m_plist->encodeAll());
  if (!text) return std::nullopt;
  return std::move(*text);
}

std::optional<propertylist::Dictionary> Launchd::plistDictionary() const {
  const auto data = plistData();
  if (!data) return std::nullopt;
  auto file = propertylist::readDictionary(*data);
  return file ? std::optional(*std::move(file)) : std::nullopt;
}

}  // namespace mirvel
