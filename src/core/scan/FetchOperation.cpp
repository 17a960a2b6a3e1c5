#include "core/scan/FetchOperation.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <span>

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

}  // namespace

FetchOperation::FetchOperation(const Jobs& oldJobs, ScanSettings settings, ScanTools& tools)
    : m_settings(std::move(settings)),
      m_tools(tools),
      m_files(tools.cache, tools.console),
      m_extraFolders(m_settings, m_files, tools.collator, tools.console, m_isCancelled) {
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
  m_files.begin();
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
  if (kind == Kind::extraFolder) return m_extraFolders.jobs();
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
  auto entries = folder->entries().value_or(JobFolder::Entries());
  std::erase_if(entries, [](const auto& entry) {
    return entry.name == Const::FileName::dsStore || entry.name.starts_with(temporaryPrefix);
  });
  return kind.isLaunchd() ? launchdJobs(kind, *folder, entries) : otherJobs(kind, *folder, entries);
}

Jobs FetchOperation::launchdJobs(Kind kind, const JobFolder& folder, const JobFolder::Entries& entries) {
  m_files.enter(entries);
  const bool isCached = m_files.isCached(), notes = m_extraFolders.isNeeded();
  ReadAhead ahead(folder, entries, m_files.isCaching() || notes);
  NameSorter jobsFound(m_tools.collator);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (m_isCancelled) return {};
    URL url = folder.urlOf(entries[i].name);
    std::optional<JobFile> file;
    if (entries[i].isRegular && !isCached) {
      const auto& contents = ahead.read(i);
      if (contents && notes) m_extraFolders.note(url, entries[i], contents->stamp);
      file = m_files.fresh(contents, url);
    } else {
      file = fileOf(folder, entries[i], url);
    }
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

std::optional<JobFile> FetchOperation::fileOf(const JobFolder& folder, const JobFolder::Entry& entry, const URL& url) {
  const auto stamp = folder.stamp(entry.name);
  if (!stamp) return std::nullopt;
  if (m_extraFolders.isNeeded()) m_extraFolders.note(url, entry, *stamp);
  return m_files.file(folder, entry.name, *stamp, url);
}

}  // namespace mirvel
