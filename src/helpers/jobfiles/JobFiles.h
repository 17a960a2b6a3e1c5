#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <string_view>

#include "core/base/Result.h"

namespace mirvel {

/// Reads and changes job files with the rights of a helper and within its limits. Not thread-safe.
///
/// The operations check their paths themselves: the `admit` functions only allow a request to be refused before any
/// part of it has been carried out.
class JobFiles {
 public:
  JobFiles() = default;
  virtual ~JobFiles() = default;
  JobFiles(const JobFiles&) = delete;
  JobFiles& operator=(const JobFiles&) = delete;

  /// Returns an error if the path may not be written, whether the file exists or not.
  virtual Result<void> admit(const std::filesystem::path& file) = 0;
  /// Returns an error if the path may not be removed.
  virtual Result<void> admitRemoval(const std::filesystem::path& file) { return admit(file); }
  /// Returns an error if a job may not be loaded from the path by this helper.
  virtual Result<void> admitLoad(const std::filesystem::path&) { return {}; }
  /// Whether a job can have been loaded from the path by this helper; the file need not exist any more.
  virtual bool isForJobs(const std::filesystem::path& file) const;
  /// Replaces the content atomically, or creates the file. Creates the folder between a job folder and a file that is
  /// named by a UUID (see `JobFolders::isInOwnFolder`). Permissions are never extended, since a job file may contain a
  /// password: an existing file keeps its mode at most, and a new one gets `mostOpen` at most.
  virtual Result<void> write(const std::filesystem::path& file, std::string_view content, mode_t mostOpen) = 0;
  /// Moves a file or link, with new content. EEXIST if there is a file at the new path. Within folders of the same
  /// rights, exactly one of the two files exists at any moment; otherwise the old one is removed after the new one has
  /// been written. A failure is rolled back; if that fails too, the message says so.
  virtual Result<void> move(const std::filesystem::path& from, const std::filesystem::path& to,
                            std::string_view content, mode_t mostOpen) = 0;
  /// Removes the file, or a link without its target, and a folder named above that becomes empty. Succeeds if there is
  /// no such file.
  virtual Result<void> remove(const std::filesystem::path& file) = 0;
  /// Returns the content of the file, following links; `NotFound` if there is none, `LimitExceeded` if it is too large.
  virtual Result<std::string> read(const std::filesystem::path& file) = 0;

 protected:
  /// `move` for folders of different rights.
  Result<void> writeThenRemove(const std::filesystem::path& from, const std::filesystem::path& to,
                               std::string_view content, mode_t mostOpen);
};

/// Returns `BadArgument` for a text that is empty, longer than 1024 bytes, or contains ASCII control characters, with
/// which it could be taken for something else than a label.
Result<void> checkLabel(std::string_view label);

/// Returns the label in a job file's content. Fails for content that launchd wouldn't load: not a property list, not a
/// dictionary, larger than `JobFolder::largestFile`, or without a valid label.
Result<std::string> labelOf(std::string_view content);

/// Whether a file contains the job that was loaded from another path: both are the same file, or the other has gone, so
/// that the file may have been moved from there. A copy of a file that still exists is another job.
bool mayBeLoadedFrom(const std::filesystem::path& loaded, const std::filesystem::path& file);

/// Whether both paths refer to the same file or link, not following the latter. False if one doesn't exist.
bool isSameEntry(const std::filesystem::path& a, const std::filesystem::path& b);

}  // namespace mirvel
