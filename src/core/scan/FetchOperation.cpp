#include "core/scan/FetchOperation.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iterator>
#include <span>
#include <system_error>

#include "core/base/Const.h"
#include "core/catalogue/Launchd.h"
#include "core/catalogue/LoginItem.h"
#include "core/catalogue/PrivilegedHelperTool.h"
#include "core/catalogue/StartupItem.h"
#include "core/files/ReplaceFile.h"
#include "core/scan/ReadAhead.h"

namespace mirvel {

namespace {

std::span<const Kind> kindsToScan(bool showSystemJobs) {
  if (showSystemJobs) return Kind::allCases;
  return Kind::visibleKinds;
}

/// Tells a job file from other property lists.
bool hasLabel(const JobFile& file) {
  const auto entries = file.list->root().dictionary();
  const auto* const label = entries ? entries->find("Label") : nullptr;
  return label && label->string();
}

}  // namespace

FetchOperation::FetchOperation(const Jobs& oldJobs, ScanSettings settings, ScanTools& tools)
    : m_settings(std::move(settings)), m_tools(tools) {
  m_oldJobs.reserve(oldJobs.size());
  for (const auto& job : oldJobs) {
    m_oldJobs.push_back({.checksum = job->checksum,
                         .kind = job->kind,
                         .url = job->url,
                         .isToBeReadAgain = job->isToBeReadAgain(),
                         .linkedFrom = job->linkedFrom});
  }
}

void FetchOperation::main() {
  if (m_isCancelled) return;
  m_hasOldCache = !m_tools.cache.isEmpty();
  m_start = std::chrono::system_clock::now().time_since_epoch();
  Jobs found = scan();
  if (m_isCancelled) return;
  m_tools.cache.dropUnused();
  if (!isOld(found)) jobs = std::move(found);
}

bool FetchOperation::isOld(const Jobs& found) const {
  return std::equal(found.begin(), found.end(), m_oldJobs.begin(), m_oldJobs.end(),
                    [](const auto& job, const OldJob& old) {
                      return !old.isToBeReadAgain && job->checksum == old.checksum && job->kind == old.kind &&
                             job->url.equalTo(old.url) && job->linkedFrom == old.linkedFrom;
                    });
}

Jobs FetchOperation::scan() {
  Jobs result;
  for (const Kind kind : kindsToScan(m_settings.showSystemJobs)) {
    if (m_isCancelled) return {};
    Jobs ofKind = jobsOf(kind);
    std::move(ofKind.begin(), ofKind.end(), std::back_inserter(result));
  }
  return result;
}

Jobs FetchOperation::jobsOf(Kind kind) {
  if (kind == Kind::loginItemSystemPreferences) {
    return sorted(LoginItem::systemPreferencesItems(m_tools.loginItems, m_settings.showInternalHelpers));
  }
  if (kind == Kind::loginItemApplication) {
    return sorted(LoginItem::applicationItems(m_tools.loginItems, m_settings.showInternalHelpers));
  }
  if (kind == Kind::extraFolder) return jobsInExtraFolders();
  const auto folder = kind.folderURL(m_settings.roots);
  return folder ? jobsInFolder(kind, *folder) : Jobs();
}

Jobs FetchOperation::sorted(const Jobs& unsorted) const {
  NameSorter sorter(m_tools.collator);
  for (const auto& job : unsorted) sorter.add(job);
  return std::move(sorter).sorted();
}

Jobs FetchOperation::jobsInFolder(Kind kind, const std::filesystem::path& path) {
  const auto folder = JobFolder::open(path);
  if (!folder) return {};
  auto entries = folder->entries();
  std::erase_if(entries, [](const auto& entry) {
    return entry.name == Const::FileName::dsStore || entry.name.starts_with(temporaryPrefix);
  });
  return kind.isLaunchd() ? launchdJobs(kind, *folder, entries) : otherJobs(kind, *folder, entries);
}

Jobs FetchOperation::launchdJobs(Kind kind, const JobFolder& folder, const JobFolder::Entries& entries) {
  // In a folder with more files than the cache can hold, each entry would be evicted before it is used again.
  m_isCaching = entries.size() <= FileCache::countLimit;
  const bool isCached = m_isCaching && m_hasOldCache;
  ReadAhead ahead(folder, entries, m_isCaching);
  NameSorter jobsFound(m_tools.collator);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (m_isCancelled) return {};
    URL url = folder.urlOf(entries[i].name);
    if (!entries[i].isRegular && !m_settings.folders.empty()) noteLink(folder, entries[i].name);
    auto file =
        entries[i].isRegular && !isCached ? freshFile(ahead.read(i), url) : fileOf(folder, entries[i].name, url);
    if (!file) continue;
    auto job = Launchd::read(*std::move(file), std::move(url), kind, m_settings, m_tools.console);
    if (job) jobsFound.add(std::move(job));
  }
  return std::move(jobsFound).sorted();
}

Jobs FetchOperation::otherJobs(Kind kind, const JobFolder& folder, const JobFolder::Entries& entries) {
  NameSorter jobsFound(m_tools.collator);
  for (const auto& entry : entries) {
    if (m_isCancelled) return {};
    if (auto job = readOther(kind, folder.urlOf(entry.name))) jobsFound.add(std::move(job));
  }
  return std::move(jobsFound).sorted();
}

Jobs FetchOperation::jobsInExtraFolders() {
  if (m_settings.folders.empty()) return {};
  for (const Kind kind : Kind::allCases) {
    const auto path = kind.folderURL(m_settings.roots);
    const auto folder = path ? JobFolder::open(*path) : std::nullopt;
    if (const auto stamp = folder ? folder->stamp(".") : std::nullopt) m_knownFolders.insert(identityOf(*stamp));
  }
  NameSorter jobsFound(m_tools.collator);
  for (const auto& path : m_settings.folders) {
    const auto folder = path.is_absolute() ? JobFolder::open(path) : std::nullopt;
    const auto stamp = folder ? folder->stamp(".") : std::nullopt;
    if (stamp && m_knownFolders.insert(identityOf(*stamp)).second) addExtraJobs(*folder, jobsFound);
  }
  return std::move(jobsFound).sorted();
}

/// Unlike a job folder, the folder may contain anything, so that only property lists are read.
void FetchOperation::addExtraJobs(const JobFolder& folder, NameSorter& jobsFound) {
  auto entries = folder.entries();
  std::erase_if(entries, [](const auto& entry) {
    return !entry.name.ends_with(".plist") || entry.name.starts_with(temporaryPrefix);
  });
  m_isCaching = entries.size() <= FileCache::countLimit;
  for (const auto& entry : entries) {
    if (m_isCancelled) return;
    if (auto job = extraJob(folder, entry)) jobsFound.add(std::move(job));
  }
}

std::shared_ptr<Job> FetchOperation::extraJob(const JobFolder& folder, const JobFolder::Entry& entry) {
  URL url = folder.urlOf(entry.name);
  const auto stamp = folder.stamp(entry.name);
  if (!stamp || !stamp->isRegular || leadsToKnownFolder(url)) return nullptr;
  if (!m_extraFiles.insert(identityOf(*stamp)).second) return nullptr;
  auto file = fileOf(folder, entry.name, url);
  if (!file || !hasLabel(*file)) return nullptr;
  auto job = Launchd::read(*std::move(file), std::move(url), Kind::extraFolder, m_settings, m_tools.console);
  const auto links = m_linkedFrom.find(identityOf(*stamp));
  if (job && links != m_linkedFrom.end()) job->linkedFrom = links->second;
  return job;
}

bool FetchOperation::leadsToKnownFolder(const URL& entry) const {
  std::error_code failure;
  if (!std::filesystem::is_symlink(entry.path(), failure)) return false;
  const auto target = std::filesystem::canonical(entry.path(), failure);
  const auto folder = failure ? std::nullopt : JobFolder::open(target.parent_path());
  const auto stamp = folder ? folder->stamp(".") : std::nullopt;
  return stamp && m_knownFolders.contains(identityOf(*stamp));
}

void FetchOperation::noteLink(const JobFolder& folder, const std::string& name) {
  const URL link = folder.urlOf(name);
  std::error_code failure;
  const auto target = std::filesystem::is_symlink(link.path(), failure) ? folder.stamp(name) : std::nullopt;
  if (!target) return;
  auto& links = m_linkedFrom[identityOf(*target)];
  links.push_back(link.text());
  std::sort(links.begin(), links.end());  // folders are read in no particular order
}

std::shared_ptr<Job> FetchOperation::readOther(Kind kind, const URL& url) const {
  if (kind.isStartupItem()) return StartupItem::read(url, kind);
  return PrivilegedHelperTool::read(url, m_tools.embeddedList, m_settings.showInternalHelpers);
}

std::optional<JobFile> FetchOperation::freshFile(const Result<ReadAhead::Contents>& contents, const URL& url) {
  if (!contents) return unreadable(contents.error(), url);
  return parsed(contents->bytes, contents->stamp, url);
}

std::optional<JobFile> FetchOperation::fileOf(const JobFolder& folder, const std::string& name, const URL& url) {
  const auto stamp = folder.stamp(name);
  if (!stamp) return std::nullopt;
  if (m_isCaching) {
    if (const JobFile* cached = m_tools.cache.find(*stamp)) return *cached;
  }
  auto data = folder.read(name, *stamp);
  if (!data) return unreadable(data.error(), url);
  return parsed(*data, *stamp, url);
}

std::nullopt_t FetchOperation::unreadable(const Error& error, const URL& url) const {
  // A file that was deleted since the folder was listed isn't a problem.
  if (error.code != Error::Code::NotFound) m_tools.console.log(unreadableJobLine(url.text()));
  return std::nullopt;
}

/// Whether the file can be cached. A file that was written shortly before the scan may be written again within the same
/// tick of the file system's clock; its stamp would be the same, and the cache would keep the outdated content.
bool FetchOperation::isSettled(const JobFolder::Stamp& stamp) const {
  constexpr std::chrono::seconds tick(2);  // the resolution of FAT file systems
  return stamp.modified + tick < m_start;
}

std::optional<JobFile> FetchOperation::parsed(std::string_view bytes, const JobFolder::Stamp& stamp, const URL& url) {
  auto file = JobFile::read(bytes, url, m_tools.console);
  if (file && m_isCaching && isSettled(stamp)) m_tools.cache.put(stamp, *file);
  return file;
}

}  // namespace mirvel
