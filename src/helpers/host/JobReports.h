#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/base/Result.h"
#include "core/files/HostMark.h"
#include "core/messages/JobReport.h"
#include "core/process/FileDescriptor.h"

namespace mirvel::host {

/// The reports of jobs on disk, a property list for each label: other processes read them, and the next host continues
/// them. As long as this object lives, the folder is marked, see `HostMark`. A file is replaced atomically, so that a
/// host that is killed leaves the old or the new report. It isn't flushed to the device, since that would delay each
/// start of a job. For one thread.
class JobReports {
 public:
  static constexpr std::chrono::hours keptFor{24 * 30};  ///< after the last change of a job that isn't loaded

  enum class Readers { Owner, Everyone };

  /// The folder is created with the first report: below an existing one for `Owner`, else with its ancestors.
  /// `Everyone` gets no names and paths that are in job files which not everyone may read, and no paths of tests.
  JobReports(std::filesystem::path folder, Readers readers) : m_folder(std::move(folder)), m_readers(readers) {}

  struct Published {
    JobReport report;
    std::chrono::sys_seconds time;  ///< when it was written
  };
  /// The last report of a label; none if there is none. Test runs have reports of their own. A damaged file is renamed
  /// and reported by `takeTroubles`; it counts as none. Fails if the file can't be read for another reason.
  Result<std::optional<Published>> read(const std::string& label, bool isTest);
  /// Replaces the report. Fails with the error of the system, and with `NotPermitted` if others could write to the
  /// folder; the old report then remains. The first of several failures of
  /// both functions is also reported by `takeTroubles`.
  Result<void> write(const JobReport& report);
  void remove(const std::string& label, bool isTest);
  bool contains(const std::string& label, bool isTest) const;
  /// Marks the folder again if no host's mark is in it. No effect while there is no folder.
  void keepMark();
  /// Removes the mark of this host: it publishes nothing any more.
  void removeMark() { m_mark = {}; }

  /// Called once the jobs of an earlier host are loaded again. Deletes reports of other jobs that haven't changed for
  /// `keptFor`, those of test runs, and files that a killed host has left. Returns those of test runs, and the other
  /// reports of jobs that are loaded or running according to them, but aren't. `loaded` are the labels of the loaded
  /// jobs.
  std::vector<JobReport> tidy(std::chrono::sys_seconds now, const std::vector<std::string>& loaded);

  /// What went wrong since the last call, for the log.
  std::vector<Error> takeTroubles() { return std::exchange(m_troubles, {}); }

 private:
  Result<FileDescriptor> open() const;
  Result<std::optional<Published>> readFile(const std::string& name);
  Result<void> replace(const JobReport& report);
  Result<void> mark(int folder);
  void noteFailure(const Error& error);
  void setAside(const std::string& name, Error damage);
  bool isUseless(const std::string& name, std::chrono::sys_seconds now) const;

  std::filesystem::path m_folder;
  Readers m_readers;
  HostMark m_mark;
  bool m_isFailing = false;
  std::vector<Error> m_troubles;
};

}  // namespace mirvel::host
