#include "core/scan/ExtraFolderScan.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "core/catalogue/Launchd.h"
#include "core/files/ReplaceFile.h"

namespace mirvel {

namespace {

bool isLink(const URL& url) {
  std::error_code failure;
  return std::filesystem::is_symlink(url.path(), failure);
}

/// Tells a job file from other property lists.
bool hasLabel(const JobFile& file) {
  const auto entries = file.list->root().dictionary();
  const auto* const label = entries ? entries->find("Label") : nullptr;
  return label && label->string();
}

}  // namespace

void ExtraFolderScan::note(const URL& url, const JobFolder::Entry& entry, const JobFolder::Stamp& stamp) {
  if (!entry.isRegular && isLink(url)) {
    auto& links = m_linkedFrom[identityOf(stamp)];
    links.push_back(url.text());
    std::sort(links.begin(), links.end());  // folders are read in no particular order
  } else if (stamp.hasOtherNames) {
    m_knownFiles.insert(identityOf(stamp));
  }
}

Jobs ExtraFolderScan::jobs() {
  if (!isNeeded()) return {};
  for (const Kind kind : Kind::allCases) {
    const auto path = kind.folderURL(m_settings.roots);
    const auto folder = path ? JobFolder::open(*path) : std::nullopt;
    if (const auto stamp = folder ? folder->stamp(".") : std::nullopt) m_knownFolders.insert(identityOf(*stamp));
  }
  NameSorter jobsFound(m_collator);
  for (const auto& path : m_settings.folders) {
    const auto folder = path.is_absolute() ? JobFolder::open(path) : std::nullopt;
    const auto stamp = folder ? folder->stamp(".") : std::nullopt;
    if (stamp && m_knownFolders.insert(identityOf(*stamp)).second) addJobs(*folder, jobsFound);
  }
  return std::move(jobsFound).sorted();
}

/// Unlike a job folder, the folder may contain anything, so that only property lists are read.
void ExtraFolderScan::addJobs(const JobFolder& folder, NameSorter& jobsFound) {
  auto entries = folder.entries().value_or(JobFolder::Entries());
  std::erase_if(entries, [](const auto& entry) {
    return !entry.name.ends_with(".plist") || entry.name.starts_with(temporaryPrefix);
  });
  m_files.enter(entries);
  for (const auto& entry : entries) {
    if (m_isCancelled) return;
    if (auto found = job(folder, entry)) jobsFound.add(std::move(found));
  }
}

/// Null if the entry isn't a job file with a label, or has been read already.
std::shared_ptr<Job> ExtraFolderScan::job(const JobFolder& folder, const JobFolder::Entry& entry) {
  URL url = folder.urlOf(entry.name);
  const auto stamp = folder.stamp(entry.name);
  if (!stamp || !stamp->isRegular || leadsToKnownFolder(url)) return nullptr;
  if (!m_knownFiles.insert(identityOf(*stamp)).second) return nullptr;
  auto file = m_files.file(folder, entry.name, *stamp, url);
  if (!file || !hasLabel(*file)) return nullptr;
  auto found = Launchd::read(*std::move(file), std::move(url), Kind::extraFolder, m_settings, m_console);
  const auto links = m_linkedFrom.find(identityOf(*stamp));
  if (found && links != m_linkedFrom.end()) found->linkedFrom = links->second;
  return found;
}

/// Whether the entry is a link to a file in a folder that has been read.
bool ExtraFolderScan::leadsToKnownFolder(const URL& entry) const {
  if (!isLink(entry)) return false;
  std::error_code failure;
  const auto target = std::filesystem::canonical(entry.path(), failure);
  const auto folder = failure ? std::nullopt : JobFolder::open(target.parent_path());
  const auto stamp = folder ? folder->stamp(".") : std::nullopt;
  return stamp && m_knownFolders.contains(identityOf(*stamp));
}

}  // namespace mirvel
