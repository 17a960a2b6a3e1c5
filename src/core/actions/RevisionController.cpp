#include "core/actions/RevisionController.h"

#include <algorithm>

#include "core/catalogue/Launchd.h"

namespace mirvel {

namespace {

/// The revisions of a job; empty if any of them isn't a dictionary.
propertylist::Array revisionsIn(Store& store, const std::string& key) {
  const auto* const array = store.get<propertylist::Array>(key);
  const auto isRevision = [](const propertylist::Value& entry) {
    return entry.as<propertylist::Dictionary>() != nullptr;
  };
  return array && std::all_of(array->begin(), array->end(), isRevision) ? *array : propertylist::Array();
}

std::size_t limitOf(std::int64_t number) {
  return static_cast<std::size_t>(std::max<std::int64_t>(number, 0));
}

/// 0 if it has no date.
double dateOf(const propertylist::Value& revision) {
  const auto* const dictionary = revision.as<propertylist::Dictionary>();
  const auto* const seconds = dictionary ? dictionary->get<double>(RevisionController::dateKey) : nullptr;
  return seconds ? *seconds : 0;
}

}  // namespace

// Results of the store are ignored here because it reports failures itself.

RevisionController::RevisionController(const std::filesystem::path& folder, const Defaults& defaults,
                                       const Clock& clock, StoreTroubles& troubles)
    : m_store(folder / "Revisions.plist", &troubles), m_defaults(defaults), m_clock(clock) {}

void RevisionController::saveRevision(const Launchd& job) {
  // Without the older revisions, the list would replace them as soon as the file can be read again.
  if (!m_store.refresh()) return;
  const std::string key = storeKey(job.url);
  propertylist::Array kept = revisionsIn(m_store, key);
  if (auto content = job.plistDictionary()) {
    propertylist::Dictionary revision{{dateKey, m_clock.secondsSince1970()}, {plistKey, *std::move(content)}};
    kept.insert(kept.begin(), std::move(revision));
  }
  const auto limit = limitOf(m_defaults.numberOfSavedRevisions());
  if (kept.size() > limit) kept.resize(limit);
  (void)m_store.set(key, std::move(kept));
}

void RevisionController::clearRevisions(const URL& job) {
  (void)m_store.set(storeKey(job), std::nullopt);
}

void RevisionController::clearRevisions() {
  (void)m_store.clear();
}

RevisionController::Excess RevisionController::countBeyond(std::int64_t number) const {
  const auto limit = limitOf(number);
  Excess excess;
  for (const auto& [path, value] : m_store.contents()) {
    const auto* const revisions = value.as<propertylist::Array>();
    if (!revisions || revisions->size() <= limit) continue;
    excess.revisions += static_cast<std::int64_t>(revisions->size() - limit);
    ++excess.jobs;
  }
  return excess;
}

void RevisionController::removeBeyond(std::int64_t number) {
  if (!m_store.refresh()) return;
  const auto limit = limitOf(number);
  const propertylist::Dictionary all = m_store.contents();  // a copy, since it changes below
  for (const auto& [path, value] : all) {
    const auto* const revisions = value.as<propertylist::Array>();
    if (!revisions || revisions->size() <= limit) continue;
    propertylist::Array kept = *revisions;
    kept.resize(limit);
    m_store.put(path, std::move(kept));
  }
  (void)m_store.write();
}

void RevisionController::jobMoved(const URL& from, const URL& to) {
  propertylist::Array moved = revisionsIn(m_store, storeKey(from));
  if (moved.empty()) return;
  const propertylist::Array there = revisionsIn(m_store, storeKey(to));
  moved.insert(moved.end(), there.begin(), there.end());
  std::stable_sort(moved.begin(), moved.end(), [](const auto& a, const auto& b) { return dateOf(a) > dateOf(b); });
  m_store.put(storeKey(to), std::move(moved));
  (void)m_store.set(storeKey(from), std::nullopt);
}

}  // namespace mirvel
