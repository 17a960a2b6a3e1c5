#pragma once

#include <filesystem>
#include <string>

#include "core/base/Signal.h"
#include "core/files/URL.h"
#include "core/ports/MainQueue.h"
#include "core/settings/Store.h"

namespace mirvel {

/// The user's notes on jobs, by the paths of their files. They are kept beside the jobs, not in them. For the main
/// thread.
class NotesStore {
 public:
  /// "Notes.plist" lies in the folder. The references outlive the store.
  NotesStore(const std::filesystem::path& folder, MainQueue& queue, StoreTroubles& troubles);
  /// Writes what waits to be written.
  ~NotesStore();
  NotesStore(const NotesStore&) = delete;
  NotesStore& operator=(const NotesStore&) = delete;

  /// Empty if there is none.
  std::string note(const URL& job) const;
  bool has(const URL& job) const;
  /// All notes, under the keys of their jobs. Valid until the next call.
  const propertylist::Dictionary& notes() const { return m_store.contents(); }
  /// Writes the store 0.3 seconds after the last change. What can't be written is kept until the program ends.
  void setNote(const URL& job, std::string text);
  /// Gives a note that belongs to one file to another. If that has one, too, it comes last.
  void jobMoved(const URL& from, const URL& to);

  Signal<URL> changed;  ///< the note on this job was set by the user

 private:
  mutable Store m_store;  // reading may have to read the file again
  Delay m_delay;
  int m_changes = 0;  ///< since the store was written
};

}  // namespace mirvel
