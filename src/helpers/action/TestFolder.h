#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "core/base/Result.h"
#include "core/process/FileDescriptor.h"

namespace mirvel {

/// The folder of one test run, with its job file and a named pipe for the output. As long as the object exists the
/// folder is locked: an unlocked one was left by a process that was killed. The destructor leaves it as it is.
class TestFolder {
 public:
  /// Creates a folder with a random name in `parent`, which is created too, and writes the job file: the content with
  /// the pipe as both output paths. Only this user can access the files, except that a job of root's that runs as
  /// another user (`UserName`) can write to the pipe.
  ///
  /// The job of a `RootDirectory`, from which the pipe can't be reached, gets no output path. Fails like
  /// `propertylist::readDictionary`, with `NotPermitted` if others can write to `parent`, and with `Io`.
  static Result<TestFolder> make(const std::filesystem::path& parent, std::string_view content);
  /// The folders in `parent` that were left behind. They are locked now.
  static std::vector<TestFolder> leftIn(const std::filesystem::path& parent);

  std::filesystem::path job() const { return m_path / "job.plist"; }
  /// The non-blocking end of the pipe with the output; -1 in a folder that was left. It never has an end of file.
  int output() const { return m_reader.number(); }
  /// Deletes the folder with its files.
  void remove();

 private:
  TestFolder(std::filesystem::path path, FileDescriptor lock) : m_path(std::move(path)), m_lock(std::move(lock)) {}

  std::filesystem::path pipe() const { return m_path / "output"; }
  Result<void> fill(std::string_view content);
  Result<void> makePipe();
  Result<void> admit(const std::string& user) const;

  std::filesystem::path m_path;
  FileDescriptor m_lock;
  FileDescriptor m_reader;
  FileDescriptor m_writer;  ///< keeps the pipe open between two writers
};

}  // namespace mirvel
