#include "core/actions/RevisionStore.h"

#include <algorithm>
#include <utility>

namespace mirvel {

namespace {

/// 0 if it has no date.
double dateOf(const propertylist::Value& revision) {
  const auto* const dictionary = revision.as<propertylist::Dictionary>();
  const auto* const seconds = dictionary ? dictionary->get<double>(RevisionStore::dateKey) : nullptr;
  return seconds ? *seconds : 0;
}

std::size_t limitOf(std::int64_t number) {
  return static_cast<std::size_t>(std::max<std::int64_t>(number, 0));
}

}  // namespace

// Results of the store are ignored here because it reports failures itself.

RevisionStore::RevisionStore(const std::filesystem::path& file, const Defaults& defaults, const Clock& clock,
                             StoreTroubles& troubles)
    : m_store(file, &troubles), m_defaults(defaults), m_clock(clock) {}

propertylist::Array RevisionStore::revisionsOf(const std::string& key) const {
  const auto* const array = m_store.get<propertylist::Array>(key);
  const auto isRevision = [](const propertylist::Value& entry) {
    return entry.as<propertylist::Dictionary>() != nullptr;
  };
  return array && std::all_of(array->begin(), array->end(), isRevision) ? *array : propertylist::Array();
}

void RevisionStore::add(const std::string& key, std::optional<propertylist::Dictionary> revision) {
  // Without the older revisions, the list would replace them as soon as the file can be read again.
  if (!m_store.refresh()) return;
  propertylist::Array kept = revisionsOf(key);
  if (revision) {
    revision->set(dateKey, m_clock.secondsSince1970());
    kept.insert(kept.begin(), *std::move(revision));
  }
  const auto limit = limitOf(m_defaults.numberOfSavedRevisions());
  if (kept.size() > limit) kept.resize(limit);
  (void)m_store.set(key, std::move(kept));
}

void RevisionStore::clear(const std::string& key) {
  (void)m_store.set(key, std::nullopt);
}

void RevisionStore::clear() {
  (void)m_store.clear();
}

Result<RevisionHistory::Excess> RevisionStore::countBeyond(std::int64_t number) const {
  if (auto read = m_store.refresh(); !read) return read.error();
  const auto limit = limitOf(number);
  Excess excess;
  for (const auto& [key, value] : m_store.contents()) {
    const auto* const revisions = value.as<propertylist::Array>();
    if (!revisions || revisions->size() <= limit) continue;
    excess.revisions += static_cast<std::int64_t>(revisions->size() - limit);
    ++excess.files;
  }
  return excess;
}

void RevisionStore::removeBeyond(std::int64_t number) {
  if (!m_store.refresh()) return;
  const auto limit = limitOf(number);
  const propertylist::Dictionary all = m_store.contents();  // a copy, since it changes below
  for (const auto& [key, value] : all) {
    const auto* const revisions = value.as<propertylist::Array>();
    if (!revisions || revisions->size() <= limit) continue;
    propertylist::Array kept = *revisions;
    kept.resize(limit);
    m_store.put(key, std::move(kept));
  }
  (void)m_store.write();
}

void RevisionStore::move(const std::string& from, const std::string& to) {
  propertylist::Array moved = revisionsOf(from);
  if (moved.empty()) return;
  const propertylist::Array there = revisionsOf(to);
  moved.insert(moved.end(), there.begin(), there.end());
  std::stable_sort(moved.begin(), moved.end(), [](const auto& a, const auto& b) { return dateOf(a) > dateOf(b); });
  m_store.put(to, std::move(moved));
  (void)m_store.set(from, std::nullopt);
}

}  // namespace mirvel
