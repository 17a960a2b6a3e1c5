#include "core/app/JobMoves.h"

#include <algorithm>
#include <map>
#include <system_error>
#include <unordered_map>

#include "core/actions/JobOnDisk.h"
#include "core/actions/RevisionController.h"
#include "core/catalogue/CustomIcons.h"
#include "core/editor/NotesStore.h"
#include "core/session/Catalogue.h"
#include "core/session/Notifications.h"
#include "core/session/Selection.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

bool isAt(const Jobs& jobs, const URL& url) {
  return std::any_of(jobs.begin(), jobs.end(), [&](const auto& job) { return job->url.equalTo(url); });
}

/// The jobs that can be loaded, by label; null for a label that several have.
std::unordered_map<std::string_view, const Job*> jobsByLabel(const Jobs& jobs) {
  std::unordered_map<std::string_view, const Job*> result;
  for (const auto& job : jobs) {
    if (!job->kind.canBeLoaded() || job->name.empty()) continue;
    const auto [place, isFirst] = result.emplace(job->name, job.get());
    if (!isFirst) place->second = nullptr;
  }
  return result;
}

}  // namespace

JobMoves::JobMoves(const fs::path& applicationSupport, Catalogue& catalogue, const Selection& selection,
                   Notifications& notifications, NotesStore& notes, RevisionController& revisions,
                   StoreTroubles& troubles)
    : m_applicationSupport(applicationSupport),
      m_notes(notes),
      m_revisions(revisions),
      m_troubles(troubles),
      m_labels(applicationSupport / "JobLabels.plist", &troubles),
      m_noteChanged(notes.changed.subscribe([this, &selection](const URL& url) {
        const auto job = selection.job();
        if (job && job->url.equalTo(url)) remember(*job);
      })),
      m_iconGiven(notifications.iconGiven.subscribe([this](const Job& job) { remember(job); })),
      m_catalogueWillChange(
          catalogue.willChange().subscribe([this](const Jobs& old, const Jobs& jobs) { follow(old, jobs); })),
      m_jobsUpdated(notifications.jobsUpdated.subscribe([this, &catalogue] { remember(catalogue.jobs()); })),
      m_jobMoved(notifications.jobMoved.subscribe([this](const URL& from, const URL& to) { jobMoved(from, to); })) {}

/// Notes, revisions and icons that the target already has aren't replaced.
void JobMoves::jobMoved(const URL& from, const URL& to) {
  if (storeKey(from) == storeKey(to)) return;
  m_notes.jobMoved(from, to);
  m_revisions.jobMoved(from, to);
  moveIcon(from, to);
  if (const propertylist::Value* const label = m_labels.find(storeKey(from))) {
    m_labels.put(storeKey(to), propertylist::Value(*label));
    (void)m_labels.set(storeKey(from), std::nullopt);  // the store reports failures
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

/// Finds the files that other programs have moved: the path is gone, and exactly one job of the new catalogue has the
/// label.
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
    // A job of the same label that existed before isn't the one that has disappeared.
    const bool isNewThere = storeKey(now) != path && !labels.find(storeKey(now)) && !isAt(oldJobs, now);
    if (isNewThere && isGone(old)) jobMoved(old, now);
  }
}

/// Stores the labels of the jobs that have notes, revisions or icons.
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
  (void)m_labels.write();  // the store reports failures
}

void JobMoves::remember(const Job& job) {
  if (!job.kind.isLaunchd()) return;
  const propertylist::Value* const known = m_labels.find(storeKey(job.url));
  if (!known || *known != propertylist::Value(job.name)) (void)m_labels.set(storeKey(job.url), job.name);
}

}  // namespace mirvel
