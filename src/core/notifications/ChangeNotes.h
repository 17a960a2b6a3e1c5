#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Result.h"
#include "core/process/FileDescriptor.h"

namespace mirvel {

/// A change of a job file that a helper makes on behalf of a user.
struct ChangeNote {
  std::int64_t number = 0;     ///< larger than those of all earlier notes in the file
  uid_t user = 0;              ///< for whom
  std::filesystem::path path;  ///< of the job file
  bool isRemoval = false;
  /// Of the content to be written, in the form of `Checksum`. Empty: any content, because not everybody may read the
  /// file, and a checksum would help to guess it.
  std::string checksum = {};

  bool operator==(const ChangeNote&) const = default;
};

/// The record of changes that users make in Mirvel, by which the background agent recognises them as the user's own.
/// The helpers note each change before they make it: the helper of the user in a file of the user, that of root in one
/// that everybody can read. It has no contents of files and only the newest `most` notes. For one thread; several
/// processes may use a file, which a file beside it locks ("changes.lock").
class ChangeNotes {
 public:
  static constexpr std::size_t most = 256;
  enum class Readers { User, Everybody };

  ChangeNotes(std::filesystem::path file, Readers readers) : m_file(std::move(file)), m_readers(readers) {}

  /// Adds a note, whose number is assigned here and returned. Creates the file, and its folder if it is missing. A file
  /// that isn't such a record is replaced.
  Result<std::int64_t> add(ChangeNote note) const;
  /// Removes the note of a change that wasn't made. Ignored if there is no such note.
  Result<void> withdraw(std::int64_t number) const;
  /// The notes, the oldest first; none if there is no file. Entries of another form are skipped. Fails with
  /// `NotTrusted` if users other than root and `reader` could have written the file, and like `readFile`.
  Result<std::vector<ChangeNote>> read(uid_t reader) const;

 private:
  Result<void> makeFolder() const;
  FileDescriptor lock() const;
  std::vector<ChangeNote> present() const;
  Result<void> write(const std::vector<ChangeNote>& notes) const;

  std::filesystem::path m_file;
  Readers m_readers;
};

/// Reads and writes the stored form, a property list. Entries of another form are skipped; `Malformed` for anything but
/// a property list.
Result<std::vector<ChangeNote>> readChangeNotes(std::string_view bytes);
std::string writeChangeNotes(const std::vector<ChangeNote>& notes);

}  // namespace mirvel
