#pragma once

#include <filesystem>
#include <string>

#include "core/base/Signal.h"
#include "core/files/URL.h"
#include "core/ports/MainQueue.h"
#include "core/settings/Store.h"

namespace mirvel {

/// The user's notes on jobs, by the URLs of the jobs. They aren't part of the job files. Main thread only.
class NotesStore {
 public:
  /// The notes are in "Notes.plist" in the folder. The references must outlive the store.
  NotesStore(const std::filesystem::path& folder, MainQueue& queue, StoreTroubles& troubles);
  /// Writes pending changes.
  ~NotesStore();
  NotesStore(const NotesStore&) = delete;
  NotesStore& operator=(const NotesStore&) = delete;

  /// Empty if there is no note.
  std::string note(const URL& job) const;
  /// Whether there is a note, which may be empty.
  bool has(const URL& job) const;
  /// All notes, by the keys that the store uses for URLs. The reference is valid until the next call.
  const propertylist::Dictionary& notes() const { return m_store.contents(); }
  /// Sets a note and posts `changed`. The file is written 0.3 seconds after the last change; if that fails, the failure
  /// is reported to the troubles and the notes are kept in memory.
  void setNote(const URL& job, std::string text);
  /// Moves the note of a job to another URL, where it precedes an existing note, and writes the file at once.
  void jobMoved(const URL& from, const URL& to);

  Signal<URL> changed;  ///< the note on this job was set by the user

 private:
  mutable Store m_store;  // reading may have to read the file again
  Delay m_delay;
  int m_changes = 0;  ///< since the store was written
};

}  // namespace mirvel
