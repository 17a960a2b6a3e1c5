#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "core/propertylist/Value.h"
#include "core/support/Delay.h"
#include "core/support/URL.h"

namespace mirvel {

/// The user's notes on jobs, by the paths of their files. They are kept beside the jobs, not in them. The store is read
/// when it is first needed; one that can't be read is empty. For the main thread.
class NotesStore {
 public:
  /// "Notes.plist" lies in the folder.
  NotesStore(const std::filesystem::path& folder, MainQueue& queue);
  /// Writes what waits to be written.
  ~NotesStore();
  NotesStore(const NotesStore&) = delete;
  NotesStore& operator=(const NotesStore&) = delete;

  /// Empty if there is none.
  std::string note(const URL& job) const;
  /// Writes the store 0.3 seconds after the last change. What can't be written is kept until the program ends.
  void setNote(const URL& job, std::string text);

 private:
  plist::Dictionary& store() const;
  void save();

  const std::filesystem::path m_file;
  mutable std::optional<plist::Dictionary> m_notes;
  mutable bool m_canSave = true;  ///< not over a store that can neither be read nor set aside
  Delay m_delay;
  int m_changes = 0;  ///< since the store was written
};

}  // namespace mirvel
