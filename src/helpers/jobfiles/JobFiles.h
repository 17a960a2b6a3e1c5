#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "core/base/Result.h"

namespace mirvel {

/// The job files that a helper reads and changes, with the rights and the limits that it has. For one thread.
class JobFiles {
 public:
  JobFiles() = default;
  virtual ~JobFiles() = default;
  JobFiles(const JobFiles&) = delete;
  JobFiles& operator=(const JobFiles&) = delete;

  /// Why the file may not be changed, whatever its state is. The operations below say so too.
  virtual Result<void> admit(const std::filesystem::path& file) = 0;
  /// Why the file may not be deleted.
  virtual Result<void> admitRemoval(const std::filesystem::path& file) { return admit(file); }
  /// Why a job may not be loaded from the file with the rights that this has.
  virtual Result<void> admitLoad(const std::filesystem::path&) { return {}; }
  /// Whether a job can have been loaded from the path; it may have gone.
  virtual bool isForJobs(const std::filesystem::path& file) const;
  /// Puts the content in place of the file, whole or not at all. Makes the folder between a job folder and a file that
  /// is named by a UUID. No file becomes more open than it was, and a new one no more than `mostOpen`, so that what is
  /// private, as a password in it may be, stays so.
  virtual Result<void> write(const std::filesystem::path& file, std::string_view content, mode_t mostOpen) = 0;
  /// Puts the content at another place, in the place of the file that has been there or not, and removes the old file
  /// or link. Where both lie in folders of the same rights, there is exactly one of them at every moment, and a taken
  /// name is an error; otherwise the old one goes when the new one stands. After a failure all is as it was.
  virtual Result<void> move(const std::filesystem::path& from, const std::filesystem::path& to,
                            std::string_view content, mode_t mostOpen) = 0;
  /// Removes the file or link itself, and such a folder with its last file. Nothing there is no error.
  virtual Result<void> remove(const std::filesystem::path& file) = 0;
  /// The content; `NotFound` if there is no file.
  virtual Result<std::string> read(const std::filesystem::path& file) = 0;

 protected:
  /// `move` in its second form.
  Result<void> writeThenRemove(const std::filesystem::path& from, const std::filesystem::path& to,
                               std::string_view content, mode_t mostOpen);
};

/// Why a text can't be a label; it would name another thing than a job, or none.
Result<void> checkLabel(std::string_view label);

/// The label of a job file's content; an error for what is no job file, which launchd wouldn't load.
Result<std::string> labelOf(std::string_view content);

/// Whether the job of a file is the one that was loaded from another path: the same file, or one that has moved from
/// there. A copy is another job, whose original goes on.
bool mayBeLoadedFrom(const std::filesystem::path& loaded, const std::filesystem::path& file);

/// Whether two paths lead to the same entry of a folder or to the same file. False if one of them leads nowhere.
bool isSameEntry(const std::filesystem::path& a, const std::filesystem::path& b);

}  // namespace mirvel
