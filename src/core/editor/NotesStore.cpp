#include "core/editor/NotesStore.h"

#include <utility>

namespace mirvel {

NotesStore::NotesStore(const std::filesystem::path& folder, MainQueue& queue, StoreTroubles& troubles)
    : m_store(folder / "Notes.plist", &troubles), m_delay(queue) {}

NotesStore::~NotesStore() {
  if (m_store.hasChanges()) (void)m_store.write();  // the store reports what fails
}

std::string NotesStore::note(const URL& job) const {
  const auto* const text = m_store.get<std::string>(storeKey(job));
  return text ? *text : std::string();
}

bool NotesStore::has(const URL& job) const {
  return m_store.find(storeKey(job)) != nullptr;
}

void NotesStore::setNote(const URL& job, std::string text) {
  constexpr double interval = 0.3;
  m_store.put(storeKey(job), std::move(text));
  m_delay(interval, [this, change = ++m_changes] {
    if (change == m_changes) (void)m_store.write();  // the store reports what fails
  });
  changed.post(job);
}

void NotesStore::jobMoved(const URL& from, const URL& to) {
  if (!has(from)) return;
  const std::string moved = note(from);
  const std::string there = note(to);
  const bool isBoth = !moved.empty() && !there.empty() && moved != there;
  m_store.put(storeKey(to), isBoth ? moved + "\n\n" + there : moved.empty() ? there : moved);
  (void)m_store.set(storeKey(from), std::nullopt);  // the store reports what fails
}

}  // namespace mirvel
