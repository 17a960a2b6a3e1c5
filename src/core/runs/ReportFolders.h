#pragma once

#include <sys/stat.h>

#include <compare>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/base/Result.h"
#include "core/files/HostMark.h"
#include "core/messages/JobReport.h"
#include "core/ports/MainQueue.h"
#include "core/ports/RunSource.h"
#include "core/process/ProcessStatus.h"

namespace mirvel {

class Console;
class FolderMonitor;
struct Platform;
struct Roots;

/// One folder in which a host publishes reports, a file for each label. Remembers what it has read, so that only files
/// that have changed are read again. Not thread-safe.
class ReportFolder {
 public:
  static constexpr std::size_t largestFile = std::size_t{1} << 20;
  static constexpr std::size_t mostFiles = 20'000;  ///< further ones are ignored
  static constexpr std::size_t mostInDelivery = 200;

  using Deliver = std::function<void(RunDelivery delivery)>;

  /// Nothing is read yet. The console must outlive the folder.
  ReportFolder(std::filesystem::path folder, RunDomain domain, Console& console);

  /// Delivers the reports of some files that are new or have changed since the last call, and the labels of those that
  /// are gone. Returns whether more is left, for another call; the last delivery is marked as such, and there is one
  /// even if nothing has changed, unless the folder has never existed. Files that aren't reports are skipped, with a
  /// line in the console for each. Of two files with the same label, the one that was changed last counts.
  ///
  /// A host that has ended doesn't correct its reports, see `HostMark`: its jobs are delivered as not loaded, and a
  /// process that doesn't exist any more not as running, but its run as `Lost`.
  bool read(const Deliver& deliver);
  /// Whether a process runs whose host has ended, so that no event will tell of its end.
  bool hasOrphans() const;
  /// Whether a process has ended that was running when its report was read.
  bool hasEndedProcess() const;

 private:
  /// Identifies a state of a file.
  struct Stamp {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    std::int64_t modified = 0;  ///< in nanoseconds, as the next
    std::int64_t changed = 0;

    bool operator==(const Stamp&) const = default;
    static Stamp of(const struct stat& status);
  };
  struct File {
    Stamp stamp;
    std::string label = {};                       ///< empty if it isn't a report
    std::optional<ProcessIdentity> process = {};  ///< that runs according to the report
  };
  using Files = std::map<std::string, File>;  ///< by name

  Result<void> list();
  void lookForHost();
  std::optional<JobReport> readReport(const std::string& name, File& file) const;
  std::vector<std::string> takeRemoved();
  void deliverGap(const Error& error, const Deliver& deliver);

  const std::filesystem::path m_folder;
  const RunDomain m_domain;
  Console& m_console;
  Files m_files;                      ///< those that have been read
  std::vector<std::string> m_toRead;  ///< names of those that have changed, the one to be read next at the end
  std::vector<std::string> m_gone;    ///< labels of files that have been deleted or replaced
  HostMark::State m_host = HostMark::State::None;
  bool m_isListed = false;  ///< a pass through the folder is going on
  bool m_wasThere = false;
  bool m_isFullReported = false;
};

/// Reads the reports that the hosts of the user and of root publish as files, on the file queue. A change is delivered
/// within a second; nothing happens while no file changes, except that processes that have outlived their host are
/// looked at once a second while the window is visible. For the main thread.
class ReportFolders final : public RunSource {
 public:
  /// Both must outlive the source.
  ReportFolders(const Roots& roots, const Platform& platform);
  ~ReportFolders() override;

  void begin(Receiver receiver) override;
  /// Becoming visible verifies which processes still exist.
  void setVisible(bool isVisible) override;

 private:
  struct Place;

  void add(std::filesystem::path folder, RunDomain domain);
  void folderDidChange(Place& place);
  void read(Place& place);
  void readSome(Place& place);
  void didRead(Place& place, bool hasOrphans);
  void planLook(Place& place);
  void look(Place& place);

  const Platform& m_platform;
  Receiver m_receiver;
  Delay m_delay;
  Limit m_limit;
  std::vector<std::unique_ptr<Place>> m_places;
  bool m_isVisible = false;
};

}  // namespace mirvel
