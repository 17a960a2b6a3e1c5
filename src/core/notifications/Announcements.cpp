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

void Announcements::scan(const std::set<Kind::Case>& kinds) {
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
  memory.usedNotes = own.used();
  const auto kindsBefore = memory.kinds;
  remember(scanned, found);
  if (memory.kinds != kindsBefore || jobsOfKinds(memory.jobs, scanned) != before) memory.write();
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
  const std::pair<std::filesystem::path, ChangeNotes::Readers> files[] = {
      {m_setup.roots.ownChanges(), ChangeNotes::Readers::User},
      {m_setup.roots.publicChanges(), ChangeNotes::Readers::Everybody}};
  for (const auto& [file, readers] : files) {
    auto read = ChangeNotes(file, readers).read(m_setup.user);
    if (read) std::move(read->begin(), read->end(), std::back_inserter(notes));
    if (!read) m_setup.console.log("The record of changes can't be used: " + read.error().text());
  }
  return OwnChanges(notes, m_setup.user, m_setup.memory.usedNotes);
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
