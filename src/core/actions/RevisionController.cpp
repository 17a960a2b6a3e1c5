#include "core/actions/RevisionController.h"

#include "core/catalogue/Launchd.h"

namespace mirvel {

RevisionController::RevisionController(const std::filesystem::path& folder, const Defaults& defaults,
                                       const Clock& clock, StoreTroubles& troubles)
    : m_store(folder / "Revisions.plist", defaults, clock, troubles) {}

void RevisionController::saveRevision(const Launchd& job) {
  std::optional<propertylist::Dictionary> revision;
  if (auto content = job.plistDictionary()) revision = propertylist::Dictionary{{plistKey, *std::move(content)}};
  m_store.add(storeKey(job.url), std::move(revision));
}

void RevisionController::clearRevisions(const URL& job) {
  m_store.clear(storeKey(job));
}

void RevisionController::clearRevisions() {
  m_store.clear();
}

void RevisionController::jobMoved(const URL& from, const URL& to) {
  m_store.move(storeKey(from), storeKey(to));
}

}  // namespace mirvel
