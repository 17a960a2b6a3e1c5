#include "core/creation/InstalledApplications.h"

#include <algorithm>
#include <map>
#include <system_error>

#include "core/files/ReadFile.h"
#include "core/loginitems/DesktopEntry.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view extension = ".desktop";
constexpr int deepest = 8;  // bounds the search where folders are nested in folders

std::string variable(const Environment& environment, const std::string& name) {
  const auto found = environment.find(name);
  return found == environment.end() ? std::string() : found->second;
}

/// By descending precedence. The XDG rules for base directories require that relative paths are ignored.
std::vector<fs::path> applicationFolders(const Environment& environment, const fs::path& home) {
  const fs::path own = variable(environment, "XDG_DATA_HOME");
  std::vector<fs::path> folders{(own.is_absolute() ? own : home / ".local" / "share") / "applications"};
  std::string shared = variable(environment, "XDG_DATA_DIRS");
  if (shared.empty()) shared = "/usr/local/share:/usr/share";
  for (const std::string_view folder : String::split(shared, ':')) {
    if (folder.starts_with('/')) folders.push_back(fs::path(folder) / "applications");
  }
  return folders;
}

/// "kde-editor.desktop" of "kde/editor.desktop".
std::string idOf(const fs::path& file, const fs::path& folder) {
  std::string id = file.lexically_relative(folder).native();
  std::replace(id.begin(), id.end(), '/', '-');
  return id;
}

/// Adds the files of the folder by ID; `emplace` keeps those of folders with higher precedence.
void addEntries(const fs::path& folder, std::map<std::string, fs::path>& entries) {
  std::error_code failure;
  fs::recursive_directory_iterator all(folder, fs::directory_options::skip_permission_denied, failure);
  for (; !failure && all != fs::recursive_directory_iterator(); all.increment(failure)) {
    if (all.depth() >= deepest) all.disable_recursion_pending();
    std::error_code ignored;
    const fs::path& file = all->path();
    if (file.native().ends_with(extension) && all->is_regular_file(ignored)) entries.emplace(idOf(file, folder), file);
  }
}

std::optional<InstalledApplication> applicationOf(const std::string& id, const fs::path& file,
                                                  const Environment& environment, const std::string& locale) {
  const auto bytes = readFile(file, DesktopEntry::largestFile);
  auto entry = bytes ? DesktopEntry::read(*bytes, locale) : std::nullopt;
  if (!entry || entry->isNoDisplay || !entry->canBeStarted(environment)) return std::nullopt;
  std::string name = std::move(entry->name);
  if (name.empty()) name = String::chop(id, extension, String::Edge::End);
  return InstalledApplication{.id = id, .name = std::move(name), .icon = entry->image(), .path = file};
}

}  // namespace

std::vector<InstalledApplication> installedApplications(const Environment& environment, const fs::path& home,
                                                        const std::string& locale, const Collator& collator) {
  std::map<std::string, fs::path> entries;
  for (const auto& folder : applicationFolders(environment, home)) addEntries(folder, entries);
  std::vector<InstalledApplication> applications;
  for (const auto& [id, file] : entries) {
    if (auto application = applicationOf(id, file, environment, locale)) {
      applications.push_back(*std::move(application));
    }
  }
  std::stable_sort(applications.begin(), applications.end(), [&collator](const auto& a, const auto& b) {
    return collator.localizedStandardCompare(a.name, b.name) < 0;
  });
  return applications;
}

ApplicationList::ApplicationList(const Foundation& foundation, const Platform& platform)
    : m_foundation(foundation), m_platform(platform), m_delay(platform.mainQueue) {}

void ApplicationList::find(std::function<void()> found) {
  m_isFinding = true;
  auto deliver = m_delay.whileOwned([this, found = std::move(found)](std::vector<InstalledApplication> applications) {
    m_isFinding = false;
    m_all = std::move(applications);
    found();
  });
  m_platform.fileQueue.add([&foundation = m_foundation, &queue = m_platform.mainQueue, deliver = std::move(deliver)] {
    auto applications = installedApplications(foundation.environment, foundation.roots.home,
                                              foundation.localize.locale(), foundation.collator);
    queue.post([deliver, applications = std::move(applications)] { deliver(applications); });
  });
}

std::vector<const InstalledApplication*> ApplicationList::matching(std::string_view text) const {
  const std::string wanted = String::fold(text);
  std::vector<const InstalledApplication*> result;
  for (const auto& application : m_all) {
    if (String::fold(application.name).find(wanted) != std::string::npos) result.push_back(&application);
  }
  return result;
}

}  // namespace mirvel
