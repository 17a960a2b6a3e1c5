#include "core/notifications/Announcements.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "core/notifications/ChangeNotes.h"

namespace mirvel {

namespace {

KnownJobs jobsOfKinds(const KnownJobs& jobs, const std::set<Kind::Case>& kinds) {
  KnownJobs result;
  for (const auto& [path, job] : jobs) {
    if (kinds.contains(job.kind)) result.emplace(path, job);
  }
  return result;
}

FoundJobs jobsOfKinds(const FoundJobs& jobs, const std::set<Kind::Case>& kinds) {
  FoundJobs result;
  for (const auto& [path, job] : jobs) {
    if (kinds.contains(job.known.kind)) result.emplace(path, job);
  }
  return result;
}

}  // namespace

bool Announcements::scan(const std::set<Kind::Case>& kinds) {
  const auto begin = static_cast<std::int64_t>(m_setup.clock.secondsSince1970() * 1e6);
  AgentMemory& memory = m_setup.memory;
  std::set<Kind::Case> scanned;
  FoundJobs found;
  for (const Kind::Case kind : kinds) {
    auto ofKind = m_setup.inventory.jobsOf(kind, memory.jobs);
    if (!ofKind) continue;
    scanned.insert(kind);
    found.merge(*ofKind);
  }
  const KnownJobs before = jobsOfKinds(memory.jobs, scanned);
  OwnChanges own = ownChanges();
  std::set<Kind::Case> compared;
  std::set_intersection(scanned.begin(), scanned.end(), memory.kinds.begin(), memory.kinds.end(),
                        std::inserter(compared, compared.end()));
  addNotices(changesBetween(jobsOfKinds(before, compared), jobsOfKinds(found, compared), own));
  const bool mustLookAgain = own.expire(begin, [&](const auto& file) { return covers(scanned, file); });
  const bool areNotesUsed = std::exchange(memory.usedNotes, own.used()) != own.used();
  const auto kindsBefore = memory.kinds;
  remember(scanned, found);
  if (areNotesUsed || memory.kinds != kindsBefore || jobsOfKinds(memory.jobs, scanned) != before) memory.write();
  return mustLookAgain;
}

/// Whether the scan has looked at a file. One in no job folder may be the target of a link in any of them.
bool Announcements::covers(const std::set<Kind::Case>& scanned, const std::filesystem::path& file) const {
  bool isInFolder = false, isScanned = false;
  for (const Kind kind : Kind::monitoredKinds) {
    if (kind.folderURL(m_setup.roots) != file.parent_path()) continue;
    isInFolder = true;
    isScanned = isScanned || scanned.contains(kind);
  }
  return isScanned || (!isInFolder && !scanned.empty());
}

void Announcements::addNotices(const std::vector<JobChange>& changes) {
  for (const JobChange& change : changes) {
    const KnownJob& job = change.job.known;
    if (!m_setup.exceptions.tellsChanges(job.name, job.kind)) continue;
    m_setup.memory.add(noticeOf(change, m_setup.localize, m_setup.roots.home));
  }
}

void Announcements::remember(const std::set<Kind::Case>& scanned, const FoundJobs& found) {
  KnownJobs& jobs = m_setup.memory.jobs;
  std::erase_if(jobs, [&](const auto& job) { return scanned.contains(job.second.kind); });
  for (const auto& [path, job] : found) jobs[path] = job.known;
  m_setup.memory.kinds.insert(scanned.begin(), scanned.end());
}

OwnChanges Announcements::ownChanges() const {
  std::vector<ChangeNote> notes;
  bool areAllRead = true;
  const std::pair<std::filesystem::path, ChangeNotes::Readers> files[] = {
      {m_setup.roots.ownChanges(), ChangeNotes::Readers::User},
      {m_setup.roots.publicChanges(), ChangeNotes::Readers::Everybody}};
  for (const auto& [file, readers] : files) {
    auto read = ChangeNotes(file, readers).read(m_setup.user);
    if (read) std::move(read->begin(), read->end(), std::back_inserter(notes));
    if (!read) m_setup.console.log("The record of changes can't be used: " + read.error().text());
    areAllRead = areAllRead && read;
  }
  OwnChanges own(notes, m_setup.user, m_setup.memory.usedNotes);
  if (areAllRead) own.dropPathsWithoutNotes();
  return own;
}

/// The kind of the job in a file; that of the user's agents if it is in no job folder.
Kind Announcements::kindOf(const std::filesystem::path& file) const {
  for (const Kind kind : Kind::monitoredKinds) {
    if (kind.isLaunchd() && kind.folderURL(m_setup.roots) == file.parent_path()) return kind;
  }
  return Kind::userAgent;
}

void Announcements::takeRuns(const std::vector<JobReport>& reports, bool isFirst, const LastLine& lastLine) {
  AgentMemory& memory = m_setup.memory;
  const auto before = memory.failures.write();
  for (const JobReport& report : reports) {
    const auto event = memory.failures.take(report, isFirst);
    if (!event) continue;
    const Kind kind = kindOf(event->path);
    if (!m_setup.exceptions.tellsFailures(event->label, kind)) continue;
    Notice notice = event->hasFailed ? noticeOfFailure(event->label, event->path, *event->run.end, lastLine(*event),
                                                       m_setup.localize)
                                     : noticeOfSuccess(event->label, event->path, m_setup.localize);
    notice.kind = kind;
    if (event->hasFailed) memory.failures.setTold(event->label);
    memory.add(std::move(notice));
  }
  if (isFirst) memory.setRunsKnown();
  if (isFirst || memory.failures.write() != before) memory.write();  // each notice changes a series
}

}  // namespace mirvel
