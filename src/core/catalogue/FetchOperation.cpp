#include "core/catalogue/FetchOperation.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <span>
#include <vector>

#include "core/catalogue/KeyedRow.h"
#include "core/catalogue/Launchd.h"
#include "core/catalogue/LoginItem.h"
#include "core/catalogue/PrivilegedHelperTool.h"
#include "core/catalogue/StartupItem.h"
#include "core/support/Const.h"

namespace mirvel {

namespace {

std::span<const Kind> kindsToScan(bool showSystemJobs) {
  if (showSystemJobs) return Kind::allCases;
  return Kind::visibleKinds;
}

std::string keyOf(const URL& url, const JobFolder::Stamp& stamp) {
  return FileCache::key(url.text(), stamp.seconds, stamp.nanoseconds);
}

/// A file that was written a moment ago may be written again within the same tick of the file system's clock: its date
/// would stay, and so would the cached bytes.
bool isSettled(const JobFolder::Stamp& stamp) {
  constexpr std::int64_t tick = 2;
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return stamp.seconds + tick < std::chrono::duration_cast<std::chrono::seconds>(now).count();
}

}  // namespace

FetchOperation::FetchOperation(const Jobs& oldJobs, ScanSettings settings, ScanTools& tools)
    : m_settings(std::move(settings)), m_tools(tools) {
  m_oldChecksums.reserve(oldJobs.size());
  for (const auto& job : oldJobs) m_oldChecksums.push_back(job->checksum);
}

void FetchOperation::main() {
  if (m_isCancelled) return;
  m_hasOldCache = !m_tools.cache.isEmpty();
  Jobs found = scan();
  if (!m_isCancelled && !isOld(found)) jobs = std::move(found);
}

bool FetchOperation::isOld(const Jobs& found) const {
  return std::equal(found.begin(), found.end(), m_oldChecksums.begin(), m_oldChecksums.end(),
                    [](const auto& job, const std::string& checksum) { return job->checksum == checksum; });
}

Jobs FetchOperation::scan() {
  Jobs result;
  for (const Kind kind : kindsToScan(m_settings.showSystemJobs)) {
    if (m_isCancelled) return {};
    Jobs ofKind = jobsOf(kind);
    sortByName(ofKind);
    std::move(ofKind.begin(), ofKind.end(), std::back_inserter(result));
  }
  return result;
}

Jobs FetchOperation::jobsOf(Kind kind) {
  if (kind == Kind::loginItemSystemPreferences) {
    return LoginItem::systemPreferencesItems(m_tools.loginItems, m_settings.showInternalHelpers);
  }
  if (kind == Kind::loginItemApplication) {
    return LoginItem::applicationItems(m_tools.loginItems, m_settings.showInternalHelpers);
  }
  const auto folder = kind.folderURL(m_settings.roots);
  return folder ? jobsInFolder(kind, *folder) : Jobs();
}

Jobs FetchOperation::jobsInFolder(Kind kind, const std::filesystem::path& path) {
  const auto folder = JobFolder::open(path);
  if (!folder) return {};
  const auto entries = folder->entries();
  // Of a folder with more files than the cache holds, each would have gone before it is asked for again.
  m_isCaching = entries.size() <= FileCache::countLimit;
  Jobs jobsFound;
  for (const auto& entry : entries) {
    if (m_isCancelled) return {};
    if (entry.name == Const::FileName::dsStore) continue;
    if (auto job = read(*folder, entry, kind)) jobsFound.push_back(std::move(job));
  }
  return jobsFound;
}

std::shared_ptr<Job> FetchOperation::read(const JobFolder& folder, const JobFolder::Entry& entry, Kind kind) {
  const URL url = folder.urlOf(entry.name);
  if (kind.isLaunchd()) return readLaunchd(folder, entry, url, kind);
  if (kind.isStartupItem()) return StartupItem::read(url, kind);
  return PrivilegedHelperTool::read(url, Kind::privilegedHelperTool, m_tools.embeddedList,
                                    m_settings.showInternalHelpers);
}

std::shared_ptr<Job> FetchOperation::readLaunchd(const JobFolder& folder, const JobFolder::Entry& entry, const URL& url,
                                                 Kind kind) {
  const bool isFresh = entry.isRegular && !(m_isCaching && m_hasOldCache);
  auto file = isFresh ? freshFile(folder, entry.name, url) : fileOf(folder, entry.name, url);
  if (!file) return nullptr;
  return Launchd::read(*std::move(file), url, kind, Launchd::Source::File, m_settings, m_tools.console);
}

std::optional<JobFile> FetchOperation::fileOf(const JobFolder& folder, const std::string& name, const URL& url) {
  const auto stamp = folder.stamp(name);
  if (!stamp) return std::nullopt;
  if (m_isCaching) {
    if (const JobFile* cached = m_tools.cache.find(keyOf(url, *stamp))) return *cached;
  }
  auto data = folder.read(name, *stamp);
  if (!data) return unreadable(data.error(), url);
  return parsed({*std::move(data), *stamp}, url);
}

std::optional<JobFile> FetchOperation::freshFile(const JobFolder& folder, const std::string& name, const URL& url) {
  auto contents = folder.readListed(name);
  if (!contents) return unreadable(contents.error(), url);
  return parsed(*std::move(contents), url);
}

std::nullopt_t FetchOperation::unreadable(const Error& error, const URL& url) const {
  // What has gone since it was listed isn't worth a word.
  if (error.code != Error::Code::NotFound) m_tools.console.log(unreadableJobLine(url.text()));
  return std::nullopt;
}

std::optional<JobFile> FetchOperation::parsed(JobFolder::Contents contents, const URL& url) {
  auto file = JobFile::read(std::move(contents.data), url, m_tools.console);
  if (file && m_isCaching && isSettled(contents.stamp)) m_tools.cache.put(keyOf(url, contents.stamp), *file);
  return file;
}

void FetchOperation::sortByName(Jobs& jobsFound) const {
  std::vector<KeyedRow> rows;
  rows.reserve(jobsFound.size());
  for (const auto& job : jobsFound) rows.emplace_back(job->sortKey(Job::SortText::Name, m_tools.collator), rows.size());
  // Of two jobs with one name the path decides, as the order of a folder's listing may change.
  std::stable_sort(rows.begin(), rows.end(), [&](const KeyedRow& a, const KeyedRow& b) {
    if (a.isSame(b)) return jobsFound[a.index()]->url.text() < jobsFound[b.index()]->url.text();
    return a < b;
  });
  jobsFound = inOrder(rows, jobsFound);
}

}  // namespace mirvel
