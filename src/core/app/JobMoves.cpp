#include "core/app/JobMoves.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <map>
#include <system_error>
#include <unordered_map>

#include "core/actions/RevisionController.h"
#include "core/catalogue/CustomIcons.h"
#include "core/editor/NotesStore.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

bool isGone(const URL& url) {
  struct stat status {};
  return ::lstat(url.path().c_str(), &status) != 0 && (errno == ENOENT || errno == ENOTDIR);
}

bool isAt(const Jobs& jobs, const URL& url) {
  return std::any_of(jobs.begin(), jobs.end(), [&](const auto& job) { return job->url.equalTo(url); });
}

/// Launchd jobs by their labels; null where several have the same.
std::unordered_map<std::string_view, const Job*> jobsByLabel(const Jobs& jobs) {
  std::unordered_map<std::string_view, const Job*> result;
  for (const auto& job : jobs) {
    if (!job->kind.isLaunchd() || job->name.empty()) continue;
    const auto [place, isFirst] = result.emplace(job->name, job.get());
    if (!isFirst) place->second = nullptr;
  }
  return result;
}

}  // namespace

JobMoves::JobMoves(const fs::path& applicationSupport, const Selection& selection, NotesStore& notes,
                   RevisionController& revisions, StoreTroubles& troubles)
    : m_applicationSupport(applicationSupport),
      m_notes(notes),
      m_revisions(revisions),
      m_troubles(troubles),
      m_labels(applicationSupport / "JobLabels.plist", &troubles),
      m_noteChanged(notes.changed.subscribe([this, &selection](const URL& url) {
        const auto job = selection.job();
        if (job && job->url.equalTo(url)) remember(*job);
      })) {}

void JobMoves::jobMoved(const URL& from, const URL& to) {
  if (storeKey(from) == storeKey(to)) return;
  m_notes.jobMoved(from, to);
  m_revisions.jobMoved(from, to);
  moveIcon(from, to);
  if (const propertylist::Value* const label = m_labels.find(storeKey(from))) {
    m_labels.put(storeKey(to), propertylist::Value(*label));
    (void)m_labels.set(storeKey(from), std::nullopt);  // the store reports what fails
  }
}

void JobMoves::moveIcon(const URL& from, const URL& to) {
  const auto oldName = iconStoreName(from);
  const auto newName = iconStoreName(to);
  if (!oldName || !newName) return;
  const fs::path old = customIconFile(m_applicationSupport, *oldName);
  const fs::path target = customIconFile(m_applicationSupport, *newName);
  if (std::error_code failure; !fs::exists(old, failure) || fs::exists(target, failure)) return;
  if (std::error_code failure; fs::rename(old, target, failure), failure) {
    m_troubles.report({.kind = StoreTrouble::Kind::Unwritten,
                       .error = systemError(failure.value(), "rename the picture", old.string())});
  }
}

void JobMoves::follow(const Jobs& oldJobs, const Jobs& jobs) {
  const propertylist::Dictionary labels = m_labels.contents();
  if (labels.empty()) return;
  const auto byLabel = jobsByLabel(jobs);
  for (const auto& [path, value] : labels) {
    const auto* const label = value.as<std::string>();
    const auto found = label ? byLabel.find(*label) : byLabel.end();
    if (found == byLabel.end() || !found->second) continue;
    const URL old = URL::file(path);
    const URL& now = found->second->url;
    // Another job of that label that has been there before isn't the one that has gone.
    const bool isNewThere = storeKey(now) != path && !labels.find(storeKey(now)) && !isAt(oldJobs, now);
    if (isNewThere && isGone(old)) jobMoved(old, now);
  }
}

void JobMoves::remember(const Jobs& jobs) {
  const propertylist::Dictionary& notes = m_notes.notes();
  const propertylist::Dictionary& revisions = m_revisions.revisions();
  const propertylist::Dictionary& labels = m_labels.contents();
  std::map<std::string, std::string> isNew;
  for (const auto& job : jobs) {
    if (!job->kind.isLaunchd()) continue;
    std::string key = storeKey(job->url);
    if (!job->customIcon && !notes.find(key) && !revisions.find(key)) continue;
    const propertylist::Value* const known = labels.find(key);
    if (!known || *known != propertylist::Value(job->name)) isNew.emplace(std::move(key), job->name);
  }
  if (isNew.empty()) return;
  for (auto& [key, label] : isNew) m_labels.put(key, std::move(label));
  (void)m_labels.write();  // the store reports what fails
}

void JobMoves::remember(const Job& job) {
  if (!job.kind.isLaunchd()) return;
  const propertylist::Value* const known = m_labels.find(storeKey(job.url));
  if (!known || *known != propertylist::Value(job.name)) (void)m_labels.set(storeKey(job.url), job.name);
}

std::shared_ptr<Job> findMoved(const Job& job, const Jobs& oldJobs, const Jobs& newJobs) {
  if (job.name.empty() || !job.kind.isLaunchd() || job.isNewFile || !isGone(job.url)) return nullptr;
  std::shared_ptr<Job> found;
  for (const auto& candidate : newJobs) {
    if (!candidate->kind.isLaunchd() || candidate->name != job.name) continue;
    if (found) return nullptr;
    found = candidate;
  }
  return found && !isAt(oldJobs, found->url) ? found : nullptr;
}

}  // namespace mirvel
