#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <list>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "core/files/Inotify.h"
#include "core/process/FileDescriptor.h"
#include "helpers/host/OutputLines.h"
#include "helpers/host/PollLoop.h"
#include "helpers/host/ProcessPlan.h"
#include "helpers/hostdata/HostPlaces.h"

namespace mirvel::host {

/// Reports changes of files and folders, by inotify(7). Where there is none, nothing can be watched. A file that is
/// written all the time is reported at most every `pause`. For one thread.
class FileNotices {
 public:
  static constexpr std::chrono::milliseconds pause{10};

  class Listener {
   public:
    virtual ~Listener() = default;
    virtual void filesChanged() = 0;
  };

  /// The loop must outlive this object, and the listeners have to be forgotten before they are destroyed.
  explicit FileNotices(PollLoop& loop) : m_loop(loop) {}
  ~FileNotices();
  FileNotices(const FileNotices&) = delete;
  FileNotices& operator=(const FileNotices&) = delete;

  /// Reports each change of an open file. False if it can't be watched.
  bool watchFile(int file, Listener& listener);
  /// Reports that an entry of the folder appears or is replaced. False likewise.
  bool watchEntry(const std::filesystem::path& entry, Listener& listener);
  void forget(Listener& listener);

  /// Continues after the pause. Called by the owner at the time that `wakeAt` returns.
  void settle(std::chrono::milliseconds now);
  std::optional<std::chrono::milliseconds> wakeAt() const { return m_pausedUntil; }

 private:
  struct Interest {
    Listener* listener;
    std::string entry;  ///< of a watched folder; empty: a file
  };

  bool watch(const std::filesystem::path& path, std::uint32_t events, Interest interest);
  void take();

  PollLoop& m_loop;
#ifdef __linux__
  Inotify m_inotify;  ///< opened with the first watch
#endif
  std::map<int, std::vector<Interest>> m_interests;  ///< by the number of the watch
  std::optional<std::chrono::milliseconds> m_pausedUntil;
};

/// The files to which the output of a run goes, according to its job. Each file is followed from its size at the
/// beginning of the run, and from its beginning if it is created, replaced or truncated later. One that was renamed or
/// deleted is still followed, since the job may go on writing to it.
///
/// Only regular files are opened, and of a job with `UserName` or `GroupName` only those that this user may read. The
/// files of a job with `RootDirectory` aren't followed: their paths may lead elsewhere from outside. For one thread.
class OutputFiles {
 public:
  static constexpr std::size_t mostFiles = 8;  ///< of those that were replaced, the oldest are given up

  struct File {
    FileDescriptor descriptor;
    FileIdentity identity;
    std::uint64_t offset = 0;  ///< of the first byte that hasn't been read
    OutputLines lines = {};
    std::chrono::milliseconds readAt{0};  ///< when there was something to read for the last time

    /// The number of bytes that haven't been read.
    std::uint64_t backlog() const;
    /// Reads the next bytes; 0 at the end of the file, and if reading fails.
    std::size_t read(char* to, std::size_t most);
  };

  explicit OutputFiles(const ProcessPlan& plan);
  /// Opens the files, before the process is started.
  void begin();
  /// Opens files that have been created or put in place of others, and goes back to the beginning of a truncated one,
  /// whose incomplete line it completes before by `finish`. Returns whether there are files that weren't open before,
  /// which `watch` doesn't report yet.
  bool update(const std::function<void(File&)>& finish);
  /// Watches what exists now. False if something can't be watched, so that `update` has to be called from time to time.
  bool watch(FileNotices& notices, FileNotices::Listener& listener) const;

  bool isEmpty() const { return m_paths.empty(); }
  std::list<File>& files() { return m_files; }
  const std::list<File>& files() const { return m_files; }

 private:
  /// Returns whether the file wasn't open before.
  bool open(const std::filesystem::path& path, bool isBegin);

  std::vector<std::filesystem::path> m_paths;  ///< absolute
  JobUser m_user;
  std::list<File> m_files;  ///< those that were replaced come first
};

}  // namespace mirvel::host
