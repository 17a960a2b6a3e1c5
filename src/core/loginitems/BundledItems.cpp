#include "core/loginitems/BundledItems.h"

#include <sys/stat.h>

#include <algorithm>
#include <system_error>

#include "core/catalogue/JobFolder.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

bool isHidden(const fs::path& path) {
  if (path.filename().native().starts_with('.')) return true;
#ifdef __APPLE__
  struct stat status {};
  return ::lstat(path.c_str(), &status) == 0 && (status.st_flags & UF_HIDDEN) != 0;
#else
  return false;
#endif
}

/// The visible entries of a folder, sorted by name; empty if it can't be listed.
std::vector<fs::path> entriesOf(const fs::path& path) {
  const auto folder = JobFolder::open(path);
  const auto listed = folder ? folder->entries() : std::nullopt;
  if (!listed) return {};
  std::vector<fs::path> entries;
  for (const auto& [name, isRegular] : *listed) {
    fs::path entry = path / name;
    if (!isHidden(entry)) entries.push_back(std::move(entry));
  }
  std::sort(entries.begin(), entries.end());
  return entries;
}

bool isBundle(const fs::path& path) {
  return path.extension() == ".app";
}

/// Doesn't follow links, so that the search never leaves the folder that it started in.
bool isFolder(const fs::path& path) {
  std::error_code failure;
  return fs::symlink_status(path, failure).type() == fs::file_type::directory;
}

void addItemOf(const fs::path& application, std::vector<LoginItems::Bundled>& items) {
  const auto entries = entriesOf(application / "Contents" / "Library" / "LoginItems");
  if (entries.empty()) return;
  items.push_back({.name = application.stem().native(),
                   .itemName = entries.front().filename().native(),
                   .itemPath = entries.front().native(),
                   .applicationPath = application.native()});
}

}  // namespace

std::vector<LoginItems::Bundled> bundledItems(const fs::path& applications) {
  std::vector<LoginItems::Bundled> items;
  for (const auto& entry : entriesOf(applications)) {
    if (isBundle(entry)) {
      addItemOf(entry, items);
    } else if (isFolder(entry)) {
      for (const auto& inner : entriesOf(entry)) {
        if (isBundle(inner)) addItemOf(inner, items);
      }
    }
  }
  return items;
}

}  // namespace mirvel
