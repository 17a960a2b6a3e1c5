#include "core/scan/FetchOperation.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <span>

#include "core/base/Const.h"
#include "core/catalogue/Launchd.h"
#include "core/catalogue/LoginItem.h"
#include "core/catalogue/PrivilegedHelperTool.h"
#include "core/catalogue/StartupItem.h"
#include "core/files/ReplaceFile.h"
#include "core/scan/ReadAhead.h"
#include "core/scan/SortByKey.h"

namespace mirvel {

namespace {

std::span<const Kind> kindsToScan(bool showSystemJobs) {
  if (showSystemJobs) return Kind::allCases;
  return Kind::visibleKinds;
}

}  // namespace

FetchOperation::FetchOperation(const Jobs& oldJobs, ScanSettings settings, ScanTools& tools)
    : m_settings(std::move(settings)), m_tools(tools) {
  m_oldJobs.reserve(oldJobs.size());
  for (const auto& job : oldJobs) {
    m_oldJobs.push_back(
        {.checksum = job->checksum, .kind = job->kind, .url = job->url, .isToBeReadAgain = job->isToBeReadAgain()});
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
                             job->url.equalTo(old.url);
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
