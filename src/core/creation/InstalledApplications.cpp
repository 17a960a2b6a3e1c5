#include "core/creation/InstalledApplications.h"

#include <algorithm>
#include <map>
#include <sstream>
#include <system_error>

#include "core/files/ReadFile.h"
#include "core/loginitems/DesktopEntry.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view extension = ".desktop";
constexpr int deepest = 8;  // folders below folders

std::string variable(const Environment& environment, const std::string& name) {
  const auto found = environment.find(name);
  return found == environment.end() ? std::string() : found->second;
}

/// Those that count most first; paths that aren't absolute are ignored (XDG base directories).
std::vector<fs::path> applicationFolders(const Environment& environment, const fs::path& home) {
  const fs::path own = variable(environment, "XDG_DATA_HOME");
  std::vector<fs::path> folders{(own.is_absolute() ? own : home / ".local" / "share") / "applications"};
  std::string shared = variable(environment, "XDG_DATA_DIRS");
  if (shared.empty()) shared = "/usr/local/share:/usr/share";
  std::istringstream list(shared);
  for (std::string folder; std::getline(list, folder, ':');) {
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

/// The files of all entries by their ID; none for one that isn't a regular file.
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
  std::string name = entry->name.empty() ? id.substr(0, id.size() - extension.size()) : std::move(entry->name);
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

}  // namespace mirvel
