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
  const auto names = folder->names();
  // Of a folder with more files than the cache holds, each would have gone before it is asked for again.
  m_isCaching = names.size() <= FileCache::countLimit;
  Jobs jobsFound;
  for (const auto& name : names) {
    if (m_isCancelled) return {};
    if (name == Const::FileName::dsStore) continue;
    if (auto job = read(*folder, name, kind)) jobsFound.push_back(std::move(job));
  }
  return jobsFound;
}

std::shared_ptr<Job> FetchOperation::read(const JobFolder& folder, const std::string& name, Kind kind) {
  if (kind.isLaunchd()) return readLaunchd(folder, name, kind);
  const URL url = folder.urlOf(name);
  if (kind.isStartupItem()) return StartupItem::read(url, kind);
  return PrivilegedHelperTool::read(url, Kind::privilegedHelperTool, m_tools.embeddedList,
                                    m_settings.showInternalHelpers);
}

std::shared_ptr<Job> FetchOperation::readLaunchd(const JobFolder& folder, const std::string& name, Kind kind) {
  const URL url = folder.urlOf(name);
  auto data = dataOf(folder, name, url);
  if (!data) return nullptr;
  return Launchd::read(*std::move(data), url, kind, Launchd::Source::File, m_settings, m_tools.console);
}

std::optional<std::string> FetchOperation::dataOf(const JobFolder& folder, const std::string& name, const URL& url) {
  const auto stamp = folder.stamp(name);
  if (!stamp) return std::nullopt;
  const std::string key = m_isCaching ? FileCache::key(url.text(), stamp->seconds, stamp->nanoseconds) : std::string();
  const std::string* const cached = m_isCaching ? m_tools.cache.find(key) : nullptr;
  if (cached) return *cached;
  auto data = folder.read(name, *stamp);
  if (!data) {
    m_tools.console.log(unreadableJobLine(url.text()));
    return std::nullopt;
  }
  if (m_isCaching && isSettled(*stamp)) m_tools.cache.put(key, *data);
  return *std::move(data);
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
