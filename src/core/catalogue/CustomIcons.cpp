#include "core/catalogue/CustomIcons.h"

#include <system_error>
#include <unordered_map>

namespace mirvel {

namespace fs = std::filesystem;

namespace {

fs::path iconFolder(const fs::path& applicationSupport) {
  return applicationSupport / "Icons";
}

/// The visible image files of the store, by their names without extension.
std::unordered_map<std::string, fs::path> storedIcons(const fs::path& folder) {
  std::unordered_map<std::string, fs::path> icons;
  std::error_code failure;  // a store that can't be listed counts as empty
  for (fs::directory_iterator entry(folder, failure), end; !failure && entry != end; entry.increment(failure)) {
    const fs::path& path = entry->path();
    if (path.extension() == ".png" && !path.filename().native().starts_with('.')) icons.emplace(path.stem(), path);
  }
  return icons;
}

}  // namespace

fs::path customIconFile(const fs::path& applicationSupport, const std::string& name) {
  return iconFolder(applicationSupport) / (name + ".png");
}

void matchCustomIcons(const Jobs& jobs, const fs::path& applicationSupport, Workspace& workspace) {
  const auto icons = storedIcons(iconFolder(applicationSupport));
  for (const auto& job : jobs) {
    job->customIconDigest = job->iconStoreName();
    const auto found = job->customIconDigest ? icons.find(*job->customIconDigest) : icons.end();
    if (found == icons.end()) continue;
    if (auto image = workspace.image(found->second)) job->customIcon = std::move(image);
  }
}

}  // namespace mirvel
