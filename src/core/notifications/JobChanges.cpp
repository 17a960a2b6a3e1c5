#include "core/notifications/JobChanges.h"

#include <algorithm>
#include <iterator>
#include <system_error>
#include <utility>

namespace mirvel {

namespace fs = std::filesystem;

namespace {

using What = JobChange::What;

std::vector<JobChange> differences(const KnownJobs& known, const FoundJobs& found) {
  std::vector<JobChange> changes;
  for (const auto& [path, job] : found) {
    const auto before = known.find(path);
    if (before == known.end()) changes.push_back({.what = What::Added, .path = path, .job = job});
    if (before != known.end() && before->second != job.known)
      changes.push_back({.what = What::Changed, .path = path, .job = job});
  }
  for (const auto& [path, job] : known) {
    if (!found.contains(path)) changes.push_back({.what = What::Removed, .path = path, .job = {.known = job}});
  }
  return changes;
}

/// Replaces pairs of a removed and an added job with the same content by one change.
void findMoves(std::vector<JobChange>& changes) {
  for (JobChange& added : changes) {
    if (added.what != What::Added) continue;
    const auto removed = std::find_if(changes.begin(), changes.end(), [&](const JobChange& change) {
      return change.what == What::Removed && change.job.known.checksum == added.job.known.checksum;
    });
    if (removed == changes.end()) continue;
    added.what = What::Moved;
    added.from = removed->path;
    removed->path.clear();
    removed->what = What::Changed;
  }
  std::erase_if(changes, [](const JobChange& change) { return change.path.empty(); });
}

/// Whether a note is about the path, or about the target of a link that is there.
bool isAbout(const ChangeNote& note, const fs::path& path) {
  if (note.path == path) return true;
  std::error_code failure;
  return !note.isRemoval && fs::is_symlink(path, failure) && fs::weakly_canonical(path, failure) == note.path;
}

bool says(const ChangeNote& note, const JobChange& change) {
  if (note.isRemoval || change.what == What::Removed) return note.isRemoval && change.what == What::Removed;
  return note.checksum.empty() || note.checksum == change.job.known.checksum;
}

}  // namespace

OwnChanges::OwnChanges(const std::vector<ChangeNote>& notes, uid_t user, Used used) : m_used(std::move(used)) {
  std::copy_if(notes.begin(), notes.end(), std::back_inserter(m_notes),
               [&](const ChangeNote& note) { return note.user == user; });
}

void OwnChanges::dropPathsWithoutNotes() {
  std::erase_if(m_used, [&](const auto& entry) {
    return std::none_of(m_notes.begin(), m_notes.end(),
                        [&](const ChangeNote& note) { return note.path == entry.first; });
  });
}

bool OwnChanges::isUsed(const ChangeNote& note) const {
  const auto used = m_used.find(note.path);
  return used != m_used.end() && note.number <= used->second;
}

bool OwnChanges::take(const JobChange& change) {
  const auto counts = [&](const ChangeNote& note) {
    return !isUsed(note) && isAbout(note, change.path) && says(note, change);
  };
  const auto note = std::find_if(m_notes.rbegin(), m_notes.rend(), counts);
  if (note == m_notes.rend()) return false;
  m_used[note->path] = note->number;
  return true;
}

bool OwnChanges::expire(std::int64_t scanBegin, const Covers& covers) {
  bool areLeft = false;
  for (const ChangeNote& note : m_notes) {
    if (isUsed(note) || !covers(note.path)) continue;
    const bool isOld = note.number < scanBegin - patience;
    if (isOld) m_used[note.path] = note.number;
    areLeft = areLeft || (!isOld && note.number <= scanBegin);  // later ones cause a scan of their own
  }
  return areLeft;
}

std::vector<JobChange> changesBetween(const KnownJobs& known, const FoundJobs& found, OwnChanges& own) {
  auto changes = differences(known, found);
  std::erase_if(changes, [&](const JobChange& change) { return own.take(change); });
  findMoves(changes);
  return changes;
}

}  // namespace mirvel
